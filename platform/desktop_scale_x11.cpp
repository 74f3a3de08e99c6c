#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xresource.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string_view>

#include "platform/desktop_scale.hpp"
#include "platform/x11_connection.hpp"

namespace zum {
namespace {

constexpr double kPlainResolution = 96.0;  // letters, dots per inch

std::optional<double> numberIn(const char* text) {
  if (text == nullptr) return {};
  const std::string_view digits(text);
  double number = 0.0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (error != std::errc() || !std::isfinite(number) || number <= 0.0) return {};
  return number;
}

std::optional<double> letterResolution() {
  bool lost = false;
  Display* const display = connectToServer(lost);
  if (display == nullptr) return {};
  std::optional<double> dots;
  {
    const X11Guard guard(display);
    XrmInitialize();
    // The library owns the text, and hands out what the screen had when the connection was made.
    const char* const resources = XResourceManagerString(display);
    const XrmDatabase all = resources != nullptr ? XrmGetStringDatabase(resources) : nullptr;
    if (all != nullptr) {
      char* type = nullptr;
      XrmValue value{};
      if (XrmGetResource(all, "Xft.dpi", "Xft.Dpi", &type, &value) != 0 && value.addr != nullptr)
        dots = numberIn(value.addr);
      XrmDestroyDatabase(all);
    }
    XCloseDisplay(display);
  }
  return dots;
}

/// Left, top, width and height for each desktop; the first one's, as all have the same panels.
std::optional<DesktopRoom> workArea(Display* display) {
  constexpr long kWords = 4;
  Atom type = 0;
  int format = 0;
  unsigned long count = 0;
  unsigned long after = 0;
  unsigned char* data = nullptr;
  const Atom name = XInternAtom(display, "_NET_WORKAREA", False);
  if (XGetWindowProperty(display, DefaultRootWindow(display), name, 0, kWords, False, XA_CARDINAL,
                         &type, &format, &count, &after, &data) != Success) {
    return {};
  }
  const std::unique_ptr<unsigned char, int (*)(void*)> release(data, XFree);
  if (type != XA_CARDINAL || format != 32 || count != kWords) return {};
  const auto* const words = reinterpret_cast<const long*>(data);
  constexpr long kMost = 1 << 15;
  if (words[2] < 1 || words[2] > kMost || words[3] < 1 || words[3] > kMost) return {};
  return DesktopRoom{static_cast<int>(words[2]), static_cast<int>(words[3])};
}

}  // namespace

std::optional<DesktopRoom> desktopRoom() {
  bool lost = false;
  Display* const display = connectToServer(lost);
  if (display == nullptr) return {};
  DesktopRoom room{};
  {
    const X11Guard guard(display);
    const int screen = DefaultScreen(display);
    room = {DisplayWidth(display, screen), DisplayHeight(display, screen)};
    if (const auto area = workArea(display)) {
      room = {std::min(room.width, area->width), std::min(room.height, area->height)};
    }
    XCloseDisplay(display);
  }
  return room;
}

double desktopScale() {
  constexpr double kSteps = 4.0;  // of one factor: what lies between makes no picture sharper
  double scale = 1.0;
  if (const auto told = numberIn(std::getenv("GDK_SCALE"))) {
    scale = *told;
  } else if (const auto dots = letterResolution()) {
    scale = *dots / kPlainResolution;
  }
  return std::clamp(std::round(scale * kSteps) / kSteps, 1.0, 3.0);
}

}  // namespace zum
