// A user in front of a host's screen: looks for the window of an effect wherever the host has put
// it, works it with the mouse and looks what becomes of it. Run by the scripts of the hosts that
// show windows; prints "ok …" and "WRONG …" lines.
#include <X11/Xlib.h>

#include <chrono>
#include <cstdio>
#include <functional>
#include <thread>
#include <vector>

#include "tests/support/own_display.hpp"

namespace zum::hosts {
namespace {

constexpr int kCutoffX = 252;
constexpr int kCutoffY = 180;

bool comes(const char* claim, const std::function<bool()>& holds) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  bool good = holds();
  for (; !good && std::chrono::steady_clock::now() < end; good = holds()) {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  }
  (void)std::printf("%s %s\n", good ? "ok" : "WRONG", claim);
  return good;
}

/// Perhaps a frame that the host has laid round it, which has the same corner.
bool isOurs(Display* display, Window window) {
  XWindowAttributes state{};
  return XGetWindowAttributes(display, window, &state) != 0 && state.map_state == IsViewable &&
         state.width == 508 && state.height == 470;
}

// NOLINTNEXTLINE(misc-no-recursion): as deep as hosts nest their windows
Window findBelow(Display* display, Window above) {
  Window ignored = 0;
  Window* windows = nullptr;
  unsigned count = 0;
  if (XQueryTree(display, above, &ignored, &ignored, &windows, &count) == 0) return 0;
  Window found = 0;
  for (unsigned i = 0; i < count && found == 0; ++i) {
    found = isOurs(display, windows[i]) ? windows[i] : findBelow(display, windows[i]);
  }
  if (windows != nullptr) XFree(windows);
  return found;
}

bool work() {
  XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });  // windows go while we look
  test::Robot user;
  Display* const display = user.connection();
  Window window = 0;
  const auto find = [&] { return (window = findBelow(display, DefaultRootWindow(display))) != 0; };
  if (!comes("its window is on the screen", find)) return false;
  const auto knob = [&] {
    const test::Screenshot shot = user.screenshot(window);
    std::vector<std::uint32_t> pixels;
    for (int y = kCutoffY - 30; y < kCutoffY + 30; ++y) {
      for (int x = kCutoffX - 30; x < kCutoffX + 30; ++x) pixels.push_back(shot.at(x, y));
    }
    return pixels;
  };
  user.moveTo(window, kCutoffX, kCutoffY);
  bool good = comes("it is painted", [&] { return knob() != std::vector(3600, knob().front()); });
  std::this_thread::sleep_for(std::chrono::seconds(1));
  const auto before = knob();
  user.press();
  for (const int y : {-20, -40, -60}) user.moveTo(window, kCutoffX, kCutoffY + y);
  user.release();
  good &= comes("a knob follows the mouse", [&] { return knob() != before; });
  std::this_thread::sleep_for(std::chrono::seconds(1));  // perhaps it is still on its way
  const auto turned = knob();
  user.moveTo(window, kCutoffX, kCutoffY);
  user.click(3);
  good &= comes("its panel opens over it", [&] { return knob() != turned; });
  user.moveTo(window, 5, 5);
  user.click();
  return comes("and closes", [&] { return knob() == turned; }) && good;
}

}  // namespace
}  // namespace zum::hosts

int main() { return zum::hosts::work() ? 0 : 1; }
