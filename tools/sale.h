#pragma once

#include <cstdint>
#include <optional>
#include <string>

// The rows that a terminal leaves behind, as the demonstration and the terminal simulator write them.

namespace zrt::tools {

/// State of an order in PROD and KASSA: below 3 open, above 2 closed.
enum OrderState { kOpen = 1, kBillPrinted = 2, kClosed = 3 };

/// A row of PROD. Quantities and money in thousandths.
struct SoldLine {
  int cod = 0;
  std::string name;
  std::int64_t kol = 0, prise = 0, skid = 0;
  int ter = 0, pers = 0, num = 0;
  std::string datetime;  ///< 'yyyy-mm-dd hh:mm:ss'
  int card = 0;
  int excise = 0;
  int state = kClosed;
  int category = 0;                ///< place of sale
  std::optional<int> fiscal;       ///< register 1 or 2
  std::optional<int> export_mark;  ///< ddmmyy
  std::string status;              ///< 13 characters
  std::string ukt;

  std::int64_t Gross() const { return kol * prise / 1000; }
  std::int64_t Net() const { return Gross() - skid; }
};

/// A row of KASSA. Money in thousandths.
struct CashRow {
  std::string oper;
  std::int64_t sum1 = 0, skid = 0;
  std::int64_t plus = 0, minus = 0;
  bool cash = true;  ///< paid in cash; only a closed row has been paid
  int ter = 0, pers = 0, num = 0;
  std::string opened;  ///< 'yyyy-mm-dd hh:mm:ss'
  std::string closed;  ///< the same, empty while the order is open
  int guests = 0;
  std::optional<int> table;
  int state = kClosed;
  int card = 0;
  std::optional<int> fiscal;
  std::optional<int> export_mark;
  std::string text;  ///< 27 characters of progress and 13 of status

  /// Hundredths of money; 0 while the order is open. Half a kopeck is rounded in the shop's favour.
  std::int64_t Payment() const;
};

inline constexpr const char* kProdBaseColumns = "COD,NAME,KOL,PRISE,SKID,SUM2,TER,PERS,DATETIME,REZ,NUM";
inline constexpr const char* kProdAddedColumns = ",N1,N2,N3,N4,N5,N6,N7,T1,UKT";
inline constexpr const char* kKassaBaseColumns = "OPER,SUM1,SKID,SUM2,PLUS,MINUS,TER,PERS,DAT,TIM,NUM";
inline constexpr const char* kKassaAddedColumns = ",N1,N2,N3,N4,N5,N6,N7,T1";
inline constexpr const char* kCheckBaseColumns = "COD,NAME,KOL,PRISE,COST,NDS,REZ,SKID";
inline constexpr const char* kCheckAddedColumns = ",N1,N2,UKT";
inline constexpr const char* kSpionColumns = "COD,NAME,KOL,PRISE,DATETIME,TER,KAS,REZ";

/// Values of the columns that the table has from the beginning, and of those that the schema's upgrades add.
std::string BaseValues(const SoldLine& line);
std::string AddedValues(const SoldLine& line);
std::string BaseValues(const CashRow& row);
std::string AddedValues(const CashRow& row);

/// A line of an open receipt, in plain units.
std::string CheckBaseValues(const SoldLine& line, int tax);
std::string CheckAddedValues(const SoldLine& line);

/// An annulled line: quantity and price are kept as the texts that a terminal shows, `moment` is dd.mm.yyyy hh:mm:ss.
std::string SpionValues(const SoldLine& line, const std::string& moment);

/// Texts of fixed width, as the views cut them out: 13 characters of status; progress and status together.
std::string StatusText(const std::string& word, const std::string& time);
std::string OrderText(const std::string& progress, const std::string& status);

}  // namespace zrt::tools
