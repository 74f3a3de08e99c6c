// The tempo that a hand taps: the mean of its last beats.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <vector>

namespace zum {

class TapTempo {
 public:
  using Time = std::chrono::steady_clock::time_point;

  /// Quarter notes per minute from the second tap on. A pause begins anew.
  std::optional<double> tap(Time now) {
    if (!taps.empty() && now - taps.back() > kPause) taps.clear();
    if (taps.size() == kMostTaps) taps.erase(taps.begin());
    taps.push_back(now);
    if (taps.size() < 2) return std::nullopt;
    const std::chrono::duration<double> all = taps.back() - taps.front();
    return all.count() > 0.0
               ? std::optional(60.0 * static_cast<double>(taps.size() - 1) / all.count())
               : std::nullopt;
  }

 private:
  static constexpr auto kPause = std::chrono::milliseconds(1500);
  static constexpr std::size_t kMostTaps = 8;

  std::vector<Time> taps;
};

}  // namespace zum
