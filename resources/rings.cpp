#include "resources/rings.hpp"

#include <algorithm>

#include "resources/row_of.hpp"
#include "resources/shapes.hpp"

namespace zum::pictures {
namespace {

struct RingRow {
  int id;
  int x, y;  // of the picture in the window, for one of its places
  KnobPlace place;
};
// clang-format off
constexpr RingRow kRings[] = {
  {1009, 205, 136, kCutoff},
  {1029, 67, 398, kMix},  // the master's has the same middle
  {1043, 67, 156, kOverdrive},
  {1044, 393, 153, kResonance},
  {1048, 49, 323, kFirstSmall},  // and eight more
  {1057, 205, 137, kMorph},
};
// clang-format on

constexpr double kLastFrame = 127.0;

void arc(cairo_t* cr, const KnobPlace& place, double position) {
  const auto& [x, y, radius, width, cap] = place;
  knobArc(cr, x, y, radius, 0.0, position, width, kRed.towards(kRose, 0.1));
  knobArc(cr, x, y, radius + width * 0.22, 0.0, position, width * 0.3, kRose.withAlpha(0.55));
  const double head = std::min(position, 0.22 * width / radius);  // about as long as wide
  knobArc(cr, x, y, radius, position - head, position, width, kRose.towards(kPaper, 0.45));
}

}  // namespace

void drawRing(cairo_t* cr, int id, int frame) {
  if (frame == 0) return;
  const RingRow& row = rowOf(kRings, id);
  cairo_save(cr);
  cairo_translate(cr, -row.x, -row.y);
  arc(cr, row.place, frame / kLastFrame);
  cairo_restore(cr);
}

}  // namespace zum::pictures
