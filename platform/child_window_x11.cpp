#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include "platform/child_window.hpp"
#include "platform/x11_connection.hpp"

namespace zum {
namespace {

class X11ChildWindow final : public ChildWindow {
 public:
  explicit X11ChildWindow(const ChildWindowRequest& request) : display(connectToServer(lost)) {
    if (display == nullptr) return;
    X11Guard guard(display);
    XWindowAttributes parent{};
    if (XGetWindowAttributes(display, request.parent, &parent) == 0) return;
    const unsigned long black = BlackPixelOfScreen(parent.screen);
    window = XCreateSimpleWindow(display, request.parent, request.left, request.top,
                                 static_cast<unsigned>(request.width),
                                 static_cast<unsigned>(request.height), 0, black, black);
    XStoreName(display, window, request.title.c_str());
    char name[] = "RTASWRAPPERCLASS";
    XClassHint classes{name, name};
    XSetClassHint(display, window, &classes);
    XMapWindow(display, window);
    if (guard.failed()) window = 0;
  }
  ~X11ChildWindow() override {
    if (display == nullptr) return;
    X11Guard guard(display);
    if (window != 0 && !lost) XDestroyWindow(display, window);
    if (!lost) guard.failed();  // it may have gone with its parent
    XCloseDisplay(display);
  }

  std::uintptr_t handle() const override { return window; }

 private:
  bool lost = false;  // the server went
  Display* display;
  Window window = 0;
};

}  // namespace

std::unique_ptr<ChildWindow> openChildWindow(const ChildWindowRequest& request) {
  auto window = std::make_unique<X11ChildWindow>(request);
  if (window->handle() == 0) return nullptr;
  return window;
}

}  // namespace zum
