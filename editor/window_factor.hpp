// How large the window of an effect is shown: as its host says, else as the user chose last, else
// as the desktop does.
#pragma once

#include <optional>

namespace zum {

/// [main] Pixels of the screen for one of the window's own, 1 to 3.
class WindowFactor {
 public:
  /// Looked up when it is first asked for.
  double get();
  /// By the host. Its 1 is what hosts say that know of no scales: the user's choice outweighs it.
  void hear(double hostScale);
  /// By the user, in this window, whatever the host says.
  void choose(double factor);
  /// The user's choice counts for windows that open from now on.
  void keep();

 private:
  std::optional<double> current;
  std::optional<double> chosen;  // and not kept yet
};

}  // namespace zum
