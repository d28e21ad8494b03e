#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "documents/document_form.h"

namespace zrt {

/// What the kinds share whose lines live for good in a table of their own, by their document's number. Those of a new
/// document stand under -1 and move when the head has got its number.
class OwnLinesDocument : public DocumentForm {
 protected:
  /// `grid` is the query of the lines up to the number.
  OwnLinesDocument(Desktop& desktop, DocType type, const DocumentServices& services, std::string_view grid);

  void OpenLines(std::int32_t doc) override;
  void ChangeLine() override;

  /// Asks for a number in place of what the line has; `answer` is what was entered, a number.
  virtual void ChangeTo(std::int64_t id, std::string_view answer) = 0;
  virtual std::string Question() const = 0;
  virtual std::string_view QuestionTitle() const = 0;

  /// DOC of the lines that are open; -1 still when a save broke off before they moved.
  std::int32_t LinesDoc() const { return store_.Doc(); }

 private:
  std::string_view grid_;
};

}  // namespace zrt
