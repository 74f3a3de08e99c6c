// [any] The switches that a user keeps in the settings, as the rooms of the effect read them.
#pragma once

#include <array>

#include "engine/shared_value.hpp"
#include "state/settings.hpp"

namespace zum {

class UserSwitches {
 public:
  // By their index in the settings.
  static constexpr int kIgnoreProgramChanges = 0;
  static constexpr int kIsolateMap = 1;

  /// 0 for off.
  float get(int index) const ZUM_REALTIME {
    return loadShared(values[static_cast<std::size_t>(index)]);
  }
  bool isOn(int index) const ZUM_REALTIME { return get(index) != 0.0F; }
  /// Switches that there are not are ignored.
  void set(int index, float value) ZUM_REALTIME {
    if (exists(index)) storeShared(values[static_cast<std::size_t>(index)], value);
  }
  static bool exists(int index) ZUM_REALTIME {
    return index >= 0 && index < static_cast<int>(kSwitches.size());
  }

 private:
  std::array<float, kSwitches.size()> values = {1.0F, 0.0F};
};

}  // namespace zum
