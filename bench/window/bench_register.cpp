// bench_register HOST SCHEMA: fills the schema's stock register with a million rows, then measures, beside the same
// statements on the bare client: posting a document of 200 lines dated before 365 posted documents of 100 lines, which
// are posted anew; refreshing the balances of the catalogue; saving and posting an invoice of a thousand lines. Also
// how long a key typed in the catalogue's search takes to show its product. The schema is a demonstration shop and not
// of use as one afterwards.

#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <vector>

#include "bench_program.h"
#include "core/text.h"

namespace {

using zrt::bench::BareClient;
using zrt::bench::Median;
using zrt::bench::Seconds;

constexpr int kRounds = 3;
constexpr int kDocuments = 10000;
constexpr int kLines = 100;
constexpr int kLater = 365;
constexpr int kBackdated = 20000;
constexpr int kBackdatedLines = 200;
constexpr int kLongInvoice = 1000;

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

}  // namespace

int main(int argc, char** argv) {
  return zrt::bench::Main(argc, argv, [](zrt::bench::BenchProgram& shop) {
    zrt::App& app = shop.app;
    BareClient& client = shop.client;
    shop.desktop.Entry = "7";
    shop.Do([&] { app.Main.TabStrip1.UserChoose("sprav"); });
    zrt::CatalogueTab& tab = app.Main.Catalogue;
    zrt::Recordset& catalogue = app.TheSession.Pool().RsProducts;
    const int products = catalogue.RecordCount();

    std::vector<double> keys;
    for (int row = 1; row <= products; row += std::max(1, products / 200)) {
      const std::string name = catalogue.At(row, 1).Text();
      if (name.find('\'') != std::string::npos) continue;
      for (std::size_t letters = 1; letters <= zrt::Length(name) + 1; ++letters) {
        const std::string typed = zrt::Left(name + "¤", letters);
        keys.push_back(Seconds([&] { shop.Do([&] { tab.TextFind[0].UserType(typed); }); }));
      }
    }
    std::sort(keys.begin(), keys.end());
    std::cout << fmt::format(
                     "| a key typed in the search of {} products until it is painted: usual, slowest of a hundred, "
                     "slowest of {} | {:.1f} ms, {:.1f} ms, {:.1f} ms |\n",
                     products, keys.size(), keys[keys.size() / 2] * 1000, keys[keys.size() * 99 / 100] * 1000,
                     keys.back() * 1000)
              << std::flush;

    FillRegister(client, products);
    const zrt::Recordset& moment =
        app.TheSession.ReadOne(fmt::format("SELECT DATEDOC FROM JOURNAL WHERE ID={}", kBackdated));
    const std::string date(moment.Field(0).Raw());
    shop.Compare(
        "a document posted before 365 others", kRounds,
        [&] {
          Write(client, fmt::format("UPDATE REGISTR SET RUN=0,OSTKOL=0 WHERE DOC={}", kBackdated));
          Write(client, fmt::format("UPDATE REGISTR SET DOCNEXT=NULL WHERE DOCNEXT={}", kBackdated));
          Write(client, fmt::format("UPDATE JOURNAL SET RUN=NULL WHERE ID={}", kBackdated));
        },
        [&] { app.Stock.RunDocRegistr(kBackdated, true, date); });
    shop.Compare(
        "balances of the catalogue", kRounds, [] {},
        [&] { shop.desktop.UserAction([&] { tab.CmdRefrTov.UserClick(); }); });

    zrt::DocumentForm& invoice = app.StockDocuments.Incoming;
    Write(client,
          fmt::format("INSERT INTO DOCUMENT (COD,NAME,KOL,PRISE,COST,REZ,TYP) SELECT COD,NAME,1000,5000,5000,9000,1 "
                      "FROM TOVAR GROUP BY COD LIMIT {}",
                      kLongInvoice));
    shop.desktop.UserAction([&] { app.Main.mnuDocPN.UserClick(); });
    shop.Compare(
        "an invoice of 1000 lines saved and posted", kRounds,
        [&] {
          Write(client, fmt::format("UPDATE REGISTR SET RUN=0,OSTKOL=0 WHERE DOC={}", invoice.DocId));
          Write(client, fmt::format("UPDATE REGISTR SET DOCNEXT=NULL WHERE DOCNEXT={}", invoice.DocId));
          Write(client, fmt::format("UPDATE JOURNAL SET RUN=NULL WHERE ID={}", invoice.DocId));
          invoice.DocRun = false;
          invoice.RUNButton.Enabled = true;
        },
        [&] { shop.desktop.UserAction([&] { invoice.RUNButton.UserClick(); }); });

    zrt::DocumentForm& count = app.StockDocuments.Inventory;
    Write(client,
          "INSERT INTO DOCINVENT (COD,NAME,OST,KOL,PRC,PRCR,DOC) SELECT COD,NAME,1000,1000,5000,9000,-1 FROM TOVAR "
          "GROUP BY COD LIMIT 5000");
    shop.desktop.UserAction([&] { app.Main.mnuDocIN.UserClick(); });
    shop.desktop.UserAction([&] { count.DataGrid7.UserRow(count.DataGrid7.Rows() / 2); });
    std::vector<double> changes;
    for (int change = 0; change < 20; ++change) {
      changes.push_back(Seconds([&] { shop.Click(*count.CmdVar); }));
    }
    std::cout << fmt::format(
        "| one line of an inventory of {} changed, until it is painted: usual, slowest | {:.0f} ms, "
        "{:.0f} ms |\n",
        count.DataGrid7.Rows(), Median(changes) * 1000, *std::max_element(changes.begin(), changes.end()) * 1000);
  });
}
