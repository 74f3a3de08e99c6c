// A variable of the engine as a control shows it: read at each tick, never written. And how numbers
// are written, whatever the host's locale says: behind a point.
#pragma once

#include <array>
#include <charconv>
#include <string>

#include "engine/shared_value.hpp"

namespace zum {

/// The variable outlives it; another thread may write it.
struct BoundValue {
  const float* variable = nullptr;  // null: the control shows its own value
  float max = 1.0F;
  float min = 0.0F;

  explicit operator bool() const { return variable != nullptr; }
  /// What is no number reads as the lower end: it would differ from itself at every tick.
  float raw() const {
    const float value = loadShared(*variable);
    return value == value ? value : min;
  }
  /// 0 at the lower end, 1 at the upper one; beyond where the variable is.
  float position() const {
    const float range = max - min;
    return range != 0.0F ? (raw() - min) / range : 0.0F;
  }
};

/// As of "%*.*f". Width and decimals are at most 40.
inline std::string numberText(float value, int width, int decimals) {
  std::array<char, 128> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(),
                                 static_cast<double>(value), std::chars_format::fixed, decimals);
  std::string text(digits.data(), end.ptr);
  const auto wanted = static_cast<std::size_t>(width);
  if (text.size() < wanted) text.insert(0, wanted - text.size(), ' ');
  return text;
}

}  // namespace zum
