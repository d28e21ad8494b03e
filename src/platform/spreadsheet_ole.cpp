#include "platform/spreadsheet_ole.h"

#include <algorithm>

#include "platform/spreadsheet_cells.h"

namespace zrt {

namespace {

constexpr std::size_t kHeaderSize = 512;
constexpr std::size_t kTableSectorsInHeader = 109;
constexpr std::size_t kEntrySize = 128;
constexpr std::uint32_t kFree = 0xFFFFFFFF;
constexpr std::uint32_t kEndOfChain = 0xFFFFFFFE;
constexpr std::uint32_t kLastSector = 0xFFFFFFF9;  // greater numbers have a meaning of their own
constexpr std::uint8_t kStreamType = 2;

void AppendNumbers(std::vector<std::uint32_t>& numbers, std::string_view bytes) {
  for (std::size_t at = 0; at + 4 <= bytes.size(); at += 4) numbers.push_back(LittleEndian<std::uint32_t>(bytes, at));
}

char LowerLatin(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool SameName(std::string_view one, std::string_view other) {
  return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                    [](char a, char b) { return LowerLatin(a) == LowerLatin(b); });
}

}  // namespace

CompoundFile::CompoundFile(std::string_view bytes) : bytes_(bytes) {
  if (bytes_.size() < kHeaderSize) throw BadSpreadsheet(SpreadsheetFault::kDamaged);
  const auto sector_shift = LittleEndian<std::uint16_t>(bytes_, 30);
  const auto mini_sector_shift = LittleEndian<std::uint16_t>(bytes_, 32);
  if (sector_shift < 7 || sector_shift > 16 || mini_sector_shift < 3 || mini_sector_shift > sector_shift) {
    throw BadSpreadsheet(SpreadsheetFault::kDamaged);
  }
  sector_size_ = std::size_t{1} << sector_shift;
  mini_sector_size_ = std::size_t{1} << mini_sector_shift;
  mini_limit_ = LittleEndian<std::uint32_t>(bytes_, 56);
  ReadAllocationTable();
  ReadFolders();
  if (entries_.empty()) throw BadSpreadsheet(SpreadsheetFault::kDamaged);
}

// The last sector of a file may be cut where its data end.
std::string_view CompoundFile::Sector(std::uint32_t number) const {
  const std::uint64_t offset = (std::uint64_t{number} + 1) * sector_size_;
  if (number > kLastSector || offset >= bytes_.size()) throw BadSpreadsheet(SpreadsheetFault::kDamaged);
  return bytes_.substr(offset, sector_size_);
}

// The table of all sectors' followers is spread over sectors, the first 109 of which the header names; the others are
// named in a chain of further sectors, the last number of each of which leads to the next.
void CompoundFile::ReadAllocationTable() {
  std::vector<std::uint32_t> table_sectors;
  AppendNumbers(table_sectors, bytes_.substr(76, 4 * kTableSectorsInHeader));
  const std::size_t all_sectors = bytes_.size() / sector_size_ + 1;
  std::uint32_t further = LittleEndian<std::uint32_t>(bytes_, 68);
  for (std::size_t steps = 0; further <= kLastSector; ++steps) {
    if (steps > all_sectors) throw BadSpreadsheet(SpreadsheetFault::kDamaged);  // the chain bites its tail
    const std::string_view sector = Sector(further);
    if (sector.size() < sector_size_) throw BadSpreadsheet(SpreadsheetFault::kDamaged);
    AppendNumbers(table_sectors, sector);
    further = table_sectors.back();
    table_sectors.pop_back();
  }
  std::size_t known = 0;
  for (const std::uint32_t number : table_sectors) {
    if (number > kLastSector) continue;
    if (++known > all_sectors) throw BadSpreadsheet(SpreadsheetFault::kDamaged);
    const std::string_view sector = Sector(number);
    if (sector.size() < sector_size_) throw BadSpreadsheet(SpreadsheetFault::kDamaged);
    AppendNumbers(next_, sector);
  }
}

std::string CompoundFile::Chain(std::uint32_t start) const {
  std::string data;
  std::size_t steps = 0;
  for (std::uint32_t number = start; number != kEndOfChain && number != kFree; number = next_[number]) {
    if (number >= next_.size() || ++steps > bytes_.size() / sector_size_ + 1)
      throw BadSpreadsheet(SpreadsheetFault::kDamaged);
    data.append(Sector(number));
  }
  return data;
}

// Short streams share the sectors of the mini stream, which belongs to the topmost folder and has a table of its own.
std::string CompoundFile::MiniChain(std::uint32_t start, std::uint32_t size) const {
  const std::string mini_stream = Chain(entries_.front().start);
  std::vector<std::uint32_t> next;
  AppendNumbers(next, Chain(LittleEndian<std::uint32_t>(bytes_, 60)));
  std::string data;
  for (std::uint32_t number = start; data.size() < size; number = next[number]) {
    const std::uint64_t offset = std::uint64_t{number} * mini_sector_size_;
    if (number >= next.size() || offset >= mini_stream.size() || data.size() > mini_stream.size()) {
      throw BadSpreadsheet(SpreadsheetFault::kDamaged);
    }
    data.append(mini_stream, offset, mini_sector_size_);
  }
  return data;
}

void CompoundFile::ReadFolders() {
  const std::string folders = Chain(LittleEndian<std::uint32_t>(bytes_, 48));
  for (std::size_t at = 0; at + kEntrySize <= folders.size(); at += kEntrySize) {
    const std::string_view bytes = std::string_view(folders).substr(at, kEntrySize);
    Entry entry;
    const std::size_t name_size = std::min<std::size_t>(LittleEndian<std::uint16_t>(bytes, 64), 64);
    for (std::size_t i = 0; i + 2 < name_size; i += 2) {  // the last character is the zero that ends it
      const auto code = LittleEndian<std::uint16_t>(bytes, i);
      entry.name.push_back(code < 0x80 ? static_cast<char>(code) : '?');
    }
    entry.type = LittleEndian<std::uint8_t>(bytes, 66);
    entry.left = LittleEndian<std::uint32_t>(bytes, 68);
    entry.right = LittleEndian<std::uint32_t>(bytes, 72);
    entry.child = LittleEndian<std::uint32_t>(bytes, 76);
    entry.start = LittleEndian<std::uint32_t>(bytes, 116);
    entry.size = LittleEndian<std::uint32_t>(bytes, 120);
    entries_.push_back(std::move(entry));
  }
}

std::optional<std::string> CompoundFile::Stream(std::string_view name) const {
  // Only the topmost folder is walked: a workbook laid into a cell brings a stream of the same name in a folder below.
  std::vector<std::uint32_t> to_visit{entries_.front().child};
  std::vector<bool> visited(entries_.size());
  while (!to_visit.empty()) {
    const std::uint32_t index = to_visit.back();
    to_visit.pop_back();
    if (index >= entries_.size() || visited[index]) continue;
    visited[index] = true;
    const Entry& entry = entries_[index];
    if (entry.type == kStreamType && SameName(entry.name, name)) {
      std::string data = entry.size < mini_limit_ ? MiniChain(entry.start, entry.size) : Chain(entry.start);
      if (data.size() < entry.size) throw BadSpreadsheet(SpreadsheetFault::kDamaged);
      data.resize(entry.size);
      return data;
    }
    to_visit.push_back(entry.left);
    to_visit.push_back(entry.right);
  }
  return std::nullopt;
}

}  // namespace zrt
