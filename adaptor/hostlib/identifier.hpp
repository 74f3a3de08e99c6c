// Four characters as a number, as hosts compare them.
#pragma once

#include <cstdint>
#include <cstring>

namespace zum {

/// In memory the characters stand in their order.
inline std::int32_t identifier(const char (&text)[5]) {
  std::int32_t word = 0;
  std::memcpy(&word, text, sizeof word);
  return word;
}

}  // namespace zum
