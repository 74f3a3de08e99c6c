// Controls of the transport strip that the toolkit does not have. Pictures and variables outlive
// them.
#pragma once

#include <string>

#include "toolkit/button.hpp"
#include "toolkit/display.hpp"

namespace zum {

/// [main] A line of text over what the background shows, which tells of a click.
class TextButton final : public KvButton {
 public:
  /// `textSize` in pixels.
  TextButton(const CRect& rect, CControlListener* told, int buttonTag, KvFrame& owner,
             int textSize);

  void setText(std::string line, CColor color);
  const std::string& text() const { return shown; }
  /// The begin of a line that is too long is to be seen.
  void draw(CDrawContext& context) override;

 private:
  ~TextButton() override = default;

  int size;
  std::string shown;
};

/// [main] Quarter notes per minute, dragged or by the wheel: a notch is one, with Shift a tenth.
class TempoView final : public KvDisplay {
 public:
  TempoView(const CRect& rect, CControlListener* told, int displayTag, KvFrame& owner,
            const float* variable);

  bool onWheel(CPoint& where, float distance, int buttons) override;

 private:
  ~TempoView() override = default;

  const float* tempo;
};

/// [main] A row of segments: so many of them are lit, and above them the `top` one, counted from 1.
class LevelView final : public KvControl {
 public:
  /// `litSegments` shows all of them.
  LevelView(const CRect& rect, CControlListener* told, int viewTag, KvFrame& owner,
            const CBitmap* litSegments, const float* segments, const float* top);

  void draw(CDrawContext& context) override;
  void idleStep(int flag) override;

 private:
  ~LevelView() override = default;

  const CBitmap* lit;
  const float* wantedLevel;
  const float* wantedHighest;
  int drawnLevel = 0;
  int drawnHighest = 0;
};

}  // namespace zum
