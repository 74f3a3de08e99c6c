// A fuzz input, read as values from its front. Used by every fuzz target.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace zum {

/// Zeros when the input has run out.
struct Bytes {
  const std::uint8_t* at;
  std::size_t left;

  template <class Value>
  Value take() {
    std::array<std::byte, sizeof(Value)> bits{};
    const std::size_t taken = std::min(left, bits.size());
    if (taken > 0) std::memcpy(bits.data(), at, taken);
    at += taken;
    left -= taken;
    return std::bit_cast<Value>(bits);
  }
  /// 0 to end - 1
  unsigned below(unsigned end) { return take<std::uint16_t>() % end; }
};

}  // namespace zum
