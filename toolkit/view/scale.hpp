// From logical pixels, those of a window at factor 1, in which all views are placed, to pixels of
// the screen, and back.
#pragma once

#include <algorithm>
#include <cmath>

#include "toolkit/view/geometry.hpp"

namespace zum {

/// Edges are rounded one by one, so that what meets at factor 1 meets at any other.
class Scale {
 public:
  static constexpr double kLeast = 1.0;
  static constexpr double kMost = 3.0;

  constexpr Scale() = default;
  /// Held inside of the ends; what is no number is 1.
  explicit Scale(double wanted)
      : share(wanted >= kLeast ? std::min(wanted, kMost) : kLeast),
        line(static_cast<int>(std::lround(share))) {}

  double factor() const { return share; }
  bool isPlain() const { return share == 1.0; }
  /// Of a line that is one logical pixel thick, in pixels of the screen.
  int lineWidth() const { return line; }

  int rounded(int at) const { return floorOf(share * at + 0.5); }
  CPoint rounded(CPoint point) const { return {rounded(point.x), rounded(point.y)}; }
  CRect rounded(const CRect& rect) const {
    return {rounded(rect.left), rounded(rect.top), rounded(rect.right), rounded(rect.bottom)};
  }
  /// All pixels of the screen that a rectangle touches.
  CRect outward(const CRect& rect) const {
    return {floorOf(share * rect.left), floorOf(share * rect.top), ceilOf(share * rect.right),
            ceilOf(share * rect.bottom)};
  }
  /// The first pixel of a line through a logical one: all of it lies inside of what that touches.
  int lineStart(int at) const { return std::min(rounded(at), ceilOf(share * (at + 1)) - line); }

  /// The logical pixel that one of the screen lies in.
  CPoint logical(CPoint point) const { return {backFloor(point.x), backFloor(point.y)}; }
  /// Whatever touches one of these pixels of the screen meets it.
  CRect logical(const CRect& screen) const {
    return {backFloor(screen.left), backFloor(screen.top), backCeil(screen.right),
            backCeil(screen.bottom)};
  }

  bool operator==(const Scale& other) const { return share == other.share; }

 private:
  // So near to a whole pixel counts as there. The way back is the stricter one: it must miss
  // nothing that the way there lets in.
  static constexpr double kSlack = 1e-6;
  static constexpr double kBackSlack = kSlack / 4.0;

  static int floorOf(double at) { return static_cast<int>(std::floor(at + kSlack)); }
  static int ceilOf(double at) { return static_cast<int>(std::ceil(at - kSlack)); }
  int backFloor(int at) const { return static_cast<int>(std::floor(at / share + kBackSlack)); }
  int backCeil(int at) const { return static_cast<int>(std::ceil(at / share - kBackSlack)); }

  double share = 1.0;
  int line = 1;
};

}  // namespace zum
