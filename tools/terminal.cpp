// zrt_terminal: a cash terminal that sells into the shop's database while the program runs. Lines go into the open
// receipt first; when the order is closed they move to PROD and KASSA, lines taken back go to SPION. A line that the
// back office has annulled meanwhile isn't sold.

#include <fmt/format.h>

#include <chrono>
#include <cstdint>
#include <iostream>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "catalogue.h"
#include "core/errors.h"
#include "core/recordset.h"
#include "core/regional_format.h"
#include "core/session.h"
#include "platform/system_clock.h"
#include "random.h"
#include "sale.h"

namespace {

using namespace zrt::tools;

constexpr const char* kUsage =
    "usage: zrt_terminal --host HOST --schema NAME [OPTION VALUE ...]\n"
    "  --terminal N   number of the terminal, 1 to 24 (1)\n"
    "  --orders N     orders to sell; 0 goes on until it is ended (0)\n"
    "  --pause MS     milliseconds between two lines (1500)\n"
    "  --seed N       what is sold (1)\n";

struct Options {
  zrt::DatabaseAddress database{"", "zrt", ""};
  int terminal = 1;
  int orders = 0;
  int pause_ms = 1500;
  unsigned seed = 1;
};

bool Read(int argc, char** argv, Options& options) {
  for (int i = 1; i + 1 < argc; i += 2) {
    const std::string name = argv[i];
    const std::string value = argv[i + 1];
    if (name == "--host") {
      options.database.host = value;
    } else if (name == "--schema") {
      options.database.schema = value;
    } else if (name == "--terminal") {
      options.terminal = std::stoi(value);
    } else if (name == "--orders") {
      options.orders = std::stoi(value);
    } else if (name == "--pause") {
      options.pause_ms = std::stoi(value);
    } else if (name == "--seed") {
      options.seed = static_cast<unsigned>(std::stoul(value));
    } else {
      return false;
    }
  }
  return argc % 2 == 1 && !options.database.host.empty() && !options.database.schema.empty();
}

class Terminal {
 public:
  explicit Terminal(const Options& options) : options_(options), random_(options.seed) {
    connection_.Open(zrt::MainConnectionString(options.database));
    goods_.Open("SELECT COD,NAME,PRISE,NDS,N1,N2,UKT FROM TOVAR WHERE PRISE>0 ORDER BY COD", connection_);
    if (goods_.RecordCount() == 0) throw zrt::Error("the catalogue is empty");
  }

  void SellOrder() {
    zrt::Recordset last;
    last.Open(fmt::format("SELECT MAX(NUM) FROM KASSA WHERE TER={}", options_.terminal), connection_);
    CashRow order;
    order.oper = "Заказ";
    order.ter = options_.terminal;
    order.pers = random_.Between(1, 8);
    order.num = last.IsNull(0) ? 1 : static_cast<int>(last.Field(0).Int()) + 1;
    order.table = random_.Between(1, 24);
    order.guests = random_.Between(1, 4);
    order.opened = Now();
    std::vector<SoldLine> lines;
    for (int i = random_.Between(1, 5); i > 0; --i) {
      Pause();
      lines.push_back(AddLine(order));
    }
    if (lines.size() > 1 && random_.Percent(20)) {
      TakeBack(lines.back());
      lines.pop_back();
    }
    Pause();
    DropAnnulled(lines);
    if (!lines.empty()) CloseOrder(order, lines);
  }

 private:
  std::string Now() const {
    const zrt::DateTime now = clock_.Now();
    return fmt::format("{:04}-{:02}-{:02} {:02}:{:02}:{:02}", now.date.year, now.date.month, now.date.day, now.hour,
                       now.minute, now.second);
  }

  void Pause() const { std::this_thread::sleep_for(std::chrono::milliseconds(options_.pause_ms)); }

  SoldLine AddLine(const CashRow& order) {
    goods_.SetBookmark(random_.Between(1, goods_.RecordCount()));
    SoldLine line;
    line.cod = static_cast<int>(goods_.Field("COD").Int());
    line.name = goods_.Field("NAME").Text();
    line.kol = std::int64_t{random_.Between(1, 3)} * 1000;
    line.prise = goods_.Field("PRISE").Int() * 10;
    line.ter = order.ter;
    line.pers = order.pers;
    line.num = order.num;
    line.datetime = Now();
    line.excise = static_cast<int>(goods_.Field("N1").Int());
    line.category = static_cast<int>(goods_.Field("N2").Int());
    line.ukt = goods_.Field("UKT").TextOrEmpty();
    const int tax = static_cast<int>(goods_.Field("NDS").Int());
    connection_.Execute(fmt::format("INSERT INTO CHECK{} ({}{}) VALUES ({}{})", order.ter, kCheckBaseColumns,
                                    kCheckAddedColumns, CheckBaseValues(line, tax), CheckAddedValues(line)));
    return line;
  }

  void TakeBack(const SoldLine& line) {
    const std::string moment = zrt::RegionalFormat{}.DateTimeText(clock_.Now());
    connection_.Execute(fmt::format("INSERT INTO SPION ({}) VALUES ({})", kSpionColumns, SpionValues(line, moment)));
    connection_.Execute(fmt::format("DELETE FROM CHECK{} WHERE COD={} LIMIT 1", line.ter, line.cod));
  }

  /// An annulment takes all lines of a product out of the open receipt.
  void DropAnnulled(std::vector<SoldLine>& lines) {
    zrt::Recordset receipt;
    receipt.Open(fmt::format("SELECT COD FROM CHECK{}", options_.terminal), connection_);
    std::set<std::int64_t> codes;
    for (int row = 1; row <= receipt.RecordCount(); ++row) codes.insert(receipt.At(row, 0).Int());
    std::erase_if(lines, [&codes](const SoldLine& line) { return codes.count(line.cod) == 0; });
  }

  void CloseOrder(CashRow& order, std::vector<SoldLine>& lines) {
    order.closed = Now();
    order.cash = random_.Percent(60);
    order.text = OrderText("подано", StatusText("оплачен", order.closed.substr(11, 5)));
    const std::optional<int> fiscal = random_.Percent(70) ? std::optional(2) : std::nullopt;
    for (SoldLine& line : lines) {
      line.fiscal = fiscal;
      line.status = StatusText("оплачен", order.closed.substr(11, 5));
      order.sum1 += line.Gross();
      connection_.Execute(fmt::format("INSERT INTO PROD ({}{}) VALUES ({}{})", kProdBaseColumns, kProdAddedColumns,
                                      BaseValues(line), AddedValues(line)));
      connection_.Execute(fmt::format("UPDATE TOVAR SET KOL=KOL+{} WHERE COD={}", line.kol, line.cod));
    }
    order.fiscal = fiscal;
    connection_.Execute(fmt::format("INSERT INTO KASSA ({}{}) VALUES ({}{})", kKassaBaseColumns, kKassaAddedColumns,
                                    BaseValues(order), AddedValues(order)));
    connection_.Execute(fmt::format("DELETE FROM CHECK{}", order.ter));
  }

  Options options_;
  Random random_;
  zrt::SystemClock clock_;
  zrt::Connection connection_;
  zrt::Recordset goods_;
};

}  // namespace

int main(int argc, char** argv) {
  Options options;
  try {
    if (!Read(argc, argv, options)) {
      std::cerr << kUsage;
      return 2;
    }
    Terminal terminal(options);
    for (int sold = 0; options.orders == 0 || sold < options.orders; ++sold) terminal.SellOrder();
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "zrt_terminal: " << error.what() << "\n";
    return 1;
  }
}
