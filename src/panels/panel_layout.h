#pragma once

#include <cstdint>

// Where a touch key stands. Two menus of 12 panels of 3 levels of 30 keys; the table numbers the panels of both menus
// through, 1 to 24.

namespace zrt {

inline constexpr int kMenus = 2;
inline constexpr int kPanelsPerMenu = 12;
inline constexpr int kLevelsPerPanel = 3;
inline constexpr int kKeysPerLevel = 30;
inline constexpr int kIdsPerPanel = 100;  ///< of which the keys take 1 to 90
inline constexpr int kIdsPerMenu = kPanelsPerMenu * kIdsPerPanel;

/// HOTKEYS.ID of the first key of `level` (1 to 3) of `panel`: of menu 1 when `panel` counts within a menu, the key's
/// own when it is the table's number.
constexpr int KeyBaseId(std::int16_t panel, std::uint8_t level) {
  return panel * kIdsPerPanel + (level - 1) * kKeysPerLevel + 1;
}

/// HOTKEYS.REZ of `panel` (1 to 12) of `menu`: 1 or 2, or 0 for the only menu of an older schema.
constexpr int TablePanel(std::uint8_t menu, int panel) {
  return menu == 2 ? panel + kPanelsPerMenu : panel;
}

}  // namespace zrt
