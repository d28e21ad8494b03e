// bench_register HOST SCHEMA: fills the schema's stock register with a million rows, then measures, beside the same
// statements on the bare client: posting a document of 200 lines dated before 365 posted documents of 100 lines, which
// are posted anew; refreshing the balances of the catalogue; saving and posting an invoice of a thousand lines. Also
// how long a key typed in the catalogue's search takes to show its product. The schema is a demonstration shop and not
// of use as one afterwards.

#include <QApplication>
#include <iostream>

#include "../bare_client.h"
#include "../recorder.h"
#include "app/app.h"
#include "core/text.h"
#include "platform/system_clock.h"
#include "ui/qt/qt_application.h"
#include "ui/qt/qt_desktop.h"

namespace {

using zrt::bench::BareClient;
using zrt::bench::Median;
using zrt::bench::Recorder;
using zrt::bench::Seconds;

constexpr int kRounds = 3;
constexpr int kDocuments = 10000;
constexpr int kLines = 100;
constexpr int kLater = 365;
constexpr int kBackdated = 20000;
constexpr int kBackdatedLines = 200;
constexpr int kLongInvoice = 1000;

/// An operator who agrees to everything.
class AgreeingDesktop final : public zrt::QtDesktop {
 public:
  using QtDesktop::QtDesktop;

 protected:
  zrt::BoxAnswer DoMsgBox(const std::string&, zrt::BoxIcon, zrt::BoxButtons, const std::string&) override {
    return zrt::BoxAnswer::kOk;
  }
  std::string DoInputBox(const std::string&, const std::string&, const std::string&) override { return "7"; }
};

/// The moment of the document that is `number` hours old, as SQL.
std::string Moment(int number) {
  return fmt::format("DATE_SUB('2026-11-01 00:00:00', INTERVAL {} HOUR)", number);
}

void Write(BareClient& client, const std::string& sql) {
  mysql_free_result(client.Run(sql));
}

void AddDocument(BareClient& client, int id, const std::string& moment, int lines, int products, bool posted) {
  Write(client, fmt::format("INSERT INTO JOURNAL (ID,DTYPE,DATEDOC,SUMM,RUN,REZ) VALUES ({},'Приходная',{},0,{},0)", id,
                            moment, posted ? "'OK'" : "NULL"));
  std::string rows;
  for (int line = 0; line < lines; ++line) {
    // Thirteen has no divisor in common with the number of products: every line is another product.
    rows += fmt::format("{}({},1,{},1000,5000,0,0,{},{},0)", rows.empty() ? "" : ",", id,
                        (id * 37 + line * 13) % products + 1, moment, posted ? 1 : 0);
  }
  Write(client, "INSERT INTO REGISTR (DOC,DOCTYP,COD,KOL,SUMM,OSTKOL,KARD,DATEDOC,RUN,REZ) VALUES " + rows);
}

void FillRegister(BareClient& client, int products) {
  for (const char* table : {"REGISTR", "JOURNAL"}) Write(client, std::string("TRUNCATE TABLE ") + table);
  for (int id = 1; id <= kDocuments; ++id) {
    if (id % 500 == 1) Write(client, "START TRANSACTION");
    AddDocument(client, id, Moment(kDocuments - id), kLines, products, true);
    if (id % 500 == 0) Write(client, "COMMIT");
  }
  AddDocument(client, kBackdated, fmt::format("DATE_SUB({}, INTERVAL 1 SECOND)", Moment(kLater - 1)), kBackdatedLines,
              products, false);
}

template <class Work, class Before>
void Compare(const char* what, Recorder& recorder, BareClient& client, Before&& before, Work&& work) {
  std::vector<double> program;
  std::vector<double> bare;
  for (int round = 0; round < kRounds; ++round) {
    before();
    recorder.statements.clear();
    program.push_back(Seconds(work));
    const std::vector<std::string> statements = recorder.statements;
    before();
    bare.push_back(Seconds([&] {
      for (const std::string& statement : statements) mysql_free_result(client.Run(statement));
    }));
  }
  std::cout << fmt::format("| {}, {} statements | {:.2f} s | {:.2f} s | {:.2f} |\n", what, recorder.statements.size(),
                           Median(program), Median(bare), Median(program) / Median(bare))
            << std::flush;
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  if (argc != 3) {
    std::cerr << "usage: bench_register HOST SCHEMA\n";
    return 2;
  }
  zrt::SetUpApplication(application);
  const zrt::SystemClock clock;
  const zrt::DriveMap drives(std::filesystem::temp_directory_path() / "zrt_bench_drives");
  AgreeingDesktop desktop(zrt::RegionalFormat{}, drives);
  Recorder recorder;
  zrt::App app(desktop, clock, drives, {{argv[1], "zrt", argv[2]}, "zrt"});
  app.TheSession.MainConnection.SetFaultSource(&recorder);
  app.Start();
  desktop.UserAction([&] { app.Splash.Timer1.UserFire(); });
  if (!app.IsRunning()) {
    std::cerr << "the program doesn't start on this database\n";
    return 1;
  }
  desktop.UserAction([&] { app.Main.TabStrip1.UserChoose("sprav"); });
  QApplication::processEvents();
  zrt::CatalogueTab& tab = app.Main.Catalogue;
  zrt::Recordset& catalogue = app.TheSession.Pool().RsProducts;
  const int products = catalogue.RecordCount();

  std::vector<double> keys;
  for (int row = 1; row <= products; row += std::max(1, products / 200)) {
    const std::string name = catalogue.At(row, 1).Text();
    if (name.find('\'') != std::string::npos) continue;
    for (std::size_t letters = 1; letters <= zrt::Length(name) + 1; ++letters) {
      const std::string typed = zrt::Left(name + "¤", letters);
      keys.push_back(Seconds([&] {
        desktop.UserAction([&] { tab.TextFind[0].UserType(typed); });
        QApplication::processEvents();
      }));
    }
  }
  std::sort(keys.begin(), keys.end());
  std::cout << fmt::format(
                   "| a key typed in the search of {} products until it is painted: usual, slowest of a hundred, "
                   "slowest of {} | {:.1f} ms, {:.1f} ms, {:.1f} ms |\n",
                   products, keys.size(), keys[keys.size() / 2] * 1000, keys[keys.size() * 99 / 100] * 1000,
                   keys.back() * 1000)
            << std::flush;

  BareClient client(argv[1], argv[2]);
  FillRegister(client, products);
  const zrt::Recordset& moment =
      app.TheSession.ReadOne(fmt::format("SELECT DATEDOC FROM JOURNAL WHERE ID={}", kBackdated));
  const std::string date(moment.Field(0).Raw());
  Compare(
      "a document posted before 365 others", recorder, client,
      [&] {
        Write(client, fmt::format("UPDATE REGISTR SET RUN=0,OSTKOL=0 WHERE DOC={}", kBackdated));
        Write(client, fmt::format("UPDATE REGISTR SET DOCNEXT=NULL WHERE DOCNEXT={}", kBackdated));
        Write(client, fmt::format("UPDATE JOURNAL SET RUN=NULL WHERE ID={}", kBackdated));
      },
      [&] { app.Stock.RunDocRegistr(kBackdated, true, date); });
  Compare(
      "balances of the catalogue", recorder, client, [] {},
      [&] { desktop.UserAction([&] { tab.CmdRefrTov.UserClick(); }); });

  zrt::DocumentForm& invoice = app.StockDocuments.Incoming;
  desktop.UserAction([&] { app.Main.mnuDocPN.UserClick(); });
  Write(client,
        fmt::format("INSERT INTO DOCUMENT (COD,NAME,KOL,PRISE,COST,REZ,TYP) SELECT COD,NAME,1000,5000,5000,9000,1 "
                    "FROM TOVAR GROUP BY COD LIMIT {}",
                    kLongInvoice));
  desktop.UserAction([&] { invoice.RefreshLines(); });
  Compare(
      "an invoice of 1000 lines saved and posted", recorder, client,
      [&] {
        Write(client, fmt::format("UPDATE REGISTR SET RUN=0,OSTKOL=0 WHERE DOC={}", invoice.DocId));
        Write(client, fmt::format("UPDATE REGISTR SET DOCNEXT=NULL WHERE DOCNEXT={}", invoice.DocId));
        Write(client, fmt::format("UPDATE JOURNAL SET RUN=NULL WHERE ID={}", invoice.DocId));
        invoice.DocRun = false;
        invoice.RUNButton.Enabled = true;
      },
      [&] { desktop.UserAction([&] { invoice.RUNButton.UserClick(); }); });

  zrt::DocumentForm& count = app.StockDocuments.Inventory;
  Write(client,
        "INSERT INTO DOCINVENT (COD,NAME,OST,KOL,PRC,PRCR,DOC) SELECT COD,NAME,1000,1000,5000,9000,-1 FROM TOVAR "
        "GROUP BY COD LIMIT 5000");
  desktop.UserAction([&] { app.Main.mnuDocIN.UserClick(); });
  desktop.UserAction([&] { count.DataGrid7.UserRow(count.DataGrid7.Rows() / 2); });
  QApplication::processEvents();
  std::vector<double> changes;
  for (int change = 0; change < 20; ++change) {
    changes.push_back(Seconds([&] {
      desktop.UserAction([&] { count.CmdVar->UserClick(); });
      QApplication::processEvents();
    }));
  }
  std::cout << fmt::format(
      "| one line of an inventory of {} changed, until it is painted: usual, slowest | {:.0f} ms, "
      "{:.0f} ms |\n",
      count.DataGrid7.Rows(), Median(changes) * 1000, *std::max_element(changes.begin(), changes.end()) * 1000);
  return 0;
}
