#pragma once

#include "platform/workbook.h"

namespace zrt {

/// Opens workbooks with the program that the desktop keeps for them. A book lies in a temporary file of its own until
/// the operator saves it elsewhere. Whatever fails on the way, a program that isn't there or a full disk, ends in
/// silence.
class QtSpreadsheet final : public SpreadsheetProgram {
 public:
  void Open(const Workbook& book) override;
};

}  // namespace zrt
