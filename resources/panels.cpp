#include "resources/panels.hpp"

#include <array>

#include "resources/faces.hpp"
#include "resources/ground.hpp"
#include "resources/lettering.hpp"
#include "resources/row_of.hpp"
#include "resources/scene.hpp"
#include "resources/shapes.hpp"

#ifndef ZUM_VERSION
#define ZUM_VERSION "?"
#endif

namespace zum::pictures {
namespace {

constexpr int kPanelWidth = 170;
constexpr int kFirstSlider = 36;
constexpr int kSliderPitch = 39;

struct Modulator {
  const char* name;
  Color tint;
};
constexpr Modulator kFollower{"ENVELOPE FOLLOWER", kFollowerTint};
constexpr Modulator kLfo{"LFO", kLfoTint};
constexpr Modulator kSequencer{"STEP SEQUENCER", kSequencerTint};

// No modulator moves a control of its own.
struct PanelRow {
  int id;
  int height;
  int sliders;
  std::array<Modulator, 3> modulators;  // from the top
};
constexpr PanelRow kPanels[] = {
    {1032, 160, 3, {kFollower, kLfo, kSequencer}},
    {1033, 122, 2, {kLfo, kSequencer, {}}},
    {1034, 122, 2, {kFollower, kSequencer, {}}},
    {1035, 122, 2, {kFollower, kLfo, {}}},
};

void sheet(cairo_t* cr, const Rect& rect) {
  fill(cr, rect, kPanel);
  outlineRound(cr, rect, 0.5, kBlack);
  outlineRound(cr, rect.inset(1), 0.5, rgb(112, 104, 99), rgb(60, 55, 53));
}

void sliderPlace(cairo_t* cr, const Modulator& modulator, int top) {
  constexpr int kLeft = 12;
  constexpr int kRight = 158;
  fillRound(cr, {kLeft, top - 12, 3, 8}, 1.5, modulator.tint);
  text(cr, kLeft + 7, top - 5, Align::left, modulator.name, kSmallType,
       modulator.tint.towards(kPaper, 0.35));
  const int foot = top + 21;
  text(cr, kLeft, foot, Align::left, "-100", kTinyType, kFaint);
  text(cr, (kLeft + kRight) / 2.0, foot, Align::centre, "0", kTinyType, kFaint);
  text(cr, kRight, foot, Align::right, "+100", kTinyType, kFaint);
}

}  // namespace

void drawAmountPanel(cairo_t* cr, int id, int /*frame*/) {
  const PanelRow& row = rowOf(kPanels, id);
  sheet(cr, {0, 0, kPanelWidth, row.height});
  fillRound(cr, {2, 2, kPanelWidth - 4, 15}, 0.0, kDeepRed.towards(kBlack, 0.1),
            kDeepRed.towards(kBlack, 0.45));
  horizontal(cr, 2, 17, kPanelWidth - 4, kBlack.withAlpha(0.6));
  // the window writes the knob's name here
  slot(cr, {111, 4, 39, 11});
  slot(cr, {155, 4, 12, 11});
  for (int i = 0; i < row.sliders; ++i) {
    sliderPlace(cr, row.modulators.at(static_cast<std::size_t>(i)),
                kFirstSlider + kSliderPitch * i);
  }
  const int foot = row.height - 15;
  horizontal(cr, 8, foot - 6, kPanelWidth - 16, kBlack.withAlpha(0.5));
  horizontal(cr, 8, foot - 5, kPanelWidth - 16, kHighlight.withAlpha(0.08));
  text(cr, 12, foot + 8, Align::left, "CONTROLLER", kSmallType, kLettering);
  slot(cr, {85, foot, 39, 11});
  slot(cr, {128, foot, 39, 11});
}

void drawAboutPanel(cairo_t* cr, int /*id*/, int /*frame*/) {
  constexpr Rect kSheet{0, 0, 441, 188};
  sheet(cr, kSheet);
  fillRound(cr, {2, 2, kSheet.w - 4, 76}, 0.0, rgb(22, 19, 18), rgb(31, 28, 27));
  horizontal(cr, 2, 78, kSheet.w - 4, kRed.withAlpha(0.8));
  logo(cr, 36.0, 24.0, 30.0);
  text(cr, 164.0, 34, Align::left, "STEREO FILTER", {10.0, true, 2.0}, kPaper);
  text(cr, 164.0, 47, Align::left, "Version " ZUM_VERSION, {9.0, false, 0.0}, kReadoutGreen);
  text(cr, 164.0, 60, Align::left, "Twenty filters, three modulators, one knob in the middle.",
       {9.0, false, 0.0}, kLettering);
  constexpr Rect kManual{327, 20, 100, 17};
  slot(cr, kManual);
  face(cr, kManual, Face::raised);
  textIn(cr, kManual, "MANUAL", kLabelType, faceLettering(Face::raised));
  text(cr, 36.0, 109, Align::left, "PRESET FOLDER", kLabelType, kLettering);  // its path below
  slot(cr, {140, 98, 100, 17});
  slot(cr, {257, 98, 100, 17});
  constexpr const char* kHints[] = {
      "Right click a knob for its modulation and for MIDI learn.",
      "Double click brings a knob back; Shift moves it finely.",
  };
  int foot = 152;
  for (const char* const hint : kHints) {
    text(cr, 36.0, foot, Align::left, hint, {9.0, false, 0.0}, kLettering);
    foot += 13;
  }
  text(cr, kSheet.w - 14.0, 176, Align::right, "CLICK TO CLOSE", kSmallType, kFaint);
}

void drawTriggerCover(cairo_t* cr, int /*id*/, int /*frame*/) {
  drawScene(cr, Scene::lfoSync, kTriggerCover.x, kTriggerCover.y);
}

}  // namespace zum::pictures
