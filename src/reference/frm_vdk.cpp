#include "reference/frm_vdk.h"

#include <fmt/format.h>

#include <array>
#include <cstdint>
#include <string_view>

#include "core/numbers.h"
#include "ui/desktop.h"

namespace zrt {

namespace {

using Align = GridColumn::Align;

constexpr std::string_view kBoxTitle = "ZASTAVA";
constexpr std::int16_t kHighestPercentage = 100;  // numbers up to here are percentages on a card, no kinds
constexpr std::int16_t kFirstKind = 101;
constexpr std::int16_t kPercentageToKind = 101;  // what a percentage typed as a kind is raised by: 5 becomes 106

}  // namespace

frmVDk::frmVDk(Desktop& desktop, Session& session) : Form(desktop, "frmVDk"), session_(session) {
  Load = [this] { PutDefaults(); };
  Activate = [this] { Form_Activate(); };
  KeyDown = [this](Key& key) {
    // Not from the fields of an entry: a rule that is out of the table would be left behind by a slip.
    if (key.code == Key::kEscape && !CmdOk.Enabled()) Hide();
  };
  DataGrid05.KeyDown = [this](Key& key) {
    if (key.code == Key::kEscape) Hide();
  };
  const auto write_on_enter = [this](Key& key) {
    if (key.code != Key::kEnter) return;
    key.swallow = true;
    CmdOk_Click();
  };
  for (TextBox* box : {&Text1, &Text2, &Text3}) box->KeyDown = write_on_enter;
  Combo1.KeyDown = write_on_enter;
  CmdNew.Click = [this] { CmdNew_Click(); };
  CmdEdit.Click = [this] { CmdEdit_Click(); };
  CmdOk.Click = [this] { CmdOk_Click(); };
  CmdDel.Click = [this] { CmdDel_Click(); };
  Complete();
}

void frmVDk::Form_Activate() {
  // Before the rules, which may fail to come: an entry needs the categories all the same. One may be under way: the
  // list is filled anew, what was chosen from it stays.
  const std::string category = Combo1.Text();
  Combo1.Clear();
  for (int number = 0; number <= 9; ++number) Combo1.AddItem(std::to_string(number));
  Combo1.Text = category;
  ShowRules();
  DataGrid05.Refresh();
}

void frmVDk::OpenCardKinds() {
  session_.BindSet(Rules(), "SELECT ID,CARD,TOV,PROZ,TOTAL FROM TOTALSKID ORDER BY CARD");
  Session::ShowLastRow(Rules());
}

void frmVDk::ShowRules() {
  OpenCardKinds();
  DataGrid05.Bind(Rules());
  static constexpr auto kLayout = std::to_array<ColumnLayout>({{"ID", 900, Align::kRight},
                                                               {"CARD", 1500, Align::kRight},
                                                               {"TOV", 1500, Align::kRight},
                                                               {"PROZ", 1500, Align::kRight},
                                                               {"TOTAL", 3000, Align::kRight}});
  DataGrid05.Layout(kLayout);
}

void frmVDk::CmdNew_Click() {
  const Recordset highest = session_.ReadOne("SELECT MAX(ID) FROM TOTALSKID");
  const bool first = highest.Eof() || highest.IsNull(0);
  const std::int32_t number = first ? 1 : ToInt32(highest.Field(0).Number() + 1);
  PutDefaults();
  LabelCod.Caption = std::to_string(number);
  BeginEntry();
  CmdNew.Enabled = false;
}

void frmVDk::CmdEdit_Click() {
  if (!Rules().IsOpen()) return ShowRules();  // it couldn't be read before, and no rule was seen in it
  if (Rules().RecordCount() == 0) return;
  // A rule that lacks a value fails here, while it is still in the table.
  const std::string id = Rules().Field(0).Text();
  const std::string kind = Rules().Field(1).Text();
  const std::string category = Rules().Field(2).Text();
  const std::string percentage = Rules().Field(3).Text();
  const std::string threshold = Rules().Field(4).Text();
  // Out of the table first: a rule that couldn't be deleted and was written all the same would stand there twice.
  session_.Write(fmt::format("DELETE FROM TOTALSKID WHERE ID={}", id));
  LabelCod.Caption = id;
  Text1.Text = kind;
  Combo1.Text = category;
  Text2.Text = percentage;
  Text3.Text = threshold;
  BeginEntry();
  ShowRules();
}

void frmVDk::BeginEntry() {
  OpenFields(true);
  CmdOk.Enabled = true;
  CmdDel.Enabled = false;
  CmdEdit.Enabled = false;
  Select(Text2);
}

void frmVDk::CmdOk_Click() {
  const RegionalFormat& format = session_.Format();
  for (TextBox* box : {&Text1, &Text2, &Text3}) {
    if (format.IsNumeric(box->Text())) continue;
    Tell("Введите числовое значение!");
    return Select(*box);
  }
  const std::int16_t kind = ToInt16(format.ToNumber(Text1.Text()));
  if (kind <= kHighestPercentage) {
    Tell("Код Вида Дисконтной карты должен быть > 100!");
    if (kind >= 1) Text1.Text = std::to_string(kind + kPercentageToKind);
    return Select(Text1);
  }
  const std::int16_t percentage = ToInt16(format.ToNumber(Text2.Text()));
  const std::int32_t threshold = ToInt32(format.ToNumber(Text3.Text()));
  session_.Write(fmt::format("INSERT INTO TOTALSKID (ID,CARD,TOV,PROZ,TOTAL) VALUES ({},{},{},{},{})",
                             LabelCod.Caption(), kind, Combo1.Text(), percentage, threshold));
  // The entry is over before the list is read again: whatever becomes of that, the rule must not be written twice.
  for (Button* button : {&CmdDel, &CmdNew, &CmdEdit}) button->Enabled = true;
  CmdOk.Enabled = false;
  PutDefaults();
  LabelCod.Caption = "";
  OpenFields(false);
  DataGrid05.SetFocus();
  ShowRules();
}

void frmVDk::CmdDel_Click() {
  if (!Rules().IsOpen()) return ShowRules();
  session_.Write(fmt::format("DELETE FROM TOTALSKID WHERE ID={}", Rules().Field(0).TextOrEmpty()));
  PutDefaults();
  OpenFields(false);
  ShowRules();
}

void frmVDk::PutDefaults() {
  Text1.Text = std::to_string(kFirstKind);
  Combo1.Text = "0";
  Text2.Text = "0";
  Text3.Text = "0";
}

void frmVDk::OpenFields(bool open) {
  for (TextBox* box : {&Text1, &Text2, &Text3}) box->Enabled = open;
  Combo1.Enabled = open;
}

void frmVDk::Tell(const std::string& message) {
  TheDesktop().MsgBox(message, BoxIcon::kCritical, BoxButtons::kOk, std::string(kBoxTitle));
}

void frmVDk::Select(TextBox& box) {
  box.SetFocus();
  box.SelectAll();
}

}  // namespace zrt
