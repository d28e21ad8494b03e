#include "exchange/product_sheet.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

#include "core/errors.h"
#include "core/numbers.h"
#include "core/text.h"

namespace zrt {

namespace {

namespace column {
enum : int { kCode = 1, kName, kPrice, kBarcode, kTax, kFiscal, kDiscount, kWeighed, kPlace, kUkt, kGroup };
}

constexpr int kLastCode = 999999;
constexpr std::size_t kNameLength = 50;
constexpr std::size_t kBarcodeLength = 20;
constexpr std::size_t kUktLength = 24;
constexpr std::size_t kGroupLength = 50;

/// What a failed formula gives; no product is called so.
constexpr std::array<std::string_view, 7> kErrorValues = {"#NULL!", "#DIV/0!", "#VALUE!", "#REF!",
                                                          "#NAME?", "#NUM!",   "#N/A"};

/// A cell may end in blanks that only a spreadsheet's author can tell from one another.
std::string TrimAllBlanks(std::string text) {
  constexpr std::string_view kHardBlank = "\u00A0";
  constexpr std::string_view kSigns = " \t\r\n";
  for (bool more = true; more && !text.empty();) {
    more = false;
    if (kSigns.find(text.front()) != std::string_view::npos) {
      text.erase(0, 1);
      more = true;
    } else if (kSigns.find(text.back()) != std::string_view::npos) {
      text.pop_back();
      more = true;
    } else if (text.starts_with(kHardBlank)) {
      text.erase(0, kHardBlank.size());
      more = true;
    } else if (text.ends_with(kHardBlank)) {
      text.erase(text.size() - kHardBlank.size());
      more = true;
    }
  }
  return text;
}

}  // namespace

ProductSheet::ProductSheet(const DriveMap& drives, std::string drive_path, const RegionalFormat& format,
                           const std::function<void()>& between)
    : drive_path_(std::move(drive_path)), format_(format), sheet_(Spreadsheet::Open(drives, drive_path_, between)) {
  while (!Trim(sheet_.Cell(kFirstRow + count_, column::kName)).empty()) ++count_;
}

std::optional<std::int32_t> ProductSheet::Code(std::int64_t row) const {
  try {
    const std::int32_t cod = Number(row, column::kCode, &ToInt32);
    if (cod >= 1 && cod <= kLastCode) return cod;
  } catch (const FileError&) {
    // What is no number is no code either.
  }
  return std::nullopt;
}

std::string ProductSheet::Name(std::int64_t row) const {
  return Text(row, column::kName, kNameLength, "");
}

std::string ProductSheet::InsertStatement(std::int64_t row, std::int32_t cod, const std::string& name) const {
  // In the order of the columns, so that the first bad one is told.
  const std::int32_t prise = Number(row, column::kPrice, &ToInt32);
  const std::string barcode = Text(row, column::kBarcode, kBarcodeLength, "0");
  const std::int32_t nds = Number(row, column::kTax, &ToInt32);
  const std::int32_t n1 = Number(row, column::kFiscal, &ToInt32);
  const std::int16_t rez = Number(row, column::kDiscount, &ToInt16);
  const std::int32_t n4 = Number(row, column::kWeighed, &ToInt32);
  const std::int32_t n2 = Number(row, column::kPlace, &ToInt32);
  const std::string ukt = Text(row, column::kUkt, kUktLength, "");
  const std::string t1 = Text(row, column::kGroup, kGroupLength, "ТОВАР");
  return fmt::format(
      "INSERT INTO TOVAR (ID,COD,COD1,NAME,OST,KOL,PRISE,BARCODE,NDS,REZ,N1,N2,N5,N7,N4,T1,UKT) VALUES "
      "(0,{},1,'{}',0,0,{},'{}',{},{},{},{},0,0,{},'{}','{}')",
      cod, name, prise, barcode, nds, rez, n1, n2, n4, t1, ukt);
}

std::string ProductSheet::Text(std::int64_t row, int column, std::size_t length, std::string_view otherwise) const {
  const std::string text = TrimAllBlanks(std::string(sheet_.Cell(row, column)));
  if (std::find(kErrorValues.begin(), kErrorValues.end(), text) != kErrorValues.end()) throw Fault(row, column, text);
  return text.empty() ? std::string(otherwise) : Left(text, length);
}

template <class Integer>
Integer ProductSheet::Number(std::int64_t row, int column, Integer (*convert)(double)) const {
  const std::string text = TrimAllBlanks(std::string(sheet_.Cell(row, column)));
  if (text.empty()) return 0;
  // A number of the spreadsheet has a point, one typed as a text the mark of the operator's system.
  double value = 0;
  const char* end = text.data() + text.size();
  const auto [stopped, error] = std::from_chars(text.data(), end, value);
  try {
    return convert(error == std::errc() && stopped == end ? value : format_.ToNumber(text));
  } catch (const Error& failure) {
    throw Fault(row, column, failure.what());
  }
}

FileError ProductSheet::Fault(std::int64_t row, int column, const std::string& what) const {
  return {fmt::format("{}, строка {}, колонка {}", drive_path_, row, column), what};
}

}  // namespace zrt
