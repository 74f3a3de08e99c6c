// A scale that a hand still looks for: a window that is dragged larger takes hundreds of sizes on
// its way, and all pictures are drawn anew for each that it shows.
#pragma once

#include <optional>
#include <utility>

#include "toolkit/view/scale.hpp"

namespace zum {

/// [main]
class RestingScale {
 public:
  void want(const Scale& scale) {
    if (wanted == scale) return;
    wanted = scale;
    ticksLeft = kRest;
  }
  void forget() { wanted.reset(); }
  /// That is on its way; none while the window has what it should have.
  const std::optional<Scale>& coming() const { return wanted; }
  /// Once, when nothing else was wanted for a tenth of a second.
  std::optional<Scale> tick() {
    if (!wanted || --ticksLeft > 0) return {};
    return std::exchange(wanted, std::nullopt);
  }

 private:
  static constexpr int kRest = 3;  // ticks

  std::optional<Scale> wanted;
  int ticksLeft = 0;
};

}  // namespace zum
