// A progress bar on stderr for whoever watches: nothing is drawn unless stderr is a terminal.
#pragma once

#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <string>

namespace zum {

class Progress {
 public:
  Progress() : visible(isatty(STDERR_FILENO) == 1) {}
  ~Progress() {
    if (visible) std::cerr << "\r\033[K";
  }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// `share` of the work that is done, 0..1.
  void show(double share) {
    const int percent = static_cast<int>(100.0 * std::clamp(share, 0.0, 1.0));
    if (!visible || percent == shown) return;
    shown = percent;
    const auto filled = static_cast<std::size_t>(percent * kWidth / 100);
    std::cerr << "\r[" << std::string(filled, '#') << std::string(kWidth - filled, ' ') << "] "
              << percent << " %";
  }

 private:
  static constexpr int kWidth = 40;
  bool visible;
  int shown = -1;
};

}  // namespace zum
