#include "apps/zum/foreign_bytes.hpp"

#include <glib.h>

namespace zum {
namespace {

/// Not 0 for one of the private range, which three bytes encode.
unsigned char foreignByteAt(std::string_view text) {
  constexpr std::size_t kBytes = 3;
  if (text.size() < kBytes) return 0;
  const gunichar character = g_utf8_get_char_validated(text.data(), kBytes);
  const bool foreign = character >= kFirstForeignByte && character < kFirstForeignByte + 0x80;
  return foreign ? static_cast<unsigned char>(character - kFirstForeignByte + 0x80) : 0;
}

}  // namespace

std::size_t utf8Length(std::string_view text) {
  if (text.front() == '\0') return 1;
  const auto room = static_cast<gssize>(text.size());
  const gunichar character = g_utf8_get_char_validated(text.data(), room);
  constexpr auto kNone = static_cast<gunichar>(-1), kCut = static_cast<gunichar>(-2);
  if (character == kNone || character == kCut || foreignByteAt(text) != 0) return 0;
  return static_cast<std::size_t>(g_unichar_to_utf8(character, nullptr));
}

std::string withForeignBytes(std::string_view text) {
  std::string bytes;
  while (!text.empty()) {
    const unsigned char foreign = foreignByteAt(text);
    bytes += foreign != 0 ? static_cast<char>(foreign) : text.front();
    text.remove_prefix(foreign != 0 ? 3 : 1);
  }
  return bytes;
}

}  // namespace zum
