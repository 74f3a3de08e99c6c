// A window on an X server. native_window_x11.cpp opens it, draws and closes it; x11_events.cpp
// tells what came.
#pragma once

#include <X11/Xlib.h>

#include <array>
#include <deque>
#include <memory>
#include <optional>

#include "platform/native_window.hpp"
#include "platform/x11_compose.hpp"
#include "platform/x11_drop.hpp"
#include "platform/x11_keys.hpp"

namespace zum {

class X11Guard;

/// Has a connection of its own: nothing of the host's is read from its queue, and no error of ours
/// can come in one of the host's calls.
class X11Window final : public NativeWindow {
 public:
  /// handle() is 0 when it could not be opened.
  X11Window(const WindowRequest& request, WindowEvents& told);
  ~X11Window() override;

  void poll() override;
  void resize(int toWidth, int toHeight) override;
  void show(cairo_surface_t* picture, std::span<const cairo_rectangle_int_t> parts) override;
  std::uintptr_t handle() const override { return lost ? 0 : window; }
  int currentButtons() const override;
  bool hasFocus() const override { return focused; }
  void takeFocus() override;
  void setCursor(WindowCursor cursor) override;
  std::optional<ScreenPlace> place() const override { return toldPlace; }

 private:
  bool create(const WindowRequest& request, X11Guard& guard);
  void describe(const WindowRequest& request);
  void describeSize(const std::optional<ScreenPlace>& corner);
  void describeDialog(Window inFrontOf);
  ScreenPlace placeFor(const WindowRequest& request) const;
  void closeSurface();
  void giveFocusBack(X11Guard& guard);

  void fetch();
  void tell(XEvent& event);
  void tellPress(const XButtonEvent& event);
  void tellRelease(const XButtonEvent& event);
  void tellKey(XEvent& event);
  void tellText(const std::u32string& text, WindowKey key);
  void tellMove(int x, int y, unsigned state);
  void tellLeft();
  void tellDrop(const XEvent& event);
  void tellGone();
  void notePlace();
  void noteSize(const XConfigureEvent& event);
  void enter(const XCrossingEvent& event);
  void leave(const XCrossingEvent& event);
  void focusChanged(const XFocusChangeEvent& event);
  bool pointerIsOutside() const;

  WindowEvents& events;
  // Goes with the window: whoever calls out keeps a weak pointer, as what is told may close it.
  std::shared_ptr<bool> life = std::make_shared<bool>(true);
  bool lost = false;  // the server went: nothing can be said to it any more
  Display* display = nullptr;
  Window parent;  // 0 when the screen is
  Window window = 0;
  int width;
  int height;
  const std::optional<SizeRange> sizes;
  unsigned long resizedAt = 0;  // serial of our last resize: what the server told before is old
  Colormap colours = 0;
  cairo_surface_t* surface = nullptr;
  std::array<Cursor, 3> cursors{};
  std::optional<WindowCursor> shownCursor = std::nullopt;  // the parent's at first
  Atom protocols = 0;
  Atom deleteWindow = 0;
  std::optional<ScreenPlace> toldPlace = std::nullopt;
  std::optional<X11DropTarget> drops = std::nullopt;  // of a window that takes files

  std::deque<XEvent> queue;
  ClickCounter clicks;
  KeyComposer composer;
  bool over = false;        // where the pointer is
  bool toldInside = false;  // where it was said to be
  bool strayed = false;     // somebody else holds the pointer: no word when it goes
  bool focused = false;
  Window focusBefore = 0;
};

}  // namespace zum
