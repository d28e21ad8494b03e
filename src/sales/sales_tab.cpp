#include "sales/sales_tab.h"

#include <fmt/format.h>

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/errors.h"
#include "core/numbers.h"
#include "core/shift_hour.h"
#include "core/text.h"
#include "platform/text_file.h"
#include "sales/operator_input.h"
#include "sales/sales_csv.h"
#include "ui/desktop.h"

namespace zrt {

namespace {

using Align = GridColumn::Align;

constexpr std::string_view kWorking = "обработка запроса...";
/// What LblInf says after the date for each excise filter.
constexpr std::array<std::string_view, 4> kExciseSuffix = {"", " Алкоголь", " Сигареты", " НЕ акциз"};
/// What LblInf says of the whole period for each excise filter.
constexpr std::array<std::string_view, 4> kWholePeriodText = {"за весь период", "за весь период: Алкоголь",
                                                              "за весь период: Сигареты", "за весь период: НЕ акциз"};
/// What a file's title says for each excise filter. Its words for 2 and 3 aren't those of the screen: whoever
/// reads the files is used to them.
constexpr std::array<std::string_view, 4> kExciseInTitle = {"", " (Алкоголь)", " (не Акциз)", ""};

/// Which filters fit a big grid.
struct FiltersOfGrid {
  bool not_closed, order, card, product;
};
constexpr std::array kFiltersOfGrid = {
    FiltersOfGrid{.not_closed = true, .order = true, .card = true, .product = true},
    FiltersOfGrid{.not_closed = false, .order = false, .card = false, .product = true},
    FiltersOfGrid{.not_closed = true, .order = false, .card = true, .product = false}};

constexpr auto kSalesLayout = std::to_array<ColumnLayout>({{"Cod", 600, Align::kRight},
                                                           {"Name", 2550, Align::kLeft},
                                                           {"Value", 780, Align::kRight, "0.000"},
                                                           {"Price", 825, Align::kRight, "0.00"},
                                                           {"Dscnt", 750, Align::kRight, "0.000"},
                                                           {"Summ", 975, Align::kRight, "0.000"},
                                                           {"Pers", 480, Align::kRight},
                                                           {"DateTime", 1950, Align::kLeft},
                                                           {"Ter", 525, Align::kRight},
                                                           {"Num", 750, Align::kRight},
                                                           {"Card", 675, Align::kRight},
                                                           {"fisk", 525, Align::kRight},
                                                           {"Status", 1500, Align::kLeft}});

constexpr auto kDeletionsLayout = std::to_array<ColumnLayout>({{"Cod", 750, Align::kRight},
                                                               {"Name", 3000, Align::kLeft},
                                                               {"Value", 900, Align::kRight},
                                                               {"Price", 900, Align::kRight, "0.00"},
                                                               {"DateTime", 1950, Align::kLeft},
                                                               {"Ter", 525, Align::kRight},
                                                               {"Num", 750, Align::kRight},
                                                               {"Person", 2250, Align::kLeft}});

constexpr auto kOrderDetailLayout = std::to_array<ColumnLayout>({{"Ter", 525, Align::kRight},
                                                                 {"Num", 750, Align::kRight},
                                                                 {"Stl", 450, Align::kRight},
                                                                 {"cod", 480, Align::kRight},
                                                                 {"Operation", 750, Align::kLeft},
                                                                 {"Summ", 870, Align::kRight, "0.00"},
                                                                 {"Dscnt", 690, Align::kRight, "0.000"},
                                                                 {"Pay", 870, Align::kRight, "0.00"},
                                                                 {"Card", 600, Align::kRight},
                                                                 {"StartOrder", 1950, Align::kLeft},
                                                                 {"EndOrder", 1950, Align::kLeft},
                                                                 {"Complete", 2400, Align::kLeft},
                                                                 {"OrderPaid", 1950, Align::kLeft}});

constexpr auto kOrdersLayout = std::to_array<ColumnLayout>({{"Summ", 870, Align::kRight, "0.00"},
                                                            {"Dscnt", 690, Align::kRight, "0.000"},
                                                            {"Pay", 870, Align::kRight, "0.00"},
                                                            {"cod", 450, Align::kRight},
                                                            {"Operation", 750, Align::kLeft},
                                                            {"DateTime", 1900, Align::kLeft},
                                                            {"Ter", 525, Align::kRight},
                                                            {"Num", 750, Align::kRight},
                                                            {"Status", 1500, Align::kLeft}});

}  // namespace

SalesTab::SalesTab(Form& form, Session& session, const DriveMap& drives)
    : FormSection(form), session_(session), drives_(drives) {
  for (int item = 0; item < static_cast<int>(CmdDG.size()); ++item) {
    CmdDG[static_cast<std::size_t>(item)].Click = [this, item] { DG_Swith(item, true); };
  }
  Combo1.Click = [this] { Combo1_Click(); };
  Combo2.Click = [this] { Combo2_Click(); };
  CmdPlus.Click = [this] { CmdPlus_Click(); };
  Month0.DateClick = [this] { Month0_DateClick(); };
  CmdDat.Click = [this] { CmdDat_Click(); };
  CmdAll.Click = [this] { CmdAll_Click(); };
  CmdTerm.Click = [this] { CmdTerm_Click(); };
  CmdOfc.Click = [this] { CmdOfc_Click(); };
  CmdFiltr.Click = [this] { CmdFiltr_Click(); };
  CmdDKart.Click = [this] { CmdDKart_Click(); };
  CmdNOpl.Click = [this] { CmdNOpl_Click(); };
  CmdFisk.Click = [this] { CmdFisk_Click(); };
  CmdFilCheck.Click = [this] { CmdFilCheck_Click(); };
  CmdFileCSV.Click = [this] { CmdFileCSV_Click(); };
  Dir1.KeyDown = [this](Key& key) { Dir1_KeyDown(key); };
  Drive1.Change = [this] { Drive1_Change(); };

  // Enter in the order's field calls the handler itself and so works over every table; the product's presses its
  // button, which may be off.
  Text1.KeyDown = [this](Key& key) { FieldKey(key, [this] { CmdFiltr.UserClick(); }); };
  Text2.KeyDown = [this](Key& key) { FieldKey(key, [this] { CmdFilCheck_Click(); }); };
  Text3.KeyDown = [this](Key& key) { FieldKey(key, [this] { CmdOfc.UserClick(); }); };
  CmdFiltr.KeyDown = [this](Key& key) { FieldKey(key, [this] { CmdFiltr.UserClick(); }); };

  sales::OnRowChosen(DataGrid3, [this] { TakeSoldLine(); });
  sales::OnRowChosen(DataGrid11, [this] { TakeDeletion(); });
  sales::OnRowChosen(DataGrid2, [this] { OpenOrderOf(DataGrid2); });
  sales::OnRowChosen(DataGrid4, [this] { OpenOrderOf(DataGrid4); });
}

void SalesTab::CalcShiftPeriod() {
  zrt::CalcShiftPeriod(TextDate.Caption(), Combo1.Text(), session_.Format(), session_.ShiftPeriod);
}

void SalesTab::FirstFill() {
  const std::string shift = sales::Within("DATETIME", session_.ShiftPeriod);
  const std::string orders = " AND " + sales::Within("PROD.DATETIME", session_.ShiftPeriod);

  // No terminal has the number 0: these two begin empty and wait for the operator's choice.
  OpenDeletions(" WHERE SPION.TER=0");
  OpenOrderDetail(" AND KASSA.TER=0");
  OpenSales(" WHERE " + shift);
  OpenOrders(orders);
  ShowTotal(fmt::format("{} WHERE {}{}", sales::kTotal, shift, sales::kSalesTail));
}

void SalesTab::FillCombos() {
  for (const std::string& hour : ShiftHours()) Combo1.AddItem(hour);
  for (const std::string_view excise : {"Всего", "Алкоголь", "Сигареты", "НЕакциз"})
    Combo2.AddItem(std::string(excise));
  Combo2.Text = "Всего";
  ExciseFilter = 0;
}

void SalesTab::DG_Swith(int index, bool load) {
  CalcShiftPeriod();
  LblInf.Caption = std::string(kWorking);
  LblInf.Repaint();

  const std::array<DataGrid*, 3> grids = {&DataGrid3, &DataGrid11, &DataGrid2};
  for (std::size_t i = 0; i < grids.size(); ++i) {
    const bool shown = i == static_cast<std::size_t>(index);
    grids[i]->Visible = shown;
    grids[i]->Enabled = shown;
  }
  const FiltersOfGrid& filters = kFiltersOfGrid.at(static_cast<std::size_t>(index));
  CmdNOpl.Enabled = filters.not_closed;
  CmdFilCheck.Enabled = filters.order;
  CmdDKart.Enabled = filters.card;
  CmdFiltr.Enabled = filters.product;
  CurrentGrid = index;

  if (load && session_.PeriodAll) {
    CmdAll_Click();
  } else if (load) {
    CmdDat_Click();
  }
  grids[static_cast<std::size_t>(index)]->SetFocus();
}

void SalesTab::Combo1_Click() {
  StoreShiftHour(session_, Combo1.Text());
}

void SalesTab::Combo2_Click() {
  ExciseFilter = Combo2.ListIndex();
}

void SalesTab::CmdPlus_Click() {
  if (Combo1.Text().empty()) {
    TheDesktop().MsgBox("Не установлено начало смены!!!", BoxIcon::kCritical);
    return;
  }
  Month0.Value = ParseDate(TextDate.Caption()).value_or(session_.TheClock().Now().date);
  Month0.Visible = true;
}

void SalesTab::Month0_DateClick() {
  session_.StoredDate = Month0.Value();
  TextDate.Caption = session_.Format().DateText(session_.StoredDate);
  Month0.Visible = false;
  session_.PeriodAll = false;
  CmdDat.Enabled = true;
  CmdDat.SetFocus();
}

void SalesTab::CmdDat_Click() {
  try {
    Month0.Visible = false;
    BeginQuery(sales::kOfShift);
    CalcShiftPeriod();

    const Shift& shift = session_.ShiftPeriod;
    const std::string excise = sales::ExciseCondition(ExciseFilter);
    const std::string sold =
        fmt::format(" WHERE {}{}{}", sales::Within("DATETIME", shift), excise.empty() ? "" : " AND ", excise);
    const std::string orders = " AND " + sales::Within("PROD.DATETIME", shift);
    switch (CurrentGrid) {
      case 0:
        OpenSales(sold);
        break;
      case 1:
        OpenDeletions(" WHERE " + sales::DeletedOn(TextDate.Caption()));
        break;
      default:
        OpenOrderDetail(orders);
        break;
    }
    OpenOrders(orders);
    ShowTotal(fmt::format("{}{}{}", sales::kTotal, sold, sales::kSalesTail));

    session_.PeriodAll = false;
    LblInf.Caption = fmt::format("{}{}", TextDate.Caption(), kExciseSuffix.at(static_cast<std::size_t>(ExciseFilter)));
  } catch (const Error& error) {
    // The label keeps saying that the query is under way: the operator sees that what stands below is not the answer.
    TheDesktop().TellFailure("Неправильно введена дата!", error);
  }
}

void SalesTab::CmdAll_Click() {
  TextDate.Caption = session_.Format().DateText(session_.StoredDate);
  LblKol.Caption = {};
  BeginQuery(sales::kWholePeriod);

  try {
    OpenWholePeriod();
  } catch (const Error&) {
    // What is shown is still the whole period if it was before: the label mustn't speak of one day of it.
    if (session_.PeriodAll) TextDate.Caption = "весь период";
    throw;
  }

  TextDate.Caption = "весь период";
  LblInf.Caption = std::string(kWholePeriodText.at(static_cast<std::size_t>(ExciseFilter)));
  CmdDat.Enabled = false;
  Month0.Visible = false;
  session_.PeriodAll = true;
}

void SalesTab::OpenWholePeriod() {
  const std::string narrowed = sales::ExciseCondition(ExciseFilter);
  switch (CurrentGrid) {
    case 0:
      OpenSales(narrowed.empty() ? "" : " WHERE " + narrowed);
      break;
    case 1:
      OpenDeletions("");
      break;
    default:
      OpenOrderDetail("");
      break;
  }
  OpenOrders("");
}

void SalesTab::CmdTerm_Click() {
  FilterByField(sales::kByTerminal);
}

void SalesTab::CmdOfc_Click() {
  FilterByField(sales::kByCashier);
}

void SalesTab::CmdFiltr_Click() {
  FilterByField(sales::kByProduct);
}

void SalesTab::CmdDKart_Click() {
  FilterByField(sales::kByCard);
}

void SalesTab::CmdNOpl_Click() {
  CalcShiftPeriod();
  RunFilter(sales::kNotClosed);
}

void SalesTab::CmdFisk_Click() {
  const std::size_t ticked = (CheckFP1.Value() ? 1U : 0U) + (CheckFP2.Value() ? 2U : 0U);
  if (ticked == 0) {
    TheDesktop().MsgBox("Выберите фискальный регистратор!", BoxIcon::kNone, BoxButtons::kOk, "DESKOR");
    return;
  }
  // A day picked since the last query counts only after CmdDat: this filter stays within the period last shown.
  const sales::FiscalFilter& fiscal = sales::kFiscal.at(ticked);
  RunFilter(fiscal.filter, fmt::format(" фискальные{}", fiscal.name));
}

void SalesTab::CmdFilCheck_Click() {
  if (!sales::HoldsNumber(Text2, "Введите номер заказа!")) return;
  if (!sales::HoldsNumber(Text7, "Введите номер терминала!")) return;
  const std::string order = Text2.Text();
  // Of a longer number the last two digits are the terminal's.
  const int terminal = ToByte(session_.Format().ToNumber(Right(Text7.Text(), 2)));

  BeginQuery(sales::kOneOrder);
  DG_Swith(0, false);
  // An order is shown whole, whatever the period.
  const std::string lines = fmt::format(" WHERE NUM = {} AND TER={}", order, terminal);
  OpenSales(lines);
  OpenOrders(fmt::format(" AND KASSA.NUM = {} AND KASSA.TER={}", order, terminal));
  ShowTotal(fmt::format("{}{}", sales::kTotalWithQuantity, lines));
  ClearFieldsBut({sales::Field::kOrder, sales::Field::kTerminal});
  LblInf.Caption = "заказ № " + order;
}

void SalesTab::CmdFileCSV_Click() {
  if (!Dir1.Visible()) {
    ShowFolders(true);
    Dir1.SetFocus();
    return;
  }
  SaveTable();
  ShowFolders(false);
  CmdFileCSV.SetFocus();
}

void SalesTab::Dir1_KeyDown(Key& key) {
  if (key.code == Key::kEnter) {
    key.swallow = true;
    CmdFileCSV_Click();
  } else if (key.code == Key::kEscape) {
    key.swallow = true;
    ShowFolders(false);
    CmdFileCSV.SetFocus();
  }
}

void SalesTab::Drive1_Change() {
  Dir1.Path = Drive1.Drive() + "\\";
}

void SalesTab::FieldKey(Key& key, const std::function<void()>& click) {
  if (key.code == Key::kEnter) {
    key.swallow = true;
    click();
  } else if (key.code == Key::kEscape) {
    key.swallow = true;
    form_.Hide();
  }
}

void SalesTab::TakeSoldLine() {
  Text1.Text = DataGrid3.CurrentText("Cod");
  Text2.Text = DataGrid3.CurrentText("Num");
  Text3.Text = DataGrid3.CurrentText("Pers");
  Text5.Text = DataGrid3.CurrentText("Card");
  Text7.Text = DataGrid3.CurrentText("Ter");
  CmdFiltr.SetFocus();
}

void SalesTab::TakeDeletion() {
  Text1.Text = DataGrid11.CurrentText("Cod");
  Text3.Text = DataGrid11.CurrentText("Num");  // where the cashier's filter looks for it
  Text7.Text = DataGrid11.CurrentText("Ter");
  CmdFiltr.SetFocus();
}

void SalesTab::OpenOrderOf(const DataGrid& grid) {
  ClearFieldsBut({sales::Field::kOrder, sales::Field::kTerminal});
  Text2.Text = grid.CurrentText("Num");
  Text7.Text = grid.CurrentText("Ter");
  CmdFilCheck_Click();
}

void SalesTab::RunFilter(const sales::Filter& filter, std::string_view suffix) {
  BeginQuery(filter);

  const std::string value = filter.field ? Box(*filter.field).Text() : std::string();
  std::string sold = sales::Filled(filter.sold, value);
  std::string deleted = sales::Filled(filter.deleted, value);
  std::string ordered = sales::Filled(filter.ordered, value);
  if (!session_.PeriodAll) {
    sold += " AND " + sales::Within("DATETIME", session_.ShiftPeriod);
    deleted += " AND " + sales::DeletedOn(TextDate.Caption());
    ordered += " AND " + sales::Within("PROD.DATETIME", session_.ShiftPeriod);
  }
  if (CurrentGrid == 0) OpenSales(sold);
  if (CurrentGrid == 1 && !filter.deleted.empty()) OpenDeletions(deleted);
  if (CurrentGrid == 2 && !filter.ordered.empty()) OpenOrderDetail(ordered);
  if (!filter.ordered.empty()) OpenOrders(ordered);
  ShowTotal(fmt::format("{}{}{}", filter.total, sold, sales::kSalesTail));

  ClearFieldsBut({filter.field});
  LblInf.Caption = fmt::format("{}{}", TextDate.Caption(), suffix);
}

void SalesTab::FilterByField(const sales::Filter& filter) {
  CalcShiftPeriod();
  if (sales::HoldsNumber(Box(filter.field.value()), "Введите целое числовое значение!")) RunFilter(filter);
}

TextBox& SalesTab::Box(sales::Field field) {
  switch (field) {
    case sales::Field::kProduct:
      return Text1;
    case sales::Field::kOrder:
      return Text2;
    case sales::Field::kCashier:
      return Text3;
    case sales::Field::kCard:
      return Text5;
    case sales::Field::kTerminal:
      break;
  }
  return Text7;
}

void SalesTab::ClearFieldsBut(std::initializer_list<std::optional<sales::Field>> kept) {
  for (const sales::Field field : sales::kFields) {
    if (std::find(kept.begin(), kept.end(), field) == kept.end()) Box(field).Text = {};
  }
}

void SalesTab::BeginQuery(const sales::Filter& filter) {
  filter_ = &filter;
  LblInf.Caption = std::string(kWorking);
  LblSum.Caption = {};
  // Draws the whole window, so once is enough for both labels.
  LblInf.Repaint();
}

void SalesTab::OpenSales(const std::string& pieces) {
  Open(session_.Pool().RsSales, fmt::format("{}{}{}", sales::kSales, pieces, sales::kSalesTail), DataGrid3,
       kSalesLayout);
}

void SalesTab::OpenDeletions(const std::string& pieces) {
  Open(session_.Pool().RsDeletions, fmt::format("{}{}", sales::kDeletions, pieces), DataGrid11, kDeletionsLayout);
}

void SalesTab::OpenOrderDetail(const std::string& pieces) {
  Open(session_.Pool().RsOrderDetail, fmt::format("{}{}{}", sales::kOrderDetail, pieces, sales::kOrderTail), DataGrid2,
       kOrderDetailLayout);
}

void SalesTab::OpenOrders(const std::string& pieces) {
  Open(session_.Pool().RsOrders, fmt::format("{}{}{}", sales::kOrders, pieces, sales::kOrderTail), DataGrid4,
       kOrdersLayout);
}

void SalesTab::Open(Recordset& set, const std::string& sql, DataGrid& grid, std::span<const ColumnLayout> layout) {
  session_.BindSet(set, sql);
  grid.Bind(set);
  grid.Layout(layout);
  Session::ShowLastRow(set);
}

void SalesTab::ShowTotal(const std::string& sql) {
  Recordset& totals = session_.Pool().RsTotals;
  session_.BindSet(totals, sql);
  const auto shown = [&](int field, int decimals) {
    if (field >= totals.FieldCount() || totals.IsNull(field)) return std::string();
    return session_.Format().FormatNumber(totals.Field(field).Number() / scale::kProd, decimals);
  };
  LblSum.Caption = shown(0, 2);
  LblKol.Caption = shown(1, 3);
}

void SalesTab::SaveTable() {
  struct Table {
    Recordset& set;
    DataGrid& grid;
    std::span<const ColumnLayout> layout;
    std::string name;
  };
  RecordsetPool& pool = session_.Pool();
  const std::array<Table, 3> tables = {{{pool.RsSales, DataGrid3, kSalesLayout, fmt::format("Prod{}", filter_->word)},
                                        {pool.RsDeletions, DataGrid11, kDeletionsLayout, "Delete"},
                                        {pool.RsOrderDetail, DataGrid2, kOrderDetailLayout, "Zakaz"}}};
  const Table& table = tables.at(static_cast<std::size_t>(CurrentGrid));
  const RegionalFormat& format = session_.Format();

  table.set.Requery();
  table.grid.Layout(table.layout);
  if (table.set.RecordCount() == 0) {
    TheDesktop().MsgBox("Нет данных!", BoxIcon::kCritical);
    return;
  }
  const std::string name = table.name + "_" + FileStamp(format.DateTimeText(session_.TheClock().Now()));
  const std::string path = JoinPath(Dir1.Path(), name + ".csv");
  TextFileWriter file(drives_, path);
  switch (CurrentGrid) {
    case 0:
      sales::WriteSales(file, table.set, format, SalesTitle(name), LblSum.Caption());
      break;
    case 1:
      sales::WriteDeletions(file, table.set, format);
      break;
    default:
      sales::WriteOrderDetail(file, table.set, format);
      break;
  }
  file.Close();
  TheDesktop().TellWritten(
      {.text = "Выгрузка в файл " + path + "\nуспешно завершена!", .icon = BoxIcon::kExclamation, .title = "DESKOR"},
      path);
}

std::string SalesTab::SalesTitle(const std::string& file_name) {
  const RegionalFormat& format = session_.Format();
  const Recordset& lines = session_.Pool().RsSales;
  const auto of_line = [&](std::string_view column) { return lines.Field(column).Display(format); };
  const auto first_sale = [&] {
    const Recordset first = session_.ReadOne(std::string(sales::kFirstSold));
    return first.Field("DATETIME").Display(format);
  };
  const std::string now = format.DateTimeText(session_.TheClock().Now());
  return fmt::format(
      fmt::runtime(filter_->title), fmt::arg("value", filter_->field ? Box(*filter_->field).Text() : std::string()),
      fmt::arg("date", TextDate.Caption()),
      fmt::arg("excise", kExciseInTitle.at(static_cast<std::size_t>(ExciseFilter))), fmt::arg("file", file_name),
      fmt::arg("number", of_line("Num")), fmt::arg("moment", of_line("DateTime")), fmt::arg("terminal", of_line("Ter")),
      fmt::arg("now", now), fmt::arg("first", filter_ == &sales::kWholePeriod ? first_sale() : std::string()));
}

void SalesTab::ShowFolders(bool shown) {
  Drive1.Visible = shown;
  Dir1.Visible = shown;
}

}  // namespace zrt
