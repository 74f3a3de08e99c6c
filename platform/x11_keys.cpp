#include "platform/x11_keys.hpp"

#include <X11/keysym.h>
#include <xkbcommon/xkbcommon.h>

#include <cstdlib>

namespace zum {
namespace {

constexpr std::uint32_t kDoubleClickTime = 400;  // ms
constexpr int kDoubleClickPlace = 4;             // pixels either way

constexpr struct {
  KeySym symbol;
  std::uint8_t virt;
} kNamedKeys[] = {
    {XK_BackSpace, keys::kBack},
    {XK_Tab, keys::kTab},
    {XK_ISO_Left_Tab, keys::kTab},  // what shift makes of it
    {XK_KP_Tab, keys::kTab},
    {XK_Return, keys::kReturn},
    {XK_Escape, keys::kEscape},
    {XK_space, keys::kSpace},
    {XK_KP_Space, keys::kSpace},
    {XK_End, keys::kEnd},
    {XK_KP_End, keys::kEnd},
    {XK_Home, keys::kHome},
    {XK_KP_Home, keys::kHome},
    {XK_Left, keys::kLeft},
    {XK_KP_Left, keys::kLeft},
    {XK_Up, keys::kUp},
    {XK_KP_Up, keys::kUp},
    {XK_Right, keys::kRight},
    {XK_KP_Right, keys::kRight},
    {XK_Down, keys::kDown},
    {XK_KP_Down, keys::kDown},
    {XK_Page_Up, keys::kPageUp},
    {XK_KP_Page_Up, keys::kPageUp},
    {XK_Page_Down, keys::kPageDown},
    {XK_KP_Page_Down, keys::kPageDown},
    {XK_KP_Enter, keys::kEnter},
    {XK_Insert, keys::kInsert},
    {XK_KP_Insert, keys::kInsert},
    {XK_Delete, keys::kDelete},
    {XK_KP_Delete, keys::kDelete},
};

std::uint8_t virtOf(KeySym symbol) {
  if (symbol >= XK_KP_0 && symbol <= XK_KP_9) {
    return static_cast<std::uint8_t>(keys::kNumpad0 + (symbol - XK_KP_0));
  }
  if (symbol >= XK_F1 && symbol <= XK_F12) {
    return static_cast<std::uint8_t>(keys::kF1 + (symbol - XK_F1));
  }
  for (const auto& named : kNamedKeys) {
    if (named.symbol == symbol) return named.virt;
  }
  return 0;
}

std::int32_t characterOf(KeySym symbol) {
  const std::uint32_t code = xkb_keysym_to_utf32(static_cast<xkb_keysym_t>(symbol));
  const bool isCommand = code < ' ' || code == 0x7F;  // return, escape and their like
  return isCommand ? 0 : static_cast<std::int32_t>(code);
}

}  // namespace

int buttonWordOf(unsigned state) {
  constexpr struct {
    unsigned mask;
    int bit;
  } kBits[] = {{Button1Mask, buttons::kLeft},    {Button2Mask, buttons::kMiddle},
               {Button3Mask, buttons::kRight},   {ShiftMask, buttons::kShift},
               {ControlMask, buttons::kControl}, {Mod1Mask, buttons::kAlt},
               {Mod4Mask, buttons::kCommand}};
  int word = 0;
  for (const auto& [mask, bit] : kBits) {
    if ((state & mask) != 0) word |= bit;
  }
  return word;
}

int buttonOf(unsigned number) {
  switch (number) {
    case Button1: return buttons::kLeft;
    case Button2: return buttons::kMiddle;
    case Button3: return buttons::kRight;
    default: return 0;
  }
}

WindowKey windowKeyOf(KeySym symbol, unsigned state) {
  int modifier = 0;
  if ((state & ShiftMask) != 0) modifier |= keys::kShiftBit;
  if ((state & Mod1Mask) != 0) modifier |= keys::kAltBit;
  if ((state & Mod4Mask) != 0) modifier |= keys::kCommandBit;
  if ((state & ControlMask) != 0) modifier |= keys::kControlBit;
  if (symbol == XK_Menu) return {0, keys::kF1 + 9, keys::kShiftBit};  // means Shift and F10
  return {characterOf(symbol), virtOf(symbol), static_cast<std::uint8_t>(modifier)};
}

bool ClickCounter::isSecond(unsigned button, int x, int y, Time time) {
  // the server's clock is 32 bits wide and runs over
  const auto passed = static_cast<std::uint32_t>(time) - static_cast<std::uint32_t>(lastTime);
  const bool second = button == lastButton && passed <= kDoubleClickTime &&
                      std::abs(x - lastX) <= kDoubleClickPlace &&
                      std::abs(y - lastY) <= kDoubleClickPlace;
  lastButton = second ? 0 : button;
  lastX = x;
  lastY = y;
  lastTime = time;
  return second;
}

}  // namespace zum
