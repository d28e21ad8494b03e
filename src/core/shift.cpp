#include "core/shift.h"

#include <fmt/format.h>

#include <optional>

#include "core/dates.h"
#include "core/numbers.h"
#include "core/regional_format.h"
#include "core/text.h"

namespace zrt {
namespace {

std::string TwoDigits(int hour) {
  return Right(fmt::format("0{}", hour), 2);
}

}  // namespace

void CalcShiftPeriod(std::string_view date_text, std::string_view hour_text, const RegionalFormat& format,
                     Shift& shift) {
  const std::optional<Date> date = ParseDate(date_text);
  if (!date) return;
  int hour = ToInt16(format.ParseNumber(hour_text).value_or(0));
  shift.From = CutSqlDate(format.DateText(*date)) + " " + TwoDigits(hour) + ":00:00";
  shift.TimeText = TwoDigits(hour) + ":00:00";
  int days = 1;
  if (hour == 0) {
    hour = 24;
    days = 0;
  }
  shift.To = CutSqlDate(format.DateText(AddDays(*date, days))) + " " + TwoDigits(hour - 1) + ":59:59";
}

}  // namespace zrt
