#include "adaptor/vst3/text16.hpp"

namespace zum::vst3 {
namespace {

constexpr std::size_t kMostWords = 128;  // of a host's text
constexpr std::uint32_t kUnreadable = 0xFFFD;

/// The next character; takes at least one byte off.
std::uint32_t takeCharacter(std::string_view& text) {
  const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
  const std::uint8_t first = byte(0);
  const std::size_t length = first < 0x80   ? 1
                             : first < 0xC2 ? 0
                             : first < 0xE0 ? 2
                             : first < 0xF0 ? 3
                             : first < 0xF5 ? 4
                                            : 0;
  const auto unreadable = [&] {
    text.remove_prefix(1);
    return kUnreadable;
  };
  if (length == 0 || length > text.size()) return unreadable();
  std::uint32_t character = length == 1 ? first : first & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0U) != 0x80) return unreadable();
    character = character << 6U | (byte(i) & 0x3FU);
  }
  text.remove_prefix(length);
  return character;
}

void appendCharacter(std::string& text, std::uint32_t c) {
  const auto add = [&](std::uint32_t byte) { text += static_cast<char>(byte); };
  const auto addTail = [&](std::uint32_t shift) { add(0x80U | (c >> shift & 0x3FU)); };
  if (c < 0x80) return add(c);
  if (c < 0x800) {
    add(0xC0U | c >> 6U);
  } else if (c < 0x10000) {
    add(0xE0U | c >> 12U), addTail(6);
  } else {
    add(0xF0U | c >> 18U), addTail(12), addTail(6);
  }
  addTail(0);
}

}  // namespace

void putText(std::string_view text, std::span<std::int16_t> room) {
  std::size_t at = 0;
  const auto add = [&](std::uint32_t word) { room[at++] = static_cast<std::int16_t>(word); };
  while (!text.empty()) {
    const std::uint32_t c = takeCharacter(text);
    const std::size_t words = c < 0x10000 ? 1 : 2;
    if (at + words >= room.size()) break;
    if (words == 1) {
      add(c);
    } else {
      add(0xD800U + ((c - 0x10000U) >> 10U)), add(0xDC00U + ((c - 0x10000U) & 0x3FFU));
    }
  }
  room[at] = 0;
}

std::string readText(const std::int16_t* text) {
  std::string read;
  if (text == nullptr) return read;
  const auto word = [&](std::size_t i) { return static_cast<std::uint16_t>(text[i]); };
  for (std::size_t i = 0; i < kMostWords && text[i] != 0; ++i) {
    std::uint32_t c = word(i);
    const bool isHigh = c >= 0xD800 && c < 0xDC00;
    if (isHigh && i + 1 < kMostWords && word(i + 1) >= 0xDC00 && word(i + 1) < 0xE000) {
      c = 0x10000U + ((c - 0xD800U) << 10U) + (word(++i) - 0xDC00U);
    } else if (c >= 0xD800 && c < 0xE000) {
      c = kUnreadable;
    }
    appendCharacter(read, c);
  }
  return read;
}

}  // namespace zum::vst3
