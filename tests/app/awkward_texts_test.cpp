// What an operator types or finds in the base never destroys what he didn't mean: fifty texts that are awkward in a
// statement go through the fields from which a text reaches one, and after each the rows of all tables are what they
// were, but for those that the action is about.

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "check/shop_check.h"
#include "core/errors.h"
#include "core/text.h"
#include "support/program_test.h"

namespace zrt {
namespace {

using test::TestDatabase;
using Texts = std::vector<std::string>;

const Texts& AwkwardTextList() {
  static const Texts kTexts = [] {
    // A bar stands between two of them.
    std::istringstream listed(
        "'|''|O'Neil|\\|\\\\|\\'|OOO Loza\\|#15 ot 10.11|Bar 5' #2|' #|\\' #|-- |--|' -- |' --\t1|'--\u00A0x|/*|' /* x|"
        "*/|' */ #|;|'; DELETE FROM TOVAR|'; DROP TABLE CONST; #|%|_|100% _т_|\"Русь\" \"2\"|`|' OR '1'='1|1 OR 1=1|"
        "{0} ? {d '2026-11-12'} {|а\nб'\n-- "
        "|а\r\nб|\t|\x1A\b|\u0098яЯЁёІіЇїҐґЄє№«»|ÿ寿😀\xFF\xC0|\u00A0Чай\u00A0|1e5|nan|"
        "1E+400|-1|NULL|0x41|1,5|00123");
    Texts texts = {std::string("а\0б' #", 9), std::string(20'000, 'Q') + "' #"};
    for (const char* end : {"\\'", "'' #"}) texts.push_back(std::string(49, 'w') + end);  // where a column cuts it
    for (std::string text; std::getline(listed, text, '|');) texts.push_back(text);
    return texts;
  }();
  return kTexts;
}

/// A text as a literal of the server's, whatever it holds: what a terminal would have written.
std::string Literal(std::string_view text) {
  std::string literal = "'";
  for (const char c : text) {
    if (c == '\'' || c == '\\') literal += '\\';
    literal += c == '\0' ? std::string("\\0") : std::string(1, c);
  }
  return literal + "'";
}

/// An operator who agrees to everything, knows the password, and takes every run-time error as it comes.
class ObligingDesktop final : public test::HeadlessDesktop {
 public:
  std::function<void(Form&)> modal;  ///< what he does in a window that waits for him

  void CheckAllCame() {}

 protected:
  BoxAnswer DoMsgBox(const Message& message) override {
    return message.buttons == BoxButtons::kYesNo ? BoxAnswer::kYes : BoxAnswer::kOk;
  }
  std::string DoPasswordBox(const std::string&, const std::string&) override { return "357218"; }
  std::string DoInputBox(const std::string&, const std::string&, const std::string&) override { return {}; }
  void DoModalLoop(Form& form) override {
    if (modal) std::exchange(modal, {})(form);
    Hide(form);
  }
  void DoRuntimeError(const std::exception&) override {}
};

/// Rows that an action is about: those of `table` that meet `condition`.
struct Meant {
  std::string table;
  std::string condition = "1";
};

/// All rows of a base but those that are meant, so that the same rows give the same digest and others another.
/// `columns` of its tables, as they are at first.
std::map<std::string, std::string> Digests(TestDatabase& base, const std::map<std::string, Texts>& columns,
                                           const std::vector<Meant>& meant) {
  std::map<std::string, std::string> digests;
  std::string untouched;
  for (const auto& [table, names] : columns) {
    std::string rows = "1";
    for (const Meant& one : meant) {
      if (one.table == table) rows += fmt::format(" AND ({}) IS NOT TRUE", one.condition);
    }
    if (rows == "1") {
      untouched += (untouched.empty() ? "" : ",") + table;
      continue;
    }
    digests[table] = base.Value(
        fmt::format("SELECT CONCAT_WS(' ',COUNT(*),SUM(CONV(LEFT(MD5(CONCAT_WS('|',QUOTE({}))),12),16,10))) FROM {} "
                    "WHERE {}",
                    fmt::join(names, "),QUOTE("), table, rows));
  }
  for (const auto& row : base.Rows("CHECKSUM TABLE " + untouched)) digests[row[0]] = row[1];
  return digests;
}

class AwkwardTexts : public test::ProgramOn<ObligingDesktop> {
 protected:
  AwkwardTexts() {
    for (const char* statement : {
             "UPDATE CONST SET N8=8 WHERE COD=5",
             "INSERT INTO TOVAR (COD,COD1,NAME,OST,KOL,PRISE,BARCODE,NDS,REZ,N1,N2,N4,N5,N7,N6,T1,UKT) VALUES "
             "(1,1,'Чай',0,0,12050,'4820000000017',1,0,0,0,0,0,0,NULL,'a',''),"
             "(2,1,'Вино',0,0,95000,'4820000000024',1,0,1,12,0,0,0,NULL,'b','2204')",
             "INSERT INTO PROD (COD,NAME,KOL,PRISE,SKID,SUM2,TER,PERS,REZ,NUM,N1,N2,N3,N4,N5,T1,UKT,DATETIME) VALUES "
             "(2,'Вино',2000,12000,0,24000,1,3,0,7,0,0,0,3,0,'o','1','2026-11-12 08:30:00'),"
             "(2,'Вино',1000,95000,0,95000,2,3,5,8,1,0,0,0,0,'o','1','2026-11-12 08:40:00')",
             "INSERT INTO KASSA (OPER,SUM1,SUM2,SKID,PLUS,MINUS,TER,PERS,NUM,N1,N2,N3,N4,T1,DAT,TIM) VALUES "
             "('Заказ',24,24,0,0,0,1,3,7,0,0,1,3,'o','2026-11-12 08:30:00','2026-11-12 08:30:00'),"
             "('Заказ',95,95,0,0,0,2,3,8,0,0,1,0,'o','2026-11-12 08:40:00','2026-11-12 08:40:00')",
             "INSERT INTO SPION (COD,NAME,KOL,PRISE,DATETIME,TER,KAS,REZ) VALUES (1,'Чай','1','2','12.11.2026 "
             "09:00:00',1,0,3)",
             "INSERT INTO AKZMARK (COD,MARK,TER,NUM,DAT) VALUES (2,'M',1,7,'2026-11-12 08:30:00')",
             "INSERT INTO KLIENT (COD,NAME,TOTAL,SUM1,DATETIME,NUM) VALUES (3,'Анна',0,0,'1',2)",
             "INSERT INTO PERSON (COD,NAME) VALUES (3,'Олег')",
             "INSERT INTO DISCOUNT (BARCODE,TOTAL,LASTCASH,PROZ,REZ) VALUES ('1001',1,'0',5,1),('1002',1,'0',101,2)",
             "INSERT INTO DKHOLDER (ID,CARD,NAME,FNAME,ADRES,TEL) VALUES (1,'1001','Анна','Анна','Ленина 1','22')",
             "INSERT INTO TOTALSKID (ID,CARD,TOV,PROZ,TOTAL) VALUES (1,101,0,3,0),(2,102,1,5,100000)",
             "INSERT INTO CHECK1 (COD,NAME,KOL,PRISE,COST) VALUES (1,'Чай',1,2,2)",
             "INSERT INTO CHECK2 (COD,NAME,KOL,PRISE,COST) VALUES (1,'Чай',1,2,2)",
             "DELETE FROM HOTKEYS WHERE ID>230 AND ID NOT BETWEEN 1301 AND 1390",
             "UPDATE HOTKEYS SET CODE=1 WHERE ID IN (102,1301)",
         }) {
      shop_.Sql(statement);
    }
  }

  /// Opens a window that waits, by `opener`, and works in it.
  void InModal(Control& opener, const std::function<void()>& work) {
    desktop_.modal = [&](Form&) { work(); };
    Click(opener);
    desktop_.modal = {};
  }
  void Tab(const char* key) {
    Do([&] { app_->Main.TabStrip1.UserChoose(key); });
  }

  /// `action` with each text, the row it is about being made anew by `before`. With `other`, a second text, for a
  /// window of several fields: what ends one literal may begin in the next field.
  void ForEachText(std::string_view place, const std::vector<Meant>& meant,
                   const std::function<void(const std::string& text, const std::string& other)>& action,
                   const Texts& before = {}, bool in_pairs = true) {
    const Texts& texts = AwkwardTextList();
    std::map<std::string, Texts> columns;
    for (const std::string& table : shop_.Column("SHOW TABLES")) {
      columns[table] = shop_.Column("SHOW COLUMNS FROM " + table);
    }
    for (std::size_t i = 0; i < texts.size(); ++i) {
      for (const std::size_t shift : std::set<std::size_t>{0, in_pairs ? i % 11 + 1 : 0}) {
        const std::string& other = texts[(i + shift) % texts.size()];
        for (const std::string& statement : before) shop_.Sql(statement);
        const auto kept = Digests(shop_, columns, meant);
        try {
          action(texts[i], other);
        } catch (const Error&) {
          // A list has no such item, and nothing else can be chosen.
        }
        ASSERT_EQ(Digests(shop_, columns, meant), kept) << place << ": " << texts[i] << "\nand: " << other;
      }
    }
  }

  /// Each of `fields` alone gets each text, all others keep what is good in them.
  void ForEachNumber(const char* place, const std::vector<Meant>& meant, const std::vector<Control*>& fields,
                     const std::function<void(Control& field, const std::string& text)>& action,
                     const Texts& before = {}) {
    for (Control* field : fields) {
      ForEachText(
          place, meant, [&](const std::string& text, const std::string&) { action(*field, text); }, before, false);
    }
  }

  /// Whatever was typed, nothing in the shop contradicts itself.
  void TearDown() override {
    app_.reset();
    Connection connection;
    connection.Open(MainConnectionString(shop_.Address()));
    const check::Findings findings = check::CheckShop(connection);
    EXPECT_TRUE(findings.IsWhole()) << findings.Report();
  }
};

TEST_F(AwkwardTexts, OfProducts) {
  Start("sprav");
  frmPLU& card = app_->ProductCard;
  CatalogueTab& list = app_->Main.Catalogue;
  const std::vector<std::string> kProduct = {
      "DELETE FROM TOVAR WHERE COD>2",
      "INSERT INTO TOVAR (COD,COD1,NAME,OST,KOL,PRISE,BARCODE,NDS,REZ,N1,N2,N4,N5,N7,UKT) VALUES "
      "(3,1,'Яблоко',0,0,100,'77',1,0,0,0,0,0,0,'')"};
  const auto open = [&](Button& opener, const std::function<void()>& fill) {
    Click(list.CmdReqr);
    Do([&] { list.DataGrid1[0].UserRow(list.DataGrid1[0].Rows()); });
    InModal(opener, [&] {
      fill();
      Click(card.OKButton);
    });
  };
  for (Button* opener : {&list.CmdShow, &list.CmdCopy, &list.CmdNew}) {
    ForEachText(
        "the product's card", {{"TOVAR", "COD>2"}},
        [&](const std::string& text, const std::string& other) {
          open(*opener, [&] {
            Type(card.TextPrise, "5,00");
            Type(card.TextName, text);
            Type(card.TextBar, other);
            Type(card.TextUkt, text);
          });
        },
        kProduct);
  }
  ForEachNumber(
      "the product's card", {{"TOVAR", "COD>2"}},
      {&card.TextPrise, &card.TextVol, &card.TextVes, &card.Combo1, &card.Combo2, &card.Combo3, &card.Combo4,
       &card.Combo5},
      [&](Control& field, const std::string& text) {
        open(list.CmdShow, [&] {
          Type(card.CheckVes, "on");
          Type(field, text);
        });
      },
      kProduct);
  for (TextBox& find : list.TextFind) {
    ForEachText("the search", {}, [&](const std::string& text, const std::string&) { Type(find, text); });
    Tab("sensor");
  }
}

TEST_F(AwkwardTexts, OfCards) {
  Start("sprav");
  CardsTab& list = app_->Main.Cards;
  frmDK& card = app_->DiscountCard;
  frmVDk& kinds = app_->CardKinds;
  const std::vector<Meant> kCard = {{"DISCOUNT", "REZ>2"}, {"DKHOLDER", "ID>2"}};
  const std::vector<std::string> kNoCard = {"DELETE FROM DISCOUNT WHERE REZ>2", "DELETE FROM DKHOLDER WHERE ID>2"};
  ForEachText(
      "the card", kCard,
      [&](const std::string& text, const std::string& other) {
        InModal(list.CmdDKNew, [&] {
          Type(card.TextName, text);
          Click(card.CheckHolder);
          Type(card.TxtHName, text);
          Type(card.TxtHAddr, other);
          Type(card.TxtHTel, text);
          Click(card.OKButton);
        });
      },
      kNoCard);
  ForEachNumber(
      "the card", kCard, {&card.TextSkd},
      [&](Control& field, const std::string& text) {
        InModal(list.CmdDKNew, [&] {
          Type(card.TextName, "1003");
          Type(field, text);
          Click(card.OKButton);
        });
      },
      kNoCard);
  ForEachNumber("the kinds of cards", {{"TOTALSKID", "ID>2"}},
                {&kinds.Text1, &kinds.Text2, &kinds.Text3, &kinds.Combo1},
                [&](Control& field, const std::string& text) {
                  InModal(list.CmdVDk, [&] {
                    Click(kinds.CmdNew);
                    Type(field, text);
                    Click(kinds.CmdOk);
                    Click(kinds.CmdOk);
                  });
                  Do([&] { kinds.Close(); });
                },
                {"DELETE FROM TOTALSKID WHERE ID>2"});
}

TEST_F(AwkwardTexts, OfPanels) {
  Start("sensor");
  PanelTab& panels = app_->Main.Panels;
  ForEachText("names of panel and menu", {{"CONST", "COD=1"}, {"CONST", "COD=7"}},
              [&](const std::string& text, const std::string& other) {
                // One after the other, so that both rows are looked at.
                Type(panels.TextName, text);
                Type(panels.TextMenu, other);
                Click(panels.CmdName);
              });
  ForEachNumber("the code of a key", {{"HOTKEYS", "ID=101"}}, {&panels.Text6},
                [&](Control& field, const std::string& text) {
                  Click(panels.CmdM[0]);
                  Type(field, text);
                  Press(field, "Enter");
                });
  FormCopy& copying = app_->PanelCopy;
  ForEachText("the file of the layout", {{"HOTKEYS", "ID>100"}},
              [&](const std::string& text, const std::string& other) {
                WriteFile(std::string(kLayoutFile), ToWindows1251("101,1\r\n102," + text + "\r\n" + other + ",1\r\n"));
                InModal(panels.CmdCopyAll, [&] { Click(copying.CmdImportMenu); });
              });
}

TEST_F(AwkwardTexts, OfReceipts) {
  Start("prod");
  // What a till has in an open receipt is logged when it is annulled.
  frmDelChek& annulling = app_->DelChek;
  ForEachText(
      "an annulled line", {{"SPION", "TER=3"}, {"CHECK3"}},
      [&](const std::string& text, const std::string&) {
        shop_.Sql("INSERT INTO CHECK3 (COD,NAME,KOL,PRISE,COST) VALUES (5," + Literal(Left(text, 50)) + ",1,2,2)");
        Click(app_->Main.mnuDelCheck);
        Click(annulling.CmdKas[2]);
        Press(annulling.DataGrid1, "Enter");
        Do([&] { annulling.Hide(); });
      },
      {"DELETE FROM CHECK3", "DELETE FROM SPION WHERE TER=3"});
}

TEST_F(AwkwardTexts, OfDocuments) {
  Start("jurn");
  Documents& documents = app_->StockDocuments;
  Form2& main = app_->Main;
  const std::array<Menu*, 8> kMenus = {&main.mnuDocDO, &main.mnuDocPN,     &main.mnuDocRN,      &main.mnuDocSP,
                                       &main.mnuDocIN, &main.mnuPereozenk, &main.mnuDocPERplus, &main.mnuDocPERminus};
  const auto post = [&](std::uint8_t kind, int cod, const std::function<void(DocumentForm&)>& fill) {
    Click(*kMenus[kind]);
    DocumentForm& form = documents.Form(DocType{kind});
    if (DocType{kind} == DocType::kDailyReport) {
      Click(documents.DailyReport.CmdDat);
    } else {
      Do([&] { app_->Stock.BroadcastToForm(cod, 1000, 5000, kind); });
    }
    fill(form);
    Click(form.RUNButton);
    Do([&] { form.Leave(); });
    Do([&] { form.Close(); });
  };
  // Documents of the day before stand there already, of a product of their own.
  clock_.Set({{2026, 11, 11}, 10, 0, 0});
  for (std::uint8_t kind = 1; kind < kDocumentKinds.size(); ++kind) post(kind, 1, [](DocumentForm&) {});
  const int last = std::stoi(shop_.Value("SELECT MAX(ID) FROM JOURNAL"));
  ASSERT_EQ(shop_.Value("SELECT COUNT(*) FROM JOURNAL"), "7");
  clock_.Set({{2026, 11, 12}, 10, 0, 0});
  const std::string newer = ">" + std::to_string(last);
  const std::vector<Meant> kNewDocument = {{"JOURNAL", "ID" + newer},
                                           {"REGISTR", "COD=2 OR DOC" + newer},
                                           {"DOCUMENT"},
                                           {"DOCINVENT", "DOC=-1 OR DOC" + newer},
                                           {"DOCPRICE", "DOC=-1 OR DOC" + newer},
                                           {"TOVAR", "COD=2"},
                                           {"PROD", "COD=2"}};
  const std::vector<std::string> kNone = {
      "DELETE FROM JOURNAL WHERE ID" + newer,     "DELETE FROM REGISTR WHERE DOC" + newer,
      "DELETE FROM DOCINVENT WHERE DOC" + newer,  "DELETE FROM DOCPRICE WHERE DOC" + newer,
      "UPDATE TOVAR SET NAME='Вино' WHERE COD=2", "UPDATE PROD SET NAME='Вино' WHERE COD=2"};
  for (std::uint8_t kind = 0; kind < kDocumentKinds.size(); ++kind) {
    DocumentForm& form = documents.Form(DocType{kind});
    ForEachText(
        kDocumentKinds[kind].form, kNewDocument,
        [&](const std::string& text, const std::string& other) {
          // A product's name as it comes back from the catalogue and from what was sold.
          if (text != other) {
            for (const char* table : {"TOVAR", "PROD"}) {
              shop_.Sql(fmt::format("UPDATE {} SET NAME={} WHERE COD=2", table, Literal(Left(text, 50))));
            }
            post(kind, 2, [](DocumentForm&) {});
            return;
          }
          post(kind, 2, [&](DocumentForm&) {
            if (form.TextKlient) Type(*form.TextKlient, text);
            if (form.TextPrim) Type(*form.TextPrim, other);
          });
          // And again from the journal, where a document with these texts may stand by now.
          Do([&] { main.Journal.Refresh(); });
          Do([&] { main.Journal.DataGrid6.UserRow(main.Journal.DataGrid6.Rows()); });
          if (std::stoi(main.Journal.DataGrid6.CurrentText("Num")) > last) {
            Press(main.Journal.DataGrid6, "Enter");
            if (form.mnuUnRun) Click(*form.mnuUnRun);
            Click(form.RUNButton);
            Do([&] { form.Leave(); });
            Do([&] { form.Close(); });
          }
        },
        kNone);
  }
  for (const std::string& statement : kNone) shop_.Sql(statement);
}

}  // namespace
}  // namespace zrt
