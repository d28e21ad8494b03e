#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "documents/own_lines_document.h"

namespace zrt {

/// The inventory: compares the book balance with a count; posting brings the register to the count by the differences.
/// Its lines live in DOCINVENT for good, those of a new document under DOC=-1.
class frmDocIN final : public OwnLinesDocument {
 public:
  frmDocIN(Desktop& desktop, const DocumentServices& services);

  ComboBox ComboLoc{*this, "ComboLoc"};
  Button CmdDat{*this, "CmdDat"};
  Button CmdClear{*this, "CmdClear"};
  Button CmdClearFakt{*this, "CmdClearFakt"};
  Button CmdDownlFakt{*this, "CmdDownlFakt"};
  Button CmdExportFakt{*this, "CmdExportFakt"};
  Frame Frame2{*this, "Frame2"};
  Label LblSumR{*this, "LblSumR"};
  Label LblOst{*this, "LblOst"};
  Label LblOstR{*this, "LblOstR"};

  /// Loads counts from a file into a new document, and writes the counted lines into one; set by the application, which
  /// knows the other screens.
  std::function<void()> LoadCounts;
  std::function<void(const Recordset& lines)> ExportLines;

  /// Reads the lines again after counts were loaded from a file. Throws DatabaseError.
  void RefreshRS7in() { ShowAddedLines(); }
  /// Four results, in thousandths as they are shown; that in retail prices is the document's sum.
  void SumRefresh() override;

 protected:
  void PrepareNew() override;
  void OpenLines(std::int32_t doc) override;
  void FormatGrid() override;
  void ChangeTo(std::int64_t id, std::string_view answer) override;
  std::string Question() const override;
  std::string_view QuestionTitle() const override { return "Кол-во ФАКТ"; }
  /// The note begins with the moment of the count.
  DocumentHead NewHead() const override;
  void TakePresentDate() override;
  void MonthClicked() override;

 private:
  void Form_Load();
  /// Do the lines still stand under -1? After a save that broke off they move here, and the buttons of a new document
  /// go out.
  bool IsUnsaved();
  void CmdDat_Click();
  void CmdClear_Click();
  void CmdClearFakt_Click();
  /// The end of `day` (today without one) or the present time on it, as the operator answers.
  void SetDay(const std::optional<Date>& day);
};

}  // namespace zrt
