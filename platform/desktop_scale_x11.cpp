#include <X11/Xlib.h>
#include <X11/Xresource.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
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

}  // namespace

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
