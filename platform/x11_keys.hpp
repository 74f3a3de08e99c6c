// What X says about keys and mouse buttons, in the words of platform/input.hpp.
#pragma once

#include <X11/X.h>

#include "platform/input.hpp"

namespace zum {

inline constexpr unsigned kHeldButtons = Button1Mask | Button2Mask | Button3Mask;

/// Held buttons and modifiers.
int buttonWordOf(unsigned state);
/// 0 for a button that is none of the three: the wheel and what is beside it. The server has
/// swapped them already for a mouse in the left hand.
int buttonOf(unsigned number);
/// What comes back without character and number is a key of no use to us.
WindowKey windowKeyOf(KeySym symbol, unsigned state);

/// Tells the second press of a double click; the third one is a first one again.
class ClickCounter {
 public:
  bool isSecond(unsigned button, int x, int y, Time time);

 private:
  unsigned lastButton = 0;
  int lastX = 0;
  int lastY = 0;
  Time lastTime = 0;
};

}  // namespace zum
