// A picture, a number or a text that follows a variable; a number can be dragged.
#pragma once

#include <string>

#include "toolkit/base_control.hpp"
#include "toolkit/bound_value.hpp"
#include "toolkit/film_strip.hpp"
#include "toolkit/value_drag.hpp"

namespace zum {

class KvOptionMenu;

/// [main] The mouse is off until setMouseEnabled: rings lie over knobs.
class KvDisplay : public KvControl {
 public:
  /// A frame count of 0 is a display without pictures.
  KvDisplay(const CRect& rect, CControlListener* controlListener, int controlTag, KvFrame& owner,
            CBitmap* strip, int frameHeight, int frameCount);

  /// With `frameNumber` the variable is the number of the picture itself.
  void bind(const float* variable, float max, float min, bool frameNumber);
  /// In pixels.
  void setFont(const CFontDesc* textFont, int size, CColor color);
  void setUnit(std::string word) { unit = std::move(word); }
  /// In place of a number below `limit`.
  void setOffBelow(float limit, std::string word);
  /// What is written now.
  std::string text() const { return textOf(shownValue()); }

  void draw(CDrawContext& context) override;
  MouseResult onMouseDown(CPoint& where, int buttons) override;
  MouseResult onMouseMoved(CPoint& where, int buttons) override;
  MouseResult onMouseUp(CPoint& where, int buttons) override;
  bool onWheel(CPoint& where, float distance, int buttons) override;
  void idleStep(int flag) override;
  void setPopupPanel(KvViewContainer* panel) override { popupPanel = panel; }

  std::string (*formatter)(float) = nullptr;  // in place of the number format
  KvOptionMenu* linkedMenu = nullptr;         // whose current row is the text
  std::string caption;                        // ahead of everything
  std::string prefix;                         // of the number
  int decimalsWidth = 2;
  int decimals = 2;
  float sensitivity = 1.0F;  // of a drag, as a knob's
  TextAlign textAlign = TextAlign::centre;
  struct {
    int left = 0, top = 0, right = 0, bottom = 0;  // pixels
  } insets;                                        // of the text
  bool showNumber = false;
  bool horizontal = false;    // dragged to the right
  bool roundFrame = false;    // half a picture later
  bool noBackground = false;  // nothing behind a text without a picture
  bool intFormat = false;

 protected:
  ~KvDisplay() override = default;

 private:
  float shownValue() const;
  int shownFrame() const;
  std::string textOf(float value) const;
  bool look();
  bool isDraggable() const { return isShown() && showNumber && getMouseEnabled(); }

  FilmStrip strip;
  std::string unit;
  std::string offText;
  float offBelow = 0.0F;
  bool hasOff = false;
  BoundValue boundValue;
  bool intIndex = false;
  int fontSize = 0;
  KvViewContainer* popupPanel = nullptr;
  // As of the last tick: a part that is drawn later, for a neighbour, must not show something
  // newer.
  int drawnFrame = 0;
  float drawnValue = 0.0F;
  ValueDrag drag;
};

}  // namespace zum
