// zrt_demo: prints the database of a demonstration shop as an SQL script, in the bytes that the database keeps:
//
//   zrt_demo [OPTION VALUE ...] | mariadb --default-character-set=latin1 zrt
//
//   --seed N       another shop of the same kind (1)
//   --now MOMENT   "yyyy-mm-dd hh:mm:ss" or "yyyy-mm-dd": when the sales end (the machine's clock)
//   --days N       shifts in the database (92)
//   --lines N      sold lines in all shifts together (24000)
//   --products N   size of the catalogue (400)
//   --mode MODE    normal, register, lite or restricted (normal)
//   --version N    4, or 0 for a database that the program has never seen (4)
//
// The same options give the same bytes.

#include <fmt/format.h>

#include <chrono>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <iterator>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>

#include "catalogue.h"
#include "core/schema.h"
#include "random.h"
#include "sales_history.h"
#include "script_writer.h"
#include "shop.h"

namespace zrt::tools {
namespace {

struct Options {
  int seed = 1;
  int products = 400;
  int version = 4;
  std::string mode = "normal";
  HistoryPlan history;
};

const std::map<std::string, int, std::less<>> kModes = {
    {"normal", 0}, {"register", -1}, {"lite", 1}, {"restricted", 2}};

DateTime MachineTime() {
  const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  std::tm local{};
  localtime_r(&now, &local);
  return {{local.tm_year + 1900, local.tm_mon + 1, local.tm_mday}, local.tm_hour, local.tm_min, local.tm_sec};
}

Options ReadOptions(int count, char** words) {
  Options options;
  options.history.now = MachineTime();
  for (int i = 1; i < count; i += 2) {
    const std::string_view name = words[i];
    if (i + 1 == count) throw std::invalid_argument(fmt::format("{} needs a value", name));
    const std::string value = words[i + 1];
    if (name == "--seed") {
      options.seed = std::stoi(value);
    } else if (name == "--now") {
      const std::optional<DateTime> now = ParseSqlDateTime(value);
      if (!now) throw std::invalid_argument(fmt::format("--now {}: not a moment", value));
      options.history.now = *now;
    } else if (name == "--days") {
      options.history.days = std::stoi(value);
    } else if (name == "--lines") {
      options.history.lines = std::stoi(value);
    } else if (name == "--products") {
      options.products = std::stoi(value);
    } else if (name == "--mode" && kModes.contains(value)) {
      options.mode = value;
    } else if (name == "--version" && (value == "0" || value == "4")) {
      options.version = std::stoi(value);
    } else {
      throw std::invalid_argument(fmt::format("unknown: {} {}", name, value));
    }
  }
  if (options.history.days < 1) throw std::invalid_argument("--days: at least the current shift is needed");
  options.history.upgraded = options.version > 0;
  return options;
}

std::string ReadScript(const char* name) {
  const std::string path = std::string(ZRT_DATA_DIR "/") + name;
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("can't read " + path);
  return {std::istreambuf_iterator<char>(file), {}};
}

void WriteProducts(ScriptWriter& script, const std::vector<Product>& catalogue, const SalesHistory& history,
                   const Options& options, Random& random) {
  for (const Product& product : catalogue) {
    const auto sold = history.CurrentSales().find(product.cod);
    // Without posted documents the register knows of no stock.
    const bool stocked = options.mode != "register" && !product.service;
    const int stock = stocked ? random.Between(-2, 120) * 1000 : 0;
    std::string columns = "COD,COD1,NAME,OST,KOL,PRISE,BARCODE,NDS,REZ";
    std::string values = fmt::format("{},1,{},{},{},{},'{}',{},{}", product.cod, Quoted(product.name), stock,
                                     sold == history.CurrentSales().end() ? 0 : sold->second, product.price,
                                     product.barcode, product.tax, product.category);
    if (options.version > 0) {
      columns += ",N1,N2,N4,N5,N6,N7,T1,UKT";
      values +=
          fmt::format(",{},{},{},{},{},{},'00.00.0000','{}'", product.excise, product.location, product.scale_code,
                      product.parts * 1000, product.service ? "0" : "NULL", product.portion, product.ukt);
    }
    script.Row("TOVAR", columns, values);
  }
}

void WriteDatabase(const Options& options, std::FILE* out) {
  ScriptWriter script(out);
  Random random(static_cast<std::uint64_t>(options.seed));
  const std::vector<Product> catalogue = MakeCatalogue(options.products);
  std::vector<Card> cards = MakeCards();
  const bool upgraded = options.version > 0;

  script.Script(ReadScript("base_schema.sql"));
  if (upgraded) {
    for (const std::string& statement : UpgradeStatements()) script.Statement(statement);
    if (options.mode == "register") {
      for (const std::string& statement : DocumentTableStatements()) script.Statement(statement);
    }
    WriteSettings(script, kModes.at(options.mode));
    WritePanels(script, catalogue);
  }
  WriteStaff(script, upgraded);
  SalesHistory history(options.history, catalogue, cards, script, random);
  history.Write();
  WriteProducts(script, catalogue, history, options, random);
  WriteCards(script, cards, upgraded, random);
  script.Script(ReadScript("tune.sql"));
  script.Flush();
}

}  // namespace
}  // namespace zrt::tools

int main(int argc, char** argv) {
  try {
    zrt::tools::WriteDatabase(zrt::tools::ReadOptions(argc, argv), stdout);
    return 0;
  } catch (const std::exception& failure) {
    fmt::print(stderr, "zrt_demo: {}\n", failure.what());
    return 1;
  }
}
