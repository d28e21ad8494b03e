#include "core/sql_comment.h"

namespace zrt {
namespace {

/// Behind "--", what makes it a comment and not two minus signs: the server takes the text for latin1, where A0 is a
/// blank.
bool EndsDashes(unsigned char byte) {
  return byte <= ' ' || byte == 0x7F || byte == 0xA0;
}

/// The position behind the quote that opens at `open`; the end of the text when nothing closes it. A doubled quote
/// closes one text and opens the next, which comes to the same.
std::size_t BehindQuote(std::string_view text, std::size_t open) {
  const char quote = text[open];
  for (std::size_t at = open + 1; at < text.size(); ++at) {
    if (text[at] == quote) return at + 1;
    if (text[at] == '\\' && quote != '`') ++at;
  }
  return text.size();
}

bool BeginsComment(std::string_view rest) {
  if (rest.starts_with('#') || rest.starts_with("/*")) return true;
  return rest.starts_with("--") && (rest.size() == 2 || EndsDashes(static_cast<unsigned char>(rest[2])));
}

}  // namespace

bool HoldsComment(std::string_view statement) {
  // The driver takes a zero byte for the end, in quotes and outside.
  if (statement.find('\0') != std::string_view::npos) return true;
  for (std::size_t at = 0; at < statement.size();) {
    const char byte = statement[at];
    if (byte == '\'' || byte == '"' || byte == '`') {
      at = BehindQuote(statement, at);
    } else if (BeginsComment(statement.substr(at))) {
      return true;
    } else {
      ++at;
    }
  }
  return false;
}

bool StaysInQuotes(std::string_view text) {
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] != '\\' && text[at] != '\'') continue;
    const bool pair = at + 1 < text.size() && (text[at] == '\\' || text[at + 1] == '\'');
    if (!pair) return false;
    ++at;
  }
  return true;
}

}  // namespace zrt
