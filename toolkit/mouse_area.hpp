// An invisible control that tells where and how it is pressed: a strip of tabs in the background.
#pragma once

#include <array>

#include "toolkit/base_control.hpp"
#include "toolkit/bound_value.hpp"

namespace zum {

/// [main]
class KvMouseArea final : public KvControl {
 public:
  enum Field : std::uint8_t { left, right, x, y, shift, control };
  static constexpr std::size_t kFields = 6;

  using KvControl::KvControl;

  /// Buttons and keys as 0 or 1; x and y from 0, at the left and at the top, to 1.
  const std::array<float, kFields>& published() const { return fields; }

  void draw(CDrawContext& /*context*/) override {}
  MouseResult onMouseDown(CPoint& where, int buttons) override;
  MouseResult onMouseMoved(CPoint& where, int buttons) override;
  MouseResult onMouseUp(CPoint& where, int buttons) override;

  bool takesFocus() const override { return places > 1; }
  /// Up, Down and Space press the place beside the one that `atPlace` tells.
  bool onFocusKey(const WindowKey& key, bool repeats) override;

  int places = 0;  // side by side in it, for keys
  BoundValue atPlace;
  bool clampToArea = true;  // x and y while it is held outside

 private:
  ~KvMouseArea() override = default;
  void publish(CPoint where, int buttons);

  std::array<float, kFields> fields{};
  bool pressed = false;
};

}  // namespace zum
