#pragma once

#include <string>

#include "app/form2.h"
#include "app/frm_splash.h"
#include "app/frm_splash1.h"
#include "core/session.h"
#include "documents/documents.h"
#include "exchange/frm_exp_imp.h"
#include "exchange/frm_exp_tov.h"
#include "exchange/frm_imp_tov.h"
#include "panels/form_copy.h"
#include "platform/drive_map.h"
#include "platform/printer.h"
#include "platform/workbook.h"
#include "reference/frm_dk.h"
#include "reference/frm_plu.h"
#include "reference/frm_plu_dial.h"
#include "reference/frm_plu_podb.h"
#include "reference/frm_vdk.h"
#include "reports/report_screens.h"
#include "sales/frm_clear.h"
#include "sales/frm_del_chek.h"
#include "stock/module_reg.h"
#include "ui/desktop.h"

namespace zrt {

/// What the machine and the build give the program.
struct AppSettings {
  DatabaseAddress database;
  std::string executable;  ///< file name of this program
  Printer& printer = Printer::None();
  SpreadsheetProgram& spreadsheet = SpreadsheetProgram::None();
};

/// The composition root: owns the session and every form, starts and stops the program. The desktop, the clock and the
/// drives must outlive it.
class App {
 public:
  App(Desktop& desktop, const Clock& clock, const DriveMap& drives, AppSettings settings);
  ~App();

  /// Shows the first window; its timer does the rest. A run-time error before the main window is visible ends the
  /// program with a non-zero code after its box.
  void Start();

  /// Main window visible, start-up is over.
  bool IsRunning() const { return started_; }

  Session TheSession;
  ModuleReg Stock;
  frmSplash About;
  frmPLU ProductCard;
  frmPLUpodb Picker;
  frmPLUdial PickDialog;
  Documents StockDocuments;
  frmDK DiscountCard;
  frmVDk CardKinds;
  frmClear Clear;
  frmClearLite ClearLite;
  frmDelChek DelChek;
  FormCopy PanelCopy;
  ReportScreens Reports;
  frmExpImp Exchange;
  frmImpTov Import;
  frmExpTov LineExport;
  Form2 Main;
  frmSplash1 Splash;

 private:
  /// The document that lines are loaded into.
  void ShowLoadedLines(int import_mode);

  /// Unloads every other form, closes the connections, releases the command and the recordsets, in this order.
  void ShutdownApplication();

  Desktop& desktop_;
  bool started_ = false;
};

}  // namespace zrt
