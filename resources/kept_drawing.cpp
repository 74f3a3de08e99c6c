#include "resources/kept_drawing.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <vector>

#include "resources/image.hpp"

namespace zum::pictures {
namespace {

struct KeptDrawing {
  void (*draw)(cairo_t*, const Circle&);
  // pixels of the screen, within the picture
  double x, y, radius;
  Image image;
};

// What four knobs need that move at the same time: half a megabyte at factor 2.
constexpr std::size_t kMost = 12;

KeptDrawing made(cairo_t* cr, const Circle& circle, void (*draw)(cairo_t*, const Circle&), double x,
                 double y, double radius) {
  cairo_matrix_t place;
  cairo_get_matrix(cr, &place);
  const double left = std::floor(x - radius);
  const double top = std::floor(y - radius);
  // With alpha: without, cairo rounds its edges otherwise than those of a gradient.
  Image image(static_cast<int>(std::ceil(x + radius) - left),
              static_cast<int>(std::ceil(y + radius) - top), true);
  cairo_surface_set_device_offset(image.picture(), -left, -top);
  cairo_set_matrix(image.context(), &place);
  draw(image.context(), circle);
  return {draw, x, y, radius, std::move(image)};
}

}  // namespace

void fillKept(cairo_t* cr, const Circle& circle, void (*draw)(cairo_t*, const Circle&)) {
  static std::vector<KeptDrawing> all;  // the last one that was wanted last
  double x = circle.x;
  double y = circle.y;
  double radius = circle.radius;
  double none = 0.0;
  cairo_user_to_device(cr, &x, &y);
  cairo_user_to_device_distance(cr, &radius, &none);
  const auto found = std::find_if(all.begin(), all.end(), [&](const KeptDrawing& kept) {
    return kept.draw == draw && kept.x == x && kept.y == y && kept.radius == radius;
  });
  if (found != all.end()) {
    std::rotate(found, found + 1, all.end());
  } else {
    all.push_back(made(cr, circle, draw, x, y, radius));
    if (all.size() > kMost) all.erase(all.begin());
  }
  const KeptDrawing& kept = all.back();
  cairo_matrix_t place;
  cairo_get_matrix(cr, &place);
  cairo_identity_matrix(cr);
  cairo_set_source_surface(cr, kept.image.picture(), 0.0, 0.0);
  cairo_set_matrix(cr, &place);
  cairo_arc(cr, circle.x, circle.y, circle.radius, 0.0, 2.0 * std::numbers::pi);
  cairo_fill(cr);
}

}  // namespace zum::pictures
