#include "resources/readouts.hpp"

#include <cstddef>

#include "core/value_names.hpp"
#include "resources/lettering.hpp"
#include "resources/shapes.hpp"

namespace zum::pictures {
namespace {

constexpr Rect kReadout{0, 0, 64, 19};
constexpr Type kReadoutType{11.0, false, 0.0};

void glass(cairo_t* cr, const Rect& rect) {
  fill(cr, rect, kBlack);
  outlineRound(cr, rect, 2.0, rgb(92, 84, 80), rgb(58, 52, 50));
  fillRound(cr, rect.inset(1), 1.5, rgb(8, 7, 7), rgb(19, 17, 16));
}

void word(cairo_t* cr, const char* name) {
  glass(cr, kReadout);
  textIn(cr, kReadout, name, kReadoutType, kReadoutGreen);
}

}  // namespace

void drawNumberGround(cairo_t* cr, int /*id*/, int /*frame*/) { glass(cr, kReadout); }

void drawNoteName(cairo_t* cr, int /*id*/, int frame) {
  word(cr, names::kNotes[static_cast<std::size_t>(frame)]);
}

void drawWaveName(cairo_t* cr, int /*id*/, int frame) {
  word(cr, names::kWaves[static_cast<std::size_t>(frame)]);
}

void drawStatusStrip(cairo_t* cr, int /*id*/, int frame) {
  constexpr Rect kStrip{0, 0, 138, 19};
  constexpr struct {
    const char* text;
    Color color;
  } kStates[] = {{"READY", kReadoutGreen.towards(kBlack, 0.15)},
                 {"MOVE A CONTROLLER", kReadoutGreen},
                 {"BYPASSED", kRose},
                 {"LOADING", kRose},
                 {"HOST IS OFFLINE", kRose}};
  glass(cr, kStrip);
  textIn(cr, kStrip, kStates[frame].text, kSmallType, kStates[frame].color);
}

void drawLamp(cairo_t* cr, int /*id*/, int frame) {
  constexpr double kMiddle = 7.5;
  const double light = frame / 31.0;
  disc(cr, kMiddle, kMiddle + 0.7, 6.0, kHighlight.withAlpha(0.14));
  disc(cr, kMiddle, kMiddle, 5.8, rgb(8, 6, 6));
  const Color off = kLfoTint.towards(kBlack, 0.8);
  ball(cr, kMiddle, kMiddle, 4.6, off.towards(kLfoTint.towards(kPaper, 0.65), light),
       off.towards(kLfoTint.towards(kBlack, 0.25), light));
  glow(cr, kMiddle, kMiddle, 7.4, kLfoTint.withAlpha(0.45 * light));
  disc(cr, kMiddle - 1.4, kMiddle - 1.8, 1.1, kHighlight.withAlpha(0.3));
}

}  // namespace zum::pictures
