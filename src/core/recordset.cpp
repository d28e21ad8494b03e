#include "core/recordset.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "core/errors.h"
#include "core/numbers.h"
#include "core/odbc.h"
#include "core/snapshot.h"
#include "core/text.h"
#include "core/windows1251.h"

namespace zrt {
namespace {

std::string FoldBytes(std::string_view bytes) {
  std::string folded(bytes);
  for (char& byte : folded) byte = windows1251::kLower[static_cast<unsigned char>(byte)];
  return folded;
}

bool BeginsWithFolded(std::string_view bytes, std::string_view folded) {
  if (bytes.size() < folded.size()) return false;
  for (std::size_t i = 0; i < folded.size(); ++i) {
    if (windows1251::kLower[static_cast<unsigned char>(bytes[i])] != folded[i]) return false;
  }
  return true;
}

std::optional<double> NumberOf(std::string_view bytes) {
  while (bytes.starts_with(' ')) bytes.remove_prefix(1);
  while (bytes.ends_with(' ')) bytes.remove_suffix(1);
  double value = 0;
  const std::from_chars_result end = std::from_chars(bytes.data(), bytes.data() + bytes.size(), value);
  const bool whole = end.ec == std::errc() && end.ptr == bytes.data() + bytes.size();
  return whole ? std::optional(value) : std::nullopt;
}

bool IsNumber(FieldType type) {
  return type == FieldType::kInteger || type == FieldType::kDecimal || type == FieldType::kFloat;
}

}  // namespace

std::string Cell::Text() const {
  if (!bytes_) throw TypeMismatch("NULL where a value is needed");
  return FromWindows1251(*bytes_);
}

double Cell::Number() const {
  if (!bytes_) throw TypeMismatch("NULL where a number is needed");
  const std::optional<double> value = NumberOf(*bytes_);
  if (!value) throw TypeMismatch("not a number: \"" + Text() + "\"");
  return *value;
}

std::int64_t Cell::Int() const {
  if (type_ == FieldType::kInteger && bytes_) {  // exact where a double would not be
    std::int64_t value = 0;
    if (std::from_chars(bytes_->data(), bytes_->data() + bytes_->size(), value).ec == std::errc()) return value;
  }
  const double rounded = RoundHalfEven(Number());
  constexpr double kLimit = 9223372036854775808.0;  // 2^63
  if (rounded < -kLimit || rounded >= kLimit) throw OverflowError("number out of range: " + Text());
  return static_cast<std::int64_t>(rounded);
}

DateTime Cell::Moment() const {
  const std::optional<DateTime> moment = ParseSqlDateTime(Raw());
  if (!moment) throw TypeMismatch("not a date: \"" + TextOrEmpty() + "\"");
  return *moment;
}

std::string Cell::Display(const RegionalFormat& format) const {
  if (IsNumber(type_) && bytes_) {
    const std::optional<double> value = NumberOf(*bytes_);
    if (value) return format.FormatShortest(*value);
  }
  if (type_ == FieldType::kDateTime) {
    const std::optional<DateTime> moment = ParseSqlDateTime(Raw());
    if (moment) return format.DateTimeText(*moment);
  }
  return TextOrEmpty();
}

std::string Cell::Display(const RegionalFormat& format, std::string_view pattern) const {
  if (pattern.empty() || !bytes_ || type_ == FieldType::kDateTime) return Display(format);
  // A text is a number if the operator would write it so: texts carry the decimal mark of the screen.
  const std::optional<double> value = IsNumber(type_) ? NumberOf(*bytes_) : format.ParseNumber(Text());
  return value ? format.FormatFixed(*value, pattern) : Display(format);
}

Recordset::Recordset() = default;

Recordset::Recordset(Recordset&& other) noexcept
    : rows_(std::move(other.rows_)),
      connection_(std::exchange(other.connection_, nullptr)),
      sql_(std::move(other.sql_)),
      row_(std::exchange(other.row_, 0)) {}

Recordset::~Recordset() {
  Close();
  for (RecordsetObserver* observer : std::exchange(observers_, {})) observer->Gone(*this);
}

void Recordset::Open(const std::string& sql, Connection& connection) {
  if (IsOpen()) throw DatabaseError("24000", 0, "the recordset is open already");
  sql_ = sql;
  connection_ = &connection;
  Fetch();
  TellRows();
}

void Recordset::Requery() {
  if (connection_ == nullptr) throw Error("the recordset is closed");
  rows_.reset();
  try {
    Fetch();
  } catch (...) {
    TellRows();
    throw;
  }
  TellRows();
}

void Recordset::Fetch() {
  const OdbcHandle statement = connection_->impl_->Run(sql_);
  rows_ = std::make_unique<Snapshot>(statement, *connection_->impl_);
  row_ = 1;
}

void Recordset::Close() {
  connection_ = nullptr;
  if (!IsOpen()) return;
  rows_.reset();
  TellRows();
}

bool Recordset::IsOpen() const {
  return rows_ != nullptr;
}

int Recordset::RecordCount() const {
  return rows_ ? static_cast<int>(rows_->rows.size()) : 0;
}

int Recordset::FieldCount() const {
  return rows_ ? static_cast<int>(rows_->columns.size()) : 0;
}

std::string Recordset::FieldName(int index) const {
  if (index < 0 || index >= FieldCount()) throw Error("no such column: " + std::to_string(index));
  return rows_->columns[static_cast<std::size_t>(index)].name;
}

int Recordset::FieldLength(std::string_view name) const {
  return IsOpen() ? rows_->columns[static_cast<std::size_t>(FieldIndex(name))].length : 0;
}

FieldType Recordset::Type(int index) const {
  if (index < 0 || index >= FieldCount()) throw Error("no such column: " + std::to_string(index));
  return rows_->columns[static_cast<std::size_t>(index)].type;
}

int Recordset::FieldIndex(std::string_view name) const {
  const std::string folded = ToLower(name);
  for (int i = 0; i < FieldCount(); ++i) {
    if (rows_->columns[static_cast<std::size_t>(i)].folded == folded) return i;
  }
  throw Error("no such column: " + std::string(name));
}

bool Recordset::Bof() const {
  return RecordCount() == 0 || row_ == 0;
}

bool Recordset::Eof() const {
  return RecordCount() == 0 || row_ == RecordCount() + 1;
}

void Recordset::MoveFirst() {
  if (RecordCount() == 0) throw Error("the set has no rows");
  Stand(1);
}

void Recordset::MoveLast() {
  if (RecordCount() == 0) throw Error("the set has no rows");
  Stand(RecordCount());
}

void Recordset::MoveNext() {
  if (Eof()) throw Error("past the last row");
  Stand(row_ + 1);
}

void Recordset::MovePrevious() {
  if (Bof()) throw Error("before the first row");
  Stand(row_ - 1);
}

void Recordset::Move(int count) {
  if (RecordCount() == 0) throw Error("the set has no rows");
  const std::int64_t wanted = std::int64_t{row_} + count;
  Stand(static_cast<int>(std::clamp<std::int64_t>(wanted, 0, RecordCount() + 1)));
}

int Recordset::Bookmark() const {
  return row_;
}

void Recordset::SetBookmark(int row) {
  if (row < 0 || row > RecordCount() + 1) throw Error("no such row: " + std::to_string(row));
  Stand(row);
}

void Recordset::Find(std::string_view column, std::string_view value, Match match) {
  if (RecordCount() == 0) throw Error("the set has no rows");
  const int index = FieldIndex(column);
  const std::string folded = FoldBytes(ToWindows1251(value));
  const bool whole = match == Match::kEquals;
  const std::optional<double> number = whole && IsNumber(Type(index)) ? NumberOf(value) : std::nullopt;
  for (int row = std::max(row_, 1); row <= RecordCount(); ++row) {
    const std::optional<std::string_view> bytes = rows_->Bytes(row, index);
    if (!bytes) continue;
    const bool fits = number ? NumberOf(*bytes) == number
                             : BeginsWithFolded(*bytes, folded) && (!whole || bytes->size() == folded.size());
    if (fits) return Stand(row);
  }
  Stand(RecordCount() + 1);
}

Cell Recordset::Field(int index) const& {
  if (Bof() || Eof()) throw Error("no current row");
  return At(row_, index);
}

Cell Recordset::At(int row, int index) const {
  if (row < 1 || row > RecordCount()) throw Error("no such row: " + std::to_string(row));
  return {Type(index), rows_->Bytes(row, index)};
}

void Recordset::AddObserver(RecordsetObserver* observer) {
  observers_.push_back(observer);
}

void Recordset::RemoveObserver(RecordsetObserver* observer) {
  std::erase(observers_, observer);
}

void Recordset::Stand(int row) {
  if (row == row_) return;
  row_ = row;
  // An observer may leave while it is told.
  for (RecordsetObserver* observer : std::vector(observers_)) {
    if (std::find(observers_.begin(), observers_.end(), observer) != observers_.end()) observer->PositionChanged(*this);
  }
}

void Recordset::TellRows() {
  for (RecordsetObserver* observer : std::vector(observers_)) {
    if (std::find(observers_.begin(), observers_.end(), observer) != observers_.end()) observer->RowsChanged(*this);
  }
}

}  // namespace zrt
