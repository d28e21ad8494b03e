#include "platform/spreadsheet_ods.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zrt {

namespace {

// Names are taken with their customary prefixes, which every program that writes such files uses.

// A document protected by a password is told by its manifest alone; its content is just unreadable.
class ManifestReader final : public XmlReader {
 private:
  void StartElement(std::string_view name, const XmlAttributes&) override {
    if (WithoutPrefix(name) == "encryption-data") throw BadSpreadsheet(SpreadsheetFault::kEncrypted);
  }
  void EndElement(std::string_view) override {}
  void Text(std::string_view) override {}
};

// A count of repeated cells, rows or blanks; 1 without one.
std::int64_t Count(std::string_view text) {
  if (text.empty()) return 1;
  std::int64_t count = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
  if (error != std::errc() || end != text.data() + text.size() || count < 0)
    throw BadSpreadsheet(SpreadsheetFault::kDamaged);
  return count;
}

// Reads numbers and the signs between them from the front of a date or a span of time.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : rest_(text) {}

  bool Skip(char sign) {
    const bool stands_there = rest_.starts_with(sign);
    if (stands_there) rest_.remove_prefix(1);
    return stands_there;
  }

  // nullopt when no digit stands there.
  std::optional<double> Number() {
    if (rest_.empty() || rest_[0] < '0' || rest_[0] > '9') return std::nullopt;
    double number = 0;
    const char* const end = rest_.data() + rest_.size();
    const char* const after = std::from_chars(rest_.data(), end, number, std::chars_format::fixed).ptr;
    rest_.remove_prefix(static_cast<std::size_t>(after - rest_.data()));
    return number;
  }

  bool AtEnd() const { return rest_.empty(); }

 private:
  std::string_view rest_;
};

constexpr double kHoursOfDay = 24;
constexpr double kMinutesOfDay = 24 * 60;
constexpr double kSecondsOfDay = 24 * 60 * 60;

// "2026-02-01" or "2026-02-01T10:30:00" as the days since 30.12.1899; nullopt for anything else.
std::optional<double> DateNumber(std::string_view text) {
  using std::chrono::sys_days;
  Scanner scanner(text);
  double parts[6] = {};
  constexpr char kSigns[6] = {'-', '-', 'T', ':', ':', '\0'};
  for (std::size_t i = 0; i < std::size(parts); ++i) {
    const std::optional<double> number = scanner.Number();
    if (!number || *number > 9999) return std::nullopt;
    parts[i] = *number;
    if (scanner.AtEnd() && i >= 2) break;
    if (!scanner.Skip(kSigns[i])) return std::nullopt;
  }
  const std::chrono::year_month_day date{std::chrono::year(static_cast<int>(parts[0])),
                                         std::chrono::month(static_cast<unsigned>(parts[1])),
                                         std::chrono::day(static_cast<unsigned>(parts[2]))};
  if (!date.ok()) return std::nullopt;
  constexpr sys_days kDayZero{std::chrono::year(1899) / 12 / 30};
  return static_cast<double>((sys_days(date) - kDayZero).count()) + parts[3] / kHoursOfDay + parts[4] / kMinutesOfDay +
         parts[5] / kSecondsOfDay;
}

// "PT10H30M00S" as a part of a day; nullopt for anything else.
std::optional<double> TimeNumber(std::string_view text) {
  Scanner scanner(text);
  if (!scanner.Skip('P') || !scanner.Skip('T')) return std::nullopt;
  double days = 0;
  while (!scanner.AtEnd()) {
    const std::optional<double> number = scanner.Number();
    if (!number) return std::nullopt;
    if (scanner.Skip('H')) {
      days += *number / kHoursOfDay;
    } else if (scanner.Skip('M')) {
      days += *number / kMinutesOfDay;
    } else if (scanner.Skip('S')) {
      days += *number / kSecondsOfDay;
    } else {
      return std::nullopt;
    }
  }
  return days;
}

class ContentReader final : public XmlReader {
 public:
  explicit ContentReader(SpreadsheetCells& cells) : cells_(cells) {}

  bool IsSpreadsheet() const { return spreadsheet_ != 0; }
  bool HasSheet() const { return has_sheet_; }

 private:
  // The open elements that matter are kept by their depth, 0 when there is none: a table may also lie in the history of
  // changes, a paragraph in a comment or a picture.

  void StartElement(std::string_view name, const XmlAttributes& attributes) override {
    ++depth_;
    if (paragraph_ != 0) {
      StartInParagraph(name, attributes);
    } else if (cell_ != 0) {
      if (depth_ == cell_ + 1 && name == "text:p") StartParagraph();
    } else if (row_ != 0) {
      if (depth_ == row_ + 1 && (name == "table:table-cell" || name == "table:covered-table-cell")) {
        StartCell(attributes);
      }
    } else if (table_ != 0) {
      if (name == "table:table-row") StartRow(attributes);
    } else if (name == "office:spreadsheet") {
      spreadsheet_ = depth_;
    } else if (name == "table:table" && spreadsheet_ != 0 && depth_ == spreadsheet_ + 1 && !has_sheet_) {
      table_ = depth_;
      has_sheet_ = true;
    }
  }

  void EndElement(std::string_view) override {
    if (depth_ == aside_) {
      aside_ = 0;
    } else if (depth_ == paragraph_) {
      paragraph_ = 0;
    } else if (depth_ == cell_) {
      EndCell();
      cell_ = 0;
    } else if (depth_ == row_) {
      EndRow();
      row_ = 0;
    } else if (depth_ == table_) {
      table_ = 0;
    }
    --depth_;
  }

  void StartRow(const XmlAttributes& attributes) {
    row_ = depth_;
    row_count_ = Count(attributes["table:number-rows-repeated"]);
    columns_ = 0;
    row_cells_.clear();
  }

  void StartCell(const XmlAttributes& attributes) {
    cell_ = depth_;
    cell_count_ = Count(attributes["table:number-columns-repeated"]);
    type_ = attributes["office:value-type"];
    value_ = type_ == "string"    ? attributes["office:string-value"]
             : type_ == "boolean" ? attributes["office:boolean-value"]
             : type_ == "date"    ? attributes["office:date-value"]
             : type_ == "time"    ? attributes["office:time-value"]
                                  : attributes["office:value"];
    text_.clear();
    has_paragraph_ = false;
  }

  void StartParagraph() {
    paragraph_ = depth_;
    if (has_paragraph_) Append("\n");
    has_paragraph_ = true;
  }

  void StartInParagraph(std::string_view name, const XmlAttributes& attributes) {
    if (aside_ != 0) return;
    if (name == "text:s") {
      const std::int64_t blanks = Count(attributes["text:c"]);
      if (blanks > static_cast<std::int64_t>(kMaxSpreadsheetCellText))
        throw BadSpreadsheet(SpreadsheetFault::kTooLarge);
      Append(std::string(static_cast<std::size_t>(blanks), ' '));
    } else if (name == "text:tab") {
      Append("\t");
    } else if (name == "text:line-break") {
      Append("\n");
    } else if (name == "office:annotation" || name == "text:note" || name == "text:ruby-text") {
      aside_ = depth_;
    }
  }

  void Text(std::string_view text) override {
    if (paragraph_ != 0 && aside_ == 0) Append(text);
  }

  void Append(std::string_view text) {
    if (text.size() > kMaxSpreadsheetCellText - text_.size()) throw BadSpreadsheet(SpreadsheetFault::kTooLarge);
    text_ += text;
  }

  void EndCell() {
    const std::string value = CellValue();
    const std::int64_t first = columns_ + 1;
    // Beyond the last column only the total of empty cells is of no interest.
    columns_ = std::min(columns_ + std::min(cell_count_, kMaxSpreadsheetColumns + 1), kMaxSpreadsheetColumns + 1);
    if (value.empty()) return;
    if (columns_ > kMaxSpreadsheetColumns) throw BadSpreadsheet(SpreadsheetFault::kDamaged);
    const SpreadsheetCells::Text kept = cells_.Keep(value);
    for (std::int64_t column = first; column <= columns_; ++column) row_cells_.push_back({column, kept});
  }

  std::string CellValue() const {
    if (type_ == "float" || type_ == "percentage" || type_ == "currency") return SpreadsheetNumber(value_);
    if (type_ == "boolean") return SpreadsheetYesOrNo(value_ == "true");
    if (type_ == "date" || type_ == "time") {
      const std::optional<double> number = type_ == "date" ? DateNumber(value_) : TimeNumber(value_);
      return number ? SpreadsheetNumber(*number) : value_;
    }
    // Errors have an empty text as their value and their name as what is shown.
    return value_.empty() ? text_ : value_;
  }

  void EndRow() {
    // The million empty rows at the end of every sheet cost nothing.
    if (!row_cells_.empty()) {
      if (row_count_ > kMaxSpreadsheetRows - rows_) throw BadSpreadsheet(SpreadsheetFault::kDamaged);
      for (std::int64_t row = rows_ + 1; row <= rows_ + row_count_; ++row) {
        for (const RowCell& cell : row_cells_) cells_.Put(row, cell.column, cell.text);
      }
    }
    rows_ = std::min(rows_ + std::min(row_count_, kMaxSpreadsheetRows), kMaxSpreadsheetRows);
  }

  struct RowCell {
    std::int64_t column = 0;
    SpreadsheetCells::Text text;
  };

  SpreadsheetCells& cells_;
  std::int64_t depth_ = 0;
  std::int64_t spreadsheet_ = 0;
  std::int64_t table_ = 0;
  std::int64_t row_ = 0;
  std::int64_t cell_ = 0;
  std::int64_t paragraph_ = 0;
  std::int64_t aside_ = 0;
  bool has_sheet_ = false;
  bool has_paragraph_ = false;
  std::int64_t rows_ = 0;     // that lie above the present one
  std::int64_t columns_ = 0;  // that lie left of the present cell
  std::int64_t row_count_ = 0;
  std::int64_t cell_count_ = 0;
  std::vector<RowCell> row_cells_;
  std::string type_;
  std::string value_;
  std::string text_;
};

}  // namespace

SpreadsheetCells ReadOds(const ZipFile& zip, const std::function<void()>& between) {
  const std::string kManifest = "META-INF/manifest.xml";
  if (zip.Has(kManifest)) ManifestReader().Read(zip, kManifest);
  SpreadsheetCells cells(between);
  ContentReader content(cells);
  content.Read(zip, "content.xml");
  if (!content.IsSpreadsheet()) throw BadSpreadsheet(SpreadsheetFault::kOtherKind);
  if (!content.HasSheet()) throw BadSpreadsheet(SpreadsheetFault::kNoSheet);
  cells.Finish();
  return cells;
}

}  // namespace zrt
