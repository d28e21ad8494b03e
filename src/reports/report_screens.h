#pragma once

#include "reports/form9.h"
#include "reports/form_tab.h"
#include "reports/form_tab_tim.h"

namespace zrt {

/// The screens of the reports, as the program owns them.
struct ReportScreens {
  ReportScreens(Desktop& desktop, Session& session, const DriveMap& drives, Printer& printer,
                SpreadsheetProgram& spreadsheet);

  frmPath Path;
  const TableTools tools;
  Form9 TextReports;
  FormTab Staff;
  FormTabChk AverageOrder;
  FormTabDk Cards;
  FormTabTim Time;
};

}  // namespace zrt
