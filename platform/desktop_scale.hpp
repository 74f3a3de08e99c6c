// How large the user's desktop shows windows.
#pragma once

#include <optional>

namespace zum {

/// [main] Pixels of the screen for each pixel that a window asks for, 1 to 3 in quarters: what
/// GDK_SCALE says, else the resolution of letters in the screen's resources (Xft.dpi, of which 96
/// are plain). 1 where nothing is said, and without a display.
double desktopScale();

struct DesktopRoom {
  int width, height;  // pixels of the screen
};
/// [main] What windows may cover: the screen without the panels that its window manager tells of.
/// Several screens side by side count as one. None without a display.
std::optional<DesktopRoom> desktopRoom();

}  // namespace zum
