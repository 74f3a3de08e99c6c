// How large the user's desktop shows windows.
#pragma once

namespace zum {

/// [main] Pixels of the screen for each pixel that a window asks for, 1 to 3 in quarters: what
/// GDK_SCALE says, else the resolution of letters in the screen's resources (Xft.dpi, of which 96
/// are plain). 1 where nothing is said, and without a display.
double desktopScale();

}  // namespace zum
