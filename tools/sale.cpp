#include "sale.h"

#include <fmt/format.h>

#include "core/text.h"
#include "script_writer.h"

namespace zrt::tools {
namespace {

std::string OrNull(const std::optional<int>& value) {
  return value ? std::to_string(*value) : "NULL";
}

std::string QuotedOrNull(const std::string& text) {
  return text.empty() ? "NULL" : Quoted(text);
}

/// Thousandths as a decimal number, with `mark` and `decimals` digits behind it (the rest is cut off).
std::string Decimal(std::int64_t thousandths, char mark, int decimals) {
  const std::int64_t size = thousandths < 0 ? -thousandths : thousandths;
  std::string text = fmt::format("{}{}{}{:03}", thousandths < 0 ? "-" : "", size / 1000, mark, size % 1000);
  return text.substr(0, text.size() - static_cast<std::size_t>(3 - decimals));
}

std::string Padded(const std::string& text, std::size_t width) {
  const std::size_t length = Length(text);
  return length < width ? text + std::string(width - length, ' ') : Left(text, width);
}

}  // namespace

std::int64_t CashRow::Payment() const {
  if (state < kClosed) return 0;
  const std::int64_t net = sum1 - skid;
  return net < 0 ? (net - 5) / 10 : (net + 5) / 10;
}

std::string BaseValues(const SoldLine& line) {
  return fmt::format("{},{},{},{},{},{},{},{},'{}',{},{}", line.cod, Quoted(line.name), line.kol, line.prise, line.skid,
                     line.Net(), line.ter, line.pers, line.datetime, line.card, line.num);
}

std::string AddedValues(const SoldLine& line) {
  return fmt::format(",{},0,0,{},{},{},{},{},{}", line.excise, line.state, line.category, OrNull(line.fiscal),
                     OrNull(line.export_mark), Quoted(line.status), QuotedOrNull(line.ukt));
}

std::string BaseValues(const CashRow& row) {
  const std::int64_t paid_cash = row.cash ? row.Payment() * 10 : 0;
  return fmt::format("{},{},{},{},{},{},{},{},'{}',{},{}", Quoted(row.oper), Decimal(row.sum1, '.', 3),
                     Decimal(row.skid, '.', 3), Decimal(paid_cash, '.', 3), Decimal(row.plus, '.', 3),
                     Decimal(row.minus, '.', 3), row.ter, row.pers, row.closed.empty() ? row.opened : row.closed,
                     QuotedOrNull(row.closed), row.num);
}

std::string AddedValues(const CashRow& row) {
  return fmt::format(",{},{},{},{},{},{},{},{}", row.guests, row.Payment(), OrNull(row.table), row.state, row.card,
                     OrNull(row.fiscal), OrNull(row.export_mark), Quoted(row.text));
}

std::string CheckBaseValues(const SoldLine& line, int tax) {
  return fmt::format("{},{},{},{},{},{},{},{}", line.cod, Quoted(line.name), Decimal(line.kol, '.', 3),
                     Decimal(line.prise, '.', 2), Decimal(line.Net(), '.', 2), tax, line.card, line.skid);
}

std::string CheckAddedValues(const SoldLine& line) {
  return fmt::format(",{},{},{}", line.excise, line.category, Quoted(line.ukt));
}

std::string SpionValues(const SoldLine& line, const std::string& moment) {
  return fmt::format("{},{},'{}','{}','{}',{},{},{}", line.cod, Quoted(line.name), Decimal(line.kol, ',', 3),
                     Decimal(line.prise, ',', 2), moment, line.ter, line.num, line.pers);
}

std::string StatusText(const std::string& word, const std::string& time) {
  return Padded(word, 8) + time;
}

std::string OrderText(const std::string& progress, const std::string& status) {
  return Padded(progress, 27) + status;
}

}  // namespace zrt::tools
