// The filter and the vowel page, in the middle of the upper part.
#include "resources/ground.hpp"
#include "resources/lettering.hpp"
#include "resources/scene.hpp"
#include "resources/shapes.hpp"

namespace zum::pictures {
namespace {

// Ends of the range, beside the gap of the big ring.
void bigEnds(cairo_t* cr, const KnobPlace& place, const char* low, const char* high,
             const Type& type) {
  constexpr double kSide = 20.0;
  const int foot = static_cast<int>(place.y) + 48;
  text(cr, place.x - kSide, foot, Align::centre, low, type, kLettering);
  text(cr, place.x + kSide, foot, Align::centre, high, type, kLettering);
}

void bigKnob(cairo_t* cr, const KnobPlace& place) {
  bigWell(cr, place);
  knobTicks(cr, place);
  knobSeat(cr, place);
}

// A choice of a vowel, with its name on the outer side, tied to the ring.
void vowelPlace(cairo_t* cr, const Rect& rect, const char* name, double towards) {
  const double x = rect.x + rect.w / 2.0;
  text(cr, x, rect.y - 6, Align::centre, name, kLabelType, kPaper);
  const Point wire[] = {
      {x, rect.y + rect.h + 2.0}, {x, rect.y + rect.h + 16.0}, {towards, rect.y + rect.h + 28.0}};
  polyline(cr, wire, 1.0, kRed);
  sunkenGlass(cr, rect);
}

}  // namespace

void drawFilterPage(cairo_t* cr) {
  bigKnob(cr, kCutoff);
  text(cr, kCutoff.x, 116, Align::centre, "CUTOFF", {10.0, true, 2.0}, kPaper);
  bigEnds(cr, kCutoff, "23 Hz", "15 kHz", kTinyType);
  // a low-pass with its peak, as the mark of this page
  constexpr Point curve[] = {{220.0, 97.0}, {232.0, 97.0},  {243.0, 96.0},
                             {252.0, 91.0}, {257.0, 88.5},  {261.5, 92.0},
                             {267.0, 99.0}, {275.0, 102.5}, {284.0, 104.0}};
  curveThrough(cr, curve, 1.6, kRed);
}

void drawVowelPage(cairo_t* cr) {
  vowelPlace(cr, kVowelA, "A", kMorph.x - 46.0);
  vowelPlace(cr, kVowelB, "B", kMorph.x + 46.0);
  bigKnob(cr, kMorph);
  text(cr, kMorph.x, 116, Align::centre, "MORPH", {10.0, true, 2.0}, kPaper);
  bigEnds(cr, kMorph, "A", "B", kLabelType);
  // two formants
  constexpr Point curve[] = {{220.0, 103.5}, {230.0, 101.5}, {236.0, 93.0},  {240.0, 88.5},
                             {244.0, 93.0},  {249.0, 100.5}, {254.0, 102.0}, {260.0, 99.5},
                             {264.0, 94.5},  {267.5, 92.0},  {271.0, 94.5},  {276.0, 101.5},
                             {286.0, 104.0}};
  curveThrough(cr, curve, 1.6, kRed);
}

}  // namespace zum::pictures
