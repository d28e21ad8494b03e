#pragma once

#include <vector>

#include "platform/printer.h"
#include "platform/workbook.h"

namespace zrt::test {

/// Keeps what was printed.
class RecordingPrinter final : public Printer {
 public:
  void Print(const PrintJob& job) override { Jobs.push_back(job); }
  std::vector<PrintJob> Jobs;
};

/// Keeps the workbooks that were opened.
class RecordingSpreadsheet final : public SpreadsheetProgram {
 public:
  void Open(const Workbook& book) override { Books.push_back(book); }
  std::vector<Workbook> Books;
};

}  // namespace zrt::test
