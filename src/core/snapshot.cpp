#include "core/snapshot.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <climits>

#include "core/errors.h"
#include "core/text.h"

namespace zrt {
namespace {

/// Rows that one call to the driver brings: enough to make the call cheap, few enough to stay in the processor's cache.
constexpr std::size_t kRowsAtOnce = 200;
/// Columns that may be longer than this are read piece by piece instead of being bound.
constexpr std::size_t kWidestBound = 4096;
/// The longest whole number as text, sign included.
constexpr std::size_t kIntegerText = 20;
/// yyyy-mm-dd hh:mm:ss
constexpr std::size_t kMomentText = 19;

/// How the driver hands a column over. Whole numbers and moments come in their binary form, because the driver prints
/// them much slower than we do; all others come as the server prints them.
enum class Form { kText, kSigned, kUnsigned, kMoment, kPieces };

struct SqlType {
  SQLSMALLINT sql;
  FieldType type;
  Form form;
};

constexpr std::array kSqlTypes = {
    SqlType{SQL_TINYINT, FieldType::kInteger, Form::kSigned},
    SqlType{SQL_SMALLINT, FieldType::kInteger, Form::kSigned},
    SqlType{SQL_INTEGER, FieldType::kInteger, Form::kSigned},
    SqlType{SQL_BIGINT, FieldType::kInteger, Form::kSigned},
    SqlType{SQL_DECIMAL, FieldType::kDecimal, Form::kText},
    SqlType{SQL_NUMERIC, FieldType::kDecimal, Form::kText},
    SqlType{SQL_REAL, FieldType::kFloat, Form::kText},
    SqlType{SQL_FLOAT, FieldType::kFloat, Form::kText},
    SqlType{SQL_DOUBLE, FieldType::kFloat, Form::kText},
    SqlType{SQL_TYPE_DATE, FieldType::kDateTime, Form::kText},
    SqlType{SQL_TYPE_TIMESTAMP, FieldType::kDateTime, Form::kMoment},
};
constexpr SqlType kAnyText{SQL_VARCHAR, FieldType::kText, Form::kText};

SqlType FindType(SQLSMALLINT sql) {
  const auto* const found =
      std::find_if(kSqlTypes.begin(), kSqlTypes.end(), [sql](const SqlType& known) { return known.sql == sql; });
  return found == kSqlTypes.end() ? kAnyText : *found;
}

/// A column of the result and the buffer that the driver fills for a block of rows.
struct Binding {
  Form form = Form::kText;
  std::size_t width = 0;  ///< bytes of one value in the buffer; of a text with its end mark
  std::vector<char> values;
  std::vector<SQLLEN> lengths;

  SQLSMALLINT CType() const {
    switch (form) {
      case Form::kSigned:
        return SQL_C_SBIGINT;
      case Form::kUnsigned:
        return SQL_C_UBIGINT;
      case Form::kMoment:
        return SQL_C_TYPE_TIMESTAMP;
      default:
        return SQL_C_CHAR;
    }
  }

  /// Most bytes of a value as text.
  std::size_t TextWidth() const {
    switch (form) {
      case Form::kText:
        return width;
      case Form::kSigned:
      case Form::kUnsigned:
        return kIntegerText;
      case Form::kMoment:
        return kMomentText;
      case Form::kPieces:
        break;
    }
    return 0;
  }

  template <typename Value>
  Value At(std::size_t row) const {
    Value value;
    std::memcpy(&value, values.data() + row * sizeof value, sizeof value);
    return value;
  }
};

char* PutDigits(char* at, unsigned value, int digits) {
  for (int i = digits - 1; i >= 0; --i, value /= 10) at[i] = static_cast<char>('0' + value % 10);
  return at + digits;
}

template <typename Integer>
char* PutInteger(char* at, Integer value) {
  char* const end = std::to_chars(at + 1, at + 1 + kIntegerText, value).ptr;
  *at = static_cast<char>(end - at - 1);
  return end;
}

char* PutMoment(char* at, const SQL_TIMESTAMP_STRUCT& moment) {
  *at++ = static_cast<char>(kMomentText);
  at = PutDigits(at, static_cast<unsigned>(moment.year), 4);
  *at++ = '-';
  at = PutDigits(at, moment.month, 2);
  *at++ = '-';
  at = PutDigits(at, moment.day, 2);
  *at++ = ' ';
  at = PutDigits(at, moment.hour, 2);
  *at++ = ':';
  at = PutDigits(at, moment.minute, 2);
  *at++ = ':';
  return PutDigits(at, moment.second, 2);
}

/// Takes the result of a statement into a snapshot.
class Fetcher {
 public:
  Fetcher(const OdbcHandle& statement, Connection::Impl& connection, Snapshot& snapshot)
      : statement_(statement), connection_(connection), snapshot_(snapshot) {}

  void Run() {
    Describe();
    if (bindings_.empty()) return;
    SQLLEN rows = 0;
    const bool counted = SQL_SUCCEEDED(SQLRowCount(Handle(), &rows)) && rows >= 0;
    if (counted && rows == 0) return;
    const std::size_t expected = counted ? static_cast<std::size_t>(rows) : kRowsAtOnce;
    snapshot_.rows.reserve(expected);
    Bind(std::min(expected, kRowsAtOnce));  // most results are a single row, which needs no buffers for more
    // A driver that has counted the rows need not be asked whether there are more.
    while (!counted || snapshot_.rows.size() < expected) {
      const SQLRETURN result = SQLFetch(Handle());
      if (result == SQL_NO_DATA) return;
      Check(result);
      for (std::size_t row = 0; row < fetched_; ++row) TakeRow(row);
    }
  }

 private:
  SQLHANDLE Handle() const { return statement_.Get(); }

  void Check(SQLRETURN result) {
    if (!SQL_SUCCEEDED(result)) throw connection_.Failure(statement_);
  }

  SQLLEN Attribute(SQLUSMALLINT number, SQLUSMALLINT which) {
    SQLLEN value = 0;
    Check(SQLColAttribute(Handle(), number, which, nullptr, 0, nullptr, &value));
    return value;
  }

  void Describe() {
    SQLSMALLINT count = 0;
    Check(SQLNumResultCols(Handle(), &count));
    for (SQLUSMALLINT number = 1; number <= count; ++number) {
      std::array<SQLCHAR, 260> name{};
      SQLSMALLINT name_length = 0;
      SQLSMALLINT sql_type = 0;
      SQLULEN size = 0;
      Check(SQLDescribeCol(Handle(), number, name.data(), static_cast<SQLSMALLINT>(name.size()), &name_length,
                           &sql_type, &size, nullptr, nullptr));
      const std::string text =
          FromWindows1251({reinterpret_cast<const char*>(name.data()), static_cast<std::size_t>(name_length)});
      const SqlType type = FindType(sql_type);
      snapshot_.columns.push_back({text, ToLower(text), type.type, static_cast<int>(std::min<SQLULEN>(size, INT_MAX))});

      Binding binding{type.form, sizeof(std::int64_t), {}, {}};
      if (type.form == Form::kSigned && Attribute(number, SQL_DESC_UNSIGNED) == SQL_TRUE)
        binding.form = Form::kUnsigned;
      if (type.form == Form::kMoment) binding.width = sizeof(SQL_TIMESTAMP_STRUCT);
      if (type.form == Form::kText) {
        const SQLLEN shown = Attribute(number, SQL_DESC_DISPLAY_SIZE);
        binding.width = std::max<std::size_t>(size, shown > 0 ? static_cast<std::size_t>(shown) : 0) + 1;
        if (binding.width > kWidestBound) binding.form = Form::kPieces;
      }
      bindings_.push_back(std::move(binding));
    }
  }

  void Bind(std::size_t rows) {
    const bool in_pieces =
        std::any_of(bindings_.begin(), bindings_.end(), [](const Binding& b) { return b.form == Form::kPieces; });
    // Pieces of a long value can be asked for only while the driver stands on its row.
    if (in_pieces) rows = 1;
    if (rows > 1) {
      Check(SQLSetStmtAttr(Handle(), SQL_ATTR_ROW_ARRAY_SIZE, reinterpret_cast<SQLPOINTER>(rows), 0));
      Check(SQLSetStmtAttr(Handle(), SQL_ATTR_ROWS_FETCHED_PTR, &fetched_, 0));
    }
    SQLUSMALLINT number = 0;
    for (Binding& binding : bindings_) {
      ++number;
      row_bytes_ += RowArena::CellBytes(binding.TextWidth());
      if (binding.form == Form::kPieces) continue;
      binding.values.resize(binding.width * rows);
      binding.lengths.resize(rows);
      Check(SQLBindCol(Handle(), number, binding.CType(), binding.values.data(), static_cast<SQLLEN>(binding.width),
                       binding.lengths.data()));
    }
  }

  void TakeRow(std::size_t row) {
    char* const begin = snapshot_.arena.Reserve(row_bytes_ + ReadPieces());
    char* at = begin;
    for (const Binding& binding : bindings_) at = PutCell(at, binding, row);
    snapshot_.arena.Commit(at);
    snapshot_.rows.push_back(begin);
  }

  char* PutCell(char* at, const Binding& binding, std::size_t row) const {
    if (binding.form == Form::kPieces) {
      const std::optional<std::string>& value = pieces_[static_cast<std::size_t>(&binding - bindings_.data())];
      return value ? RowArena::Put(at, value->data(), value->size()) : RowArena::PutNull(at);
    }
    const SQLLEN length = binding.lengths[row];
    if (length == SQL_NULL_DATA) return RowArena::PutNull(at);
    switch (binding.form) {
      case Form::kSigned:
        return PutInteger(at, binding.At<std::int64_t>(row));
      case Form::kUnsigned:
        return PutInteger(at, binding.At<std::uint64_t>(row));
      case Form::kMoment:
        return PutMoment(at, binding.At<SQL_TIMESTAMP_STRUCT>(row));
      default:
        break;
    }
    // A value that fills its buffer has no end mark, so only the length counts.
    if (length < 0 || static_cast<std::size_t>(length) > binding.width) {
      throw DatabaseError("01004", 0, "a value is longer than its column was announced");
    }
    return RowArena::Put(at, binding.values.data() + row * binding.width, static_cast<std::size_t>(length));
  }

  /// Reads the long values of the row that the driver stands on; returns their bytes.
  std::size_t ReadPieces() {
    std::size_t bytes = 0;
    for (std::size_t i = 0; i < bindings_.size(); ++i) {
      if (bindings_[i].form != Form::kPieces) continue;
      pieces_.resize(bindings_.size());
      pieces_[i] = ReadLongValue(static_cast<SQLUSMALLINT>(i + 1));
      if (pieces_[i]) bytes += pieces_[i]->size();
    }
    return bytes;
  }

  std::optional<std::string> ReadLongValue(SQLUSMALLINT number) {
    std::string value;
    std::array<char, 8192> piece;
    for (;;) {
      SQLLEN left = 0;  // bytes of the value from this piece on
      const SQLRETURN result =
          SQLGetData(Handle(), number, SQL_C_CHAR, piece.data(), static_cast<SQLLEN>(piece.size()), &left);
      if (result == SQL_NO_DATA) return value;
      Check(result);
      if (left == SQL_NULL_DATA) return std::nullopt;
      const bool more = left == SQL_NO_TOTAL || left >= static_cast<SQLLEN>(piece.size());
      value.append(piece.data(), more ? piece.size() - 1 : static_cast<std::size_t>(left));
      if (!more) return value;
    }
  }

  const OdbcHandle& statement_;
  Connection::Impl& connection_;
  Snapshot& snapshot_;
  std::vector<Binding> bindings_;
  std::vector<std::optional<std::string>> pieces_;  ///< the long values of the current row, by column
  SQLULEN fetched_ = 1;  ///< rows that the last fetch brought; the driver tells it where more than one is asked for
  std::size_t row_bytes_ = 0;  ///< most that the bound cells of a row take in the arena
};

}  // namespace

void RowArena::AddBlock(std::size_t bytes) {
  const std::size_t size = std::max(bytes, block_size_);
  blocks_.push_back(std::make_unique_for_overwrite<char[]>(size));
  next_ = blocks_.back().get();
  end_ = next_ + size;
  block_size_ = std::min(block_size_ * 2, kLargestBlock);
}

Snapshot::Snapshot(const OdbcHandle& statement, Connection::Impl& connection) {
  Fetcher(statement, connection, *this).Run();
}

std::optional<std::string_view> Snapshot::Bytes(int row, int index) const {
  const char* at = rows[static_cast<std::size_t>(row - 1)];
  for (; index > 0; --index) RowArena::Take(at);
  return RowArena::Take(at);
}

}  // namespace zrt
