// Tells the press of a key from the repeats of one that is held.
#pragma once

#include <algorithm>

#include "platform/input.hpp"

namespace zum {

/// [main] Repeats come as presses; from hosts that hand on what their server tells them, each with
/// a release ahead of it. Nobody tells of the release when the focus went meanwhile.
class HeldKey {
 public:
  /// True for a repeat.
  bool press(const WindowKey& key) {
    const bool repeats = ticksLeft > 0 && isLast(key);
    last = key;
    ticksLeft = kUntilRepeat;
    return repeats;
  }
  void release(const WindowKey& key) {
    if (isLast(key)) ticksLeft = std::min(ticksLeft, kUntilReleased);
  }
  void tick() { ticksLeft = std::max(ticksLeft - 1, 0); }

 private:
  static constexpr int kUntilRepeat = 45;   // ticks; keyboards wait up to 2/3 of a second
  static constexpr int kUntilReleased = 2;  // ticks; no hand is that fast

  bool isLast(const WindowKey& key) const {
    return key.virt == last.virt && key.character == last.character;
  }

  WindowKey last;     // the one that was pressed last: no other repeats
  int ticksLeft = 0;  // for which a press of it is a repeat
};

}  // namespace zum
