// One learned controller: which control it moves. Kept in lists, presets and controller maps.
#pragma once

#include <bit>
#include <cstdint>

namespace zum {

struct Binding {
  std::int16_t tag = 0;   // of the control
  std::int16_t mode = 0;  // carried along, read by nothing
  bool operator==(const Binding&) const = default;
};

/// Both fields as one word, the tag in the low half.
constexpr std::uint32_t wordOf(Binding binding) noexcept {
  return std::bit_cast<std::uint32_t>(binding);
}
constexpr Binding bindingOf(std::uint32_t word) noexcept { return std::bit_cast<Binding>(word); }

}  // namespace zum
