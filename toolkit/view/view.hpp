// A rectangle of the window that draws itself and answers the mouse.
#pragma once

#include <cstdint>
#include <utility>

#include "platform/input.hpp"
#include "toolkit/view/base_object.hpp"
#include "toolkit/view/bitmap.hpp"
#include "toolkit/view/damage.hpp"
#include "toolkit/view/draw_context.hpp"
#include "toolkit/view/geometry.hpp"

namespace zum {

/// What a press came to.
enum class MouseResult : std::uint8_t {
  handled = 1,     // moves and the release follow
  notHandled = 2,  // the next view is asked
  done = 3,        // nothing follows
};

/// [main]
class CView : public CBaseObject {
 public:
  explicit CView(const CRect& rect) : viewSize(rect), mouseArea(rect) {}

  const CRect& getViewSize() const { return viewSize; }
  void setViewSize(const CRect& rect) { viewSize = rect; }
  const CRect& getMouseableArea() const { return mouseArea; }
  void setMouseableArea(const CRect& rect) { mouseArea = rect; }

  /// To be drawn in the frame's next idle step.
  virtual void setDirty(bool state) { dirty = state; }
  virtual bool isDirty() const { return dirty; }
  /// Where it draws, which may be more than its rectangle.
  virtual CRect drawnArea() const { return viewSize; }
  /// Every tick: one look at each bound variable.
  virtual void idleStep(int /*flag*/) {}
  /// Adds what is dirty, and calls it clean.
  virtual void gatherDamage(Damage& damage);
  virtual void setVisible(bool state) { visible = state; }
  bool isVisible() const { return visible; }
  void setMouseEnabled(bool state) { mouseEnabled = state; }
  bool getMouseEnabled() const { return mouseEnabled; }
  /// Drawn whole behind everything else; null for none.
  void setBackground(Held<CBitmap> bitmap) { background = std::move(bitmap); }
  CBitmap* getBackground() const { return background.get(); }
  /// Pictures leave out their key colour.
  void setTransparency(bool state) { transparent = state; }
  bool getTransparency() const { return transparent; }

  virtual void draw(CDrawContext& context);
  /// The part inside `area`.
  virtual void drawRect(CDrawContext& context, const CRect& area) { drawBackground(context, area); }

  virtual MouseResult onMouseDown(CPoint& /*where*/, int /*buttons*/) {
    return MouseResult::notHandled;
  }
  virtual MouseResult onMouseUp(CPoint& /*where*/, int /*buttons*/) {
    return MouseResult::notHandled;
  }
  virtual MouseResult onMouseMoved(CPoint& /*where*/, int /*buttons*/) {
    return MouseResult::notHandled;
  }
  virtual void onMouseEntered(CPoint& /*where*/, int /*buttons*/) {}
  virtual void onMouseExited(CPoint& /*where*/, int /*buttons*/) {}
  /// Up is above 0. True when it was of use.
  virtual bool onWheel(CPoint& /*where*/, float /*distance*/, int /*buttons*/) { return false; }
  virtual bool hitTest(CPoint where, int /*buttons*/) const {
    return visible && mouseEnabled && mouseArea.contains(where);
  }
  // True for a key that was of use.
  virtual bool onKeyDown(const WindowKey& /*key*/) { return false; }
  virtual bool onKeyUp(const WindowKey& /*key*/) { return false; }

 protected:
  ~CView() override = default;
  void drawBackground(CDrawContext& context, const CRect& area) const;

 private:
  CRect viewSize;
  CRect mouseArea;
  Held<CBitmap> background;
  bool dirty = false;
  bool visible = true;
  bool mouseEnabled = true;
  bool transparent = false;
};

}  // namespace zum
