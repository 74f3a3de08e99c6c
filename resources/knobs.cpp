#include "resources/knobs.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "core/value_names.hpp"
#include "resources/kept_drawing.hpp"
#include "resources/lettering.hpp"
#include "resources/picture_rows.hpp"
#include "resources/row_of.hpp"
#include "resources/shapes.hpp"

namespace zum::pictures {
namespace {

struct KnobRow {
  int id;
  KnobPlace place;
};
// clang-format off
constexpr KnobRow kKnobs[] = {
  {1008, kCutoff},  // and the vowel page, one pixel to the right
  {1011, kSecondSmall},
  {1012, kThirdSmall},
  {1013, kFirstSmall},
  {1014, kFourthSmall},
  {1022, kFirstSmall},
  {1023, kFourthSmall},
  {1024, kSecondSmall},
  {1025, kMaster},
  {1028, kMix},
  {1039, kOverdrive},
  {1042, kResonance},
  {1050, kThirdSmall},
  {1051, kFirstSmall},
};
// clang-format on

constexpr double kLastFrame = 127.0;
constexpr double kTurn = 2.0 * 3.14159265358979323846;

// Two bright sectors, as turned metal shows them; they stay where they are while the knob turns.
void sheen(cairo_t* cr, const Circle& edge) {
  const auto& [x, y, radius] = edge;
  constexpr int kSectors = 180;
  constexpr double kReach = 1.0;  // beyond the edge
  cairo_set_antialias(cr, CAIRO_ANTIALIAS_NONE);
  for (int i = 0; i < kSectors / 2; ++i) {
    const double angle = kTurn * i / kSectors;
    const double light = std::pow(std::abs(std::cos(angle - 0.7)), 6.0);
    if (light < 0.02) continue;
    for (const double side : {angle, angle + kTurn / 2.0}) {
      cairo_move_to(cr, x, y);
      cairo_arc(cr, x, y, radius + kReach, side, side + kTurn / kSectors);
      cairo_close_path(cr);
    }
    setColor(cr, kHighlight.withAlpha(0.15 * light));
    cairo_fill(cr);
  }
}

void body(cairo_t* cr, const Circle& edge) {
  setBall(cr, edge.x, edge.y, edge.radius, rgb(92, 86, 83), rgb(24, 21, 21));
  cairo_paint(cr);
}

void cap(cairo_t* cr, const Circle& edge) {
  setBall(cr, edge.x, edge.y, edge.radius, rgb(98, 91, 88), rgb(40, 36, 35));
  cairo_paint(cr);
}

// The grip on the edge turns with the knob. So many small strokes are half of what a frame costs:
// where it is drawn while the window waits, they are sampled coarsely, which black on black hides.
void grip(cairo_t* cr, double x, double y, double radius, double depth, double angle) {
  const int teeth = static_cast<int>(radius * 1.3);
  cairo_save(cr);
  if (factorOf(cr) > 1.0) cairo_set_antialias(cr, CAIRO_ANTIALIAS_FAST);
  for (int i = 0; i < teeth; ++i) {
    const double a = angle + kTurn * i / teeth;
    const double c = std::cos(a);
    const double s = std::sin(a);
    line(cr, x + (radius - depth) * c, y + (radius - depth) * s, x + (radius - 0.4) * c,
         y + (radius - 0.4) * s, 0.9, kBlack.withAlpha(0.55));
  }
  cairo_restore(cr);
}

void pointer(cairo_t* cr, double x, double y, double from, double to, double width, double angle) {
  const double c = std::cos(angle);
  const double s = std::sin(angle);
  line(cr, x + from * c, y + from * s, x + to * c, y + to * s, width + 1.4, kBlack.withAlpha(0.7));
  line(cr, x + from * c, y + from * s, x + to * c, y + to * s, width, kPaper);
}

void knob(cairo_t* cr, double x, double y, double radius, double position) {
  const double angle = knobAngle(position);
  const double top = radius * (radius > 12.0 ? 0.78 : 0.82);
  disc(cr, x, y, radius + 0.6, rgb(8, 6, 6));
  fillKept(cr, {x, y, radius}, body);
  if (radius > 12.0) grip(cr, x, y, radius, radius * 0.17, angle);
  disc(cr, x, y + 0.6, top + 0.8, rgb(9, 8, 8));
  fillKept(cr, {x, y, top}, cap);
  fillKept(cr, {x, y, top}, sheen);
  cairo_save(cr);
  cairo_rectangle(cr, x - radius, y - radius, 2.0 * radius, radius * 0.9);
  cairo_clip(cr);
  circle(cr, x, y, top - 0.5, 0.9, kHighlight.withAlpha(0.22));
  cairo_restore(cr);
  const double width = std::max(1.9, radius * 0.095);
  pointer(cr, x, y, radius * (radius > 12.0 ? 0.42 : 0.25), radius * 0.88, width, angle);
}

}  // namespace

void drawKnob(cairo_t* cr, int id, int frame) {
  const KnobPlace& place = rowOf(kKnobs, id).place;
  const Backdrop& corner = pictureRow(id)->backdrop;
  knob(cr, place.x - corner.x, place.y - corner.y, place.capRadius, frame / kLastFrame);
}

// The middle frame is an amount of zero; a bar grows from there to either side.
void drawAmountSlider(cairo_t* cr, int /*id*/, int frame) {
  constexpr Rect kGround{0, 0, 146, 13};
  constexpr Rect kTrack{0, 3, 146, 7};
  constexpr int kHandle = 9;
  constexpr int kMiddle = 73;
  constexpr int kLast = 74;
  fill(cr, kGround, kPanel);
  fillRound(cr, kTrack, 3.0, kBlack, rgb(22, 19, 19));
  outlineRound(cr, kTrack, 3.0, kBlack, kHighlight.withAlpha(0.14));
  const int left =
      static_cast<int>(std::lround((kGround.w - kHandle) * static_cast<double>(frame) / kLast));
  const int x = left + kHandle / 2;
  const Rect bar = x < kMiddle ? Rect{x, 5, kMiddle - x, 3} : Rect{kMiddle, 5, x - kMiddle, 3};
  if (bar.w > 0) fillRound(cr, bar, 0.0, kRose, kRed);
  vertical(cr, kMiddle - 1, 4, 5, kLettering.withAlpha(0.8));
  const Rect handle{left, 0, kHandle, kGround.h};
  fillRound(cr, handle, 2.0, rgb(10, 8, 8));
  fillRound(cr, handle.inset(1), 1.5, rgb(122, 114, 110), rgb(56, 51, 49));
  horizontal(cr, left + 2, 1, kHandle - 4, kHighlight.withAlpha(0.35));
  vertical(cr, x, 3, 7, frame * 2 == kLast ? kPaper : kRose);
}

void drawVowelSelector(cairo_t* cr, int /*id*/, int frame) {
  constexpr Rect kView{0, 0, 17, 17};
  fill(cr, kView, kGlass);
  const char* const vowel = names::kVowels[static_cast<std::size_t>(frame)];
  const bool accented = vowel[1] != '\0';  // takes room above the capital
  textIn(cr, accented ? kView.movedBy(0, 1) : kView, vowel, {12.0, true, 0.0}, kReadoutGreen);
}

}  // namespace zum::pictures
