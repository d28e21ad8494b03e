#include "documents/documents.h"

#include <cstdint>

#include "ui/desktop.h"

namespace zrt {

namespace {

DocumentServices Services(Session& session, ModuleReg& stock, ProductPicker& picker, QuantityDialog& dialog,
                          frmRegistr& movements) {
  return {session, stock, picker, dialog, movements};
}

}  // namespace

Documents::Documents(Desktop& desktop, Session& session, ModuleReg& stock, ProductPicker& picker,
                     QuantityDialog& dialog)
    : Movements(desktop, session),
      Register(desktop, session, stock, picker),
      DailyReport(desktop, Services(session, stock, picker, dialog, Movements)),
      Incoming(desktop, Services(session, stock, picker, dialog, Movements)),
      Outgoing(desktop, Services(session, stock, picker, dialog, Movements)),
      WriteOff(desktop, Services(session, stock, picker, dialog, Movements)),
      Inventory(desktop, Services(session, stock, picker, dialog, Movements)),
      PriceChange(desktop, Services(session, stock, picker, dialog, Movements)),
      TransferIn(desktop, Services(session, stock, picker, dialog, Movements)),
      TransferOut(desktop, Services(session, stock, picker, dialog, Movements)),
      forms_{&DailyReport, &Incoming, &Outgoing, &WriteOff, &Inventory, &PriceChange, &TransferIn, &TransferOut},
      desktop_(desktop) {
  for (DocumentForm* form : forms_) {
    if (form->Kind().asks == Asks::kUnknown) continue;
    stock.ConnectReciever(NumberOf(form->Kind().type), [form](std::int32_t cod, std::int32_t kol, std::int32_t price) {
      form->BroadcastReciever(cod, kol, price);
    });
  }
}

DocumentForm* Documents::FormOf(std::string_view dtype) {
  const DocumentKind* const kind = FindKind(dtype);
  return kind == nullptr ? nullptr : &Form(kind->type);
}

void Documents::OpenNew(DocType type) {
  DocumentForm& form = Form(type);
  if (form.DocOpen) {
    desktop_.MsgBox(std::string(form.Kind().open_already));
    return;
  }
  form.Leave();  // one that couldn't be opened leaves nothing to the new one
  form.DocId = -1;
  form.DocDate.reset();
  form.DocKlient = form.DocPrim = "";
  form.Show();
}

}  // namespace zrt
