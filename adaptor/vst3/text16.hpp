// Texts of this interface are UTF-16 in arrays of a fixed size; ours are UTF-8.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace zum::vst3 {

/// Cut where a character ends, and with a zero behind it. Bytes that are no UTF-8 read as U+FFFD.
void putText(std::string_view text, std::span<std::int16_t> room);
/// Up to the zero, or as many words as a host's text has at most. Null is empty.
std::string readText(const std::int16_t* text);

/// The same for the texts of older parts, which are bytes.
template <std::size_t room>
void putBytes(std::string_view text, char (&out)[room]) {
  out[text.copy(static_cast<char*>(out), room - 1)] = '\0';
}

}  // namespace zum::vst3
