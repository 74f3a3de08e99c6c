// How the lists of texts look: light on black.
#pragma once

#include "toolkit/option_menu.hpp"

namespace zum {

inline constexpr int kSubMenuSign = 1004;  // picture

inline void dressList(KvOptionMenu& menu, CBitmap* subMenuSign) {
  menu.textColor = kWhiteColor;
  menu.backgroundColor = kBlackColor;
  menu.look.selectedTextColor = kWhiteColor;
  menu.look.markColor = {189, 121, 120, 255};
  menu.look.selectedBackColor = {144, 27, 27, 255};
  menu.look.frameColor = {127, 150, 152, 255};
  menu.look.separatorColor = {127, 150, 152, 255};
  menu.look.fieldColor = {36, 36, 36, 255};
  menu.look.subMenuBitmap = subMenuSign;
}

}  // namespace zum
