// The root of all views: keeps the picture of the whole window in memory, draws into it what is
// dirty, and shows those parts. Hands what the user does to its views.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/native_window.hpp"
#include "toolkit/view/view_container.hpp"

namespace zum {

/// [main]
class CFrame : public CViewContainer, private WindowEvents {
 public:
  using WindowOpener =
      std::function<std::unique_ptr<NativeWindow>(const WindowRequest&, WindowEvents&)>;

  /// `rect` starts at 0, 0, and counts in logical pixels, as all that views know.
  explicit CFrame(const CRect& rect, double factor = 1.0);

  /// Pixels of the screen for one logical pixel, 1 to 3. At any time but while it draws; a window
  /// that is open takes its new size at once, and everything is drawn again.
  void setFactor(double factor);
  /// A window that was given another size has the one of the factor again, if the system lets it.
  void fitWindow() {
    if (window) window->resize(screenSize().x, screenSize().y);
  }
  const Scale& scale() const { return screen; }
  /// Of the window, in pixels of the screen.
  CPoint screenSize() const {
    return screen.rounded(CPoint{getViewSize().right, getViewSize().bottom});
  }

  /// Inside of a host's window, or, for 0, as one of its own, which may belong to another. False
  /// when the system has none to give; the frame then draws for nobody.
  bool open(std::uintptr_t parent, const std::string& title = {},
            const WindowOpener& opener = openNativeWindow, std::uintptr_t inFrontOf = 0);
  /// The same with all that a request can say; its size is the frame's.
  bool open(WindowRequest request, const WindowOpener& opener);
  /// From now on nothing is told and drawn: what the views show may go before they do.
  void shut() { gone = true; }
  /// Shut, closed by the user, or gone with its parent.
  bool isGone() const { return gone; }

  /// Tells the views what the user did, then draws. Called by the host, some thirty times a second.
  virtual void idle();
  /// Draws what is dirty, and shows it.
  void paint();
  /// To be drawn again.
  void invalidate() { pending.add(getViewSize()); }
  void invalidRect(const CRect& rect) { pending.add(rect.meet(getViewSize())); }

  int getCurrentMouseButtons() const { return window ? window->currentButtons() : 0; }
  /// Nothing while the pointer is elsewhere.
  std::optional<CPoint> pointerPosition() const { return pointer; }
  std::uintptr_t nativeHandle() const { return window ? window->handle() : 0; }
  /// Of a window of its own, which the user may have moved.
  std::optional<ScreenPlace> screenPlace() const { return window ? window->place() : std::nullopt; }
  void setCursor(WindowCursor cursor) {
    if (window) window->setCursor(cursor);
  }
  /// As drawn last, of the screen's size, CAIRO_FORMAT_RGB24.
  cairo_surface_t* drawnPicture() const { return picture.get(); }

 protected:
  ~CFrame() override = default;
  /// Tells views that the pointer comes or goes.
  void followPointer(int buttons);
  bool hasFocus() const { return window && window->hasFocus(); }
  void takeFocus() {
    if (window && !hasFocus()) window->takeFocus();
  }
  /// Files that the user dropped onto the window.
  virtual void takeFiles(CPoint /*where*/, const std::vector<std::string>& /*paths*/) {}
  /// The window has another size, in pixels of the screen, than it was given.
  virtual void takeSize(int /*width*/, int /*height*/) {}
  void pollWindow() {
    if (window && !gone) window->poll();
  }

 private:
  void windowPressed(int x, int y, int buttonWord) override;
  void windowReleased(int x, int y, int buttonWord) override;
  void windowMoved(int x, int y, int buttonWord) override;
  void windowLeft() override;
  void windowScrolled(int x, int y, float distance, int buttonWord) override;
  bool windowKeyPressed(const WindowKey& key) override { return !gone && onKeyDown(key); }
  bool windowKeyReleased(const WindowKey& key) override { return !gone && onKeyUp(key); }
  void windowExposed(int left, int top, int right, int bottom) override;
  void windowDropped(int x, int y, const std::vector<std::string>& files) override {
    if (!gone) takeFiles(pointAt(x, y), files);
  }
  void windowResized(int width, int height) override {
    if (!gone) takeSize(width, height);
  }
  void windowGone() override { gone = true; }

  CRect screenRect() const { return {0, 0, screenSize().x, screenSize().y}; }
  CPoint pointAt(int x, int y) const { return screen.logical(CPoint{x, y}); }

  Scale screen;
  CacheUser shownFrames;
  Surface picture;  // of the whole window
  Damage pending;   // logical
  Damage shown;     // drawn, and to be shown; pixels of the screen
  std::optional<CPoint> pointer;
  Held<CView> hovered;
  bool gone = false;
  std::unique_ptr<NativeWindow> window;
};

}  // namespace zum
