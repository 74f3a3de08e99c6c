#include "editor/window_factor.hpp"

#include <cmath>
#include <cstdint>

#include "platform/desktop_scale.hpp"
#include "state/settings.hpp"
#include "toolkit/view/scale.hpp"

namespace zum {
namespace {

constexpr double kPercent = 100.0;

double held(double factor) { return Scale(factor).factor(); }

}  // namespace

double WindowFactor::get() {
  if (!current) {
    const auto percent = readSettingInt(kWindowSize);
    current = held(percent ? *percent / kPercent : desktopScale());
  }
  return *current;
}

bool WindowFactor::hear(double hostScale) {
  if (!std::isfinite(hostScale) || hostScale <= 0.0) return false;
  current = held(hostScale);
  return true;
}

void WindowFactor::choose(double factor) {
  if (current == held(factor)) return;
  current = chosen = held(factor);
}

void WindowFactor::keep() {
  if (!chosen) return;
  writeSettingInt(kWindowSize, static_cast<std::int32_t>(std::lround(*chosen * kPercent)));
  chosen.reset();
}

}  // namespace zum
