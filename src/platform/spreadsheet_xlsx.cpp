#include "platform/spreadsheet_xlsx.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace zrt {

namespace {

// Element names are taken without their prefix: most programs write none, some write "x:".

// What another file of the package is to this one.
struct Relation {
  std::string type;    // an address whose last part tells
  std::string target;  // name in the archive
};

// "../a/b.xml" as named by a file in `folder` ("xl/"); a leading "/" means the root of the package.
std::string Resolve(std::string folder, std::string_view target) {
  if (target.starts_with('/')) return std::string(target.substr(1));
  while (target.starts_with("../") || target.starts_with("./")) {
    const bool up = target.starts_with("../");
    target.remove_prefix(up ? 3 : 2);
    if (up && !folder.empty()) folder.erase(folder.rfind('/', folder.size() - 2) + 1);
  }
  return folder.append(target);
}

std::string FolderOf(const std::string& name) {
  return name.substr(0, name.rfind('/') + 1);
}

class RelationsReader final : public XmlReader {
 public:
  // The relations of the archive's file `name`; "" means the package itself.
  RelationsReader(const ZipFile& zip, const std::string& name) : folder_(FolderOf(name)) {
    const std::string relations = folder_ + "_rels/" + name.substr(folder_.size()) + ".rels";
    if (zip.Has(relations)) Read(zip, relations);
  }

  const Relation* Find(const std::string& id) const {
    const auto found = relations_.find(id);
    return found == relations_.end() ? nullptr : &found->second;
  }

  // The target of the first relation of that kind; "" without any.
  std::string TargetOfType(std::string_view last_part) const {
    for (const auto& [id, relation] : relations_) {
      if (relation.type.ends_with(last_part)) return relation.target;
    }
    return {};
  }

 private:
  void StartElement(std::string_view name, const XmlAttributes& attributes) override {
    if (WithoutPrefix(name) != "Relationship" || attributes["TargetMode"] == "External") return;
    relations_[std::string(attributes["Id"])] = {std::string(attributes["Type"]),
                                                 Resolve(folder_, attributes["Target"])};
  }
  void EndElement(std::string_view) override {}
  void Text(std::string_view) override {}

  std::string folder_;
  std::map<std::string, Relation> relations_;
};

// The sheets of a workbook in their order, as ids of its relations.
class WorkbookReader final : public XmlReader {
 public:
  std::vector<std::string> SheetIds;

 private:
  void StartElement(std::string_view name, const XmlAttributes& attributes) override {
    const std::string_view element = WithoutPrefix(name);
    if (is_root_ && element != "workbook")
      throw BadSpreadsheet(SpreadsheetFault::kOtherKind);  // a text document, a presentation
    is_root_ = false;
    if (element == "sheet") SheetIds.emplace_back(attributes.WithAnyPrefix("id"));
  }
  void EndElement(std::string_view) override {}
  void Text(std::string_view) override {}

  bool is_root_ = true;
};

int HexDigit(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  return -1;
}

// Characters that XML can't hold stand in texts as "_x000D_".
std::string WithoutEscapes(std::string_view text) {
  std::string plain;
  plain.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const std::string_view escape = text.substr(at, 7);
    int code = -1;
    if (escape.size() == 7 && escape.starts_with("_x") && escape[6] == '_') {
      code = 0;
      for (const char digit : escape.substr(2, 4)) {
        const int value = HexDigit(digit);
        code = code < 0 || value < 0 ? -1 : code * 16 + value;
      }
    }
    if (code < 0) {
      plain.push_back(text[at++]);
    } else {
      AppendCharacter(plain, static_cast<char32_t>(code));
      at += escape.size();
    }
  }
  return plain;
}

// A text of runs, `t` elements, each with a face of its own; the reading aids above East Asian letters aren't part of
// it.
class RunsReader : public XmlReader {
 protected:
  // Is this the text of the run, or does the element belong to an aid?
  void StartRun(std::string_view element) {
    if (element == "rPh") ++aids_;
    if (element == "t" && aids_ == 0) capturing_ = true;
  }
  void EndRun(std::string_view element) {
    if (element == "rPh") --aids_;
    if (element == "t") capturing_ = false;
  }
  void Text(std::string_view text) override {
    if (!capturing_) return;
    if (text.size() > kMaxSpreadsheetCellText - text_.size()) throw BadSpreadsheet(SpreadsheetFault::kTooLarge);
    text_ += text;
  }

  std::string text_;
  bool capturing_ = false;

 private:
  int aids_ = 0;
};

// The texts that cells refer to by number.
class SharedTextsReader final : public RunsReader {
 public:
  explicit SharedTextsReader(SpreadsheetCells& cells) : cells_(cells) {}

  std::vector<SpreadsheetCells::Text> Texts;

 private:
  void StartElement(std::string_view name, const XmlAttributes&) override {
    const std::string_view element = WithoutPrefix(name);
    if (element == "si") text_.clear();
    StartRun(element);
  }
  void EndElement(std::string_view name) override {
    const std::string_view element = WithoutPrefix(name);
    EndRun(element);
    if (element != "si") return;
    if (Texts.size() == kMaxSpreadsheetCells) throw BadSpreadsheet(SpreadsheetFault::kTooLarge);
    Texts.push_back(cells_.Keep(WithoutEscapes(text_)));
  }

  SpreadsheetCells& cells_;
};

class SheetReader final : public RunsReader {
 public:
  SheetReader(SpreadsheetCells& cells, const std::vector<SpreadsheetCells::Text>& shared_texts)
      : cells_(cells), shared_texts_(shared_texts) {}

 private:
  void StartElement(std::string_view name, const XmlAttributes& attributes) override {
    const std::string_view element = WithoutPrefix(name);
    if (element == "sheetData") in_data_ = true;
    if (!in_data_) return;
    if (element == "row") {
      row_ = attributes["r"].empty() ? row_ + 1 : RowNumber(attributes["r"]);
      column_ = 0;
    } else if (element == "c") {
      StartCell(attributes["r"]);
      type_ = attributes["t"];
      text_.clear();
    } else if (element == "v") {
      capturing_ = true;
    } else {
      StartRun(element);
    }
  }

  void EndElement(std::string_view name) override {
    const std::string_view element = WithoutPrefix(name);
    if (element == "sheetData") in_data_ = false;
    if (!in_data_) return;
    if (element == "c") {
      PutCell();
    } else if (element == "v") {
      capturing_ = false;
    } else {
      EndRun(element);
    }
  }

  static std::int64_t Number(std::string_view digits) {
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error != std::errc() || end != digits.data() + digits.size()) throw BadSpreadsheet(SpreadsheetFault::kDamaged);
    return number;
  }

  static std::int64_t RowNumber(std::string_view digits) {
    const std::int64_t row = Number(digits);
    if (row < 1 || row > kMaxSpreadsheetRows) throw BadSpreadsheet(SpreadsheetFault::kDamaged);
    return row;
  }

  // `reference` is "B12", or "" for the cell after the last one.
  void StartCell(std::string_view reference) {
    if (reference.empty()) {
      ++column_;
      return;
    }
    constexpr std::size_t kMaxLetters = 3;
    column_ = 0;
    std::size_t letters = 0;
    while (letters < std::min(reference.size(), kMaxLetters) && reference[letters] >= 'A' &&
           reference[letters] <= 'Z') {
      column_ = column_ * 26 + (reference[letters++] - 'A' + 1);
    }
    row_ = RowNumber(reference.substr(letters));
  }

  void PutCell() {
    if (text_.empty()) return;
    if (type_ == "s") {
      const std::int64_t index = Number(text_);
      if (index < 0 || index >= std::ssize(shared_texts_)) throw BadSpreadsheet(SpreadsheetFault::kDamaged);
      cells_.Put(row_, column_, shared_texts_[static_cast<std::size_t>(index)]);
    } else if (type_ == "str" || type_ == "inlineStr") {
      cells_.Put(row_, column_, cells_.Keep(WithoutEscapes(text_)));
    } else if (type_.empty() || type_ == "n") {
      cells_.Put(row_, column_, cells_.Keep(SpreadsheetNumber(text_)));
    } else if (type_ == "b") {
      cells_.Put(row_, column_, cells_.Keep(SpreadsheetYesOrNo(text_ == "1" || text_ == "true")));
    } else {  // an error, a date as text
      cells_.Put(row_, column_, cells_.Keep(text_));
    }
  }

  SpreadsheetCells& cells_;
  const std::vector<SpreadsheetCells::Text>& shared_texts_;
  bool in_data_ = false;
  std::int64_t row_ = 0;
  std::int64_t column_ = 0;
  std::string type_;
};

}  // namespace

SpreadsheetCells ReadXlsx(const ZipFile& zip, const std::function<void()>& between) {
  const std::string workbook_name = RelationsReader(zip, "").TargetOfType("/officeDocument");
  if (workbook_name.empty() || !workbook_name.ends_with(".xml")) throw BadSpreadsheet(SpreadsheetFault::kOtherKind);
  WorkbookReader workbook;
  workbook.Read(zip, workbook_name);

  const RelationsReader relations(zip, workbook_name);
  SpreadsheetCells cells(between);
  for (const std::string& id : workbook.SheetIds) {
    const Relation* const sheet = relations.Find(id);
    if (sheet == nullptr) throw BadSpreadsheet(SpreadsheetFault::kDamaged);
    if (!sheet->type.ends_with("/worksheet")) continue;

    SharedTextsReader shared(cells);
    const std::string shared_name = relations.TargetOfType("/sharedStrings");
    if (!shared_name.empty()) shared.Read(zip, shared_name);
    SheetReader(cells, shared.Texts).Read(zip, sheet->target);
    cells.Finish();
    return cells;
  }
  throw BadSpreadsheet(SpreadsheetFault::kNoSheet);
}

}  // namespace zrt
