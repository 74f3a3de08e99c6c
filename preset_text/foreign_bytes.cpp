#include "preset_text/foreign_bytes.hpp"

#include <algorithm>

#include "platform/printable_text.hpp"

namespace zum {

std::string withForeignBytes(std::string_view text) {
  std::string bytes;
  while (!text.empty()) {
    const auto [code, length] = firstCharacter(text);
    if (standsForForeignByte(code)) {
      bytes += static_cast<char>(code - kFirstForeignByte + 0x80);
    } else {
      bytes += text.substr(0, std::max<std::size_t>(length, 1));
    }
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return bytes;
}

}  // namespace zum
