// What the keys of the touch panels show and where they are written, and what a layout file may hold; their journeys
// are plays.

#include <fmt/format.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "core/text.h"
#include "panels/panel_layout.h"
#include "support/program_test.h"

namespace zrt {
namespace {

using Rows = std::vector<std::vector<std::string>>;

constexpr const char* kFilledKeys = "SELECT ID,CODE FROM HOTKEYS WHERE CODE<>0 ORDER BY ID";

class Panels : public test::ProgramTest {
 protected:
  Panels() : ProgramTest(test::Stage::kPlain) {
    shop_.Sql(
        "INSERT INTO TOVAR (COD,COD1,NAME,OST,KOL,PRISE,BARCODE,N7) VALUES (10,1,'Чай',0,0,5000,'0',0),"
        "(11,1,'Пиво 0,5',0,0,9000,'0',500),(12,1,'Без цены',0,0,0,'0',0),(13,1,'Квас',0,0,0,'0',300)");
    Start("sensor");
  }

  PanelTab& Tab() { return app_->Main.Panels; }
  Button& KeyOf(int key) { return Tab().CmdM.at(static_cast<std::size_t>(key - 1)); }
  void Choose(int menu, int panel, int level) {
    Do([=, this] { Tab().CmdMenu.UserPress(static_cast<std::uint8_t>(menu)); });
    Click(Tab().Option1.at(static_cast<std::size_t>(panel - 1)));
    Click(Tab().Option2.at(static_cast<std::size_t>(level - 1)));
  }
  void Put(int key, const std::string& code) {
    Click(KeyOf(key));
    Type(Tab().Text6, code);
    Press(Tab().Text6, "Enter");
  }
};

TEST_F(Panels, AKeyIsWrittenWhereItStands) {
  struct Written {
    int menu, panel, level, key;
    const char* id;
  };
  const Written kWritten[] = {
      {1, 1, 1, 1, "101"}, {1, 12, 3, 30, "1290"}, {2, 1, 1, 1, "1301"}, {2, 5, 2, 3, "1733"}, {2, 12, 3, 30, "2490"},
  };
  for (const Written& one : kWritten) {
    SCOPED_TRACE(one.id);
    Choose(one.menu, one.panel, one.level);
    Put(one.key, "10");
    EXPECT_EQ(shop_.Rows(kFilledKeys), (Rows{{one.id, "10"}}));
    EXPECT_EQ(KeyOf(one.key).Caption(), "10");
    EXPECT_EQ(KeyOf(one.key).BackColor(), 0x00FF00U);
    EXPECT_EQ(Tab().DataGrid12.Row(), one.key);
    Click(KeyOf(one.key));
    Click(Tab().CmdClr);
    EXPECT_EQ(KeyOf(one.key).BackColor(), 0x8000000EU);
  }
  EXPECT_EQ(shop_.Rows(kFilledKeys), Rows{});
}

TEST_F(Panels, WhatIsTypedAsACode) {
  // Typed at a key: all but the space, which presses it, is the program's.
  for (const auto& [key, taken] :
       {std::pair{Key{Key::kCharacter, "1"}, true}, {Key{Key::kCharacter, " "}, false}, {Key{Key::kDown, {}}, true}}) {
    Key pressed = key;
    Do([&] { KeyOf(1).UserKey(pressed); });
    EXPECT_EQ(pressed.swallow, taken) << key.text;
  }
  for (const char* typed : {"чай", "1.5", "10x", " "}) {
    Click(KeyOf(1));
    Type(Tab().Text6, typed);
    desktop_.Expect("Введите целое число!", BoxAnswer::kOk, BoxIcon::kCritical, "ZASTAVA");
    Click(Tab().CmdOk1);
    EXPECT_EQ(desktop_.Focused(), &Tab().Text6);
    EXPECT_EQ(Tab().Text6.SelLength(), static_cast<int>(Length(typed)));
  }
  // Halves go to the even number; a code that no product has is taken.
  for (const auto& [typed, stored] :
       {std::pair{"777777", "777777"}, {"1 000", "1000"}, {"2,5", "2"}, {"3,5", "4"}, {" 12 ", "12"}, {"", "0"}}) {
    Put(1, typed);
    EXPECT_EQ(shop_.Value("SELECT CODE FROM HOTKEYS WHERE ID=101"), stored) << typed;
  }
  Click(KeyOf(1));
  Type(Tab().Text6, "3000000000");
  desktop_.ExpectRuntimeError();
  Click(Tab().CmdOk1);
  EXPECT_EQ(shop_.Value("SELECT CODE FROM HOTKEYS WHERE ID=101"), "0");
}

/// A level made by hand against what its keys show.
TEST_F(Panels, ALevelIsPaintedByWhatStandsOnIt) {
  for (const auto& [code, ids] : {std::pair{"10", "101,131,160,1331"},
                                  {"11", "132"},
                                  {"12", "133,137"},
                                  {"13", "134"},
                                  {"99", "135,136"},
                                  {"-5", "138"},
                                  {"NULL", "139"}}) {
    shop_.Sql(fmt::format("UPDATE HOTKEYS SET CODE={} WHERE ID IN ({})", code, ids));
  }
  struct Painted {
    int key;
    const char* caption;
    Colour colour;
    bool bold;
    const char* tip;
  };
  const Painted kPainted[] = {{1, "10", 0x00FF00, false, "Чай"},
                              {2, "11", 0x00FF00, true, "Пиво 0,5"},
                              {3, "12", 0xFFFF, false, "Без цены"},
                              {4, "13", 0xFFFF, true, "Квас"},
                              {5, "99", 0xFF, false, "ТОВАРА НЕТ В СПРАВОЧНИКЕ !!!"},
                              {6, "99", 0xFF0000, false, "ДУБЛИРОВАН"},
                              {7, "12", 0xFF0000, false, "ДУБЛИРОВАН"},
                              {8, "", 0x8000000E, false, ""},
                              {9, "", 0x8000000E, false, ""},
                              {30, "10", 0xFF0000, false, "ДУБЛИРОВАН"}};
  Choose(1, 1, 2);
  const auto check = [this](const Painted& expected) {
    const Button& key = KeyOf(expected.key);
    EXPECT_EQ(key.Caption(), expected.caption) << expected.key;
    EXPECT_EQ(key.BackColor(), expected.colour) << expected.key;
    EXPECT_EQ(key.FontBold(), expected.bold) << expected.key;
    EXPECT_EQ(key.ToolTipText(), expected.tip) << expected.key;
  };
  for (const Painted& expected : kPainted) check(expected);
  EXPECT_EQ(Tab().DataGrid12.CellText(2, "name"), "Пиво 0,5");
  EXPECT_EQ(Tab().DataGrid12.CellText(2, "price"), "90,00");
  EXPECT_EQ(Tab().DataGrid12.CellText(2, "N"), "32");
  // The same product on other levels and in the other menu is no duplicate.
  Choose(1, 1, 1);
  check({1, "10", 0x00FF00, false, "Чай"});
  check({30, "", 0x8000000E, false, ""});
  Choose(2, 1, 2);
  check({1, "10", 0x00FF00, false, "Чай"});
}

/// The shop's older schema, which has one menu, without a number.
TEST_F(Panels, TheOnlyMenuHasNoNameAndNothingIsMovedInIt) {
  app_->TheSession.CurrentMenu = 0;
  Tab().UseSingleMenu();
  Click(Tab().Option1[4]);
  Click(Tab().Option2[1]);
  Put(3, "10");
  EXPECT_EQ(shop_.Rows(kFilledKeys), (Rows{{"533", "10"}}));
  {
    const test::Told target(KeyOf(4));
    desktop_.Expect("Переместить кнопку на указанное место?");
    Do([&] { KeyOf(3).UserDrag(KeyOf(4)); });
    EXPECT_TRUE(target.Text.starts_with("BackColor=16711935 ")) << "marked while the question stands";
  }
  EXPECT_EQ(shop_.Rows(kFilledKeys), (Rows{{"533", "10"}}));
  Type(Tab().TextName, "Бар");
  faults_.Forget();
  Click(Tab().CmdName);
  EXPECT_EQ(faults_.Statements(), (std::vector<std::string>{"UPDATE CONST SET T9='Бар' WHERE COD=5"}));
  EXPECT_EQ(Tab().Option1[4].Caption(), "Бар");
}

TEST_F(Panels, LayoutFilesOfOtherHands) {
  const std::string question = "Загрузить новую раскладку меню\n\rиз файла 'C:/Korvina/hotkeys.txt' ?";
  const auto loads = [&](bool done) {
    shop_.Sql("UPDATE HOTKEYS SET CODE=IF(ID=530,55,0)");
    desktop_.ExpectInput("Введите пароль администратора:", "357218");
    desktop_.InModal([&](Form& form) {
      desktop_.Expect(question);
      if (done) desktop_.Expect("Загружена раскладка меню из файла 'C:/Korvina/hotkeys.txt'");
      if (!done) desktop_.ExpectRuntimeError();
      Click(app_->PanelCopy.CmdImportMenu);
      form.Hide();
    });
    Click(Tab().CmdCopyAll);
    return shop_.Rows(kFilledKeys);
  };
  const std::pair<const char*, Rows> kGood[] = {
      {"101,7\r\n2490,8\r\n", {{"101", "7"}, {"2490", "8"}}},
      {"101,7\n2490,8", {{"101", "7"}, {"2490", "8"}}},
      {" 101 , 7 \n\n   \n102,0\n", {{"101", "7"}}},
      {"101,7\n101,9\n", {{"101", "9"}}},                        // the last line of a key counts
      {"100,7\n191,7\n99999,7\n-3,7\n103,6\n", {{"103", "6"}}},  // rows that aren't there
      {"", {}}};
  for (const auto& [text, filled] : kGood) {
    WriteFile("C:/Korvina/hotkeys.txt", text);
    EXPECT_EQ(loads(true), filled) << text;
  }
  for (const char* broken : {"101;7", "101,", ",7", "101,7\n102", "101,7,8", "101,7x", "101,7.5", "101,99999999999"}) {
    WriteFile("C:/Korvina/hotkeys.txt", broken);
    EXPECT_EQ(loads(false), (Rows{{"530", "55"}})) << broken;
  }
  // A folder of that name can't be read.
  std::filesystem::remove(drives_.ToNative(kLayoutFile));
  std::filesystem::create_directories(drives_.ToNative(kLayoutFile));
  EXPECT_EQ(loads(false), (Rows{{"530", "55"}}));
}

}  // namespace
}  // namespace zrt
