// Tells the press of a key from the repeats of one that is held, and whose release is whose.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <vector>

#include "platform/input.hpp"

namespace zum {

/// The same key, whatever Shift makes of its letter meanwhile.
inline bool isSameKey(const WindowKey& a, const WindowKey& b) {
  const auto small = [](std::int32_t letter) {
    return letter >= 'A' && letter <= 'Z' ? letter - 'A' + 'a' : letter;
  };
  return a.virt == b.virt && small(a.character) == small(b.character);
}

/// [main] Of one window. Repeats come as presses; from hosts that hand on what their server tells
/// them, each with a release ahead of it. Nobody tells of the release when the focus went
/// meanwhile.
class HeldKey {
 public:
  /// True for a repeat.
  bool press(const WindowKey& key) {
    const bool repeats = isHeld() && isSameKey(key, last);
    last = key;
    ticksLeft = repeats ? kBetweenRepeats : kUntilRepeat;
    until = Clock::now() + ticksLeft * kTick;
    isReleased = false;
    return repeats;
  }
  void release(const WindowKey& key) {
    if (!isSameKey(key, last)) return;
    ticksLeft = std::min(ticksLeft, kUntilReleased);
    isReleased = true;
  }
  /// What happens to it is not told any more.
  void forget() { ticksLeft = 0, isReleased = true; }
  /// As far as is known.
  bool isHeld() const { return ticksLeft > 0 || (!isReleased && Clock::now() < until); }
  void tick() { ticksLeft = std::max(ticksLeft - 1, 0); }

 private:
  using Clock = std::chrono::steady_clock;

  // In ticks, of which windows have some thirty a second. A host may tick faster, and one that was
  // busy hands on late what was pressed: both the ticks and their time must be over.
  static constexpr std::chrono::milliseconds kTick{33};
  static constexpr int kUntilRepeat = 45;     // keyboards wait up to 2/3 of a second
  static constexpr int kBetweenRepeats = 15;  // and go on ten times a second or faster
  static constexpr int kUntilReleased = 2;    // no hand is that fast

  WindowKey last;     // of all that are held, a keyboard repeats the one pressed last
  int ticksLeft = 0;  // until a press of that key is a new one
  Clock::time_point until;
  bool isReleased = false;
};

/// [main] Keys whose press was of use to a window: nobody else is to hear of their release.
class UsedKeys {
 public:
  void note(const WindowKey& key, bool isUsed) {
    take(key);
    if (!isUsed) return;
    if (held.size() == kMost) held.erase(held.begin());
    held.push_back(key);
  }
  /// True for one that was used.
  bool take(const WindowKey& key) {
    return std::erase_if(held, [&](const WindowKey& each) { return isSameKey(each, key); }) > 0;
  }
  void clear() { held.clear(); }

 private:
  static constexpr std::size_t kMost = 10;  // fingers; of others the release was lost

  std::vector<WindowKey> held;
};

}  // namespace zum
