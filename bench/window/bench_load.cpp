// bench_load HOST SCHEMA SECONDS: six terminals of five orders a second each sell into the schema, first alone and
// then, for as long again, beside an operator who filters, annuls, posts backdated documents, counts, reports and saves
// without a pause while his link is cut once a minute. Says how long the terminals' statements took in both halves,
// what the program's memory did, and whether all that was sold is there once, by the terminals' own books. The schema
// is a demonstration shop and not of use as one afterwards.

#include <fmt/format.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "bench_program.h"
#include "check/shop_check.h"
#include "random.h"
#include "sale.h"

namespace {

using namespace std::chrono_literals;
using zrt::bench::BareClient;
using zrt::bench::BenchProgram;
using zrt::bench::Seconds;
using zrt::tools::CashRow;
using zrt::tools::SoldLine;
using Clock = std::chrono::steady_clock;

constexpr int kTerminals = 6;
constexpr auto kOrderEvery = 200ms;
constexpr auto kCutEvery = 60s;

/// What one result row of one column says; "" for none.
std::string Value(BareClient& client, const std::string& sql) {
  MYSQL_RES* result = client.Run(sql);
  const MYSQL_ROW row = result == nullptr ? nullptr : mysql_fetch_row(result);
  const std::string value = row == nullptr || row[0] == nullptr ? "" : row[0];
  mysql_free_result(result);
  return value;
}

/// A till and its own book of what it has sold.
class Till {
 public:
  Till(const std::string& host, const std::string& schema, int number)
      : number_(number), random_(static_cast<unsigned>(number)), client_(host, schema) {
    next_ = std::stoi("0" + Value(client_, fmt::format("SELECT MAX(NUM) FROM KASSA WHERE TER={}", number))) + 1;
    first_ = next_;
    Write(fmt::format("DELETE FROM CHECK{}", number));
  }

  void SellUntil(Clock::time_point end) {
    slowest = 0;
    for (auto due = Clock::now(); due < end; due += kOrderEvery) {
      std::this_thread::sleep_until(due);
      SellOrder();
    }
  }

  /// Says what the base has of this till where it differs from the till's book.
  std::string Difference(BareClient& client) const {
    const std::string where = fmt::format("TER={} AND NUM>={}", number_, first_);
    const std::string here = fmt::format("{} {} {}", lines_, sum_, receipts_);
    const std::string there = Value(client, fmt::format("SELECT CONCAT_WS(' ',(SELECT COUNT(*) FROM PROD WHERE {0}),"
                                                        "(SELECT IFNULL(SUM(SUM2),0) FROM PROD WHERE {0}),"
                                                        "(SELECT COUNT(*) FROM KASSA WHERE {0}))",
                                                        where));
    return here == there ? "" : fmt::format("terminal {} sold {} and the base has {}", number_, here, there);
  }

  double slowest = 0;  ///< seconds, of the statements since the last SellUntil
  int statements = 0;
  int annulled = 0;  ///< lines that the operator took out of an open receipt

 private:
  void Write(const std::string& sql) {
    slowest = std::max(slowest, Seconds([&] { mysql_free_result(client_.Run(sql)); }));
    ++statements;
  }

  std::string Now() const {
    const zrt::DateTime now = zrt::SystemClock().Now();
    return fmt::format("{:04}-{:02}-{:02} {:02}:{:02}:{:02}", now.date.year, now.date.month, now.date.day, now.hour,
                       now.minute, now.second);
  }

  void SellOrder() {
    std::map<int, SoldLine> lines;
    for (int i = 0; i < 3; ++i) {
      SoldLine line;
      line.cod = random_.Between(1, 100);
      line.name = fmt::format("Product {}", line.cod);
      line.kol = 1000;
      line.prise = random_.Between(10, 500) * std::int64_t{1000};
      line.ter = number_;
      line.pers = 1;
      line.num = next_;
      line.datetime = Now();
      if (!lines.emplace(line.cod, line).second) continue;
      Write(fmt::format("INSERT INTO CHECK{} ({}{}) VALUES ({}{})", number_, zrt::tools::kCheckBaseColumns,
                        zrt::tools::kCheckAddedColumns, CheckBaseValues(line, 0), CheckAddedValues(line)));
    }
    std::this_thread::sleep_for(100ms);  // the guest is still choosing: the operator may annul a line
    std::map<int, SoldLine> left;
    MYSQL_RES* open = client_.Run(fmt::format("SELECT COD FROM CHECK{}", number_));
    while (const MYSQL_ROW row = mysql_fetch_row(open)) left.insert(*lines.find(std::stoi(row[0])));
    mysql_free_result(open);
    annulled += static_cast<int>(lines.size() - left.size());
    CashRow order;
    order.oper = "Order";
    order.ter = number_;
    order.pers = 1;
    order.num = next_++;
    order.opened = order.closed = Now();
    order.table = 1;
    for (const auto& [cod, line] : left) {
      Write(fmt::format("INSERT INTO PROD ({}{}) VALUES ({}{})", zrt::tools::kProdBaseColumns,
                        zrt::tools::kProdAddedColumns, BaseValues(line), AddedValues(line)));
      Write(fmt::format("UPDATE TOVAR SET KOL=KOL+{} WHERE COD={}", line.kol, cod));
      order.sum1 += line.Gross();
      sum_ += line.Net();
      ++lines_;
    }
    Write(fmt::format("INSERT INTO KASSA ({}{}) VALUES ({}{})", zrt::tools::kKassaBaseColumns,
                      zrt::tools::kKassaAddedColumns, BaseValues(order), AddedValues(order)));
    ++receipts_;
    Write(fmt::format("DELETE FROM CHECK{}", number_));
  }

  int number_;
  zrt::tools::Random random_;
  BareClient client_;
  int first_ = 1;
  int next_ = 1;
  std::int64_t lines_ = 0;
  std::int64_t sum_ = 0;
  std::int64_t receipts_ = 0;
};

/// All tills sell for `seconds` while `meanwhile` runs again and again; the slowest statement of theirs.
double Sell(std::vector<std::unique_ptr<Till>>& tills, int seconds, const std::function<void()>& meanwhile) {
  const auto end = Clock::now() + std::chrono::seconds(seconds);
  std::atomic<bool> failed = false;
  std::vector<std::jthread> threads;
  for (auto& till : tills) {
    threads.emplace_back([&] {
      try {
        till->SellUntil(end);
      } catch (const std::exception& failure) {
        std::cerr << failure.what() << '\n';
        failed = true;
      }
    });
  }
  while (Clock::now() < end && !failed) meanwhile();
  threads.clear();
  if (failed) throw std::runtime_error("a terminal couldn't sell");
  double slowest = 0;
  for (const auto& till : tills) slowest = std::max(slowest, till->slowest);
  return slowest;
}

double ResidentMegabytes() {
  std::ifstream pages("/proc/self/statm");
  long size = 0;
  long resident = 0;
  pages >> size >> resident;
  return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1e6;
}

/// The operator's rounds. Whatever fails after a cut is done again in the next action, as he would.
class Operator {
 public:
  explicit Operator(BenchProgram& shop) : shop_(shop), app_(shop.app), random_(99) {
    // Statements of ten minutes are many; nobody reads them here.
    app_.TheSession.MainConnection.SetFaultSource(nullptr);
    shop.desktop.BearsComplaints = true;
    last_cut_ = Clock::now();
  }

  void Round() {
    if (Clock::now() - last_cut_ > kCutEvery) Cut();
    zrt::SalesTab& sales = app_.Main.Sales;
    Try([&] { app_.Main.TabStrip1.UserChoose("prod"); });
    for (zrt::Button& grid : sales.CmdDG) {
      Try([&] { grid.UserClick(); });
      Try([&] { sales.CmdDat.UserClick(); });
      Try([&] { sales.CmdNOpl.UserClick(); });
      Try([&] { sales.CmdFileCSV.UserClick(); });
    }
    Annul();
    Document(app_.StockDocuments.Incoming, app_.Main.mnuDocPN, zrt::DocType::kIncoming, random_.Between(1, 20));
    Document(app_.StockDocuments.WriteOff, app_.Main.mnuDocSP, zrt::DocType::kWriteOff, random_.Between(1, 20));
    Document(app_.StockDocuments.Inventory, app_.Main.mnuDocIN, zrt::DocType::kInventory, 0);
    zrt::Form9& texts = app_.Reports.TextReports;
    Try([&] { texts.Show(); });
    Try([&] { texts.CmdDat.UserClick(); });
    Try([&] { texts.CmdDat1.UserClick(); });
    Try([&] { texts.Hide(); });
    Try([&] { app_.Main.TabStrip1.UserChoose("sprav"); });
    Try([&] { app_.Main.Catalogue.CmdRefrTov.UserClick(); });
    ++rounds;
    memory.push_back(ResidentMegabytes());
  }

  int rounds = 0, documents = 0, cuts = 0;
  std::vector<double> memory;

 private:
  void Try(const std::function<void()>& action) {
    try {
      shop_.Do(action);
    } catch (const std::exception& failure) {
      std::cerr << failure.what() << '\n';
      QApplication::processEvents();
    }
  }

  void Cut() {
    last_cut_ = Clock::now();
    std::string id;
    Try([&] {
      const zrt::Recordset own = app_.TheSession.ReadOne("SELECT CONNECTION_ID()");
      id = own.Field(0).Text();
    });
    if (id.empty()) return;
    mysql_free_result(shop_.client.Run("KILL " + id));
    ++cuts;
  }

  void Annul() {
    zrt::frmDelChek& window = app_.DelChek;
    Try([&] { window.Show(); });
    Try([&] { window.CmdKas[static_cast<std::size_t>(random_.Between(0, kTerminals - 1))].UserClick(); });
    Try([&] {
      zrt::Key enter{zrt::Key::kEnter, {}};
      window.DataGrid1.UserKey(enter);
    });
    Try([&] { window.Hide(); });
  }

  /// Makes a document of three lines dated `days` ago and posts it, pressing again as long as it isn't posted.
  void Document(zrt::DocumentForm& form, zrt::Menu& menu, zrt::DocType type, int days) {
    // A document is known by the second of its first save: nobody makes two in one.
    std::this_thread::sleep_for(1s);
    Try([&] { menu.UserClick(); });
    if (days > 0) {
      Try([&] { form.CmdPlus.UserClick(); });
      Try([&] { form.Month0.UserPick(zrt::AddDays(shop_.clock.Now().date, -days)); });
    }
    for (int line = 0; line < 3; ++line) {
      const int cod = random_.Between(1, 100);
      Try([&] { app_.Stock.BroadcastToForm(cod, 2000, 5000, zrt::NumberOf(type)); });
    }
    for (int press = 0; press < 5 && !form.DocRun; ++press) Try([&] { form.RUNButton.UserClick(); });
    if (form.DocRun) ++documents;
    Try([&] { form.CancelButton.UserClick(); });
  }

  BenchProgram& shop_;
  zrt::App& app_;
  zrt::tools::Random random_;
  Clock::time_point last_cut_;
};

int Load(BenchProgram& shop, const char* host, const char* schema, int seconds) {
  std::vector<std::unique_ptr<Till>> tills;
  for (int number = 1; number <= kTerminals; ++number) tills.push_back(std::make_unique<Till>(host, schema, number));
  const double alone = Sell(tills, seconds, [] { std::this_thread::sleep_for(100ms); });
  Operator person(shop);
  const double together = Sell(tills, seconds, [&] { person.Round(); });
  int statements = 0;
  int annulled = 0;
  for (const auto& till : tills) {
    statements += till->statements;
    annulled += till->annulled;
  }
  std::cout << fmt::format(
      "| slowest of the terminals' {} statements, alone and beside the operator | {:.3f} s | {:.3f} s |\n", statements,
      alone, together);
  std::cout << fmt::format(
      "| rounds of the operator, documents posted, lines annulled, cuts of the link | {}, {}, {}, {} |\n",
      person.rounds, person.documents, annulled, person.cuts);
  if (!person.memory.empty()) {
    std::cout << fmt::format(
        "| memory after the first round, in the middle, at the end | {:.0f}, {:.0f}, {:.0f} MB |\n",
        person.memory.front(), person.memory[person.memory.size() / 2], person.memory.back());
  }
  int wrong = 0;
  for (const auto& till : tills) {
    const std::string difference = till->Difference(shop.client);
    if (difference.empty()) continue;
    std::cout << difference << '\n';
    ++wrong;
  }
  zrt::Connection connection;
  connection.Open(zrt::MainConnectionString({host, "zrt", schema}));
  const zrt::check::Findings findings = zrt::check::CheckShop(connection);
  if (!findings.IsWhole()) std::cout << findings.Report();
  std::cout << (wrong == 0 && findings.IsWhole() ? "nothing lost, nothing doubled, the shop is whole\n"
                                                 : "NOT WHOLE\n");
  return wrong == 0 && findings.IsWhole() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::cerr << "usage: bench_load HOST SCHEMA SECONDS\n";
    return 2;
  }
  const int seconds = std::stoi(argv[3]);
  int result = 1;
  const int ran =
      zrt::bench::Main(3, argv, [&](BenchProgram& shop) { result = Load(shop, argv[1], argv[2], seconds); });
  return ran == 0 ? result : ran;
}
