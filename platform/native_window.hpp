// What a system must supply for a window: open it inside of a host's or on its own, show pixels,
// tell what the user does. One source a system; an off-screen one stands in for tests.
//
// A window has neither thread nor timer: everything happens in the caller's poll().
#pragma once

#include <cairo.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/input.hpp"

namespace zum {

/// [main] Told in the call of poll() alone. Places are pixels from the window's top left corner;
/// while a button is held they may lie outside. Whoever is told may close the window at once.
class WindowEvents {
 public:
  WindowEvents() = default;
  WindowEvents(const WindowEvents&) = delete;
  WindowEvents& operator=(const WindowEvents&) = delete;
  virtual ~WindowEvents() = default;

  /// The word holds the button that went down, those that are held, and the modifiers.
  virtual void windowPressed(int x, int y, int buttonWord) = 0;
  /// The word holds the buttons that are still held.
  virtual void windowReleased(int x, int y, int buttonWord) = 0;
  virtual void windowMoved(int x, int y, int buttonWord) = 0;
  /// Not while a button is held; then it comes with the release.
  virtual void windowLeft() = 0;
  /// Up is above 0; one notch is 1.
  virtual void windowScrolled(int x, int y, float distance, int buttonWord) = 0;
  /// False for a key that is of no use here: the host gets it.
  virtual bool windowKeyPressed(const WindowKey& key) = 0;
  virtual bool windowKeyReleased(const WindowKey& key) = 0;
  /// Pixels were lost. Ends are the first pixels outside.
  virtual void windowExposed(int left, int top, int right, int bottom) = 0;
  /// In a window that takes files: paths, one or more. Nothing else is known of them.
  virtual void windowDropped(int x, int y, const std::vector<std::string>& files) = 0;
  /// The user or the system gave it another size than it was made or resized to.
  virtual void windowResized(int /*width*/, int /*height*/) {}
  /// The user closed it, or the host's window went and took it along. It shows nothing any more.
  virtual void windowGone() = 0;
};

/// For a window that shows nothing but the view of another one.
class PassiveWindowEvents : public WindowEvents {
 public:
  void windowPressed(int /*x*/, int /*y*/, int /*buttonWord*/) override {}
  void windowReleased(int /*x*/, int /*y*/, int /*buttonWord*/) override {}
  void windowMoved(int /*x*/, int /*y*/, int /*buttonWord*/) override {}
  void windowLeft() override {}
  void windowScrolled(int /*x*/, int /*y*/, float /*distance*/, int /*buttonWord*/) override {}
  bool windowKeyPressed(const WindowKey& /*key*/) override { return false; }
  bool windowKeyReleased(const WindowKey& /*key*/) override { return false; }
  void windowExposed(int /*left*/, int /*top*/, int /*right*/, int /*bottom*/) override {}
  void windowDropped(int /*x*/, int /*y*/, const std::vector<std::string>& /*files*/) override {}
  void windowGone() override {}
};

enum class WindowCursor : std::uint8_t { arrow, hourglass, resizeHorizontally };

/// Of a window's top left corner, without what a window manager puts around it. Pixels.
struct ScreenPlace {
  int x = 0;
  int y = 0;
  bool operator==(const ScreenPlace&) const = default;
};

class NativeWindow {
 public:
  NativeWindow() = default;
  NativeWindow(const NativeWindow&) = delete;
  NativeWindow& operator=(const NativeWindow&) = delete;
  /// Closes it, also when its parent is gone. Gives the focus back.
  virtual ~NativeWindow() = default;

  /// [main] Tells everything that has come, without waiting.
  virtual void poll() = 0;
  /// To another size, at once as far as it depends on us; nothing is told of it. What it shows is
  /// lost.
  virtual void resize(int width, int height) = 0;
  /// Shows parts of `picture`, which has the size of the window, at once. CAIRO_FORMAT_RGB24.
  virtual void show(cairo_surface_t* picture, std::span<const cairo_rectangle_int_t> parts) = 0;
  /// As the system names it, 0 when it is gone.
  virtual std::uintptr_t handle() const = 0;
  /// Buttons and modifiers as they are just now.
  virtual int currentButtons() const = 0;
  virtual bool hasFocus() const = 0;
  /// For a window inside of a host's. Others get the focus from the system.
  virtual void takeFocus() = 0;
  virtual void setCursor(WindowCursor cursor) = 0;
  /// Where the user has put a window of its own, as far as has been heard; also when it is gone.
  virtual std::optional<ScreenPlace> place() const { return std::nullopt; }
};

/// Pixels.
struct SizeRange {
  int leastWidth = 0, leastHeight = 0;
  int mostWidth = 0, mostHeight = 0;
};

struct WindowRequest {
  std::uintptr_t parent = 0;  // the host's window, 0 for a window of its own
  int width = 0;
  int height = 0;
  // Of a window of its own:
  std::string title = {};
  std::uintptr_t inFrontOf = 0;  // a dialog of the program whose window this is or lies in
  std::optional<ScreenPlace> place = std::nullopt;  // moved onto the screen where it is not
  bool takesFiles = false;                          // that the user drops onto it
  // Its user may give it another size between these, with the same proportion of its sides.
  std::optional<SizeRange> sizes = std::nullopt;
};

/// [main] Null where there is no display, or no such parent. `events` outlive the window.
std::unique_ptr<NativeWindow> openNativeWindow(const WindowRequest& request, WindowEvents& events);

}  // namespace zum
