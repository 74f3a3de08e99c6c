// The step sequencer's pattern as bars that the mouse draws. Each change goes straight into the
// table and is heard in the next block.
#pragma once

#include <string>
#include <vector>

#include "state/table_xy.hpp"
#include "toolkit/base_control.hpp"

namespace zum {

/// [main]
class KvTableView final : public KvControl {
 public:
  using KvControl::KvControl;

  /// The table outlives the view; null for none.
  void setTable(KvTableXY* stepTable);
  /// The step under a place, as a fraction from the left edge of the bars.
  float xToStep(int x) const;
  /// 0 at the bottom of the bars, 1 at the top.
  float yToValue(int y) const;

  void draw(CDrawContext& context) override;
  /// Writes the value under the pointer. With Shift the stroke is a straight line from there; with
  /// Control it moves the value a tenth as far; with Alt the whole pattern slides instead.
  MouseResult onMouseDown(CPoint& where, int buttons) override;
  MouseResult onMouseMoved(CPoint& where, int buttons) override;
  MouseResult onMouseUp(CPoint& where, int buttons) override;
  bool onWheel(CPoint& where, float distance, int buttons) override;
  bool takesFocus() const override { return canEdit(); }
  /// Left and Right choose a step, and leave behind the last one; Up and Down move it.
  bool onFocusKey(const WindowKey& key, bool repeats) override;
  /// The step that keys move.
  int chosenStep() const;
  /// "3: 45 %", counted from 1.
  std::string stepText() const;
  void idleStep(int flag) override;
  void setPopupPanel(KvViewContainer* panel) override { menu = panel; }

  CColor barColor;
  CColor barShade;
  CColor gridColor = kGreyColor;
  CColor barHighlight;
  CColor cursorColor = kBlackColor;

 private:
  ~KvTableView() override = default;
  enum class Stroke : std::uint8_t { none, draws, slides };

  bool has(int flagBit) const { return (table->flags >> static_cast<unsigned>(flagBit) & 1U) != 0; }
  bool canEdit() const { return table != nullptr && table->size() > 0 && has(kEditable); }
  bool takesMouse(CPoint where) const;
  void moveStep(float value);
  int stepAt(int x) const;
  CRect bars() const { return getViewSize().grownBy(-1); }
  CRect barRect(int step) const;
  /// The first pixel of a step, or, for their number, the first one outside.
  int edgeOf(int step) const;
  /// Held inside of the table's ends, which come from a file.
  float inside(float value) const;
  int stepsApart() const;
  void drawGrid(CDrawContext& context) const;
  void drawCursor(CDrawContext& context, int playing) const;
  void write(int step, float value);
  void writeBetween(int fromStep, float fromValue, int toStep, float toValue);
  void keepSteps();
  void drawTo(int step, float value);
  void slide();
  void changed();

  // bits of the table's flags word
  static constexpr int kNoGap = 3;
  static constexpr int kLayout = 5;
  static constexpr int kOnOff = 11;
  static constexpr int kCentreLine = 14;
  static constexpr int kInteger = 15;
  static constexpr int kEditable = 17;
  static constexpr int kPlays = 18;
  static constexpr int kTells = 20;

  KvTableXY* table = nullptr;
  std::vector<float> scratchTable;  // all steps as they were when a slide or a line began
  int lastY = 0;
  int editColumn = 0;      // where the last write of the stroke was
  float editValue = 0.0F;  // and what it wrote
  int pressColumn = 0;
  float pressValue = 0.0F;
  float dragOffset = 0.0F;  // of all steps
  int keyColumn = 0;
  Stroke stroke = Stroke::none;
  bool drawLine = false;
  bool fineEdit = false;
  float playPosition = 0.0F;  // as drawn last
  bool geometryFlag = false;
  KvViewContainer* menu = nullptr;
};

}  // namespace zum
