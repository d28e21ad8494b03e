#pragma once

#include <array>
#include <optional>
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
inline constexpr std::string_view kBarLabel = "Бар                  ";
inline constexpr std::string_view kAlcoholLabel = "в т.ч. алк. + сиг.   ";

/// Names that the shop gives its three kitchens and their workshops. Each kitchen keeps its four in one column of the
/// settings: 14 characters of its own name and three times 12 of its workshops'.
class KatNames {
 public:
  static constexpr int kKitchens = 3;
  static constexpr int kWorkshops = 3;

  /// Name of workshop `workshop` of kitchen `kitchen`, both from 1; workshop 0 is the kitchen itself. Padded with
  /// blanks to its width; empty where none was given.
  const std::string& Name(int kitchen, int workshop) const { return names_.at(Index(kitchen)).at(Index(workshop)); }

  /// Reads the names of all kitchens, and beside them the hour of the shift change as it is stored; nothing without
  /// one. Throws DatabaseError.
  std::optional<std::string> Load(Session& session);
  /// Reads the names again, after they were stored. Throws DatabaseError.
  void Reload(Session& session);

  using FourNames = std::array<std::string, kWorkshops + 1>;  ///< of a kitchen: its own, then its workshops'

  /// The names as they are stored, each at its width: one left blank gets its default. Four empty ones stay empty.
  static FourNames Completed(int kitchen, FourNames names);
  /// Stores the completed names of a kitchen, NULL for four empty ones. Throws DatabaseError.
  static void Store(Session& session, int kitchen, const FourNames& names);

  /// Takes the four names of a kitchen out of its text of the settings, of which only the end may be missing.
  void Cut(int kitchen, std::string_view stored);

  /// The kitchens with their workshops, in the order of all reports, under the names given or their numbers.
  std::vector<Place> Places() const;

 private:
  static constexpr std::size_t kKitchenWidth = 14;
  static constexpr std::size_t kWorkshopWidth = 12;

  static std::size_t Width(int workshop) { return workshop == 0 ? kKitchenWidth : kWorkshopWidth; }
  void Take(int kitchen, const Cell& stored);
  void ReadThird(Session& session);
  static std::size_t Index(int number) { return static_cast<std::size_t>(number); }
  std::string Label(int kitchen, int workshop) const;

  std::array<std::array<std::string, kWorkshops + 1>, kKitchens + 1> names_;  ///< row 0 stays unused
};

}  // namespace zrt
