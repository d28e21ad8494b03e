#include "platform/spreadsheet.h"

#include <fmt/format.h>

#include <fstream>
#include <new>
#include <system_error>

#include "platform/spreadsheet_biff.h"
#include "platform/spreadsheet_ods.h"
#include "platform/spreadsheet_xlsx.h"

namespace zrt {

namespace {

std::string ReadFile(const std::filesystem::path& path) {
  std::error_code error;
  if (!std::filesystem::exists(path, error)) throw SpreadsheetFault::kMissing;
  std::ifstream file(path, std::ios::binary);
  if (!file.is_open()) throw SpreadsheetFault::kUnreadable;
  std::string bytes;
  char block[1U << 16];
  do {
    file.read(block, sizeof block);
    bytes.append(block, static_cast<std::size_t>(file.gcount()));
    if (bytes.size() > kMaxSpreadsheetFile) throw SpreadsheetFault::kTooLarge;
  } while (file);
  if (!file.eof()) throw SpreadsheetFault::kUnreadable;  // a folder of that name opens and fails at the first read
  return bytes;
}

SpreadsheetCells ReadZipped(std::string_view file) {
  const ZipFile zip(file);
  // Protected by a password, a document may have no content beside its manifest.
  return zip.Has("content.xml") || zip.Has("META-INF/manifest.xml") ? ReadOds(zip) : ReadXlsx(zip);
}

SpreadsheetCells Read(const std::filesystem::path& path) {
  constexpr std::string_view kZip = "PK\x03\x04";

  const std::string file = ReadFile(path);
  if (file.starts_with(kZip)) return ReadZipped(file);
  if (file.starts_with(kCompoundFileStart) || file.starts_with(kBareWorkbookStart)) return ReadXls(file);
  throw SpreadsheetFault::kOtherKind;
}

std::string Sentence(SpreadsheetFault fault, std::string_view path) {
  switch (fault) {
    case SpreadsheetFault::kMissing:
      return fmt::format("Файл {} не найден!", path);
    case SpreadsheetFault::kUnreadable:
      return fmt::format("Файл {} не читается!", path);
    case SpreadsheetFault::kOtherKind:
      return fmt::format("Файл {} - не таблица .xls, .xlsx или .ods!", path);
    case SpreadsheetFault::kDamaged:
      return fmt::format("Файл {} повреждён!", path);
    case SpreadsheetFault::kEncrypted:
      return fmt::format("Файл {} защищён паролем!", path);
    case SpreadsheetFault::kTooLarge:
      return fmt::format("Файл {} слишком велик!", path);
    case SpreadsheetFault::kNoSheet:
      return fmt::format("В файле {} нет листа с таблицей!", path);
  }
  return {};
}

}  // namespace

Spreadsheet Spreadsheet::Open(const DriveMap& drives, std::string_view drive_path) {
  try {
    return Spreadsheet(Read(drives.ToNative(drive_path)));
  } catch (SpreadsheetFault fault) {
    throw SpreadsheetError(Sentence(fault, drive_path));
  } catch (const std::bad_alloc&) {
    throw SpreadsheetError(Sentence(SpreadsheetFault::kTooLarge, drive_path));
  }
}

}  // namespace zrt
