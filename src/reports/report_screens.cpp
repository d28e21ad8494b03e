#include "reports/report_screens.h"

namespace zrt {

ReportScreens::ReportScreens(Desktop& desktop, Session& session, ModuleReg& stock, ProductPicker& picker,
                             const DriveMap& drives, Printer& printer, SpreadsheetProgram& spreadsheet)
    : Path(desktop, session.ReportFolder),
      tools{session, drives, spreadsheet, Path},
      TextReports(desktop, session, printer),
      Staff(desktop, tools),
      AverageOrder(desktop, tools),
      Cards(desktop, tools),
      Time(desktop, tools),
      Balances(desktop, tools, stock),
      Movements(desktop, tools, stock, picker) {}

}  // namespace zrt
