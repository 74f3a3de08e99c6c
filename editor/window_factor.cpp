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

std::optional<double> keptChoice() {
  const auto percent = readSettingInt(kWindowSize);
  return percent ? std::optional(held(*percent / kPercent)) : std::nullopt;
}

}  // namespace

double WindowFactor::get() {
  if (!current) current = keptChoice().value_or(held(desktopScale()));
  return *current;
}

void WindowFactor::hear(double hostScale) {
  current = held(hostScale);
  if (*current != Scale::kLeast) return;
  if (chosen) {
    current = chosen;
  } else if (const auto kept = keptChoice()) {
    current = kept;
  }
}

void WindowFactor::choose(double factor) { current = chosen = held(factor); }

void WindowFactor::keep() {
  if (!chosen) return;
  writeSettingInt(kWindowSize, static_cast<std::int32_t>(std::lround(*chosen * kPercent)));
  chosen.reset();
}

}  // namespace zum
