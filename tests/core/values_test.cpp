#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "core/advice.h"
#include "core/dates.h"
#include "core/errors.h"
#include "core/numbers.h"
#include "core/regional_format.h"
#include "core/shift.h"
#include "core/text.h"

namespace zrt {
namespace {

TEST(Text, EveryByteOfTheCodePageComesBack) {
  std::string bytes;
  for (int byte = 1; byte < 256; ++byte) bytes += static_cast<char>(byte);
  EXPECT_EQ(ToWindows1251(FromWindows1251(bytes)), bytes);
  EXPECT_EQ(ToWindows1251("Ёжик № 5 «Ы»"), "\xA8\xE6\xE8\xEA \xB9 5 \xAB\xDB\xBB");
  EXPECT_EQ(ToWindows1251("чай ☕ 中"), "\xF7\xE0\xE9 ? ?");
  // No UTF-8 at all, a letter cut in half, and what only just is or isn't a character.
  EXPECT_EQ(ToWindows1251("\xFFx\xD0"), "?x?");
  EXPECT_EQ(ToWindows1251("\xF5\x80\x80\x80|\xC1\x80|\xF4\x8F\xBF\xBF|\xC2\x80|\xEF\xBF\xBD"), "????|??|?|?|?");
  EXPECT_TRUE(IsUtf8("чай") && !IsUtf8("\xF7\xE0\xE9"));
  // As Windows saves a file: a letter, a sign of two units, half a sign.
  const std::string units("\x1B\x04\x3C\xD8\x75\xDF\x3C\xD8", 8);
  EXPECT_EQ(FromUtf16(units, false), "Л🍵?");
  EXPECT_EQ(FromUtf16(std::string("\x04\x1B\xD8\x3C\xDF\x75\xDF\x75", 8), true), "Л🍵?");
}

TEST(Text, CountsCharactersNotBytes) {
  EXPECT_EQ(Length("Кофе 0,5"), 8U);
  EXPECT_EQ(Left("Панель", 3), "Пан");
  EXPECT_EQ(Left("Чай", 9), "Чай");
  EXPECT_EQ(Right("Панель № 12", 2), "12");
  EXPECT_EQ(Right("Чай", 9), "Чай");
  EXPECT_EQ(Mid("15.11.2026", 7, 4), "2026");
  EXPECT_EQ(Mid("Чай", 3), "й");
  EXPECT_EQ(Mid("Чай", 9), "");
  EXPECT_EQ(Trim("  чай\t "), "чай\t");
  EXPECT_EQ(ToLower("ЀЁЛКА № 🍵 Gin"), "ѐёлка № 🍵 gin");
  EXPECT_TRUE(StartsWithNoCase("Молоко", "мОЛ"));
  EXPECT_FALSE(StartsWithNoCase("Мо", "мол"));
}

TEST(Numbers, RoundToTheEvenNeighbour) {
  const std::pair<double, std::int32_t> kCases[] = {{0.5, 0},       {1.5, 2},         {2.5, 2},   {3.5, 4},
                                                    {-0.5, 0},      {-1.5, -2},       {-2.5, -2}, {2.4999999, 2},
                                                    {2.5000001, 3}, {1e9, 1000000000}};
  for (const auto& [value, rounded] : kCases) EXPECT_EQ(ToInt32(value), rounded) << value;
}

/// All prices with half a hundredth, against whole-number arithmetic: as doubles, every seventeenth goes astray.
TEST(Numbers, DecimalsAreRoundedAsTheyAreWritten) {
  for (int thousandths = 5; thousandths < 20000; thousandths += 10) {
    const int below = thousandths / 10;
    const std::string text = fmt::format("{}.{:03}", thousandths / 1000, thousandths % 1000);
    ASSERT_EQ(DecimalToInt32(text, 100), below + below % 2) << text;
    ASSERT_EQ(DecimalToInt32("-" + text, 100), -(below + below % 2)) << text;
  }
  const std::pair<const char*, int> kTyped[] = {
      {"1,0015", 1002}, {" 0,0005 ", 0}, {"-,00050001", -1}, {"1 000", 1000000}, {"2147483,6474", 2147483647},
      {"7,", 7000}};
  for (const auto& [text, value] : kTyped) EXPECT_EQ(RegionalFormat{}.ToScaled(text, 1000), value) << text;
  for (const char* text : {"2147483,6475", "-99999999999999999999"}) {
    EXPECT_THROW(RegionalFormat{}.ToScaled(text, 1000), OverflowError) << text;
  }
  for (const char* text : {"", ".", "1e5", "1.2.3", "x"}) EXPECT_THROW(DecimalToInt32(text, 10), TypeMismatch) << text;
}

TEST(Numbers, ConversionsFailInsteadOfWrapping) {
  EXPECT_EQ(ToByte(255.5 - 0.1), 255);
  EXPECT_THROW(ToByte(255.5), OverflowError);  // rounds to 256
  EXPECT_THROW(ToByte(-0.6), OverflowError);
  EXPECT_EQ(ToByte(-0.5), 0);
  EXPECT_EQ(ToInt16(32767.4), 32767);
  EXPECT_THROW(ToInt16(32767.5), OverflowError);
  EXPECT_EQ(ToInt16(-32768.5), -32768);
  EXPECT_THROW(ToInt16(-32769), OverflowError);
  EXPECT_EQ(ToInt32(2147483647.4), 2147483647);
  EXPECT_THROW(ToInt32(2147483648.0), OverflowError);
  EXPECT_THROW(ToInt32(-2147483649.0), OverflowError);
  EXPECT_THROW(ToInt32(std::numeric_limits<double>::quiet_NaN()), OverflowError);
  EXPECT_THROW(ToInt32(std::numeric_limits<double>::infinity()), OverflowError);
}

TEST(RegionalFormat, ShowsNumbersTheRussianWay) {
  const RegionalFormat format;
  const std::string group = "\u00A0";
  EXPECT_EQ(format.FormatNumber(1234567.5, 2), "1" + group + "234" + group + "567,50");
  EXPECT_EQ(format.FormatNumber(-1234.5, 3), "-1" + group + "234,500");
  EXPECT_EQ(format.FormatNumber(999.995, 2), "1" + group + "000,00");
  EXPECT_EQ(format.FormatNumber(0.125, 2), "0,13");
  EXPECT_EQ(format.FormatNumber(-0.125, 2), "-0,13");
  EXPECT_EQ(format.FormatNumber(-0.001, 2), "0,00");
  EXPECT_EQ(format.FormatNumber(1.005, 2), "1,01");  // as the operator reads the number, not as the machine stores it
  EXPECT_EQ(format.FormatFixed(1234.5, "0.00"), "1234,50");
  EXPECT_EQ(format.FormatFixed(-0.5, "0.000"), "-0,500");
  EXPECT_EQ(format.FormatShortest(1.5), "1,5");
  EXPECT_EQ(format.FormatShortest(2), "2");
  EXPECT_EQ(format.FormatShortest(4820000000001.0), "4820000000001");
  EXPECT_EQ(format.FormatShortest(-0.001), "-0,001");
}

TEST(RegionalFormat, ReadsWhatTheOperatorTypes) {
  const RegionalFormat format;
  for (const auto& [text, value] : {std::pair{"1,5", 1.5},
                                    {"-12", -12.0},
                                    {" 7 ", 7.0},
                                    {"+3", 3.0},
                                    {",5", 0.5},
                                    {"5,", 5.0},
                                    {"1\u00A0234,50", 1234.5},
                                    {"12345678901", 12345678901.0}}) {
    EXPECT_EQ(format.ParseNumber(text), value) << text;
  }
  for (const char* text : {"1.5", "", " ", "12a", "1e", "1,2,3", "-", ",", "--1", "'1'", "0x10", "nan", "inf"}) {
    EXPECT_EQ(format.ParseNumber(text), std::nullopt) << text;
  }
  EXPECT_THROW(format.ToNumber("1.5"), TypeMismatch);
}

TEST(RegionalFormat, AMomentAtMidnightPrintsWithoutItsTime) {
  const RegionalFormat format;
  EXPECT_EQ(format.DateTimeText({{2026, 1, 5}, 9, 5, 1}), "05.01.2026 09:05:01");
  EXPECT_EQ(format.DateTimeText({{2026, 1, 5}, 0, 0, 0}), "05.01.2026");
  EXPECT_EQ(format.DateTimeText({{2026, 1, 5}, 0, 0, 1}), "05.01.2026 00:00:01");
}

TEST(Dates, CalendarAndTexts) {
  EXPECT_EQ(AddDays({2026, 12, 31}, 1), (Date{2027, 1, 1}));
  EXPECT_EQ(AddDays({2028, 2, 28}, 1), (Date{2028, 2, 29}));
  EXPECT_EQ(AddDays({2026, 3, 1}, -1), (Date{2026, 2, 28}));
  EXPECT_EQ(WeekDay({2026, 11, 24}), 2);
  EXPECT_EQ(ParseDate("29.02.2028"), (Date{2028, 2, 29}));
  for (const char* text : {"29.02.2026", "31.04.2026", "весь период", "", "2026-11-15", "15.13.2026", "15.11.26x"}) {
    EXPECT_EQ(ParseDate(text), std::nullopt) << text;
  }
  EXPECT_EQ(ParseDateTime("15.11.2026 08:30:59"), (DateTime{{2026, 11, 15}, 8, 30, 59}));
  EXPECT_EQ(ParseDateTime("15.11.2026"), (DateTime{{2026, 11, 15}, 0, 0, 0}));
  EXPECT_EQ(ParseDateTime("15.11.2026 24:00:00"), std::nullopt);
  EXPECT_EQ(ParseSqlDateTime("2026-11-15 08:30:59"), (DateTime{{2026, 11, 15}, 8, 30, 59}));
  EXPECT_EQ(CutSqlDate("15.11.2026 08:30:00"), "2026-11-15");
  EXPECT_EQ(CutSqlDateTime("15.11.2026 08:30:00"), "2026-11-15 08:30:00");
  EXPECT_EQ(CutSqlDateTime("15.11.2026"), "2026-11-15 ");  // the server reads this as midnight
}

TEST(Shift, PeriodOfADay) {
  struct Case {
    const char* hour;
    const char *from, *to, *time;
  };
  const Case kCases[] = {
      {"8", "2026-12-31 08:00:00", "2027-01-01 07:59:59", "08:00:00"},
      {"08", "2026-12-31 08:00:00", "2027-01-01 07:59:59", "08:00:00"},
      {"0", "2026-12-31 00:00:00", "2026-12-31 23:59:59", "00:00:00"},
      {"", "2026-12-31 00:00:00", "2026-12-31 23:59:59", "00:00:00"},
      {"утро", "2026-12-31 00:00:00", "2026-12-31 23:59:59", "00:00:00"},
      {"1", "2026-12-31 01:00:00", "2027-01-01 00:59:59", "01:00:00"},
      {"23", "2026-12-31 23:00:00", "2027-01-01 22:59:59", "23:00:00"},
  };
  for (const Case& expected : kCases) {
    Shift shift;
    CalcShiftPeriod("31.12.2026", expected.hour, {}, shift);
    EXPECT_EQ(shift.From, expected.from) << expected.hour;
    EXPECT_EQ(shift.To, expected.to) << expected.hour;
    EXPECT_EQ(shift.TimeText, expected.time) << expected.hour;
  }
  Shift kept{"a", "b", "c"};
  CalcShiftPeriod("весь период", "8", {}, kept);
  EXPECT_EQ(kept.From + kept.To + kept.TimeText, "abc");
}

/// What the helper reads when there is no connection: each cause in words of its own, with a step that mends it.
TEST(Advice, EachCauseReadsDifferently) {
  const DatabaseError kCauses[] = {
      {"01000", 0, "[unixODBC][Driver Manager]Can't open lib 'MySQL ODBC 8.0 ANSI Driver' : file not found"},
      {"HY000", 2002, "[ma-3.1.15]Can't connect to server on '192.168.0.10' (115)"},
      {"HY000", 2005, "[ma-3.1.15]Unknown server host 'shop' (-2)"},
      {"28000", 1045, "[ma-3.1.15]Access denied for user 'zrt'@'192.168.0.7' (using password: YES)"},
      {"42000", 1049, "[ma-3.1.15]Unknown database 'shop'"},
      {"42S02", 1146, "[ma-3.1.15][10.11.19-MariaDB]Table 'shop.CONST' doesn't exist"},
      {"42000", 1142,
       "[ma-3.1.15][10.11.19-MariaDB]ALTER command denied to user 'zrt'@'192.168.0.7' for table `shop`.`PROD`"},
      {"42000", 1064, "[ma-3.1.15]You have an error in your SQL syntax; ... near 'TYPE=InnoDB' at line 1"},
      {"HY000", 1193, "[ma-3.1.15][5.6.24]Unknown system variable 'session_track_schema'"},
  };
  std::set<std::string_view> texts;
  for (const DatabaseError& cause : kCauses) {
    EXPECT_TRUE(AdviceOn(cause).ends_with("."));
    texts.insert(AdviceOn(cause));
  }
  EXPECT_EQ(texts.size(), std::size(kCauses));
  EXPECT_EQ(AdviceOn({"HY000", 2003, ""}), AdviceOn({"HY000", 2002, ""}));  // as the driver's version has it
  EXPECT_EQ(AdviceOn({"42S02", 1146, "[ma-3.1.15][10.11.19-MariaDB]Table 'shop.REGISTR' doesn't exist"}), "");
}

}  // namespace
}  // namespace zrt
