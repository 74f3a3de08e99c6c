// What a mouse and a keyboard say to a window, in the words that views and hosts use.
#pragma once

#include <cstdint>

namespace zum {

/// Bits of the word that every mouse operation gets. Left is the button that presses things: on a
/// mouse that is set up for the left hand it is the one on the right.
namespace buttons {
inline constexpr int kLeft = 2;
inline constexpr int kMiddle = 4;
inline constexpr int kRight = 8;
inline constexpr int kAny = kLeft | kMiddle | kRight;
inline constexpr int kShift = 16;
inline constexpr int kControl = 32;
inline constexpr int kAlt = 64;
inline constexpr int kCommand = 128;
inline constexpr int kDoubleClick = 1024;
}  // namespace buttons

/// Keys that are no characters, by the numbers of the host interface.
namespace keys {
inline constexpr std::uint8_t kBack = 1;
inline constexpr std::uint8_t kTab = 2;
inline constexpr std::uint8_t kReturn = 4;
inline constexpr std::uint8_t kEscape = 6;
inline constexpr std::uint8_t kSpace = 7;
inline constexpr std::uint8_t kEnd = 9;
inline constexpr std::uint8_t kHome = 10;
inline constexpr std::uint8_t kLeft = 11;
inline constexpr std::uint8_t kUp = 12;
inline constexpr std::uint8_t kRight = 13;
inline constexpr std::uint8_t kDown = 14;
inline constexpr std::uint8_t kPageUp = 15;
inline constexpr std::uint8_t kPageDown = 16;
inline constexpr std::uint8_t kEnter = 19;
inline constexpr std::uint8_t kInsert = 21;
inline constexpr std::uint8_t kDelete = 22;
inline constexpr std::uint8_t kNumpad0 = 24;  // 25 to 33 are 1 to 9
inline constexpr std::uint8_t kF1 = 40;       // 41 to 51 are F2 to F12
// bits of the modifier byte
inline constexpr std::uint8_t kShiftBit = 1;
inline constexpr std::uint8_t kAltBit = 2;
inline constexpr std::uint8_t kCommandBit = 4;
inline constexpr std::uint8_t kControlBit = 8;
}  // namespace keys

struct WindowKey {
  std::int32_t character = 0;  // Unicode, 0 for none
  std::uint8_t virt = 0;       // of `keys`, 0 for a plain character
  std::uint8_t modifier = 0;
};

}  // namespace zum
