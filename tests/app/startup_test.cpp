#include <fmt/format.h>
#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "app/app.h"
#include "platform/settings_file.h"
#include "support/scripted_desktop.h"
#include "support/scripted_faults.h"
#include "support/temporary_folder.h"
#include "support/test_database.h"

namespace zrt {
namespace {

using test::FixedClock;
using test::ScriptedDesktop;
using test::ScriptedFaults;
using test::Stage;
using test::TestDatabase;

/// A whole program on a base of the newest version, in the normal mode unless a test says otherwise.
class Startup : public testing::Test {
 protected:
  void Start() { Start(database_.Address()); }

  void Start(const DatabaseAddress& address) {
    app_ = std::make_unique<App>(desktop_, clock_, drives_, AppSettings{address, "zrt"});
    app_->TheSession.MainConnection.SetFaultSource(&faults_);
    app_->Start();
    desktop_.UserAction([this] { app_->Splash.Timer1.UserFire(); });
    desktop_.CheckAllCame();
  }

  TestDatabase database_{Stage::kPlain};
  FixedClock clock_{{{2026, 11, 12}, 10, 0, 0}};
  test::TemporaryFolder folder_;
  DriveMap drives_{folder_.Path()};
  ScriptedDesktop desktop_;
  ScriptedFaults faults_;
  std::unique_ptr<App> app_;
};

TEST_F(Startup, StatementsGoOutInTheirOrder) {
  database_.Sql("UPDATE CONST SET N8=8 WHERE COD=5");
  Start();
  const std::pair<const char*, const char*> kExpected[] = {
      {"SELECT N8 FROM CONST WHERE COD=5", ""},
      {"SELECT N6 FROM CONST WHERE COD=6", ""},
      {"SELECT COD, T9 FROM CONST WHERE COD BETWEEN 1 AND 12", ""},
      {"SELECT N2 FROM CONST WHERE COD=3", ""},
      {"SELECT N1,N2 FROM CONST WHERE COD=7", ""},
      {"SELECT N3 FROM CONST WHERE COD=7", ""},
      {"SELECT COD As 'Cod',NAME As 'Name',ROUND(PRISE/100,2)", " FROM TOVAR GROUP BY COD ORDER BY NAME"},
      {"SELECT SPION.COD As 'Cod'", " WHERE SPION.TER=0"},
      {"SELECT KASSA.TER As 'Ter'", " AND KASSA.TER=0 GROUP BY KASSA.NUM ORDER BY PROD.DATETIME"},
      {"SELECT COD As 'Cod',NAME As 'Name',ROUND(KOL/1000,3)",
       " FROM PROD WHERE DATETIME > '2026-11-12 08:00:00' AND DATETIME < '2026-11-13 07:59:59' ORDER BY DATETIME"},
      {"SELECT ROUND(KASSA.SUM1,2) As 'Summ'",
       " AND PROD.DATETIME > '2026-11-12 08:00:00' AND PROD.DATETIME < '2026-11-13 07:59:59' GROUP BY KASSA.NUM ORDER "
       "BY PROD.DATETIME"},
      {"SELECT SUM(KOL*PRISE/1000-SKID) FROM PROD WHERE DATETIME > '2026-11-12 08:00:00'", " ORDER BY DATETIME"},
      {"SELECT * FROM HOTKEYS WHERE REZ=1", ""},
      {"SELECT REZ As 'Num',BARCODE As 'CardBarcode',PROZ As 'Type' FROM DISCOUNT ORDER BY REZ", ""},
      {"SELECT ID,CARD,TOV,PROZ,TOTAL FROM TOTALSKID ORDER BY CARD", ""},
      {"SELECT COD As 'Cod',NAME As 'Person',DATETIME As 'Card',NUM As 'Acs' FROM KLIENT ORDER BY NAME", ""},
      {"SELECT HOTKEYS.ID As 'id'", " WHERE HOTKEYS.REZ=1 AND HOTKEYS.LV=1 GROUP BY id ORDER BY id"},
      {"SELECT T9 FROM CONST WHERE COD=1", ""},
      {"SELECT DATABASE(),@@collation_database", ""},
  };
  const std::vector<std::string>& sent = faults_.Statements();
  ASSERT_EQ(sent.size(), std::size(kExpected));
  for (std::size_t i = 0; i < sent.size(); ++i) {
    EXPECT_TRUE(sent[i].starts_with(kExpected[i].first)) << sent[i];
    EXPECT_TRUE(sent[i].ends_with(kExpected[i].second)) << sent[i];
  }
}

TEST_F(Startup, EndsOnTheCurrentShiftWithTheFirstPanel) {
  Start();
  EXPECT_TRUE(app_->IsRunning());
  EXPECT_TRUE(app_->Main.IsVisible());
  EXPECT_FALSE(app_->Splash.IsLoaded());
  EXPECT_EQ(app_->Main.Sales.Combo1.Text(), "");  // the hour isn't set: the shift is the calendar day
  EXPECT_EQ(app_->TheSession.ShiftPeriod.To, "2026-11-12 23:59:59");
  EXPECT_EQ(app_->Main.Sales.Combo1.Items().size(), 24U);
  EXPECT_EQ(app_->Main.Sales.Combo2.Text(), "Всего");
  EXPECT_TRUE(app_->Main.Panels.Option1[0].Value());
  EXPECT_TRUE(app_->Main.Panels.Option2[0].Value());
  EXPECT_EQ(app_->TheSession.Pool().RsPanels.Bookmark(), 1);
  EXPECT_EQ(app_->TheSession.UdlPath, "C:\\KORVINA.udl");
  EXPECT_FALSE(app_->TheSession.PeriodAll);
}

TEST_F(Startup, WithoutAServerItSaysSoAndEndsWithAnError) {
  DatabaseAddress nowhere = database_.Address();
  nowhere.host = "127.0.0.254";
  DatabaseAddress stranger = database_.Address();
  stranger.account = "nobody";
  DatabaseAddress elsewhere = database_.Address();
  elsewhere.schema = "zrt_no_such_schema";
  for (const auto& [address, advice] :
       {std::pair{nowhere, "не отвечает"}, {stranger, "не пускает"}, {elsewhere, "Установка, шаг 2"}}) {
    desktop_.Expect("Нет соединения с Базой Данных!", BoxAnswer::kOk, BoxIcon::kCritical);
    desktop_.ExpectRuntimeError();
    Start(address);
    EXPECT_FALSE(app_->IsRunning());
    EXPECT_FALSE(app_->TheSession.IsConnected());
    EXPECT_FALSE(app_->Splash.Timer1.Enabled()) << "it starts once, however long a box stands";
    EXPECT_NE(desktop_.LastMessage().details.find(advice), std::string::npos) << desktop_.LastMessage().details;
    EXPECT_EQ(desktop_.ExitCode(), 1);
    app_.reset();
  }
}

TEST_F(Startup, ASchemaOfAnotherCharacterSetIsNamedToTheHelperAlone) {
  database_.Sql("ALTER DATABASE CHARACTER SET utf8mb4");
  testing::internal::CaptureStderr();
  Start();
  EXPECT_NE(testing::internal::GetCapturedStderr().find("` CHARACTER SET latin1 COLLATE latin1_bin;"),
            std::string::npos);
}

TEST_F(Startup, OperatingModes) {
  struct Mode {
    const char* stored;
    bool full_edit, lite, with_register;
    std::vector<std::string> tabs;
  };
  const Mode kModes[] = {
      {"0", true, false, false, {"prod", "report", "sprav", "sensor"}},
      {"1", true, true, false, {"kassa", "sprav", "sensor"}},
      {"-1", true, false, true, {"prod", "report", "sprav", "sensor", "jurn"}},
      {"2", false, false, false, {"prod", "report", "sprav", "sensor"}},
      {"-2", false, false, false, {"prod", "report", "sprav", "sensor"}},
      {"''", false, false, false, {"prod", "report", "sprav", "sensor"}},
      {"'x'", false, false, false, {"prod", "report", "sprav", "sensor"}},
      {"'1.4'", false, false, false, {"prod", "report", "sprav", "sensor"}},
  };
  TestDatabase with_documents(Stage::kRegister);
  for (const Mode& mode : kModes) {
    SCOPED_TRACE(mode.stored);
    with_documents.Sql(std::string("UPDATE CONST SET N3=") + mode.stored + " WHERE COD=7");
    Start(with_documents.Address());
    EXPECT_EQ(app_->TheSession.FullEditMode, mode.full_edit);
    EXPECT_EQ(app_->TheSession.LiteMode, mode.lite);
    EXPECT_EQ(app_->TheSession.RegisterEnabled, mode.with_register);
    std::vector<std::string> keys;
    for (const Tab& tab : app_->Main.TabStrip1.Tabs()) keys.push_back(tab.key);
    EXPECT_EQ(keys, mode.tabs);
    app_.reset();
  }
}

TEST_F(Startup, TheRegisterIsOfferedOnceAndRefusingIsRemembered) {
  database_.Sql("UPDATE CONST SET N3=NULL WHERE COD=7");
  desktop_.Expect("Создать регистр остатков?", BoxAnswer::kCancel);
  Start();
  EXPECT_FALSE(app_->TheSession.RegisterEnabled);
  EXPECT_TRUE(app_->TheSession.FullEditMode);
  EXPECT_EQ(database_.Value("SELECT N3 FROM CONST WHERE COD=7"), "0");
  app_.reset();
  Start();
}

TEST_F(Startup, TheWrongAnswerAboutTheServersVersionEndsTheStart) {
  database_.Sql("UPDATE CONST SET N3=NULL WHERE COD=7");
  desktop_.Expect("Создать регистр остатков?", BoxAnswer::kOk);
  desktop_.Expect("Версия сервера MySQL 4.0.12 ?", BoxAnswer::kYes, BoxIcon::kQuestion);
  desktop_.ExpectRuntimeError();
  Start();
  EXPECT_EQ(desktop_.LastMessage().usual, BoxAnswer::kNo) << "Enter gives the right answer";
  EXPECT_EQ(desktop_.ExitCode(), 1);
  EXPECT_EQ(database_.Value("SELECT N3 FROM CONST WHERE COD=7"), "NULL");  // the question comes again
}

TEST_F(Startup, AnUpgradeThatFailsLeavesTheProgramOnTheVersionReached) {
  TestDatabase old(Stage::kVersion0);
  for (int block = 1; block <= 2; ++block)
    desktop_.Expect("База данных успешно обновлена до версии " + std::to_string(block));
  desktop_.Expect("Ошибка обновления базы данных!", BoxAnswer::kOk, BoxIcon::kCritical);
  desktop_.Expect("Создать регистр остатков?", BoxAnswer::kCancel);
  // The catalogue asks for a column that only version 4 has.
  desktop_.Expect("Неправильно введена дата!", BoxAnswer::kOk, BoxIcon::kCritical);
  // The third block meets keys that somebody has put there before it.
  old.Sql("ALTER TABLE HOTKEYS ADD UNIQUE KEY (ID)");
  old.Sql("INSERT INTO HOTKEYS (ID,CODE,REZ) VALUES (1301,0,13)");
  Start(old.Address());
  EXPECT_EQ(app_->TheSession.DbVersion, 2);
  EXPECT_EQ(app_->TheSession.CurrentMenu, 0);
  EXPECT_EQ(app_->Main.Panels.TextMenu.Text(), "Меню1");
  EXPECT_FALSE(app_->Main.Panels.TextMenu.Enabled());
  EXPECT_FALSE(app_->Main.Panels.CmdMenu.Visible());
  EXPECT_FALSE(app_->Main.Panels.CmdCopyAll.Visible());
}

TEST_F(Startup, PanelAndMenuNames) {
  database_.Sql("UPDATE CONST SET T9=NULL WHERE COD=1");
  database_.Sql("UPDATE CONST SET T9='' WHERE COD=2");
  database_.Sql("UPDATE CONST SET T9='Бар' WHERE COD=12");
  database_.Sql("UPDATE CONST SET T9='другое меню' WHERE COD=13");
  database_.Sql("UPDATE CONST SET N1='Летнее' WHERE COD=7");
  Start();
  EXPECT_EQ(app_->Main.Panels.Option1[0].Caption(), "Панель № 1");
  EXPECT_EQ(app_->Main.Panels.Option1[1].Caption(), "Панель № 2");
  EXPECT_EQ(app_->Main.Panels.Option1[11].Caption(), "Бар");
  EXPECT_EQ(app_->Main.Panels.TextName.Text(), "");
  EXPECT_EQ(app_->Main.Panels.TextMenu.Text(), "Летнее");
  EXPECT_EQ(app_->Main.Panels.CmdMenu.Caption_2(), "меню-2");
}

TEST_F(Startup, KeysArePaintedByWhatStandsOnThem) {
  database_.Sql(
      "INSERT INTO TOVAR (COD,COD1,NAME,OST,KOL,PRISE,BARCODE,N7) VALUES (10,1,'Чай',0,0,5000,'0',0),"
      "(11,1,'Пиво 0,5',0,0,9000,'0',500),(12,1,'Без цены',0,0,0,'0',0)");
  const std::pair<int, int> kOnKeys[] = {{101, 10}, {102, 11}, {103, 12}, {104, 99}, {130, 10}, {131, 10}};
  for (const auto& [id, code] : kOnKeys) {
    database_.Sql(fmt::format("UPDATE HOTKEYS SET CODE={} WHERE ID={}", code, id));
  }
  Start();
  struct Painted {
    int key;
    const char* caption;
    Colour colour;
    bool bold;
    const char* tip;
  };
  const Painted kPainted[] = {
      {1, "10", 0x00FF00, false, "Чай"},    {2, "11", 0x00FF00, true, "Пиво 0,5"},
      {3, "12", 0xFFFF, false, "Без цены"}, {4, "99", 0xFF, false, "ТОВАРА НЕТ В СПРАВОЧНИКЕ !!!"},
      {5, "", 0x8000000E, false, ""},       {30, "10", 0xFF0000, false, "ДУБЛИРОВАН"}};
  for (const Painted& expected : kPainted) {
    const Button& key = app_->Main.Panels.CmdM.at(static_cast<std::size_t>(expected.key - 1));
    EXPECT_EQ(key.Caption(), expected.caption) << expected.key;
    EXPECT_EQ(key.BackColor(), expected.colour) << expected.key;
    EXPECT_EQ(key.FontBold(), expected.bold) << expected.key;
    EXPECT_EQ(key.ToolTipText(), expected.tip) << expected.key;
  }
  // A level that has lost a row is listed, and the keys keep what they show.
  database_.Sql("DELETE FROM HOTKEYS WHERE ID=131");
  desktop_.UserAction([this] { app_->Main.Panels.LoadPanelKeys(1, 2, 0); });
  EXPECT_EQ(app_->Main.Panels.DataGrid12.Rows(), 29);
  EXPECT_EQ(app_->Main.Panels.CmdM[0].Caption(), "10");
  desktop_.UserAction([this] { app_->Main.Panels.LoadPanelKeys(1, 3, 7); });
  EXPECT_EQ(app_->Main.Panels.DataGrid12.Row(), 8);
  EXPECT_EQ(app_->Main.Panels.CmdM[0].Caption(), "");
}

TEST_F(Startup, TheDataLinkOfThisProgramComesFromTheSettingsFile) {
  drives_ = DriveMap(testing::TempDir() + "zrt_settings");
  const std::filesystem::path file = drives_.ToNative(kSettingsFile);
  std::filesystem::remove_all(file);
  std::filesystem::create_directories(file.parent_path());
  std::ofstream(file) << "kassa,C:\\kassa.udl\r\nzrt,C:\\shop.udl\r\n";
  Start();
  EXPECT_EQ(app_->TheSession.UdlPath, "C:\\shop.udl");
  app_.reset();

  // A file that can't be read ends the start before the main window is there.
  std::filesystem::remove(file);
  std::filesystem::create_directories(file);
  desktop_.ExpectRuntimeError();
  Start();
  EXPECT_FALSE(app_->Main.IsLoaded());
  EXPECT_EQ(desktop_.ExitCode(), 1);
}

TEST_F(Startup, WindowsThatGiveWayToATab) {
  Start();
  const std::pair<Form*, const char*> kGivesWayTo[] = {
      {&app_->Reports.TextReports, "sprav"}, {&app_->Reports.Staff, "report"}, {&app_->About, "report"},
      {&app_->Exchange, "report"},           {&app_->Clear, "report"},         {&app_->Reports.Time, ""}};
  for (const char* tab : {"report", "sprav"}) {
    for (const auto& [form, key] : kGivesWayTo) desktop_.UserAction([&, one = form] { one->Show(); });
    desktop_.UserAction([&] { app_->Main.TabStrip1.UserChoose(tab); });
    for (const auto& [form, key] : kGivesWayTo) {
      EXPECT_NE(form->IsVisible(), key == std::string("report") || key == std::string(tab)) << form->Name() << tab;
    }
  }
}

TEST_F(Startup, StoppingClosesEverything) {
  Start();
  desktop_.UserAction([this] { app_->Main.mnuAbout.UserClick(); });
  EXPECT_TRUE(app_->About.IsVisible());
  desktop_.UserAction([this] { app_->Main.Close(); });
  EXPECT_TRUE(desktop_.LoadedForms().empty());
  EXPECT_FALSE(app_->TheSession.MainConnection.IsOpen());
  EXPECT_FALSE(app_->TheSession.IsConnected());
  EXPECT_EQ(desktop_.ExitCode(), 0);
}

}  // namespace
}  // namespace zrt
