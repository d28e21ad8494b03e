#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zrt::check {

/// What may not fit together in a shop's database. The order is that of the report.
enum class Fault {
  kNoDate,
  kUnknownKind,
  kUnknownState,
  kRowsWithoutHead,
  kOtherKind,
  kOtherDate,
  kWrongSign,
  kPostedWithoutRows,
  kPostedHalf,
  kPostedRowsOfUnposted,
  kBalanceWithoutPosting,
  kNoStockPosted,
  kWrongBalance,
  kHeadSum,
  kWrongLink,
  kSoldWithoutReceipt,
  kDoubledBarcode,
  // What the rules allow:
  kKeyWithoutProduct,
  kStaleBalance,
  kReturnsInHead,
  kCountsNotSaved,
  kLinkToDeleted,
  kOldBalanceAtTills,
  kOpenDocument,
  kCharacterSet,
  kCount
};

/// How a fault is told.
struct FaultText {
  std::string_view title;
  bool allowed;           ///< follows from how the shop works; named, but nothing is broken
  std::string_view what;  ///< what the operator does about it; "" when nothing needs doing
};
const FaultText& TextOf(Fault fault);

/// What a check has found: how often each fault, and where, for the first few of its kind.
class Findings {
 public:
  static constexpr std::size_t kShown = 20;

  /// `where` is Russian, for the operator.
  void Add(Fault fault, const std::string& where);

  std::size_t Count(Fault fault) const { return Of(fault).count; }
  /// The places kept, kShown at most.
  const std::vector<std::string>& Where(Fault fault) const { return Of(fault).where; }

  /// Is nothing broken? What the rules allow doesn't count.
  bool IsWhole() const;

  /// The report for the operator (UTF-8), its lines ended by "\n".
  std::string Report() const;

 private:
  struct Found {
    std::size_t count = 0;
    std::vector<std::string> where;
  };
  const Found& Of(Fault fault) const { return found_[static_cast<std::size_t>(fault)]; }

  std::array<Found, static_cast<std::size_t>(Fault::kCount)> found_;
};

}  // namespace zrt::check
