#pragma once

#include <compare>
#include <optional>
#include <string>
#include <string_view>

namespace zrt {

/// A calendar day.
struct Date {
  int year = 0;
  int month = 0;
  int day = 0;

  friend auto operator<=>(const Date&, const Date&) = default;  // NOLINT(modernize-use-nullptr): compares with 0
};

/// A moment to the second, in the shop's local time.
struct DateTime {
  Date date;
  int hour = 0;
  int minute = 0;
  int second = 0;

  friend auto operator<=>(const DateTime&, const DateTime&) = default;  // NOLINT(modernize-use-nullptr): the same
};

/// The day `days` later (earlier when negative), over ends of months and years.
Date AddDays(const Date& date, int days);

/// Days from `from` to `to`, negative when `to` is the earlier one.
int DaysBetween(const Date& from, const Date& to);

/// 1 Monday to 7 Sunday.
int WeekDay(const Date& date);

/// The day or moment that a screen text names: "dd.mm.yyyy" with or without " hh:mm:ss". Nothing if the text is no date
/// or names a day that the calendar lacks.
std::optional<Date> ParseDate(std::string_view text);
std::optional<DateTime> ParseDateTime(std::string_view text);

/// The moment that a DATETIME value of the database names: "yyyy-mm-dd hh:mm:ss" or "yyyy-mm-dd".
std::optional<DateTime> ParseSqlDateTime(std::string_view text);

/// Dates enter SQL by cutting the screen text by position, without looking at it: characters 7 to 10, "-", 4 and 5,
/// "-", 1 and 2. "15.11.2026 08:30:00" -> "2026-11-15".
std::string CutSqlDate(std::string_view screen_text);

/// The same with a blank and the eight characters from position 12: "2026-11-15 08:30:00". A text without a time gives
/// the date and a blank, which the server reads as midnight.
std::string CutSqlDateTime(std::string_view screen_text);

/// The end of a report file's name, cut by position from the system's date and time: "15.11.2026 19:05:01" ->
/// "20261115_190501", and "15.11.2026 9:05:01" -> "20261115_090501". At midnight the text has no time: "20261115_0".
std::string FileStamp(std::string_view date_time_text);

}  // namespace zrt
