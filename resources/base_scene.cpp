// The background: everything that every page shows, with all lettering.
#include "resources/ground.hpp"
#include "resources/lettering.hpp"
#include "resources/scene.hpp"
#include "resources/shapes.hpp"

namespace zum::pictures {
namespace {

constexpr Rect kUpperPlate{22, 61, 464, 196};
constexpr Rect kLowerPlate{22, 260, 464, 116};

void header(cairo_t* cr) {
  text(cr, kPreviousPreset.x, kPresetMenu.y - 6, Align::left, "PRESET", kSmallType, kLettering);
  sunkenGlass(cr, {kPreviousPreset.x, kPresetMenu.y, 133, kPresetMenu.h});
  logo(cr, 197.0, 17.0, 22.0);
  text(cr, 233.0, 53, Align::centre, "STEREO FILTER", {7.0, true, 2.0}, kPaleRose);
  slot(cr, kStatusStrip);
  slot(cr, kAboutButton);
  slot(cr, kBypassButton);
}

void upper(cairo_t* cr) {
  plate(cr, kUpperPlate);
  slot(cr, kTypeMenu);
  slot(cr, kBankSwitch);
  text(cr, kTypeMenu.x, kTypeMenu.y + kTypeMenu.h + 11, Align::left, "FILTER TYPE", kSmallType,
       kLettering);
  text(cr, kBankSwitch.x + kBankSwitch.w, kTypeMenu.y + kTypeMenu.h + 11, Align::right,
       "FILTER BANK", kSmallType, kLettering);
  // the way of the signal, engraved
  for (const Rect& way : {Rect{118, 182, 70, 1}, Rect{316, 182, 68, 1}}) {
    fill(cr, way, kBlack.withAlpha(0.55));
    fill(cr, way.movedBy(0, 1), kHighlight.withAlpha(0.10));
  }
  for (const KnobPlace& place : {kOverdrive, kResonance}) {
    knobTicks(cr, place);
    knobSeat(cr, place);
  }
  knobLabel(cr, kOverdrive, "OVERDRIVE", "CLEAN", "HOT");
  knobLabel(cr, kResonance, "RESONANCE", "MIN", "MAX");
}

void lower(cairo_t* cr) {
  plate(cr, kLowerPlate);
  slot(cr, {kTabs.x, kTabs.y, kTabs.w, kTabs.h});
  sunkenGlass(cr, kScreen);
  slot(cr, kResetAllButton);
}

void bottom(cairo_t* cr) {
  for (const KnobPlace& place : {kMix, kMaster}) {
    knobTicks(cr, place);
    knobSeat(cr, place);
  }
  knobLabel(cr, kMix, "MIX", "DRY", "WET");
  knobLabel(cr, kMaster, "MASTER", "OFF", "+6 dB");
  sunkenGlass(cr, kOutputScope);
  text(cr, kOutputScope.x + kOutputScope.w / 2.0, kOutputScope.y + kOutputScope.h + 12,
       Align::centre, "WET", kLabelType, kLettering);
}

}  // namespace

void drawBase(cairo_t* cr) {
  outlineRound(cr, kWindow, 0.5, kHighlight.withAlpha(0.16), kBlack.withAlpha(0.6));
  header(cr);
  upper(cr);
  lower(cr);
  bottom(cr);
  screw(cr, 11.0, 11.0, 0.6);
  screw(cr, 497.0, 11.0, 2.1);
  screw(cr, 11.0, 459.0, 1.3);
  screw(cr, 497.0, 459.0, 0.2);
}

}  // namespace zum::pictures
