#include "reports/form_tab_run.h"

#include <fmt/format.h>

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "core/numbers.h"
#include "stock/document_kind.h"
#include "ui/desktop.h"

namespace zrt {

namespace {

constexpr std::string_view kDocuments =
    "SELECT DOCTYP,DOC,DATEDOC,KOL,OSTKOL FROM REGISTR WHERE RUN=1 AND COD={} AND DATEDOC>='{}' AND DATEDOC<'{}' ORDER "
    "BY DATEDOC ASC";
/// Only goods that are kept as stock.
constexpr std::string_view kTurnover =
    "SELECT REGISTR.DOCTYP,REGISTR.COD,TOVAR.NAME,SUM(REGISTR.KOL) FROM REGISTR LEFT JOIN TOVAR ON "
    "REGISTR.COD=TOVAR.COD WHERE TOVAR.COD1=1 AND REGISTR.RUN=1 AND REGISTR.DATEDOC>='{}' AND REGISTR.DATEDOC<'{}' "
    "GROUP "
    "BY REGISTR.COD,REGISTR.DOCTYP ORDER BY REGISTR.COD";

/// Columns of a movement, in the order of the tables.
enum Column : std::size_t { kIncome, kSales, kOtherOut };

/// The kind of a row; nullptr for one that is missing or unknown: it has its place in the table, but neither name nor
/// movement.
const DocumentKind* KindOfRow(const Cell& doctyp) {
  return doctyp.IsNull() ? nullptr : FindKind(doctyp.Int());
}

/// The column that a quantity of the register enters; nothing for what moves nothing. What leaves stock is negative in
/// the register. Transfers move goods too: without them the balance at the end wouldn't follow from the one at the
/// start.
std::optional<Column> ColumnOf(const DocumentKind* kind, std::int64_t kol) {
  if (kind == nullptr) return std::nullopt;
  switch (kind->movement) {
    case Movement::kIncome:
      return kIncome;
    case Movement::kSales:
      return kSales;
    case Movement::kOtherOut:
      return kOtherOut;
    case Movement::kBySign:
      return kol < 1 ? kOtherOut : kIncome;
    case Movement::kNone:
      break;
  }
  return std::nullopt;
}

/// Quantities of the three columns, thousandths.
using Quantities = std::array<std::int64_t, 3>;

/// Adds a quantity of the register to its column; returns what was added.
std::int64_t Add(Quantities& columns, Column column, std::int64_t kol) {
  const std::int64_t shown = column == kIncome ? kol : -kol;
  columns.at(column) += shown;
  return shown;
}

std::string Quantity(std::int64_t thousandths, const RegionalFormat& format) {
  return format.FormatNumber(static_cast<double>(thousandths) / scale::kDocument, 3) + " ";
}

const SheetLook kDocumentLook = {{{1, 1, 20}, {2, 2, 6}, {3, 3, 18}, {4, 8, 11}}};
const SheetLook kTurnoverLook = {{{1, 1, 6}, {2, 2, 40}, {3, 7, 12}}};

}  // namespace

FormTabRun::FormTabRun(Desktop& desktop, const TableTools& tools, ModuleReg& stock, ProductPicker& picker)
    : TableScreen(desktop, "FormTabRun", tools, true), Period(*this, tools.session), stock_(stock), picker_(picker) {
  CmdTov.Click = [this] { picker_.OpenFor(form_code::kMovementReport); };
  CmdRun.Click = [this] { CmdRun_Click(); };
  CmdRunAll.Click = [this] { Output.Run([this] { CmdRunAll_Click(); }); };
  stock_.ConnectReciever(form_code::kMovementReport,
                         [this](std::int32_t cod, std::int32_t, std::int32_t) { BroadcastReciever(cod); });
  Complete();
}

void FormTabRun::Form_Load() {
  cod_.reset();
  Period.Hours.Load();
  Period.Hours.ReadStored();
  Period.SetLatestShift();
  Output.Load();
}

void FormTabRun::BroadcastReciever(std::int32_t cod) {
  if (!IsLoaded()) return;
  const Recordset name = TheSession().ReadOne(fmt::format("SELECT DISTINCT NAME FROM TOVAR WHERE COD={}", cod));
  cod_ = cod;
  LblCod.Caption = std::to_string(cod);
  LblTov.Caption = name.Eof() ? std::string() : name.Field(0).TextOrEmpty();
  CmdRun.Enabled = true;
}

void FormTabRun::CmdRun_Click() {
  if (!cod_) {
    TheDesktop().MsgBox("Не выбран товар!!!", BoxIcon::kCritical);
    return;
  }
  const std::optional<ReportSpan> span = Period.Span();
  if (!span) return;
  Output.ShowQuery();
  const std::string from = StockMoment(span->first, span->hour);
  Recordset documents;
  TheSession().BindSet(documents, fmt::format(kDocuments, *cod_, from, StockMoment(span->last, span->hour)));
  Output.ShowBuilding();
  if (documents.RecordCount() == 0) {
    Output.TellNoData();
  } else {
    Send(
        fmt::format("Tovar_{}", *cod_),
        fmt::format("ДВИЖЕНИЕ ТОВАРА {} {} ПО ДОКУМЕНТАМ", LblCod.Caption(), LblTov.Caption()), *span, ";;",
        [&] { return DocumentTable(documents, *cod_, from); }, kDocumentLook);
  }
  Output.ShowDone();
}

void FormTabRun::CmdRunAll_Click() {
  const std::optional<ReportSpan> span = Period.Span();
  if (!span) return;
  Output.ShowQuery();
  const std::string from = StockMoment(span->first, span->hour);
  const std::string to = StockMoment(span->last, span->hour);
  Recordset turnover;
  TheSession().BindSet(turnover, fmt::format(kTurnover, from, to));
  Output.ShowBuilding();
  if (turnover.RecordCount() == 0) {
    Output.TellNoData();
  } else {
    Send(
        "Tovar_ALL", "ДВИЖЕНИЕ ТОВАРА", *span, ";", [&] { return TurnoverTable(turnover, from, to); }, kTurnoverLook);
  }
  Output.ShowDone();
}

ReportTable FormTabRun::DocumentTable(const Recordset& documents, std::int32_t cod, const std::string& from) {
  enum { kDoctyp, kDoc, kDatedoc, kKol, kOstkol };
  const RegionalFormat& format = TheSession().Format();
  ReportTable table{
      {"Документ", "№", "ДатаВремя", "ОстатокНАЧ", "Приход", "Реализац", "РасходПроч", "ОстатокКОН"}, {}, true};
  const std::int64_t start = stock_.GetOstAtDate(cod, from);
  std::int64_t balance = start;
  Quantities sums{};
  for (int row = 1; row <= documents.RecordCount(); ++row) {
    const DocumentKind* const kind = KindOfRow(documents.At(row, kDoctyp));
    std::array<std::string, 3> moves;
    const std::int64_t kol = documents.At(row, kKol).Int();
    const std::optional<Column> column = ColumnOf(kind, kol);
    if (column) moves.at(*column) = Quantity(Add(sums, *column, kol), format);
    const std::int64_t after = documents.At(row, kOstkol).Int();
    table.rows.push_back({std::string(column ? kind->dtype : ""), documents.At(row, kDoc).Text(),
                          documents.At(row, kDatedoc).Display(format), Quantity(balance, format), moves[kIncome],
                          moves[kSales], moves[kOtherOut], Quantity(after, format)});
    balance = after;
  }
  table.rows.push_back({"ИТОГО", "", "", Quantity(start, format), Quantity(sums[kIncome], format),
                        Quantity(sums[kSales], format), Quantity(sums[kOtherOut], format), Quantity(balance, format)});
  return table;
}

ReportTable FormTabRun::TurnoverTable(const Recordset& turnover, const std::string& from, const std::string& to) {
  enum { kDoctyp, kCod, kName, kKol };
  const RegionalFormat& format = TheSession().Format();
  ReportTable table{{"Код", "Наименование", "ОстатокНАЧ", "Приход", "Реализац", "РасходПроч", "ОстатокКОН"}, {}, false};
  int row = 1;
  StopOffer stop(TheDesktop());
  while (row <= turnover.RecordCount()) {
    stop.Step();
    const std::int32_t cod = ToInt32(turnover.At(row, kCod).Number());
    const std::string name = turnover.At(row, kName).TextOrEmpty();
    Quantities sums{};
    for (; row <= turnover.RecordCount() && turnover.At(row, kCod).Int() == cod; ++row) {
      const std::int64_t kol = turnover.At(row, kKol).Int();
      if (const auto column = ColumnOf(KindOfRow(turnover.At(row, kDoctyp)), kol)) Add(sums, *column, kol);
    }
    table.rows.push_back({std::to_string(cod), name, Quantity(stock_.GetOstAtDate(cod, from), format),
                          Quantity(sums[kIncome], format), Quantity(sums[kSales], format),
                          Quantity(sums[kOtherOut], format), Quantity(stock_.GetOstAtDate(cod, to), format)});
  }
  return table;
}

void FormTabRun::Send(const std::string& prefix, const std::string& title, const ReportSpan& span,
                      const std::string& blanks, const std::function<ReportTable()>& make_table,
                      const SheetLook& look) {
  const RegionalFormat& format = TheSession().Format();
  const std::string period =
      fmt::format("за период с {} по {}", format.DateText(span.first), format.DateText(span.last));
  if (Output.ToWorkbook()) {
    Output.OpenWorkbook({title, period}, make_table, look);
  } else {
    Output.SaveCsv(prefix, {blanks + title, blanks + period}, make_table());
  }
}

}  // namespace zrt
