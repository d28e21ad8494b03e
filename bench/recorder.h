#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/connection.h"

namespace zrt::bench {

/// Remembers the statements that the program sends, for the bare client to send them again.
class Recorder final : public FaultSource {
 public:
  Verdict BeforeStatement(std::string_view sql) override {
    statements.emplace_back(sql);
    return Verdict::kRun;
  }
  std::vector<std::string> statements;
};

}  // namespace zrt::bench
