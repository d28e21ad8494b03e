#pragma once

#include "core/dates.h"

namespace zrt {

/// The shop's wall clock. Tests stand it still.
class Clock {
 public:
  virtual ~Clock() = default;
  virtual DateTime Now() const = 0;
};

}  // namespace zrt
