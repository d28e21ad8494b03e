#include "documents/frm_doc_in.h"

#include "core/numbers.h"
#include "ui/desktop.h"

namespace zrt {

namespace {

using Align = GridColumn::Align;

constexpr const char* kLines =
    "SELECT COD As 'Cod',NAME As 'Name',ROUND(OST/1000,3) As 'Balance',ROUND(KOL/1000,3) As 'Actual',"
    "ROUND((KOL-OST)/1000,3) As 'Differ',ROUND(PRC/1000,3) As 'Purshase',ROUND(PRCR/1000,3) As 'Retail',"
    "ROUND((KOL-OST)*PRC/1000000,3) As 'DiffPurshase',ROUND((KOL-OST)*PRCR/1000000,3) As 'DiffRetail',ID FROM "
    "DOCINVENT "
    "WHERE DOC=";

/// Places of the catalogue by the first digit of their code.
struct Place {
  const char* name;
  const char* condition;
};
constexpr std::array<Place, 4> kPlaces = {{{"Бар", " WHERE N2=0"},
                                           {"Кухня1", " WHERE LEFT(N2,1)=1"},
                                           {"Кухня2", " WHERE LEFT(N2,1)=2"},
                                           {"Кухня3", " WHERE LEFT(N2,1)=3"}}};

/// How much of a new document's note the journal takes, behind the moment of the count.
constexpr std::size_t kNewNote = 24;

std::int32_t RetailOf(const Cell& prise) {
  return prise.IsNull() ? 0 : ToInt32(prise.Number() * scale::kPriceToDocument);
}

}  // namespace

frmDocIN::frmDocIN(Desktop& desktop, const DocumentServices& services)
    : OwnLinesDocument(desktop, kDocumentKinds[kind::kInventory], services, "DOCINVENT", kLines) {
  Load = [this] { Form_Load(); };
  CmdDat.Click = [this] { CmdDat_Click(); };
  CmdClear.Click = [this] { CmdClear_Click(); };
  CmdClearFakt.Click = [this] { CmdClearFakt_Click(); };
  CmdDownlFakt.Click = [this] {
    RequireLines();
    LoadCounts();
  };
  CmdExportFakt.Click = [this] { ExportLines(lines_); };
  Complete();
}

void frmDocIN::Form_Load() {
  ComboLoc.AddItem("");
  for (const Place& place : kPlaces) ComboLoc.AddItem(place.name);
}

void frmDocIN::PrepareNew() {
  Caption = Kind().new_caption;
  DocRun = false;
  RunIndicator(false);
  DocSum = 0;
  for (Label* sum : {&*LblSum, &LblSumR, &LblOst, &LblOstR}) sum->Caption = Amount(0);
  OpenLines(-1);
}

void frmDocIN::OpenLines(std::int32_t doc) {
  // Filling and loading work on the copy of a new document; a saved one is counted line by line.
  for (Button* button : {&CmdDat, &CmdClear, &CmdClearFakt, &CmdDownlFakt}) button->Enabled = doc == -1;
  OwnLinesDocument::OpenLines(doc);
}

void frmDocIN::FormatGrid() {
  DataGrid7.Layout({{"Cod", 825, Align::kRight},
                    {"Name", 3600, Align::kLeft},
                    {"Balance", 1125, Align::kRight, "0.000"},
                    {"Actual", 1125, Align::kRight, "0.000"},
                    {"Differ", 1125, Align::kRight, "0.000"},
                    {"Purshase", 1050, Align::kRight, "0.00"},
                    {"Retail", 1050, Align::kRight, "0.00"},
                    {"DiffPurshase", 1275, Align::kRight, "0.00"},
                    {"DiffRetail", 1275, Align::kRight, "0.00"},
                    {"ID", 750, Align::kRight}});
}

void frmDocIN::SumRefresh() {
  const Recordset sums = session_.ReadOne(
      fmt::format("SELECT SUM((KOL-OST)*PRC/1000),SUM((KOL-OST)*PRCR/1000),SUM(KOL*PRC/1000),SUM(KOL*PRCR/1000) FROM "
                  "DOCINVENT WHERE "
                  "DOC={}",
                  LinesDoc()));
  const auto sum = [&](int field) { return sums.IsNull(field) ? 0 : sums.Field(field).Int(); };
  DocSum = sum(1);
  LblSum->Caption = Amount(sum(0));
  LblSumR.Caption = Amount(DocSum);
  LblOst.Caption = Amount(sum(2));
  LblOstR.Caption = Amount(sum(3));
}

void frmDocIN::CmdDat_Click() {
  RequireLines();
  Busy("обработка запроса...");
  std::string sql = "SELECT DISTINCT COD,NAME,PRISE FROM TOVAR";
  for (const Place& place : kPlaces) {
    if (ComboLoc.Text() == place.name) sql += place.condition;
  }
  Recordset products;
  session_.BindSet(products, sql);
  for (; !products.Eof(); products.MoveNext()) {
    const std::int32_t cod = ToInt32(products.Field("COD").Number());
    const std::int32_t ost = stock_.GetOstNow(cod);
    if (ost == 0) continue;
    // An uncounted product shows no difference. Filling twice adds the products twice.
    AddLine(cod, products.Field("NAME").TextOrEmpty(), ost, ost, stock_.GetPurchasePrice(cod),
            RetailOf(products.Field("PRISE")));
  }
  RefreshLines();
  LblInf.Caption = "";
  DataGrid7.SetFocus();
}

void frmDocIN::AddLine(std::int32_t cod, const std::string& name, std::int32_t ost, std::int32_t kol,
                       std::int32_t price, std::int32_t retail) {
  session_.Write(fmt::format("INSERT INTO DOCINVENT (COD,NAME,OST,KOL,PRC,PRCR,DOC) VALUES ({},'{}',{},{},{},{},{})",
                             cod, name, ost, kol, price, retail, LinesDoc()));
}

void frmDocIN::BroadcastReciever(std::int32_t cod, std::int32_t kol, std::int32_t price) {
  if (!TakesLines()) return;
  Recordset product;
  session_.BindSet(product, fmt::format("SELECT COD,NAME FROM DOCINVENT WHERE DOC={} AND COD={}", LinesDoc(), cod));
  if (product.RecordCount() > 0) {
    TheDesktop().MsgBox(fmt::format("Товар {} уже выбран в документе!!! ", product.Field("NAME").TextOrEmpty()),
                        BoxIcon::kCritical);
    return;
  }
  session_.BindSet(product, fmt::format("SELECT DISTINCT COD,NAME,PRISE FROM TOVAR WHERE COD={}", cod));
  if (product.RecordCount() == 0) return;
  if (price == 0) price = stock_.GetPurchasePrice(cod);
  const std::int32_t ost = stock_.GetOstNow(cod);
  const std::int32_t retail = RetailOf(product.Field("PRISE"));
  if (!CountFits(ost, ost, kol, price, retail, kNotAdded)) return;
  AddLine(cod, product.Field("NAME").TextOrEmpty(), ost, kol, price, retail);
  ShowAddedLines();
}

std::string frmDocIN::Question() const {
  return fmt::format("{}\r\rучётный остаток = {}", DataGrid7.CurrentText("Name"), DataGrid7.CurrentText("Balance"));
}

void frmDocIN::ChangeTo(std::int64_t id, std::string_view answer) {
  const std::int32_t kol = ToInt32(session_.Format().ToNumber(answer) * scale::kDocument);
  const auto shown = [this](const char* column) { return ToThousandths(lines_.Field(column)); };
  if (!CountFits(shown("Balance"), shown("Actual"), kol, shown("Purshase"), shown("Retail"), "Количество НЕ изменено."))
    return;
  session_.Write(fmt::format("UPDATE DOCINVENT SET KOL={} WHERE DOC={} AND ID={}", kol, LinesDoc(), id));
}

bool frmDocIN::CountFits(std::int64_t ost, std::int64_t old_kol, std::int64_t kol, std::int64_t prc, std::int64_t prcr,
                         const char* what) {
  const auto value = [ost](std::int64_t count, std::int64_t price) {
    return static_cast<std::int64_t>(static_cast<double>(count - ost) / scale::kDocument * static_cast<double>(price));
  };
  return SumFits(kol - ost, what) && SumFits(value(kol, prc), what) &&
         SumFits(DocSum - value(old_kol, prcr) + value(kol, prcr), what);
}

void frmDocIN::CmdClear_Click() {
  RequireLines();
  session_.Write(fmt::format("DELETE FROM DOCINVENT WHERE DOC={}", LinesDoc()));
  RefreshLines();
}

void frmDocIN::CmdClearFakt_Click() {
  RequireLines();
  // Once would do; once for each line is what it has always been, and does no harm.
  for (int line = 1; line <= lines_.RecordCount(); ++line) session_.Write("UPDATE DOCINVENT SET KOL=0 WHERE DOC=-1");
  RefreshLines();
}

void frmDocIN::MonthClicked() {
  SetDay(Month0.Value());
  Month0.Visible = false;
}

void frmDocIN::SetDay(const std::optional<Date>& day) {
  const bool end_of_day =
      TheDesktop().MsgBox("Поместить документ в конец дня (23:59)?", BoxIcon::kQuestion, BoxButtons::kOkCancel,
                          "Время документа ИНВЕНТАРИЗАЦИЯ") == BoxAnswer::kOk;
  // The clock is read after the answer: the question may have stood there for a while.
  DateTime moment = session_.TheClock().Now();
  if (day) moment.date = *day;
  if (end_of_day) {
    moment.hour = 23;
    moment.minute = 59;
    moment.second = 0;
  }
  SetDate(moment);
}

void frmDocIN::TakePresentDate() {
  SetDay(std::nullopt);
}

std::string frmDocIN::InsertHeadStatement(const std::string& date, const std::string& control) {
  return fmt::format(
      "INSERT INTO JOURNAL (DTYPE,DATEDOC,SUMM,KLIENT,PRIM,CNTRL,RUN,REZ) VALUES ('ИНВЕНТАРИЗАЦИЯ','{}',{},'','сформ "
      "{} "
      "{}',{},NULL,0)",
      date, DocSum, NowText(), PrimText(kNewNote), control);
}

std::string frmDocIN::UpdateHeadStatement(const std::string& date) {
  return fmt::format("UPDATE JOURNAL SET SUMM={},PRIM='{}',DATEDOC='{}' WHERE ID={}", DocSum, PrimText(), date, DocId);
}

void frmDocIN::WriteRegister(const std::string& date) {
  session_.Write(fmt::format("DELETE FROM REGISTR WHERE DOC={}", DocId));
  for (int row = 1; row <= lines_.RecordCount(); ++row) {
    const Cell difference = lines_.At(row, lines_.FieldIndex("Differ"));
    // Half a unit and less enters no register row, though it is shown and counted in the sums.
    if (ToInt32(difference.Number()) == 0) continue;
    session_.Write(
        fmt::format("INSERT INTO REGISTR (DOC,DOCTYP,COD,KOL,SUMM,OSTKOL,KARD,DATEDOC,DOCNEXT,DATENEXT,RUN,REZ) VALUES "
                    "({},4,{},{},{},0,0,'{}',NULL,NULL,0,0)",
                    DocId, ToInt32(lines_.At(row, 0).Number()), ToThousandths(difference),
                    ToThousandths(lines_.At(row, lines_.FieldIndex("DiffPurshase"))), date));
  }
}

}  // namespace zrt
