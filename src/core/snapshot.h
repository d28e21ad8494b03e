#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/odbc.h"
#include "core/recordset.h"

namespace zrt {

/// Bytes of many rows, packed one after another into blocks that never move.
///
/// A row is the sequence of its cells; a cell is one byte of length and its bytes, with two lengths of a special
/// meaning. That is one byte of overhead a cell, where an offset table costs four or eight; rows are short, so stepping
/// over the cells before the one wanted costs less than the memory would.
class RowArena {
 public:
  static constexpr unsigned char kNull = 255;
  static constexpr unsigned char kLong = 254;  ///< four bytes of length follow

  /// Room for a row of at most `bytes` bytes; it may be written until the next call.
  char* Reserve(std::size_t bytes) {
    if (bytes > static_cast<std::size_t>(end_ - next_)) AddBlock(bytes);
    return next_;
  }

  /// Keeps what was written up to `end`.
  void Commit(char* end) { next_ = end; }

  /// Most bytes that a cell of `length` bytes takes.
  static constexpr std::size_t CellBytes(std::size_t length) { return length + 5; }

  static char* PutNull(char* at) {
    *at = static_cast<char>(kNull);
    return at + 1;
  }

  static char* Put(char* at, const char* bytes, std::size_t length) {
    if (length < kLong) {
      *at++ = static_cast<char>(length);
    } else {
      const auto wide = static_cast<std::uint32_t>(length);
      *at++ = static_cast<char>(kLong);
      std::memcpy(at, &wide, sizeof wide);
      at += sizeof wide;
    }
    std::memcpy(at, bytes, length);
    return at + length;
  }

  /// Reads the cell at `at` and moves on to the next one.
  static std::optional<std::string_view> Take(const char*& at) {
    const auto mark = static_cast<unsigned char>(*at++);
    if (mark == kNull) return std::nullopt;
    std::size_t length = mark;
    if (mark == kLong) {
      std::uint32_t wide = 0;
      std::memcpy(&wide, at, sizeof wide);
      at += sizeof wide;
      length = wide;
    }
    const std::string_view cell(at, length);
    at += length;
    return cell;
  }

 private:
  static constexpr std::size_t kFirstBlock = std::size_t{16} << 10;
  static constexpr std::size_t kLargestBlock = std::size_t{1} << 20;

  void AddBlock(std::size_t bytes);

  std::vector<std::unique_ptr<char[]>> blocks_;
  char* next_ = nullptr;
  char* end_ = nullptr;
  std::size_t block_size_ = kFirstBlock;
};

/// The rows and columns of one result.
struct Snapshot {
  struct Column {
    std::string name;    ///< UTF-8
    std::string folded;  ///< lower case, for the search by name
    FieldType type;
    int length;  ///< characters or digits that the column holds
  };

  /// Takes the whole result of `statement`. Throws DatabaseError.
  Snapshot(const OdbcHandle& statement, Connection::Impl& connection);

  /// The cell of a row (from 1) and a column (from 0).
  std::optional<std::string_view> Bytes(int row, int index) const;

  std::vector<Column> columns;
  RowArena arena;
  std::vector<const char*> rows;  ///< first cell of each row
};

}  // namespace zrt
