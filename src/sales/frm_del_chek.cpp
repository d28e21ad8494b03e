#include "sales/frm_del_chek.h"

#include <fmt/format.h>

#include <array>
#include <string_view>

#include "core/numbers.h"

namespace zrt {

namespace {

using Align = GridColumn::Align;

constexpr Colour kChosen = 49152;  // green
constexpr std::string_view kChooseTill = "выберите кассу ...";

}  // namespace

frmDelChek::frmDelChek(Desktop& desktop, Session& session) : Form(desktop, "frmDelChek"), session_(session) {
  for (std::size_t i = 0; i < CmdKas.size(); ++i) {
    const auto index = static_cast<std::int16_t>(i + 1);
    CmdKas[i].Click = [this, index] { CmdKas_Click(index); };
  }
  DataGrid1.DblClick = [this] { AnnulRow(); };
  DataGrid1.KeyDown = [this](Key& key) { DataGrid1_KeyDown(key); };
  Timer1.Fire = [this] { Timer1_Timer(); };
  Unload = [this] { RsCheck.Close(); };
  Complete();
}

void frmDelChek::CmdKas_Click(std::int16_t index) {
  KassaNo = index;
  RequeryCheck();
  Timer1.Enabled = true;  // while it runs, another press doesn't prolong it
}

void frmDelChek::RequeryCheck() {
  DataGrid1.Caption = fmt::format("Касса {}", KassaNo);
  session_.MainCommand().CommandText = fmt::format("SELECT COD,NAME,KOL,PRISE,COST FROM CHECK{}", KassaNo);
  session_.MainCommand().Execute(RsCheck);
  DataGrid1.Bind(RsCheck);
  RezetDG1();
  UncolourButtons();
  CmdKas.at(static_cast<std::size_t>(KassaNo - 1)).BackColor = kChosen;
}

void frmDelChek::RecordSpionStroka(std::int32_t cod, const std::string& name, const std::string& kol,
                                   const std::string& prise) {
  const std::string now = session_.Format().DateTimeText(session_.TheClock().Now());
  session_.Write(
      fmt::format("INSERT INTO SPION (COD,NAME,KOL,PRISE,DATETIME,TER,KAS,REZ) VALUES ({},'{}','{}','{}','{}',{},0,0)",
                  cod, name, kol, prise, now, KassaNo));
}

void frmDelChek::DeleteCheckRow(std::int32_t cod) {
  session_.Write(fmt::format("DELETE FROM CHECK{} WHERE COD={}", KassaNo, cod));
  RequeryCheck();
}

void frmDelChek::DataGrid1_KeyDown(Key& key) {
  if (key.code != Key::kEnter && key.code != Key::kEscape) return;
  key.swallow = true;
  AnnulRow();
}

void frmDelChek::AnnulRow() {
  const int row = DataGrid1.Row();
  if (row == 0) return;
  const std::string cod = DataGrid1.CellText(row, 0);
  if (!session_.Format().IsNumeric(cod)) return;
  const std::int32_t code = ToInt32(session_.Format().ToNumber(cod));
  RecordSpionStroka(code, DataGrid1.CellText(row, 1), DataGrid1.CellText(row, 2), DataGrid1.CellText(row, 3));
  // All lines of the product go, though one was logged: a receipt has nothing else to tell its lines apart by.
  DeleteCheckRow(code);
}

void frmDelChek::Timer1_Timer() {
  UncolourButtons();
  RsCheck.Close();
  DataGrid1.Caption = std::string(kChooseTill);
  Timer1.Enabled = false;
}

void frmDelChek::RezetDG1() {
  static constexpr auto kLayout = std::to_array<ColumnLayout>({{"COD", 900, Align::kRight},
                                                               {"NAME", 3600, Align::kLeft},
                                                               {"KOL", 1050, Align::kRight, "0.000"},
                                                               {"PRISE", 1050, Align::kRight, "0.00"},
                                                               {"COST", 1200, Align::kRight, "0.00"}});
  DataGrid1.Layout(kLayout);
}

void frmDelChek::UncolourButtons() {
  for (Button& button : CmdKas) button.BackColor = colour::kButtonFace;
}

}  // namespace zrt
