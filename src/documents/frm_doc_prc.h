#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "documents/own_lines_document.h"

namespace zrt {

/// The price change: posting writes new retail prices into the catalogue at once, whatever its date, and can't be
/// undone. Its lines live in DOCPRICE, those of a new document under DOC=-1; it has no rows in the register.
class frmDocPRC final : public OwnLinesDocument {
 public:
  frmDocPRC(Desktop& desktop, const DocumentServices& services);

  /// A price change has no sum.
  void SumRefresh() override {}

 protected:
  void FormatGrid() override;
  void ChangeTo(std::int64_t id, std::string_view answer) override;
  std::string Question() const override;
  std::string_view QuestionTitle() const override { return "НОВАЯ ЦЕНА"; }
  DocumentHead NewHead() const override;
};

}  // namespace zrt
