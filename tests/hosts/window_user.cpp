// A user in front of a host's screen: looks for the window of an effect wherever the host has put
// it, works it with the mouse and looks what becomes of it. Run by the scripts of the hosts that
// show windows; prints "ok …" and "WRONG …" lines.
#include <X11/Xutil.h>

#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/own_display.hpp"

namespace zum::hosts {
namespace {

using Pixels = std::vector<std::uint32_t>;

constexpr int kCutoffX = 252;
constexpr int kCutoffY = 180;

bool comes(const char* claim, const std::function<bool()>& holds, int seconds = 5) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
  bool good = holds();
  for (; !good && std::chrono::steady_clock::now() < end; good = holds()) {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  }
  (void)std::printf("%s %s\n", good ? "ok" : "WRONG", claim);
  return good;
}

bool isOurs(Display* display, Window window) {
  XWindowAttributes state{};
  XClassHint names{};
  if (XGetWindowAttributes(display, window, &state) == 0 || state.map_state != IsViewable ||
      state.width != 508 || state.height != 470 || XGetClassHint(display, window, &names) == 0) {
    return false;
  }
  const bool ours = names.res_class == std::string("ZUM");
  XFree(names.res_name);
  XFree(names.res_class);
  return ours;
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

bool work(int seconds) {
  XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });  // windows go while we look
  test::Robot user;
  Display* const display = user.connection();
  Window window = 0;
  const auto isThere = [&] {
    window = findBelow(display, DefaultRootWindow(display));
    return window != 0;
  };
  if (!comes("its window is on the screen", isThere, seconds)) return false;
  const auto knob = [&] {
    const test::Screenshot shot = user.screenshot(window);
    Pixels pixels;
    for (int y = kCutoffY - 30; y < kCutoffY + 30; ++y) {
      for (int x = kCutoffX - 30; x < kCutoffX + 30; ++x) pixels.push_back(shot.at(x, y));
    }
    return pixels;
  };
  user.moveTo(window, kCutoffX, kCutoffY);
  bool good = comes("it has been painted", [&] { return knob() != Pixels(3600, knob().front()); });
  std::this_thread::sleep_for(std::chrono::seconds(1));
  const Pixels before = knob();
  user.press();
  for (const int y : {-20, -40, -60}) user.moveTo(window, kCutoffX, kCutoffY + y);
  user.release();
  good &= comes("a knob follows the mouse", [&] { return knob() != before; });
  const Pixels turned = knob();
  user.moveTo(window, kCutoffX, kCutoffY);
  user.click(3);
  good &= comes("its panel opens over it", [&] { return knob() != turned; });
  user.moveTo(window, 5, 5);
  user.click();
  return comes("and closes", [&] { return knob() == turned; }) && good;
}

}  // namespace
}  // namespace zum::hosts

int main(int argc, char** argv) {
  return zum::hosts::work(argc > 1 ? std::stoi(argv[1]) : 20) ? 0 : 1;
}
