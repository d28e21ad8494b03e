#include "documents/own_lines_document.h"

#include <fmt/format.h>

#include <cstdint>
#include <optional>
#include <string>

#include "ui/desktop.h"

namespace zrt {

OwnLinesDocument::OwnLinesDocument(Desktop& desktop, DocType type, const DocumentServices& services,
                                   std::string_view grid)
    : DocumentForm(desktop, type, services), grid_(grid) {}

void OwnLinesDocument::OpenLines(std::int32_t doc) {
  store_.UseDoc(doc);
  ReadLines(fmt::format("{}{}", grid_, store_.Key()));
}

void OwnLinesDocument::ChangeLine() {
  const std::optional<std::int64_t> id = CurrentId();
  if (!id) return;
  const std::string answer = TheDesktop().InputBox(Question(), std::string(QuestionTitle()));
  if (answer.empty()) return;
  if (!session_.Format().IsNumeric(answer)) {
    TheDesktop().MsgBox("введите числовое значение!", BoxIcon::kCritical);
    return;
  }
  ChangeTo(*id, answer);
  RefreshLines();
}

}  // namespace zrt
