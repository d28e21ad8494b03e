#pragma once

#include "documents/document_form.h"

namespace zrt {

/// What the kinds differ in whose lines are worked on in DOCUMENT. That table is keyed by the kind alone and emptied
/// when the form is closed; the lasting copy of the lines is the register's.
struct LineRules {
  const char* grid_query;       ///< up to the value of TYP
  const char* reopen_query;     ///< up to the join
  bool offers_retail;           ///< for a scanned product; else the purchase price
  bool zero_price_is_purchase;  ///< a line picked without a price gets the purchase price
  bool fills_rez;               ///< DOCUMENT.REZ holds the retail price, or the card of a daily report
  const char* update_tail;      ///< behind the product's code when balances go to the terminals
};

/// Invoices, write-off and transfers: all that differs is data.
class LineDocument : public DocumentForm {
 public:
  LineDocument(Desktop& desktop, const DocumentKind& kind, const DocumentServices& services, const LineRules& rules);

  void BroadcastReciever(std::int32_t cod, std::int32_t kol, std::int32_t price) override;
  void SumRefresh() override;

  /// Opens the document's lines in the grid and computes the sum. Throws DatabaseError.
  void GetNewTableDoc();
  /// Makes the working copy of a saved document from its register rows and opens it. Two lines equal in all become one;
  /// a line whose product is gone from the catalogue drops out. Throws DatabaseError.
  void GetTableDoc(std::int32_t doc);

 protected:
  void OpenLines(std::int32_t doc) override;
  void FormatGrid() override;
  const char* BarcodeQuery() const override;
  bool OffersRetail() const override { return rules_.offers_retail; }
  void ChangeLine() override;
  void DeleteLineStatement(std::int64_t id) override;
  std::string InsertHeadStatement(const std::string& date, const std::string& control) override;
  std::string UpdateHeadStatement(const std::string& date) override;
  void WriteRegister(const std::string& date) override;
  void DeleteWorkingCopy() override;
  const char* UpdateTail() const override { return rules_.update_tail; }

  /// What a product without a name is called when a document is opened again.
  virtual const char* DeletedProduct() const { return "-----! УДАЛЕННЫЙ ТОВАР !----"; }
  /// The statement that puts a line of the register back, from the row of `saved`.
  virtual std::string ReopenLine(const Recordset& saved, const std::string& name) const;
  /// REGISTR.KARD of the line in `row`.
  virtual std::string Card(int) const { return "0"; }

 private:
  const LineRules& rules_;
};

class frmDocPrN final : public LineDocument {
 public:
  frmDocPrN(Desktop& desktop, const DocumentServices& services);
};

class frmDocRhN final : public LineDocument {
 public:
  frmDocRhN(Desktop& desktop, const DocumentServices& services);
};

class frmDocSP final : public LineDocument {
 public:
  frmDocSP(Desktop& desktop, const DocumentServices& services);
};

/// Goods that move between two points, which know nothing of each other but a file.
class TransferDocument : public LineDocument {
 public:
  Button CmdDownl{*this, "CmdDownl"};

  /// Loads lines from a file into the open document; set by who knows the screens.
  std::function<void()> LoadFromFile;

 protected:
  TransferDocument(Desktop& desktop, const DocumentKind& kind, const DocumentServices& services,
                   const LineRules& rules);
  /// Lines loaded into a posted document would be lost with its window.
  void RunIndicator(bool run) override;
};

class frmDocPERplus final : public TransferDocument {
 public:
  frmDocPERplus(Desktop& desktop, const DocumentServices& services);

  /// Reads the lines again after a file was loaded into them. Throws DatabaseError.
  void RefreshRS7prp() { ShowAddedLines(); }
};

class frmDocPERmin final : public TransferDocument {
 public:
  frmDocPERmin(Desktop& desktop, const DocumentServices& services);

  /// The same for goods that go out. Throws DatabaseError.
  void RefreshRS7prm() { ShowAddedLines(); }
};

}  // namespace zrt
