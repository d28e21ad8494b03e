// bench_statements HOST SCHEMA [COUNT]: one-row statements through the shared command, beside the bare client.

#include <fmt/format.h>

#include <iostream>
#include <string>
#include <vector>

#include "bare_client.h"
#include "core/command.h"
#include "core/session.h"

namespace {

using zrt::bench::BareClient;
using zrt::bench::Median;
using zrt::bench::Seconds;

constexpr int kRounds = 5;

template <class Ours, class Theirs>
void Compare(const char* what, int count, Ours&& ours, Theirs&& theirs) {
  std::vector<double> program;
  std::vector<double> bare;
  for (int round = 0; round < kRounds; ++round) {
    program.push_back(Seconds([&] {
      for (int i = 0; i < count; ++i) ours(i);
    }));
    bare.push_back(Seconds([&] {
      for (int i = 0; i < count; ++i) theirs(i);
    }));
  }
  std::cout << fmt::format("| {} {} | {:.2f} s | {:.2f} s | {:.2f} |\n", count, what, Median(program), Median(bare),
                           Median(program) / Median(bare));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::cerr << "usage: bench_statements HOST SCHEMA [COUNT]\n";
    return 2;
  }
  const int count = argc > 3 ? std::stoi(argv[3]) : 20000;
  zrt::Connection connection;
  connection.Open(zrt::MainConnectionString({argv[1], "zrt", argv[2]}));
  zrt::Command command(connection);
  zrt::Recordset scratch;
  BareClient client(argv[1], argv[2]);
  const auto free_result = [](MYSQL_RES* result) { mysql_free_result(result); };

  const auto read = [](int i) { return fmt::format("SELECT NAME FROM TOVAR WHERE COD={}", i % 400 + 1); };
  Compare(
      "one-row reads", count,
      [&](int i) {
        command.CommandText = read(i);
        command.Execute(scratch);
      },
      [&](int i) { free_result(client.Run(read(i))); });

  connection.Execute("CREATE TEMPORARY TABLE BENCH (N int, T varchar(50)) ENGINE=InnoDB");
  client.Run("CREATE TEMPORARY TABLE BENCH (N int, T varchar(50)) ENGINE=InnoDB");
  const auto write = [](int i) { return fmt::format("INSERT INTO BENCH (N,T) VALUES ({},'line {}')", i, i); };
  Compare(
      "one-row writes", count,
      [&](int i) {
        command.CommandText = write(i);
        command.Execute();
      },
      [&](int i) { client.Run(write(i)); });
  return 0;
}
