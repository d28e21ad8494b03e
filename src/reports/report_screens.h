#pragma once

#include "reports/form9.h"
#include "reports/form_tab.h"
#include "reports/form_tab_ost.h"
#include "reports/form_tab_run.h"
#include "reports/form_tab_tim.h"

namespace zrt {

/// The screens of the reports, as the program owns them.
struct ReportScreens {
  /// All that is handed in must outlive the screens.
  ReportScreens(Desktop& desktop, Session& session, ModuleReg& stock, ProductPicker& picker, const DriveMap& drives,
                Printer& printer, SpreadsheetProgram& spreadsheet);

  frmPath Path;
  const TableTools tools;
  Form9 TextReports;
  FormTab Staff;
  FormTabChk AverageOrder;
  FormTabDk Cards;
  FormTabTim Time;
  FormTabOst Balances;
  FormTabRun Movements;
};

}  // namespace zrt
