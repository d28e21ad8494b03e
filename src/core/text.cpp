#include "core/text.h"

#include "core/windows1251.h"

namespace zrt {
namespace {

constexpr char32_t kMalformed = 0xFFFD;

/// Takes the next character off `rest`; a byte that begins no whole character is taken alone, as kMalformed.
char32_t TakeCharacter(std::string_view& rest) {
  const auto lead = static_cast<unsigned char>(rest.front());
  const std::size_t length = lead < 0x80   ? 1
                             : lead < 0xC2 ? 0
                             : lead < 0xE0 ? 2
                             : lead < 0xF0 ? 3
                             : lead < 0xF5 ? 4
                                           : 0;
  if (length == 1) {
    rest.remove_prefix(1);
    return lead;
  }
  if (length == 0 || rest.size() < length) {
    rest.remove_prefix(1);
    return kMalformed;
  }
  char32_t code = lead & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    const auto follower = static_cast<unsigned char>(rest[i]);
    if ((follower & 0xC0) != 0x80) {
      rest.remove_prefix(1);
      return kMalformed;
    }
    code = (code << 6) | (follower & 0x3FU);
  }
  rest.remove_prefix(length);
  return code;
}

void AppendCharacter(std::string& out, char32_t code) {
  if (code < 0x80) {
    out += static_cast<char>(code);
  } else if (code < 0x800) {
    out += static_cast<char>(0xC0 | (code >> 6));
    out += static_cast<char>(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    out += static_cast<char>(0xE0 | (code >> 12));
    out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (code & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (code >> 18));
    out += static_cast<char>(0x80 | ((code >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (code & 0x3F));
  }
}

char32_t LowerCharacter(char32_t code) {
  if (code >= U'A' && code <= U'Z') return code + 0x20;
  if (code >= 0x0410 && code <= 0x042F) return code + 0x20;  // А to Я
  if (code >= 0x0400 && code <= 0x040F) return code + 0x50;  // Ё and the letters of the neighbours' alphabets
  if (code == 0x0490) return 0x0491;                         // Ґ
  return code;
}

/// Byte position of the character with the 0-based number `index`, or the text's size.
std::size_t PositionOf(std::string_view text, std::size_t index) {
  std::string_view rest = text;
  while (index > 0 && !rest.empty()) {
    TakeCharacter(rest);
    --index;
  }
  return text.size() - rest.size();
}

}  // namespace

std::string ToWindows1251(std::string_view utf8) {
  std::string bytes;
  bytes.reserve(utf8.size());
  while (!utf8.empty()) {
    const char32_t code = TakeCharacter(utf8);
    bytes += code < 0x80 ? static_cast<char>(code) : windows1251::ByteOf(code);
  }
  return bytes;
}

std::string FromWindows1251(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size() * 2);
  for (const char byte : bytes) AppendCharacter(text, windows1251::CharacterOf(byte));
  return text;
}

std::string FromUtf16(std::string_view bytes, bool big_endian) {
  const auto unit = [&](std::size_t at) {
    const auto first = static_cast<unsigned char>(bytes[at]);
    const auto second = static_cast<unsigned char>(bytes[at + 1]);
    return static_cast<char32_t>(big_endian ? first << 8 | second : second << 8 | first);
  };
  const auto is_high = [](char32_t code) { return code >= 0xD800 && code < 0xDC00; };
  const auto is_low = [](char32_t code) { return code >= 0xDC00 && code < 0xE000; };
  std::string text;
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
    char32_t code = unit(at);
    if (is_high(code) && at + 3 < bytes.size() && is_low(unit(at + 2))) {
      at += 2;
      code = 0x10000 + ((code - 0xD800) << 10) + (unit(at) - 0xDC00);
    }
    AppendCharacter(text, is_high(code) || is_low(code) ? U'?' : code);
  }
  return text;
}

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    if (TakeCharacter(text) == kMalformed) return false;
  }
  return true;
}

std::size_t Length(std::string_view text) {
  std::size_t count = 0;
  for (; !text.empty(); ++count) TakeCharacter(text);
  return count;
}

std::string Left(std::string_view text, std::size_t count) {
  return std::string(text.substr(0, PositionOf(text, count)));
}

std::string Right(std::string_view text, std::size_t count) {
  const std::size_t length = Length(text);
  return std::string(text.substr(PositionOf(text, length > count ? length - count : 0)));
}

std::string Mid(std::string_view text, std::size_t start, std::size_t count) {
  const std::string_view tail = text.substr(PositionOf(text, start > 0 ? start - 1 : 0));
  return Left(tail, count);
}

std::string Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

std::string ToLower(std::string_view text) {
  std::string lower;
  lower.reserve(text.size());
  while (!text.empty()) {
    const std::string_view before = text;
    const char32_t code = TakeCharacter(text);
    const char32_t lowered = LowerCharacter(code);
    if (lowered == code) {
      lower += before.substr(0, before.size() - text.size());  // malformed bytes and the higher planes stay as they are
    } else {
      AppendCharacter(lower, lowered);
    }
  }
  return lower;
}

bool StartsWithNoCase(std::string_view text, std::string_view beginning) {
  return ToLower(text).starts_with(ToLower(beginning));
}

}  // namespace zrt
