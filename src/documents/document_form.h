#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/session.h"
#include "documents/frm_registr.h"
#include "stock/document_book.h"
#include "stock/document_lines.h"
#include "stock/module_reg.h"
#include "stock/product_picker.h"
#include "ui/controls.h"
#include "ui/data_grid.h"
#include "ui/form.h"

namespace zrt {

/// What every document form works with.
struct DocumentServices {
  Session& session;
  ModuleReg& stock;
  ProductPicker& picker;
  QuantityDialog& dialog;
  frmRegistr& movements;
};

/// The window of a document of any kind through its life: new, saved, posted, and back. What is written, and how, is
/// said by kDocumentKinds and done by DocumentLines and DocumentBook; a form shows it and asks. There is one form per
/// kind, so one document of each kind can be open. A document counts as posted only after all of its posting has run;
/// when a save fails it stays open to be mended.
class DocumentForm : public Form {
 public:
  // Set before the form is shown, by what opens it: the menu or the journal.
  std::int32_t DocId = -1;          ///< JOURNAL.ID; -1 a new document
  std::optional<DateTime> DocDate;  ///< JOURNAL.DATEDOC
  bool DocRun = false;              ///< posted
  std::string DocKlient;
  std::string DocPrim;

  bool DocOpen = false;     ///< from the opening of the lines until the form is unloaded
  std::int64_t DocSum = 0;  ///< thousandths; shown whatever it is, saved only where JOURNAL.SUMM holds it

  const DocumentKind& Kind() const { return kind_; }

  // Controls that every kind has.
  DataGrid DataGrid7{*this, "DataGrid7"};  ///< the lines
  Label LblNumer{*this, "LblNumer"};
  Label LblData{*this, "LblData"};
  Label LblRun{*this, "LblRun"};  ///< the lamp: green when posted
  Label LblInf{*this, "LblInf"};
  Button RUNButton{*this, "RUNButton"};
  Button CancelButton{*this, "CancelButton"};
  Button CmdPlus{*this, "CmdPlus"};
  MonthView Month0{*this, "Month0"};
  // Controls that a kind has when its window's definition does.
  std::optional<Label> LblSum;
  std::optional<TextBox> TextKlient;
  std::optional<TextBox> TextPrim;
  std::optional<Button> CmdUpd;
  std::optional<Button> CmdTov;
  std::optional<Button> CmdBar;
  std::optional<Button> CmdVar;
  std::optional<Button> CmdDel;
  std::optional<Menu> mnuRun;
  std::optional<Menu> mnuUnRun;
  std::optional<Menu> mnuRegistr;

  /// Adds a line of product `cod`, which becomes the current one; `kol` and `price` are thousandths. Nothing for a code
  /// that the catalogue lacks, when no document is there and when it is posted; a line that the document's sum can't
  /// hold, and a product that an inventory has already, is refused with a message. Throws DatabaseError, OverflowError.
  void BroadcastReciever(std::int32_t cod, std::int32_t kol, std::int32_t price);

  /// Computes the document's sum from its lines and shows it. Throws DatabaseError.
  virtual void SumRefresh() = 0;

  /// Leaves the document as CancelButton does, with its question; harmless for a form that shows none. When the
  /// document can't be saved the form stays. Throws DatabaseError.
  void Leave();

 protected:
  DocumentForm(Desktop& desktop, DocType type, const DocumentServices& services);

  // Where a kind differs.

  /// Opens the lines of document `doc`, -1 for a new one, and binds them to the grid.
  virtual void OpenLines(std::int32_t doc) = 0;
  virtual void FormatGrid() = 0;
  /// What activation does for a new document, each time that it comes to the front.
  virtual void PrepareNew();
  virtual void ChangeLine() {}
  /// The date of a new document that none was chosen for.
  virtual void TakePresentDate();
  /// What the journal is to have of a new document, where that isn't what it has of a saved one.
  virtual DocumentHead NewHead() const { return Head(); }
  /// The date under which the document is taken out of the register.
  virtual std::string UnpostDate() const { return SqlDate(); }
  virtual void MonthClicked();
  /// Copies the balances of the document's products to the terminals.
  virtual void UpdateDocument() { book_.CopyBalances(lines_); }

  void SaveDocument(bool post);
  virtual void RunIndicator(bool run);

  // For the kinds' own use.

  /// DocDate as SQL, cut from its text on the screen: midnight has no time.
  std::string SqlDate() const;
  void SetDate(const DateTime& moment);
  DocumentHead Head() const;
  std::string PrimText(std::size_t count = 50) const;  ///< the first characters of the note
  std::string NowText() const;
  /// ID of the current line; nothing without one.
  std::optional<std::int64_t> CurrentId() const;
  bool HasLines() const { return lines_.RecordCount() > 0; }
  /// Reads the lines by `sql`, and their sum; DocOpen from here on. The grid opens on its last row and keeps its row
  /// when they are read again. Lines whose sum can't be computed are closed again, and read before anything is done to
  /// them. Throws DatabaseError.
  void ReadLines(const std::string& sql);
  void RefreshLines() { ReadLines(lines_sql_); }
  /// The same after lines were added, of which the last becomes the current one.
  void ShowAddedLines();
  /// Reads what couldn't be read before, the whole document where it never was, and the lines that came over a link
  /// which is gone: a change whose answer was lost with it may be in. Lines that stand under -1 follow their head
  /// before. Called before anything is done to the lines: without them a save would empty the register. Throws
  /// DatabaseError.
  void RequireLines();
  /// Is a line to be added? Not to a posted document, over which the picker may stay open.
  bool TakesLines();
  /// Does JOURNAL.SUMM hold `sum`? Else the operator is told that `what` hasn't happened.
  bool SumFits(std::int64_t sum, std::string_view what);
  void TellTooLarge(std::string_view what);
  void Busy(std::string_view text);
  std::string Amount(std::int64_t thousandths) const;
  /// Asks quantity and price of a line again; on OK it is added as a new one.
  void AskFor(const KnownProduct& product) { dialog_.AskFor(product, NumberOf(kind_.type)); }

  const DocumentKind& kind_;
  Session& session_;
  ModuleReg& stock_;
  DocumentLines store_;  ///< the lines where they are worked on
  DocumentBook book_;
  Recordset lines_;  ///< the lines as the grid shows them

 private:
  void EditLine();
  void OpenDocument();
  void Form_Activate();
  void Form_Unload();
  void CmdPlus_Click();
  void CmdBar_Click();
  void CmdDel_Click();
  void RUNButton_Click();
  void mnuUnRun_Click();
  void CancelButton_Click();
  void AskAndPost();
  bool InsertHead();
  void DeleteWorkingCopy();

  std::string lines_sql_;
  int lines_link_ = 0;      ///< the link that the lines were read over
  bool rows_left_ = false;  ///< the window went before it could delete its working copy
  ProductPicker& picker_;
  QuantityDialog& dialog_;
  frmRegistr& movements_;
};

}  // namespace zrt
