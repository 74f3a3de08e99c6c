// A user in front of a host's screen: looks for the window of an effect wherever the host has put
// it, works it with the mouse and looks what becomes of it. Run by the scripts of the hosts that
// show windows; prints "ok …" and "WRONG …" lines.
#include <X11/Xutil.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>
#include <thread>

#include "tests/support/own_display.hpp"

namespace zum::hosts {
namespace {

constexpr int kWidth = 508;
constexpr int kHeight = 470;
constexpr int kCutoffX = 252;
constexpr int kCutoffY = 180;

bool check(bool holds, const char* claim) {
  (void)std::printf("%s %s\n", holds ? "ok" : "WRONG", claim);
  return holds;
}

bool within(int seconds, const std::function<bool()>& holds) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
  while (!holds()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  }
  return true;
}

bool isOurs(Display* display, Window window) {
  XWindowAttributes state{};
  XClassHint names{};
  if (XGetWindowAttributes(display, window, &state) == 0 || state.map_state != IsViewable ||
      state.width != kWidth || state.height != kHeight ||
      XGetClassHint(display, window, &names) == 0) {
    return false;
  }
  const bool ours = std::strcmp(names.res_class, "ZUM") == 0;
  XFree(names.res_name);
  XFree(names.res_class);
  return ours;
}

// NOLINTNEXTLINE(misc-no-recursion): as deep as hosts nest their windows
Window findBelow(Display* display, Window above) {
  Window root = 0;
  Window parent = 0;
  Window* windows = nullptr;
  unsigned count = 0;
  if (XQueryTree(display, above, &root, &parent, &windows, &count) == 0) return 0;
  Window found = 0;
  for (unsigned i = 0; i < count && found == 0; ++i) {
    found = isOurs(display, windows[i]) ? windows[i] : findBelow(display, windows[i]);
  }
  if (windows != nullptr) XFree(windows);
  return found;
}

int work(int seconds) {
  XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });  // windows go while we look
  test::Robot user;
  Window window = 0;
  const auto isThere = [&] {
    window = findBelow(user.connection(), DefaultRootWindow(user.connection()));
    return window != 0;
  };
  if (!check(within(seconds, isThere), "its window is on the screen")) return 1;
  const auto look = [&] {
    const test::Screenshot shot = user.screenshot(window);
    std::vector<std::uint32_t> knob;
    for (int y = kCutoffY - 30; y < kCutoffY + 30; ++y) {
      for (int x = kCutoffX - 30; x < kCutoffX + 30; ++x) knob.push_back(shot.at(x, y));
    }
    return knob;
  };
  user.moveTo(window, kCutoffX, kCutoffY);
  bool good = check(within(5, [&] { return look() != decltype(look())(3600, look().front()); }),
                    "it has been painted");
  std::this_thread::sleep_for(std::chrono::seconds(1));
  const auto before = look();
  user.press();
  for (const int y : {-20, -40, -60}) user.moveTo(window, kCutoffX, kCutoffY + y);
  user.release();
  good &= check(within(5, [&] { return look() != before; }), "a knob follows the mouse");
  const auto turned = look();
  user.moveTo(window, kCutoffX, kCutoffY);
  user.click(3);
  good &= check(within(5, [&] { return look() != turned; }), "its panel opens over it");
  user.moveTo(window, 5, 5);
  user.click();
  good &= check(within(5, [&] { return look() == turned; }), "and closes");
  return good ? 0 : 1;
}

}  // namespace
}  // namespace zum::hosts

int main(int argc, char** argv) {
  return zum::hosts::work(argc > 1 ? static_cast<int>(std::strtol(argv[1], nullptr, 10)) : 20);
}
