// .xlsx and .ods: archives of XML parts.

#include <zip.h>

#include <charconv>
#include <memory>
#include <optional>
#include <pugixml.hpp>

#include "platform/spreadsheet_cells.h"

namespace zrt {

namespace {

/// How deep groups of rows and pieces of text stand in one another; programs write three or four levels.
constexpr int kDeepest = 32;

/// Blanks that are all there is between two tags count: a name may be written in pieces.
constexpr unsigned kParse = pugi::parse_default | pugi::parse_ws_pcdata;

class Archive {
 public:
  explicit Archive(std::string_view bytes) {
    zip_error_t error;
    zip_error_init(&error);
    zip_source_t* source = zip_source_buffer_create(bytes.data(), bytes.size(), 0, &error);
    if (source != nullptr) zip_.reset(zip_open_from_source(source, ZIP_RDONLY, &error));
    if (source != nullptr && !zip_) zip_source_free(source);
    zip_error_fini(&error);
    if (!zip_) throw SheetFault("a damaged archive");
  }

  bool Has(const std::string& name) const { return zip_name_locate(zip_.get(), name.c_str(), 0) >= 0; }

  /// A part unpacked; throws SheetFault when it is damaged, missing, or more than a machine should hold.
  std::string Read(const std::string& name) const {
    struct Close {
      void operator()(zip_file_t* file) const { zip_fclose(file); }
    };
    const std::unique_ptr<zip_file_t, Close> file(zip_fopen(zip_.get(), name.c_str(), 0));
    if (!file) throw SheetFault("an archive without " + name);
    std::string bytes;
    for (std::string block(1 << 16, '\0');;) {
      const zip_int64_t count = zip_fread(file.get(), block.data(), block.size());
      if (count < 0) throw SheetFault("a damaged archive");
      if (count == 0) return bytes;
      bytes.append(block, 0, static_cast<std::size_t>(count));
      // What is said of its size beforehand may be a lie.
      if (bytes.size() > kMostBytes) throw SheetFault("too large");
    }
  }

 private:
  struct Discard {
    void operator()(zip_t* zip) const { zip_discard(zip); }
  };
  std::unique_ptr<zip_t, Discard> zip_;
};

/// An XML part; the document works on its text in place.
class Part {
 public:
  Part(const Archive& archive, const std::string& name) : bytes_(archive.Read(name)) {
    if (!document_.load_buffer_inplace(bytes_.data(), bytes_.size(), kParse)) throw SheetFault("damaged: " + name);
  }
  pugi::xml_node Root() const { return document_.document_element(); }

 private:
  std::string bytes_;
  pugi::xml_document document_;
};

/// Programs may give the namespaces other prefixes, or none.
std::string_view WithoutPrefix(std::string_view name) {
  const std::size_t colon = name.find(':');
  return colon == std::string_view::npos ? name : name.substr(colon + 1);
}
bool Is(const pugi::xml_node& node, std::string_view name) {
  return WithoutPrefix(node.name()) == name;
}
pugi::xml_node Child(const pugi::xml_node& node, std::string_view name) {
  return node.find_child([&](const pugi::xml_node& child) { return Is(child, name); });
}
std::string_view Attribute(const pugi::xml_node& node, std::string_view name) {
  return node.find_attribute([&](const pugi::xml_attribute& one) { return WithoutPrefix(one.name()) == name; }).value();
}

std::optional<double> Number(std::string_view text) {
  double value = 0;
  const auto [stopped, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || stopped != text.data() + text.size()) return std::nullopt;
  return value;
}

std::uint64_t Count(std::string_view text, std::uint64_t otherwise) {
  std::uint64_t count = 0;
  const auto [stopped, error] = std::from_chars(text.data(), text.data() + text.size(), count);
  return error == std::errc() && stopped == text.data() + text.size() && count > 0 ? count : otherwise;
}

// .xlsx

/// The part that a relation of `part` names, seen from the archive's root.
std::string Target(const std::string& part, std::string_view target) {
  if (target.starts_with('/')) return std::string(target.substr(1));
  std::string folder = part.substr(0, part.rfind('/') == std::string::npos ? 0 : part.rfind('/') + 1);
  while (target.starts_with("../")) {
    target.remove_prefix(3);
    if (!folder.empty()) folder.pop_back();
    folder.erase(folder.rfind('/') == std::string::npos ? 0 : folder.rfind('/') + 1);
  }
  return folder + std::string(target);
}

/// Calls `visit(id, kind, target)` for each relation of `part`.
template <class Visit>
void ForEachRelation(const Archive& archive, const std::string& part, const Visit& visit) {
  const std::size_t slash = part.rfind('/');
  const std::size_t name = slash == std::string::npos ? 0 : slash + 1;
  const Part relations(archive, part.substr(0, name) + "_rels/" + part.substr(name) + ".rels");
  for (const pugi::xml_node& one : relations.Root()) {
    const std::string_view type = Attribute(one, "Type");
    visit(Attribute(one, "Id"), type.substr(type.rfind('/') + 1), Target(part, Attribute(one, "Target")));
  }
}

/// The text of a shared or inline string: its own or that of its runs, without what only tells the pronunciation.
std::string RunsText(const pugi::xml_node& item) {
  std::string text;
  for (const pugi::xml_node& piece : item) {
    if (Is(piece, "t")) {
      text += piece.text().get();
    } else if (Is(piece, "r")) {
      text += Child(piece, "t").text().get();
    }
  }
  return text;
}

/// "AB12" is column 28 of row 12; a part that is missing leaves its number as it is.
void ReadReference(std::string_view text, std::uint64_t& row, std::uint64_t& column) {
  std::uint64_t letters = 0;
  std::size_t at = 0;
  for (; at < text.size() && at < 4 && text[at] >= 'A' && text[at] <= 'Z'; ++at) {
    letters = letters * 26 + static_cast<std::uint64_t>(text[at] - 'A' + 1);
  }
  if (letters > 0) column = letters;
  row = Count(text.substr(at), row);
}

std::string XlsxValue(const pugi::xml_node& cell, const std::vector<std::string>& shared) {
  const std::string_view type = Attribute(cell, "t");
  if (type == "inlineStr") return RunsText(Child(cell, "is"));
  const std::string_view value = Child(cell, "v").text().get();
  if (type == "s") {
    const std::uint64_t index = value == "0" ? 0 : Count(value, shared.size());
    if (value.empty()) return {};
    if (index >= shared.size()) throw SheetFault("damaged: a text is missing");
    return shared[index];
  }
  if (type == "str" || type == "e" || type == "d") return std::string(value);
  if (type == "b") return value == "1" ? "TRUE" : "FALSE";
  const std::optional<double> number = Number(value);
  return number ? SheetCells::NumberText(*number) : std::string(value);
}

void ReadXlsx(const Archive& archive, SheetCells& cells) {
  std::string book_name;
  ForEachRelation(archive, "", [&](std::string_view, std::string_view kind, std::string target) {
    if (kind == "officeDocument") book_name = std::move(target);
  });
  if (book_name.empty()) throw SheetFault("an archive without a workbook");

  std::vector<std::pair<std::string, std::string>> worksheets;
  std::string shared_name;
  ForEachRelation(archive, book_name, [&](std::string_view id, std::string_view kind, std::string target) {
    if (kind == "worksheet") worksheets.emplace_back(id, target);
    if (kind == "sharedStrings") shared_name = target;
  });

  std::string sheet_name;
  const Part book(archive, book_name);
  for (const pugi::xml_node& sheet : Child(book.Root(), "sheets")) {
    for (const auto& [id, target] : worksheets) {
      // The sheet's own number is an attribute sheetId; the relation's is r:id.
      if (sheet_name.empty() && id == Attribute(sheet, "id")) sheet_name = target;
    }
  }
  if (sheet_name.empty()) throw SheetFault("a workbook without a worksheet");

  std::vector<std::string> shared;
  if (!shared_name.empty() && archive.Has(shared_name)) {
    const Part part(archive, shared_name);
    for (const pugi::xml_node& item : part.Root()) {
      if (Is(item, "si")) shared.push_back(RunsText(item));
    }
  }

  const Part sheet(archive, sheet_name);
  std::uint64_t row = 0;
  for (const pugi::xml_node& line : Child(sheet.Root(), "sheetData")) {
    if (!Is(line, "row")) continue;
    row = Count(Attribute(line, "r"), row + 1);
    std::uint64_t column = 0;
    for (const pugi::xml_node& cell : line) {
      if (!Is(cell, "c")) continue;
      std::uint64_t cell_row = row;
      ++column;
      ReadReference(Attribute(cell, "r"), cell_row, column);
      cells.Put(cell_row, column, XlsxValue(cell, shared));
    }
  }
}

// .ods

void AppendOdsText(const pugi::xml_node& node, std::string& text, int depth) {
  if (depth > kDeepest) throw SheetFault("damaged: texts within texts");
  for (const pugi::xml_node& piece : node) {
    if (piece.type() == pugi::node_pcdata || piece.type() == pugi::node_cdata) {
      text += piece.value();
    } else if (Is(piece, "s")) {
      const std::uint64_t blanks = Count(Attribute(piece, "c"), 1);
      if (blanks > kMostBytes - std::min(text.size(), kMostBytes)) throw SheetFault("too large");
      text.append(blanks, ' ');
    } else if (Is(piece, "tab")) {
      text += '\t';
    } else if (Is(piece, "line-break")) {
      text += '\n';
    } else if (Is(piece, "span") || Is(piece, "a")) {
      AppendOdsText(piece, text, depth + 1);
    }
  }
}

std::string OdsValue(const pugi::xml_node& cell) {
  const std::string_view type = Attribute(cell, "value-type");
  if (type == "float" || type == "percentage" || type == "currency") {
    if (const std::optional<double> number = Number(Attribute(cell, "value"))) return SheetCells::NumberText(*number);
  }
  if (type == "boolean") return Attribute(cell, "boolean-value") == "true" ? "TRUE" : "FALSE";
  // A remark on the cell has paragraphs of its own, further in.
  std::string text;
  bool first = true;
  for (const pugi::xml_node& paragraph : cell) {
    if (!Is(paragraph, "p")) continue;
    if (!first) text += '\n';
    first = false;
    AppendOdsText(paragraph, text, 0);
  }
  return first ? std::string(Attribute(cell, "string-value")) : text;
}

/// Puts the cells of a row into rows `row` to `row`+`repeated`-1.
void ReadOdsRow(const pugi::xml_node& line, std::uint64_t row, std::uint64_t repeated, SheetCells& cells) {
  std::uint64_t column = 1;
  for (const pugi::xml_node& cell : line) {
    if (!Is(cell, "table-cell") && !Is(cell, "covered-table-cell")) continue;
    const std::uint64_t count = Count(Attribute(cell, "number-columns-repeated"), 1);
    const std::string value = OdsValue(cell);
    if (!value.empty()) {
      for (std::uint64_t down = 0; down < repeated && row + down <= kMostRows; ++down) {
        for (std::uint64_t right = 0; right < count && column + right <= kMostColumns; ++right) {
          cells.Put(row + down, column + right, value);
        }
      }
    }
    column += std::min<std::uint64_t>(count, kMostColumns);
    if (column > kMostColumns) return;
  }
}

/// Rows stand in the table itself and in groups of rows and headers.
void ReadOdsRows(const pugi::xml_node& table, std::uint64_t& row, SheetCells& cells, int depth) {
  if (depth > kDeepest) throw SheetFault("damaged: groups within groups");
  for (const pugi::xml_node& line : table) {
    if (Is(line, "table-row")) {
      const std::uint64_t repeated = Count(Attribute(line, "number-rows-repeated"), 1);
      ReadOdsRow(line, row, repeated, cells);
      row += std::min<std::uint64_t>(repeated, kMostRows);
    } else if (Is(line, "table-row-group") || Is(line, "table-header-rows") || Is(line, "table-rows")) {
      ReadOdsRows(line, row, cells, depth + 1);
    }
    if (row > kMostRows) return;
  }
}

void ReadOds(const Archive& archive, SheetCells& cells) {
  const Part content(archive, "content.xml");
  const pugi::xml_node table = Child(Child(Child(content.Root(), "body"), "spreadsheet"), "table");
  if (!table) throw SheetFault("a document without a table");
  std::uint64_t row = 1;
  ReadOdsRows(table, row, cells, 0);
}

}  // namespace

void ReadZipped(std::string_view bytes, SheetCells& cells) {
  const Archive archive(bytes);
  if (archive.Has("content.xml")) {
    ReadOds(archive, cells);
  } else if (archive.Has("_rels/.rels")) {
    ReadXlsx(archive, cells);
  } else {
    throw SheetFault("an archive, but no spreadsheet");
  }
}

}  // namespace zrt
