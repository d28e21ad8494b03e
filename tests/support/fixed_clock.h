#pragma once

#include "core/clock.h"

namespace zrt::test {

/// A clock that stands where a test puts it.
class FixedClock final : public Clock {
 public:
  explicit FixedClock(DateTime now = {{2026, 11, 12}, 10, 0, 0}) : now_(now) {}
  DateTime Now() const override { return now_; }
  void Set(const DateTime& now) { now_ = now; }

 private:
  DateTime now_;
};

}  // namespace zrt::test
