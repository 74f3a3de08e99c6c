#include "support/own_display.hpp"

#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace zum::test {
namespace {

[[noreturn]] void giveUp(const char* what) {
  (void)std::fprintf(stderr, "%s\n", what);
  std::abort();
}

}  // namespace

OwnDisplay::OwnDisplay() noexcept {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) giveUp("no pipe");
  const std::string end = std::to_string(ends[1]);
  const pid_t us = getpid();
  process = fork();
  if (process == 0) {
    prctl(PR_SET_PDEATHSIG, SIGTERM);  // at which it tidies up behind itself
    if (getppid() != us) _exit(1);
    fcntl(ends[1], F_SETFD, 0);
    execlp("Xvfb", "Xvfb", "-displayfd", end.c_str(), "-screen", "0", "1024x768x24", "-nolisten",
           "tcp", "-noreset", static_cast<char*>(nullptr));
    _exit(1);
  }
  close(ends[1]);
  std::array<char, 16> number{};  // which it writes when it is ready
  std::FILE* const pipe = fdopen(ends[0], "r");
  const bool isReady = std::fgets(number.data(), number.size(), pipe) != nullptr;
  (void)std::fclose(pipe);
  if (!isReady) giveUp("no X server: is xvfb installed?");
  setenv("DISPLAY", (":" + std::string(number.data(), std::strcspn(number.data(), "\n"))).c_str(),
         1);
}

void OwnDisplay::stop() {
  const int ending = std::exchange(process, -1);
  if (ending <= 0) return;
  kill(ending, SIGTERM);
  waitpid(ending, nullptr, 0);
}

Robot::Robot() : display(XOpenDisplay(nullptr)) {
  if (display == nullptr) giveUp("no connection to the X server");
}

void Robot::disconnect() {
  if (display != nullptr) XCloseDisplay(std::exchange(display, nullptr));
}

void Robot::moveTo(std::uintptr_t window, int x, int y) {
  Window root = DefaultRootWindow(display);
  Window child = 0;
  XTranslateCoordinates(display, window != 0 ? window : root, root, x, y, &x, &y, &child);
  XTestFakeMotionEvent(display, -1, x, y, CurrentTime);
  XSync(display, False);
}

void Robot::click(unsigned button) {
  press(button);
  release(button);
}

void Robot::type(unsigned long keySymbol) {
  keyDown(keySymbol);
  keyUp(keySymbol);
}

Screenshot Robot::screenshot(std::uintptr_t window) {
  XWindowAttributes place{};
  XGetWindowAttributes(display, window, &place);
  XImage* image = XGetImage(display, window, 0, 0, static_cast<unsigned>(place.width),
                            static_cast<unsigned>(place.height), 0xFFFFFF, ZPixmap);
  if (image == nullptr) giveUp("that window is not on the screen");
  const auto* const words = reinterpret_cast<const std::uint32_t*>(image->data);
  Screenshot shot{place.width, place.height, {words, words + place.width * place.height}};
  XDestroyImage(image);
  return shot;
}

std::uintptr_t Robot::focus() {
  Window holder = 0;
  int revert = 0;
  XGetInputFocus(display, &holder, &revert);
  return holder;
}

void Robot::giveFocus(std::uintptr_t window) {
  XSetInputFocus(display, window, RevertToParent, CurrentTime);
  XSync(display, False);
}

void Robot::close(std::uintptr_t window) {
  XEvent event{};
  event.xclient.type = ClientMessage;
  event.xclient.window = window;
  event.xclient.message_type = XInternAtom(display, "WM_PROTOCOLS", False);
  event.xclient.format = 32;
  event.xclient.data.l[0] = static_cast<long>(XInternAtom(display, "WM_DELETE_WINDOW", False));
  XSendEvent(display, window, False, NoEventMask, &event);
  XSync(display, False);
}

std::uintptr_t Robot::findWindow(const std::string& title) {
  Window ignored = 0;
  Window* windows = nullptr;
  unsigned count = 0;
  XQueryTree(display, DefaultRootWindow(display), &ignored, &ignored, &windows, &count);
  std::uintptr_t found = 0;
  for (unsigned i = 0; i < count; ++i) {
    char* name = nullptr;
    XWindowAttributes state{};
    XGetWindowAttributes(display, windows[i], &state);
    if (state.map_state != IsViewable || XFetchName(display, windows[i], &name) == 0) continue;
    if (title == name) found = windows[i];
    XFree(name);
  }
  if (windows != nullptr) XFree(windows);
  return found;
}

void Robot::pushButton(unsigned button, bool down) {
  XTestFakeButtonEvent(display, button, down ? True : False, CurrentTime);
  XSync(display, False);
}

void Robot::pushKey(unsigned long keySymbol, bool down) {
  XTestFakeKeyEvent(display, XKeysymToKeycode(display, keySymbol), down ? True : False,
                    CurrentTime);
  XSync(display, False);
}

HostWindow::HostWindow(int left, int depth) : display(XOpenDisplay(nullptr)) {
  XVisualInfo visual{};
  XMatchVisualInfo(display, DefaultScreen(display), depth, TrueColor, &visual);
  XSetWindowAttributes attributes{};
  attributes.colormap =
      XCreateColormap(display, DefaultRootWindow(display), visual.visual, AllocNone);
  attributes.event_mask = KeyPressMask | KeyReleaseMask;
  window = XCreateWindow(display, DefaultRootWindow(display), left, 100, 512, 480, 0, depth,
                         InputOutput, visual.visual,
                         CWBackPixel | CWBorderPixel | CWColormap | CWEventMask, &attributes);
  XMapWindow(display, window);
  XSync(display, False);
}

void HostWindow::end() {
  if (display != nullptr) XCloseDisplay(std::exchange(display, nullptr));
}

std::pair<int, int> HostWindow::innerSize() const {
  Window root = 0;
  Window above = 0;
  Window* inner = nullptr;
  unsigned count = 0;
  XWindowAttributes attributes{};
  XSync(display, False);
  if (XQueryTree(display, window, &root, &above, &inner, &count) != 0 && count > 0)
    XGetWindowAttributes(display, inner[0], &attributes);
  if (inner != nullptr) XFree(inner);
  return {attributes.width, attributes.height};
}

std::vector<KeySym> HostWindow::keys() {
  XSync(display, False);
  std::vector<KeySym> symbols;
  XEvent event;
  while (XCheckWindowEvent(display, window, KeyPressMask | KeyReleaseMask, &event) != False) {
    symbols.push_back(XLookupKeysym(&event.xkey, 0));
  }
  return symbols;
}

}  // namespace zum::test
