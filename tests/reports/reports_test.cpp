#include <gtest/gtest.h>

#include "core/errors.h"
#include "core/text.h"
#include "platform/workbook.h"
#include "reports/kat_names.h"
#include "reports/report_period.h"
#include "reports/report_text.h"

namespace zrt {
namespace {

TEST(ReportText, PadsByCharactersAndLeavesLongTextsAlone) {
  EXPECT_EQ(PadLeftTo("Чай", 4), "  Чай");
  EXPECT_EQ(PadLeftTo("", 4), "     ");
  EXPECT_EQ(PadLeftTo("12345", 4), "12345");
  EXPECT_EQ(PadLeftTo("123456", 4), "123456");
  EXPECT_EQ(PadLeftTo(AmountText(RegionalFormat{}, -1234567.885), 13), " -1\u00A0234\u00A0567,89");
  EXPECT_EQ(PadRightTo("Бар", 5), "Бар  ");
}

TEST(ReportPeriod, EndsBeforeTheLastDayWhenTheShiftChangesAtMidnight) {
  struct Case {
    ReportSpan span;
    const char* from;
    const char* to;
  };
  const Case kCases[] = {
      {{8, {2026, 11, 14}, {2026, 11, 15}}, "2026-11-14 08:00:00", "2026-11-15 07:59:59"},
      {{0, {2026, 11, 14}, {2026, 11, 15}}, "2026-11-14 00:00:00", "2026-11-14 23:59:59"},
      {{1, {2025, 12, 31}, {2026, 1, 1}}, "2025-12-31 01:00:00", "2026-01-01 00:59:59"},
      {{0, {2024, 2, 28}, {2024, 3, 1}}, "2024-02-28 00:00:00", "2024-02-29 23:59:59"},
      {{23, {2026, 11, 30}, {2026, 12, 1}}, "2026-11-30 23:00:00", "2026-12-01 22:59:59"},
  };
  for (const Case& one : kCases) {
    const ReportPeriod period = ReportPeriodBounds(one.span, {});
    EXPECT_EQ(period.from, one.from);
    EXPECT_EQ(period.to, one.to);
  }
}

TEST(KatNames, CutsAndPadsWhateverIsStored) {
  KatNames names;
  EXPECT_EQ(names.Places()[0].label, "Кухня1               ");
  EXPECT_EQ(names.Places()[3].label, "Кухня1-3             ");
  EXPECT_EQ(names.Places()[11].category, 33);
  names.Cut(1, "Горячий цех   Холодный цехСуповой");
  names.Cut(3, "Г");
  EXPECT_EQ(names.Name(1, 0), "Горячий цех   ");
  EXPECT_EQ(names.Name(1, 2), "Суповой     ");
  EXPECT_EQ(names.Name(1, 3), "            ");  // a name of blanks is a name
  for (const Place& place : names.Places()) EXPECT_EQ(Length(place.label), 21U) << place.label;
}

TEST(Workbook, NeedsAFileThatCanBeWritten) {
  Workbook book;
  book.Cell(1, 1, "текст");
  EXPECT_THROW(book.SaveAs("/no/such/folder/book.xlsx"), FileError);
}

}  // namespace
}  // namespace zrt
