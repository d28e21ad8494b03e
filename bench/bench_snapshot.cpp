// bench_snapshot HOST SCHEMA [ROWS]: opens sold lines as a snapshot, beside the bare client's mysql_store_result with
// the same copy into the same arena. Each side runs in a process of its own, so that its peak of memory is its own.

#include <fmt/format.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include "bare_client.h"
#include "core/session.h"
#include "core/snapshot.h"
#include "sales/sales_statements.h"

namespace {

using zrt::bench::BareClient;
using zrt::bench::Median;
using zrt::bench::Seconds;

constexpr int kRounds = 5;

struct Measure {
  double seconds = 0;
  double megabytes = 0;  ///< peak, less what the process had before
  std::size_t rows = 0;
};

double PeakMegabytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024;
}

/// Runs `work`, which returns the number of rows, in a child process.
template <class Work>
Measure InChild(Work&& work) {
  int channel[2];
  if (pipe(channel) != 0) throw std::runtime_error("no pipe");
  const pid_t child = fork();
  if (child == 0) {
    Measure measure;
    try {
      const double before = PeakMegabytes();
      measure.seconds = Seconds([&] { measure.rows = work(); });
      measure.megabytes = PeakMegabytes() - before;
    } catch (const std::exception& error) {
      std::cerr << error.what() << "\n";
    }
    const ssize_t written = write(channel[1], &measure, sizeof measure);
    _exit(written == sizeof measure ? 0 : 1);
  }
  Measure measure;
  const ssize_t got = read(channel[0], &measure, sizeof measure);
  close(channel[0]);
  close(channel[1]);
  waitpid(child, nullptr, 0);
  if (got != sizeof measure || measure.rows == 0) throw std::runtime_error("a side failed");
  return measure;
}

std::size_t Program(zrt::Connection& connection, const std::string& sql) {
  zrt::Recordset set;
  set.Open(sql, connection);
  return static_cast<std::size_t>(set.RecordCount());
}

std::size_t Bare(BareClient& client, const std::string& sql) {
  MYSQL_RES* result = client.Run(sql);
  const unsigned fields = mysql_num_fields(result);
  zrt::RowArena arena;
  std::vector<const char*> rows;
  rows.reserve(mysql_num_rows(result));
  while (MYSQL_ROW row = mysql_fetch_row(result)) {
    const unsigned long* lengths = mysql_fetch_lengths(result);
    std::size_t bytes = 0;
    for (unsigned i = 0; i < fields; ++i) bytes += zrt::RowArena::CellBytes(lengths[i]);
    char* const begin = arena.Reserve(bytes);
    char* at = begin;
    for (unsigned i = 0; i < fields; ++i) {
      at = row[i] == nullptr ? zrt::RowArena::PutNull(at) : zrt::RowArena::Put(at, row[i], lengths[i]);
    }
    arena.Commit(at);
    rows.push_back(begin);
  }
  mysql_free_result(result);
  return rows.size();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::cerr << "usage: bench_snapshot HOST SCHEMA [ROWS]\n";
    return 2;
  }
  const std::string host = argv[1];
  const std::string schema = argv[2];
  const std::string sql = fmt::format("{} LIMIT {}", zrt::sales::kSales, argc > 3 ? argv[3] : "1000000");
  std::vector<double> program;
  std::vector<double> bare;
  Measure ours;
  Measure theirs;
  for (int round = 0; round < kRounds; ++round) {
    ours = InChild([&] {
      zrt::Connection connection;
      connection.Open(zrt::MainConnectionString({host, "zrt", schema}));
      return Program(connection, sql);
    });
    theirs = InChild([&] {
      BareClient client(host, schema);
      return Bare(client, sql);
    });
    program.push_back(ours.seconds);
    bare.push_back(theirs.seconds);
  }
  std::cout << fmt::format("| snapshot of {} rows | {:.2f} s, {:.0f} MB | {:.2f} s, {:.0f} MB | {:.2f} |\n", ours.rows,
                           Median(program), ours.megabytes, Median(bare), theirs.megabytes,
                           Median(program) / Median(bare));
  return 0;
}
