#pragma once

#include <cstdint>
#include <string>

namespace zrt {

/// What a product is picked for: the number of a document's kind, or one of these screens.
namespace form_code {
inline constexpr std::uint8_t kMovementReport = 100;  ///< a product as a filter, without quantity and price
inline constexpr std::uint8_t kRegisterView = 106;    ///< the same
}  // namespace form_code

/// The picker as the screens that want products know it.
class ProductPicker {
 public:
  virtual ~ProductPicker() = default;

  /// Shows the picker, not modally; each product chosen in it is delivered through ModuleReg::BroadcastToForm under
  /// `form_code`, until the operator closes it or another screen opens it. Throws DatabaseError.
  virtual void OpenFor(std::uint8_t form_code) = 0;
};

/// A product that a document knows already, for the dialog that asks its quantity and price.
struct KnownProduct {
  std::int32_t cod = 0;
  std::string name;
  std::int32_t kol = 0;    ///< thousandths; 0 shows an empty field
  std::int32_t price = 0;  ///< thousandths; 0 shows an empty field
};

/// The dialog as the documents know it.
class QuantityDialog {
 public:
  virtual ~QuantityDialog() = default;

  /// Asks quantity and price of `product`, modally; on OK they are delivered through ModuleReg::BroadcastToForm under
  /// `form_code`.
  virtual void AskFor(const KnownProduct& product, std::uint8_t form_code) = 0;
};

}  // namespace zrt
