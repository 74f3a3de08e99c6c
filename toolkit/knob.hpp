// A rotary knob or a slider, drawn from a film strip. Dragging upwards, or to the right on a
// horizontal one, raises it; Shift makes it twenty times finer.
#pragma once

#include "toolkit/base_control.hpp"
#include "toolkit/bound_value.hpp"
#include "toolkit/film_strip.hpp"
#include "toolkit/value_drag.hpp"

namespace zum {

/// How a picture that moves within its view lies.
enum class OverlayStyle : std::uint8_t { none = 0, horizontal = 1, vertical = 2 };

/// [main]
class KvKnob : public KvControl {
 public:
  // jumpMode
  static constexpr int kDrags = 0;
  static constexpr int kJumps = 1;         // a press takes the value from the pointer's place
  static constexpr int kMovesPicture = 2;  // the same, and the picture moves instead of changing

  /// A sensitivity of 1 is 100 pixels for the whole range.
  KvKnob(const CRect& rect, CControlListener* controlListener, int controlTag, KvFrame& owner,
         CBitmap* strip, int frameHeight, int frameCount, float knobSensitivity);

  /// Shows the variable at once, and follows it unless it is dragged.
  void bind(const float* variable, float max, float min);
  /// Pixels by which the mouse may miss on every side.
  void setHandleBorder(int pixels);

  void draw(CDrawContext& context) override;
  MouseResult onMouseDown(CPoint& where, int buttons) override;
  MouseResult onMouseMoved(CPoint& where, int buttons) override;
  MouseResult onMouseUp(CPoint& where, int buttons) override;
  bool onWheel(CPoint& where, float distance, int buttons) override;
  void idleStep(int flag) override;
  void setBounds(int left, int top, int right, int bottom) override;
  void setPopupPanel(KvViewContainer* panel) override { popupPanel = panel; }
  bool takesFocus() const override { return getMouseEnabled(); }
  /// Up and Down move it by `keyStep`, with Shift finer; Page keys further, Home and End to the
  /// ends, Delete to the default. Space opens its panel, Return asks for a value.
  bool onFocusKey(const WindowKey& key, bool repeats) override;
  CRect focusArea() const override { return ring.join(KvControl::focusArea()); }

  KvViewContainer* popupPanel = nullptr;
  CBitmap* underlayBitmap = nullptr;
  CBitmap* overlayBitmap = nullptr;
  OverlayStyle overlayStyle = OverlayStyle::none;
  int overlayMode = 0;                  // not 0: leaves out the key colour
  int overlayAlpha = 255;               // 0 to 255
  const float* overlayValue = nullptr;  // 0 to 1: where the overlay stands; null: with the knob
  float* pressFlag = nullptr;           // 1 while the knob is held
  float keyStep = kWheelStep;           // of the value; what counts names has wider ones
  CRect ring;                           // that lies round it; the mark of the focus goes outside
  int jumpMode = kDrags;
  bool springBack = false;  // to the middle on release; no wheel
  bool horizontal = false;
  bool noPaint = false;
  bool roundFrame = false;  // shares the range out evenly among the pictures

 protected:
  ~KvKnob() override = default;

 private:
  bool takesMouse(CPoint where) const { return getMouseableArea().contains(where) && isShown(); }
  void drawFallback(CDrawContext& context) const;
  void drawOverlay(CDrawContext& context) const;
  CRect movedPicture(const CBitmap& bitmap, float position) const;
  void follow();
  void jumpTo(CPoint where);
  bool stepByKey(float way);
  void storeFlag(float held) const;

  BoundValue boundValue;
  float overlayLast = 0.0F;
  FilmStrip strip;
  int handleBorder = 0;
  float sensitivity;
  ValueDrag drag;
};

}  // namespace zum
