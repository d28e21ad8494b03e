#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

#include "documents/document_form.h"

namespace zrt {

/// The documents whose lines are worked on in DOCUMENT: invoices, write-off, transfers, the daily report. `grid` is the
/// query of the lines up to the value of TYP.
class LineDocument : public DocumentForm {
 public:
  LineDocument(Desktop& desktop, DocType type, const DocumentServices& services, std::string_view grid);

  void SumRefresh() override;

  /// Opens the document's lines in the grid and computes the sum. Throws DatabaseError.
  void GetNewTableDoc();
  /// Makes the working copy of a saved document from its register rows and opens it. Throws DatabaseError.
  void GetTableDoc(std::int32_t doc);

 protected:
  void OpenLines(std::int32_t doc) override;
  void FormatGrid() override;
  void ChangeLine() override;

 private:
  std::string_view grid_;
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
  TransferDocument(Desktop& desktop, DocType type, const DocumentServices& services);
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
