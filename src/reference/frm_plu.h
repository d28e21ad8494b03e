#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "core/session.h"
#include "ui/controls.h"
#include "ui/form.h"

namespace zrt {

/// TOVAR.N2 of a product: 0 for the bar, else the kitchen 1 to 3, times ten plus the workshop 1 to 3 when there is one.
/// `place` and `workshop` are the texts of the card's lists; an unknown place counts as 0.
std::uint8_t LocationCode(std::string_view place, std::string_view workshop);

/// TOVAR.N1 of a product: 0 none, 1 "АЛКОГОЛЬ", 2 "СИГАРЕТЫ".
std::uint8_t ExciseCode(std::string_view kind);

/// Who opens the product card: after a save that one's list goes to the saved product.
enum class ProductCardCaller : std::uint8_t { kCatalogue = 0, kPicker = 1 };

/// The product card. A product may have several rows in TOVAR; a save of the card leaves one, with COD1=1. It also puts
/// the balance and what was sold since the shift's start to 0; "Обновить остатки из регистра" brings them back.
class frmPLU final : public Form {
 public:
  frmPLU(Desktop& desktop, Session& session);

  /// Called after every save: the catalogue has changed.
  std::function<void()> ProductsChanged;
  /// Called after that, the one of the caller: its list goes to the product of this name.
  std::function<void(const std::string& name)> ShowInCatalogue;
  std::function<void(const std::string& name)> ShowInPicker;

  Label LabelCod{*this, "LabelCod"};
  TextBox TextName{*this, "TextName"};
  TextBox TextPrise{*this, "TextPrise"};
  ComboBox Combo1{*this, "Combo1"};  ///< localisation
  ComboBox Combo2{*this, "Combo2"};  ///< workshop
  ComboBox Combo3{*this, "Combo3"};  ///< discount category
  ComboBox Combo4{*this, "Combo4"};  ///< excise
  ComboBox Combo5{*this, "Combo5"};  ///< tax rate
  CheckBox CheckVes{*this, "CheckVes"};
  TextBox TextVes{*this, "TextVes"};
  TextBox TextKVP{*this, "TextKVP"};  ///< parts of a fractional product; chosen, never typed
  Button CmdKVP{*this, "CmdKVP"};
  Button CmdDelKVP{*this, "CmdDelKVP"};
  ListBox ListKVP{*this, "ListKVP"};
  TextBox TextVol{*this, "TextVol"};
  TextBox TextBar{*this, "TextBar"};
  TextBox TextUkt{*this, "TextUkt"};
  CheckBox CheckUsl{*this, "CheckUsl"};
  Button OKButton{*this, "OKButton"};
  Button CancelButton{*this, "CancelButton"};

  /// Opens an empty card with the next free code, modally. Throws DatabaseError.
  void NewProductCard(ProductCardCaller caller);
  /// Opens a card with the next free code and what product `cod` has, but for its barcode; nothing when there is no
  /// such product. Throws DatabaseError.
  void CopyProductCard(std::int32_t cod, ProductCardCaller caller);
  /// Opens the card of product `cod`; nothing when there is no such product. Throws DatabaseError.
  void OpenProductCard(std::int32_t cod, ProductCardCaller caller);

  /// Checks the card and writes it as product `cod`, tells `caller` and hides the card. The product's old rows are
  /// deleted before the barcode is checked and the numbers are read: after a refused barcode or a failure the product
  /// is gone until the card is mended and saved. Throws DatabaseError; TypeMismatch and OverflowError for a weight
  /// code, portion or number of parts that is no 16-bit number.
  void SaveProductCard(std::int32_t cod, ProductCardCaller caller);

  /// TOVAR.COD of the first row with this barcode, 0 without one. Throws DatabaseError.
  std::int32_t FindCodeByBarcode(const std::string& barcode);

 private:
  void Form_Load();
  void AddMassivToList();
  void CheckVes_Click();
  void CmdKVP_Click();
  void TakeParts();
  void DropParts();
  void Save();

  void PutNextCode();
  /// Fills the card, except for the code; false when there is no such product.
  bool ReadProduct(std::int32_t cod);
  void ShowLocation(const std::string& code);
  void ShowFor(ProductCardCaller caller, TextBox& first);
  void Refuse(const std::string& message, TextBox& box);

  Session& session_;
  ProductCardCaller CardCaller = ProductCardCaller::kCatalogue;
};

}  // namespace zrt
