#include "documents/frm_doc_prc.h"

#include "core/numbers.h"
#include "ui/desktop.h"

namespace zrt {

namespace {

using Align = GridColumn::Align;

constexpr const char* kLines =
    "SELECT COD As 'Cod',NAME As 'Name',ROUND(PRC1/1000,3) As 'OldPrice',"
    "ROUND(PRC2/1000,3) As 'NewPrice',ID FROM DOCPRICE WHERE DOC=";
/// How much of a new document's note the journal takes: half of what it takes of a saved one.
constexpr std::size_t kNewNote = 24;

}  // namespace

frmDocPRC::frmDocPRC(Desktop& desktop, const DocumentServices& services)
    : OwnLinesDocument(desktop, kDocumentKinds[kind::kPriceChange], services, "DOCPRICE", kLines) {
  Complete();
}

void frmDocPRC::FormatGrid() {
  DataGrid7.Layout({{"Cod", 900, Align::kRight},
                    {"Name", 4200, Align::kLeft},
                    {"OldPrice", 1350, Align::kRight, "0.00"},
                    {"NewPrice", 1350, Align::kRight, "0.00"},
                    {"ID", 750, Align::kRight}});
}

const char* frmDocPRC::BarcodeQuery() const {
  return "SELECT DISTINCT COD,NAME,BARCODE,PRISE FROM TOVAR WHERE BARCODE=";
}

void frmDocPRC::BroadcastReciever(std::int32_t cod, std::int32_t, std::int32_t price) {
  if (!TakesLines()) return;
  Recordset product = session_.ReadOne(fmt::format("SELECT DISTINCT COD,NAME,PRISE FROM TOVAR WHERE COD={}", cod));
  if (product.RecordCount() == 0) return;
  const double prise = product.Field("PRISE").IsNull() ? 0 : product.Field("PRISE").Number();
  const std::int32_t old_price = ToInt32(prise * scale::kPriceToDocument);
  session_.Write(fmt::format("INSERT INTO DOCPRICE (COD,NAME,PRC1,PRC2,DOC) VALUES ({},'{}',{},{},{})", cod,
                             product.Field("NAME").TextOrEmpty(), old_price, price == 0 ? old_price : price,
                             LinesDoc()));
  ShowAddedLines();
}

std::string frmDocPRC::Question() const {
  return fmt::format("{}\r\rстарая цена = {}", DataGrid7.CurrentText("Name"), DataGrid7.CurrentText("OldPrice"));
}

void frmDocPRC::ChangeTo(std::int64_t id, std::string_view answer) {
  session_.Write(fmt::format("UPDATE DOCPRICE SET PRC2={} WHERE DOC={} AND ID={}",
                             ToInt32(session_.Format().ToNumber(answer) * scale::kDocument), LinesDoc(), id));
}

std::string frmDocPRC::InsertHeadStatement(const std::string& date, const std::string& control) {
  return fmt::format(
      "INSERT INTO JOURNAL (DTYPE,DATEDOC,SUMM,KLIENT,PRIM,CNTRL,RUN,REZ) VALUES "
      "('Переоценка','{}',0,'','{}',{},NULL,0)",
      date, PrimText(kNewNote), control);
}

std::string frmDocPRC::HeadCondition(const std::string& control) const {
  return fmt::format("DTYPE='Переоценка' AND CNTRL={}", control);
}

std::string frmDocPRC::UpdateHeadStatement(const std::string& date) {
  return fmt::format("UPDATE JOURNAL SET PRIM='{}',DATEDOC='{}' WHERE ID={}", PrimText(), date, DocId);
}

void frmDocPRC::PostSaved(const std::string&) {
  UpdateDocument();
  session_.Write(fmt::format("UPDATE JOURNAL SET RUN='OK' WHERE ID={}", DocId));
}

void frmDocPRC::UpdateDocument() {
  ForEachProduct([this](int row, std::int32_t cod) {
    const double price = lines_.At(row, lines_.FieldIndex("NewPrice")).Number();
    session_.Write(fmt::format("UPDATE TOVAR SET PRISE={} WHERE COD={}", ToInt32(price * scale::kTovarPrise), cod));
  });
}

}  // namespace zrt
