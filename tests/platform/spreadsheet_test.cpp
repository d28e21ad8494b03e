// Spreadsheets: files that a real program has saved in each kind, the awkward places of their formats, and damage.

#include "platform/spreadsheet.h"

#include <gtest/gtest.h>
#include <unistd.h>
#include <zip.h>

#include <bit>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "core/errors.h"
#include "core/text.h"
#include "platform/workbook.h"

namespace zrt {
namespace {

constexpr const char* kSamples[] = {"sample.xls", "sample.xlsx", "sample.ods"};

std::string FileBytes(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}
std::string Sample(const std::string& name) {
  return FileBytes(std::filesystem::path(ZRT_SHEETS) / name);
}

std::string U16(unsigned value) {
  return {static_cast<char>(value & 0xFF), static_cast<char>(value >> 8 & 0xFF)};
}
std::string U32(std::uint32_t value) {
  return U16(value & 0xFFFF) + U16(value >> 16);
}
std::string F64(double value) {
  const auto bits = std::bit_cast<std::uint64_t>(value);
  return U32(static_cast<std::uint32_t>(bits)) + U32(static_cast<std::uint32_t>(bits >> 32));
}
std::string Wide(const std::u16string& text) {
  std::string bytes;
  for (const char16_t unit : text) bytes += U16(unit);
  return bytes;
}
std::string Record(unsigned id, const std::string& content) {
  return U16(id) + U16(static_cast<unsigned>(content.size())) + content;
}
std::string At(unsigned row, unsigned column) {
  return U16(row - 1) + U16(column - 1) + U16(15);
}

/// A compound file with this one stream. Streams of less than 4096 bytes stand in the shared one of the small.
std::string Compound(const std::u16string& name, std::string stream) {
  const auto size = static_cast<std::uint32_t>(stream.size());
  const bool small = size < 4096;
  const auto fill = [](std::string bytes, std::size_t unit) {
    bytes.resize((bytes.size() + unit - 1) / unit * unit, '\0');
    return bytes;
  };
  stream = fill(stream, 512);
  const auto sectors = static_cast<std::uint32_t>(stream.size() / 512);
  // Sector 0 is the table, 1 the directory, 2 the table of the small ones, then the stream.
  std::string table = U32(0xFFFFFFFD) + U32(0xFFFFFFFE) + U32(0xFFFFFFFE);
  for (std::uint32_t i = 0; i < sectors; ++i) table += U32(i + 1 == sectors ? 0xFFFFFFFE : i + 4);
  while (table.size() < 512) table += U32(0xFFFFFFFF);
  std::string small_table;
  if (small) {
    for (std::uint32_t i = 0; i * 64 < size; ++i) small_table += U32((i + 1) * 64 >= size ? 0xFFFFFFFE : i + 1);
  }
  while (small_table.size() < 512) small_table += U32(0xFFFFFFFF);
  const auto entry = [](const std::u16string& entry_name, char type, std::uint32_t first, std::uint32_t length) {
    std::string bytes = Wide(entry_name);
    bytes.resize(64, '\0');
    bytes += U16(static_cast<unsigned>((entry_name.size() + 1) * 2)) + type + std::string(49, '\0');
    return bytes + U32(first) + U32(length) + U32(0);
  };
  const std::string directory =
      fill(entry(u"Root Entry", 5, small ? 3 : 0xFFFFFFFE, small ? static_cast<std::uint32_t>(stream.size()) : 0) +
               entry(name, 2, small ? 0 : 3, size),
           512);
  std::string header = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1" + std::string(16, '\0') + U16(0x3E) + U16(3) + U16(0xFFFE) +
                       U16(9) + U16(6) + std::string(10, '\0') + U32(1) + U32(1) + U32(0) + U32(4096) + U32(2) +
                       U32(1) + U32(0xFFFFFFFE) + U32(0) + U32(0);
  while (header.size() < 512) header += U32(0xFFFFFFFF);
  return header + table + directory + small_table + stream;
}

/// A workbook of one worksheet that holds `cells`; `globals` stand in front.
std::string Book(unsigned version, const std::string& globals, const std::string& cells) {
  const auto begin = [&](unsigned kind) { return Record(0x0809, U16(version) + U16(kind) + std::string(4, '\0')); };
  const std::string end = Record(0x000A, "");
  const auto sheet_record = [](std::uint32_t at, char kind) {
    return Record(0x0085, U32(at) + '\0' + kind + std::string("\x01\0S", 3));
  };
  // A chart stands in front of the worksheet.
  const std::size_t front = (begin(5) + globals + sheet_record(0, 2) + sheet_record(0, 0) + end).size();
  return begin(5) + globals + sheet_record(7, 2) + sheet_record(static_cast<std::uint32_t>(front), 0) + end +
         begin(16) + cells + end;
}

using Members = std::vector<std::pair<std::string, std::string>>;

std::string Zip(const Members& members) {
  const auto path = std::filesystem::temp_directory_path() / ("zrt_zip_" + std::to_string(getpid()));
  std::filesystem::remove(path);
  zip_t* zip = zip_open(path.c_str(), ZIP_CREATE, nullptr);
  for (const auto& [name, bytes] : members) {
    zip_file_add(zip, name.c_str(), zip_source_buffer(zip, bytes.data(), bytes.size(), 0), 0);
  }
  zip_close(zip);
  const std::string bytes = FileBytes(path);
  std::filesystem::remove(path);
  return bytes;
}

Members Unzip(const std::string& name) {
  Members members;
  zip_t* zip = zip_open((std::filesystem::path(ZRT_SHEETS) / name).c_str(), ZIP_RDONLY, nullptr);
  for (zip_int64_t i = 0; i < zip_get_num_entries(zip, 0); ++i) {
    zip_stat_t stat;
    zip_stat_index(zip, static_cast<zip_uint64_t>(i), 0, &stat);
    std::string bytes(stat.size, '\0');
    zip_file_t* file = zip_fopen_index(zip, static_cast<zip_uint64_t>(i), 0);
    zip_fread(file, bytes.data(), bytes.size());
    zip_fclose(file);
    members.emplace_back(stat.name, std::move(bytes));
  }
  zip_discard(zip);
  return members;
}

class Sheets : public testing::Test {
 protected:
  Sheets() { std::filesystem::create_directories(root_ / "C"); }
  ~Sheets() override { std::filesystem::remove_all(root_); }

  Spreadsheet Open(const std::string& bytes) {
    std::ofstream(root_ / "C" / "book.xls", std::ios::binary) << bytes;
    return Spreadsheet::Open(drives_, "C:\\book.xls");
  }
  /// Damage may be noticed or not, but it does no harm.
  void OpenDamaged(const std::string& bytes) {
    try {
      const Spreadsheet sheet = Open(bytes);
      for (std::int64_t row = 0; row <= std::min<std::int64_t>(sheet.Rows(), 20) + 1; ++row) sheet.Cell(row, 1);
    } catch (const FileError& error) {
      EXPECT_EQ(error.Path(), "C:\\book.xls");
    }
  }
  void ExpectFault(const std::string& bytes) { EXPECT_THROW(Open(bytes), FileError); }

  std::filesystem::path root_ = std::filesystem::temp_directory_path() / ("zrt_sheets_" + std::to_string(getpid()));
  DriveMap drives_{root_};
};

TEST_F(Sheets, TheThreeKindsLoadAlike) {
  struct Case {
    std::int64_t row;
    std::int64_t column;
    const char* text;
  };
  const Case cases[] = {
      {1, 1, "Код"},
      {1, 4, "Штрихкод"},
      {2, 1, "1"},
      {2, 2, "Чай \"Лісовий\" & мята"},
      {2, 3, "12050"},
      {2, 4, "4820000000017"},
      {3, 1, "2"},
      {3, 2, "Вода"},
      {3, 3, "4500"},
      {3, 4, "0482000000002"},
      {3, 5, "#DIV/0!"},
      {3, 6, "TRUE"},
      {3, 7, ""},
      {4, 1, "1.5"},
      {4, 2, "0.3"},
      {4, 3, "-7"},
      {4, 4, "0.25"},
      {4, 5, "100000000000000000000"},
      {4, 6, "0.000001"},
      {4, 7, "123456789.12"},
      {5, 2, "две\nстроки"},
      {5, 3, "  два   пробела "},
      {5, 4, "жирный текст"},
      {6, 1, "7"},
      {6, 3, "7"},
      {6, 4, ""},
      {6, 6, "после пустых"},
      {7, 2, "дважды"},
      {8, 2, "дважды"},
      {9, 2, ""},
      {12, 1, "объединены"},
      {12, 2, ""},
      {12, 3, "€ — ½"},
      {13, 1, ""},
      {0, 1, ""},
      {1, 0, ""},
      {-1, 1, ""},
      {1, 1000000000000, ""},
  };
  for (const char* name : kSamples) {
    SCOPED_TRACE(name);
    const Spreadsheet sheet = Open(Sample(name));
    EXPECT_EQ(sheet.Rows(), 12);
    for (const Case& c : cases) EXPECT_EQ(sheet.Cell(c.row, c.column), c.text) << c.row << ", " << c.column;
  }
}

TEST_F(Sheets, OldWorkbooks) {
  constexpr unsigned k8 = 0x0600, k5 = 0x0500;
  const std::string kFormulaTail = U16(0) + U32(0) + U16(0);
  const auto formula = [&](unsigned row, unsigned column, const std::string& result) {
    return Record(0x0006, At(row, column) + result + kFormulaTail);
  };
  // Texts of the table, split among its characters: the part that goes on says anew how wide they are.
  const std::string texts =
      Record(0x00FC, U32(9) + U32(9) + U16(4) + '\x01' + Wide(u"Ча")) +
      Record(0x003C, '\x01' + Wide(u"йк") + U16(6) + std::string("\0abc", 4)) +
      Record(0x003C, '\x01' + Wide(u"где") + U16(2) + '\x0D' + U16(1) + U32(3) + Wide(u"Ёж") + U16(0)) +
      // formats and pronunciation go over the border without a word
      Record(0x003C, U16(1) + "xyz" + U16(1) + std::string("\0\xE9", 2));
  const std::string cells =
      Record(0x00FD, At(1, 1) + U32(0)) + Record(0x00FD, At(1, 2) + U32(1)) + Record(0x00FD, At(1, 3) + U32(2)) +
      Record(0x00FD, At(1, 4) + U32(3)) + Record(0x0203, At(2, 1) + F64(4820000000017.0)) +
      Record(0x027E, At(2, 2) + U32((12050U << 2) | 3)) +
      Record(0x027E, At(2, 3) + U32(static_cast<std::uint32_t>(-5) << 2 | 2)) +
      Record(0x00BD, U16(2) + U16(0) + U16(15) + U32(7U << 2 | 2) + U16(15) + U32(0x3FF80000) + U16(1)) +
      Record(0x0204, At(4, 1) + U16(2) + std::string("\x01", 1) + Wide(u"Да")) +
      Record(0x0205, At(4, 2) + std::string("\x01\0", 2)) + Record(0x0205, At(4, 3) + std::string("\x2A\x01", 2)) +
      formula(5, 1, F64(2.5)) + formula(5, 2, std::string("\0\0\0\0\0\0\xFF\xFF", 8)) + Record(0x04BC, "shared") +
      Record(0x0207, U16(5) + std::string("\0ab", 3)) + Record(0x003C, std::string("\x01", 1) + Wide(u"вгд")) +
      formula(5, 3, std::string("\x01\0\x01\0\0\0\xFF\xFF", 8)) +
      formula(5, 4, std::string("\x02\0\x07\0\0\0\xFF\xFF", 8)) +
      formula(5, 5, std::string("\x03\0\0\0\0\0\xFF\xFF", 8)) +
      // a chart on the sheet has cells of its own
      Record(0x0809, U16(k8) + U16(0x20)) + Record(0x0203, At(1, 1) + F64(99)) + Record(0x000A, "") +
      Record(0x0203, At(6, 1) + F64(6));
  for (const std::string& filler : {std::string(), std::string(5000, 'x')}) {
    const Spreadsheet sheet = Open(Compound(u"Workbook", Book(k8, Record(0x0031, filler) + texts, cells)));
    const std::vector<std::vector<std::string>> expected = {
        {"Чайк", "abcгде", "Ёж", "é"}, {"4820000000017", "120.5", "-5"},        {"7", "1.5"},
        {"Да", "TRUE", "#N/A"},        {"2.5", "abвгд", "TRUE", "#DIV/0!", ""}, {"6"}};
    for (std::size_t row = 0; row < expected.size(); ++row) {
      for (std::size_t column = 0; column < expected[row].size(); ++column) {
        EXPECT_EQ(sheet.Cell(static_cast<int>(row) + 1, static_cast<int>(column) + 1), expected[row][column])
            << row + 1 << ", " << column + 1;
      }
    }
  }
  const std::string old = ToWindows1251("Сахар");
  const Spreadsheet sheet = Open(Compound(
      u"Book", Book(k5, "",
                    Record(0x0204, At(1, 1) + U16(5) + old) + Record(0x00D6, At(1, 2) + U16(5) + old + "\x01..") +
                        formula(1, 3, std::string("\0\0\0\0\0\0\xFF\xFF", 8)) + Record(0x0207, U16(5) + old))));
  for (const int column : {1, 2, 3}) EXPECT_EQ(sheet.Cell(1, column), "Сахар");

  ExpectFault(Compound(u"Workbook", Book(k8, Record(0x002F, std::string(6, '\0')), cells)));  // protected
  ExpectFault(Compound(u"Workbook", Book(0x0400, "", cells)));
  ExpectFault(Compound(u"Document", Book(k8, "", cells)));
  ExpectFault(Compound(u"Workbook", Book(k8, "", Record(0x00FD, At(1, 1) + U32(9)))));
}

TEST_F(Sheets, BooksOfOtherPrograms) {
  // Cells without their places, other prefixes, texts in the cells, a chart in front of the worksheet.
  const std::string kTypes = "http://schemas.openxmlformats.org/officeDocument/2006/relationships/";
  const auto relations = [&](const Members& all) {
    std::string xml = "<Relationships>";
    for (const auto& [kind, target] : all) {
      xml += "<Relationship Id='" + target + "' Type='" + kTypes + kind + "' Target='" + target + "'/>";
    }
    return xml + "</Relationships>";
  };
  const auto book = [&](const std::string& rows) {
    return Zip(
        {{"_rels/.rels", relations({{"officeDocument", "/x/book.xml"}})},
         {"x/_rels/book.xml.rels",
          relations({{"worksheet", "../s/2.xml"}, {"chartsheet", "1.xml"}, {"sharedStrings", "t.xml"}})},
         {"x/book.xml",
          "<x:workbook xmlns:x='u' xmlns:r='v'><x:sheets><x:sheet sheetId='1' r:id='1.xml'/><x:sheet sheetId='2' "
          "state='hidden' r:id='../s/2.xml'/></x:sheets></x:workbook>"},
         {"x/t.xml",
          "<sst><si><t>один</t></si><si><r><t xml:space='preserve'>два </t></r><r><t> три</t></r><rPh><t>no</t></rPh>"
          "</si><si><t xml:space='preserve'> </t></si></sst>"},
         {"s/2.xml", "<x:worksheet xmlns:x='u'><x:sheetData>" + rows + "</x:sheetData></x:worksheet>"}});
  };
  const Spreadsheet sheet = Open(book(
      "<x:row><x:c t='s'><x:v>1</x:v></x:c><x:c t='inlineStr'><x:is><x:t>в ячейке</x:t></x:is></x:c><x:c t='str'>"
      "<x:f>A1</x:f><x:v>формула</x:v></x:c></x:row><x:row r='5'><x:c r='C5'><x:v>4.820000000017E12</x:v></x:c><x:c>"
      "<x:v>1</x:v></x:c><x:c t='b'><x:v>0</x:v></x:c><x:c t='s'><x:v>0</x:v></x:c><x:c t='s'><x:v>2</x:v></x:c>"
      "</x:row><x:row><x:c r='AA6'><x:v>27</x:v></x:c></x:row>"));
  EXPECT_EQ(sheet.Cell(1, 1), "два  три");
  EXPECT_EQ(sheet.Cell(1, 2), "в ячейке");
  EXPECT_EQ(sheet.Cell(1, 3), "формула");
  EXPECT_EQ(sheet.Cell(5, 3), "4820000000017");
  EXPECT_EQ(sheet.Cell(5, 4), "1");
  EXPECT_EQ(sheet.Cell(5, 5), "FALSE");
  EXPECT_EQ(sheet.Cell(5, 6), "один");
  EXPECT_EQ(sheet.Cell(5, 7), " ");
  EXPECT_EQ(sheet.Cell(6, 27), "27");
  ExpectFault(book("<x:row><x:c t='s'><x:v>3</x:v></x:c></x:row>"));
  ExpectFault(Zip({{"letter.txt", "no book"}}));
  ExpectFault(Zip({{"content.xml", "<a><b></a>"}}));
  ExpectFault(Zip({{"content.xml", "<a/>"}}));

  // Texts that the writing library puts into the cells themselves.
  Workbook own;
  own.StatusBar = {""};
  own.Cell(2, 2, "Своя книга");
  own.SaveAs(root_ / "C" / "own.xlsx");
  EXPECT_EQ(Spreadsheet::Open(drives_, "C:\\own.xlsx").Cell(2, 2), "Своя книга");
}

TEST_F(Sheets, WhatAsksForTooMuchIsRefusedOrCut) {
  const auto ods = [](const std::string& rows) {
    return Zip({{"content.xml", "<d><body><spreadsheet><table>" + rows + "</table></spreadsheet></body></d>"}});
  };
  const std::string cell = "<table-cell value-type='string'><p>x</p></table-cell>";
  const std::string many = "<table-cell number-columns-repeated='4000000000'><p>x</p></table-cell>";
  EXPECT_EQ(Open(ods("<table-row number-rows-repeated='99999999999'>" + cell + "</table-row>")).Rows(), 1048576);
  EXPECT_EQ(Open(ods("<table-row>" + many + "</table-row>")).Cell(1, 256), "x");
  ExpectFault(ods("<table-row number-rows-repeated='1000000'>" + many + "</table-row>"));
  ExpectFault(ods("<table-row><table-cell><p><s c='99999999999'/></p></table-cell></table-row>"));
  std::string deep;
  for (int i = 0; i < 100000; ++i) deep += "<table-row-group>";
  for (int i = 0; i < 100000; ++i) deep += "</table-row-group>";
  ExpectFault(ods(deep));
  // A part that unpacks to more than it may.
  ExpectFault(Zip({{"content.xml", std::string(300UL * 1024 * 1024, ' ')}}));
}

TEST_F(Sheets, DamageNeverCrashes) {
  constexpr int kRounds = 500;
  std::mt19937 random(2026);
  const auto below = [&](std::size_t limit) {
    return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
  };
  const auto damage = [&](std::string bytes) {
    for (std::size_t times = 1 + below(8); times > 0 && !bytes.empty(); --times) {
      const std::size_t at = below(bytes.size());
      switch (below(5)) {
        case 0:
          bytes[at] = static_cast<char>(below(256));
          break;
        case 1:
          bytes.replace(at, 4, U32(below(2) == 0 ? 0xFFFFFFFF : static_cast<std::uint32_t>(below(1U << 31))));
          break;
        case 2:
          bytes.erase(at, 1 + below(64));
          break;
        case 3:
          bytes.insert(at, bytes.substr(below(bytes.size()), 1 + below(200)));
          break;
        default:
          bytes.resize(below(4) == 0 ? at : bytes.size());
      }
    }
    return bytes;
  };
  for (const std::string name : kSamples) {
    const std::string whole = Sample(name);
    for (int round = 0; round < kRounds; ++round) OpenDamaged(damage(whole));
    if (name.ends_with(".xls")) continue;
    // Damage that the archive's check sums don't notice.
    const Members members = Unzip(name);
    for (int round = 0; round < kRounds; ++round) {
      Members damaged = members;
      auto& part = damaged[below(damaged.size())].second;
      part = damage(part);
      OpenDamaged(Zip(damaged));
    }
  }
}

}  // namespace
}  // namespace zrt
