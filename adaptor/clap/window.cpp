#include "adaptor/clap/window.hpp"

#include <cstring>

namespace zum::clap {

constexpr std::uint32_t kTickMilliseconds = 33;

bool Window::isSupported(const char* api, bool isFloating) {
  return api != nullptr && std::strcmp(api, CLAP_WINDOW_API_X11) == 0 && !isFloating;
}

bool Window::create(const char* api, bool isFloating) {
  if (isCreated || !isSupported(api, isFloating) || !size()) return false;
  isCreated = true;
  return true;
}

void Window::destroy() {
  close();
  isCreated = false;
  parent = 0;
}

// Some hosts never ask to show what they have given a place.
bool Window::setParent(const clap_window_t& window) {
  if (!isCreated || !isSupported(window.api, false) || window.x11 == 0) return false;
  if (window.x11 != parent) close();
  parent = window.x11;
  return open();
}

bool Window::show() { return isCreated && open(); }

bool Window::hide() {
  if (!isCreated) return false;
  close();
  return true;
}

std::optional<HostSide::Size> Window::size() {
  const HostSide::Size size = side.windowSize();
  if (size.width <= 0 || size.height <= 0) return std::nullopt;
  return size;
}

bool Window::setSize(const HostSide::Size& given) {
  if (!isCreated) return false;
  side.resizeWindow(given);
  return true;
}

bool Window::resize(const HostSide::Size& wanted) {
  return host.requestResize(static_cast<std::uint32_t>(wanted.width),
                            static_cast<std::uint32_t>(wanted.height));
}

void Window::tick(clap_id firedTimer) {
  if (timer == firedTimer) side.idleWindow();
}

bool Window::open() {
  if (side.isWindowOpen()) return true;
  close();  // one whose place has gone still has its timer
  if (parent == 0 || !side.openWindow(parent, this)) return false;
  timer = host.startTimer(kTickMilliseconds);
  if (!timer) side.idleByOwnThread();
  return true;
}

void Window::close() {
  if (timer) host.stopTimer(*timer);
  timer.reset();
  side.closeWindow();  // what is held in it ends
}

}  // namespace zum::clap
