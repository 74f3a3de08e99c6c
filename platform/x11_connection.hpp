// A connection to the X server, and the way from a window up to the screen.
#pragma once

#include <X11/Xlib.h>

namespace zum {

/// Null where there is no server. `lost` is set when the server goes, and lives as long as the
/// connection: nothing can be said to it from then on.
Display* connectToServer(bool& lost);

/// The window that `inner` lies in; 0 for the screen, and for a window that is gone.
Window windowAbove(Display* display, Window inner);

}  // namespace zum
