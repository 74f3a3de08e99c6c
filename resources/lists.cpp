#include "resources/lists.hpp"

#include <cstddef>
#include <span>

#include "core/value_names.hpp"
#include "resources/lettering.hpp"
#include "resources/shapes.hpp"

namespace zum::pictures {
namespace {

constexpr int kRow = 17;
constexpr int kTypeWidth = 111;
constexpr int kOrderWidth = 40;
constexpr int kMargin = 1;  // above the first row of the open list of types
constexpr int kTypeMiddle = 12;

constexpr std::size_t kMostCorners = 8;

// Response curves in a box of 12 x 8 pixels: x, and y from the bottom.
struct TypeSign {
  std::size_t corners;
  Point curve[kMostCorners];
};
// clang-format off
constexpr TypeSign kTypeSigns[] = {
  {4, {{0,0}, {5,6}, {7,7}, {12,7}}},
  {4, {{0,0}, {4,8}, {7,6.5}, {12,6.5}}},
  {5, {{0,2}, {5,6}, {6,7}, {7,6}, {12,2}}},
  {6, {{0,0}, {4,1}, {5.5,8}, {6.5,8}, {8,1}, {12,0}}},
  {4, {{0,7}, {5,7}, {7,6}, {12,0}}},
  {4, {{0,6.5}, {5,6.5}, {8,8}, {12,0}}},
  {8, {{0,0}, {1.5,8}, {3,1}, {4.5,8}, {6,1}, {7.5,8}, {9,1}, {10.5,8}}},
  {5, {{0,7}, {4,6}, {6,0}, {8,6}, {12,7}}},
  {8, {{0,1}, {3,1}, {3,4}, {5,4}, {5,8}, {8,8}, {8,3}, {12,3}}},
  {8, {{0,8}, {4,8}, {4,5}, {7,5}, {7,2}, {10,2}, {10,0}, {12,0}}},
};
// clang-format on

void curveSign(cairo_t* cr, const TypeSign& row, int x, int middle, const Color& color) {
  Point points[kMostCorners];
  for (std::size_t i = 0; i < row.corners; ++i) {
    points[i] = {x + row.curve[i].x, middle + 4.0 - row.curve[i].y};
  }
  polyline(cr, std::span(points).first(row.corners), 1.2, color);
}

void rowGround(cairo_t* cr, const Rect& rect) {
  fill(cr, rect, rgb(10, 8, 8));
  fillRound(cr, rect, 2.0, kDeepRed.towards(kBlack, 0.25), kDeepRed.towards(kBlack, 0.62));
  outlineRound(cr, rect, 2.0, kRed.withAlpha(0.75), kDeepRed);
}

void typeWords(cairo_t* cr, int row, int top, const Color& sign, const Color& name) {
  curveSign(cr, kTypeSigns[row], kTypeMiddle - 4, top + kRow / 2, sign);
  text(cr, 28.0, top + 12, Align::left, names::kTypes[static_cast<std::size_t>(row)],
       {8.0, true, 0.0}, name);
}

// An arrow for each way that the steps are walked; dice for chance.
void orderSign(cairo_t* cr, int row, double y, const Color& color) {
  const bool right = row == 0 || row == 2 || row == 3;
  const bool left = row == 1 || row == 2 || row == 3;
  if (row == 4) {
    constexpr Point kDots[] = {{4.5, -2.0}, {9.5, -3.0}, {7.0, 0.5}, {4.5, 3.0}, {9.5, 2.5}};
    for (const Point& dot : kDots) disc(cr, dot.x, y + dot.y, 0.9, color);
    return;
  }
  line(cr, 4.5, y, 9.5, y, 1.0, color);
  if (right) triangle(cr, 11.5, y, 8.0, y - 2.5, 8.0, y + 2.5, color);
  if (left) triangle(cr, 2.5, y, 6.0, y - 2.5, 6.0, y + 2.5, color);
  if (row == 2) vertical(cr, 2, static_cast<int>(y) - 3, 7, color);  // where it starts
  if (row == 3) vertical(cr, 11, static_cast<int>(y) - 3, 7, color);
}

void orderWords(cairo_t* cr, int row, int top, const Color& sign, const Color& name) {
  orderSign(cr, row, top + 8.5, sign);
  text(cr, 14.0, top + 11, Align::left, names::kOrders[static_cast<std::size_t>(row)],
       {7.0, true, 0.0}, name);
}

void listGround(cairo_t* cr, const Rect& rect) {
  fill(cr, rect, rgb(26, 23, 22));
  outlineRound(cr, rect, 0.5, rgb(96, 88, 84), rgb(66, 60, 57));
}

}  // namespace

void drawTypeRow(cairo_t* cr, int /*id*/, int frame) {
  rowGround(cr, {0, 0, kTypeWidth, kRow});
  typeWords(cr, frame, 0, kRose, kPaper);
}

void drawTypeList(cairo_t* cr, int /*id*/, int /*frame*/) {
  const int count = static_cast<int>(names::kTypes.size());
  listGround(cr, {0, 0, kTypeWidth, count * kRow + 2 * kMargin});
  for (int i = 0; i < count; ++i) typeWords(cr, i, kMargin + i * kRow, kFaint, kLettering);
}

void drawOrderRow(cairo_t* cr, int /*id*/, int frame) {
  rowGround(cr, {0, 0, kOrderWidth, kRow});
  orderWords(cr, frame, 0, kRose, kPaper);
}

void drawOrderList(cairo_t* cr, int /*id*/, int /*frame*/) {
  const int count = static_cast<int>(names::kOrders.size());
  listGround(cr, {0, 0, kOrderWidth, count * kRow});
  for (int i = 0; i < count; ++i) orderWords(cr, i, i * kRow, kFaint, kLettering);
}

}  // namespace zum::pictures
