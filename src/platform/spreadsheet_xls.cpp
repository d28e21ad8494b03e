// .xls: a stream of records in a compound file. Versions 5 and 7 keep texts in the code page, 8 (97 to 2003) in
// Unicode.

#include <array>
#include <bit>
#include <cstring>
#include <optional>
#include <vector>

#include "core/text.h"
#include "platform/spreadsheet_cells.h"

namespace zrt {

namespace {

/// A part of the file's bytes; every look beyond its end is a damaged file.
class Bytes {
 public:
  explicit Bytes(std::string_view bytes) : bytes_(bytes) {}

  std::size_t Size() const { return bytes_.size(); }
  Bytes Part(std::size_t at, std::size_t count) const {
    if (at > bytes_.size() || count > bytes_.size() - at) throw SheetFault("damaged: it ends too early");
    return Bytes(bytes_.substr(at, count));
  }
  std::string_view View() const { return bytes_; }
  unsigned U8(std::size_t at) const { return static_cast<unsigned char>(Part(at, 1).bytes_[0]); }
  unsigned U16(std::size_t at) const { return U8(at) | U8(at + 1) << 8; }
  std::uint32_t U32(std::size_t at) const { return U16(at) | static_cast<std::uint32_t>(U16(at + 2)) << 16; }
  double F64(std::size_t at) const {
    return std::bit_cast<double>(static_cast<std::uint64_t>(U32(at + 4)) << 32 | U32(at));
  }

 private:
  std::string_view bytes_;
};

// The compound file: a file system of sectors, chained by tables.

class CompoundFile {
 public:
  explicit CompoundFile(std::string_view bytes) : file_(bytes) {
    sector_shift_ = file_.U16(30);
    mini_shift_ = file_.U16(32);
    if ((sector_shift_ != 9 && sector_shift_ != 12) || mini_shift_ != 6) {
      throw SheetFault("damaged: sectors of an odd size");
    }
    mini_cutoff_ = file_.U32(56);
    ReadTable();
    directory_ = Chain(file_.U32(48));
    mini_table_ = Chain(file_.U32(60));
  }

  /// The first stream of one of these names; nothing when there is none.
  std::optional<std::string> Stream(std::initializer_list<std::u16string_view> names) const {
    const Bytes directory(directory_);
    for (const std::u16string_view name : names) {
      for (std::size_t at = 0; at + kEntrySize <= directory.Size(); at += kEntrySize) {
        const Bytes entry = directory.Part(at, kEntrySize);
        if (entry.U8(66) == kStream && HasName(entry, name)) return Content(entry);
      }
    }
    return std::nullopt;
  }

 private:
  static constexpr std::size_t kEntrySize = 128;
  static constexpr unsigned kStream = 2;
  static constexpr std::uint32_t kLastSector = 0xFFFFFFFA;  ///< marks of the tables are above it
  static constexpr std::size_t kHeaderPlaces = 109;

  static bool HasName(const Bytes& entry, std::u16string_view name) {
    if (entry.U16(64) != (name.size() + 1) * 2) return false;
    for (std::size_t i = 0; i < name.size(); ++i) {
      if (entry.U16(i * 2) != name[i]) return false;
    }
    return true;
  }

  Bytes Sector(std::uint32_t number) const {
    const std::size_t size = std::size_t{1} << sector_shift_;
    const std::size_t at = (std::size_t{number} + 1) << sector_shift_;
    // The last sector of a file may be cut where its content ends.
    return at < file_.Size() ? file_.Part(at, std::min(size, file_.Size() - at)) : file_.Part(at, size);
  }

  /// The table of sectors: its own sectors stand in the header, then in a chain of lists.
  void ReadTable() {
    const std::size_t most = (file_.Size() >> sector_shift_) + 1;
    std::vector<std::uint32_t> places;
    for (std::size_t i = 0; i < kHeaderPlaces; ++i) places.push_back(file_.U32(76 + i * 4));
    std::uint32_t list = file_.U32(68);
    for (std::size_t lists = 0; list <= kLastSector; ++lists) {
      if (lists > most) throw SheetFault("damaged: a chain without an end");
      const Bytes sector = Sector(list);
      for (std::size_t at = 0; at + 8 <= sector.Size(); at += 4) places.push_back(sector.U32(at));
      list = sector.U32(sector.Size() - 4);
    }
    for (const std::uint32_t place : places) {
      if (place > kLastSector) continue;
      const Bytes sector = Sector(place);
      for (std::size_t at = 0; at + 4 <= sector.Size(); at += 4) table_.push_back(sector.U32(at));
      if (table_.size() > most + (std::size_t{1} << sector_shift_)) break;
    }
  }

  std::string Chain(std::uint32_t first) const {
    std::string content;
    for (std::uint32_t sector = first; sector <= kLastSector; sector = table_[sector]) {
      // No sector belongs to a chain twice.
      if (sector >= table_.size() || content.size() > file_.Size()) throw SheetFault("damaged: a broken chain");
      content += Sector(sector).View();
    }
    return content;
  }

  std::string Content(const Bytes& entry) const {
    const std::uint32_t first = entry.U32(116);
    const std::uint32_t size = entry.U32(120);
    std::string content;
    if (size >= mini_cutoff_) {
      content = Chain(first);
    } else {
      // Small streams share the root's, in sectors and a table of their own.
      const std::string shared = Chain(Bytes(directory_).U32(116));
      const Bytes table(mini_table_);
      for (std::uint32_t sector = first; sector <= kLastSector; sector = table.U32(std::size_t{sector} * 4)) {
        if (content.size() > shared.size()) throw SheetFault("damaged: a broken chain");
        const std::size_t at = std::size_t{sector} << mini_shift_;
        const std::size_t left = shared.size() - std::min(shared.size(), at);
        content += Bytes(shared).Part(at, std::min(std::size_t{1} << mini_shift_, left)).View();
      }
    }
    return std::string(Bytes(content).Part(0, size).View());
  }

  Bytes file_;
  unsigned sector_shift_ = 0;
  unsigned mini_shift_ = 0;
  std::uint32_t mini_cutoff_ = 0;
  std::vector<std::uint32_t> table_;
  std::string directory_;
  std::string mini_table_;
};

// The records

namespace record {
enum : unsigned {
  kFormula = 0x0006,
  kEnd = 0x000A,
  kPassword = 0x002F,
  kContinue = 0x003C,
  kSheet = 0x0085,
  kMulRk = 0x00BD,
  kRichText = 0x00D6,
  kTexts = 0x00FC,
  kTextNumber = 0x00FD,
  kNumber = 0x0203,
  kText = 0x0204,
  kBoolOrError = 0x0205,
  kFormulaText = 0x0207,
  kRk = 0x027E,
  kBegin = 0x0809,
};
}

constexpr unsigned kVersion8 = 0x0600;
constexpr unsigned kVersion5 = 0x0500;

struct Record {
  unsigned id = 0;
  std::vector<Bytes> pieces;  ///< the record's own content, then those that continue it

  const Bytes& Content() const { return pieces.front(); }
};

class Records {
 public:
  explicit Records(Bytes stream) : stream_(stream) {}

  void Seek(std::size_t at) { at_ = at; }

  /// The next record with all that continue it. Throws SheetFault past the end: a stream ends with a record of its own.
  Record Next() {
    Record next;
    next.id = stream_.U16(at_);
    next.pieces.push_back(Take());
    while (at_ + 4 <= stream_.Size() && stream_.U16(at_) == record::kContinue) next.pieces.push_back(Take());
    return next;
  }

 private:
  Bytes Take() {
    const unsigned length = stream_.U16(at_ + 2);
    const Bytes content = stream_.Part(at_ + 4, length);
    at_ += 4 + length;
    return content;
  }

  Bytes stream_;
  std::size_t at_ = 0;
};

/// Reads on through a record and what continues it.
class Reader {
 public:
  explicit Reader(const Record& record, std::size_t at = 0) : pieces_(record.pieces), at_(at) {}

  bool AtEnd() const { return piece_ + 1 == pieces_.size() && at_ >= pieces_[piece_].Size(); }

  unsigned U8() {
    Forward();
    return pieces_[piece_].U8(at_++);
  }
  unsigned U16() {
    const unsigned low = U8();
    return low | U8() << 8;
  }
  std::uint32_t U32() {
    const std::uint32_t low = U16();
    return low | static_cast<std::uint32_t>(U16()) << 16;
  }
  void Skip(std::size_t count) {
    while (count > 0) {
      Forward();
      const std::size_t step = std::min(count, pieces_[piece_].Size() - at_);
      at_ += step;
      count -= step;
    }
  }

  /// `count` characters. Where a piece ends among them the next one begins by saying anew how wide they are.
  std::string Characters(std::size_t count, bool wide) {
    std::string text;
    while (count > 0) {
      if (at_ == pieces_[piece_].Size()) {
        Forward();
        wide = (U8() & kWide) != 0;
      }
      const std::size_t width = wide ? 2 : 1;
      const std::size_t there = std::min(count, (pieces_[piece_].Size() - at_) / width);
      if (there == 0 && at_ != pieces_[piece_].Size()) throw SheetFault("damaged: half a character");
      const std::string_view bytes = pieces_[piece_].Part(at_, there * width).View();
      if (wide) {
        text += FromUtf16(bytes);
      } else {
        for (const char byte : bytes) text += FromUtf16(std::string{byte, '\0'});
      }
      at_ += there * width;
      count -= there;
    }
    return text;
  }

  /// A text of version 8 whose length has been read: how its characters are kept, the characters, and what it carries
  /// along of formats and pronunciation.
  std::string Text(std::size_t count) {
    const unsigned flags = U8();
    const std::size_t formats = (flags & kFormats) != 0 ? U16() : 0;
    const std::size_t pronunciation = (flags & kPronunciation) != 0 ? U32() : 0;
    std::string text = Characters(count, (flags & kWide) != 0);
    Skip(formats * 4);
    Skip(pronunciation);
    return text;
  }

 private:
  static constexpr unsigned kWide = 1, kPronunciation = 4, kFormats = 8;

  /// To the next byte that there is.
  void Forward() {
    while (at_ >= pieces_[piece_].Size()) {
      if (piece_ + 1 == pieces_.size()) throw SheetFault("damaged: a record ends too early");
      ++piece_;
      at_ = 0;
    }
  }

  const std::vector<Bytes>& pieces_;
  std::size_t piece_ = 0;
  std::size_t at_;
};

/// A number squeezed into 30 bits.
double FromRk(std::uint32_t rk) {
  constexpr std::uint32_t kHundredth = 1, kInteger = 2;
  const double value = (rk & kInteger) != 0 ? static_cast<double>(static_cast<std::int32_t>(rk) >> 2)
                                            : std::bit_cast<double>(static_cast<std::uint64_t>(rk & ~3U) << 32);
  return (rk & kHundredth) != 0 ? value / 100 : value;
}

class XlsBook {
 public:
  XlsBook(Bytes stream, SheetCells& cells) : records_(stream), cells_(cells) {}

  void Read() {
    const std::size_t sheet = ReadGlobals();
    records_.Seek(sheet);
    if (records_.Next().id != record::kBegin) throw SheetFault("damaged: no worksheet where one should be");
    ReadSheet();
  }

 private:
  /// Where the first worksheet begins.
  std::size_t ReadGlobals() {
    const Record begin = records_.Next();
    if (begin.id != record::kBegin) throw SheetFault("of a version that isn't known");
    const unsigned version = begin.Content().U16(0);
    if (version != kVersion8 && version != kVersion5) throw SheetFault("of a version that isn't known");
    version8_ = version == kVersion8;

    std::optional<std::size_t> sheet;
    for (Record next = records_.Next(); next.id != record::kEnd; next = records_.Next()) {
      if (next.id == record::kPassword) throw SheetFault("protected by a password");
      if (next.id == record::kTexts) ReadTexts(next);
      // Sheets of charts and macros stand among the others.
      if (next.id == record::kSheet && !sheet && next.Content().U8(5) == 0) sheet = next.Content().U32(0);
    }
    if (!sheet) throw SheetFault("a workbook without a worksheet");
    return *sheet;
  }

  void ReadTexts(const Record& record) {
    Reader reader(record);
    reader.Skip(4);
    const std::uint32_t count = reader.U32();
    // Some programs count too many; a cell that refers to a text that isn't there is noticed then.
    for (std::uint32_t i = 0; i < count && !reader.AtEnd(); ++i) {
      const unsigned length = reader.U16();
      texts_.push_back(reader.Text(length));
    }
  }

  void ReadSheet() {
    int depth = 1;  // charts on the sheet are streams within it
    while (depth > 0) {
      const Record next = records_.Next();
      if (next.id == record::kBegin) {
        ++depth;
      } else if (next.id == record::kEnd) {
        --depth;
      } else if (depth == 1) {
        ReadCell(next);
      }
    }
  }

  void ReadCell(const Record& record) {
    const Bytes& content = record.Content();
    switch (record.id) {
      case record::kNumber:
        return Put(content, content.F64(6));
      case record::kRk:
        return Put(content, FromRk(content.U32(6)));
      case record::kMulRk:
        // row, first column, then a format and a number for each, the last column
        for (std::size_t at = 4; at + 8 <= content.Size(); at += 6) {
          cells_.Put(content.U16(0) + 1, content.U16(2) + (at - 4) / 6 + 1, FromRk(content.U32(at + 2)));
        }
        return;
      case record::kTextNumber: {
        const std::uint32_t index = content.U32(6);
        if (index >= texts_.size()) throw SheetFault("damaged: a text is missing");
        return Put(content, texts_[index]);
      }
      case record::kText:
      case record::kRichText:
        return Put(content, OwnText(record, 6));
      case record::kBoolOrError:
        return Put(content, BoolOrError(content.U8(6), content.U8(7) != 0));
      case record::kFormula:
        return ReadFormula(content);
      case record::kFormulaText:
        if (formula_) cells_.Put(formula_->first, formula_->second, OwnText(record, 0));
        formula_.reset();
        return;
      default:
        return;
    }
  }

  /// The value that the formula had when the file was saved.
  void ReadFormula(const Bytes& content) {
    constexpr unsigned kNoNumber = 0xFFFF, kText = 0, kBool = 1, kError = 2;
    formula_.reset();
    if (content.U16(12) != kNoNumber) return Put(content, content.F64(6));
    const unsigned kind = content.U8(6);
    // A text follows in a record of its own.
    if (kind == kText) formula_ = {content.U16(0) + 1, content.U16(2) + 1};
    if (kind == kBool || kind == kError) Put(content, BoolOrError(content.U8(8), kind == kError));
  }

  static std::string_view BoolOrError(unsigned value, bool error) {
    if (error) return SheetErrorText(value);
    return value != 0 ? "TRUE" : "FALSE";
  }

  /// A text that stands in the record of its cell, behind its length.
  std::string OwnText(const Record& record, std::size_t at) const {
    Reader reader(record, at);
    const unsigned length = reader.U16();
    if (version8_) return reader.Text(length);
    std::string bytes;
    for (unsigned i = 0; i < length; ++i) bytes += static_cast<char>(reader.U8());
    return FromWindows1251(bytes);
  }

  template <class Value>
  void Put(const Bytes& cell, Value value) {
    cells_.Put(cell.U16(0) + 1, cell.U16(2) + 1, value);
  }

  Records records_;
  SheetCells& cells_;
  bool version8_ = true;
  std::vector<std::string> texts_;
  std::optional<std::pair<unsigned, unsigned>> formula_;  ///< row and column of one whose text is to come
};

}  // namespace

void ReadXls(std::string_view bytes, SheetCells& cells) {
  const CompoundFile file(bytes);
  const std::optional<std::string> stream = file.Stream({u"Workbook", u"Book"});
  if (!stream) throw SheetFault("no workbook");
  XlsBook(Bytes(*stream), cells).Read();
}

}  // namespace zrt
