#include "platform/spreadsheet_biff.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/text.h"
#include "platform/spreadsheet_ole.h"

namespace zrt {

namespace {

// Kinds of record; all others are passed over.
enum RecordId : std::uint16_t {
  kFormula = 0x0006,
  kEof = 0x000A,
  kFilePass = 0x002F,
  kContinue = 0x003C,
  kBoundSheet = 0x0085,
  kMulRk = 0x00BD,
  kRString = 0x00D6,
  kSst = 0x00FC,
  kLabelSst = 0x00FD,
  kNumber = 0x0203,
  kLabel = 0x0204,
  kBoolErr = 0x0205,
  kString = 0x0207,
  kRk = 0x027E,
  kBof = 0x0809,
};

constexpr std::uint16_t kVersion95 = 0x0500;  // 5 and 95
constexpr std::uint16_t kVersion97 = 0x0600;
constexpr std::uint8_t kWorksheet = 0;  // among the types of a sheet

/// A record with the records that continue it, read from front to back.
class Record {
 public:
  Record(std::uint16_t id, std::string_view first) : id_(id), parts_{first} {}

  void Add(std::string_view part) { parts_.push_back(part); }

  std::uint16_t Id() const { return id_; }

  std::uint8_t Byte() {
    while (at_ == parts_[part_].size()) NextPart();
    return static_cast<std::uint8_t>(parts_[part_][at_++]);
  }

  template <class TInteger>
  TInteger Integer() {
    char bytes[sizeof(TInteger)];
    for (char& byte : bytes) byte = static_cast<char>(Byte());
    return LittleEndian<TInteger>({bytes, sizeof bytes}, 0);
  }

  void Skip(std::uint64_t count) {
    while (count > 0) {
      if (at_ == parts_[part_].size()) NextPart();
      const std::uint64_t step = std::min<std::uint64_t>(count, parts_[part_].size() - at_);
      at_ += step;
      count -= step;
    }
  }

  bool AtEnd() const { return at_ == parts_[part_].size() && part_ + 1 == parts_.size(); }

  /// Bytes left of the record itself, without what continues it.
  std::size_t Left() const { return part_ == 0 ? parts_[0].size() - at_ : 0; }

  /// Text of version 95: `length` bytes of the code page. A Russian shop's old files hold windows-1251, whatever page
  /// they name; what that page lacks couldn't be kept in the catalogue anyway.
  std::string Bytes(std::size_t length) {
    std::string bytes;
    for (std::size_t i = 0; i < length; ++i) bytes.push_back(static_cast<char>(Byte()));
    return FromWindows1251(bytes);
  }

  /// Text of version 97 after its length: flags, perhaps the sizes of what follows it, the characters in one or two
  /// bytes each, then runs of faces and reading aids, which are passed over.
  std::string Characters(std::size_t length) {
    constexpr std::uint8_t kWide = 0x01;
    constexpr std::uint8_t kAids = 0x04;
    constexpr std::uint8_t kRuns = 0x08;
    constexpr std::uint64_t kRunSize = 4;

    const std::uint8_t flags = Byte();
    const std::uint64_t runs = (flags & kRuns) != 0 ? Integer<std::uint16_t>() : 0;
    const std::uint64_t aids = (flags & kAids) != 0 ? Integer<std::uint32_t>() : 0;
    bool is_wide = (flags & kWide) != 0;
    std::string text;
    char16_t high = 0;  // first half of a character beyond U+FFFF
    for (std::size_t i = 0; i < length; ++i) {
      while (at_ == parts_[part_].size()) {
        // Where characters go on in the next record, that one begins with flags of its own.
        NextPart();
        if (!parts_[part_].empty()) is_wide = (Byte() & kWide) != 0;
      }
      const char16_t unit = is_wide ? WideCharacter() : Byte();
      if (high != 0 && unit >= 0xDC00 && unit <= 0xDFFF) {
        AppendCharacter(text, 0x10000U + ((high - 0xD800U) << 10) + (unit - 0xDC00U));
        high = 0;
        continue;
      }
      if (high != 0) AppendCharacter(text, high);
      high = unit >= 0xD800 && unit <= 0xDBFF ? unit : char16_t{0};
      if (high == 0) AppendCharacter(text, unit);
    }
    if (high != 0) AppendCharacter(text, high);
    Skip(runs * kRunSize + aids);
    return text;
  }

 private:
  void NextPart() {
    if (part_ + 1 == parts_.size()) throw BadSpreadsheet(SpreadsheetFault::kDamaged);
    ++part_;
    at_ = 0;
  }

  // Both bytes stand in one record.
  char16_t WideCharacter() {
    if (parts_[part_].size() - at_ < 2) throw BadSpreadsheet(SpreadsheetFault::kDamaged);
    at_ += 2;
    return LittleEndian<std::uint16_t>(parts_[part_], at_ - 2);
  }

  std::uint16_t id_;
  std::vector<std::string_view> parts_;
  std::size_t part_ = 0;
  std::size_t at_ = 0;
};

/// The records of a workbook from a place on.
class Records {
 public:
  Records(std::string_view workbook, std::size_t offset) : workbook_(workbook), at_(offset) {}

  /// The next record. Throws BadSpreadsheet: kDamaged at the end of the workbook: each part of it ends with kEof.
  Record Next() {
    const auto [id, data] = Take();
    Record record(id, data);
    while (at_ + 4 <= workbook_.size() && LittleEndian<std::uint16_t>(workbook_, at_) == kContinue) {
      record.Add(Take().second);
    }
    return record;
  }

 private:
  std::pair<std::uint16_t, std::string_view> Take() {
    if (at_ > workbook_.size() || workbook_.size() - at_ < 4) throw BadSpreadsheet(SpreadsheetFault::kDamaged);
    const auto id = LittleEndian<std::uint16_t>(workbook_, at_);
    const auto size = LittleEndian<std::uint16_t>(workbook_, at_ + 2);
    if (workbook_.size() - at_ - 4 < size) throw BadSpreadsheet(SpreadsheetFault::kDamaged);
    const std::string_view data = workbook_.substr(at_ + 4, size);
    at_ += 4U + size;
    return {id, data};
  }

  std::string_view workbook_;
  std::size_t at_;
};

std::string ErrorName(std::uint8_t code) {
  switch (code) {
    case 0x00:
      return "#NULL!";
    case 0x07:
      return "#DIV/0!";
    case 0x0F:
      return "#VALUE!";
    case 0x17:
      return "#REF!";
    case 0x1D:
      return "#NAME?";
    case 0x24:
      return "#NUM!";
    default:
      return "#N/A";
  }
}

// A number in four bytes: 30 bits of a whole number or of the front of a double, perhaps in hundredths.
double RkNumber(std::uint32_t rk) {
  constexpr std::uint32_t kHundredths = 0x1;
  constexpr std::uint32_t kWhole = 0x2;
  const double number = (rk & kWhole) != 0 ? static_cast<double>(static_cast<std::int32_t>(rk) >> 2)
                                           : std::bit_cast<double>(std::uint64_t{rk & ~0x3U} << 32);
  return (rk & kHundredths) != 0 ? number / 100 : number;
}

class WorkbookReader {
 public:
  WorkbookReader(std::string_view workbook, const std::function<void()>& between)
      : workbook_(workbook), cells_(between) {}

  SpreadsheetCells Read() {
    const std::optional<std::uint32_t> sheet = ReadGlobals();
    if (!sheet) throw BadSpreadsheet(SpreadsheetFault::kNoSheet);
    ReadSheet(*sheet);
    cells_.Finish();
    return std::move(cells_);
  }

 private:
  // The part that describes the workbook. Gives the place of the first worksheet.
  std::optional<std::uint32_t> ReadGlobals() {
    Records records(workbook_, 0);
    ReadBof(records.Next());
    std::optional<std::uint32_t> sheet;
    for (Record record = records.Next(); record.Id() != kEof; record = records.Next()) {
      if (record.Id() == kFilePass) throw BadSpreadsheet(SpreadsheetFault::kEncrypted);
      if (record.Id() == kSst) ReadSharedTexts(record);
      if (record.Id() == kBoundSheet && !sheet) {
        const auto offset = record.Integer<std::uint32_t>();
        record.Skip(1);  // shown or hidden
        if (record.Byte() == kWorksheet) sheet = offset;
      }
    }
    return sheet;
  }

  void ReadBof(Record record) {
    if (record.Id() != kBof) throw BadSpreadsheet(SpreadsheetFault::kDamaged);
    const auto version = record.Integer<std::uint16_t>();
    if (version != kVersion95 && version != kVersion97) throw BadSpreadsheet(SpreadsheetFault::kOtherKind);
    is_97_ = version == kVersion97;
  }

  void ReadSharedTexts(Record& record) {
    record.Skip(4);  // how often the texts are used
    const auto count = record.Integer<std::uint32_t>();
    // Some programs count too many; a cell that refers to a text that isn't there is noticed then.
    for (std::uint32_t i = 0; i < count && !record.AtEnd(); ++i) {
      if (i == kMaxSpreadsheetCells) throw BadSpreadsheet(SpreadsheetFault::kTooLarge);
      const auto length = record.Integer<std::uint16_t>();
      shared_texts_.push_back(cells_.Keep(record.Characters(length)));
    }
  }

  void ReadSheet(std::uint32_t offset) {
    Records records(workbook_, offset);
    ReadBof(records.Next());
    int charts = 0;  // that are open: each brings a part of its own within the sheet
    for (Record record = records.Next(); record.Id() != kEof || charts > 0; record = records.Next()) {
      if (record.Id() == kBof) {
        ++charts;
      } else if (record.Id() == kEof) {
        --charts;
      } else if (charts == 0) {
        ReadCells(record);
      }
    }
  }

  void ReadCells(Record& record) {
    if (record.Id() == kString) {
      // The text that the last formula gave.
      if (formula_gives_text_) Put(LongText(record));
      formula_gives_text_ = false;
      return;
    }
    if (record.Id() != kLabelSst && record.Id() != kLabel && record.Id() != kRString && record.Id() != kNumber &&
        record.Id() != kRk && record.Id() != kMulRk && record.Id() != kBoolErr && record.Id() != kFormula) {
      return;
    }
    formula_gives_text_ = false;
    row_ = record.Integer<std::uint16_t>() + std::int64_t{1};
    column_ = record.Integer<std::uint16_t>() + std::int64_t{1};
    if (record.Id() == kMulRk) {
      constexpr std::size_t kFormatAndNumber = 6;
      for (; record.Left() >= kFormatAndNumber; ++column_) {
        record.Skip(2);
        Put(SpreadsheetNumber(RkNumber(record.Integer<std::uint32_t>())));
      }
      return;
    }
    record.Skip(2);  // format
    switch (record.Id()) {
      case kLabelSst: {
        const auto index = record.Integer<std::uint32_t>();
        if (index >= shared_texts_.size()) throw BadSpreadsheet(SpreadsheetFault::kDamaged);
        cells_.Put(row_, column_, shared_texts_[index]);
        break;
      }
      case kLabel:
      case kRString:
        Put(LongText(record));
        break;
      case kNumber:
        Put(SpreadsheetNumber(std::bit_cast<double>(record.Integer<std::uint64_t>())));
        break;
      case kRk:
        Put(SpreadsheetNumber(RkNumber(record.Integer<std::uint32_t>())));
        break;
      case kBoolErr: {
        const std::uint8_t value = record.Byte();
        Put(record.Byte() != 0 ? ErrorName(value) : SpreadsheetYesOrNo(value != 0));
        break;
      }
      case kFormula:
        ReadResult(record.Integer<std::uint64_t>());
        break;
    }
  }

  std::string LongText(Record& record) {
    const auto length = record.Integer<std::uint16_t>();
    return is_97_ ? record.Characters(length) : record.Bytes(length);
  }

  // What a formula gave: a number, or by a number that is none, something else.
  void ReadResult(std::uint64_t result) {
    enum Kind : std::uint8_t { kText = 0, kYesOrNo = 1, kError = 2 };
    if (result >> 48 != 0xFFFF) {
      Put(SpreadsheetNumber(std::bit_cast<double>(result)));
      return;
    }
    const auto value = static_cast<std::uint8_t>(result >> 16);
    switch (static_cast<std::uint8_t>(result)) {
      case kText:
        formula_gives_text_ = true;
        break;
      case kYesOrNo:
        Put(SpreadsheetYesOrNo(value != 0));
        break;
      case kError:
        Put(ErrorName(value));
        break;
      default:  // an empty text
        break;
    }
  }

  void Put(std::string_view text) { cells_.Put(row_, column_, cells_.Keep(text)); }

  std::string_view workbook_;
  bool is_97_ = false;
  SpreadsheetCells cells_;
  std::vector<SpreadsheetCells::Text> shared_texts_;
  std::int64_t row_ = 0;  // of the cell read last
  std::int64_t column_ = 0;
  bool formula_gives_text_ = false;
};

}  // namespace

SpreadsheetCells ReadXls(std::string_view file, const std::function<void()>& between) {
  if (file.starts_with(kBareWorkbookStart)) return WorkbookReader(file, between).Read();

  const CompoundFile compound(file);
  // A file saved for both versions holds the newer workbook under the first of the names.
  for (const std::string_view name : {"Workbook", "Book"}) {
    const std::optional<std::string> workbook = compound.Stream(name);
    if (workbook) return WorkbookReader(*workbook, between).Read();
  }
  // A newer workbook with a password is packed into a compound file.
  if (compound.Stream("EncryptedPackage")) throw BadSpreadsheet(SpreadsheetFault::kEncrypted);
  throw BadSpreadsheet(SpreadsheetFault::kOtherKind);
}

}  // namespace zrt
