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

std::string AmountColumn(const RegionalFormat& format, std::optional<double> sum) {
  return sum ? PadLeftTo(AmountText(format, *sum), 10) : std::string();
}

std::string PairColumns(const RegionalFormat& format, const Takings& takings) {
  const std::string after = takings.after ? AmountText(format, *takings.after) : std::string();
  return PadLeftTo(after + PadLeftTo(AmountText(format, takings.before), 10), 20);
}

std::string CountColumn(int count) {
  return PadLeftTo(std::to_string(count), 4);
}

void PairIfAny(ReportLines& lines, const RegionalFormat& format, std::string_view label,
               const std::optional<Takings>& takings) {
  if (takings) lines.Line(std::string(label) + PairColumns(format, *takings));
}

void ReportLines::Line(std::string text) {
  list_.AddItem(std::move(text));
  list_.Repaint();
  try {
    stop_.Step();
  } catch (const Stopped&) {
    list_.AddItem("отчёт остановлен, дальше не считалось");
    throw;
  }
}

}  // namespace zrt
