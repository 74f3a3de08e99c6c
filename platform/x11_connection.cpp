#include "platform/x11_connection.hpp"

namespace zum {

Display* connectToServer(bool& lost) {
  static const bool threads = XInitThreads() != 0;  // the host may run several
  Display* const display = threads ? XOpenDisplay(nullptr) : nullptr;
  if (display == nullptr) return nullptr;
  // Without it a lost connection ends the process.
  XSetIOErrorExitHandler(
      display, [](Display*, void* mark) { *static_cast<bool*>(mark) = true; }, &lost);
  return display;
}

Window windowAbove(Display* display, Window inner) {
  Window root = 0;
  Window above = 0;
  Window* below = nullptr;
  unsigned count = 0;
  if (XQueryTree(display, inner, &root, &above, &below, &count) == 0) return 0;
  if (below != nullptr) XFree(below);
  return above == root ? 0 : above;
}

}  // namespace zum
