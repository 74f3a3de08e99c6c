// Whether a pointer that left the row of an open sub-menu is on its way into that: the straight way
// there crosses other rows.
#pragma once

#include <optional>

#include "toolkit/view/geometry.hpp"

namespace zum {

/// [main]
class MenuAim {
 public:
  /// The pointer is on the row.
  void start(CPoint where) {
    from = where;
    gone = ticksLeft = 0;
  }
  /// It is on another one. True inside of the triangle from where it left to the near edge of the
  /// list, for as long as it comes closer.
  bool isOnWay(CPoint where, const CRect& list) {
    if (!from) return false;
    constexpr int kSlack = 4;  // pixels; a hand's first step may go straight down
    const int side = list.left > from->x ? 1 : -1;
    const int start = from->x - side * kSlack;
    const int width = side * ((side > 0 ? list.left : list.right) - start);
    const int way = side * (where.x - start);
    const int down = (where.y - from->y) * width;
    const bool isInside =
        way > 0 && down >= (list.top - from->y) * way && down <= (list.bottom - from->y) * way;
    if (!isInside || width <= 0) return false;
    if (way > gone) {
      gone = way;
      ticksLeft = kStandstill;
    }
    return ticksLeft > 0;
  }
  /// True once, when it has come no closer for a while.
  bool tick() {
    if (ticksLeft == 0) return false;
    return --ticksLeft == 0;
  }

 private:
  static constexpr int kStandstill = 10;  // ticks

  std::optional<CPoint> from;
  int gone = 0;  // pixels towards the list
  int ticksLeft = 0;
};

}  // namespace zum
