#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/session.h"
#include "reports/report_period.h"

namespace zrt {

/// The single figures of the text reports. Each is a small statement of its own over the period; nothing is kept from
/// one to the next.
///
/// {between} in their texts is the period's condition.
namespace figure {

/// Delivery and music are surcharges that the terminals may sell under products of their own. No codes have been given
/// to them yet: -1, which no product has, stands for both, so their rows stay out of the reports.
inline constexpr int CodDelivery = -1;
inline constexpr int CodMusic = -1;

/// A sum of PROD in thousandths, or of KASSA in hundredths.
struct Sum {
  std::string_view statement;
  double divisor;
};
/// A count of orders: the rows of a statement, or the number that it returns.
struct Count {
  std::string_view statement;
  bool counted_by_server = false;
};

inline constexpr Sum SumAllGross = {"SELECT SUM(KOL*PRISE/1000) FROM PROD WHERE DATETIME {between}", 1000};
inline constexpr Sum SumAllNet = {"SELECT SUM((KOL*PRISE/1000)-SKID) FROM PROD WHERE DATETIME {between}", 1000};
inline constexpr Sum SumOpen = {"SELECT SUM((KOL*PRISE/1000)-SKID) FROM PROD WHERE N4<3 AND DATETIME {between}", 1000};
inline constexpr Sum SumSurcharge = {"SELECT SUM((KOL*PRISE/1000)-SKID) FROM PROD WHERE COD=0 AND DATETIME {between}",
                                     1000};
inline constexpr Sum SumDelivery = {
    "SELECT SUM((KOL*PRISE/1000)-SKID) FROM PROD WHERE COD ={delivery} AND DATETIME {between}", 1000};
inline constexpr Sum SumMusic = {"SELECT SUM((KOL*PRISE/1000)-SKID) FROM PROD WHERE COD={music} AND DATETIME {between}",
                                 1000};
inline constexpr Sum SumHandDiscount = {"SELECT SUM(SKID) FROM PROD WHERE SKID>0 AND REZ=0 AND DATETIME {between}",
                                        1000};
inline constexpr Sum SumAfterHandDiscount = {
    "SELECT SUM((KOL*PRISE/1000)-SKID) FROM PROD WHERE SKID>0 AND REZ=0 AND DATETIME {between}", 1000};
inline constexpr Sum SumDiscount = {"SELECT SUM(SKID) FROM PROD WHERE SKID>0 AND DATETIME {between}", 1000};
inline constexpr Sum SumAfterDiscount = {
    "SELECT SUM((KOL*PRISE/1000)-SKID) FROM PROD WHERE SKID>0 AND DATETIME {between}", 1000};
inline constexpr Sum SumPaidCash = {"SELECT SUM(N2) FROM KASSA WHERE N4>2 AND SUM2>0 AND TIM {between}", 100};
inline constexpr Sum SumPaidOther = {"SELECT SUM(N2) FROM KASSA WHERE N4>2 AND SUM2=0 AND TIM {between}", 100};

inline constexpr Count CountAll = {"SELECT NUM FROM PROD WHERE DATETIME {between} GROUP BY NUM"};
inline constexpr Count CountOpen = {"SELECT NUM FROM PROD WHERE N4<3 AND DATETIME {between} GROUP BY NUM"};
inline constexpr Count CountSurcharge = {"SELECT NUM FROM PROD WHERE COD=0 AND DATETIME {between} GROUP BY NUM"};
inline constexpr Count CountDelivery = {
    "SELECT NUM FROM PROD WHERE COD={delivery} AND DATETIME {between} GROUP BY NUM"};
inline constexpr Count CountMusic = {"SELECT NUM FROM PROD WHERE COD={music} AND DATETIME {between} GROUP BY NUM"};
inline constexpr Count CountHandDiscount = {
    "SELECT NUM FROM PROD WHERE SKID>0 AND REZ=0 AND DATETIME {between} GROUP BY NUM"};
inline constexpr Count CountDiscount = {
    "SELECT NUM FROM PROD WHERE ((SKID>0 AND REZ=0) OR (REZ>0)) AND DATETIME {between} GROUP BY NUM"};
inline constexpr Count CountPaidCash = {"SELECT COUNT(N2) FROM KASSA WHERE N4>2 AND SUM2>0 AND TIM {between}", true};
inline constexpr Count CountPaidOther = {"SELECT COUNT(N2) FROM KASSA WHERE N4>2 AND SUM2=0 AND TIM {between}", true};

/// A sum after discounts and the sum before them.
struct Pair {
  std::string_view statement;
};

/// Whose takings a pair is asked for.
struct Asked {
  int category = 0;  ///< place that sells
  int waiter = 0;
};

inline constexpr Pair CategoryPair = {
    "SELECT SUM((KOL*PRISE/1000)-SKID), SUM(KOL*PRISE/1000) FROM PROD WHERE N5={category} AND COD NOT IN "
    "(0,{delivery},{music}) AND DATETIME {between}"};
inline constexpr Pair AlcoholPair = {
    "SELECT SUM((KOL*PRISE/1000)-SKID),SUM(KOL*PRISE/1000) FROM PROD WHERE N1>0 AND COD NOT IN "
    "(0,{delivery},{music}) AND DATETIME {between}"};
inline constexpr Pair WaiterTotalPair = {
    "SELECT SUM((KOL*PRISE/1000)-SKID), SUM(KOL*PRISE/1000) FROM PROD WHERE PERS={waiter} AND DATETIME {between}"};
inline constexpr Pair WaiterCategoryPair = {
    "SELECT SUM((KOL*PRISE/1000)-SKID), SUM(KOL*PRISE/1000) FROM PROD WHERE N5={category} AND PERS={waiter} AND COD "
    "NOT IN (0,{delivery},{music}) AND DATETIME {between}"};
inline constexpr Pair WaiterAlcoholPair = {
    "SELECT SUM((KOL*PRISE/1000)-SKID),SUM(KOL*PRISE/1000) FROM PROD WHERE N1>0 AND PERS={waiter} AND COD NOT IN "
    "(0,{delivery},{music}) AND DATETIME {between}"};
inline constexpr Pair WaiterSurchargePair = {
    "SELECT SUM((KOL*PRISE/1000)-SKID), SUM(KOL*PRISE/1000) FROM PROD WHERE COD IN (0,{delivery},{music}) AND "
    "PERS={waiter} AND DATETIME {between}"};

}  // namespace figure

/// Takings after discounts and before them, money. The discount of a line may be unknown.
struct Takings {
  std::optional<double> after;
  double before = 0;
};

/// Asks for the figures of one period.
class Figures {
 public:
  Figures(Session& session, ReportPeriod period) : session_(session), period_(std::move(period)) {}

  const ReportPeriod& Period() const { return period_; }
  /// "BETWEEN 'from' AND 'to'"
  std::string Between() const;

  /// The sum as money; nothing where nothing was summed. Throws DatabaseError, as all here.
  std::optional<double> Sum(const figure::Sum& sum) const;

  int Count(const figure::Count& count) const;
  /// Orders with a card of the kind that gives `proz` per cent.
  int CountCardKind(const std::string& proz) const;

  /// What was sold before discounts and after them; nothing where nothing was sold. `asked` is what the statement
  /// narrows by, as far as it does.
  std::optional<Takings> Pair(const figure::Pair& pair, const figure::Asked& asked = {}) const;

 private:
  Session& session_;
  ReportPeriod period_;
};

}  // namespace zrt
