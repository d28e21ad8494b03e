#include "documents/frm_registr.h"

#include <fmt/format.h>

#include <array>

namespace zrt {

frmRegistr::frmRegistr(Desktop& desktop, Session& session) : Form(desktop, "frmRegistr"), session_(session) {
  Load = [this] { Form_Load(); };
  Unload = [this] { movements_.Close(); };
  DataGrid8.KeyDown = [this](Key& key) {
    if (key.code == Key::kEscape) Close();
  };
  Complete();
}

void frmRegistr::ShowDocument(std::int32_t doc, const std::string& caption) {
  Close();
  doc_ = doc;
  document_caption_ = caption;
  Show();
}

void frmRegistr::Form_Load() {
  if (doc_ <= 0) return;
  using Align = GridColumn::Align;
  session_.BindSet(
      movements_,
      fmt::format(
          "SELECT REGISTR.COD As 'Cod',TOVAR.NAME As 'Name',ROUND(REGISTR.KOL/1000,3) As 'Value',"
          "ROUND(REGISTR.SUMM/1000,3) As 'Summ',REGISTR.KARD As 'Card',DATEDOC As 'DateTime',"
          "ROUND(REGISTR.OSTKOL/1000,3) As 'Balance' FROM REGISTR LEFT JOIN TOVAR ON REGISTR.COD=TOVAR.COD WHERE "
          "TOVAR.COD1=1 AND REGISTR.RUN=1 AND REGISTR.DOC={} ORDER BY Cod",
          doc_));
  DataGrid8.Bind(movements_);
  static constexpr auto kLayout = std::to_array<ColumnLayout>({{"Cod", 900, Align::kRight},
                                                               {"Name", 3900, Align::kLeft},
                                                               {"Value", 1200, Align::kRight, "0.000"},
                                                               {"Summ", 1350, Align::kRight, "0.00"},
                                                               {"Card", 900, Align::kRight},
                                                               {"DateTime", 1950, Align::kLeft},
                                                               {"Balance", 1200, Align::kRight, "0.000"}});
  DataGrid8.Layout(kLayout);
  Session::ShowLastRow(movements_);
  Caption = "Движения документа: " + document_caption_;
}

}  // namespace zrt
