// What a level shows of the peaks that were measured: falls slowly, holds the highest for a moment,
// remembers that it clipped. Used by the transport strip.
#pragma once

#include <algorithm>
#include <cmath>

namespace zum {

/// [main] Counts in ticks of the window, thirty a second.
class PeakMeter {
 public:
  static constexpr double kSilence = -100.0;  // dB

  /// At each tick the peak since the last one; 1 is full scale.
  void take(float peak) {
    const double now = peak > 0.0F ? 20.0 * std::log10(static_cast<double>(peak)) : kSilence;
    shownLevel = std::max(now, std::max(shownLevel - kFall, kSilence));
    if (now >= heldLevel) {
      heldLevel = now;
      ticksLeft = kHoldTicks;
    } else if (--ticksLeft <= 0) {
      heldLevel = shownLevel;
    }
    if (!(peak <= 1.0F)) clips = true;  // also what is no number
  }
  double level() const { return shownLevel; }  // dB
  double highest() const { return heldLevel; }
  bool hasClipped() const { return clips; }
  void forgetClip() { clips = false; }

 private:
  static constexpr double kFall = 20.0 / 30.0;  // dB a tick
  static constexpr int kHoldTicks = 30;

  double shownLevel = kSilence;
  double heldLevel = kSilence;
  int ticksLeft = 0;
  bool clips = false;
};

}  // namespace zum
