#include "documents/frm_doc_in.h"

#include <fmt/format.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/numbers.h"
#include "ui/desktop.h"

namespace zrt {

namespace {

using Align = GridColumn::Align;

constexpr std::string_view kLines =
    "SELECT COD As 'Cod',NAME As 'Name',ROUND(OST/1000,3) As 'Balance',ROUND(KOL/1000,3) As 'Actual',"
    "ROUND((KOL-OST)/1000,3) As 'Differ',ROUND(PRC/1000,3) As 'Purshase',ROUND(PRCR/1000,3) As 'Retail',"
    "ROUND((KOL-OST)*PRC/1000000,3) As 'DiffPurshase',ROUND((KOL-OST)*PRCR/1000000,3) As 'DiffRetail',ID FROM "
    "DOCINVENT "
    "WHERE DOC=";

/// Places of the catalogue by the first digit of their code.
struct Place {
  std::string_view name;
  std::string_view condition;
};
constexpr std::array<Place, 4> kPlaces = {{{"Бар", " WHERE N2=0"},
                                           {"Кухня1", " WHERE LEFT(N2,1)=1"},
                                           {"Кухня2", " WHERE LEFT(N2,1)=2"},
                                           {"Кухня3", " WHERE LEFT(N2,1)=3"}}};

/// How much of a new document's note the journal takes, behind the moment of the count.
constexpr std::size_t kNewNote = 24;

}  // namespace

frmDocIN::frmDocIN(Desktop& desktop, const DocumentServices& services)
    : OwnLinesDocument(desktop, DocType::kInventory, services, kLines) {
  Load = [this] { Form_Load(); };
  CmdDat.Click = [this] { CmdDat_Click(); };
  CmdClear.Click = [this] { CmdClear_Click(); };
  CmdClearFakt.Click = [this] { CmdClearFakt_Click(); };
  CmdDownlFakt.Click = [this] {
    if (IsUnsaved()) LoadCounts();
  };
  CmdExportFakt.Click = [this] {
    RequireLines();
    ExportLines(lines_);
  };
  Complete();
}

void frmDocIN::Form_Load() {
  ComboLoc.AddItem("");
  for (const Place& place : kPlaces) ComboLoc.AddItem(std::string(place.name));
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
  static constexpr auto kLayout = std::to_array<ColumnLayout>({{"Cod", 825, Align::kRight},
                                                               {"Name", 3600, Align::kLeft},
                                                               {"Balance", 1125, Align::kRight, "0.000"},
                                                               {"Actual", 1125, Align::kRight, "0.000"},
                                                               {"Differ", 1125, Align::kRight, "0.000"},
                                                               {"Purshase", 1050, Align::kRight, "0.00"},
                                                               {"Retail", 1050, Align::kRight, "0.00"},
                                                               {"DiffPurshase", 1275, Align::kRight, "0.00"},
                                                               {"DiffRetail", 1275, Align::kRight, "0.00"},
                                                               {"ID", 750, Align::kRight}});
  DataGrid7.Layout(kLayout);
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

bool frmDocIN::IsUnsaved() {
  RequireLines();
  return LinesDoc() == -1;
}

void frmDocIN::CmdDat_Click() {
  if (!IsUnsaved()) return;
  Busy("обработка запроса...");
  std::string sql = "SELECT DISTINCT COD,NAME,PRISE FROM TOVAR";
  for (const Place& place : kPlaces) {
    if (ComboLoc.Text() == place.name) sql += place.condition;
  }
  Recordset products;
  session_.BindSet(products, sql);
  for (int row = 1; row <= products.RecordCount(); ++row) {
    const Cell prise = products.At(row, 2);
    NewLine line{.cod = ToInt32(products.At(row, 0).Number()), .name = products.At(row, 1).TextOrEmpty()};
    line.ost = stock_.GetOstNow(line.cod);
    if (line.ost == 0) continue;
    // An uncounted product shows no difference. Filling twice adds the products twice.
    line.kol = line.ost;
    line.retail = prise.IsNull() ? 0 : ToInt32(prise.Number() * scale::kPriceToDocument);
    line.price = stock_.GetPurchasePrice(line.cod);
    store_.Write(line);
  }
  RefreshLines();
  LblInf.Caption = "";
  DataGrid7.SetFocus();
}

std::string frmDocIN::Question() const {
  return fmt::format("{}\r\rучётный остаток = {}", DataGrid7.CurrentText("Name"), DataGrid7.CurrentText("Balance"));
}

void frmDocIN::ChangeTo(std::int64_t id, std::string_view answer) {
  const std::int32_t kol = session_.Format().ToScaled(answer, scale::kDocument);
  const auto shown = [this](std::string_view column) { return ToThousandths(lines_.Field(column)); };
  NewLine line{.kol = kol, .price = shown("Purshase"), .retail = shown("Retail"), .ost = shown("Balance")};
  const std::int64_t old_cost = ToThousandths(lines_.Field("DiffRetail"));
  store_.Appraise(line);
  if (!store_.Fits(line, DocSum - old_cost)) return TellTooLarge("Количество НЕ изменено.");
  session_.Write(fmt::format("UPDATE DOCINVENT SET KOL={} WHERE DOC={} AND ID={}", kol, LinesDoc(), id));
}

void frmDocIN::CmdClear_Click() {
  if (!IsUnsaved()) return;
  store_.DeleteAll();
  RefreshLines();
}

void frmDocIN::CmdClearFakt_Click() {
  if (!IsUnsaved()) return;
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

DocumentHead frmDocIN::NewHead() const {
  DocumentHead head = Head();
  head.prim = fmt::format("сформ {} {}", NowText(), PrimText(kNewNote));
  return head;
}

}  // namespace zrt
