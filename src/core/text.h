#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Text inside the program is UTF-8; positions and widths count characters (code points), never bytes.

namespace zrt {

/// UTF-8 to windows-1251 bytes. A character that windows-1251 lacks, and every malformed byte, becomes '?'.
std::string ToWindows1251(std::string_view utf8);

/// windows-1251 bytes to UTF-8; byte 0x98, which the code page leaves free, becomes U+0098 so that it survives the way
/// there and back.
std::string FromWindows1251(std::string_view bytes);

/// UTF-16 bytes, without a mark, to UTF-8; half of a pair becomes '?', an odd last byte is dropped.
std::string FromUtf16(std::string_view bytes, bool big_endian = false);

/// Is the text UTF-8 throughout? One of Cyrillic letters in windows-1251 never is.
bool IsUtf8(std::string_view text);

/// Number of characters of a UTF-8 text.
std::size_t Length(std::string_view text);

/// The first / last `count` characters; the whole text when it is shorter.
std::string Left(std::string_view text, std::size_t count);
std::string Right(std::string_view text, std::size_t count);

/// `count` characters from the 1-based position `start`; fewer at the end of the text.
std::string Mid(std::string_view text, std::size_t start, std::size_t count = std::string_view::npos);

/// Without the blanks at both ends (blanks only: tabs and line ends stay, as the program's texts rely on).
std::string Trim(std::string_view text);

/// Lower case of Latin and Cyrillic letters.
std::string ToLower(std::string_view text);

/// Does the text begin so, without regard to case, Cyrillic included?
bool StartsWithNoCase(std::string_view text, std::string_view beginning);

}  // namespace zrt
