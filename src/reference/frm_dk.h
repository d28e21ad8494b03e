#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "core/session.h"
#include "ui/controls.h"
#include "ui/form.h"

namespace zrt {

/// The discount card: its barcode, a fixed percentage or the number of a kind of card, and, while CheckHolder is
/// ticked, who holds it. A save also takes from the card what has been accumulated on it.
class frmDK final : public Form {
 public:
  frmDK(Desktop& desktop, Session& session);

  /// Called after every save with the card's number and barcode: the list of cards has changed.
  std::function<void(std::int16_t rez)> CardSaved;

  TextBox TextName{*this, "TextName"};  ///< barcode
  Label LabelCod{*this, "LabelCod"};    ///< running number
  ComboBox TextSkd{*this, "TextSkd"};   ///< up to 100: percentage; above: kind of card
  CheckBox CheckHolder{*this, "CheckHolder"};
  Frame FrameHolder{*this, "FrameHolder"};  ///< the part of the form that CheckHolder opens
  TextBox TxtHName{*this, "TxtHName"};
  TextBox TxtHAddr{*this, "TxtHAddr"};
  TextBox TxtHTel{*this, "TxtHTel"};
  Button OKButton{*this, "OKButton"};
  Button CancelButton{*this, "CancelButton"};

  /// Opens an empty card with the number after the highest, modally. Throws DatabaseError; OverflowError when the
  /// numbers have run out (32767).
  void NewDiscountCard();

  /// Opens the card of this number, modally; nothing when there is none. Throws DatabaseError.
  void OpenDiscountCard(std::int16_t rez);

  /// Checks the card and writes it in the place of number `rez`, tells CardSaved and hides the form. The old row is
  /// deleted before the barcode is searched for, so that the card doesn't meet itself: after a barcode that another
  /// card has, or a failure, the card is gone until it is mended and saved. Throws DatabaseError; OverflowError for a
  /// discount that is no 16-bit number, before anything is deleted.
  void SaveDiscountCard(std::int16_t rez);

  /// Writes the holder of card number `id` with barcode `card`; the one before is deleted first. Without a barcode, or
  /// with nothing known of the holder, that is all. Single quotes in `name` and `address` are dropped; those elsewhere
  /// break the statement. Throws DatabaseError.
  void SaveCardHolder(std::int16_t id, const std::string& card, std::string name, std::string address,
                      const std::string& phone);

 private:
  /// Characters that the shop's column of barcodes holds.
  int BarcodeLength();
  void Form_Activate();
  void CheckHolder_Click();
  void OKButton_Click();
  void SaveOnEnter(Key& key);

  void ShowHolder(bool shown);
  void EmptyHolder();
  void FindHolder();
  void Refuse(const std::string& message);

  Session& session_;
};

}  // namespace zrt
