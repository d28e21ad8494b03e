#include "documents/own_lines_document.h"

#include "ui/desktop.h"

namespace zrt {

OwnLinesDocument::OwnLinesDocument(Desktop& desktop, const DocumentKind& kind, const DocumentServices& services,
                                   const char* table, const char* lines)
    : DocumentForm(desktop, kind, services), table_(table), lines_query_(lines) {}

void OwnLinesDocument::OpenLines(std::int32_t doc) {
  lines_doc_ = doc;
  ReadLines(lines_query_ + std::to_string(doc));
}

void OwnLinesDocument::ChangeLine() {
  const std::optional<std::int64_t> id = CurrentId();
  if (!id) return;
  const std::string answer = TheDesktop().InputBox(Question(), QuestionTitle());
  if (answer.empty()) return;
  if (!session_.Format().IsNumeric(answer)) {
    TheDesktop().MsgBox("введите числовое значение!", BoxIcon::kCritical);
    return;
  }
  ChangeTo(*id, answer);
  RefreshLines();
}

void OwnLinesDocument::DeleteLineStatement(std::int64_t id) {
  session_.Write(fmt::format("DELETE FROM {} WHERE DOC={} AND ID={}", table_, lines_doc_, id));
}

void OwnLinesDocument::MoveLines() {
  if (lines_doc_ == DocId) return;
  session_.Write(fmt::format("UPDATE {} SET DOC={} WHERE DOC=-1", table_, DocId));
  OpenLines(DocId);
}

void OwnLinesDocument::DeleteWorkingCopy() {
  session_.Write(fmt::format("DELETE FROM {} WHERE DOC=-1", table_));
}

}  // namespace zrt
