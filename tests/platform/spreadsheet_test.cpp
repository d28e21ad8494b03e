#include "platform/spreadsheet.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "core/text.h"
#include "platform/spreadsheet_files.h"
#include "support/temporary_folder.h"

namespace zrt {
namespace {

using namespace test;

std::string Sample(const std::string& name) {
  std::ifstream file(std::filesystem::path(ZRT_SHEETS) / name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

class Spreadsheets : public testing::Test {
 protected:
  Spreadsheets() { std::filesystem::create_directories(drives_.ToNative("C:\\")); }

  // The name tells nothing of the kind.
  Spreadsheet Open(const std::string& bytes) {
    std::ofstream(drives_.ToNative(kPath), std::ios::binary) << bytes;
    return Spreadsheet::Open(drives_, kPath);
  }

  // What the operator is told of a file that isn't read.
  std::string WhyNot(const std::string& path) {
    try {
      Spreadsheet::Open(drives_, path);
      return "it is read";
    } catch (const SpreadsheetError& error) {
      return error.what();
    }
  }
  void ExpectRefused(const std::vector<std::pair<std::string, const char*>>& files) {
    for (const auto& [bytes, sentence] : files) {
      std::ofstream(drives_.ToNative(kPath), std::ios::binary) << bytes;
      EXPECT_EQ(WhyNot(kPath), std::string(kPath) + ": " + sentence) << bytes.substr(0, 600);
    }
  }

  // The rows as "a|b|c", each up to its last text.
  static std::vector<std::string> Rows(const Spreadsheet& sheet) {
    std::vector<std::string> rows;
    for (std::int64_t row = 1; row <= sheet.Rows(); ++row) {
      std::string text;
      for (std::int64_t column = 1; column <= 12; ++column) text += (column > 1 ? "|" : "") + sheet.Cell(row, column);
      text.erase(text.find_last_not_of('|') + 1);
      rows.push_back(text);
    }
    return rows;
  }

  std::vector<std::string> RowsOf(const std::string& bytes) { return Rows(Open(bytes)); }

  static constexpr const char* kPath = "C:\\таблица.dat";
  static constexpr const char* kDamaged = "файл повреждён";
  static constexpr const char* kTooLarge = "файл слишком велик";
  static constexpr const char* kEncrypted = "файл защищён паролем";
  static constexpr const char* kOtherKind = "файл - не таблица .xls, .xlsx или .ods";
  static constexpr const char* kNoSheet = "в файле нет листа с таблицей";

  TemporaryFolder folder_;
  DriveMap drives_{folder_.Path()};
};

// Files of .xlsx and .ods, written as small as they can be.

Members XlsxMembers(const std::string& sheet_data, const std::string& shared_texts = {}) {
  return {
      {"_rels/.rels",
       R"(<Relationships><Relationship Id="rId1" Type="http://x/officeDocument" Target="/xl/book.xml"/></Relationships>)"},
      {"xl/book.xml", R"(<workbook xmlns:r="r"><sheets><sheet name="Б" sheetId="9" r:id="rId8"/><sheet name="А" )"
                      R"(sheetId="1" r:id="rId2"/></sheets></workbook>)"},
      {"xl/_rels/book.xml.rels",
       R"(<Relationships><Relationship Id="rId2" Type="http://x/worksheet" Target="worksheets/other.xml"/>)"
       R"(<Relationship Id="rId8" Type="http://x/worksheet" Target="worksheets/../worksheets/first.xml"/>)"
       R"(<Relationship Id="rId9" Type="http://x/sharedStrings" Target="texts.xml"/></Relationships>)"},
      {"xl/worksheets/../worksheets/first.xml", "<worksheet><sheetData>" + sheet_data + "</sheetData></worksheet>"},
      {"xl/texts.xml", "<sst>" + shared_texts + "</sst>"}};
}

std::string Xlsx(const std::string& sheet_data, const std::string& shared_texts = {}) {
  return ZipOf(XlsxMembers(sheet_data, shared_texts));
}

std::string Ods(const std::string& table, const std::string& before = {}) {
  return ZipOf({{"content.xml", R"(<office:document-content xmlns:office="o" xmlns:table="t" xmlns:text="x">)"
                                "<office:body><office:spreadsheet>" +
                                    before + "<table:table>" + table +
                                    "</table:table><table:table><table:table-row><table:table-cell><text:p>другой"
                                    "</text:p></table:table-cell></table:table-row></table:table>"
                                    "</office:spreadsheet></office:body></office:document-content>"}});
}

using Expected = std::vector<std::string>;

const std::string kOne = CellRecord(0x0203, 0, 0, Double(1));

TEST_F(Spreadsheets, ThreeKindsLoadAlike) {
  const Expected kRows = {
      "Код|Наименование|Цена|Штрихкод|Ст.Нал|Фиск|КатСк|Вес|Лок|УКТЗЕД|Группа",
      "1|Кофе  американо|2500|4820000000017|1|0|3|0|0|0901210000|НАПИТКИ",
      "2|  Чай с лимоном |1999.99|0004820000017||-0.5|0.1|0.0000001|1000000000000000|12345678901234|0.3",
      "5000|Сок яблочный|TRUE|#DIV/0!|#N/A||  Чай с лимоном |0.25|ЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖ|FALSE|4820000000018",
      "две\nстроки|Пиво тёмное 0,5 л|O'Henry & \"<сыр>\" ~`|ab|TRUE|0.2|12.5|46054|46054.25|0.75|€ № « ї ґ 日本 😀",
      "",
      "7|7|7|||объединено||с примечанием|=1+1|_x000D_|65536",
      "9|повтор|1.5",
      "9|повтор|1.5",
      "9|повтор|1.5",
      "100|Товар номер 0|1000|4820000000100|0|0|0|0|0||ТОВАР",
      "101|Товар номер 1|1037|4820000000101|1|1|1|0|1||ТОВАР",
  };
  for (const char* name : {"cells.xls", "cells.xlsx", "cells.ods"}) {
    Expected rows = RowsOf(Sample(name));
    EXPECT_EQ(rows.size(), 18U) << name;
    rows.resize(kRows.size());
    EXPECT_EQ(rows, kRows) << name;
  }
}

TEST_F(Spreadsheets, TextsWrittenIntoTheCellsAreReadAndASheetWithAChartIsNone) {
  const Spreadsheet sheet = Open(Sample("streamed.xlsx"));
  const Expected rows = Rows(sheet);
  ASSERT_EQ(rows.size(), 22U);
  EXPECT_EQ(rows[0], "Код|Наименование|Цена|Штрихкод");
  EXPECT_EQ(rows[20], "20|  Товар & \"<20>\" |1999.8|4820000000020");
  EXPECT_EQ(rows[21], "| ab |2|TRUE");
  // Beyond the data, and where no sheet has a cell.
  EXPECT_EQ(sheet.Cell(23, 1) + sheet.Cell(1, 5) + sheet.Cell(0, 1) + sheet.Cell(1, 0) + sheet.Cell(-1, -1), "");
  EXPECT_EQ(sheet.Cell(std::int64_t{1} << 32, 1) + sheet.Cell(1, (std::int64_t{1} << 32) + 1), "");
}

TEST_F(Spreadsheets, XlsxCellsAreFoundHoweverTheyAreWritten) {
  const std::pair<const char*, Expected> kSheets[] = {
      {R"(<row><c><v>1</v></c><c/><c><v>2</v></c></row><row r="4"><c><v>3</v></c><c r="D4"><v>4</v></c><c><v>5</v></c></row>)"
       R"(<row><c><v>6</v></c></row>)",
       {"1||2", "", "", "3|||4|5", "6"}},
      {R"(<x:row r="1"><x:c r="A1" t="s"><x:v>1</x:v></x:c></x:row>)", {"а б в"}},
      // Out of order; of two values of a cell the last one stays, also an empty text.
      {R"(<row r="2"><c r="B2"><v>1</v></c><c r="A2"><v>2</v></c></row><row r="1"><c r="A1"><v>3</v></c></row>)"
       R"(<row r="2"><c r="B2"><v>4</v></c><c r="A2" t="s"><v>2</v></c></row>)",
       {"3", "|4"}},
      {R"(<row><c t="s"><v>0</v></c><c t="inlineStr"><is><r><t xml:space="preserve"> а </t></r><r><t>б</t></r>)"
       R"(<rPh sb="0" eb="1"><t>нет</t></rPh></is></c><c t="str"><f>A1</f><v> 007 </v></c><c t="b"><v>1</v></c>)"
       R"(<c t="e"><v>#N/A</v></c><c t="n"><v>4.82E+12</v></c><c><f>1+1</f></c><c t="d"><v>2026-02-01</v></c></row>)",
       {"<0>| а б| 007 |TRUE|#N/A|4820000000000||2026-02-01"}},
      {R"(<row><c t="str"><v>_x0041__x0451_ _x005F_x0041_ _x41_ _xZZZZ_</v></c><c t="str"><v>_xD800_</v></c></row>)",
       {"Aё _x0041_ _x41_ _xZZZZ_|\xEF\xBF\xBD"}},
      {R"(<row r="1048576"><c r="XFD1048576"><v></v></c></row>)", {}},
      {R"(</sheetData><row><c><v>1</v></c></row><sheetData>)", {}},
  };
  for (const auto& [sheet, rows] : kSheets) {
    EXPECT_EQ(RowsOf(Xlsx(sheet,
                          "<si><t>&lt;0&gt;</t></si><si><r><t>а </t></r><phoneticPr/><r><t>б</t></r><t> в</t>"
                          "<rPh><t>нет</t></rPh></si><si><t></t></si>")),
              rows)
        << sheet;
  }
  EXPECT_EQ(Open(Xlsx(R"(<row r="1048576"><c r="XFD1048576"><v>1</v></c></row>)")).Cell(1048576, 16384), "1");
  EXPECT_EQ(Open(Xlsx(R"(<row r="2"><c r="AZ2"><v>1</v></c></row>)")).Cell(2, 52), "1");
}

TEST_F(Spreadsheets, NumbersComeWithAllTheirDigits) {
  const std::pair<const char*, const char*> kNumbers[] = {
      {"4.820000000017E12", "4820000000017"},
      {"1E+2", "100"},
      {"-0", "0"},
      {"1.5e-7", "0.00000015"},
      {"0.10000000000000001", "0.1"},
      {"0.30000000000000004", "0.3"},
      {"1e22", "10000000000000000000000"},
      {" 12 ", "12"},
      {"+7", "7"},
      {"007", "7"},
      {"1,5", "1,5"},  // a program that writes by its user's habits: better than nothing
      {"1e999", "1e999"},
  };
  for (const auto& [written, read] : kNumbers) {
    EXPECT_EQ(Open(Xlsx("<row><c><v>" + std::string(written) + "</v></c></row>")).Cell(1, 1), read) << written;
    EXPECT_EQ(Open(Ods("<table:table-row><table:table-cell office:value-type='float' office:value='" +
                       std::string(written) + "'/></table:table-row>"))
                  .Cell(1, 1),
              read)
        << written;
  }
}

TEST_F(Spreadsheets, OdsCellsAreFoundHoweverTheyAreWritten) {
  const auto row = [](const std::string& cells) { return "<table:table-row>" + cells + "</table:table-row>"; };
  const auto cell = [](const std::string& inside) {
    return "<table:table-cell office:value-type='string'>" + inside + "</table:table-cell>";
  };
  const std::string repeated = " table:number-rows-repeated=";
  const std::pair<std::string, Expected> kTables[] = {
      // Empty rows and cells up to the last ones of the sheet, and beyond it.
      {row(cell("<text:p>а</text:p>") + "<table:table-cell table:number-columns-repeated='16383'/>") +
           "<table:table-row" + repeated + "'3'>" + cell("") + "</table:table-row>" +
           row("<table:table-cell table:number-columns-repeated='2'><text:p>б</text:p></table:table-cell>") +
           "<table:table-row" + repeated +
           "'9223372036854775807'><table:table-cell "
           "table:number-columns-repeated='9223372036854775807'/></table:table-row>" +
           row(cell("")),
       {"а", "", "", "", "б|б"}},
      {"<table:table-header-rows>" + row(cell("<text:p>заголовок</text:p>")) +
           "</table:table-header-rows><table:table-row-group><table:table-rows>" + row(cell("<text:p>а</text:p>")) +
           "</table:table-rows></table:table-row-group>",
       {"заголовок", "а"}},
      {row(cell("<text:p>а<text:s/>б<text:s text:c='3'/>в<text:tab/>г<text:line-break/>д</text:p><text:p/>"
                "<text:p>е <text:span>ж<text:a>з</text:a></text:span></text:p>")),
       {"а б   в\tг\nд\n\nе жз"}},
      {row(cell("<office:annotation><text:p>примечание</text:p></office:annotation><text:p>а<text:note><text:p>сноска"
                "</text:p></text:note><text:ruby><text:ruby-base>б</text:ruby-base><text:ruby-text>нет"
                "</text:ruby-text></text:ruby></text:p>") +
           "<table:covered-table-cell office:value-type='float' office:value='5'/>" +
           cell("<table:table><table:table-row><table:table-cell><text:p>вложено</text:p></table:table-cell>"
                "</table:table-row></table:table><text:p>в</text:p>")),
       {"аб|5|в"}},
      {row("<table:table-cell office:value-type='string' office:string-value='значение'><text:p>показано</text:p>"
           "</table:table-cell><table:table-cell><text:p>без вида</text:p></table:table-cell>"
           "<table:table-cell office:value-type='percentage' office:value='0.2'><text:p>20%</text:p></table:table-cell>"
           "<table:table-cell office:value-type='currency' office:value='12.50'/>"
           "<table:table-cell office:value-type='boolean' office:boolean-value='true'/>"
           "<table:table-cell office:value-type='boolean' office:boolean-value='false'/>"
           "<table:table-cell office:value-type='date' office:date-value='1899-12-31T12:00:00'/>"
           "<table:table-cell office:value-type='date' office:date-value='2024-02-30'/>"
           "<table:table-cell office:value-type='time' office:time-value='PT36H30M36S'/>"
           "<table:table-cell office:value-type='time' office:time-value='PT'/>"
           "<table:table-cell office:value-type='time' office:time-value='P1D'/>"),
       {"значение|без вида|0.2|12.5|TRUE|FALSE|1.5|2024-02-30|1.52125|0|P1D"}},
  };
  const std::string history = "<table:tracked-changes><table:previous>" + row(cell("<text:p>было</text:p>")) +
                              "</table:previous></table:tracked-changes><table:dde-links><table:table>" +
                              row(cell("<text:p>чужое</text:p>")) + "</table:table></table:dde-links>";
  for (const auto& [table, rows] : kTables) EXPECT_EQ(RowsOf(Ods(table, history)), rows) << table;
}

TEST_F(Spreadsheets, XlsCellsOfBothVersions) {
  constexpr std::uint32_t kHundredths = 1, kWhole = 2;
  const auto front = [](double value) { return std::bit_cast<std::uint64_t>(value) >> 32; };
  const auto text = [](std::uint16_t version, const std::string& utf8) {
    std::string bytes = ToWindows1251(utf8);
    if (version == kVersion95) return U16(bytes.size()) + bytes;
    std::string wide;
    for (const char byte : bytes) {
      const auto code = static_cast<unsigned char>(byte);
      wide += U16(code < 0x80 ? code : code - 0xC0U + 0x410U);  // these tests have no other letters
    }
    return U16(bytes.size()) + "\x01" + wide;
  };
  const auto special = [](std::uint64_t kind, std::uint64_t value) {
    return Bytes(kind, 1) + Bytes(0, 1) + Bytes(value, 1) + std::string(3, '\0') + U16(0xFFFF);
  };
  const std::string rest_of_formula(10, '\0');
  for (const std::uint16_t version : {kVersion95, kVersion97}) {
    const std::string records =
        CellRecord(0x0204, 0, 0, text(version, " Чай ")) +                            // LABEL
        CellRecord(0x00D6, 0, 1, text(version, "Пиво") + U16(1) + U16(0) + U16(5)) +  // RSTRING with a run
        CellRecord(0x0203, 0, 2, Double(4820000000017)) +                             // NUMBER
        CellRecord(0x027E, 1, 0, U32(199999U << 2 | kWhole | kHundredths)) +          // RK
        CellRecord(0x027E, 1, 1, U32(static_cast<std::uint32_t>(-5) << 2 | kWhole)) +
        CellRecord(0x027E, 1, 2, U32(front(0.5))) + CellRecord(0x027E, 1, 3, U32(front(150) | kHundredths)) +
        // MULRK: of its cells the first number is preceded by its format, which CellRecord writes
        CellRecord(0x00BD, 2, 1, U32(7U << 2 | kWhole) + U16(0) + U32(8U << 2 | kWhole) + U16(2)) +
        CellRecord(0x0201, 2, 3, "") +                         // BLANK
        CellRecord(0x0205, 3, 0, Bytes(1, 1) + Bytes(0, 1)) +  // BOOLERR
        CellRecord(0x0205, 3, 1, Bytes(0x17, 1) + Bytes(1, 1)) +
        CellRecord(0x0006, 4, 0, Double(2.5) + rest_of_formula) +  // FORMULA
        CellRecord(0x0006, 4, 1, special(0, 0) + rest_of_formula) + Record(0x04BC, "shared formula") +
        Record(0x0207, text(version, "ответ")) + Record(0x0207, text(version, "ничей")) +
        CellRecord(0x0006, 4, 2, special(1, 1) + rest_of_formula) +
        CellRecord(0x0006, 4, 3, special(2, 0x07) + rest_of_formula) +
        CellRecord(0x0006, 4, 4, special(3, 0) + rest_of_formula) +
        CellRecord(0x0006, 4, 5, special(0, 0) + rest_of_formula) +  // its text is missing
        CellRecord(0x0203, 4, 6, Double(1)) + Record(0x0207, text(version, "ничей")) +
        // A chart on the sheet has cells of its own.
        Bof(version, 0x0020) + CellRecord(0x0203, 0, 0, Double(99)) + Eof() + CellRecord(0x0203, 5, 0, Double(6));
    const Expected kRows = {
        " Чай |Пиво|4820000000017", "1999.99|-5|0.5|1.5", "|7|8", "TRUE|#REF!", "2.5|ответ|TRUE|#DIV/0!|||1", "6"};
    const std::string other = CellRecord(0x0203, 0, 0, Double(99));
    const std::string book = Workbook(version, {{2, other}, {1, other}, {0, records}, {0, other}});
    EXPECT_EQ(RowsOf(book), kRows) << version;  // without the container
    const std::string long_book = book + std::string(9000, '\0');
    const std::string name = version == kVersion95 ? "Book" : "WORKBOOK";
    EXPECT_EQ(RowsOf(CompoundFile({{name, book}}, name)), kRows) << "in the mini stream, " << version;
    // Of both versions in one file the newer one is read.
    EXPECT_EQ(RowsOf(CompoundFile({{version == kVersion95 ? "\x05Summary" : "Book", "x"}, {name, long_book}}, name)),
              kRows)
        << version;
  }
}

TEST_F(Spreadsheets, ALargeContainerHasItsTableOfSectorsBesideTheHeader) {
  // More than 109 sectors of the table: beyond 7 MB. The cells stand at the end, so every chain has been followed.
  std::string filler;
  for (int i = 0; i < 1900; ++i) filler += Record(0x1234, std::string(8000, 'x'));
  const std::string book = Workbook(kVersion97, {{2, filler}, {0, CellRecord(0x0203, 0, 0, Double(5))}});
  EXPECT_EQ(RowsOf(CompoundFile({{"Workbook", book}})), Expected{"5"});
}

// The list of shared texts in pieces: where one ends, the record may end and a further one begin.
struct Piece {
  std::string bytes;
  std::size_t width = 0;  // of a character, in the piece itself; 0 for bytes that aren't part of the characters
};

TEST_F(Spreadsheets, SharedTextsMayBeSplitAnywhere) {
  std::vector<Piece> pieces;
  const auto add = [&](const std::string& data, std::size_t width) {
    const std::size_t size = std::max<std::size_t>(width, 1);
    for (std::size_t at = 0; at < data.size(); at += size) pieces.push_back({data.substr(at, size), width});
  };
  const auto wide = [](std::u16string_view text) {
    std::string units;
    for (const char16_t unit : text) units += U16(unit);
    return units;
  };
  add(U16(5) + std::string(1, '\0'), 0);
  add("plain", 1);
  add(U16(4) + "\x01", 0);
  add(wide(u"Кофе"), 2);
  add(U16(0) + std::string(1, '\0') + U16(4) + "\x0D" + U16(2) + U32(6), 0);  // with runs of faces and a reading aid
  add(wide(u"Пиво"), 2);
  add("runsRUNSaidaid" + U16(3) + "\x05" + U32(3), 0);
  add(wide(u"日😀"), 2);
  add("aid" + U16(3) + std::string(1, '\0'), 0);
  add("end", 1);

  std::string cells;
  for (int i = 0; i < 6; ++i) cells += CellRecord(0x00FD, 0, i, U32(static_cast<std::uint64_t>(i)));
  // A split before `first` and one before `second`; `widen` writes what follows within narrow characters wide.
  const auto book = [&](std::size_t first, std::size_t second, bool widen) {
    std::string data = U32(6) + U32(6), records;
    std::uint16_t id = 0x00FC;
    bool widened = false;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
      const Piece& piece = pieces[i];
      if (piece.width == 0) widened = false;
      if (i == first || i == second) {
        records += Record(id, data);
        id = 0x003C;
        data.clear();
        widened = widen && piece.width == 1;
        if (piece.width != 0) data += piece.width == 2 || widened ? '\x01' : '\0';
      }
      data += piece.bytes;
      if (widened) data += '\0';
    }
    return Workbook(kVersion97, {{0, cells}}, records + Record(id, data));
  };
  for (std::size_t at = 0; at < pieces.size(); ++at) {
    for (const bool widen : {false, true}) {
      EXPECT_EQ(RowsOf(book(at, at + 1, widen)), Expected{"plain|Кофе||Пиво|日😀|end"}) << at << widen;
      EXPECT_EQ(RowsOf(book(at, at + 7, widen)), Expected{"plain|Кофе||Пиво|日😀|end"}) << at << widen;
    }
  }
}

TEST_F(Spreadsheets, TheTextOfAFormulaMayBeContinued) {
  const std::string formula = CellRecord(0x0006, 0, 0, std::string(6, '\0') + U16(0xFFFF) + std::string(10, '\0'));
  EXPECT_EQ(RowsOf(Workbook(kVersion97, {{0, formula + Record(0x0207, U16(6) + std::string("\0abc", 4)) +
                                                 Record(0x003C, "\x01" + U16(0x0451) + U16('d') + U16('e'))}})),
            Expected{"abcёde"});
  EXPECT_EQ(RowsOf(Workbook(kVersion95, {{0, formula + Record(0x0207, U16(5) + ToWindows1251("Чай")) +
                                                 Record(0x003C, ToWindows1251("ок"))}})),
            Expected{"Чайок"});
}

TEST_F(Spreadsheets, TheOperatorIsToldWhyAFileIsRefused) {
  std::filesystem::create_directories(drives_.ToNative("C:\\папка.xls"));
  EXPECT_EQ(WhyNot("C:\\нет.xls"), "C:\\нет.xls: файл не найден");
  EXPECT_EQ(WhyNot("C:\\папка.xls"), "C:\\папка.xls: файл не читается");

  Members document = XlsxMembers("");
  document["xl/book.xml"] = "<document/>";
  Members without_sheets = XlsxMembers("");
  without_sheets["xl/book.xml"] = "<workbook/>";
  const Members encrypted = {{"META-INF/manifest.xml",
                              "<!DOCTYPE manifest:manifest SYSTEM 'Manifest.dtd'><manifest:manifest>"
                              "<manifest:file-entry><manifest:encryption-data/></manifest:file-entry>"
                              "</manifest:manifest>"},
                             {"content.xml", "nonsense"}};
  ExpectRefused({
      {"", kOtherKind},
      {"1;Чай;2500", kOtherKind},
      {"<html><table>", kOtherKind},
      {ZipOf({{"a.txt", "x"}}), kOtherKind},
      {ZipOf({{"content.xml", "<office:document-content><office:text/></office:document-content>"}}), kOtherKind},
      {ZipOf(document), kOtherKind},
      {CompoundFile({{"WordDocument", "x"}}), kOtherKind},
      {CompoundFile({}), kOtherKind},
      {Workbook(0x0400, {{0, kOne}}), kOtherKind},
      {ZipOf(encrypted), kEncrypted},
      {ZipOf({*encrypted.begin()}), kEncrypted},
      {ZipOf(XlsxMembers("<row/>"), "357"), kEncrypted},
      {CompoundFile({{"EncryptionInfo", "x"}, {"EncryptedPackage", "x"}}), kEncrypted},
      {Workbook(kVersion97, {{0, kOne}}, Record(0x002F, "key")), kEncrypted},
      {ZipOf(without_sheets), kNoSheet},
      {ZipOf({{"content.xml", "<office:spreadsheet/>"}}), kNoSheet},
      {Workbook(kVersion97, {{2, kOne}}), kNoSheet},
  });
}

TEST_F(Spreadsheets, NothingHalfReadIsHandedOut) {
  for (const char* name : {"cells.xls", "cells.xlsx", "cells.ods", "streamed.xlsx"}) {
    const std::string whole = Sample(name);
    for (const std::size_t part : {3, 4, 5, 9}) {
      ExpectRefused({{whole.substr(0, whole.size() * part / 10), kDamaged}});
    }
  }
  const std::string kRow = "<row><c><v>1</v></c></row>";
  Members cut_sheet = XlsxMembers(kRow);
  cut_sheet["xl/worksheets/../worksheets/first.xml"].resize(60);
  Members no_sheet = XlsxMembers(kRow);
  no_sheet.erase("xl/worksheets/../worksheets/first.xml");
  Members entities = XlsxMembers("<row><c t='str'><v>&a;</v></c></row>");
  entities["xl/worksheets/../worksheets/first.xml"].insert(0, "<!DOCTYPE worksheet [<!ENTITY a 'b'>]>");
  std::string wrong_checksum = Xlsx(kRow);
  const std::size_t stored = wrong_checksum.find("PK\x01\x02");
  wrong_checksum[stored + 16] ^= 1;
  const std::string whole_book = Workbook(kVersion97, {{0, kOne}});
  for (const std::string& file :
       {ZipOf(cut_sheet),
        ZipOf(no_sheet),
        ZipOf(entities),
        wrong_checksum,
        Xlsx("<row><c t='s'><v>1</v></c></row>", "<si><t>а</t></si>"),
        Xlsx("<row><c t='s'><v>-1</v></c></row>", "<si><t>а</t></si>"),
        Xlsx("<row r='1048577'><c><v>1</v></c></row>"),
        Xlsx("<row r='9223372036854775807'/><row><c><v>1</v></c></row>"),
        Xlsx("<row><c r='A9223372036854775807'/></row><row><c><v>1</v></c></row>"),
        Xlsx("<row r='0'><c><v>1</v></c></row>"),
        Xlsx("<row r='x'/>"),
        Xlsx("<row><c r='XFE1'><v>1</v></c></row>"),
        Xlsx("<row><c r='ABCD1'><v>1</v></c></row>"),
        Xlsx("<row><c r='A'><v>1</v></c></row>"),
        Ods("<table:table-row table:number-rows-repeated='-1'/>"),
        Ods("<table:table-row table:number-rows-repeated='1048577'><table:table-cell><text:p>а</text:p>"
            "</table:table-cell></table:table-row>"),
        Ods("<table:table-row><table:table-cell table:number-columns-repeated='16385'><text:p>а</text:p>"
            "</table:table-cell></table:table-row>"),
        whole_book.substr(0, whole_book.size() - 4),  // its last record is missing
        Workbook(kVersion97, {{0, CellRecord(0x00FD, 0, 0, U32(0))}}),
        Workbook(kVersion97, {{0, CellRecord(0x0203, 0, 0, Double(std::numeric_limits<double>::infinity()))}}),
        Workbook(kVersion97, {{0, kOne}}, Record(0x00FC, U32(9) + U32(1) + U16(5) + std::string(3, '\0')))}) {
    ExpectRefused({{file, kDamaged}});
  }
}

TEST_F(Spreadsheets, NonsenseCountsTakeNeitherMemoryNorTime) {
  std::string deep = "<office:spreadsheet>";
  for (int i = 0; i < 1'000'000; ++i) deep += "<a>";
  ExpectRefused({
      // A million rows of sixteen thousand cells, which pack into nothing.
      {Ods("<table:table-row table:number-rows-repeated='1048576'><table:table-cell "
           "table:number-columns-repeated='16384'><text:p>а</text:p></table:table-cell></table:table-row>"),
       kTooLarge},
      {Ods("<table:table-row><table:table-cell><text:p><text:s text:c='2000000000'/></text:p></table:table-cell>"
           "</table:table-row>"),
       kTooLarge},
      {Xlsx("<row><c t='inlineStr'><is><t>" + std::string(300'000, 'x') + "</t></is></c></row>"), kTooLarge},
      {ZipOf({{"content.xml", deep}}), kTooLarge},
      {ZipOf({{"content.xml", "<office:spreadsheet a='" + std::string(20'000'000, ' ')}}), kTooLarge},
  });
}

// Damage as disks, mails and bad programs bring it: the end cut off, a piece doubled or dropped, bytes changed. Counts
// and offsets like to be at their ends; in XML a digit becomes another one.
std::string Damaged(std::string bytes, std::mt19937& random) {
  const auto below = [&random](std::size_t limit) { return static_cast<std::size_t>(random() % limit); };
  if (bytes.empty()) return bytes;
  const std::size_t at = below(bytes.size()), kind = below(8);
  if (kind == 0) return bytes.substr(0, at);
  if (kind == 1) return bytes.insert(at, bytes, below(bytes.size()), below(300));
  if (kind == 2) return bytes.erase(at, below(300));
  constexpr std::string_view kBytes(
      "\x00\x01\x7F\x80\xFE\xFF"
      "09<>\"'/&-",
      15);
  for (std::size_t i = below(8) + 1; i-- > 0;) {
    char& byte = bytes[below(bytes.size())];
    byte = below(3) == 0 ? static_cast<char>(byte ^ (1 << below(8))) : kBytes[below(kBytes.size())];
  }
  return bytes;
}

TEST_F(Spreadsheets, DamagedFilesAreReadOrRefused) {
  std::mt19937 random(20260201);
  const auto try_out = [this](const std::string& bytes, const std::string& what) {
    try {
      Rows(Open(bytes));
    } catch (const SpreadsheetError&) {
      // Refused.
    } catch (const std::exception& error) {
      ADD_FAILURE() << what << ": " << error.what();
    }
  };
  // The older version is in no sample; without the container's checks before them all records are reached.
  const std::string cells = CellRecord(0x0204, 0, 0, U16(3) + "abc") + CellRecord(0x00BD, 1, 0, std::string(14, 'x')) +
                            CellRecord(0x00D6, 2, 0, U16(3) + "abc" + std::string(4, '\1'));
  const std::string text = U16(4) + "\x0D" + U16(1) + U32(4) + std::string(16, 'x');
  const std::string book95 = Workbook(kVersion95, {{2, cells}, {0, cells}});
  const std::string book97 = Workbook(kVersion97, {{0, CellRecord(0x00FD, 0, 0, U32(1))}},
                                      Record(0x00FC, U32(2) + U32(2) + text) + Record(0x003C, "\x01" + text));
  const std::pair<std::string, std::string> kWhole[] = {{"cells.xls", Sample("cells.xls")},
                                                        {"cells.xlsx", Sample("cells.xlsx")},
                                                        {"cells.ods", Sample("cells.ods")},
                                                        {"version 95", book95},
                                                        {"version 97", book97}};
  for (const auto& [name, whole] : kWhole) {
    for (int i = 0; i < 500; ++i) try_out(Damaged(whole, random), name);
    if (!whole.starts_with("PK")) continue;
    // Within the archive, so that the damage isn't noticed by a checksum.
    const Members members = MembersOf(whole);
    for (int i = 0; i < 500; ++i) {
      Members damaged = members;
      const auto member = std::next(damaged.begin(), static_cast<std::ptrdiff_t>(random() % damaged.size()));
      member->second = Damaged(member->second, random);
      try_out(ZipOf(damaged), name + (", " + member->first));
    }
  }
}

}  // namespace
}  // namespace zrt
