// zrt_demo: writes the demonstration shop as an SQL script in windows-1251, to be piped into the bare client. The same
// options give the same bytes.

#include <fmt/format.h>

#include <cstdint>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "catalogue.h"
#include "core/errors.h"
#include "core/schema.h"
#include "platform/system_clock.h"
#include "sales_history.h"

namespace {

using namespace zrt::tools;

constexpr const char* kUsage =
    "usage: zrt_demo [OPTION VALUE ...]\n"
    "  --lines N        sold lines (40000)\n"
    "  --products N     products of the catalogue (400)\n"
    "  --mode MODE      normal, register, lite or restricted (register)\n"
    "  --version V      of the schema: 4, or 0 as the terminals bring it (4)\n"
    "  --now MOMENT     \"yyyy-mm-dd hh:mm:ss\": the end of what was sold (the machine's clock)\n"
    "  --seed N         another shop of the same kind (1)\n";

const std::map<std::string, int> kModes = {{"normal", 0}, {"register", -1}, {"lite", 1}, {"restricted", 2}};

struct Options {
  int lines = 40000;
  int products = 400;
  int mode = -1;
  bool upgraded = true;
  zrt::DateTime now = zrt::SystemClock().Now();
  unsigned seed = 1;
};

bool Read(int argc, char** argv, Options& options) {
  for (int i = 1; i + 1 < argc; i += 2) {
    const std::string name = argv[i];
    const std::string value = argv[i + 1];
    if (name == "--lines") {
      options.lines = std::stoi(value);
    } else if (name == "--products") {
      options.products = std::stoi(value);
    } else if (name == "--mode" && kModes.count(value) != 0) {
      options.mode = kModes.at(value);
    } else if (name == "--version" && (value == "0" || value == "4")) {
      options.upgraded = value == "4";
    } else if (const auto now = zrt::ParseSqlDateTime(value); name == "--now" && now) {
      options.now = *now;
    } else if (name == "--seed") {
      options.seed = static_cast<unsigned>(std::stoul(value));
    } else {
      return false;
    }
  }
  return argc % 2 == 1 && options.lines > 0;
}

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw zrt::FileError(path, "can't be read");
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

void WriteCatalogue(ScriptWriter& script, const std::vector<Product>& catalogue, const SalesHistory& sales,
                    bool upgraded, Random& random) {
  for (const Product& product : catalogue) {
    const auto entry = sales.CurrentSales().find(product.cod);
    const std::int64_t sold = entry == sales.CurrentSales().end() ? 0 : entry->second;
    const std::int64_t stock = product.service ? 0 : std::int64_t{random.Between(0, 120)} * 1000 + sold;
    std::string values = fmt::format("{},1,{},{},{},{},'{}',{},{}", product.cod, Quoted(product.name), stock, sold,
                                     product.price, product.barcode, product.tax, product.category);
    if (upgraded) {
      values +=
          fmt::format(",{},{},{},{},{},{},'00.00.0000','{}'", product.excise, product.location, product.scale_code,
                      product.parts * 1000, product.service ? "0" : "NULL", product.portion, product.ukt);
    }
    script.Row("TOVAR",
               upgraded ? "COD,COD1,NAME,OST,KOL,PRISE,BARCODE,NDS,REZ,N1,N2,N4,N5,N6,N7,T1,UKT"
                        : "COD,COD1,NAME,OST,KOL,PRISE,BARCODE,NDS,REZ",
               values);
  }
}

void WriteShop(const Options& options) {
  ScriptWriter script(stdout);
  Random random(options.seed);
  const std::vector<Product> catalogue = MakeCatalogue(options.products);
  std::vector<Card> cards = MakeCards();

  script.Statement("SET SESSION sql_mode='NO_ENGINE_SUBSTITUTION'");
  script.Script(ReadFile(ZRT_DATA_DIR "/base_schema.sql"));
  if (options.upgraded) {
    for (const std::string& statement : zrt::UpgradeStatements()) script.Statement(statement);
    if (options.mode == kModes.at("register")) {
      for (const std::string& statement : zrt::DocumentTableStatements()) script.Statement(statement);
    }
  }
  script.Statement("SET autocommit=0");
  SalesHistory sales(script, random, catalogue, cards, options.upgraded);
  sales.Write(options.lines, options.now);
  WriteCatalogue(script, catalogue, sales, options.upgraded, random);
  WriteStaff(script, options.upgraded);
  WriteCards(script, cards, options.upgraded, random);
  if (options.upgraded) {
    WritePanels(script, catalogue);
    WriteSettings(script, options.mode, ShiftHourAt(options.now));
  }
  script.Statement("COMMIT");
  script.Statement("SET autocommit=1");
  if (options.upgraded) script.Script(ReadFile(ZRT_DATA_DIR "/tune.sql"));
  script.Flush();
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  try {
    if (!Read(argc, argv, options)) {
      std::cerr << kUsage;
      return 2;
    }
    WriteShop(options);
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "zrt_demo: " << error.what() << "\n";
    return 1;
  }
}
