#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "core/errors.h"
#include "core/regional_format.h"
#include "platform/spreadsheet.h"

namespace zrt {

/// The catalogue as a spreadsheet holds it: a row of headers, then a product in each row up to the first one without a
/// name. Rows are counted as the spreadsheet's own, the first product stands in row 2.
class ProductSheet {
 public:
  static constexpr std::int64_t kFirstRow = 2;

  /// Reads the file whole; `between` as for `Spreadsheet::Open`. Throws FileError when it is no spreadsheet that can be
  /// read.
  ProductSheet(const DriveMap& drives, std::string drive_path, const RegionalFormat& format,
               const std::function<void()>& between = {});

  /// Products in the file.
  std::int64_t Count() const { return count_; }

  /// The code of a row, 1 to 999999; nothing when it holds another number or none.
  std::optional<std::int32_t> Code(std::int64_t row) const;
  /// The name of a row, trimmed, its first 50 characters; "" when it has none but blanks of any kind. Throws FileError,
  /// which names row and column, for the value of a formula that failed.
  std::string Name(std::int64_t row) const;
  /// The statement that puts a row's product into the catalogue. Empty cells are 0, a product without barcode gets "0",
  /// one without group "ТОВАР". Throws FileError, which names row and column, where a number is wanted and none
  /// stands, and for the value of a formula that failed.
  std::string InsertStatement(std::int64_t row, std::int32_t cod, const std::string& name) const;

 private:
  std::string Text(std::int64_t row, int column, std::size_t length, std::string_view otherwise) const;
  template <class Integer>
  Integer Number(std::int64_t row, int column, Integer (*convert)(double)) const;

  FileError Fault(std::int64_t row, int column, const std::string& what) const;

  std::string drive_path_;
  const RegionalFormat& format_;
  Spreadsheet sheet_;
  std::int64_t count_ = 0;
};

}  // namespace zrt
