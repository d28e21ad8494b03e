#include "reports/form_tab_ost.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/numbers.h"
#include "ui/desktop.h"

namespace zrt {

namespace {

constexpr std::string_view kProducts = "SELECT DISTINCT COD,NAME,BARCODE,PRISE,N5 FROM TOVAR";
/// By the option that is on.
constexpr std::array kOrders = {" ORDER BY NAME", " ORDER BY COD", " ORDER BY PRISE,NAME", " ORDER BY N5,NAME"};
enum ProductField { kCod, kName, kBarcode, kPrise };

constexpr std::size_t kColumns = 9;
constexpr std::size_t kNameColumn = 2;
constexpr std::size_t kSumColumn = 6;
const std::vector<Workbook::ColumnSpan> kWidths = {{1, 1, 4}, {2, 2, 6}, {3, 3, 40}, {4, 4, 18}, {5, 9, 9}};

}  // namespace

FormTabOst::FormTabOst(Desktop& desktop, const TableTools& tools, ModuleReg& stock)
    : TableScreen(desktop, "FormTabOst", tools, true),
      Hours(*this, tools.session),
      Day(*this, tools.session.Format(), "1"),
      stock_(stock) {
  CmdOst.Click = [this] { Output.Run([this] { CmdOst_Click(); }); };
  Complete();
}

void FormTabOst::Form_Load() {
  Hours.Load();
  Hours.ReadStored();
  Option1[0].Choose();
  Day.Set(AddDays(TheSession().TheClock().Now().date, -1));
  Output.Load();
}

void FormTabOst::CmdOst_Click() {
  const std::optional<int> hour = Hours.Hour();
  if (!hour) return;
  Output.ShowQuery();
  const auto chosen = std::find_if(Option1.begin(), Option1.end(), [](const OptionButton& one) { return one.Value(); });
  Recordset products;
  TheSession().BindSet(products,
                       fmt::format("{}{}", kProducts, kOrders.at(static_cast<std::size_t>(chosen - Option1.begin()))));
  Output.ShowBuilding();
  const std::string moment = StockMoment(AddDays(Day.Day(), 1), *hour);
  const std::string day = "на конец смены " + Day.LDate.Caption();
  if (products.RecordCount() == 0) {
    Output.TellNoData();
  } else if (Output.ToWorkbook()) {
    Output.OpenWorkbook({"ОСТАТКИ ТОВАРОВ", day}, [&] { return MakeTable(products, moment, true); }, {kWidths});
  } else {
    Output.SaveCsv("Ostatk_", {";;ОСТАТКИ ТОВАРОВ", ";;" + day}, MakeTable(products, moment, false));
  }
  Output.ShowDone();
}

ReportTable FormTabOst::MakeTable(const Recordset& products, const std::string& moment, bool for_book) {
  // A blank stands behind each number: these tables have always had it, in files and books alike.
  const auto number = [&](double value, int decimals) {
    return TheSession().Format().FormatNumber(value, decimals) + " ";
  };
  ReportTable table;
  table.headers = {
      "№", "Код", "Наименование", "ШтрихКод", "Кол-во", "Цена", "Сумма", for_book ? "ЦенаЗак" : "Цена_зак", "Наценка"};
  table.has_totals = true;
  std::int64_t total = 0;  // thousandths of money
  StopOffer stop(TheDesktop());
  for (int row = 1; row <= products.RecordCount(); ++row) {
    stop.Step();
    const std::int32_t cod = ToInt32(products.At(row, kCod).Number());
    const std::int32_t ost = stock_.GetOstAtDate(cod, moment);
    if (Check1.Value() && ost == 0) continue;
    const std::int32_t buy = stock_.GetPurchasePrice(cod);
    const double prise = products.At(row, kPrise).Number();
    const double sum = prise * ost / scale::kTovarPrise;
    total = static_cast<std::int64_t>(RoundHalfEven(static_cast<double>(total) + sum));
    const double price = prise * scale::kPriceToDocument;
    std::string markup = for_book ? "-100%" : " -100%";
    if (buy != 0) markup = " " + TheSession().Format().FormatNumber(100 * (price / buy - 1), 1) + "%";
    table.rows.push_back({std::to_string(table.rows.size() + 1), std::to_string(cod),
                          products.At(row, kName).TextOrEmpty(), products.At(row, kBarcode).TextOrEmpty(),
                          number(ost / double{scale::kDocument}, 3), number(price / scale::kDocument, 2),
                          number(sum / scale::kDocument, 2), number(buy / double{scale::kDocument}, 2), markup});
  }
  std::vector<std::string>& whole = table.rows.emplace_back(kColumns);
  whole[kNameColumn] = "ИТОГО";
  whole[kSumColumn] = number(static_cast<double>(total) / scale::kDocument, 2);
  return table;
}

}  // namespace zrt
