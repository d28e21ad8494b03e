#include "platform/spreadsheet_xml.h"

#include <expat.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "platform/spreadsheet_cells.h"

namespace zrt {

namespace {

// A member may unpack to a thousand times its size. The sheet of a full catalogue takes 400 MB as .xlsx.
constexpr std::size_t kMaxMember = 1U << 30;

// Of the parser alone: open elements, names, a tag that doesn't end. Spreadsheets need some kilobytes.
constexpr std::size_t kMaxParserMemory = 16U << 20;

// The parser takes its memory by plain functions that don't know for whom; one file is read at a time.
std::size_t parser_memory = 0;

constexpr std::size_t kSizeBefore = alignof(std::max_align_t);  // the size of each block stands before it

void* Allocate(std::size_t size) {
  if (size > kMaxParserMemory - parser_memory) return nullptr;
  auto* const block = static_cast<char*>(std::malloc(kSizeBefore + size));
  if (block == nullptr) return nullptr;
  std::memcpy(block, &size, sizeof size);
  parser_memory += size;
  return block + kSizeBefore;
}

std::size_t SizeOf(const void* memory) {
  std::size_t size = 0;
  std::memcpy(&size, static_cast<const char*>(memory) - kSizeBefore, sizeof size);
  return size;
}

void Free(void* memory) {
  if (memory == nullptr) return;
  parser_memory -= SizeOf(memory);
  std::free(static_cast<char*>(memory) - kSizeBefore);
}

void* Reallocate(void* memory, std::size_t size) {
  void* const larger = Allocate(size);
  if (larger == nullptr || memory == nullptr) return larger;
  std::memcpy(larger, memory, std::min(size, SizeOf(memory)));
  Free(memory);
  return larger;
}

}  // namespace

ZipFile::ZipFile(std::string_view bytes) : zip_(nullptr, zip_discard) {
  zip_error_t error;
  zip_error_init(&error);
  zip_source_t* const source = zip_source_buffer_create(bytes.data(), bytes.size(), 0, &error);
  if (source != nullptr) {
    zip_.reset(zip_open_from_source(source, ZIP_RDONLY, &error));
    if (!zip_) zip_source_free(source);
  }
  zip_error_fini(&error);
  if (!zip_) throw BadSpreadsheet(SpreadsheetFault::kDamaged);
}

bool ZipFile::Has(const std::string& name) const {
  return zip_name_locate(zip_.get(), name.c_str(), ZIP_FL_NOCASE) >= 0;
}

std::unique_ptr<zip_file_t, int (*)(zip_file_t*)> ZipFile::OpenMember(const std::string& name) const {
  const zip_int64_t index = zip_name_locate(zip_.get(), name.c_str(), ZIP_FL_NOCASE);
  zip_stat_t stat;
  if (index < 0 || zip_stat_index(zip_.get(), static_cast<zip_uint64_t>(index), 0, &stat) != 0) {
    throw BadSpreadsheet(SpreadsheetFault::kDamaged);
  }
  if ((stat.valid & ZIP_STAT_ENCRYPTION_METHOD) != 0 && stat.encryption_method != ZIP_EM_NONE) {
    throw BadSpreadsheet(SpreadsheetFault::kEncrypted);
  }
  std::unique_ptr<zip_file_t, int (*)(zip_file_t*)> member(
      zip_fopen_index(zip_.get(), static_cast<zip_uint64_t>(index), 0), zip_fclose);
  if (!member) throw BadSpreadsheet(SpreadsheetFault::kDamaged);
  return member;
}

std::string_view WithoutPrefix(std::string_view name) {
  return name.substr(name.find(':') + 1);
}

std::string_view XmlAttributes::operator[](std::string_view name) const {
  for (const char* const* pair = pairs_; *pair != nullptr; pair += 2) {
    if (name == pair[0]) return pair[1];
  }
  return {};
}

std::string_view XmlAttributes::WithAnyPrefix(std::string_view name) const {
  for (const char* const* pair = pairs_; *pair != nullptr; pair += 2) {
    if (name == WithoutPrefix(pair[0])) return pair[1];
  }
  return {};
}

// What the parser calls. It is no C++, so no exception may pass through it.
struct XmlReader::Callbacks {
  XmlReader& reader;
  XML_Parser parser;

  template <class TStep>
  static void Do(void* user_data, TStep step) {
    auto& self = *static_cast<Callbacks*>(user_data);
    if (self.reader.failure_) return;
    try {
      step(self.reader);
    } catch (...) {
      self.reader.failure_ = std::current_exception();
      XML_StopParser(self.parser, XML_FALSE);
    }
  }

  static void XMLCALL Start(void* user_data, const char* name, const char** attributes) {
    Do(user_data, [&](XmlReader& read) { read.StartElement(name, XmlAttributes(attributes)); });
  }
  static void XMLCALL End(void* user_data, const char* name) {
    Do(user_data, [&](XmlReader& read) { read.EndElement(name); });
  }
  static void XMLCALL Characters(void* user_data, const char* text, int length) {
    Do(user_data, [&](XmlReader& read) { read.Text({text, static_cast<std::size_t>(length)}); });
  }
  // Entities of its own are what no spreadsheet program writes, and what a few bytes become gigabytes by.
  static void XMLCALL Entity(void* user_data, const char*, int, const char*, int, const char*, const char*, const char*,
                             const char*) {
    Do(user_data, [](XmlReader&) { throw BadSpreadsheet(SpreadsheetFault::kDamaged); });
  }
};

void XmlReader::Read(const ZipFile& zip, const std::string& name) {
  const auto member = zip.OpenMember(name);
  const XML_Memory_Handling_Suite memory{Allocate, Reallocate, Free};
  const std::unique_ptr<XML_ParserStruct, void (*)(XML_Parser)> parser(XML_ParserCreate_MM(nullptr, &memory, nullptr),
                                                                       XML_ParserFree);
  if (!parser) throw BadSpreadsheet(SpreadsheetFault::kTooLarge);
  Callbacks callbacks{*this, parser.get()};
  failure_ = nullptr;
  XML_SetUserData(parser.get(), &callbacks);
  XML_SetElementHandler(parser.get(), Callbacks::Start, Callbacks::End);
  XML_SetCharacterDataHandler(parser.get(), Callbacks::Characters);
  XML_SetEntityDeclHandler(parser.get(), Callbacks::Entity);

  char block[1U << 16];
  std::size_t total = 0;
  zip_int64_t length = 0;
  do {
    length = zip_fread(member.get(), block, sizeof block);
    if (length < 0) throw BadSpreadsheet(SpreadsheetFault::kDamaged);
    total += static_cast<std::size_t>(length);
    if (total > kMaxMember) throw BadSpreadsheet(SpreadsheetFault::kTooLarge);
    if (XML_Parse(parser.get(), block, static_cast<int>(length), length == 0) != XML_STATUS_OK) {
      if (failure_) std::rethrow_exception(failure_);
      const bool too_large = XML_GetErrorCode(parser.get()) == XML_ERROR_NO_MEMORY;
      throw BadSpreadsheet(too_large ? SpreadsheetFault::kTooLarge : SpreadsheetFault::kDamaged);
    }
  } while (length > 0);
}

}  // namespace zrt
