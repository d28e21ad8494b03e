#include "reports/figures.h"

#include <fmt/format.h>

#include "core/numbers.h"
#include "reports/report_text.h"

namespace zrt {

namespace {

std::string Filled(const char* statement, const std::string& between, int category = 0, int waiter = 0) {
  return fmt::format(fmt::runtime(statement), fmt::arg("between", between), fmt::arg("delivery", figure::CodDelivery),
                     fmt::arg("music", figure::CodMusic), fmt::arg("category", category), fmt::arg("waiter", waiter));
}

}  // namespace

std::string Figures::Between() const {
  return fmt::format("BETWEEN '{}' AND '{}'", period_.from, period_.to);
}

std::string Figures::Sum(const figure::Sum& sum) const {
  return AmountColumn(session_.Format(), session_.ReadOne(Filled(sum.statement, Between())).Field(0), sum.divisor);
}

int Figures::Count(const figure::Count& count) const {
  const Recordset& rows = session_.ReadOne(Filled(count.statement, Between()));
  return count.counted_by_server ? ToInt32(rows.Field(0).Number()) : rows.RecordCount();
}

int Figures::CountCardKind(const std::string& proz) const {
  return session_
      .ReadOne(fmt::format("SELECT PROD.NUM FROM PROD,DISCOUNT WHERE PROD.REZ=DISCOUNT.REZ AND DISCOUNT.PROZ={} AND "
                           "PROD.DATETIME {} GROUP BY NUM",
                           proz, Between()))
      .RecordCount();
}

std::string Figures::Pair(const figure::Pair& pair, int category, int waiter) const {
  const Recordset& sums = session_.ReadOne(Filled(pair.statement, Between(), category, waiter));
  if (sums.IsNull(1)) return {};
  const auto amount = [&](int field) { return AmountText(session_.Format(), sums.Field(field), scale::kProd); };
  return PadLeftTo(amount(0) + PadLeftTo(amount(1), 10), 20);
}

std::string CountText(int count) {
  return PadLeftTo(std::to_string(count), 4);
}

}  // namespace zrt
