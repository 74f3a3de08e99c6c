#include "platform/printable_text.hpp"

#include <glib.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>

namespace zum {
namespace {

std::string hexadecimal(char32_t code, std::size_t digits) {
  std::array<char, 8> text{};
  const auto number = static_cast<std::uint32_t>(code);
  char* const end = std::to_chars(text.data(), text.data() + text.size(), number, 16).ptr;
  const std::string hex(text.data(), end);
  return std::string(digits - std::min(digits, hex.size()), '0') + hex;
}

std::string escapeOf(char32_t code) {
  switch (code) {
    case '\n': return "\\n";
    case '\r': return "\\r";
    case '\t': return "\\t";
    default: return code < 0x80 ? "\\x" + hexadecimal(code, 2) : unicodeEscape(code);
  }
}

}  // namespace

Utf8Character firstCharacter(std::string_view text) {
  if (text.front() == '\0') return {0, 1};
  const gunichar code = g_utf8_get_char_validated(text.data(), static_cast<gssize>(text.size()));
  constexpr auto kNone = static_cast<gunichar>(-1), kCut = static_cast<gunichar>(-2);
  if (code == kNone || code == kCut) return {0, 0};
  return {code, static_cast<std::size_t>(g_unichar_to_utf8(code, nullptr))};
}

bool isPrintable(char32_t code) {
  switch (g_unichar_type(code)) {
    case G_UNICODE_LINE_SEPARATOR:
    case G_UNICODE_PARAGRAPH_SEPARATOR: return false;
    default: return g_unichar_isprint(code) != 0;
  }
}

std::string unicodeEscape(char32_t code) {
  return code < 0x10000 ? "\\u" + hexadecimal(code, 4) : "\\U" + hexadecimal(code, 8);
}

std::string printable(std::string_view text) {
  std::string all;
  while (!text.empty()) {
    const auto [code, bytes] = firstCharacter(text);
    if (bytes == 0) {
      all += "\\x" + hexadecimal(static_cast<unsigned char>(text.front()), 2);
    } else if (isPrintable(code)) {
      all += text.substr(0, bytes);
    } else {
      all += escapeOf(code);
    }
    text.remove_prefix(std::max<std::size_t>(bytes, 1));
  }
  return all;
}

}  // namespace zum
