// How far the mouse moves a value: the same for knobs and for displays that are dragged.
#pragma once

#include <optional>

#include "platform/input.hpp"
#include "toolkit/view/geometry.hpp"

namespace zum {

/// [main] A drag from a press to its release.
class ValueDrag {
 public:
  bool isOn() const { return on; }
  void begin(CPoint where) {
    last = where;
    on = true;
  }
  void end() { on = false; }
  /// How far the value goes with a move: up, or where `horizontal` to the right, raises it; Shift
  /// makes it finer. A sensitivity of 1 is 100 pixels for the whole range. Nothing when no drag is
  /// on, or no button is held.
  std::optional<float> move(CPoint where, int buttonWord, float sensitivity, bool horizontal) {
    if (!on || (buttonWord & (buttons::kLeft | buttons::kRight)) == 0) return {};
    const int movement = horizontal ? last.x - where.x : where.y - last.y;
    last = where;
    const float step = (buttonWord & buttons::kShift) != 0 ? -0.0005F : -0.01F;
    return sensitivity * step * static_cast<float>(movement);
  }

 private:
  CPoint last{};
  bool on = false;
};

/// Of the value, for each unit that the wheel turns upwards.
inline constexpr float kWheelStep = 0.35F * 0.05F;
inline constexpr float kFineWheelStep = 0.11F * 0.05F;

}  // namespace zum
