// The journal: documents deleted, the register looked at.

#include <fmt/format.h>

#include <string>

#include "documents/documents_shop.h"

namespace zrt {
namespace {

using test::DocumentsTest;

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

}  // namespace
}  // namespace zrt
