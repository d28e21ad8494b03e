#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "catalogue.h"
#include "random.h"
#include "script_writer.h"

namespace zrt::tools {

/// First hour of the shift in the demonstration shop.
inline constexpr int kShiftHour = 8;

/// Lowest code of a cashier (PERSON); waiters (KLIENT) have those below.
inline constexpr int kFirstCashier = 101;
inline constexpr int kCashiers = 3;

/// Codes of the waiters who may serve. The last one has left the shop: his sales are there, his name isn't.
std::vector<int> WaiterCodes();

/// A discount card; `kind` is a percentage, or the number of a kind of card when above 100.
struct Card {
  int number = 0;
  int kind = 0;
  std::int64_t total = 0;  ///< accumulated, hundredths of money
  std::int64_t last = 0;   ///< last sum, hundredths
};

std::vector<Card> MakeCards();

/// Per cent that `card` gives on a product of discount category `category`.
int CardPercent(const Card& card, int category);

/// What the reference tables and the settings hold. `upgraded`: the database has the columns and rows of the upgrades.
void WriteStaff(ScriptWriter& script, bool upgraded);
void WriteCards(ScriptWriter& script, const std::vector<Card>& cards, bool upgraded, Random& random);

/// Panels and settings of an upgraded database. `mode` is the operating mode, CONST row 7 N3; `hour` that of the shift
/// change.
void WritePanels(ScriptWriter& script, const std::vector<Product>& catalogue);
void WriteSettings(ScriptWriter& script, int mode, int hour);

}  // namespace zrt::tools
