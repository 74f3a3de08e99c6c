// Which rows of a list that is too long are seen, and the bar beside it.
#pragma once

#include <algorithm>
#include <cmath>

#include "toolkit/view/draw_context.hpp"

namespace zum {

/// [main] Lies inside of an open list; without use while all rows fit.
class MenuScroll {
 public:
  static constexpr int kWidth = 11;  // pixels

  MenuScroll() = default;
  /// 0 at the top, 1 at the bottom.
  explicit MenuScroll(float start) : position(start) {}
  float getPosition() const { return position; }

  void setRows(int all, int seen) {
    hidden = std::max(all - seen, 0);
    visibleShare = all > 0 ? static_cast<float>(seen) / static_cast<float>(all) : 1.0F;
    position = std::min(position, hidden > 0 ? 1.0F : 0.0F);
  }
  bool isNeeded() const { return hidden > 0; }
  int firstRow() const {
    return static_cast<int>(std::lround(position * static_cast<float>(hidden)));
  }
  void moveRows(int rows) {
    if (hidden > 0) moveTo(position + static_cast<float>(rows) / static_cast<float>(hidden));
  }
  void show(int row, int seen) {
    if (row < firstRow()) moveRows(row - firstRow());
    if (row >= firstRow() + seen) moveRows(row - firstRow() - seen + 1);
  }

  void setBar(const CRect& rect) { bar = rect; }
  bool isOn(CPoint where) const { return isNeeded() && bar.contains(where); }
  /// The middle of the thumb follows the pointer.
  void drag(CPoint where) {
    const float thumb = static_cast<float>(thumbHeight());
    const float way = static_cast<float>(bar.height()) - thumb;
    moveTo(way > 0.0F ? (static_cast<float>(where.y - bar.top) - thumb / 2.0F) / way : 0.0F);
  }
  void draw(CDrawContext& context, CColor back, CColor front) const {
    if (!isNeeded()) return;
    context.setFillColor(back);
    context.drawRect(bar, DrawStyle::filled);
    const int top =
        bar.top + static_cast<int>(position * static_cast<float>(bar.height() - thumbHeight()));
    context.setFillColor(front);
    context.drawRect({bar.left + 2, top, bar.right - 1, top + thumbHeight()}, DrawStyle::filled);
  }

  bool dragged = false;

 private:
  void moveTo(float wanted) { position = wanted > 0.0F ? std::min(wanted, 1.0F) : 0.0F; }
  int thumbHeight() const {
    constexpr int kLeast = 12;
    return std::max(static_cast<int>(visibleShare * static_cast<float>(bar.height())), kLeast);
  }

  CRect bar;
  int hidden = 0;  // rows
  float visibleShare = 1.0F;
  float position = 0.0F;
};

}  // namespace zum
