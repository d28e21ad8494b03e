// zrt_terminal: a cash terminal that sells into the shop's database while the back office works on it.
//
//   --host HOST       database server (127.0.0.77)
//   --account NAME    its account (zrt)
//   --database NAME   its schema (zrt)
//   --terminal N      number of the terminal, 1 to 24 (1)
//   --orders N        orders to sell before it ends, 0 for no end (10)
//   --pace MS         milliseconds between two actions of the cashier (1000)
//   --seed N          other guests (1)
//   --clock MOMENT    "yyyy-mm-dd hh:mm:ss": stamps begin here and go on by half a minute with each action, whatever
//   the
//                     pace (the machine's clock)
//
// Each line of an order is written into the terminal's open receipt, now and then one is taken back. What the receipt
// holds when the guest pays becomes the order; a line that the back office has annulled meanwhile is not in it.

#include <fmt/format.h>

#include <chrono>
#include <ctime>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>

#include "core/connection.h"
#include "core/recordset.h"
#include "core/session.h"
#include "random.h"
#include "sale.h"
#include "script_writer.h"

namespace zrt::tools {
namespace {

constexpr int kSecondsPerAction = 30;

struct Options {
  DatabaseAddress address{"127.0.0.77", "zrt", "zrt"};
  int terminal = 1;
  int orders = 10;
  int pace = 1000;
  int seed = 1;
  std::optional<DateTime> clock;
};

Options ReadOptions(int count, char** words) {
  Options options;
  for (int i = 1; i < count; i += 2) {
    const std::string_view name = words[i];
    if (i + 1 == count) throw std::invalid_argument(fmt::format("{} needs a value", name));
    const std::string value = words[i + 1];
    if (name == "--host") {
      options.address.host = value;
    } else if (name == "--account") {
      options.address.account = value;
    } else if (name == "--database") {
      options.address.schema = value;
    } else if (name == "--terminal") {
      options.terminal = std::stoi(value);
    } else if (name == "--orders") {
      options.orders = std::stoi(value);
    } else if (name == "--pace") {
      options.pace = std::stoi(value);
    } else if (name == "--seed") {
      options.seed = std::stoi(value);
    } else if (name == "--clock") {
      options.clock = ParseSqlDateTime(value);
      if (!options.clock) throw std::invalid_argument(fmt::format("--clock {}: not a moment", value));
    } else {
      throw std::invalid_argument(fmt::format("unknown: {}", name));
    }
  }
  if (options.terminal < 1 || options.terminal > 24) throw std::invalid_argument("--terminal: 1 to 24");
  return options;
}

class Terminal {
 public:
  explicit Terminal(const Options& options)
      : options_(options),
        random_(static_cast<std::uint64_t>(options.seed)),
        check_(fmt::format("CHECK{}", options.terminal)) {
    if (options_.clock) stamp_ = ToTime(*options_.clock);
    connection_.Open(MainConnectionString(options_.address));
    // The order of the rows decides what a seed sells.
    products_.Open(
        "SELECT COD,NAME,PRISE,NDS,N1,N2,N4,UKT FROM TOVAR WHERE COD1=1 AND PRISE>0 GROUP BY COD ORDER BY COD",
        connection_);
    waiters_.Open("SELECT COD FROM KLIENT WHERE NUM<3 ORDER BY COD", connection_);
    if (products_.RecordCount() == 0) throw std::runtime_error("the catalogue is empty: nothing to sell");
    if (waiters_.RecordCount() == 0) throw std::runtime_error("there is no waiter to sell");
  }

  void SellOrder() {
    const int waiter = static_cast<int>(waiters_.At(random_.Between(1, waiters_.RecordCount()), 0).Int());
    const int number = NextNumber();
    const std::string opened = SqlStamp();
    for (int lines = random_.Between(1, 6); lines > 0; --lines) AddLine(waiter, number);
    CloseOrder(waiter, number, opened);
  }

 private:
  static std::time_t ToTime(const DateTime& moment) {
    std::tm parts{};
    parts.tm_year = moment.date.year - 1900;
    parts.tm_mon = moment.date.month - 1;
    parts.tm_mday = moment.date.day;
    parts.tm_hour = moment.hour;
    parts.tm_min = moment.minute;
    parts.tm_sec = moment.second;
    parts.tm_isdst = -1;
    return std::mktime(&parts);
  }

  std::string Stamp(const char* pattern) const {
    const std::time_t moment =
        options_.clock ? stamp_ : std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    std::tm parts{};
    localtime_r(&moment, &parts);
    char text[32];
    return {text, std::strftime(text, sizeof text, pattern, &parts)};
  }

  std::string SqlStamp() const { return Stamp("%Y-%m-%d %H:%M:%S"); }

  void Wait() {
    stamp_ += kSecondsPerAction;
    std::this_thread::sleep_for(std::chrono::milliseconds(options_.pace));
  }

  int NextNumber() {
    Recordset last;
    last.Open(fmt::format("SELECT MAX(NUM) FROM KASSA WHERE TER={}", options_.terminal), connection_);
    return last.IsNull(0) ? 1 : static_cast<int>(last.Field(0).Int()) + 1;
  }

  SoldLine MakeLine(int row, int waiter, int number) {
    SoldLine line;
    line.cod = static_cast<int>(products_.At(row, 0).Int());
    line.name = products_.At(row, 1).Text();
    line.prise = products_.At(row, 2).Int() * 10;
    line.excise = static_cast<int>(products_.At(row, 4).Int());
    line.category = static_cast<int>(products_.At(row, 5).Int());
    line.ukt = products_.At(row, 7).TextOrEmpty();
    const bool weighed = products_.At(row, 6).Int() != 0;
    line.kol = weighed ? random_.Between(80, 1400) : 1000 * random_.Between(1, 3);
    line.ter = options_.terminal;
    line.pers = waiter;
    line.num = number;
    return line;
  }

  void AddLine(int waiter, int number) {
    const int row = random_.Between(1, products_.RecordCount());
    const SoldLine line = MakeLine(row, waiter, number);
    const int tax = static_cast<int>(products_.At(row, 3).Int());
    connection_.Execute(fmt::format("INSERT INTO {} ({}{}) VALUES ({}{})", check_, kCheckBaseColumns,
                                    kCheckAddedColumns, CheckBaseValues(line, tax), CheckAddedValues(line)));
    Wait();
    if (random_.Percent(8)) TakeBack(line);
  }

  void TakeBack(const SoldLine& line) {
    connection_.Execute(fmt::format("DELETE FROM {} WHERE COD={}", check_, line.cod));
    connection_.Execute(fmt::format("INSERT INTO SPION ({}) VALUES ({})", kSpionColumns,
                                    SpionValues(line, Stamp("%d.%m.%Y %H:%M:%S"))));
    Wait();
  }

  void CloseOrder(int waiter, int number, const std::string& opened) {
    Recordset receipt;
    receipt.Open(fmt::format("SELECT COD,NAME,ROUND(KOL*1000),ROUND(PRISE*1000),N1,N2,UKT FROM {}", check_),
                 connection_);
    if (receipt.RecordCount() == 0) return;
    const std::string now = SqlStamp();
    const std::string time = now.substr(11, 5);
    CashRow row;
    row.oper = "Заказ";
    row.ter = options_.terminal;
    row.pers = waiter;
    row.num = number;
    row.opened = opened;
    row.closed = now;
    row.table = random_.Between(1, 24);
    row.cash = random_.Percent(60);
    row.text = OrderText("исполнен " + time, StatusText(row.cash ? "оплачен" : "картой", time));
    if (random_.Percent(50)) row.fiscal = 2;
    for (int i = 1; i <= receipt.RecordCount(); ++i) {
      SoldLine line;
      line.cod = static_cast<int>(receipt.At(i, 0).Int());
      line.name = receipt.At(i, 1).TextOrEmpty();
      line.kol = receipt.At(i, 2).Int();
      line.prise = receipt.At(i, 3).Int();
      line.excise = static_cast<int>(receipt.At(i, 4).Int());
      line.category = static_cast<int>(receipt.At(i, 5).Int());
      line.ukt = receipt.At(i, 6).TextOrEmpty();
      line.ter = row.ter;
      line.pers = row.pers;
      line.num = row.num;
      line.datetime = now;
      line.status = StatusText("готово", time);
      if (row.fiscal) line.fiscal = line.excise != 0 ? 1 : *row.fiscal;
      row.sum1 += line.Gross();
      connection_.Execute(fmt::format("INSERT INTO PROD ({}{}) VALUES ({}{})", kProdBaseColumns, kProdAddedColumns,
                                      BaseValues(line), AddedValues(line)));
    }
    connection_.Execute(fmt::format("INSERT INTO KASSA ({}{}) VALUES ({}{})", kKassaBaseColumns, kKassaAddedColumns,
                                    BaseValues(row), AddedValues(row)));
    connection_.Execute(fmt::format("DELETE FROM {}", check_));
    fmt::print("{} terminal {} order {}: {} lines, {:.2f}\n", now, row.ter, row.num, receipt.RecordCount(),
               static_cast<double>(row.sum1) / 1000);
    std::fflush(stdout);
    Wait();
  }

  Options options_;
  Random random_;
  std::string check_;
  std::time_t stamp_ = 0;
  Connection connection_;
  Recordset products_, waiters_;
};

}  // namespace
}  // namespace zrt::tools

int main(int argc, char** argv) {
  try {
    const zrt::tools::Options options = zrt::tools::ReadOptions(argc, argv);
    zrt::tools::Terminal terminal(options);
    for (int order = 0; options.orders == 0 || order < options.orders; ++order) terminal.SellOrder();
    return 0;
  } catch (const std::exception& failure) {
    fmt::print(stderr, "zrt_terminal: {}\n", failure.what());
    return 1;
  }
}
