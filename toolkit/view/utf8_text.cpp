#include "toolkit/view/utf8_text.hpp"

#include <bit>
#include <cstddef>
#include <cstdint>

namespace zum {
namespace {

std::uint8_t byteAt(std::string_view text, std::size_t at) {
  return static_cast<std::uint8_t>(text[at]);
}

// Bytes of the first character; 0 when it is none (RFC 3629).
std::size_t characterLength(std::string_view text) {
  const std::uint8_t first = byteAt(text, 0);
  if (first < 0x80) return first < 0x20 || first == 0x7F ? 0 : 1;
  const auto length = static_cast<std::size_t>(std::countl_one(first));
  if (length < 2 || length > 4 || length > text.size()) return 0;
  std::uint32_t code = first & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    if (byteAt(text, i) >> 6U != 2) return 0;
    code = code << 6U | (byteAt(text, i) & 0x3FU);
  }
  constexpr std::uint32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool isHalfOfPair = code >= 0xD800 && code < 0xE000;
  return code < kSmallest[length] || code > 0x10FFFF || isHalfOfPair ? 0 : length;
}

}  // namespace

std::string drawableText(std::string_view text) {
  std::string drawable;
  while (!text.empty()) {
    const std::size_t length = characterLength(text);
    drawable += length == 0 ? std::string_view("?") : text.substr(0, length);
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return drawable;
}

std::string utf8Character(char32_t code) {
  const auto byte = [](char32_t bits) { return static_cast<char>(bits); };
  const auto following = [&](unsigned shift) { return byte(0x80U | (code >> shift & 0x3FU)); };
  if (code < 0x80) return {byte(code)};
  if (code < 0x800) return {byte(0xC0U | code >> 6U), following(0)};
  if (code >= 0xD800 && code < 0xE000) return "?";
  if (code < 0x10000) return {byte(0xE0U | code >> 12U), following(6), following(0)};
  if (code > 0x10FFFF) return "?";
  return {byte(0xF0U | code >> 18U), following(12), following(6), following(0)};
}

void dropLastCharacter(std::string& text) {
  while (!text.empty()) {
    const bool isFirstByte = (byteAt(text, text.size() - 1) & 0xC0U) != 0x80;
    text.pop_back();
    if (isFirstByte) break;
  }
}

}  // namespace zum
