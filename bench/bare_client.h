#pragma once

#include <fmt/format.h>
#include <mysql.h>

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <string>
#include <vector>

namespace zrt::bench {

/// A connection of the bare client library with the program's character set and SQL mode.
class BareClient {
 public:
  BareClient(const std::string& host, const std::string& schema) : connection_(mysql_init(nullptr)) {
    mysql_options(connection_, MYSQL_SET_CHARSET_NAME, "latin1");
    if (mysql_real_connect(connection_, host.c_str(), "zrt", "41730926", schema.c_str(), 3306, nullptr, 0) == nullptr) {
      throw std::runtime_error(mysql_error(connection_));
    }
    Run("SET SESSION sql_mode='NO_ENGINE_SUBSTITUTION'");
  }
  ~BareClient() { mysql_close(connection_); }
  BareClient(const BareClient&) = delete;
  BareClient& operator=(const BareClient&) = delete;

  /// Runs a statement and stores its result; nullptr where it has none. To be freed by mysql_free_result.
  MYSQL_RES* Run(const std::string& sql) {
    if (mysql_real_query(connection_, sql.data(), sql.size()) != 0) throw std::runtime_error(mysql_error(connection_));
    return mysql_store_result(connection_);
  }

 private:
  MYSQL* connection_;
};

template <class Work>
double Seconds(Work&& work) {
  const auto begin = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

inline double Median(std::vector<double> all) {
  std::sort(all.begin(), all.end());
  return all[all.size() / 2];
}

}  // namespace zrt::bench
