#pragma once

#include <string>

#include "documents/line_document.h"

namespace zrt {

/// The daily report: takes what the terminals sold in one shift out of stock. Its lines come from PROD alone, one for
/// each product, price and card; its date is always the shift's day at 23:00.
class frmDocDO final : public LineDocument {
 public:
  frmDocDO(Desktop& desktop, const DocumentServices& services);

  Frame FrameNew{*this, "FrameNew"};
  Label TextDate{*this, "TextDate"};  ///< the day whose shift is reported
  ComboBox Combo1{*this, "Combo1"};   ///< the shift's first hour
  Button CmdDat{*this, "CmdDat"};

 protected:
  /// No guard: whoever comes back to a new report finds yesterday and a disabled posting again, while the gathered
  /// lines stay. The hours of the list are added once more each time.
  void PrepareNew() override;
  /// What is posted isn't gathered anew.
  void RunIndicator(bool run) override;
  void MonthClicked() override;
  /// The report's own date comes back from the journal.
  void TakePresentDate() override {}
  DocumentHead NewHead() const override;
  /// From TextDate, which is empty for a report opened from the journal.
  std::string UnpostDate() const override { return ReportDate(); }
  void UpdateDocument() override;

 private:
  void Combo1_Click();
  void OpenCalendar();
  void CmdDat_Click();
  void Gather(const std::string& from, const std::string& to);
  /// Do the document's lines and its sum hold what was sold? Else the operator is told.
  bool SalesFit(const Recordset& sold);

  std::string ReportDate() const;
  /// The shift's first hour; 0 where Combo1 holds no number.
  int Hour() const;
  std::string ShiftStart(int hour) const;
};

}  // namespace zrt
