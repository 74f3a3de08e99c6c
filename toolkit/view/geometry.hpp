// Points, rectangles and colours of the window, as plain values. Whole pixels; y runs downwards.
#pragma once

#include <algorithm>
#include <cstdint>

namespace zum {

struct CPoint {
  int x = 0;
  int y = 0;
  bool operator==(const CPoint&) const = default;
};

/// Right and bottom edges are the first pixels outside.
struct CRect {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;

  constexpr int width() const { return right - left; }
  constexpr int height() const { return bottom - top; }
  constexpr bool isEmpty() const { return right <= left || bottom <= top; }
  constexpr CPoint topLeft() const { return {left, top}; }
  constexpr bool contains(CPoint point) const {
    return point.x >= left && point.x < right && point.y >= top && point.y < bottom;
  }
  constexpr bool intersects(const CRect& other) const { return !meet(other).isEmpty(); }
  /// What both cover; empty when they do not touch.
  constexpr CRect meet(const CRect& other) const {
    return {std::max(left, other.left), std::max(top, other.top), std::min(right, other.right),
            std::min(bottom, other.bottom)};
  }
  /// The smallest one round both; an empty one does not count.
  constexpr CRect join(const CRect& other) const {
    if (isEmpty()) return other;
    if (other.isEmpty()) return *this;
    return {std::min(left, other.left), std::min(top, other.top), std::max(right, other.right),
            std::max(bottom, other.bottom)};
  }
  constexpr CRect movedBy(int dx, int dy) const {
    return {left + dx, top + dy, right + dx, bottom + dy};
  }
  /// Wider by `border` on every side.
  constexpr CRect grownBy(int border) const {
    return {left - border, top - border, right + border, bottom + border};
  }
  bool operator==(const CRect&) const = default;
};

struct CColor {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  std::uint8_t alpha = 255;
  bool operator==(const CColor&) const = default;
};

inline constexpr CColor kTransparentColor{255, 255, 255, 0};
inline constexpr CColor kWhiteColor{255, 255, 255, 255};
inline constexpr CColor kBlackColor{0, 0, 0, 255};
inline constexpr CColor kGreyColor{127, 127, 127, 255};
inline constexpr CColor kRedColor{255, 0, 0, 255};
inline constexpr CColor kGreenColor{0, 255, 0, 255};
inline constexpr CColor kBlueColor{0, 0, 255, 255};

}  // namespace zum
