// A window without a screen, for tests: keeps what is shown, and tells what a test makes its user
// do.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/native_window.hpp"

namespace zum {

class OffscreenWindow final : public NativeWindow {
 public:
  OffscreenWindow(const WindowRequest& request, WindowEvents& told);

  void poll() override;
  void resize(int width, int height) override;
  void show(cairo_surface_t* picture, std::span<const cairo_rectangle_int_t> parts) override;
  std::uintptr_t handle() const override { return gone ? 0 : 1; }
  int currentButtons() const override { return heldButtons; }
  bool hasFocus() const override { return focused; }
  void takeFocus() override { focused = !gone; }
  void setCursor(WindowCursor cursor) override { shownCursor = cursor; }

  // What the user does, told by the next poll().
  void press(int x, int y, int buttonWord = buttons::kLeft);
  void release(int x, int y, int buttonWord = 0);
  void move(int x, int y, int buttonWord = 0);
  void leave();
  void wheel(int x, int y, float distance, int buttonWord = 0);
  void keyDown(const WindowKey& key);
  void keyUp(const WindowKey& key);
  void expose(int left, int top, int right, int bottom);
  void drop(int x, int y, const std::vector<std::string>& files);
  void resizeByUser(int width, int height);
  void vanish();
  // What is so at once.
  void setButtons(int buttonWord) { heldButtons = buttonWord; }
  void setFocus(bool focus) { focused = focus; }

  /// 0xRRGGBB of what is on the screen; black at first, and outside.
  std::uint32_t pixel(int x, int y) const;
  int width() const { return cairo_image_surface_get_width(screen.get()); }
  int height() const { return cairo_image_surface_get_height(screen.get()); }
  WindowCursor cursor() const { return shownCursor; }
  int shows() const { return showCount; }
  long shownPixels() const { return pixelCount; }
  void forgetShows() { showCount = 0, pixelCount = 0; }
  /// Keys that nobody here wanted, presses and releases.
  const std::vector<WindowKey>& hostKeys() const { return unwanted; }

 private:
  using Screen = std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)>;
  using Event = std::function<void(WindowEvents&)>;

  static Screen makeScreen(int width, int height);

  WindowEvents& events;
  std::shared_ptr<bool> life = std::make_shared<bool>(true);  // what is told may close the window
  Screen screen;
  std::deque<Event> queue;
  std::vector<WindowKey> unwanted;
  int showCount = 0;
  long pixelCount = 0;
  int heldButtons = 0;
  bool focused = false;
  bool gone = false;
  WindowCursor shownCursor = WindowCursor::arrow;
};

}  // namespace zum
