#include "reports/report_text.h"

#include "core/text.h"

namespace zrt {

namespace {

std::string BlanksUpTo(std::string_view text, std::size_t width) {
  const std::size_t length = Length(text);
  return std::string(length < width ? width - length : 0, ' ');
}

}  // namespace

std::string PadLeftTo(std::string_view text, std::size_t last) {
  return BlanksUpTo(text, last + 1) + std::string(text);
}

std::string PadRightTo(std::string_view text, std::size_t width) {
  return std::string(text) + BlanksUpTo(text, width);
}

std::string AmountText(const RegionalFormat& format, double value) {
  return format.FormatNumber(value, 2);
}

std::string AmountText(const RegionalFormat& format, const Cell& sum, double divisor) {
  return sum.IsNull() ? std::string() : AmountText(format, sum.Number() / divisor);
}

std::string AmountColumn(const RegionalFormat& format, const Cell& sum, double divisor) {
  return sum.IsNull() ? std::string() : PadLeftTo(AmountText(format, sum, divisor), 10);
}

void ReportLines::Line(std::string text) {
  list_.AddItem(std::move(text));
  list_.Repaint();
}

}  // namespace zrt
