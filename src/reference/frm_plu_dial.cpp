#include "reference/frm_plu_dial.h"

#include <fmt/format.h>

#include "core/numbers.h"
#include "reference/pick_rules.h"

namespace zrt {

frmPLUdial::frmPLUdial(Desktop& desktop, Session& session, ModuleReg& stock)
    : Form(desktop, "frmPLUdial"), session_(session), stock_(stock) {
  Activate = [this] { Form_Activate(); };
  Deactivate = [this] { Form_Deactivate(); };
  TextKol.KeyDown = [this](Key& key) {
    if (key.code == Key::kEnter) LeaveQuantity(session_.Format(), AsksOf(FormCode), TextKol, TextPrice, OKButton);
  };
  TextPrice.KeyDown = [this](Key& key) {
    if (key.code == Key::kEnter) Deliver();
  };
  OKButton.Click = [this] { Deliver(); };
  // No control here has a use of its own for Escape.
  KeyDown = [this](Key& key) {
    if (key.code == Key::kEscape) Hide();
  };
  Complete();
}

void frmPLUdial::AskFor(const KnownProduct& product, std::uint8_t form_code) {
  DialCod = product.cod;
  DialName = product.name;
  DialKol = product.kol;
  DialPrice = product.price;
  FormCode = form_code;
  ShowModal();
}

void frmPLUdial::Form_Activate() {
  const RegionalFormat& format = session_.Format();
  LbllName.Caption = fmt::format("{}  {}  ", DialName, DialCod);
  TextPrice.Text = DialPrice == 0 ? "" : format.FormatNumber(DialPrice / double{scale::kDocument}, 2);
  TextKol.Text = DialKol == 0 ? "" : format.FormatShortest(DialKol / double{scale::kDocument});
  FocusWhole(AsksOf(FormCode) == Asks::kPrice ? TextPrice : TextKol);
}

void frmPLUdial::Form_Deactivate() {
  TextKol.Text = "";
  TextPrice.Text = "";
}

void frmPLUdial::Deliver() {
  const RegionalFormat& format = session_.Format();
  const Asks asks = AsksOf(FormCode);
  if (!FieldsAreNumbers(format, asks, TextKol, TextPrice)) return;
  DialKol = asks == Asks::kPrice ? 0 : TypedThousandths(format, TextKol.Text());
  DialPrice = TypedThousandths(format, TextPrice.Text());
  stock_.BroadcastToForm(DialCod, DialKol, DialPrice, FormCode);
  Hide();
}

}  // namespace zrt
