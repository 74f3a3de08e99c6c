// [any] The room that presets ask for ahead of a load, which makes none.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "state/preset_format.hpp"

namespace zum {

struct PresetNeeds {
  /// Bindings by controller, those of pressure behind them.
  std::array<std::uint32_t, preset::kControllers + 1> bindings{};
  std::size_t objectWords = 0;

  /// Room for either of the two.
  void include(const PresetNeeds& other) {
    std::ranges::transform(bindings, other.bindings, bindings.begin(),
                           [](std::uint32_t a, std::uint32_t b) { return std::max(a, b); });
    objectWords = std::max(objectWords, other.objectWords);
  }
};

}  // namespace zum
