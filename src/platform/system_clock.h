#pragma once

#include "core/clock.h"

namespace zrt {

/// The machine's clock in local time.
class SystemClock final : public Clock {
 public:
  DateTime Now() const override;
};

}  // namespace zrt
