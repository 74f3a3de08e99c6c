// Texts for a host's buffers: never longer than the room that hosts give.
#pragma once

#include <cstddef>
#include <cstring>

namespace zum {

/// Room for vendor, product and parameter texts, terminator included.
inline constexpr std::size_t kHostTextRoom = 64;

/// Copies at most `room` - 1 bytes and a terminator.
inline void copyText(char* to, const char* from, std::size_t room) {
  const std::size_t length = strnlen(from, room - 1);
  std::memcpy(to, from, length);
  to[length] = '\0';
}

}  // namespace zum
