// Tells the press of a key from the repeats of one that is held.
#pragma once

#include <algorithm>

#include "platform/input.hpp"

namespace zum {

/// [main] Of one window. Repeats come as presses; from hosts that hand on what their server tells
/// them, each with a release ahead of it. Nobody tells of the release when the focus went
/// meanwhile.
class HeldKey {
 public:
  /// True for a repeat.
  bool press(const WindowKey& key) {
    const bool repeats = ticksLeft > 0 && isLast(key);
    last = key;
    ticksLeft = repeats ? kBetweenRepeats : kUntilRepeat;
    return repeats;
  }
  void release(const WindowKey& key) {
    if (isLast(key)) ticksLeft = std::min(ticksLeft, kUntilReleased);
  }
  /// As far as is known.
  bool isHeld() const { return ticksLeft > 0; }
  void tick() { ticksLeft = std::max(ticksLeft - 1, 0); }

 private:
  // In ticks, of which windows have some thirty a second.
  static constexpr int kUntilRepeat = 45;     // keyboards wait up to 2/3 of a second
  static constexpr int kBetweenRepeats = 15;  // and go on ten times a second or faster
  static constexpr int kUntilReleased = 2;    // no hand is that fast

  bool isLast(const WindowKey& key) const {
    return key.virt == last.virt && key.character == last.character;
  }

  WindowKey last;     // of all that are held, a keyboard repeats the one pressed last
  int ticksLeft = 0;  // until a press of that key is a new one
};

}  // namespace zum
