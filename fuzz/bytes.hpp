// What the fuzz targets share: an input, read as values from its front, and the claim that ends a
// target when it does not hold.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

namespace zum {

inline void demand(bool holds) {
  if (!holds) std::abort();
}

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
  /// Shorter than `end`, of the bytes that are still to come.
  std::string text(unsigned end) {
    const std::size_t count = std::min<std::size_t>(below(end), left);
    return {reinterpret_cast<const char*>(at), count};
  }
};

}  // namespace zum
