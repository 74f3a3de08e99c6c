#include "support/own_display.hpp"

#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <string>
#include <utility>

namespace zum::test {
namespace {

constexpr int kStartTime = 20000;  // ms, on a busy machine

[[noreturn]] void giveUp(const char* what) {
  std::cerr << what << '\n';
  std::abort();
}

/// The server writes its number when it is ready.
std::string readNumber(int pipe) {
  std::string number;
  for (char next = 0;;) {
    pollfd wait{pipe, POLLIN, 0};
    if (::poll(&wait, 1, kStartTime) != 1 || read(pipe, &next, 1) != 1) return {};
    if (next == '\n') return number;
    number += next;
  }
}

std::vector<Window> windowsIn(Display* display, Window outer) {
  Window ignored = 0;
  Window* found = nullptr;
  unsigned count = 0;
  XQueryTree(display, outer, &ignored, &ignored, &found, &count);
  std::vector<Window> all(found, found + count);
  if (found != nullptr) XFree(found);
  return all;
}

}  // namespace

OwnDisplay::OwnDisplay() noexcept {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) giveUp("no pipe");
  const std::string number = std::to_string(ends[1]);
  const pid_t us = getpid();
  process = fork();
  if (process == 0) {
    prctl(PR_SET_PDEATHSIG, SIGTERM);  // at which it tidies up behind itself
    if (getppid() != us) _exit(1);
    fcntl(ends[1], F_SETFD, 0);
    execlp("Xvfb", "Xvfb", "-displayfd", number.c_str(), "-screen", "0", "1024x768x24", "-nolisten",
           "tcp", "-noreset", static_cast<char*>(nullptr));
    _exit(1);
  }
  close(ends[1]);
  const std::string display = readNumber(ends[0]);
  close(ends[0]);
  if (display.empty()) {
    stop();
    giveUp("no X server: is xvfb installed?");
  }
  setenv("DISPLAY", (":" + display).c_str(), 1);
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
  int screenX = x;
  int screenY = y;
  if (window != 0) {
    Window child = 0;
    XTranslateCoordinates(display, window, root, x, y, &screenX, &screenY, &child);
  }
  XTestFakeMotionEvent(display, -1, screenX, screenY, CurrentTime);
  XSync(display, False);
}

void Robot::click(unsigned button) {
  press(button);
  release(button);
}

void Robot::wheel(int notches) {
  for (int left = std::abs(notches); left > 0; --left) click(notches > 0 ? Button4 : Button5);
}

void Robot::type(unsigned long keySymbol) {
  keyDown(keySymbol);
  keyUp(keySymbol);
}

void Robot::swapButtons(bool swapped) {
  std::array<unsigned char, 256> map{};
  const int count = XGetPointerMapping(display, map.data(), static_cast<int>(map.size()));
  map[0] = swapped ? 3 : 1;
  map[2] = swapped ? 1 : 3;
  XSetPointerMapping(display, map.data(), count);
}

void Robot::grab(bool grabs) {
  if (grabs) {
    XGrabPointer(display, DefaultRootWindow(display), False, 0, GrabModeAsync, GrabModeAsync, None,
                 None, CurrentTime);
  } else {
    XUngrabPointer(display, CurrentTime);
  }
  XSync(display, False);
}

Screenshot Robot::screenshot(std::uintptr_t window) {
  Window root = DefaultRootWindow(display);
  XWindowAttributes place{};
  XGetWindowAttributes(display, window != 0 ? window : root, &place);
  int x = 0;
  int y = 0;
  Window child = 0;
  if (window != 0) XTranslateCoordinates(display, window, root, 0, 0, &x, &y, &child);
  XImage* image = XGetImage(display, root, x, y, static_cast<unsigned>(place.width),
                            static_cast<unsigned>(place.height), AllPlanes, ZPixmap);
  if (image == nullptr) giveUp("that window is not on the screen");
  Screenshot shot{place.width, place.height, {}};
  for (int row = 0; row < place.height; ++row) {
    for (int column = 0; column < place.width; ++column) {
      shot.words.push_back(static_cast<std::uint32_t>(XGetPixel(image, column, row)) & 0xFFFFFFU);
    }
  }
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
  std::uintptr_t found = 0;
  for (const Window window : windowsIn(display, DefaultRootWindow(display))) {
    char* name = nullptr;
    XWindowAttributes state{};
    XGetWindowAttributes(display, window, &state);
    if (state.map_state != IsViewable || XFetchName(display, window, &name) == 0) continue;
    if (title == name) found = window;
    XFree(name);
  }
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

void HostWindow::destroy() {
  XDestroyWindow(display, window);
  XSync(display, False);
}

void HostWindow::end() {
  if (display != nullptr) XCloseDisplay(std::exchange(display, nullptr));
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

unsigned HostWindow::children() const {
  return static_cast<unsigned>(windowsIn(display, window).size());
}

}  // namespace zum::test
