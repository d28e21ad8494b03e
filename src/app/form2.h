#pragma once

#include <array>
#include <functional>
#include <string>

#include "core/session.h"
#include "documents/journal_tab.h"
#include "exchange/frm_exp_imp.h"
#include "exchange/frm_imp_tov.h"
#include "panels/form_copy.h"
#include "panels/panel_tab.h"
#include "platform/drive_map.h"
#include "reference/cards_tab.h"
#include "reference/catalogue_tab.h"
#include "reports/report_screens.h"
#include "sales/frm_clear.h"
#include "sales/frm_del_chek.h"
#include "sales/kassa_lite_tab.h"
#include "sales/sales_tab.h"
#include "ui/form.h"

namespace zrt {

/// The main window: the shell with its tab strip and menus. Each tab is a section of its own.
class Form2 final : public Form {
 public:
  /// The screens that menu entries and tabs open.
  struct Screens {
    Form& About;
    frmPLU& ProductCard;
    Documents& StockDocuments;
    frmDK& DiscountCard;
    frmVDk& CardKinds;
    frmClear& Clear;
    frmClearLite& ClearLite;
    frmDelChek& DelChek;
    FormCopy& PanelCopy;
    ReportScreens& Reports;
    frmExpImp& Exchange;
    frmImpTov& Import;
  };

  /// `drives`: where files go. `executable`: file name of this program, the window's title. `shutdown` runs when the
  /// window is unloaded.
  Form2(Desktop& desktop, Session& session, ModuleReg& stock, const DriveMap& drives, std::string executable,
        Screens screens, std::function<void()> shutdown);

  TabStrip TabStrip1{*this, "TabStrip1"};
  CheckBox Check1{*this, "Check1"};  ///< hides the row of menus

  Menu mnuDocument{*this, "mnuDocument"};
  Menu mnuDocPN{*this, "mnuDocPN"};
  Menu mnuDocRN{*this, "mnuDocRN"};
  Menu mnuDocSP{*this, "mnuDocSP"};
  Menu mnuDocIN{*this, "mnuDocIN"};
  Menu mnuPereozenk{*this, "mnuPereozenk"};
  Menu mnuPerem{*this, "mnuPerem"};
  Menu mnuDocPERplus{*this, "mnuDocPERplus"};
  Menu mnuDocPERminus{*this, "mnuDocPERminus"};
  Menu mnuDocDO{*this, "mnuDocDO"};
  Menu mnuReport{*this, "mnuReport"};
  Menu mnuSystem{*this, "mnuSystem"};
  Menu sep0{*this, "sep0"};
  Menu mnuReportSaldo{*this, "mnuReportSaldo"};
  Menu mnuReportRun{*this, "mnuReportRun"};
  Menu sep3{*this, "sep3"};
  Menu mnuTabel{*this, "mnuTabel"};
  Menu mnuTabelTime{*this, "mnuTabelTime"};
  Menu mnuTabelDk{*this, "mnuTabelDk"};
  Menu mnuTabelChk{*this, "mnuTabelChk"};
  Menu sep4{*this, "sep4"};
  Menu mnuRegistr{*this, "mnuRegistr"};
  Menu mnuObrabotka{*this, "mnuObrabotka"};
  Menu mnuClearProd{*this, "mnuClearProd"};
  Menu sep2{*this, "sep2"};
  Menu mnuDelCheck{*this, "mnuDelCheck"};
  Menu sep1{*this, "sep1"};
  Menu mnuDelOneDoc{*this, "mnuDelOneDoc"};
  Menu mnuClearDoc{*this, "mnuClearDoc"};
  Menu mnuExport{*this, "mnuExport"};
  Menu mnuAbout{*this, "mnuAbout"};

  SalesTab Sales;
  KassaLiteTab KassaLite;
  CatalogueTab Catalogue;
  CardsTab Cards;
  PanelTab Panels;
  JournalTab Journal;

 private:
  void Form_Load();
  void Form_Activate();
  void TabStrip1_Click();
  void Check1_Click();

  /// Opens the one connection and fills the window; without a server it says so and leaves the window unfilled.
  void ConnectDatabase();
  void InitMainWindow();

  // Steps of InitMainWindow, in its order.
  void ReadShiftHour();
  void ReadReserveStatus();
  void UpgradeSchema();
  void NameMenus();
  void DecideOperatingMode();
  void EnterLiteMode();
  void EnableRegister();
  void OpenSets();

  void ShowOnly(Frame& frame);
  void HideScreensBehindTabs();

  Session& session_;
  std::string executable_;
  Screens screens_;
  std::function<void()> shutdown_;
};

}  // namespace zrt
