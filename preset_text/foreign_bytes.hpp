// Bytes of a name that are no UTF-8, such as another system's letters, in a text that has to be:
// each is a character of a private range of 128. Such characters themselves are taken for foreign
// bytes.
#pragma once

#include <string>
#include <string_view>

namespace zum {

/// Stands for byte 0x80.
inline constexpr char32_t kFirstForeignByte = 0xF780;

constexpr bool standsForForeignByte(char32_t code) {
  return code >= kFirstForeignByte && code < kFirstForeignByte + 0x80;
}

/// Every character that stands for a foreign byte becomes that byte.
std::string withForeignBytes(std::string_view text);

}  // namespace zum
