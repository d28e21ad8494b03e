#include <fmt/format.h>

#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "platform/settings_file.h"
#include "support/program_test.h"

namespace zrt {
namespace {

using test::ProgramTest;
using test::Stage;
using test::TestDatabase;

/// A whole program on a base of the newest version, in the normal mode unless a test says otherwise.
class Startup : public ProgramTest {
 protected:
  explicit Startup(Stage stage = Stage::kPlain) : ProgramTest(stage) {}

  /// On another base, with the statements of the start.
  void StartOn(const DatabaseAddress& address) {
    app_ = std::make_unique<App>(desktop_, clock_, drives_, AppSettings{address, "zrt"});
    app_->TheSession.MainConnection.SetFaultSource(&faults_);
    app_->Start();
    Do([this] { app_->Splash.Timer1.UserFire(); });
  }
};

TEST_F(Startup, StatementsGoOutInTheirOrder) {
  StartOn(shop_.Address());
  std::string tables;
  for (const std::string& statement : faults_.Statements()) {
    const std::size_t from = statement.find(" FROM ");
    if (from == std::string::npos) continue;
    std::istringstream rest(statement.substr(from + 6));
    std::string table, next;
    rest >> table;
    while (rest >> next && !next.starts_with("COD=") && next != "BETWEEN") continue;  // the row of the settings
    tables += table + (table == "CONST" ? next.substr(next.find('=') + 1) : "") + " ";
  }
  EXPECT_EQ(tables,
            "CONST5 CONST6 CONSTBETWEEN CONST3 CONST7 CONST7 TOVAR SPION KASSA PROD KASSA, PROD HOTKEYS DISCOUNT "
            "TOTALSKID KLIENT HOTKEYS,TOVAR CONST1 ");
}

TEST_F(Startup, WithoutAServerItSaysSoAndEndsWithAnError) {
  DatabaseAddress nowhere = shop_.Address(), stranger = nowhere, elsewhere = nowhere;
  nowhere.host = "127.0.0.254";
  stranger.account = "nobody";
  elsewhere.schema = "zrt_no_such_schema";
  for (const auto& [address, advice] :
       {std::pair{nowhere, "не отвечает"}, {stranger, "не пускает"}, {elsewhere, "Установка, шаг 2"}}) {
    desktop_.Expect("Нет соединения с Базой Данных!", BoxAnswer::kOk, BoxIcon::kCritical);
    desktop_.ExpectRuntimeError();
    StartOn(address);
    EXPECT_FALSE(app_->IsRunning());
    EXPECT_FALSE(app_->TheSession.IsConnected());
    EXPECT_FALSE(app_->Splash.Timer1.Enabled()) << "it starts once, however long a box stands";
    EXPECT_NE(desktop_.LastMessage().details.find(advice), std::string::npos) << desktop_.LastMessage().details;
    EXPECT_EQ(desktop_.ExitCode(), 1);
    app_.reset();
  }
}

TEST_F(Startup, ASchemaOfAnotherCharacterSetIsNamedToTheHelperAlone) {
  shop_.Sql("ALTER DATABASE CHARACTER SET utf8mb4");
  testing::internal::CaptureStderr();
  Start();
  EXPECT_NE(testing::internal::GetCapturedStderr().find("` CHARACTER SET latin1 COLLATE latin1_bin;"),
            std::string::npos);
}

TEST_F(Startup, OperatingModes) {
  struct Mode {
    const char* stored;
    bool full_edit, lite, with_register;
    const char* tabs;
  };
  const char* const kTabs = "prod report sprav sensor ";
  const Mode kModes[] = {{"0", true, false, false, kTabs},
                         {"1", true, true, false, "kassa sprav sensor "},
                         {"-1", true, false, true, "prod report sprav sensor jurn "},
                         {"-2", false, false, false, kTabs},
                         {"''", false, false, false, kTabs},
                         {"'1.4'", false, false, false, kTabs}};
  TestDatabase with_documents(Stage::kRegister);
  for (const Mode& mode : kModes) {
    SCOPED_TRACE(mode.stored);
    with_documents.Sql(fmt::format("UPDATE CONST SET N3={} WHERE COD=7", mode.stored));
    StartOn(with_documents.Address());
    EXPECT_EQ(app_->TheSession.FullEditMode, mode.full_edit);
    EXPECT_EQ(app_->TheSession.LiteMode, mode.lite);
    EXPECT_EQ(app_->TheSession.RegisterEnabled, mode.with_register);
    std::string keys;
    for (const auto& tab : app_->Main.TabStrip1.Tabs()) keys += tab.key + " ";
    EXPECT_EQ(keys, mode.tabs);
    app_.reset();
  }
}

TEST_F(Startup, TheRegisterIsOfferedOnceAndRefusingIsRemembered) {
  shop_.Sql("UPDATE CONST SET N3=NULL WHERE COD=7");
  desktop_.Expect("Создать регистр остатков?", BoxAnswer::kCancel);
  Start();
  EXPECT_FALSE(app_->TheSession.RegisterEnabled);
  EXPECT_TRUE(app_->TheSession.FullEditMode);
  EXPECT_EQ(shop_.Value("SELECT N3 FROM CONST WHERE COD=7"), "0");
  app_.reset();
  Start();
}

TEST_F(Startup, TheWrongAnswerAboutTheServersVersionEndsTheStart) {
  shop_.Sql("UPDATE CONST SET N3=NULL WHERE COD=7");
  desktop_.Expect("Создать регистр остатков?", BoxAnswer::kOk);
  desktop_.Expect("Версия сервера MySQL 4.0.12 ?", BoxAnswer::kYes, BoxIcon::kQuestion);
  desktop_.ExpectRuntimeError();
  Start();
  EXPECT_EQ(desktop_.LastMessage().usual, BoxAnswer::kNo) << "Enter gives the right answer";
  EXPECT_EQ(desktop_.ExitCode(), 1);
  EXPECT_EQ(shop_.Value("SELECT N3 FROM CONST WHERE COD=7"), "NULL");  // the question comes again
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
  StartOn(old.Address());
  const PanelTab& panels = app_->Main.Panels;
  EXPECT_EQ(app_->TheSession.DbVersion, 2);
  EXPECT_EQ(app_->TheSession.CurrentMenu, 0);
  EXPECT_EQ(panels.TextMenu.Text(), "Меню1");
  EXPECT_FALSE(panels.TextMenu.Enabled() || panels.CmdMenu.Visible() || panels.CmdCopyAll.Visible());
  app_.reset();

  // From the third version on there are two menus.
  TestDatabase newer(Stage::kVersion0);
  for (int block = 1; block <= 3; ++block)
    desktop_.Expect("База данных успешно обновлена до версии " + std::to_string(block));
  desktop_.Expect("Ошибка обновления базы данных!", BoxAnswer::kOk, BoxIcon::kCritical);
  desktop_.Expect("Создать регистр остатков?", BoxAnswer::kCancel);
  newer.Sql("ALTER TABLE PROD ADD N8 int");
  StartOn(newer.Address());
  EXPECT_EQ(app_->TheSession.CurrentMenu, 1);
}

TEST_F(Startup, TheDataLinkOfThisProgramComesFromTheSettingsFile) {
  Start();
  EXPECT_EQ(app_->TheSession.UdlPath, "C:\\KORVINA.udl");
  EXPECT_FALSE(app_->Splash.IsLoaded());
  app_.reset();
  WriteFile(std::string(kSettingsFile), "kassa,C:\\kassa.udl\r\nzrt,C:\\shop.udl\r\n");
  Start();
  EXPECT_EQ(app_->TheSession.UdlPath, "C:\\shop.udl");
  app_.reset();

  // A file that can't be read ends the start before the main window is there.
  std::filesystem::remove(drives_.ToNative(kSettingsFile));
  std::filesystem::create_directories(drives_.ToNative(kSettingsFile));
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
  for (const char* tab : {"sprav", "report"}) {
    for (const auto& [form, key] : kGivesWayTo) Do([&, one = form] { one->Show(); });
    Type(app_->Main.TabStrip1, tab);
    EXPECT_EQ(app_->Main.Sales.FrameProd.Visible(), tab == std::string("report"));
    for (const auto& [form, key] : kGivesWayTo) {
      EXPECT_NE(form->IsVisible(), key == std::string("report") || key == std::string(tab)) << form->Name() << tab;
    }
  }
}

class StartupWithDocuments : public Startup {
 protected:
  StartupWithDocuments() : Startup(Stage::kRegister) {}
};

TEST_F(StartupWithDocuments, StoppingUnloadsAllWindowsBeforeItLetsGoOfTheServer) {
  shop_.Sql("INSERT INTO TOVAR (COD,COD1,NAME) VALUES (1,1,'Чай')");
  Start("jurn");
  Click(app_->Main.mnuAbout);
  Click(app_->Main.mnuDocPERplus);
  Do([&] { app_->Stock.BroadcastToForm(1, 1000, 5000, static_cast<std::uint8_t>(DocType::kTransferIn)); });
  EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM DOCUMENT"), "1");
  Do([this] { app_->Main.Close(); });
  EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM DOCUMENT"), "0");  // a document takes its lines along
  EXPECT_TRUE(desktop_.LoadedForms().empty());
  EXPECT_FALSE(app_->TheSession.MainConnection.IsOpen());
  EXPECT_FALSE(app_->TheSession.IsConnected());
  EXPECT_EQ(desktop_.ExitCode(), 0);
}

}  // namespace
}  // namespace zrt
