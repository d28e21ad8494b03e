#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/connection.h"

namespace zrt::test {

/// Fails or cuts one statement of a test's choice and remembers all that were sent. Hang it into a connection by
/// SetFaultSource; it must outlive that.
class ScriptedFaults final : public FaultSource {
 public:
  /// The `nth` statement from now (1 the next one) fails as a server would refuse it.
  void FailAt(int nth) { Arm(nth, Verdict::kFail); }

  /// Before the `nth` statement from now the link to the server breaks.
  void CutAt(int nth) { Arm(nth, Verdict::kCut); }

  /// The `nth` statement from now is run, and the link breaks before its answer comes.
  void LoseAnswerAt(int nth) { Arm(nth, Verdict::kLoseAnswer); }

  /// Every statement sent since the beginning or the last Forget, the failed ones included (UTF-8).
  const std::vector<std::string>& Statements() const { return statements_; }
  void Forget() { statements_.clear(); }

  Verdict BeforeStatement(std::string_view sql) override {
    statements_.emplace_back(sql);
    return countdown_ > 0 && --countdown_ == 0 ? verdict_ : Verdict::kRun;
  }

 private:
  void Arm(int nth, Verdict verdict) {
    countdown_ = nth;
    verdict_ = verdict;
  }

  int countdown_ = 0;
  Verdict verdict_ = Verdict::kRun;
  std::vector<std::string> statements_;
};

}  // namespace zrt::test
