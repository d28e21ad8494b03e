// bench_search HOST SCHEMA: how long one key typed in the search of the catalogue takes to find its product. Every name
// is typed letter by letter; the letters that end a name with one that no product has are the worst case.

#include <fmt/format.h>

#include <algorithm>
#include <iostream>
#include <string>

#include "bare_client.h"
#include "core/session.h"
#include "core/text.h"

namespace {

using zrt::bench::Seconds;

constexpr int kNames = 200;

double Search(zrt::Recordset& products, const std::string& typed) {
  return Seconds([&] {
    products.MoveFirst();
    products.Find("Name", typed, zrt::Recordset::Match::kBeginsWith);
  });
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: bench_search HOST SCHEMA\n";
    return 2;
  }
  zrt::Connection connection;
  connection.Open(zrt::MainConnectionString({argv[1], "zrt", argv[2]}));
  zrt::Recordset products;
  products.Open("SELECT COD As 'Cod',NAME As 'Name' FROM TOVAR WHERE NAME NOT LIKE '%\\'%' ORDER BY NAME", connection);

  double slowest = 0;
  std::size_t keys = 0;
  const int step = std::max(1, products.RecordCount() / kNames);
  for (int row = 1; row <= products.RecordCount(); row += step) {
    const std::string name = products.At(row, 1).Text() + "¤";
    for (std::size_t letters = 1; letters <= zrt::Length(name); ++letters, ++keys) {
      slowest = std::max(slowest, Search(products, zrt::Left(name, letters)));
    }
  }
  std::cout << fmt::format("| search in {} products, slowest of {} keys | {:.2f} ms |\n", products.RecordCount(), keys,
                           slowest * 1000);
  return 0;
}
