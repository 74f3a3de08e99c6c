// Where things stand in the window, for those that more than one file draws. Pixels.
#pragma once

namespace zum::pictures {

struct Rect {
  int x, y, w, h;

  constexpr Rect inset(int by) const { return {x + by, y + by, w - 2 * by, h - 2 * by}; }
  constexpr Rect movedBy(int dx, int dy) const { return {x + dx, y + dy, w, h}; }
};

inline constexpr Rect kWindow{0, 0, 508, 470};
inline constexpr Rect kStatusStrip{336, 6, 138, 19};
inline constexpr Rect kPresetMenu{46, 35, 111, 17};
inline constexpr Rect kPreviousPreset{35, 36, 11, 15};
inline constexpr Rect kNextPreset{157, 36, 11, 15};
inline constexpr Rect kAboutButton{338, 35, 62, 17};
inline constexpr Rect kBypassButton{409, 35, 62, 17};
inline constexpr Rect kTypeMenu{35, 72, 111, 17};
inline constexpr Rect kBankSwitch{361, 72, 111, 17};
inline constexpr Rect kUpperPage{155, 77, 195, 178};
inline constexpr Rect kLowerPage{29, 261, 217, 96};
inline constexpr Rect kResetAllButton{197, 265, 45, 11};
inline constexpr Rect kTabs{252, 264, 220, 19};
inline constexpr Rect kScreen{253, 288, 218, 65};
inline constexpr Rect kOutputScope{185, 381, 139, 65};  // both halves
inline constexpr Rect kVowelA{178, 103, 17, 17};
inline constexpr Rect kVowelB{310, 103, 17, 17};
inline constexpr Rect kLfoLamp{204, 286, 15, 15};
inline constexpr Rect kLfoStyle{61, 286, 67, 13};
inline constexpr Rect kTriggerButton{142, 327, 40, 17};
inline constexpr Rect kTriggerCover{133, 280, 111, 78};
inline constexpr Rect kSequenceMenu{92, 327, 40, 17};

/// A knob, the ring around it and what lies below both share one middle.
struct KnobPlace {
  double x, y;
  double ringRadius;  // to the middle of its line
  double ringWidth;
  double capRadius;
};
inline constexpr KnobPlace kOverdrive{89.5, 178.0, 19.0, 3.0, 15.2};
inline constexpr KnobPlace kMix{89.5, 420.0, 19.0, 3.0, 15.2};
inline constexpr KnobPlace kMaster{417.5, 421.0, 19.0, 3.0, 15.2};
inline constexpr KnobPlace kResonance{422.5, 183.5, 26.0, 4.0, 21.5};
inline constexpr KnobPlace kCutoff{252.0, 183.0, 42.0, 5.0, 33.3};
inline constexpr KnobPlace kMorph{253.0, 183.0, 42.0, 5.0, 33.3};

/// The row of small knobs on the lower pages.
constexpr KnobPlace smallKnob(double x) { return {x, 340.0, 13.5, 2.5, 10.5}; }
inline constexpr KnobPlace kFirstSmall = smallKnob(65.5);
inline constexpr KnobPlace kSecondSmall = smallKnob(115.5);
inline constexpr KnobPlace kThirdSmall = smallKnob(164.5);
inline constexpr KnobPlace kFourthSmall = smallKnob(213.5);

}  // namespace zum::pictures
