#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "core/session.h"

namespace zrt {

/// A place that sells: the bar's category is 0, a kitchen's its number, a workshop's ten times its kitchen's and its
/// own.
struct Place {
  int category;
  std::string label;  ///< 21 characters
};

inline constexpr int kBarCategory = 0;
inline constexpr const char* kBarLabel = "Бар                  ";
inline constexpr const char* kAlcoholLabel = "в т.ч. алк. + сиг.   ";

/// Names that the shop gives its three kitchens and their workshops. Each kitchen keeps its four in one column of the
/// settings: 14 characters of its own name and three times 12 of its workshops'.
class KatNames {
 public:
  static constexpr int kKitchens = 3;
  static constexpr int kWorkshops = 3;
  static constexpr std::size_t kKitchenWidth = 14;
  static constexpr std::size_t kWorkshopWidth = 12;

  /// Name of workshop `workshop` of kitchen `kitchen`, both from 1; workshop 0 is the kitchen itself. Padded with
  /// blanks to its width; empty where none was given.
  const std::string& Name(int kitchen, int workshop) const { return names_.at(Index(kitchen)).at(Index(workshop)); }

  /// Takes the four names of a kitchen out of its text of the settings, of which only the end may be missing.
  void Cut(int kitchen, std::string_view stored);
  /// The kitchen has no names.
  void Clear(int kitchen);

  /// The names that stand when only some of a kitchen's four are given: "Кухня1", "Кухня1 Цех2".
  static std::string DefaultName(int kitchen, int workshop);

  /// The kitchens with their workshops, in the order of all reports, under the names given or their numbers.
  std::vector<Place> Places() const;

 private:
  static std::size_t Index(int number) { return static_cast<std::size_t>(number); }
  std::string Label(int kitchen, int workshop) const;

  std::array<std::array<std::string, kWorkshops + 1>, kKitchens + 1> names_;  ///< row 0 stays unused
};

/// Where a kitchen's text stands in the settings: CONST, row `cod`, column `column`.
struct KatNameColumn {
  int kitchen;
  int cod;
  const char* column;
};
inline constexpr std::array kKatNameColumns = {KatNameColumn{1, 5, "N9"}, KatNameColumn{2, 5, "N10"},
                                               KatNameColumn{3, 6, "N10"}};

}  // namespace zrt
