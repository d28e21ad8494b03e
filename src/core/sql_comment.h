#pragma once

#include <string_view>

namespace zrt {

/// Is there something outside the quotes of this statement (windows-1251 bytes) after which the server would skip the
/// rest of the statement or a part of it: "#", "/*", "--" before a blank, a control character or the end, or a zero
/// byte anywhere? The quotes are told apart as the server does: ', " and `, doubled ones belong to the text, a
/// back-slash shields the next character except within `. What stands in a quote that is never closed belongs to that
/// quote.
bool HoldsComment(std::string_view statement);

/// Does a text (UTF-8 or windows-1251) between single quotes stay there? A quote that isn't doubled ends them, and a
/// back-slash at the end shields the one that should.
bool StaysInQuotes(std::string_view text);

}  // namespace zrt
