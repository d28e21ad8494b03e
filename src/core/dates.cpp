#include "core/dates.h"

#include <fmt/format.h>

#include <chrono>

#include "core/text.h"

namespace zrt {
namespace {

std::chrono::year_month_day ToCalendar(const Date& date) {
  return {std::chrono::year(date.year), std::chrono::month(static_cast<unsigned>(date.month)),
          std::chrono::day(static_cast<unsigned>(date.day))};
}

/// Reads `text` along `pattern`: a letter of the pattern takes one digit of the field that it names, anything else must
/// stand there itself.
std::optional<DateTime> ParseAlong(std::string_view text, std::string_view pattern) {
  if (text.size() != pattern.size()) return std::nullopt;
  DateTime moment;
  for (std::size_t i = 0; i < text.size(); ++i) {
    int* field = nullptr;
    switch (pattern[i]) {
      case 'y':
        field = &moment.date.year;
        break;
      case 'm':
        field = &moment.date.month;
        break;
      case 'd':
        field = &moment.date.day;
        break;
      case 'H':
        field = &moment.hour;
        break;
      case 'M':
        field = &moment.minute;
        break;
      case 'S':
        field = &moment.second;
        break;
      default:
        break;
    }
    if (field == nullptr) {
      if (text[i] != pattern[i]) return std::nullopt;
      continue;
    }
    if (text[i] < '0' || text[i] > '9') return std::nullopt;
    *field = *field * 10 + (text[i] - '0');
  }
  const bool exists = moment.date.year > 0 && ToCalendar(moment.date).ok() && moment.hour < 24 && moment.minute < 60 &&
                      moment.second < 60;
  return exists ? std::optional(moment) : std::nullopt;
}

}  // namespace

Date AddDays(const Date& date, int days) {
  const std::chrono::year_month_day moved = std::chrono::sys_days(ToCalendar(date)) + std::chrono::days(days);
  return {static_cast<int>(moved.year()), static_cast<int>(static_cast<unsigned>(moved.month())),
          static_cast<int>(static_cast<unsigned>(moved.day()))};
}

int DaysBetween(const Date& from, const Date& to) {
  return static_cast<int>((std::chrono::sys_days(ToCalendar(to)) - std::chrono::sys_days(ToCalendar(from))).count());
}

int WeekDay(const Date& date) {
  return static_cast<int>(std::chrono::weekday(std::chrono::sys_days(ToCalendar(date))).iso_encoding());
}

std::optional<Date> ParseDate(std::string_view text) {
  const std::optional<DateTime> moment = ParseDateTime(text);
  return moment ? std::optional(moment->date) : std::nullopt;
}

std::optional<DateTime> ParseDateTime(std::string_view text) {
  return ParseAlong(text, text.size() > 10 ? "dd.mm.yyyy HH:MM:SS" : "dd.mm.yyyy");
}

std::optional<DateTime> ParseSqlDateTime(std::string_view text) {
  return ParseAlong(text, text.size() > 10 ? "yyyy-mm-dd HH:MM:SS" : "yyyy-mm-dd");
}

std::string CutSqlDate(std::string_view screen_text) {
  return Mid(screen_text, 7, 4) + "-" + Mid(screen_text, 4, 2) + "-" + Mid(screen_text, 1, 2);
}

std::string CutSqlDateTime(std::string_view screen_text) {
  return CutSqlDate(screen_text) + " " + Mid(screen_text, 12, 8);
}

std::string FileStamp(std::string_view date_time_text) {
  constexpr std::size_t kTwoDigitHour = 19;
  const std::string date = Mid(date_time_text, 7, 4) + Mid(date_time_text, 4, 2) + Mid(date_time_text, 1, 2);
  if (Length(date_time_text) == kTwoDigitHour) {
    return date + "_" + Mid(date_time_text, 12, 2) + Mid(date_time_text, 15, 2) + Mid(date_time_text, 18, 2);
  }
  return date + "_0" + Mid(date_time_text, 12, 1) + Mid(date_time_text, 14, 2) + Mid(date_time_text, 17, 2);
}

}  // namespace zrt
