#pragma once

#include <cstdint>
#include <string>

#include "core/session.h"
#include "stock/module_reg.h"
#include "stock/product_picker.h"
#include "ui/controls.h"
#include "ui/form.h"

namespace zrt {

/// Asks quantity and price of a product that the document knows already, and delivers them to it.
class frmPLUdial final : public Form, public QuantityDialog {
 public:
  frmPLUdial(Desktop& desktop, Session& session, ModuleReg& stock);

  Label LbllName{*this, "LbllName"};
  TextBox TextKol{*this, "TextKol"};
  TextBox TextPrice{*this, "TextPrice"};
  Button OKButton{*this, "OKButton"};

  void AskFor(const KnownProduct& product, std::uint8_t form_code) override;

  // Set before the dialog is shown modally.
  std::int32_t DialCod = 0;
  std::int32_t DialKol = 0;    ///< thousandths
  std::int32_t DialPrice = 0;  ///< thousandths
  std::string DialName;
  std::uint8_t FormCode = 0;  ///< whom to deliver to; see form_code

 private:
  void Form_Activate();
  void Form_Deactivate();
  void Deliver();

  Session& session_;
  ModuleReg& stock_;
};

}  // namespace zrt
