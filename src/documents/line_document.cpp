#include "documents/line_document.h"

#include "core/numbers.h"

namespace zrt {

namespace {

using Align = GridColumn::Align;

constexpr const char* kPlainGrid =
    "SELECT COD As 'Cod',NAME As 'Name',ROUND(KOL/1000,3) As 'Value',ROUND(PRISE/1000,3) As 'Retail',"
    "ROUND(COST/1000,3) As 'Summ',ID FROM DOCUMENT WHERE TYP=";
constexpr const char* kIncomingGrid =
    "SELECT COD As 'Cod',NAME As 'Name',ROUND(KOL/1000,3) As 'Value',ROUND(PRISE/1000,3) As 'Purchase',"
    "ROUND(COST/1000,3) As 'Summ',ROUND(REZ/1000,3) As 'Retail',ROUND(REZ/PRISE-1,3) As 'Markup',ID FROM DOCUMENT "
    "WHERE "
    "TYP=";

// Columns 0 to 4: code, name, quantity, price and sum of a line; what takes stock out gets its signs turned back.
constexpr const char* kReopenIn =
    "SELECT DISTINCT REGISTR.COD As 'Cod',TOVAR.NAME,REGISTR.KOL,ROUND(REGISTR.SUMM/REGISTR.KOL*1000),REGISTR.SUMM";
constexpr const char* kReopenOut =
    "SELECT DISTINCT REGISTR.COD As 'Cod',TOVAR.NAME,-REGISTR.KOL,ROUND(REGISTR.SUMM/REGISTR.KOL*1000),-REGISTR.SUMM";
// The retail price is the catalogue's of this moment, not of the invoice's.
constexpr const char* kReopenIncoming =
    "SELECT DISTINCT REGISTR.COD As 'Cod',TOVAR.NAME,REGISTR.KOL,ROUND(REGISTR.SUMM/REGISTR.KOL*1000),REGISTR.SUMM,"
    "TOVAR.PRISE*10";
constexpr const char* kJoin =
    " FROM REGISTR LEFT JOIN TOVAR ON REGISTR.COD=TOVAR.COD WHERE TOVAR.COD1=1 AND REGISTR.DOC={} ORDER BY Cod";

// The write-off and the transfers are valued at purchase prices although their grid says Retail. On an outgoing invoice
// a product without stock stays off the register and keeps its OST; on a write-off it posts and gets a balance.
constexpr LineRules kIncomingRules = {kIncomingGrid, kReopenIncoming, false, false, true, ""};
constexpr LineRules kOutgoingRules = {kPlainGrid, kReopenOut, true, false, false, " AND N6 IS NULL"};
constexpr LineRules kWriteOffRules = {kPlainGrid, kReopenOut, false, true, false, ""};
constexpr LineRules kTransferInRules = {kPlainGrid, kReopenIn, false, true, false, ""};
constexpr LineRules kTransferOutRules = {kPlainGrid, kReopenOut, false, true, false, ""};

std::string Number(const Cell& cell) {
  return cell.IsNull() ? "0" : cell.Text();
}

}  // namespace

LineDocument::LineDocument(Desktop& desktop, const DocumentKind& kind, const DocumentServices& services,
                           const LineRules& rules)
    : DocumentForm(desktop, kind, services), rules_(rules) {}

void LineDocument::OpenLines(std::int32_t doc) {
  doc == -1 ? GetNewTableDoc() : GetTableDoc(doc);
}

void LineDocument::GetNewTableDoc() {
  ReadLines(fmt::format("{}{}", rules_.grid_query, Kind().number));
}

void LineDocument::GetTableDoc(std::int32_t doc) {
  DeleteWorkingCopy();
  Recordset saved;
  session_.BindSet(saved, rules_.reopen_query + fmt::format(kJoin, doc));
  for (; !saved.Eof(); saved.MoveNext()) {
    session_.Write(ReopenLine(saved, saved.IsNull(1) ? DeletedProduct() : saved.Field(1).Text()));
  }
  GetNewTableDoc();
}

std::string LineDocument::ReopenLine(const Recordset& saved, const std::string& name) const {
  const auto number = [&](int field) { return Number(saved.Field(field)); };
  const std::string line = fmt::format("{},'{}',{},{},{}", number(0), name, number(2), number(3), number(4));
  if (rules_.fills_rez) {
    return fmt::format("INSERT INTO DOCUMENT (COD,NAME,KOL,PRISE,COST,REZ,TYP) VALUES ({},{},{})", line, number(5),
                       Kind().number);
  }
  return fmt::format("INSERT INTO DOCUMENT (COD,NAME,KOL,PRISE,COST,TYP) VALUES ({},{})", line, Kind().number);
}

void LineDocument::FormatGrid() {
  DataGrid7.Layout({{"Cod", 900, Align::kRight},
                    {"Name", 4200, Align::kLeft},
                    {"Value", 1200, Align::kRight, "0.000"},
                    {"Purchase", 1200, Align::kRight, "0.00"},
                    {"Price", 1200, Align::kRight, "0.00"},
                    {"Summ", 1350, Align::kRight, "0.00"},
                    {"Retail", 1200, Align::kRight, "0.00"},
                    {"Markup", 1050, Align::kRight, "0.0%"},
                    {"Card", 900, Align::kRight},
                    {"ID", 750, Align::kRight}});
}

void LineDocument::SumRefresh() {
  const Recordset sum = session_.ReadOne(fmt::format("SELECT SUM(COST) FROM DOCUMENT WHERE TYP={}", Kind().number));
  DocSum = sum.IsNull(0) ? 0 : sum.Field(0).Int();
  LblSum->Caption = Amount(DocSum);
}

const char* LineDocument::BarcodeQuery() const {
  return rules_.offers_retail ? "SELECT DISTINCT COD,NAME,BARCODE,PRISE FROM TOVAR WHERE BARCODE="
                              : DocumentForm::BarcodeQuery();
}

void LineDocument::BroadcastReciever(std::int32_t cod, std::int32_t kol, std::int32_t price) {
  if (!TakesLines()) return;
  Recordset product;
  session_.BindSet(product, fmt::format("SELECT DISTINCT COD,NAME,PRISE FROM TOVAR WHERE COD={}", cod));
  if (product.RecordCount() == 0) return;
  if (price == 0 && rules_.zero_price_is_purchase) price = stock_.GetPurchasePrice(cod);
  const double exact_cost = RoundHalfEven(price / 1000.0 * kol);
  const auto cost = static_cast<std::int64_t>(exact_cost);
  if (!SumFits(cost, kNotAdded) || !SumFits(DocSum + cost, kNotAdded)) return;
  const std::string line = fmt::format("{},'{}',{},{},{}", cod, product.Field("NAME").TextOrEmpty(), kol, price, cost);
  if (rules_.fills_rez) {
    const double prise = product.Field("PRISE").IsNull() ? 0 : product.Field("PRISE").Number();
    session_.Write(fmt::format("INSERT INTO DOCUMENT (COD,NAME,KOL,PRISE,COST,REZ,TYP) VALUES ({},{},{})", line,
                               ToInt32(prise * scale::kPriceToDocument), Kind().number));
  } else {
    session_.Write(
        fmt::format("INSERT INTO DOCUMENT (COD,NAME,KOL,PRISE,COST,TYP) VALUES ({},{})", line, Kind().number));
  }
  ShowAddedLines();
}

void LineDocument::ChangeLine() {
  const std::optional<std::int64_t> id = CurrentId();
  if (!id) return;
  constexpr int kName = 1, kValue = 2, kPrice = 3;
  KnownProduct product;
  product.cod = ToInt32(lines_.Field("Cod").Number());
  product.name = lines_.Field(kName).TextOrEmpty();
  product.kol = ToThousandths(lines_.Field(kValue));
  product.price = ToThousandths(lines_.Field(kPrice));
  // The line goes before the dialog comes: leaving the dialog without OK loses it.
  DeleteLineStatement(*id);
  RefreshLines();
  AskFor(product);
}

void LineDocument::DeleteLineStatement(std::int64_t id) {
  session_.Write(fmt::format("DELETE FROM DOCUMENT WHERE TYP={} AND ID={}", Kind().number, id));
}

std::string LineDocument::InsertHeadStatement(const std::string& date, const std::string& control) {
  return fmt::format(
      "INSERT INTO JOURNAL (DTYPE,DATEDOC,SUMM,KLIENT,PRIM,CNTRL,RUN,REZ) VALUES ('{}','{}',{},'{}','{}',{},NULL,0)",
      Kind().dtype, date, DocSum, KlientText(), PrimText(), control);
}

std::string LineDocument::UpdateHeadStatement(const std::string& date) {
  const std::string client = Kind().has_klient ? fmt::format(",KLIENT='{}'", KlientText()) : std::string();
  return fmt::format("UPDATE JOURNAL SET SUMM={}{},PRIM='{}',DATEDOC='{}' WHERE ID={}", DocSum, client, PrimText(),
                     date, DocId);
}

void LineDocument::WriteRegister(const std::string& date) {
  session_.Write(fmt::format("DELETE FROM REGISTR WHERE DOC={}", DocId));
  const int value = HasLines() ? lines_.FieldIndex("Value") : 0;
  const int sum = HasLines() ? lines_.FieldIndex("Summ") : 0;
  for (int row = 1; row <= lines_.RecordCount(); ++row) {
    // A line without quantity stays in the window and never reaches the register.
    if (!(lines_.At(row, value).Number() > 0)) continue;
    const std::int32_t cod = ToInt32(lines_.At(row, 0).Number());
    session_.Write(
        fmt::format("INSERT INTO REGISTR (DOC,DOCTYP,COD,KOL,SUMM,OSTKOL,KARD,DATEDOC,DOCNEXT,DATENEXT,RUN,REZ) VALUES "
                    "({},{},{},{},{},0,{},'{}',NULL,NULL,0,{})",
                    DocId, Kind().number, cod, ToThousandths(lines_.At(row, value), Kind().sign),
                    ToThousandths(lines_.At(row, sum), Kind().sign), Card(row), date,
                    Kind().knows_no_stock ? stock_.GetTovarN6(cod) : 0));
  }
}

void LineDocument::DeleteWorkingCopy() {
  session_.Write(fmt::format("DELETE FROM DOCUMENT WHERE TYP={}", Kind().number));
}

frmDocPrN::frmDocPrN(Desktop& desktop, const DocumentServices& services)
    : LineDocument(desktop, kDocumentKinds[kind::kIncoming], services, kIncomingRules) {
  Complete();
}

frmDocRhN::frmDocRhN(Desktop& desktop, const DocumentServices& services)
    : LineDocument(desktop, kDocumentKinds[kind::kOutgoing], services, kOutgoingRules) {
  Complete();
}

frmDocSP::frmDocSP(Desktop& desktop, const DocumentServices& services)
    : LineDocument(desktop, kDocumentKinds[kind::kWriteOff], services, kWriteOffRules) {
  Complete();
}

TransferDocument::TransferDocument(Desktop& desktop, const DocumentKind& kind, const DocumentServices& services,
                                   const LineRules& rules)
    : LineDocument(desktop, kind, services, rules) {
  CmdDownl.Click = [this] {
    RequireLines();
    LoadFromFile();
  };
}

void TransferDocument::RunIndicator(bool run) {
  LineDocument::RunIndicator(run);
  CmdDownl.Enabled = !run;
}

frmDocPERplus::frmDocPERplus(Desktop& desktop, const DocumentServices& services)
    : TransferDocument(desktop, kDocumentKinds[kind::kTransferIn], services, kTransferInRules) {
  Complete();
}

frmDocPERmin::frmDocPERmin(Desktop& desktop, const DocumentServices& services)
    : TransferDocument(desktop, kDocumentKinds[kind::kTransferOut], services, kTransferOutRules) {
  Complete();
}

}  // namespace zrt
