#pragma once

#include <cstdint>
#include <random>

namespace zrt::tools {

/// Chance that comes out the same on every machine: the standard's distributions don't, its generators do.
class Random {
 public:
  explicit Random(std::uint64_t seed) : generator_(seed) {}

  /// 0 to `count`-1.
  int Below(int count) { return static_cast<int>(generator_() % static_cast<std::uint64_t>(count)); }

  /// `first` to `last`, both included.
  int Between(int first, int last) { return first + Below(last - first + 1); }

  bool Percent(int chance) { return Below(100) < chance; }

  /// One item of a container with operator[] and size().
  template <typename Items>
  const auto& Pick(const Items& items) {
    return items[static_cast<std::size_t>(Below(static_cast<int>(items.size())))];
  }

 private:
  std::mt19937_64 generator_;
};

}  // namespace zrt::tools
