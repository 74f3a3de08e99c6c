// Numbers as the window shows them, whatever the host's locale says: behind a point.
#pragma once

#include <array>
#include <charconv>
#include <string>

namespace zum {

/// As of "%*.*f". Width and decimals are at most 40.
inline std::string numberText(float value, int width, int decimals) {
  std::array<char, 128> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(),
                                 static_cast<double>(value), std::chars_format::fixed, decimals);
  std::string text(digits.data(), end.ptr);
  const auto wanted = static_cast<std::size_t>(width);
  if (text.size() < wanted) text.insert(0, wanted - text.size(), ' ');
  return text;
}

}  // namespace zum
