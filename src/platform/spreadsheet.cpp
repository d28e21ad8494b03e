#include "platform/spreadsheet.h"

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
  if (!std::filesystem::exists(path, error)) throw BadSpreadsheet(SpreadsheetFault::kMissing);
  std::ifstream file(path, std::ios::binary);
  if (!file.is_open()) throw BadSpreadsheet(SpreadsheetFault::kUnreadable);
  std::string bytes;
  char block[1U << 16];
  do {
    file.read(block, sizeof block);
    bytes.append(block, static_cast<std::size_t>(file.gcount()));
    if (bytes.size() > kMaxSpreadsheetFile) throw BadSpreadsheet(SpreadsheetFault::kTooLarge);
  } while (file);
  if (!file.eof())
    throw BadSpreadsheet(SpreadsheetFault::kUnreadable);  // a folder of that name opens and fails at the first read
  return bytes;
}

SpreadsheetCells ReadZipped(std::string_view file, const std::function<void()>& between) {
  const ZipFile zip(file);
  // Protected by a password, a document may have no content beside its manifest.
  return zip.Has("content.xml") || zip.Has("META-INF/manifest.xml") ? ReadOds(zip, between) : ReadXlsx(zip, between);
}

SpreadsheetCells Read(const std::filesystem::path& path, const std::function<void()>& between) {
  constexpr std::string_view kZip = "PK\x03\x04";

  const std::string file = ReadFile(path);
  if (file.starts_with(kZip)) return ReadZipped(file, between);
  if (file.starts_with(kCompoundFileStart) || file.starts_with(kBareWorkbookStart)) return ReadXls(file, between);
  throw BadSpreadsheet(SpreadsheetFault::kOtherKind);
}

std::string Reason(SpreadsheetFault fault) {
  switch (fault) {
    case SpreadsheetFault::kMissing:
      return "файл не найден";
    case SpreadsheetFault::kUnreadable:
      return "файл не читается";
    case SpreadsheetFault::kOtherKind:
      return "файл - не таблица .xls, .xlsx или .ods";
    case SpreadsheetFault::kDamaged:
      return "файл повреждён";
    case SpreadsheetFault::kEncrypted:
      return "файл защищён паролем";
    case SpreadsheetFault::kTooLarge:
      return "файл слишком велик";
    case SpreadsheetFault::kNoSheet:
      return "в файле нет листа с таблицей";
  }
  return {};
}

}  // namespace

Spreadsheet Spreadsheet::Open(const DriveMap& drives, std::string_view drive_path,
                              const std::function<void()>& between) {
  if (between) between();
  try {
    return Spreadsheet(Read(drives.ToNative(drive_path), between));
  } catch (const BadSpreadsheet& bad) {
    throw SpreadsheetError(std::string(drive_path), Reason(bad.fault));
  } catch (const std::bad_alloc&) {
    throw SpreadsheetError(std::string(drive_path), Reason(SpreadsheetFault::kTooLarge));
  }
}

}  // namespace zrt
