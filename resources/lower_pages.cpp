// The pages of the three modulators, at the left of the lower part.
#include <span>

#include "resources/ground.hpp"
#include "resources/lettering.hpp"
#include "resources/scene.hpp"
#include "resources/shapes.hpp"

namespace zum::pictures {
namespace {

constexpr int kLabelFoot = 320;  // of the names above the small knobs
constexpr int kSignMiddle = 296;

void title(cairo_t* cr, const char* name, const Color& tint) {
  fillRound(cr, {kLowerPage.x + 6, 267, 3, 8}, 1.5, tint);
  text(cr, kLowerPage.x + 14, 275, Align::left, name, kTitleType, kPaper);
  horizontal(cr, kLowerPage.x + 5, 280, kLowerPage.w - 10, kBlack.withAlpha(0.55));
  horizontal(cr, kLowerPage.x + 5, 281, kLowerPage.w - 10, kHighlight.withAlpha(0.09));
}

void small(cairo_t* cr, const KnobPlace& place, const char* name) {
  knobSeat(cr, place);
  text(cr, place.x, kLabelFoot, Align::centre, name, kSmallType, kLettering);
}

// Signs above knobs: 24 pixels wide, drawn around their middle, from which the corners count.
void sign(cairo_t* cr, double middle, std::span<const Point> corners, const Color& color) {
  cairo_save(cr);
  cairo_translate(cr, middle, kSignMiddle + 0.5);
  polyline(cr, corners, 1.4, color);
  cairo_restore(cr);
}

void lfoCommon(cairo_t* cr) {
  title(cr, "LFO", kLfoTint);
  slot(cr, kLfoStyle);
  text(cr, kLfoStyle.x - 6, kLfoStyle.y + 9, Align::right, "MODE", kSmallType, kLettering);
  small(cr, kFirstSmall, "RATE");
  small(cr, kSecondSmall, "WAVE");
}

}  // namespace

void drawFollowerPage(cairo_t* cr) {
  constexpr Point kBand[] = {{-11.0, 6.0}, {-5.0, 5.0}, {-1.5, -5.0},
                             {1.5, -5.0},  {5.0, 5.0},  {11.0, 6.0}};
  constexpr Point kAttack[] = {{-11.0, 6.0}, {-6.0, 6.0}, {2.0, -5.0}, {11.0, -5.0}};
  constexpr Point kRelease[] = {{-11.0, -5.0}, {-5.0, -5.0}, {5.0, 6.0}, {11.0, 6.0}};
  constexpr Point kGain[] = {{-6.0, -6.0}, {7.0, 0.5}, {-6.0, 7.0}, {-6.0, -6.0}};
  title(cr, "ENVELOPE FOLLOWER", kFollowerTint);
  sign(cr, kFirstSmall.x, kBand, kFollowerTint);
  sign(cr, kSecondSmall.x, kAttack, kFollowerTint);
  sign(cr, kThirdSmall.x, kRelease, kFollowerTint);
  sign(cr, kFourthSmall.x, kGain, kFollowerTint);
  small(cr, kFirstSmall, "RANGE");
  small(cr, kSecondSmall, "ATTACK");
  small(cr, kThirdSmall, "RELEASE");
  small(cr, kFourthSmall, "GAIN");
}

void drawLfoPage(cairo_t* cr) {
  lfoCommon(cr);
  text(cr, kTriggerButton.x + kTriggerButton.w / 2.0, kLabelFoot, Align::centre, "TRIGGER",
       kSmallType, kLettering);
  slot(cr, kTriggerButton);
  small(cr, kFourthSmall, "SENS");
  text(cr, kLfoLamp.x - 6, kLfoLamp.y + 10, Align::right, "TRIG", kSmallType, kLettering);
}

// Nothing triggers a wave that the song's position drives.
void drawLfoSyncPage(cairo_t* cr) {
  lfoCommon(cr);
  const double x = kTriggerCover.x + kTriggerCover.w / 2.0 + 4.0;
  text(cr, x, 322, Align::centre, "FOLLOWS THE", kSmallType, kFaint);
  text(cr, x, 333, Align::centre, "SONG POSITION", kSmallType, kFaint);
}

void drawSequencerPage(cairo_t* cr) {
  constexpr Point kGlide[] = {{-11.0, 6.0}, {-5.0, 6.0}, {3.0, -5.0}, {11.0, -5.0}};
  title(cr, "STEP SEQUENCER", kSequencerTint);
  constexpr int kHeights[] = {4, 10, 6, 13, 8, 11, 3, 7};
  for (int i = 0; i < 8; ++i) {
    fill(cr, {51 + 10 * i, 304 - kHeights[i], 7, kHeights[i]},
         kSequencerTint.withAlpha(i == 3 ? 0.95 : 0.45));
  }
  sign(cr, kThirdSmall.x, kGlide, kSequencerTint);
  small(cr, kFirstSmall, "TEMPO");
  text(cr, kSequenceMenu.x + kSequenceMenu.w / 2.0, kLabelFoot, Align::centre, "ORDER", kSmallType,
       kLettering);
  slot(cr, kSequenceMenu);
  small(cr, kThirdSmall, "GLIDE");
  // the screen beside this page holds the steps
  text(cr, 210.0, 338, Align::centre, "DRAW", kSmallType, kFaint);
  text(cr, 210.0, 348, Align::centre, "STEPS", kSmallType, kFaint);
  triangle(cr, 236.0, 340.0, 231.0, 336.0, 231.0, 344.0, kFaint);
}

}  // namespace zum::pictures
