// A hash of sound and of what is shown of it.
#pragma once

#include <bit>
#include <cstdint>
#include <string>

namespace zum::test {

/// FNV-1a over words, each of which can be seen in the result. All values that are no number count
/// as one: which of two of them an operation passes on depends on the order that a compiler chose.
class WordHash {
 public:
  void add(float value) { add(value == value ? std::bit_cast<std::uint32_t>(value) : 0x7FC00000U); }
  void add(std::uint32_t word) { state = (state ^ word) * 0x100000001B3U; }
  /// In `digits` of 16.
  std::string text(int digits) const {
    std::uint64_t mixed = (state ^ (state >> 33U)) * 0xFF51AFD7ED558CCDU;
    std::string made;
    for (int i = 0; i < digits; ++i, mixed <<= 4U) made += "0123456789abcdef"[mixed >> 60U];
    return made;
  }

 private:
  std::uint64_t state = 0xCBF29CE484222325U;
};

}  // namespace zum::test
