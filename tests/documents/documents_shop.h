#pragma once

#include <fmt/format.h>

#include <array>
#include <string>
#include <vector>

#include "core/errors.h"
#include "documents/documents.h"
#include "support/program_test.h"

namespace zrt::test {

using Texts = std::vector<std::string>;

/// Two products of the bar and a kitchen, a service, which keeps no stock, and one of another kitchen.
inline constexpr const char* kFourProducts =
    "INSERT INTO TOVAR (COD,COD1,NAME,OST,KOL,PRISE,BARCODE,NDS,REZ,N1,N2,N4,N5,N7,N6,UKT) VALUES "
    "(1,1,'Чай',0,0,12050,'4820000000017',1,0,0,0,0,0,0,NULL,''),"
    "(2,1,'Вино',0,0,95000,'4820000000024',1,0,1,12,0,0,0,NULL,''),"
    "(3,1,'Доставка',0,0,10000,'4820000000031',1,0,0,21,0,0,0,0,''),"
    "(4,1,'Вода',0,0,4000,'0',1,0,0,3,0,0,0,NULL,'')";

/// The program on a small shop, the journal in front.
class DocumentsTest : public ProgramTest {
 protected:
  DocumentsTest() {
    shop_.Sql("UPDATE CONST SET N8=8 WHERE COD=5");
    shop_.Sql(kFourProducts);
    clock_.Set({{2026, 11, 12}, 12, 0, 0});
    Start("jurn");
  }

  Documents& Docs() { return app_->StockDocuments; }
  Menu& MenuOf(DocType type) {
    const std::array<Menu*, 8> menus = {&app_->Main.mnuDocDO,      &app_->Main.mnuDocPN,      &app_->Main.mnuDocRN,
                                        &app_->Main.mnuDocSP,      &app_->Main.mnuDocIN,      &app_->Main.mnuPereozenk,
                                        &app_->Main.mnuDocPERplus, &app_->Main.mnuDocPERminus};
    return *menus[NumberOf(type)];
  }

  void Pick(DocType type, int cod, int kol, int price) {
    desktop_.UserAction([&] { app_->Stock.BroadcastToForm(cod, kol, price, NumberOf(type)); });
  }
  DocumentForm& Open(DocType type) {
    Click(MenuOf(type));
    return Docs().Form(type);
  }
  /// Opens document `id` from the journal by Enter.
  DocumentForm& Reopen(int id) {
    desktop_.UserAction([this] { app_->Main.Journal.Refresh(); });
    DataGrid& journal = app_->Main.Journal.DataGrid6;
    for (int row = 1; row <= journal.Rows(); ++row) {
      if (journal.CellText(row, "Num") != std::to_string(id)) continue;
      desktop_.UserAction([&] { journal.UserRow(row); });
      Press(journal, "Enter");
      return *Docs().FormOf(journal.CellText(row, "Document"));
    }
    throw Error("the journal lacks the document");
  }
  /// Closes a document and answers whether it is to be saved.
  void Leave(DocumentForm& form, BoxAnswer save) {
    if (!form.DocRun) desktop_.Expect("Сохранить документ?", save, BoxIcon::kQuestion);
    Click(form.CancelButton);
  }
  void Post(DocumentForm& form) {
    desktop_.Expect("Провести документ?", BoxAnswer::kOk, BoxIcon::kQuestion);
    Click(form.RUNButton);
  }
  void Unpost(DocumentForm& form) {
    desktop_.Expect("Отменить проведение документа?", BoxAnswer::kOk, BoxIcon::kQuestion);
    Click(*form.mnuUnRun);
  }
  /// The operator was in the main window meanwhile.
  void ComeBack(Form& form) {
    for (Form* front : {static_cast<Form*>(&app_->Main), &form}) {
      desktop_.UserAction([&] { desktop_.Activated(*front); });
    }
  }
  /// The terminals' sales: COD, NAME, KOL, PRISE, SUM2, REZ, DATETIME, TER, NUM.
  void Sell(const std::string& rows) {
    shop_.Sql("INSERT INTO PROD (COD,NAME,KOL,PRISE,SUM2,REZ,DATETIME,TER,NUM) VALUES " + rows);
  }
  /// Cells of a document's lines, separated by blanks.
  static Texts Lines(const DocumentForm& form, const Texts& headers) {
    Texts lines;
    for (int row = 1; row <= form.DataGrid7.Rows(); ++row) {
      std::string& line = lines.emplace_back();
      for (const std::string& header : headers) {
        line += (line.empty() ? "" : " ") + form.DataGrid7.CellText(row, header);
      }
    }
    return lines;
  }
  int LastDocument() { return std::stoi(shop_.Value("SELECT MAX(ID) FROM JOURNAL")); }
  void Now(int day, int hour = 12) { clock_.Set({{2026, 11, day}, hour, 0, 0}); }

  Texts Register(int doc) {
    return shop_.Column(
        fmt::format("SELECT CONCAT_WS(' ',DOCTYP,COD,KOL,SUMM,OSTKOL,KARD,DATEDOC,RUN,REZ) FROM REGISTR "
                    "WHERE DOC={} ORDER BY ID",
                    doc));
  }
  std::string Head(int doc) {
    return shop_.Value(
        fmt::format("SELECT CONCAT_WS('|',DTYPE,DATEDOC,SUMM,KLIENT,PRIM,IFNULL(RUN,'-'),REZ) FROM "
                    "JOURNAL WHERE ID={}",
                    doc));
  }
  /// A document of one line, posted.
  void Give(DocType type, int cod, int kol, int price, int day, int hour = 12) {
    Now(day, hour);
    DocumentForm& form = Open(type);
    Pick(type, cod, kol, price);
    if (type == DocType::kInventory) desktop_.Expect("Поместить документ в конец дня (23:59)?", BoxAnswer::kCancel);
    Post(form);
    Leave(form, BoxAnswer::kOk);
  }
  /// Brings `kol` thousandths of the product in at `price` thousandths each, no two products in one second.
  void Receive(int cod, int kol, int price, int day) { Give(DocType::kIncoming, cod, kol, price, day, 8 + cod); }
};

}  // namespace zrt::test
