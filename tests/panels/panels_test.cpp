// The touch panels on a real base: which row a key is, what the keys show, how they are written, moved and copied, and
// what the layout file keeps.

#include <fmt/format.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "core/text.h"
#include "panels/panel_layout.h"
#include "support/program_test.h"

namespace zrt {
namespace {

using test::ProgramTest;
using Rows = std::vector<std::vector<std::string>>;

constexpr const char* kProducts =
    "INSERT INTO TOVAR (COD,COD1,NAME,OST,KOL,PRISE,BARCODE,N7) VALUES (10,1,'Чай',0,0,5000,'0',0),"
    "(11,1,'Пиво 0,5',0,0,9000,'0',500),(12,1,'Без цены',0,0,0,'0',0),(13,1,'Квас',0,0,0,'0',300)";
constexpr const char* kAllCodes = "SELECT ID,CODE FROM HOTKEYS ORDER BY ID";
constexpr const char* kFilledKeys = "SELECT ID,CODE FROM HOTKEYS WHERE CODE<>0 ORDER BY ID";

class Panels : public ProgramTest {
 protected:
  Panels() : ProgramTest(test::Stage::kPlain) {
    shop_.Sql(kProducts);
    Start("sensor");
  }

  PanelTab& Tab() { return app_->Main.Panels; }
  Button& KeyOf(int key) { return Tab().CmdM.at(static_cast<std::size_t>(key - 1)); }

  void Choose(int menu, int panel, int level) {
    Do([=, this] { Tab().CmdMenu.UserPress(static_cast<std::uint8_t>(menu)); });
    Do([=, this] { Tab().Option1.at(static_cast<std::size_t>(panel - 1)).UserClick(); });
    Do([=, this] { Tab().Option2.at(static_cast<std::size_t>(level - 1)).UserClick(); });
  }

  void Put(int key, const std::string& code) {
    Do([=, this] { KeyOf(key).UserClick(); });
    Do([=, this] { Tab().Text6.UserType(code); });
    Do([=, this] { desktop_.PressKey(Tab().Text6, {Key::kEnter, {}}); });
  }

  void Complains(const char* text, const std::function<void()>& action) {
    desktop_.Expect(text, BoxAnswer::kOk, BoxIcon::kCritical, "ZASTAVA");
    Do(action);
  }

  /// The action ends in a run-time error, for which the test has made the fault.
  void Fails(const std::function<void()>& action) {
    desktop_.ExpectRuntimeError();
    Do(action);
  }

  /// The keys that are selected.
  std::string Selected() {
    std::string keys;
    for (int key = 1; key <= 30; ++key) keys += KeyOf(key).BackColor() == 0xFF80FF ? std::to_string(key) + " " : "";
    return keys;
  }

  /// The buttons of the window for copying whose levels hold a product.
  static std::string Green(const FormCopy& form) {
    std::string all;
    for (const auto& level : form.CmdPan) {
      for (const Button& button : level) all += button.BackColor() == 49152 ? button.Name().substr(7) + " " : "";
    }
    return all;
  }

  /// Opens the window for copying and works in it.
  void InCopying(const std::function<void(FormCopy&)>& work) {
    desktop_.ExpectInput("Введите пароль администратора:", "357218");
    desktop_.InModal([&](Form& form) {
      work(dynamic_cast<FormCopy&>(form));
      form.Hide();
    });
    Do([this] { Tab().CmdCopyAll.UserClick(); });
  }

  std::filesystem::path LayoutFile() const { return drives_.ToNative(kLayoutFile); }

  /// Loads the layout file, with the answer to the question.
  void Import(FormCopy& form, bool done = true) {
    desktop_.Expect("Загрузить новую раскладку меню\n\rиз файла 'C:/Korvina/hotkeys.txt' ?", BoxAnswer::kOk,
                    BoxIcon::kQuestion);
    if (done) desktop_.Expect("Загружена раскладка меню из файла 'C:/Korvina/hotkeys.txt'");
    desktop_.UserAction([&] { form.CmdImportMenu.UserClick(); });
  }
};

/// The way from menu, panel, level and key to the row, counted here key by key through the whole layout.
TEST_F(Panels, EveryKeyIsItsOwnRow) {
  EXPECT_EQ(KeyBaseId(5, 2) + 1 * kIdsPerMenu + 3 - 1, 1733);
  EXPECT_EQ(TablePanel(2, 5), 17);
  EXPECT_EQ(TablePanel(0, 5), 5);
  std::map<int, std::pair<int, int>> rows;  // ID: REZ and LV
  for (int menu = 1; menu <= 2; ++menu) {
    for (int panel = 1; panel <= 12; ++panel) {
      int place = 0;
      for (int level = 1; level <= 3; ++level) {
        for (int key = 1; key <= 30; ++key) {
          ++place;
          const int id = KeyBaseId(static_cast<std::int16_t>(panel), static_cast<std::uint8_t>(level)) +
                         (menu - 1) * 1200 + key - 1;
          const int rez = TablePanel(static_cast<std::uint8_t>(menu), panel);
          EXPECT_EQ(id, rez * 100 + place);
          EXPECT_TRUE(rows.emplace(id, std::pair{rez, level}).second) << id;
        }
      }
    }
  }
  // The base holds exactly these rows.
  const Rows stored = shop_.Rows("SELECT ID,REZ,LV FROM HOTKEYS ORDER BY ID");
  ASSERT_EQ(stored.size(), rows.size());
  auto row = rows.begin();
  for (const std::vector<std::string>& cells : stored) {
    EXPECT_EQ(cells, (std::vector{std::to_string(row->first), std::to_string(row->second.first),
                                  std::to_string(row->second.second)}));
    ++row;
  }
}

TEST_F(Panels, AKeyIsWrittenWhereItStands) {
  struct Written {
    int menu, panel, level, key;
    const char* id;
    const char* heading;
  };
  const Written kWritten[] = {
      {1, 1, 1, 1, "101", "Меню № 1: Сенсорная панель № 1 - уровень 1"},
      {1, 12, 3, 30, "1290", "Меню № 1: Сенсорная панель № 12 - уровень 3"},
      {2, 1, 1, 1, "1301", "Меню № 2: Сенсорная панель № 1 - уровень 1"},
      {2, 5, 2, 3, "1733", "Меню № 2: Сенсорная панель № 5 - уровень 2"},
      {2, 12, 3, 30, "2490", "Меню № 2: Сенсорная панель № 12 - уровень 3"},
  };
  for (const Written& one : kWritten) {
    SCOPED_TRACE(one.id);
    Choose(one.menu, one.panel, one.level);
    EXPECT_EQ(Tab().DataGrid12.Caption(), one.heading);
    EXPECT_FALSE(Tab().Text6.Enabled());
    Put(one.key, "10");
    EXPECT_EQ(shop_.Rows(kFilledKeys), (Rows{{one.id, "10"}}));
    EXPECT_EQ(KeyOf(one.key).Caption(), "10");
    EXPECT_EQ(KeyOf(one.key).BackColor(), 0x00FF00U);
    EXPECT_EQ(Tab().DataGrid12.Row(), one.key);
    EXPECT_EQ(Tab().Text6.Text(), "");
    EXPECT_FALSE(Tab().CmdOk1.Enabled() || Tab().CmdClr.Enabled() || Tab().Text6.Enabled());
    Do([&] { KeyOf(one.key).UserClick(); });
    Do([&] { Tab().CmdClr.UserClick(); });
    EXPECT_EQ(KeyOf(one.key).BackColor(), 0x8000000EU);
  }
  EXPECT_EQ(shop_.Rows(kFilledKeys), Rows{});
}

TEST_F(Panels, OnlyOneKeyIsSelected) {
  Do([&] { KeyOf(7).UserClick(); });
  Do([&] { KeyOf(30).UserClick(); });
  EXPECT_EQ(Selected(), "30 ");
  EXPECT_EQ(Tab().DataGrid12.Row(), 30);
  // The list of the keys selects too; then the list moves on alone and nothing may be written.
  Do([&] { Tab().DataGrid12.UserRow(4); });
  Do([&] { desktop_.PressKey(Tab().DataGrid12, {Key::kEnter, {}}); });
  EXPECT_EQ(Selected(), "4 ");
  EXPECT_EQ(desktop_.Focused(), &Tab().Text6);
  Do([&] { Tab().DataGrid12.UserRow(5); });
  Complains("Не выбрана кнопка!", [&] { Tab().CmdOk1.UserClick(); });
  Complains("Не выбрана кнопка!", [&] { Tab().CmdClr.UserClick(); });
  // Another level: the entry stays open, no key is selected.
  Do([&] { Tab().Option2[1].UserClick(); });
  EXPECT_EQ(Selected(), "");
  Complains("Не выбрана кнопка!", [&] { Tab().CmdOk1.UserClick(); });
  EXPECT_EQ(shop_.Rows(kFilledKeys), Rows{});
}

TEST_F(Panels, WhatIsTypedAsACode) {
  for (const char* typed : {"чай", "1.5", "10x", " "}) {
    Do([&] { KeyOf(1).UserClick(); });
    Do([&] { Tab().Text6.UserType(typed); });
    Complains("Введите целое число!", [&] { Tab().CmdOk1.UserClick(); });
    EXPECT_EQ(desktop_.Focused(), &Tab().Text6);
    EXPECT_EQ(Tab().Text6.SelLength(), static_cast<int>(Length(typed)));
  }
  struct Typed {
    const char* text;
    const char* stored;
  };
  // Halves go to the even number; a code that no product has is taken.
  for (const Typed& one :
       {Typed{"777777", "777777"}, {"1 000", "1000"}, {"2,5", "2"}, {"3,5", "4"}, {" 12 ", "12"}, {"", "0"}}) {
    Do([&] { KeyOf(1).UserClick(); });
    Do([&] { Tab().Text6.UserType(one.text); });
    Do([&] { desktop_.PressKey(Tab().Text6, {Key::kEnter, {}}); });
    EXPECT_EQ(shop_.Value("SELECT CODE FROM HOTKEYS WHERE ID=101"), one.stored) << one.text;
  }
  Do([&] { KeyOf(1).UserClick(); });
  Do([&] { Tab().Text6.UserType("3000000000"); });
  desktop_.ExpectRuntimeError();
  Do([&] { Tab().CmdOk1.UserClick(); });
  EXPECT_EQ(shop_.Value("SELECT CODE FROM HOTKEYS WHERE ID=101"), "0");
}

/// A level made by hand against what its keys show.
TEST_F(Panels, ALevelIsPaintedByWhatStandsOnIt) {
  for (const auto& [id, code] : {std::pair{131, "10"},
                                 {132, "11"},
                                 {133, "12"},
                                 {134, "13"},
                                 {135, "99"},
                                 {136, "99"},
                                 {137, "12"},
                                 {138, "-5"},
                                 {139, "NULL"},
                                 {160, "10"},
                                 {101, "10"},
                                 {1331, "10"}}) {
    shop_.Sql(fmt::format("UPDATE HOTKEYS SET CODE={} WHERE ID={}", code, id));
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

  // A level that has lost rows, or all of them, is listed; the keys keep what they show and nothing breaks.
  shop_.Sql("DELETE FROM HOTKEYS WHERE ID=190");
  Choose(1, 1, 3);
  EXPECT_EQ(Tab().DataGrid12.Rows(), 29);
  Do([&] { KeyOf(30).UserClick(); });
  Complains("Не выбрана кнопка!", [&] { Tab().CmdOk1.UserClick(); });
  shop_.Sql("DELETE FROM HOTKEYS WHERE REZ=2");
  Choose(1, 2, 1);
  EXPECT_EQ(Tab().DataGrid12.Rows(), 0);
  Do([&] { KeyOf(1).UserClick(); });
  Do([&] { desktop_.PressKey(Tab().DataGrid12, {Key::kEnter, {}}); });
}

/// Behind the gap of a lost row a key would write its neighbour.
TEST_F(Panels, ALevelWithAGapIsWrittenWhereItsKeysAre) {
  shop_.Sql("UPDATE HOTKEYS SET CODE=10 WHERE ID IN (101,104)");
  shop_.Sql("DELETE FROM HOTKEYS WHERE ID=135");
  Do([&] { KeyOf(1).UserClick(); });
  Do([&] { Tab().Option2[1].UserClick(); });
  // The keys show the level before, but none of it is selected, and none can be dragged.
  EXPECT_EQ(KeyOf(1).Caption(), "10");
  EXPECT_EQ(Selected(), "");
  EXPECT_EQ(KeyOf(1).BackColor(), 0x00FF00U);
  Do([&] { Tab().Text6.UserType("13"); });
  Complains("Не выбрана кнопка!", [&] { Tab().CmdOk1.UserClick(); });
  Complains("Не выбрана кнопка!", [&] { Tab().CmdClr.UserClick(); });
  Do([&] { KeyOf(1).UserDrag(KeyOf(2)); });
  Put(4, "11");
  for (const int behind : {5, 10, 30}) {
    SCOPED_TRACE(behind);
    Do([=, this] { KeyOf(behind).UserClick(); });
    EXPECT_EQ(Selected(), "");
    Complains("Не выбрана кнопка!", [&] { Tab().CmdOk1.UserClick(); });
  }
  EXPECT_EQ(shop_.Rows(kFilledKeys), (Rows{{"101", "10"}, {"104", "10"}, {"134", "11"}}));
}

TEST_F(Panels, AProductIsChosenByListSearchOrKeyboardAlone) {
  CatalogueTab& catalogue = app_->Main.Catalogue;
  Do([&] { KeyOf(2).UserClick(); });
  Do([&] { catalogue.TextFind[1].UserType("квас"); });
  Do([&] { desktop_.PressKey(catalogue.TextFind[1], {Key::kEnter, {}}); });
  EXPECT_EQ(Tab().Text6.Text(), "13");
  EXPECT_EQ(catalogue.TextFind[1].Text(), "");
  EXPECT_EQ(desktop_.Focused(), &Tab().Text6);
  Do([&] { desktop_.PressKey(Tab().Text6, {Key::kEnter, {}}); });
  EXPECT_EQ(desktop_.Focused(), &KeyOf(2));

  // Letters typed at a key search the catalogue for it, digits are the code.
  Do([&] { desktop_.PressKey(KeyOf(2), {Key::kDown, {}}); });
  EXPECT_EQ(desktop_.Focused(), &KeyOf(8));
  Do([&] { desktop_.PressKey(KeyOf(8), {Key::kCharacter, "п"}); });
  EXPECT_EQ(desktop_.Focused(), &catalogue.TextFind[1]);
  Do([&] { desktop_.PressKey(catalogue.TextFind[1], {Key::kEnter, {}}); });
  Do([&] { desktop_.PressKey(Tab().Text6, {Key::kEnter, {}}); });
  Do([&] { desktop_.PressKey(KeyOf(9), {Key::kCharacter, "1"}); });
  Do([&] { desktop_.PressKey(Tab().Text6, {Key::kCharacter, "0"}); });
  Do([&] { desktop_.PressKey(Tab().Text6, {Key::kEnter, {}}); });
  EXPECT_EQ(shop_.Rows(kFilledKeys), (Rows{{"102", "13"}, {"108", "11"}, {"109", "10"}}));
  EXPECT_EQ(desktop_.Focused(), &KeyOf(9));
  Do([&] { desktop_.PressKey(KeyOf(3), {Key::kUp, {}}); });
  EXPECT_EQ(desktop_.Focused(), &KeyOf(9));  // nothing stands above the first row

  // First the product, then the key.
  Do([&] { catalogue.DataGrid1[1].UserRow(4); });
  Do([&] { catalogue.DataGrid1[1].UserDblClick(); });
  EXPECT_TRUE(Tab().CmdOk1.Enabled());
  Complains("Не выбрана кнопка!", [&] { Tab().CmdOk1.UserClick(); });
  Do([&] { KeyOf(30).UserClick(); });
  Do([&] { Tab().CmdOk1.UserClick(); });
  EXPECT_EQ(shop_.Value("SELECT CODE FROM HOTKEYS WHERE ID=130"), "10");
}

TEST_F(Panels, AKeyIsMovedToAnEmptyOneOnly) {
  const char* const question = "Переместить кнопку на указанное место?";
  struct Level {
    int menu;
    const char* first;  ///< IDs of keys 1, 2 and 30
    const char* second;
    const char* last;
  };
  for (const Level& level : {Level{1, "331", "332", "360"}, Level{2, "1531", "1532", "1560"}}) {
    SCOPED_TRACE(level.menu);
    shop_.Sql("UPDATE HOTKEYS SET CODE=0");
    Choose(level.menu, 3, 2);
    Put(1, "10");
    Put(2, "11");
    const Rows before = shop_.Rows(kAllCodes);
    Do([&] { KeyOf(1).UserDrag(KeyOf(2)); });  // occupied
    Do([&] { KeyOf(1).UserDrag(KeyOf(1)); });
    EXPECT_EQ(KeyOf(1).BackColor(), 0xFF00FFU);
    Do([&] { KeyOf(5).UserDrag(KeyOf(6)); });  // an empty key isn't dragged
    desktop_.Expect(question, BoxAnswer::kCancel, BoxIcon::kQuestion);
    Do([&] { KeyOf(1).UserDrag(KeyOf(30)); });
    EXPECT_EQ(shop_.Rows(kAllCodes), before);
    EXPECT_EQ(KeyOf(1).BackColor(), 0x00FF00U);
    EXPECT_EQ(KeyOf(30).BackColor(), 0x8000000EU);
    desktop_.Expect(question, BoxAnswer::kOk, BoxIcon::kQuestion);
    Do([&] { KeyOf(1).UserDrag(KeyOf(30)); });
    EXPECT_EQ(shop_.Rows(kFilledKeys), (Rows{{level.second, "11"}, {level.last, "10"}}));
    EXPECT_EQ(KeyOf(30).Caption(), "10");
    EXPECT_EQ(KeyOf(1).Caption(), "");
    EXPECT_EQ(Tab().DataGrid12.Row(), 1);
  }
}

TEST_F(Panels, AWriteWhoseLevelIsNotReadAgainIsOver) {
  shop_.Sql("UPDATE HOTKEYS SET CODE=10 WHERE ID=101");
  Choose(1, 1, 1);
  Do([&] { KeyOf(2).UserClick(); });
  Do([&] { Tab().Text6.UserType("13"); });
  faults_.FailAt(2);
  Fails([&] { Tab().CmdOk1.UserClick(); });
  EXPECT_EQ(shop_.Rows(kFilledKeys), (Rows{{"101", "10"}, {"102", "13"}}));
  EXPECT_EQ(Tab().Text6.Text(), "");
  EXPECT_FALSE(Tab().CmdOk1.Enabled() || Tab().CmdClr.Enabled() || Tab().Text6.Enabled());
  EXPECT_EQ(desktop_.Focused(), &KeyOf(2));
  EXPECT_EQ(Selected(), "");
  Do([&] { KeyOf(1).UserDrag(KeyOf(2)); });  // key 2 only looks empty
  EXPECT_EQ(shop_.Rows(kFilledKeys), (Rows{{"101", "10"}, {"102", "13"}}));
  Do([&] { KeyOf(2).UserClick(); });
  EXPECT_EQ(KeyOf(2).Caption(), "13");
  // The same when a key can't be selected: the level is read for that.
  shop_.Sql("UPDATE HOTKEYS SET CODE=12 WHERE ID=103");
  faults_.FailAt(1);
  Fails([&] { KeyOf(1).UserClick(); });
  Do([&] { KeyOf(1).UserDrag(KeyOf(3)); });
  // And when all panels are cleared.
  Do([&] { KeyOf(1).UserClick(); });
  desktop_.ExpectInput("Для очистки всех панелей введите пароль администратора:", "357218");
  desktop_.Expect("Подтвердите очистку ВСЕХ панелей!");
  faults_.FailAt(2);
  Fails([&] { Tab().CmdClrAll.UserClick(); });
  shop_.Sql("UPDATE HOTKEYS SET CODE=11 WHERE ID=104");
  Do([&] { KeyOf(1).UserDrag(KeyOf(4)); });
  EXPECT_EQ(shop_.Rows(kFilledKeys), (Rows{{"104", "11"}}));
}

TEST_F(Panels, NamesOfPanelsAndMenus) {
  Choose(2, 3, 1);
  EXPECT_EQ(Tab().TextMenu.Text(), "меню-2");
  Do([&] { Tab().TextName.UserType("Кухня \"Юг\""); });
  Do([&] { Tab().TextMenu.UserType("Летнее"); });
  Do([&] { Tab().CmdName.UserClick(); });
  EXPECT_EQ(shop_.Value("SELECT T9 FROM CONST WHERE COD=15"), "Кухня \"Юг\"");
  EXPECT_EQ(shop_.Rows("SELECT N1,N2 FROM CONST WHERE COD=7"), (Rows{{"NULL", "Летнее"}}));
  EXPECT_EQ(Tab().Option1[2].Caption(), "Кухня \"Юг\"");
  EXPECT_EQ(Tab().CmdMenu.Label0(), "Летнее");
  Choose(1, 3, 1);
  EXPECT_EQ(Tab().Option1[2].Caption(), "Панель № 3");
  EXPECT_EQ(Tab().TextMenu.Text(), "меню-1");
  Choose(2, 12, 1);
  EXPECT_EQ(Tab().Option1[2].Caption(), "Кухня \"Юг\"");
  EXPECT_EQ(Tab().TextMenu.Text(), "Летнее");
  Do([&] { Tab().TextName.UserType(""); });
  Do([&] { Tab().CmdName.UserClick(); });
  EXPECT_EQ(shop_.Value("SELECT T9 FROM CONST WHERE COD=24"), "");
  EXPECT_EQ(Tab().Option1[11].Caption(), "Панель № 12");
  // A single quote breaks its statement: reported, and nothing is renamed.
  Do([&] { Tab().TextName.UserType("L'eau"); });
  desktop_.ExpectRuntimeError();
  Do([&] { Tab().CmdName.UserClick(); });
  EXPECT_EQ(Tab().Option1[11].Caption(), "Панель № 12");
  // The panel is renamed when its menu can't be.
  Do([&] { Tab().TextName.UserType("Гриль"); });
  faults_.FailAt(2);
  Fails([&] { Tab().CmdName.UserClick(); });
  EXPECT_EQ(shop_.Value("SELECT T9 FROM CONST WHERE COD=24"), "Гриль");
  EXPECT_EQ(Tab().Option1[11].Caption(), "Гриль");
}

/// The buttons don't keep the names of the other menu: that of a row which is gone, and all while they can't be read.
TEST_F(Panels, APanelDoesNotKeepTheNameOfAnother) {
  shop_.Sql("UPDATE CONST SET T9=CONCAT('П',COD) WHERE COD<=24");
  const auto menu = [this] { Tab().CmdMenu.UserPress(2); };
  shop_.Sql("DELETE FROM CONST WHERE COD=16");
  Choose(1, 1, 1);
  EXPECT_EQ(Tab().Option1[3].Caption(), "П4");
  Do(menu);
  EXPECT_EQ(Tab().Option1[2].Caption(), "П15");
  EXPECT_EQ(Tab().Option1[3].Caption(), "Панель № 4");
  for (const int statement : {1, 2, 3}) {
    Choose(1, 1, 1);
    faults_.FailAt(statement);
    Fails(menu);
    EXPECT_EQ(Tab().Option1[2].Caption(), "Панель № 3");
  }
}

/// The shop's older schema, which has one menu, without a number.
TEST_F(Panels, TheOnlyMenuHasNoNameAndNothingIsMovedInIt) {
  app_->TheSession.CurrentMenu = 0;
  Do([&] { Tab().Option1[4].UserClick(); });
  Do([&] { Tab().Option2[1].UserClick(); });
  Put(3, "10");
  EXPECT_EQ(shop_.Rows(kFilledKeys), (Rows{{"533", "10"}}));
  desktop_.Expect("Переместить кнопку на указанное место?");
  Do([&] { KeyOf(3).UserDrag(KeyOf(4)); });
  EXPECT_EQ(shop_.Rows(kFilledKeys), (Rows{{"533", "10"}}));
  Do([&] { Tab().TextName.UserType("Бар"); });
  faults_.Forget();
  Do([&] { Tab().CmdName.UserClick(); });
  EXPECT_EQ(faults_.Statements(), (std::vector<std::string>{"UPDATE CONST SET T9='Бар' WHERE COD=5"}));
  EXPECT_EQ(Tab().Option1[4].Caption(), "Бар");
}

/// What each action sends, to the letter and in this order.
TEST_F(Panels, TheStatementsOfTheActions) {
  using Texts = std::vector<std::string>;
  const auto level = [](int rez, int lv) {
    return fmt::format(
        "SELECT HOTKEYS.ID As 'id',RIGHT(HOTKEYS.ID,2) As 'N',HOTKEYS.CODE As 'cod',TOVAR.NAME As 'name',"
        "ROUND(TOVAR.PRISE/100,2) As 'price',ROUND(TOVAR.N7/1000,3) As 'part' FROM HOTKEYS,TOVAR WHERE "
        "HOTKEYS.CODE=TOVAR.COD AND HOTKEYS.REZ={0} AND HOTKEYS.LV={1} GROUP BY id UNION SELECT HOTKEYS.ID As 'id',"
        "RIGHT(HOTKEYS.ID,2) As 'N',HOTKEYS.CODE As 'cod',TOVAR.NAME As 'name',ROUND(TOVAR.PRISE/100,2) As 'price',"
        "ROUND(TOVAR.N7/1000,3) As 'part' FROM HOTKEYS LEFT JOIN TOVAR ON HOTKEYS.CODE=TOVAR.COD WHERE "
        "HOTKEYS.REZ={0} AND HOTKEYS.LV={1} GROUP BY id ORDER BY id",
        rez, lv);
  };
  const auto sends = [this](const std::function<void()>& action, const Texts& statements) {
    faults_.Forget();
    Do(action);
    EXPECT_EQ(faults_.Statements(), statements);
  };
  sends([&] { Tab().CmdMenu.UserPress(2); },
        {level(13, 1), "SELECT T9 FROM CONST WHERE COD=13", "SELECT COD, T9 FROM CONST WHERE COD BETWEEN 13 AND 24"});
  sends([&] { Tab().Option1[4].UserClick(); }, {level(17, 1), "SELECT T9 FROM CONST WHERE COD=17"});
  sends([&] { Tab().Option2[1].UserClick(); }, {level(17, 2)});
  sends([&] { KeyOf(3).UserClick(); }, {level(17, 2)});
  Do([&] { Tab().Text6.UserType("10"); });
  sends([&] { Tab().CmdOk1.UserClick(); }, {"UPDATE HOTKEYS SET CODE = 10 WHERE ID = 1733", level(17, 2)});
  desktop_.Expect("Переместить кнопку на указанное место?");
  sends([&] { KeyOf(3).UserDrag(KeyOf(4)); },
        {"SELECT CODE FROM HOTKEYS WHERE ID=1733", "UPDATE HOTKEYS SET CODE=10 WHERE ID=1734",
         "UPDATE HOTKEYS SET CODE=0 WHERE ID=1733", level(17, 2)});
  Do([&] { KeyOf(4).UserClick(); });
  sends([&] { Tab().CmdClr.UserClick(); }, {"UPDATE HOTKEYS SET CODE = 0 WHERE ID = 1734", level(17, 2)});
  Do([&] { Tab().TextName.UserType("Бар"); });
  sends([&] { Tab().CmdName.UserClick(); },
        {"UPDATE CONST SET T9='Бар' WHERE COD=17", "UPDATE CONST SET N2='меню-2' WHERE COD=7"});
  desktop_.ExpectInput("Для очистки всех панелей введите пароль администратора:", "357218");
  desktop_.Expect("Подтвердите очистку ВСЕХ панелей!");
  sends([&] { Tab().CmdClrAll.UserClick(); }, {"UPDATE HOTKEYS SET CODE=0 WHERE id>100", level(17, 2), level(17, 2)});

  const std::string paint = "SELECT SUM(CODE),LV*100+REZ FROM HOTKEYS WHERE ID>100 GROUP BY REZ,LV";
  faults_.Forget();
  InCopying([&](FormCopy& form) {
    EXPECT_EQ(faults_.Statements(),
              (Texts{"SELECT COD, T9 FROM CONST", "SELECT N1, N2 FROM CONST WHERE COD=7", paint}));
    Texts copying = {"SELECT ID,CODE FROM HOTKEYS WHERE REZ=1 AND LV=1"};
    for (int id = 1461; id <= 1490; ++id) {
      copying.push_back(fmt::format("UPDATE HOTKEYS SET CODE ={} WHERE ID={}", id == 1463 ? 5 : 0, id));
    }
    copying.push_back(paint);
    shop_.Sql("UPDATE HOTKEYS SET CODE=5 WHERE ID=103");
    faults_.Forget();
    form.CopyPanelLevel(101, 314);
    form.PaintPanButtons();
    EXPECT_EQ(faults_.Statements(), copying);
    std::ofstream(LayoutFile()) << "101,1\n2490,2\n";
    faults_.Forget();
    Import(form);
    EXPECT_EQ(faults_.Statements(),
              (Texts{"UPDATE HOTKEYS SET CODE=0 WHERE ID>100", "UPDATE HOTKEYS SET CODE=1 WHERE ID=101",
                     "UPDATE HOTKEYS SET CODE=2 WHERE ID=2490", paint}));
    faults_.Forget();
    desktop_.Expect("Выгружен файл 'C:/Korvina/hotkeys.txt'");
    desktop_.UserAction([&] { form.CmdExportMenu.UserClick(); });
    EXPECT_EQ(faults_.Statements(), (Texts{"SELECT ID,CODE FROM HOTKEYS WHERE ID>100 AND CODE>0"}));
    faults_.Forget();
  });
  EXPECT_EQ(faults_.Statements(), (Texts{level(17, 2)}));  // the editor shows what was loaded
}

TEST_F(Panels, ClearingAllAndCopyingWantThePassword) {
  shop_.Sql("UPDATE HOTKEYS SET CODE=ID");
  const char* const kAsk = "Для очистки всех панелей введите пароль администратора:";
  for (const char* entry : {"", "357219"}) {
    desktop_.ExpectInput(kAsk, entry);
    Do([&] { Tab().CmdClrAll.UserClick(); });
    desktop_.ExpectInput("Введите пароль администратора:", entry);
    Do([&] { Tab().CmdCopyAll.UserClick(); });
  }
  desktop_.ExpectInput(kAsk, "357218");
  desktop_.Expect("Подтвердите очистку ВСЕХ панелей!", BoxAnswer::kCancel, BoxIcon::kQuestion);
  Do([&] { Tab().CmdClrAll.UserClick(); });
  EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM HOTKEYS WHERE CODE=ID"), "2160");
  Do([&] { Tab().DataGrid12.UserRow(9); });
  desktop_.ExpectInput(kAsk, "357218");
  desktop_.Expect("Подтвердите очистку ВСЕХ панелей!", BoxAnswer::kOk);
  Do([&] { Tab().CmdClrAll.UserClick(); });
  EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM HOTKEYS WHERE CODE=0"), "2160");
  EXPECT_EQ(Tab().DataGrid12.Row(), 9);
  EXPECT_EQ(KeyOf(9).Caption(), "");
}

TEST_F(Panels, LevelsAreCopiedWholeAndShownByTheirButtons) {
  shop_.Sql("UPDATE CONST SET T9=NULL,N1='не панель' WHERE COD=14");
  shop_.Sql("UPDATE CONST SET T9='Бар' WHERE COD=1");
  shop_.Sql("UPDATE CONST SET N2='Летнее' WHERE COD=7");
  shop_.Sql("UPDATE HOTKEYS SET CODE=10 WHERE ID IN (101,103,130)");
  shop_.Sql("UPDATE HOTKEYS SET CODE=20 WHERE REZ=14 AND LV=2");
  InCopying([this](FormCopy& form) {
    EXPECT_EQ(Green(form), "101 214 ");
    EXPECT_EQ(form.LabelPan[0].Caption(), "  Бар");
    EXPECT_EQ(form.LabelPan[13].Caption(), "  Панель № 2");
    EXPECT_EQ(form.LabelMenu[0].Caption(), "меню-1");
    EXPECT_EQ(form.LabelMenu[1].Caption(), "Летнее");
    EXPECT_EQ(form.Label2.Caption(), "C:/Korvina/hotkeys.txt");

    Button& bar = form.CmdPan[0][0];
    Button& full = form.CmdPan[1][13];
    desktop_.UserAction([&] { bar.UserDrag(bar); });  // no question
    const std::string question =
        "Дублировать все данные \n\rиз панели Бар уровень 1\n\rв панель Панель № 2 уровень 2 ?";
    desktop_.Expect(question, BoxAnswer::kCancel, BoxIcon::kQuestion);
    desktop_.UserAction([&] { bar.UserDrag(full); });
    EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM HOTKEYS WHERE CODE=20"), "30");
    desktop_.Expect(question, BoxAnswer::kOk, BoxIcon::kQuestion);
    desktop_.UserAction([&] { bar.UserDrag(full); });
    EXPECT_EQ(shop_.Rows("SELECT ID,CODE FROM HOTKEYS WHERE REZ=14 AND CODE<>0 ORDER BY ID"),
              (Rows{{"1431", "10"}, {"1433", "10"}, {"1460", "10"}}));

    // An empty level onto a full one empties it.
    desktop_.Expect("Дублировать все данные \n\rиз панели резерв уровень 3\n\rв панель Панель № 2 уровень 2 ?");
    desktop_.UserAction([&] { form.CmdPan[2][23].UserDrag(full); });
    EXPECT_EQ(Green(form), "101 ");
    EXPECT_EQ(shop_.Rows(kFilledKeys), (Rows{{"101", "10"}, {"103", "10"}, {"130", "10"}}));

    // What another work place does is seen at the button's word.
    shop_.Sql("UPDATE HOTKEYS SET CODE=5 WHERE ID=2490");
    desktop_.UserAction([&] { form.CmrRefr.UserClick(); });
    EXPECT_EQ(Green(form), "101 324 ");
  });
}

TEST_F(Panels, TheLayoutGoesThroughTheFileAndBack) {
  // Every key of both menus has a product of its own, but for a few.
  shop_.Sql("UPDATE HOTKEYS SET CODE=ID*7 WHERE ID MOD 5 <> 0");
  const Rows whole = shop_.Rows(kAllCodes);
  const Rows filled = shop_.Rows(kFilledKeys);
  InCopying([&](FormCopy& form) {
    desktop_.Expect("Выгружен файл 'C:/Korvina/hotkeys.txt'");
    desktop_.UserAction([&] { form.CmdExportMenu.UserClick(); });
    std::ifstream file(LayoutFile(), std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    std::string expected;
    for (const auto& row : filled) expected += row[0] + "," + row[1] + "\r\n";
    EXPECT_EQ(text, expected);

    shop_.Sql("UPDATE HOTKEYS SET CODE=1");
    Import(form);
    EXPECT_EQ(shop_.Rows(kAllCodes), whole);
    EXPECT_EQ(form.CmdPan[2][23].BackColor(), 49152U);
  });
  EXPECT_EQ(KeyOf(1).Caption(), "707");  // seen in the editor at once

  // A layout without products gives an empty file, and that empties every key.
  shop_.Sql("UPDATE HOTKEYS SET CODE=0");
  InCopying([&](FormCopy& form) {
    desktop_.Expect("Выгружен файл 'C:/Korvina/hotkeys.txt'");
    desktop_.UserAction([&] { form.CmdExportMenu.UserClick(); });
    EXPECT_EQ(std::filesystem::file_size(LayoutFile()), 0U);
    shop_.Sql("UPDATE HOTKEYS SET CODE=3");
    Import(form);
    EXPECT_EQ(shop_.Rows(kFilledKeys), Rows{});
  });
}

TEST_F(Panels, LayoutFilesOfOtherHands) {
  struct Sample {
    const char* text;
    bool good;
    Rows filled;  ///< after the import; a broken file leaves the layout as it was
  };
  const Sample kSamples[] = {
      {"101,7\r\n2490,8\r\n", true, {{"101", "7"}, {"2490", "8"}}},
      {"101,7\n2490,8", true, {{"101", "7"}, {"2490", "8"}}},
      {" 101 , 7 \n\n   \n102,0\n", true, {{"101", "7"}}},
      {"101,7\n101,9\n", true, {{"101", "9"}}},                        // the last line of a key counts
      {"100,7\n191,7\n99999,7\n-3,7\n103,6\n", true, {{"103", "6"}}},  // rows that aren't there
      {"101;7\n", false, {}},
      {"101,\n", false, {}},
      {",7\n", false, {}},
      {"101,7\n102\n", false, {}},
      {"101,7,8\n", false, {}},
      {"101,7x\n", false, {}},
      {"101,7.5\n", false, {}},
      {"101,99999999999\n", false, {}},
      {"чай,кофе\n", false, {}},
  };
  for (const Sample& sample : kSamples) {
    SCOPED_TRACE(sample.text);
    shop_.Sql("UPDATE HOTKEYS SET CODE=0");
    shop_.Sql("UPDATE HOTKEYS SET CODE=55 WHERE ID=500+30");
    std::ofstream(LayoutFile(), std::ios::binary) << sample.text;
    InCopying([&](FormCopy& form) {
      if (!sample.good) desktop_.ExpectRuntimeError();
      Import(form, sample.good);
    });
    EXPECT_EQ(shop_.Rows(kFilledKeys), sample.good ? sample.filled : (Rows{{"530", "55"}}));
  }
}

TEST_F(Panels, NoFile) {
  shop_.Sql("UPDATE HOTKEYS SET CODE=55 WHERE ID=530");
  InCopying([&](FormCopy& form) {
    Import(form, false);  // without a file nothing follows the question
    desktop_.Expect("Загрузить новую раскладку меню\n\rиз файла 'C:/Korvina/hotkeys.txt' ?", BoxAnswer::kCancel);
    desktop_.UserAction([&] { form.CmdImportMenu.UserClick(); });
    EXPECT_EQ(shop_.Rows(kFilledKeys), (Rows{{"530", "55"}}));

    // A folder of that name can neither be read nor replaced.
    std::filesystem::create_directories(LayoutFile());
    desktop_.ExpectRuntimeError();
    Import(form, false);
    desktop_.ExpectRuntimeError();
    desktop_.UserAction([&] { form.CmdExportMenu.UserClick(); });
    EXPECT_EQ(shop_.Rows(kFilledKeys), (Rows{{"530", "55"}}));
    std::filesystem::remove_all(LayoutFile());
  });
}

/// The window comes up all the same, and what is done in it is seen in the editor.
TEST_F(Panels, TheWindowForCopyingWithoutItsNames) {
  shop_.Sql("UPDATE HOTKEYS SET CODE=10 WHERE ID=201");
  FormCopy& form = app_->PanelCopy;
  desktop_.ExpectInput("Введите пароль администратора:", "357218");
  faults_.FailAt(1);
  Fails([&] { Tab().CmdCopyAll.UserClick(); });
  ASSERT_TRUE(form.IsVisible());
  desktop_.Expect("Дублировать все данные \n\rиз панели Панель № 2 уровень 1\n\rв панель Панель № 1 уровень 1 ?");
  Do([&] { form.CmdPan[0][1].UserDrag(form.CmdPan[0][0]); });
  EXPECT_EQ(KeyOf(1).Caption(), "");
  Do([&] { desktop_.PressKey(form.CmrRefr, {Key::kEscape, {}}); });
  EXPECT_FALSE(form.IsVisible());
  EXPECT_EQ(KeyOf(1).Caption(), "10");
}

}  // namespace
}  // namespace zrt
