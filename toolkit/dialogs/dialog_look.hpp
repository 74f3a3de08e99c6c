// Colours of the dialogs: those of the window.
#pragma once

#include "toolkit/view/geometry.hpp"

namespace zum::dialog_look {

inline constexpr CColor kPanel{38, 34, 34, 255};
inline constexpr CColor kField{20, 18, 18, 255};
inline constexpr CColor kText{226, 220, 216, 255};
inline constexpr CColor kEdge{92, 84, 82, 255};
inline constexpr CColor kButton{109, 18, 18, 255};
inline constexpr CColor kLit{186, 35, 35, 255};

}  // namespace zum::dialog_look
