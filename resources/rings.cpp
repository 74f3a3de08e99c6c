#include "resources/rings.hpp"

#include <algorithm>
#include <cstdint>

#include "resources/image.hpp"
#include "resources/row_of.hpp"
#include "resources/shapes.hpp"

namespace zum::pictures {
namespace {

struct RingRow {
  int id;
  int width, height;
  int x, y;  // of the picture in the window, for one of its places
  KnobPlace place;
};
// clang-format off
constexpr RingRow kRings[] = {
  {1009, 96, 82, 205, 136, kCutoff},
  {1029, 45, 38,  67, 398, kMix},  // the master's has the same middle
  {1043, 45, 38,  67, 156, kOverdrive},
  {1044, 59, 59, 393, 153, kResonance},
  {1048, 33, 33,  49, 323, kFirstSmall},  // and eight more
  {1057, 96, 81, 205, 137, kMorph},
};
// clang-format on

constexpr std::uint32_t kKey = 0xFFFFFFU;  // is not drawn
constexpr std::uint32_t kThinnest = 28;    // coverage below which a pixel is left out, of 255
constexpr double kLastFrame = 127.0;

void arc(cairo_t* cr, const KnobPlace& place, double position) {
  const auto& [x, y, radius, width, cap] = place;
  knobArc(cr, x, y, radius, 0.0, position, width, kRed.towards(kRose, 0.1));
  knobArc(cr, x, y, radius + width * 0.22, 0.0, position, width * 0.3, kRose.withAlpha(0.55));
  const double head = std::min(position, 0.22 * width / radius);  // about as long as wide
  knobArc(cr, x, y, radius, position - head, position, width, kRose.towards(kPaper, 0.45));
}

// What the arc covers in part is mixed with the groove below it, since the key is all or nothing.
std::uint32_t keyed(std::uint32_t pixel) {
  const std::uint32_t alpha = pixel >> 24U;
  if (alpha < kThinnest) return kKey;
  constexpr double kGround[] = {kGroove.r * 255.0, kGroove.g * 255.0, kGroove.b * 255.0};
  std::uint32_t mixed = 0;
  for (unsigned i = 0; i < 3; ++i) {
    const std::uint32_t own = pixel >> (16U - 8U * i) & 0xFFU;
    const auto under = static_cast<std::uint32_t>(kGround[i] * (255 - alpha) / 255.0);
    mixed = mixed << 8U | std::min(own + under, 254U);
  }
  return mixed;
}

}  // namespace

void drawRing(cairo_t* cr, int id, int frame) {
  const RingRow& row = rowOf(kRings, id);
  const Image lit(row.width, row.height, true);
  if (frame > 0) {
    cairo_translate(lit.context(), -row.x, -row.y);
    arc(lit.context(), row.place, frame / kLastFrame);
  }
  const Image out(row.width, row.height);
  for (int y = 0; y < row.height; ++y) {
    const std::uint32_t* const from = lit.row(y);
    std::uint32_t* const to = out.row(y);
    for (int x = 0; x < row.width; ++x) to[x] = keyed(from[x]);
  }
  out.touched();
  cairo_set_source_surface(cr, out.picture(), 0.0, 0.0);
  cairo_paint(cr);
}

}  // namespace zum::pictures
