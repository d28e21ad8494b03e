// The journal: documents deleted, the register looked at, a random month against a recount.

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "core/numbers.h"
#include "documents/documents_shop.h"

namespace zrt {
namespace {

using test::DocumentsTest;
using test::Texts;

TEST_F(DocumentsTest, DeletingDocuments) {
  Receive(1, 10000, 80000, 1);
  const int invoice = std::stoi(shop_.Value("SELECT MAX(ID) FROM JOURNAL"));
  auto& prices = Open(DocType::kPriceChange);
  Pick(DocType::kPriceChange, 1, 0, 5000);
  Post(prices);
  const int change = prices.DocId;
  Leave(prices, BoxAnswer::kOk);

  const auto number = [&](const std::string& answer) { desktop_.ExpectInput("Введите номер документа", answer); };
  const auto password = [&](const char* answer) {
    desktop_.ExpectInput("Введите пароль системного администратора", answer);
  };
  const auto remove = [&] {
    Click(app_->Main.mnuDelOneDoc);
    desktop_.CheckAllCame();
  };
  number("");
  remove();
  number("первый");
  desktop_.Expect("введите числовое значение!", BoxAnswer::kOk, BoxIcon::kCritical);
  remove();
  number("777");
  desktop_.Expect("документа №777 НЕ существует!", BoxAnswer::kOk, BoxIcon::kCritical);
  remove();
  number(std::to_string(invoice));
  desktop_.Expect(fmt::format("документ Приходная накладная №{} ПРОВЕДЁН!\n\rПеред удалением необходимо отменить "
                              "проведение документа",
                              invoice),
                  BoxAnswer::kOk, BoxIcon::kCritical);
  remove();
  number(std::to_string(change));
  password("123");
  desktop_.Expect("Пароль неверный!", BoxAnswer::kOk, BoxIcon::kCritical);
  remove();
  EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM JOURNAL"), "2");
  for (const char* table : {"REGISTR", "DOCINVENT"}) {
    shop_.Sql(fmt::format("INSERT INTO {} (DOC,COD) VALUES ({},1)", table, change));
  }
  number(std::to_string(change));
  password("357218");
  desktop_.Expect(fmt::format("Документ №{} удален!", change), BoxAnswer::kOk, BoxIcon::kExclamation);
  remove();
  const std::string left =
      "SELECT CONCAT_WS(' ',(SELECT COUNT(*) FROM JOURNAL),(SELECT COUNT(*) FROM REGISTR),(SELECT COUNT(*) FROM "
      "DOCUMENT),(SELECT COUNT(*) FROM DOCINVENT),(SELECT COUNT(*) FROM DOCPRICE))";
  EXPECT_EQ(shop_.Value(left), "1 1 0 0 0") << "the invoice";
  EXPECT_EQ(shop_.Value("SELECT PRISE FROM TOVAR WHERE COD=1"), "500") << "the old price doesn't come back";
  EXPECT_EQ(app_->Main.Journal.DataGrid6.Rows(), 1);

  for (const char* table : {"DOCUMENT", "DOCINVENT", "DOCPRICE"}) {
    shop_.Sql(fmt::format("INSERT INTO {} (COD) VALUES (1)", table));
  }
  const std::string all = "Удалить ВСЕ документы  и очистить регистр остатков?";
  desktop_.Expect(all, BoxAnswer::kCancel, BoxIcon::kQuestion);
  Click(app_->Main.mnuClearDoc);
  desktop_.Expect(all, BoxAnswer::kOk);
  password("");
  desktop_.Expect("Пароль неверный!", BoxAnswer::kOk, BoxIcon::kCritical);
  Click(app_->Main.mnuClearDoc);
  desktop_.Expect(all, BoxAnswer::kOk);
  password("357218");
  desktop_.Expect("Все документы удалены, регистр остатков обнулён!", BoxAnswer::kOk, BoxIcon::kExclamation);
  Click(app_->Main.mnuClearDoc);
  EXPECT_EQ(shop_.Value(left), "0 0 0 0 0");
}

TEST_F(DocumentsTest, TheRegisterIsSeenWholeOrByProduct) {
  Receive(1, 10000, 80000, 1);
  Receive(2, 5000, 700000, 2);
  Now(3);
  Open(DocType::kWriteOff);
  Pick(DocType::kWriteOff, 1, 1000, 0);
  Leave(Docs().WriteOff, BoxAnswer::kOk);
  Click(app_->Main.mnuRegistr);
  FormJrnl& view = Docs().Register;
  EXPECT_EQ(view.DataGrid88.Rows(), 3) << "posted or not";
  EXPECT_EQ(view.DataGrid88.Row(), 3);
  EXPECT_FALSE(view.CheckRun.Enabled());
  Click(view.CmdTov);
  Type(app_->Picker.TextFind, "чай");
  Press(app_->Picker.TextFind, "Enter");
  Press(app_->Picker.OKButton, "Enter");
  EXPECT_EQ(view.LblCod.Caption() + view.LblTov.Caption(), "1Чай");
  Type(view.CheckRun, "on");
  EXPECT_EQ(view.CheckRun.Caption(), "Отключить фильтр");
  EXPECT_EQ(view.DataGrid88.Rows(), 1) << "posted rows of the product";
  EXPECT_EQ(view.DataGrid88.CellText(1, "Docum"), "Приходная накладная");
  desktop_.UserAction([&] { desktop_.Activated(app_->Main); });
  desktop_.UserAction([&] { desktop_.Activated(view); });
  EXPECT_EQ(view.DataGrid88.Rows(), 1);
  Type(view.CheckRun, "off");
  EXPECT_EQ(view.CheckRun.Caption(), "Установить фильтр по товару");
  EXPECT_EQ(view.DataGrid88.Rows(), 3);
}

// A month of work by chance, every kind, a third of it backdated and some taken out again. What must be in stock is
// kept in a list of movements beside it.

struct Movement {
  DateTime moment;
  int doc;
  int cod;
  std::int64_t kol;
};

TEST_F(DocumentsTest, ARandomMonthAgreesWithARecount) {
  std::mt19937 random(20261101);
  const auto pick = [&](int from, int to) { return std::uniform_int_distribution<int>(from, to)(random); };
  const DocType kKinds[] = {DocType::kIncoming,  DocType::kIncoming,   DocType::kOutgoing,    DocType::kWriteOff,
                            DocType::kInventory, DocType::kTransferIn, DocType::kTransferOut, DocType::kDailyReport};
  std::vector<Movement> movements;
  std::map<Date, std::map<int, std::int64_t>> sold;
  const auto agree = [&](const DateTime& moment) {
    const int later = std::stoi(shop_.Value(fmt::format("SELECT COUNT(*) FROM JOURNAL WHERE RUN='OK' AND DATEDOC>='{}'",
                                                        CutSqlDateTime(RegionalFormat{}.DateTimeText(moment)))));
    if (later > 0) {
      desktop_.Expect(
          fmt::format("Документ проведён 'задним числом'!\n\rперепровести последующие за ним {} документов?", later));
    }
  };

  for (int step = 0; step < 60; ++step) {
    SCOPED_TRACE(step);
    const DocType type = kKinds[static_cast<std::size_t>(pick(0, 7))];
    DateTime moment{AddDays({2026, 11, 1}, step / 2), 10 + step % 2, pick(0, 59), pick(0, 59)};
    clock_.Set(moment);
    DocumentForm& form = Open(type);
    std::vector<std::pair<int, std::int64_t>> lines;  // product and quantity as it enters the register
    if (type == DocType::kDailyReport) {
      moment = {AddDays(moment.date, -1), 23, 0, 0};
      for (int cod = pick(1, 4); cod <= 4; ++cod) {
        const int kol = 500 * pick(1, 6);
        shop_.Sql(
            fmt::format("INSERT INTO PROD (COD,NAME,KOL,PRISE,SUM2,REZ,DATETIME,TER,NUM) VALUES "
                        "({},'т',{},1000,{},0,'{} 20:00:00',1,1)",
                        cod, kol, kol, CutSqlDate(RegionalFormat{}.DateText(moment.date))));
        sold[moment.date][cod] += kol;
      }
      // A second report of the day takes all of it once more; nothing stops it.
      for (const auto& [cod, kol] : sold[moment.date]) {
        if (cod != 3) lines.emplace_back(cod, -kol);
      }
      Click(static_cast<frmDocDO&>(form).CmdDat);
    } else if (type == DocType::kInventory) {
      Click(static_cast<frmDocIN&>(form).CmdDat);
      for (int row = 1; row <= std::min(2, form.DataGrid7.Rows()); ++row) {
        const int count = pick(0, 30);
        desktop_.UserAction([&] { form.DataGrid7.UserRow(row); });
        desktop_.ExpectInput(fmt::format("{}\r\rучётный остаток = {}", form.DataGrid7.CellText(row, "Name"),
                                         form.DataGrid7.CellText(row, "Balance")),
                             std::to_string(count));
        Click(*form.CmdVar);
        const int cod = std::stoi(form.DataGrid7.CellText(row, "Cod"));
        const std::int64_t difference = 1000 * count - app_->Stock.GetOstNow(cod);
        if (RoundHalfEven(static_cast<double>(difference) / 1000) != 0) lines.emplace_back(cod, difference);
      }
      if (form.DataGrid7.Rows() > 0) desktop_.Expect("Поместить документ в конец дня (23:59)?", BoxAnswer::kCancel);
    } else {
      for (int line = pick(1, 4); line > 0; --line) {
        const int cod = pick(1, 4);
        const int kol = 500 * pick(0, 20);
        Pick(type, cod, kol, 1000 * pick(1, 50));
        if (type != DocType::kOutgoing || cod != 3) lines.emplace_back(cod, KindOf(type).sign * kol);
      }
      if (pick(0, 2) == 0) {
        moment.date = AddDays(moment.date, -pick(0, 6));
        Click(form.CmdPlus);
        desktop_.UserAction([&] { form.Month0.UserPick(moment.date); });
      }
    }
    if (form.DataGrid7.Rows() == 0) {
      Leave(form, BoxAnswer::kCancel);
      continue;
    }
    desktop_.Expect("Провести документ?", BoxAnswer::kOk);
    // An inventory without differences and a document of empty lines have no rows, and ask about the later ones all the
    // same.
    agree(moment);
    Click(form.RUNButton);
    for (const auto& [cod, kol] : lines) {
      if (kol != 0) movements.push_back({moment, form.DocId, cod, kol});
    }
    if (pick(0, 4) == 0) {
      desktop_.Expect("Отменить проведение документа?", BoxAnswer::kOk);
      const int later =
          std::stoi(shop_.Value(fmt::format("SELECT COUNT(*) FROM JOURNAL WHERE RUN='OK' AND DATEDOC>='{}' AND ID<>{}",
                                            CutSqlDateTime(RegionalFormat{}.DateTimeText(moment)), form.DocId)));
      if (later > 0) {
        desktop_.Expect(
            fmt::format("Документ проведён 'задним числом'!\n\rперепровести последующие за ним {} документов?", later));
      }
      Click(*form.mnuUnRun);
      std::erase_if(movements, [&](const Movement& one) { return one.doc == form.DocId; });
      Leave(form, BoxAnswer::kCancel);
    } else {
      Leave(form, BoxAnswer::kOk);
    }
    desktop_.CheckAllCame();
  }

  clock_.Set({{2026, 12, 5}, 12, 0, 0});
  desktop_.UserAction([this] { app_->Main.TabStrip1.UserChoose("sprav"); });
  Click(app_->Main.Catalogue.CmdRefrTov);
  for (int cod = 1; cod <= 4; ++cod) {
    std::int64_t stock = 0;
    for (const Movement& one : movements) stock += one.cod == cod ? one.kol : 0;
    EXPECT_EQ(shop_.Value(fmt::format("SELECT OST FROM TOVAR WHERE COD={}", cod)), std::to_string(stock)) << cod;
  }
  // Every posted row carries the balance after its document.
  for (const std::vector<std::string>& row :
       shop_.Rows("SELECT DOC,COD,OSTKOL,DATEDOC FROM REGISTR WHERE RUN=1 ORDER BY ID")) {
    std::int64_t balance = 0;
    for (const Movement& one : movements) {
      if (std::to_string(one.cod) == row[1] && one.moment <= *ParseSqlDateTime(row[3])) balance += one.kol;
    }
    EXPECT_EQ(row[2], std::to_string(balance)) << "document " << row[0] << ", product " << row[1];
  }
  EXPECT_GT(movements.size(), 60U);
}

}  // namespace
}  // namespace zrt
