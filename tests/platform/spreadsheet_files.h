#pragma once

#include <zip.h>

#include <bit>
#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// Spreadsheet files put together byte by byte, for what no program at hand writes.

namespace zrt::test {

/// `size` bytes of a number, least byte first.
inline std::string Bytes(std::uint64_t value, std::size_t size) {
  std::string bytes;
  for (std::size_t i = 0; i < size; ++i) bytes.push_back(static_cast<char>(value >> (8 * i) & 0xFF));
  return bytes;
}
inline std::string U16(std::uint64_t value) {
  return Bytes(value, 2);
}
inline std::string U32(std::uint64_t value) {
  return Bytes(value, 4);
}
inline std::string Double(double value) {
  return Bytes(std::bit_cast<std::uint64_t>(value), 8);
}

// Workbooks of .xls files.

inline std::string Record(std::uint16_t id, const std::string& data = {}) {
  return U16(id) + U16(data.size()) + data;
}

inline constexpr std::uint16_t kVersion95 = 0x0500;
inline constexpr std::uint16_t kVersion97 = 0x0600;

inline std::string Bof(std::uint16_t version, std::uint16_t type) {
  return Record(0x0809, U16(version) + U16(type) + U32(0) + (version == kVersion97 ? U32(0) + U32(0) : ""));
}
inline std::string Eof() {
  return Record(0x000A);
}

/// A record of a cell; row and column count from 0 as in the file.
inline std::string CellRecord(std::uint16_t id, int row, int column, const std::string& data) {
  return Record(id, U16(static_cast<std::uint64_t>(row)) + U16(static_cast<std::uint64_t>(column)) + U16(0) + data);
}

struct XlsSheet {
  std::uint8_t type = 0;  // 0 is a worksheet, 2 a chart
  std::string records;
};

/// A workbook with `globals` (whole records) among those that describe it.
inline std::string Workbook(std::uint16_t version, const std::vector<XlsSheet>& sheets,
                            const std::string& globals = {}) {
  const auto describe = [&](const std::vector<std::size_t>& offsets) {
    std::string part = Bof(version, 0x0005) + globals;
    for (std::size_t i = 0; i < sheets.size(); ++i) {
      const std::string name = version == kVersion97 ? std::string("\x01\0S", 3) : std::string("\x01S");
      part += Record(0x0085, U32(offsets[i]) + Bytes(0, 1) + Bytes(sheets[i].type, 1) + name);
    }
    return part + Eof();
  };
  std::vector<std::size_t> offsets(sheets.size());
  std::size_t end = describe(offsets).size();
  std::string bodies;
  for (std::size_t i = 0; i < sheets.size(); ++i) {
    offsets[i] = end + bodies.size();
    bodies += Bof(version, sheets[i].type == 2 ? 0x0020 : 0x0010) + sheets[i].records + Eof();
  }
  return describe(offsets) + bodies;
}

/// A compound file with these streams in its topmost folder. Those below 4096 bytes go into the mini stream. A folder
/// with a stream `hidden_name` of nonsense lies beside them.
inline std::string CompoundFile(const std::vector<std::pair<std::string, std::string>>& streams,
                                const std::string& hidden_name = "Workbook") {
  constexpr std::size_t kSector = 512, kMini = 64, kInHeader = 109, kNumbers = kSector / 4;
  constexpr std::uint32_t kEnd = 0xFFFFFFFE, kFree = 0xFFFFFFFF;
  std::vector<std::uint32_t> next;
  std::string body;
  const auto add = [&](std::string data) -> std::uint32_t {
    if (data.empty()) return kEnd;
    data.resize((data.size() + kSector - 1) / kSector * kSector);
    const auto start = static_cast<std::uint32_t>(next.size());
    for (std::size_t i = 0; i < data.size() / kSector; ++i) next.push_back(static_cast<std::uint32_t>(next.size() + 1));
    next.back() = kEnd;
    body += data;
    return start;
  };
  std::string mini, mini_next;
  const auto entry = [](const std::string& name, int type, std::uint32_t right, std::uint32_t child,
                        std::uint32_t start, std::size_t size) {
    std::string bytes;
    for (const char letter : name) bytes += {letter, '\0'};
    bytes.resize(64);
    return bytes + U16(2 * name.size() + 2) + Bytes(static_cast<std::uint64_t>(type), 1) + Bytes(1, 1) + U32(kFree) +
           U32(right) + U32(child) + std::string(36, '\0') + U32(start) + Bytes(size, 8);
  };
  // Entry 1 is the stream in the folder, entry 2 the folder, the others hang on it one after another.
  std::string folders = entry(hidden_name, 2, kFree, kFree, add(std::string(4096, 'x')), 4096) +
                        entry("folder", 1, streams.empty() ? kFree : 3, 1, 0, 0);
  for (std::size_t i = 0; i < streams.size(); ++i) {
    const auto& [name, data] = streams[i];
    std::uint32_t start = 0;
    if (data.size() >= 4096) {
      start = add(data);
    } else {
      start = static_cast<std::uint32_t>(mini.size() / kMini);
      for (std::size_t at = 0; at < data.size(); at += kMini) {
        mini += data.substr(at, kMini);
        mini.resize((mini.size() + kMini - 1) / kMini * kMini);
        mini_next += U32(at + kMini < data.size() ? mini.size() / kMini : kEnd);
      }
    }
    folders +=
        entry(name, 2, i + 1 < streams.size() ? static_cast<std::uint32_t>(i + 4) : kFree, kFree, start, data.size());
  }
  const std::uint32_t mini_start = add(mini);
  folders = entry("Root Entry", 5, kFree, 2, mini_start, mini.size()) + folders;
  const std::uint32_t folders_start = add(folders);
  const std::uint32_t mini_next_start = add(mini_next);

  // The table of sectors comes last, then the sectors that name those of its own which the header has no room for.
  std::size_t tables = 1, further = 0;
  for (std::size_t all = 0; tables * kNumbers < (all = next.size() + tables + further); ++tables) {
    further = tables + 1 > kInHeader ? (tables + 1 - kInHeader + kNumbers - 2) / (kNumbers - 1) : 0;
  }
  const std::size_t first_table = next.size();
  next.resize(next.size() + tables, 0xFFFFFFFD);
  next.resize(next.size() + further, 0xFFFFFFFC);
  next.resize(tables * kNumbers, kFree);
  for (const std::uint32_t number : next) body += U32(number);
  std::string names;
  for (std::size_t i = 0; i < tables; ++i) {
    if (i > kInHeader && (i - kInHeader) % (kNumbers - 1) == 0) {
      names += U32(first_table + tables + (i - kInHeader) / (kNumbers - 1));
    }
    names += U32(first_table + i);
  }
  std::string in_header = names.substr(0, 4 * kInHeader);
  while (in_header.size() < 4 * kInHeader) in_header += U32(kFree);
  if (further > 0) {
    names.erase(0, 4 * kInHeader);
    while (names.size() < further * kSector - 4) names += U32(kFree);
    body += names + U32(kEnd);
  }
  return "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1" + std::string(16, '\0') + U16(0x3E) + U16(3) + U16(0xFFFE) + U16(9) +
         U16(6) + std::string(10, '\0') + U32(tables) + U32(folders_start) + U32(0) + U32(4096) + U32(mini_next_start) +
         U32(1) + U32(further > 0 ? first_table + tables : kEnd) + U32(further) + in_header + body;
}

// Archives, the other two kinds.

using Members = std::map<std::string, std::string>;

/// The archive of these members; with a password when one is given.
inline std::string ZipOf(const Members& members, const char* password = nullptr) {
  zip_error_t error;
  zip_error_init(&error);
  zip_source_t* const target = zip_source_buffer_create(nullptr, 0, 0, &error);
  zip_source_keep(target);
  zip_t* const zip = zip_open_from_source(target, ZIP_TRUNCATE, &error);
  for (const auto& [name, data] : members) {
    zip_source_t* const source = zip_source_buffer(zip, data.data(), data.size(), 0);
    const auto index = static_cast<zip_uint64_t>(zip_file_add(zip, name.c_str(), source, ZIP_FL_ENC_UTF_8));
    zip_set_file_compression(zip, index, ZIP_CM_DEFLATE, 1);
    if (password != nullptr) zip_file_set_encryption(zip, index, ZIP_EM_AES_256, password);
  }
  std::string bytes;
  if (zip_close(zip) == 0 && zip_source_open(target) == 0) {
    zip_stat_t stat;
    zip_source_stat(target, &stat);
    bytes.resize(stat.size);
    zip_source_read(target, bytes.data(), bytes.size());
    zip_source_close(target);
  }
  zip_source_free(target);
  if (bytes.empty()) throw std::runtime_error("no archive made");
  return bytes;
}

/// The members of an archive.
inline Members MembersOf(const std::string& archive) {
  zip_error_t error;
  zip_error_init(&error);
  zip_t* const zip =
      zip_open_from_source(zip_source_buffer_create(archive.data(), archive.size(), 0, &error), ZIP_RDONLY, &error);
  Members members;
  for (zip_int64_t i = 0; i < zip_get_num_entries(zip, 0); ++i) {
    zip_stat_t stat;
    zip_stat_index(zip, static_cast<zip_uint64_t>(i), 0, &stat);
    std::string data(stat.size, '\0');
    zip_file_t* const member = zip_fopen_index(zip, static_cast<zip_uint64_t>(i), 0);
    zip_fread(member, data.data(), data.size());
    zip_fclose(member);
    members[stat.name] = std::move(data);
  }
  zip_discard(zip);
  return members;
}

}  // namespace zrt::test
