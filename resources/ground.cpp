#include "resources/ground.hpp"

#include <algorithm>
#include <cmath>
#include <vector>

#include "resources/image.hpp"
#include "resources/lettering.hpp"
#include "resources/shapes.hpp"

namespace zum::pictures {
namespace {

constexpr int kStreak = 44;            // length, logical pixels
constexpr double kStreakDepth = 11.0;  // of 255
constexpr double kGrain = 1.2;
constexpr Color kTop = rgb(76, 71, 68);
constexpr Color kBottom = rgb(46, 42, 40);

// -1 to 1, from two numbers.
double noise(int x, int y) {
  auto n =
      static_cast<std::uint32_t>(x) * 0x9E3779B1U ^ static_cast<std::uint32_t>(y) * 0x85EBCA6BU;
  n = (n ^ n >> 15U) * 0x2C1B3C6DU;
  n = (n ^ n >> 12U) * 0x297A2D39U;
  n ^= n >> 15U;
  return static_cast<double>(n & 0xFFFFU) / 32767.5 - 1.0;
}

/// Pixels of the screen, counted from where the ground begins, which is at left, top of the
/// picture.
struct Area {
  int x, y, w, h;
  int left, top;
};

Area clippedArea(cairo_t* cr) {
  constexpr double kSlack = 1e-3;
  double left = 0.0;
  double top = 0.0;
  cairo_user_to_device(cr, &left, &top);
  const int x = static_cast<int>(std::lround(left));
  const int y = static_cast<int>(std::lround(top));
  cairo_save(cr);
  cairo_identity_matrix(cr);
  double right = 0.0;
  double bottom = 0.0;
  cairo_clip_extents(cr, &left, &top, &right, &bottom);
  cairo_restore(cr);
  const int fromX = static_cast<int>(std::floor(left + kSlack));
  const int fromY = static_cast<int>(std::floor(top + kSlack));
  const int toX = static_cast<int>(std::ceil(right - kSlack));
  const int toY = static_cast<int>(std::ceil(bottom - kSlack));
  return {fromX - x, fromY - y, toX - fromX, toY - fromY, x, y};
}

std::uint32_t channel(double value) {
  return static_cast<std::uint32_t>(std::clamp(value + 0.5, 0.0, 255.0));
}

}  // namespace

// A screen with finer pixels shows finer streaks, as long and as deep as the others.
void brushedGround(cairo_t* cr, const Rect& all) {
  const Area area = clippedArea(cr);
  if (area.w <= 0 || area.h <= 0) return;
  const double factor = factorOf(cr);
  const double width = all.w * factor;
  const double height = all.h * factor;
  const int streak = static_cast<int>(std::lround(kStreak * factor));
  const double depth = kStreakDepth * std::sqrt(factor) / streak;
  const int below = static_cast<int>(std::lround(height));
  std::vector<double> before(static_cast<std::size_t>(streak));  // the streak up to a pixel
  const Image image(area.w, area.h);
  for (int i = 0; i < area.h; ++i) {
    std::uint32_t* const row = image.row(i);
    const int y = area.y + i;
    const Color tone = kTop.towards(kBottom, y / height);
    double sum = 0.0;
    for (int j = 0; j < streak; ++j) {
      before[static_cast<std::size_t>(j)] = noise(area.x - streak + j, y);
      sum += before[static_cast<std::size_t>(j)];
    }
    for (int j = 0, oldest = 0; j < area.w; ++j, oldest = oldest + 1 < streak ? oldest + 1 : 0) {
      const int x = area.x + j;
      const double fresh = noise(x, y);
      double& old = before[static_cast<std::size_t>(oldest)];
      sum += fresh - old;
      old = fresh;
      const double side = std::abs(2.0 * x / width - 1.0);
      const double light = 1.0 - 0.22 * side * side;
      const double grain = sum * depth + noise(x, y + below) * kGrain;
      row[j] = channel(tone.r * 255.0 * light + grain) << 16U |
               channel(tone.g * 255.0 * light + grain) << 8U |
               channel(tone.b * 255.0 * light + grain);
    }
  }
  image.touched();
  cairo_save(cr);
  cairo_identity_matrix(cr);
  cairo_set_source_surface(cr, image.picture(), area.x + area.left, area.y + area.top);
  cairo_paint(cr);
  cairo_restore(cr);
}

void plate(cairo_t* cr, const Rect& rect) {
  outlineRound(cr, rect.inset(-1), 6.0, kBlack.withAlpha(0.55), kBlack.withAlpha(0.75));
  fillRound(cr, rect, 5.0, kBlack.withAlpha(0.16), kBlack.withAlpha(0.34));
  outlineRound(cr, rect, 5.0, kHighlight.withAlpha(0.17), kHighlight.withAlpha(0.03));
}

void screw(cairo_t* cr, double x, double y, double turn) {
  disc(cr, x, y + 0.6, 5.2, kBlack.withAlpha(0.6));
  ball(cr, x, y, 4.6, rgb(112, 105, 101), rgb(38, 35, 34));
  const double dx = 3.0 * std::cos(turn);
  const double dy = 3.0 * std::sin(turn);
  line(cr, x - dx, y - dy, x + dx, y + dy, 1.4, rgb(16, 14, 14));
  line(cr, x - dx + 0.5, y - dy + 1.0, x + dx + 0.5, y + dy + 1.0, 0.5, kHighlight.withAlpha(0.2));
}

void knobSeat(cairo_t* cr, const KnobPlace& place) {
  const auto& [x, y, radius, width, cap] = place;
  glow(cr, x, y + 1.5, radius + width, kBlack.withAlpha(0.75));
  disc(cr, x, y + cap * 0.08, cap + 1.2, kBlack.withAlpha(0.6));
  knobArc(cr, x, y + 0.8, radius, -0.012, 1.012, width + 2.2, kHighlight.withAlpha(0.10));
  knobArc(cr, x, y, radius, -0.012, 1.012, width + 1.6, kGroove);
  knobArc(cr, x, y, radius, -0.004, 1.004, width - 0.6, kDeepRed.withAlpha(0.22));
}

void knobTicks(cairo_t* cr, const KnobPlace& place) {
  const double inner = place.ringRadius + place.ringWidth / 2.0 + 2.5;
  for (int i = 0; i <= 10; ++i) {
    const double angle = knobAngle(i / 10.0);
    const bool strong = i % 5 == 0;
    const double outer = inner + (strong ? 4.0 : 2.5);
    line(cr, place.x + inner * std::cos(angle), place.y + inner * std::sin(angle),
         place.x + outer * std::cos(angle), place.y + outer * std::sin(angle), 1.0,
         strong ? kLettering : kFaint);
  }
}

void bigWell(cairo_t* cr, const KnobPlace& place) {
  constexpr double kRadius = 58.0;
  disc(cr, place.x, place.y + 1.0, kRadius + 1.2, kHighlight.withAlpha(0.13));
  disc(cr, place.x, place.y, kRadius + 0.8, rgb(10, 8, 8));
  disc(cr, place.x, place.y, kRadius, rgb(27, 24, 23));
  disc(cr, place.x, place.y, kRadius - 4.0, rgb(31, 28, 27));
}

void knobLabel(cairo_t* cr, const KnobPlace& place, const std::string& name, const std::string& low,
               const std::string& high) {
  constexpr Color kEnds = kLettering.towards(kPaper, 0.5);  // thin strokes on the bright upper part
  const double outer = place.ringRadius + place.ringWidth / 2.0;
  const int top = static_cast<int>(place.y - outer);
  text(cr, place.x, top - 9, Align::centre, name, kLabelType, kPaper);
  const double side = outer * 0.9 + 4.0;
  const int foot = static_cast<int>(place.y + outer * 0.71 + 13.0);
  text(cr, place.x - side, foot, Align::centre, low, kTinyType, kEnds);
  text(cr, place.x + side, foot, Align::centre, high, kTinyType, kEnds);
}

double logoWidth(double height) { return height * 3.3; }

void logo(cairo_t* cr, double x, double y, double height) {
  // In units of the height; the middle stroke of the M is the peak of a filter.
  constexpr Point kZ[] = {{0.0, 0.0}, {0.85, 0.0}, {0.0, 1.0}, {0.85, 1.0}};
  constexpr Point kM[] = {{2.45, 1.0}, {2.45, 0.0}, {2.875, 0.62}, {3.3, 0.0}, {3.3, 1.0}};
  cairo_save(cr);
  cairo_translate(cr, x, y);
  cairo_scale(cr, height, height);
  const auto letters = [&](double width, const Color& color) {
    polyline(cr, kZ, width, color);
    polyline(cr, kM, width, color);
    cairo_move_to(cr, 1.25, 0.0);
    cairo_line_to(cr, 1.25, 0.58);
    cairo_arc_negative(cr, 1.65, 0.58, 0.4, 3.14159265, 0.0);
    cairo_line_to(cr, 2.05, 0.0);
    cairo_stroke(cr);
  };
  cairo_translate(cr, 0.0, 0.05);
  letters(0.24, kBlack.withAlpha(0.7));
  cairo_translate(cr, 0.0, -0.05);
  letters(0.19, kDeepRed.towards(kRed, 0.7));
  cairo_translate(cr, 0.0, -0.035);
  letters(0.055, kRose.withAlpha(0.85));
  cairo_restore(cr);
}

}  // namespace zum::pictures
