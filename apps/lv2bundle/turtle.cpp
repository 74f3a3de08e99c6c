#include "apps/lv2bundle/turtle.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>

namespace zum::turtle {

std::string text(std::string_view any) {
  std::string quoted = "\"";
  for (const char letter : any) {
    if (letter == '"' || letter == '\\') quoted += '\\';
    quoted += letter;
  }
  return quoted + '"';
}

std::string number(float value) {
  std::array<char, 64> digits{};
  const auto end = std::to_chars(digits.begin(), digits.end(), value, std::chars_format::fixed);
  std::string shown(digits.data(), end.ptr);
  if (shown.find('.') == std::string::npos) shown += ".0";
  return shown;
}

std::string uri(std::string_view start, std::string_view part) {
  std::string made = "<" + std::string(start);
  for (const char letter : part) {
    const bool isPlain = (letter >= '0' && letter <= '9') || (letter >= 'A' && letter <= 'Z') ||
                         (letter >= 'a' && letter <= 'z') || letter == '-' || letter == ':';
    made += isPlain ? letter : '_';
  }
  return made + '>';
}

std::string base64(std::span<const std::byte> bytes) {
  constexpr std::string_view kDigits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string made = "\"";
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const std::size_t count = std::min<std::size_t>(3, bytes.size() - i);
    std::uint32_t group = 0;
    for (std::size_t k = 0; k < 3; ++k) {
      group = group << 8U | (k < count ? std::to_integer<std::uint32_t>(bytes[i + k]) : 0U);
    }
    for (std::size_t k = 0; k < 4; ++k) {
      made += k <= count ? kDigits[group >> (18 - 6 * k) & 63U] : '=';
    }
  }
  return made + "\"^^xsd:base64Binary";
}

}  // namespace zum::turtle
