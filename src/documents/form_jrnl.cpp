#include "documents/form_jrnl.h"

#include <fmt/format.h>

#include <array>
#include <string>

namespace zrt {

FormJrnl::FormJrnl(Desktop& desktop, Session& session, ModuleReg& stock, ProductPicker& picker)
    : Form(desktop, "FormJrnl"), session_(session) {
  Load = [this] { OpenList(""); };
  Activate = [this] { Form_Activate(); };
  Unload = [this] { register_.Close(); };
  CmdTov.Click = [&picker] { picker.OpenFor(form_code::kRegisterView); };
  CheckRun.Click = [this] { CheckRun_Click(); };
  KeyDown = [this](Key& key) {
    if (key.code == Key::kEscape) Close();
  };
  stock.ConnectReciever(form_code::kRegisterView, [this](std::int32_t cod, std::int32_t kol, std::int32_t price) {
    BroadcastReciever(cod, kol, price);
  });
  Complete();
}

void FormJrnl::OpenList(const std::string& condition) {
  session_.BindSet(
      register_,
      "SELECT REGISTR.ID As 'Nrow',JOURNAL.DTYPE As 'Docum',REGISTR.DOC As 'NumDoc',REGISTR.DATEDOC As 'DateTime',"
      "REGISTR.COD As 'Plu',ROUND(REGISTR.KOL/1000,3) As 'Value',ROUND(REGISTR.SUMM/1000,3) As 'Summ',"
      "ROUND(REGISTR.OSTKOL/1000,3) As 'Balance',REGISTR.KARD As 'Card',REGISTR.DOCNEXT As 'NextDoc',"
      "REGISTR.DATENEXT As 'DateTimeNextDoc',REGISTR.RUN As 'Entry' FROM REGISTR LEFT JOIN JOURNAL ON REGISTR.DOC = "
      "JOURNAL.ID" +
          condition + " ORDER BY 'DateTime' ASC");
  DataGrid88.Bind(register_);
  FormatGrid();
  Session::ShowLastRow(register_);
}

void FormJrnl::FormatGrid() {
  using Align = GridColumn::Align;
  static constexpr auto kLayout = std::to_array<ColumnLayout>({{"Nrow", 825, Align::kRight},
                                                               {"Docum", 2250, Align::kLeft},
                                                               {"NumDoc", 900, Align::kRight},
                                                               {"DateTime", 1950, Align::kLeft},
                                                               {"Plu", 825, Align::kRight},
                                                               {"Value", 1200, Align::kRight, "0.000"},
                                                               {"Summ", 1350, Align::kRight, "0.000"},
                                                               {"Balance", 1200, Align::kRight, "0.000"},
                                                               {"Card", 825, Align::kRight},
                                                               {"NextDoc", 900, Align::kRight},
                                                               {"DateTimeNextDoc", 1950, Align::kLeft},
                                                               {"Entry", 675, Align::kCentre}});
  DataGrid88.Layout(kLayout);
}

void FormJrnl::Form_Activate() {
  register_.Requery();
  Session::ShowLastRow(register_);
  FormatGrid();
}

void FormJrnl::BroadcastReciever(std::int32_t cod, std::int32_t, std::int32_t) {
  const Recordset product = session_.ReadOne(fmt::format("SELECT DISTINCT COD,NAME FROM TOVAR WHERE COD={}", cod));
  if (product.RecordCount() == 0) return;
  LblCod.Caption = std::to_string(cod);
  LblTov.Caption = product.Field("NAME").TextOrEmpty();
  CheckRun.Enabled = true;
  CheckRun.SetFocus();
}

void FormJrnl::CheckRun_Click() {
  if (LblCod.Caption().empty()) return;
  const bool filtered = CheckRun.Value();
  CheckRun.Caption = filtered ? "Отключить фильтр" : "Установить фильтр по товару";
  OpenList(filtered ? fmt::format(" WHERE REGISTR.RUN=1 AND REGISTR.COD={}", LblCod.Caption()) : "");
}

}  // namespace zrt
