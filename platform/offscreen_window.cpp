#include "platform/offscreen_window.hpp"

#include <algorithm>
#include <cstring>
#include <utility>

namespace zum {

OffscreenWindow::OffscreenWindow(const WindowRequest& request, WindowEvents& told)
    : events(told), screen(makeScreen(request.width, request.height)) {
  expose(0, 0, request.width, request.height);
}

OffscreenWindow::Screen OffscreenWindow::makeScreen(int width, int height) {
  return {cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height), cairo_surface_destroy};
}

void OffscreenWindow::resize(int width, int height) {
  screen = makeScreen(width, height);
  expose(0, 0, width, height);
}

void OffscreenWindow::poll() {
  const std::weak_ptr<bool> alive = life;
  for (std::size_t left = queue.size(); left > 0; --left) {
    const Event event = std::move(queue.front());
    queue.pop_front();
    event(events);
    if (alive.expired() || queue.empty()) return;
  }
}

void OffscreenWindow::show(cairo_surface_t* picture, std::span<const cairo_rectangle_int_t> parts) {
  if (gone) return;
  cairo_t* context = cairo_create(screen.get());
  cairo_set_source_surface(context, picture, 0, 0);
  for (const auto& [x, y, width, height] : parts) {
    cairo_rectangle(context, x, y, width, height);
    cairo_fill(context);
    ++showCount;
    pixelCount += static_cast<long>(width) * height;
  }
  cairo_destroy(context);
}

void OffscreenWindow::press(int x, int y, int buttonWord) {
  queue.emplace_back([=](WindowEvents& to) { to.windowPressed(x, y, buttonWord); });
}
void OffscreenWindow::release(int x, int y, int buttonWord) {
  queue.emplace_back([=](WindowEvents& to) { to.windowReleased(x, y, buttonWord); });
}
void OffscreenWindow::move(int x, int y, int buttonWord) {
  queue.emplace_back([=](WindowEvents& to) { to.windowMoved(x, y, buttonWord); });
}
void OffscreenWindow::leave() {
  queue.emplace_back([](WindowEvents& to) { to.windowLeft(); });
}
void OffscreenWindow::wheel(int x, int y, float distance, int buttonWord) {
  queue.emplace_back([=](WindowEvents& to) { to.windowScrolled(x, y, distance, buttonWord); });
}
void OffscreenWindow::keyDown(const WindowKey& key) {
  queue.emplace_back([this, key, alive = std::weak_ptr<bool>(life)](WindowEvents& to) {
    if (!to.windowKeyPressed(key) && !alive.expired()) unwanted.push_back(key);
  });
}
void OffscreenWindow::keyUp(const WindowKey& key) {
  queue.emplace_back([this, key, alive = std::weak_ptr<bool>(life)](WindowEvents& to) {
    if (!to.windowKeyReleased(key) && !alive.expired()) unwanted.push_back(key);
  });
}
void OffscreenWindow::expose(int left, int top, int right, int bottom) {
  queue.emplace_back([=](WindowEvents& to) { to.windowExposed(left, top, right, bottom); });
}
void OffscreenWindow::drop(int x, int y, const std::vector<std::string>& files) {
  queue.emplace_back([=](WindowEvents& to) { to.windowDropped(x, y, files); });
}
void OffscreenWindow::resizeByUser(int width, int height) {
  queue.emplace_back([=, this](WindowEvents& to) {
    screen = makeScreen(width, height);
    to.windowResized(width, height);
  });
}
void OffscreenWindow::vanish() {
  queue.emplace_back([this](WindowEvents& to) {
    gone = true;
    focused = false;
    queue.clear();
    to.windowGone();
  });
}

std::uint32_t OffscreenWindow::pixel(int x, int y) const {
  if (x < 0 || y < 0 || x >= width() || y >= height()) return 0;
  cairo_surface_flush(screen.get());
  const unsigned char* row =
      cairo_image_surface_get_data(screen.get()) +
      static_cast<std::ptrdiff_t>(y) * cairo_image_surface_get_stride(screen.get());
  std::uint32_t word = 0;
  std::memcpy(&word, row + static_cast<std::ptrdiff_t>(4) * x, sizeof word);
  return word & 0xFFFFFFU;
}

}  // namespace zum
