// bench_exchange HOST SCHEMA: copies 100,000 closed lines to a second schema on the same server, SCHEMA_reserve, and
// loads a catalogue of 10,000 products from a spreadsheet, beside the same statements on the bare client. The schema is
// a demonstration shop and not of use as one afterwards.

#include <fmt/format.h>
#include <xlsxwriter.h>

#include <fstream>
#include <string>
#include <vector>

#include "bench_program.h"

namespace {

constexpr int kRounds = 3;
constexpr int kSold = 100'000;
constexpr int kProducts = 10'000;

using zrt::bench::BenchProgram;

void Write(BenchProgram& shop, const std::string& sql) {
  mysql_free_result(shop.client.Run(sql));
}

void Copying(BenchProgram& shop, const std::string& host, const std::string& schema) {
  const std::string reserve = schema + "_reserve";
  Write(shop, "DROP DATABASE IF EXISTS " + reserve);
  Write(shop, "CREATE DATABASE " + reserve);
  for (const char* table : {"PROD", "KASSA", "CONST"}) {
    Write(shop, fmt::format("CREATE TABLE {0}.{1} LIKE {1}", reserve, table));
  }
  Write(shop, fmt::format("INSERT INTO {}.CONST (COD) VALUES (6)", reserve));
  Write(shop, "UPDATE PROD SET N7=1");
  Write(shop,
        fmt::format("UPDATE PROD SET N7=NULL WHERE N4>2 AND (UKT IS NULL OR UKT<>'') AND DATETIME IS NOT NULL AND "
                    "NAME NOT LIKE '%\\'%' ORDER BY ID LIMIT {}",
                    kSold));
  Write(shop, "UPDATE KASSA SET N7=1");

  std::ofstream(shop.drives.ToNative("C:\\reserve.udl"))
      << "server=" << host << ";uid=zrt;pwd=41730926;database=" << reserve;
  zrt::frmExpImp& screen = shop.app.Exchange;
  shop.Click(shop.app.Main.mnuExport);
  shop.Do([&] { screen.TxtUDL1.UserType("C:\\reserve.udl"); });
  shop.Click(screen.CmdConn1);
  zrt::bench::Recorder there;
  shop.app.TheSession.ConnReserve.SetFaultSource(&there);
  zrt::bench::BareClient reserve_client(host, reserve);

  const auto before = [&] {
    Write(shop, "UPDATE PROD SET N7=NULL WHERE N7>1");
    Write(shop, fmt::format("TRUNCATE TABLE {}.PROD", reserve));
  };
  std::vector<double> program;
  std::vector<double> bare;
  for (int round = 0; round < kRounds; ++round) {
    before();
    shop.recorder.statements.clear();
    there.statements.clear();
    program.push_back(zrt::bench::Seconds([&] { shop.Click(screen.CmdExp); }));
    const std::vector<std::string> here = shop.recorder.statements;
    before();
    bare.push_back(zrt::bench::Seconds([&] {
      // The two reads, then a row there and its mark here in turn.
      for (int read = 0; read < 2; ++read) mysql_free_result(shop.client.Run(here[static_cast<std::size_t>(read)]));
      for (std::size_t row = 0; row < there.statements.size(); ++row) {
        mysql_free_result(reserve_client.Run(there.statements[row]));
        if (row + 2 < here.size()) mysql_free_result(shop.client.Run(here[row + 2]));
      }
    }));
  }
  using zrt::bench::Median;
  std::cout << fmt::format("| {} closed lines to the reserve server, {} statements | {:.2f} s | {:.2f} s | {:.2f} |\n",
                           there.statements.size() - 1, shop.recorder.statements.size() + there.statements.size(),
                           Median(program), Median(bare), Median(program) / Median(bare))
            << std::flush;
  Write(shop, "DROP DATABASE " + reserve);
}

std::string Book(const BenchProgram& shop) {
  const std::string path = "C:\\catalogue.xlsx";
  lxw_workbook* book = workbook_new(shop.drives.ToNative(path).c_str());
  lxw_worksheet* sheet = workbook_add_worksheet(book, nullptr);
  worksheet_write_string(sheet, 0, 0, "Код", nullptr);
  for (int product = 1; product <= kProducts; ++product) {
    const auto row = static_cast<lxw_row_t>(product);
    worksheet_write_number(sheet, row, 0, product, nullptr);
    worksheet_write_string(sheet, row, 1, fmt::format("Товар номер {}", product).c_str(), nullptr);
    worksheet_write_number(sheet, row, 2, product * 10, nullptr);
    worksheet_write_number(sheet, row, 3, 4820000000000.0 + product, nullptr);
    for (lxw_col_t column = 4; column <= 8; ++column) worksheet_write_number(sheet, row, column, 0, nullptr);
    worksheet_write_string(sheet, row, 9, "2203", nullptr);
    worksheet_write_string(sheet, row, 10, "НАПИТКИ", nullptr);
  }
  workbook_close(book);
  return path;
}

void Loading(BenchProgram& shop) {
  shop.desktop.Entry = zrt::kAdministratorPassword;
  zrt::frmImpTov& screen = shop.app.Import;
  screen.Show();
  QApplication::processEvents();
  shop.Do([&] { screen.TextPath.UserType(Book(shop)); });
  shop.Compare(
      "a catalogue of 10,000 products from a spreadsheet", kRounds, [] {}, [&] { shop.Click(screen.CmdRun); });
}

}  // namespace

int main(int argc, char** argv) {
  return zrt::bench::Main(argc, argv, [&](BenchProgram& shop) {
    Copying(shop, argv[1], argv[2]);
    Loading(shop);
  });
}
