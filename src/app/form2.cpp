#include "app/form2.h"

#include <array>
#include <cstdint>
#include <iostream>
#include <optional>
#include <string_view>

#include "core/errors.h"
#include "core/numbers.h"
#include "core/schema.h"
#include "core/shift_hour.h"
#include "ui/desktop.h"

namespace zrt {

namespace {

/// The schema routines speak to the operator through the desktop's boxes.
class DesktopSchemaDialog final : public SchemaDialog {
 public:
  explicit DesktopSchemaDialog(Desktop& desktop) : desktop_(desktop) {}
  void Tell(std::string_view text) override { desktop_.MsgBox(std::string(text)); }
  void Warn(std::string_view text, const DatabaseError& failure) override {
    desktop_.TellFailure(std::string(text), failure);
  }
  bool AskYesNo(std::string_view text, bool usual) override {
    return desktop_.MsgBox(Message{.text = std::string(text),
                                   .icon = BoxIcon::kQuestion,
                                   .buttons = BoxButtons::kYesNo,
                                   .usual = usual ? BoxAnswer::kYes : BoxAnswer::kNo}) == BoxAnswer::kYes;
  }

 private:
  Desktop& desktop_;
};

/// Windows that give way when a tab is chosen; those named after "report" stay.
constexpr std::array kHiddenByTabs = {"Form9", "FormTab", "frmSplash", "frmExpImp", "frmClear"};
constexpr std::uint8_t kVersionWithTwoMenus = 3;

}  // namespace

Form2::Form2(Desktop& desktop, Session& session, ModuleReg& stock, const DriveMap& drives, std::string executable,
             Screens screens, std::function<void()> shutdown)
    : Form(desktop, "Form2"),
      Sales(*this, session, drives),
      KassaLite(*this, session),
      Catalogue(*this, session, stock, screens.ProductCard),
      Cards(*this, session, screens.DiscountCard, screens.CardKinds),
      Panels(*this, session, screens.PanelCopy),
      Journal(*this, session, screens.StockDocuments),
      session_(session),
      executable_(std::move(executable)),
      screens_(screens),
      shutdown_(std::move(shutdown)) {
  Load = [this] { Form_Load(); };
  Activate = [this] { Form_Activate(); };
  Unload = [this] { shutdown_(); };
  TabStrip1.Click = [this] { TabStrip1_Click(); };
  Check1.Click = [this] { Check1_Click(); };
  const std::pair<Menu*, DocType> documents[] = {
      {&mnuDocDO, DocType::kDailyReport},     {&mnuDocPN, DocType::kIncoming},
      {&mnuDocRN, DocType::kOutgoing},        {&mnuDocSP, DocType::kWriteOff},
      {&mnuDocIN, DocType::kInventory},       {&mnuPereozenk, DocType::kPriceChange},
      {&mnuDocPERplus, DocType::kTransferIn}, {&mnuDocPERminus, DocType::kTransferOut}};
  for (const auto& [menu, document] : documents) {
    menu->Click = [this, type = document] { screens_.StockDocuments.OpenNew(type); };
  }
  mnuRegistr.Click = [this] { screens_.StockDocuments.Register.Show(); };
  mnuDelOneDoc.Click = [this] { Journal.DeleteOneDoc(); };
  mnuClearDoc.Click = [this] { Journal.DeleteAllDocs(); };
  mnuClearProd.Click = [this] { screens_.Clear.Open(); };
  mnuDelCheck.Click = [this] { screens_.DelChek.Show(); };
  Catalogue.ChooseForPanel = [this] { Panels.ChooseProduct(); };
  Panels.RefreshCatalogue = [this] { Catalogue.DataGrid1[1].Refresh(); };
  Panels.SearchCatalogue = [this](const std::string& text) {
    Catalogue.TextFind[1].Text = "";
    Catalogue.TextFind[1].UserType(text);
    Catalogue.TextFind[1].SetFocus();
  };
  Panels.ClearSearch = [this] { Catalogue.TextFind[1].Text = ""; };
  Catalogue.ImportProducts = [this] { screens_.Import.Open(frmImpTov::kCatalogue); };
  mnuExport.Click = [this] { screens_.Exchange.Show(); };
  mnuAbout.Click = [this] { screens_.About.Show(); };
  KassaLite.CmdDelProdLite.Click = [this] { screens_.ClearLite.Open(); };
  mnuSystem.Click = [this] { screens_.Reports.TextReports.Show(); };
  mnuTabel.Click = [this] { screens_.Reports.Staff.Show(); };
  mnuTabelChk.Click = [this] { screens_.Reports.AverageOrder.Show(); };
  mnuTabelDk.Click = [this] { screens_.Reports.Cards.Show(); };
  mnuReportSaldo.Click = [this] { screens_.Reports.Balances.Show(); };
  mnuReportRun.Click = [this] { screens_.Reports.Movements.Show(); };
  mnuTabelTime.Click = [this] { screens_.Reports.Time.Show(); };
  Complete();
}

void Form2::Form_Load() {
  session_.StartDay = session_.StoredDate = session_.TheClock().Now().date;
  const std::string today = session_.Format().DateText(session_.StoredDate);
  Sales.TextDate.Caption = today;
  KassaLite.TextDateLite.Caption = today;

  ConnectDatabase();

  Panels.ChooseFirst();
  Panels.LoadPanelKeys(Panels.PanelNo, Panels.LevelNo, 0);
  Panels.ShowFirstName();
  Sales.FillCombos();
  KassaLite.FillCombos();
  if (Form* splash = TheDesktop().FindForm("frmSplash1")) splash->Close();
  Sales.Dir1.Path = session_.ReportFolder;
  // For the shop's helper; the operator can't do anything about it.
  if (const std::string remedy = CharacterSetRemedy(session_.MainConnection); !remedy.empty()) {
    std::cerr << "zrt: " << kWrongCharacterSet << " " << remedy << "\n";
  }
}

void Form2::Form_Activate() {
  if (session_.RegisterEnabled) Journal.Refresh();
}

void Form2::ConnectDatabase() {
  try {
    session_.Connect();
  } catch (const DatabaseError& error) {
    TheDesktop().TellFailure("Нет соединения с Базой Данных!", error);
    return;
  }
  InitMainWindow();
}

void Form2::InitMainWindow() {
  Caption = executable_;
  ReadShiftHour();
  ReadReserveStatus();
  Panels.NamePanels();
  UpgradeSchema();
  NameMenus();
  DecideOperatingMode();
  if (session_.LiteMode) EnterLiteMode();
  if (session_.RegisterEnabled) EnableRegister();
  try {
    OpenSets();
  } catch (const Error& error) {
    // Whatever failed: the operator knows this message, and nine times out of ten it was the date.
    TheDesktop().TellFailure("Неправильно введена дата!", error);
  }
}

// A base of the oldest version has neither rows 5 and 6 nor panel names yet; the upgrade that adds them comes after the
// first look at them, so there a missing row counts as NULL.

void Form2::ReadShiftHour() {
  const std::optional<std::string> hour = zrt::ReadShiftHour(session_);
  if (!hour) return;
  Sales.Combo1.Text = *hour;
  KassaLite.Combo3.Text = *hour;
}

void Form2::ReadReserveStatus() {
  const Recordset status = session_.ReadOne("SELECT N6 FROM CONST WHERE COD=6");
  session_.IsReserveCopy = !status.Eof() && !status.IsNull(0);
  if (session_.IsReserveCopy) Caption = Caption() + " = СЕРВЕР ХРАНЕНИЯ ДАННЫХ!";
}

void Form2::UpgradeSchema() {
  const Recordset version = session_.ReadOne("SELECT N2 FROM CONST WHERE COD=3");
  session_.DbVersion = ToByte(version.Field(0).Number());
  DesktopSchemaDialog dialog(TheDesktop());
  UpgradeDatabase(session_, dialog, session_.DbVersion);
  session_.CurrentMenu = session_.DbVersion < kVersionWithTwoMenus ? 0 : 1;
}

void Form2::NameMenus() {
  if (session_.CurrentMenu == 0) {
    Panels.UseSingleMenu();
    return;
  }
  const Recordset names = session_.ReadOne("SELECT N1,N2 FROM CONST WHERE COD=7");
  const auto name = [&](int field, std::string_view otherwise) {
    return names.IsNull(field) ? std::string(otherwise) : names.Field(field).Text();
  };
  Panels.NameMenus(name(0, "меню-1"), name(1, "меню-2"));
}

void Form2::DecideOperatingMode() {
  session_.FullEditMode = session_.LiteMode = session_.RegisterEnabled = false;
  const Recordset settings = session_.ReadOne("SELECT N3 FROM CONST WHERE COD=7");
  const Cell stored = settings.Field(0);
  if (stored.IsNull()) {
    session_.FullEditMode = true;
    session_.RegisterEnabled =
        TheDesktop().MsgBox("Создать регистр остатков?", BoxIcon::kNone, BoxButtons::kOkCancel) == BoxAnswer::kOk;
    DesktopSchemaDialog dialog(TheDesktop());
    CreateDocumentTables(session_, dialog, session_.RegisterEnabled);
    return;
  }
  // The column is a text, and whatever it holds besides these three restricts the program: it must start all the same.
  const std::string mode = stored.Text();
  session_.LiteMode = mode == "1";
  session_.RegisterEnabled = mode == "-1";
  session_.FullEditMode = mode == "0" || session_.LiteMode || session_.RegisterEnabled;
}

void Form2::EnterLiteMode() {
  // The first two tabs go: the table of sales and the system report.
  TabStrip1.Remove(0);
  TabStrip1.Remove(0);
  TabStrip1.Add(0, {"kassa", "Реализация"});
  TabStrip1.Selected = 0;
  ShowOnly(KassaLite.FrameKassaLite);
  for (Menu* menu : {&mnuDocument, &mnuObrabotka, &mnuReport, &mnuExport, &mnuAbout}) menu->Visible = false;
  Check1.Visible = false;
  Catalogue.CmdRefrTov.Visible = false;
  Caption = Caption() + " Lite";
}

void Form2::EnableRegister() {
  for (Menu* menu : {&mnuDocument, &mnuClearDoc, &mnuDelOneDoc, &mnuRegistr, &mnuReportSaldo, &mnuReportRun, &sep0,
                     &sep1, &sep3, &sep4}) {
    menu->Visible = true;
  }
  TabStrip1.Add(static_cast<int>(TabStrip1.Tabs().size()), {"jurn", "Журнал документов"});
  Journal.FirstFill();
}

void Form2::OpenSets() {
  Catalogue.FirstFill();
  Sales.CalcShiftPeriod();
  Sales.FirstFill();
  if (session_.LiteMode) KassaLite.FirstFill();
  Panels.OpenLayout();
  Sales.LblInf.Caption = Sales.TextDate.Caption();
  Cards.OpenCards();
  screens_.CardKinds.OpenCardKinds();
  Cards.OpenWaiters();
}

void Form2::TabStrip1_Click() {
  const std::string key = TabStrip1.SelectedKey();
  HideScreensBehindTabs();
  if (key == "prod" || key == "report") {
    ShowOnly(Sales.FrameProd);
    if (key == "report") {
      if (Form* report = TheDesktop().FindForm("Form9")) report->Show();
    }
  } else if (key == "sprav") {
    ShowOnly(Catalogue.FrameSprav);
    if (!session_.FullEditMode) {
      Catalogue.ForbidEditing();
      Cards.ForbidEditing();
    }
    Catalogue.DataGrid1[0].SetFocus();
  } else if (key == "sensor") {
    ShowOnly(Panels.FrameSensor);
    if (Recordset& keys = session_.Pool().RsPanels; keys.RecordCount() > 0) keys.MoveFirst();
    Catalogue.DataGrid1[1].SetFocus();
  } else if (key == "jurn") {
    ShowOnly(Journal.FrameJourn);
    Journal.Refresh();
    Journal.DataGrid6.SetFocus();
  } else if (key == "kassa") {
    ShowOnly(KassaLite.FrameKassaLite);
  }
}

void Form2::Check1_Click() {
  const bool shown = !Check1.Value();
  for (Menu* menu : {&mnuObrabotka, &mnuReport, &mnuExport, &mnuAbout}) menu->Visible = shown;
  mnuDocument.Visible = shown && session_.RegisterEnabled;
}

void Form2::ShowOnly(Frame& frame) {
  // Hide the old one first: were both there for a moment, the window would grow to hold them.
  for (Frame* one :
       {&Catalogue.FrameSprav, &Sales.FrameProd, &Panels.FrameSensor, &Journal.FrameJourn, &KassaLite.FrameKassaLite}) {
    if (one != &frame) one->Visible = false;
  }
  frame.Visible = true;
}

void Form2::HideScreensBehindTabs() {
  const bool report = TabStrip1.SelectedKey() == "report";
  for (const std::string_view name : kHiddenByTabs) {
    if (report && name == "Form9") continue;
    if (Form* form = TheDesktop().FindForm(name)) form->Hide();
  }
}

}  // namespace zrt
