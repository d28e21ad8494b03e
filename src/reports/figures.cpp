#include "reports/figures.h"

#include <fmt/format.h>

#include "core/numbers.h"

namespace zrt {

namespace {

std::string Filled(std::string_view statement, const std::string& between, const figure::Asked& asked = {}) {
  return fmt::format(fmt::runtime(statement), fmt::arg("between", between), fmt::arg("delivery", figure::CodDelivery),
                     fmt::arg("music", figure::CodMusic), fmt::arg("category", asked.category),
                     fmt::arg("waiter", asked.waiter));
}

/// A sum that the server returned in parts of which `divisor` make one.
std::optional<double> InParts(const Cell& sum, double divisor) {
  return sum.IsNull() ? std::nullopt : std::optional(sum.Number() / divisor);
}

}  // namespace

std::string Figures::Between() const {
  return fmt::format("BETWEEN '{}' AND '{}'", period_.from, period_.to);
}

std::optional<double> Figures::Sum(const figure::Sum& sum) const {
  const Recordset summed = session_.ReadOne(Filled(sum.statement, Between()));
  return InParts(summed.Field(0), sum.divisor);
}

int Figures::Count(const figure::Count& count) const {
  const Recordset rows = session_.ReadOne(Filled(count.statement, Between()));
  return count.counted_by_server ? ToInt32(rows.Field(0).Number()) : rows.RecordCount();
}

int Figures::CountCardKind(const std::string& proz) const {
  return session_
      .ReadOne(fmt::format("SELECT PROD.NUM FROM PROD,DISCOUNT WHERE PROD.REZ=DISCOUNT.REZ AND DISCOUNT.PROZ={} AND "
                           "PROD.DATETIME {} GROUP BY NUM",
                           proz, Between()))
      .RecordCount();
}

std::optional<Takings> Figures::Pair(const figure::Pair& pair, const figure::Asked& asked) const {
  const Recordset sums = session_.ReadOne(Filled(pair.statement, Between(), asked));
  const std::optional<double> before = InParts(sums.Field(1), scale::kProd);
  if (!before) return std::nullopt;
  return Takings{InParts(sums.Field(0), scale::kProd), *before};
}

}  // namespace zrt
