#pragma once

#include <array>
#include <string_view>

#include "documents/form_jrnl.h"
#include "documents/frm_doc_do.h"
#include "documents/frm_doc_in.h"
#include "documents/frm_doc_prc.h"
#include "documents/frm_registr.h"
#include "documents/line_document.h"

namespace zrt {

/// The forms of the stock documents, one of each kind, and the views of the register.
class Documents {
 public:
  Documents(Desktop& desktop, Session& session, ModuleReg& stock, ProductPicker& picker, QuantityDialog& dialog);

  frmRegistr Movements;
  FormJrnl Register;
  frmDocDO DailyReport;
  frmDocPrN Incoming;
  frmDocRhN Outgoing;
  frmDocSP WriteOff;
  frmDocIN Inventory;
  frmDocPRC PriceChange;
  frmDocPERplus TransferIn;
  frmDocPERmin TransferOut;

  /// The form of a kind.
  DocumentForm& Form(DocType type) { return *forms_[NumberOf(type)]; }
  /// The form whose kind has exactly this JOURNAL.DTYPE; nullptr if none has.
  DocumentForm* FormOf(std::string_view dtype);

  /// Opens a new document of the kind; says so and does nothing when one is open.
  void OpenNew(DocType type);

 private:
  std::array<DocumentForm*, kDocumentKinds.size()> forms_;
  Desktop& desktop_;
};

}  // namespace zrt
