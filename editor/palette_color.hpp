// A colour of the pictures, for what controls draw beside them.
#pragma once

#include <cmath>

#include "resources/palette.hpp"
#include "toolkit/view/geometry.hpp"

namespace zum {

inline CColor colorOf(const pictures::Color& color) noexcept {
  const auto byte = [](double channel) {
    return static_cast<std::uint8_t>(std::lround(255.0 * channel));
  };
  return {byte(color.r), byte(color.g), byte(color.b), 255};
}

}  // namespace zum
