#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/connection.h"
#include "core/dates.h"
#include "core/regional_format.h"

namespace zrt {

/// What a column holds, as far as its display is concerned.
enum class FieldType { kInteger, kDecimal, kFloat, kText, kDateTime };

/// One cell of a snapshot; decoded on access. Valid as long as the recordset isn't reopened, requeried or closed.
class Cell {
 public:
  Cell(FieldType type, std::optional<std::string_view> bytes) : type_(type), bytes_(bytes) {}

  bool IsNull() const { return !bytes_.has_value(); }
  FieldType Type() const { return type_; }

  /// The bytes as the server sends them (numbers with a dot, DATETIME as yyyy-mm-dd hh:mm:ss); empty for NULL. A
  /// DATETIME of all zeros counts as NULL, fractions of a second are dropped.
  std::string_view Raw() const { return bytes_.value_or(std::string_view{}); }

  /// The text in UTF-8, as the server sent it. Throws TypeMismatch for NULL.
  std::string Text() const;
  /// The text in UTF-8, "" for NULL.
  std::string TextOrEmpty() const { return IsNull() ? std::string() : Text(); }

  /// The numeric value. Throws TypeMismatch for NULL and for a text that isn't a number.
  double Number() const;
  /// The value as an integer, rounded half to even. Throws TypeMismatch, OverflowError.
  std::int64_t Int() const;

  /// The moment. Throws TypeMismatch for NULL and for anything that isn't a date.
  DateTime Moment() const;

  /// As a grid without a column format shows it: numbers in their shortest form with the decimal mark, moments as the
  /// system prints them, texts as they are, NULL as "".
  std::string Display(const RegionalFormat& format) const;

  /// As a grid column with `pattern` ("0.00", "0.000") shows it; an empty pattern and a value that is no number are
  /// shown as by Display.
  std::string Display(const RegionalFormat& format, std::string_view pattern) const;

 private:
  FieldType type_;
  std::optional<std::string_view> bytes_;
};

class Recordset;
struct Snapshot;

/// Told of every change of a recordset, so that a grid can follow without copying it. The grid's current row is the
/// recordset's.
class RecordsetObserver {
 public:
  virtual ~RecordsetObserver() = default;
  virtual void PositionChanged(Recordset& set) = 0;
  /// Opened, requeried or closed: rows and columns may all differ.
  virtual void RowsChanged(Recordset& set) = 0;
  /// The recordset itself is being destroyed; it has forgotten its observers.
  virtual void Gone(Recordset& set) = 0;
};

/// A client-side snapshot of one query: the whole result is fetched at Open into one arena; later changes in the
/// database don't show until Requery. Rows are counted from 1; the position may also be before the first row (Bof) or
/// past the last (Eof). A result without rows is both.
class Recordset {
 public:
  Recordset();
  ~Recordset();
  /// Takes the rows and the position; throws nothing. Observers don't move: none may be there.
  Recordset(Recordset&& other) noexcept;
  Recordset(const Recordset&) = delete;
  Recordset& operator=(const Recordset&) = delete;

  /// Fetches `sql` (UTF-8) over `connection` and stands on the first row. Throws DatabaseError; also when it is open
  /// already. A failed Open leaves the recordset closed.
  void Open(const std::string& sql, Connection& connection);

  /// Fetches the same statement again and stands on the first row. Throws DatabaseError; the old rows are gone then and
  /// IsOpen() is false, but the set can be requeried once more when the fault is mended. Throws Error when the set was
  /// never opened or was closed.
  void Requery();

  /// Frees the rows and tells the observers; harmless when closed.
  void Close();

  bool IsOpen() const;
  int RecordCount() const;  ///< 0 when closed
  int FieldCount() const;
  std::string FieldName(int index) const;  ///< alias of the column, index from 0
  FieldType Type(int index) const;
  /// Characters that a text column holds, as the server declares it; 0 when the set isn't open.
  int FieldLength(std::string_view name) const;
  /// Index of a column by its name, case ignored; throws Error when there is none.
  int FieldIndex(std::string_view name) const;

  bool Bof() const;
  bool Eof() const;
  void MoveFirst();  ///< throws Error on an empty set, as all four
  void MoveLast();
  void MoveNext();      ///< from the last row to Eof; throws at Eof
  void MovePrevious();  ///< from the first row to Bof; throws at Bof
  /// `count` rows on (back when negative), at most to Eof or Bof.
  void Move(int count);

  /// The current row from 1, 0 at Bof, RecordCount()+1 at Eof (1 on an empty set, which is both). A value that was read
  /// here can be set again while the snapshot lives.
  int Bookmark() const;
  void SetBookmark(int row);

  enum class Match { kEquals, kBeginsWith };
  /// Searches `column` forward from the current row, itself included, for `value` (UTF-8); case is ignored. In a column
  /// of numbers a number equals as a number. Stands on the row found, else at Eof. Throws Error for a column that isn't
  /// there and on an empty set.
  void Find(std::string_view column, std::string_view value, Match match = Match::kEquals);

  /// Cell of the current row. Throws Error at Bof, Eof and for a column that isn't there.
  /// Not on a temporary: the cell would outlive its set.
  Cell Field(int index) const&;
  Cell Field(std::string_view name) const& { return Field(FieldIndex(name)); }
  Cell Field(int index) const&& = delete;
  Cell Field(std::string_view name) const&& = delete;
  bool IsNull(int index) const { return Field(index).IsNull(); }

  /// Cell of any row (from 1) without moving there; for grids.
  Cell At(int row, int index) const;

  void AddObserver(RecordsetObserver* observer);     ///< not owned
  void RemoveObserver(RecordsetObserver* observer);  ///< harmless when unknown

 private:
  void Fetch();
  void Stand(int row);
  void TellRows();

  std::unique_ptr<Snapshot> rows_;
  Connection* connection_ = nullptr;
  std::string sql_;
  int row_ = 0;
  std::vector<RecordsetObserver*> observers_;
};

}  // namespace zrt
