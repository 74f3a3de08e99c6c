#include "resources/strip_drawing.hpp"

#include "resources/faces.hpp"
#include "resources/ground.hpp"
#include "resources/lettering.hpp"
#include "resources/shapes.hpp"
#include "resources/strip_places.hpp"

namespace zum::pictures {
namespace {

void caption(cairo_t* cr, int x, int foot, const char* words, Align align = Align::left) {
  text(cr, x, foot, align, words, kSmallType, kLettering);
}

Color segmentTint(int segment) {
  if (segment >= strip::kRedSegment) return kRed.towards(kRose, 0.35);
  if (segment >= strip::kAmberSegment) return kControllerTint;
  return kLfoTint;
}

void levelBar(cairo_t* cr, int x, int y, double light) {
  for (int i = 0; i < strip::kSegments; ++i) {
    const Rect rect{x + i * strip::kSegmentWidth, y, strip::kSegmentWidth - 1, strip::kLevelIn.h};
    const Color lit = segmentTint(i);
    const Color dark = lit.towards(kGlass, 0.82);
    fill(cr, rect, dark.towards(lit, light));
    horizontal(cr, rect.x, rect.y, rect.w, kHighlight.withAlpha(0.05 + 0.25 * light));
  }
}

/// A file that is to be opened.
void folderButton(cairo_t* cr, const Rect& rect) {
  face(cr, rect, Face::raised);
  const Color color = faceLettering(Face::raised);
  const int x = rect.x + 3;
  const int y = rect.y + 5;
  fill(cr, {x, y, 4, 1}, color);
  fill(cr, {x, y + 1, 8, 6}, color);
  fill(cr, {x + 1, y + 2, 6, 1}, kBlack.withAlpha(0.55));
}

void upperRow(cairo_t* cr) {
  for (const Rect& rect : {strip::kPlay, strip::kRecord, strip::kTap, strip::kInput})
    slot(cr, rect);
  sunkenGlass(cr, strip::kTempo);
  caption(cr, strip::kPlay.x, strip::kUpperLabels, "TRANSPORT");
  caption(cr, strip::kTempo.x, strip::kUpperLabels, "TEMPO");
  caption(cr, strip::kInput.x, strip::kUpperLabels, "INPUT");
  caption(cr, strip::kLevelIn.x, strip::kUpperLabels, "LEVEL");
  caption(cr, strip::kClipIn.x + strip::kClipIn.w, strip::kUpperLabels, "CLIP", Align::right);
  const struct {
    const Rect& bar;
    const Rect& lamp;
    const char* name;
  } sides[] = {{strip::kLevelIn, strip::kClipIn, "IN"}, {strip::kLevelOut, strip::kClipOut, "OUT"}};
  for (const auto& [bar, lamp, name] : sides) {
    text(cr, bar.x - 5, bar.y + 6, Align::right, name, kTinyType, kLettering.towards(kPaper, 0.5));
    sunkenGlass(cr, bar);
    levelBar(cr, bar.x, bar.y, 0.0);
  }
}

void lowerRow(cairo_t* cr) {
  caption(cr, strip::kLoopButton.x, strip::kLowerLabels, "LOOP");
  caption(cr, strip::kDevice.x, strip::kLowerLabels, "SOUND");
  caption(cr, strip::kXruns.x + strip::kXruns.w, strip::kLowerLabels, "XRUNS", Align::right);
  sunkenGlass(cr, {strip::kLoopButton.x, strip::kLoop.y, strip::kLoopButton.w + strip::kLoop.w,
                   strip::kLoop.h});
  folderButton(cr, strip::kLoopButton);
  sunkenGlass(cr, strip::kDevice);
  sunkenGlass(cr, strip::kXruns);
}

Rect atOrigin(const Rect& place) { return {0, 0, place.w, place.h}; }

}  // namespace

void drawStripGround(cairo_t* cr, int /*id*/, int /*frame*/) {
  brushedGround(cr, strip::kStrip);
  outlineRound(cr, strip::kStrip, 0.5, kHighlight.withAlpha(0.16), kBlack.withAlpha(0.6));
  plate(cr, strip::kPlate);
  upperRow(cr);
  lowerRow(cr);
  screw(cr, 11.0, 45.0, 0.9);
  screw(cr, 497.0, 45.0, 1.8);
}

void drawPlayButton(cairo_t* cr, int /*id*/, int frame) {
  const Face state = frame == 0 ? Face::raised : Face::lit;
  const Rect rect = atOrigin(strip::kPlay);
  face(cr, rect, state);
  triangle(cr, 10.0, 5.0, 10.0, 14.0, 17.0, 9.5, faceLettering(state));
  textIn(cr, {15, rect.y, rect.w - 15, rect.h}, "PLAY", kLabelType, faceLettering(state));
}

void drawRecordButton(cairo_t* cr, int /*id*/, int frame) {
  const Face state = frame == 0 ? Face::raised : Face::lit;
  const Rect rect = atOrigin(strip::kRecord);
  face(cr, rect, state);
  if (frame != 0) glow(cr, 13.0, 9.5, 8.0, kPaper.withAlpha(0.35));
  disc(cr, 13.0, 9.5, 4.0, frame == 0 ? kRed : faceLettering(state));
  textIn(cr, {15, rect.y, rect.w - 15, rect.h}, "REC", kLabelType, faceLettering(state));
}

void drawTapButton(cairo_t* cr, int /*id*/, int frame) {
  const Face state = frame == 0 ? Face::raised : Face::pressed;
  const Rect rect = atOrigin(strip::kTap);
  face(cr, rect, state);
  textIn(cr, rect.movedBy(0, frame), "TAP", kLabelType, faceLettering(state));
}

void drawInputSwitch(cairo_t* cr, int /*id*/, int frame) {
  constexpr const char* kNames[] = {"LOOP", "CARD"};
  segments(cr, atOrigin(strip::kInput), kNames, frame, {});
}

void drawLitLevel(cairo_t* cr, int /*id*/, int /*frame*/) {
  fill(cr, atOrigin(strip::kLevelIn), kGlass);
  levelBar(cr, 0, 0, 1.0);
}

void drawClipLamp(cairo_t* cr, int /*id*/, int frame) {
  constexpr double kMiddle = 4.5;
  const Color off = kRed.towards(kBlack, 0.72);
  disc(cr, kMiddle, kMiddle + 0.5, 4.2, kHighlight.withAlpha(0.14));
  disc(cr, kMiddle, kMiddle, 4.0, rgb(8, 6, 6));
  if (frame == 0) {
    ball(cr, kMiddle, kMiddle, 3.1, off.towards(kRed, 0.2), off);
  } else {
    ball(cr, kMiddle, kMiddle, 3.1, kRose.towards(kPaper, 0.4), kRed);
    glow(cr, kMiddle, kMiddle, 4.5, kRose.withAlpha(0.5));
  }
  disc(cr, kMiddle - 1.0, kMiddle - 1.2, 0.8, kHighlight.withAlpha(0.3));
}

}  // namespace zum::pictures
