// The colours of the window. Everything that is drawn takes them from here.
#pragma once

namespace zum::pictures {

/// Channels from 0 to 1; alpha 1 is opaque.
struct Color {
  double r, g, b, a = 1.0;

  constexpr Color withAlpha(double alpha) const { return {r, g, b, alpha}; }
  constexpr Color towards(const Color& other, double share) const {
    return {r + (other.r - r) * share, g + (other.g - g) * share, b + (other.b - b) * share,
            a + (other.a - a) * share};
  }
};

/// From channels of 0 to 255.
constexpr Color rgb(int r, int g, int b) { return {r / 255.0, g / 255.0, b / 255.0}; }

// The reds that the traces and the step table are drawn in, too.
inline constexpr Color kDeepRed = rgb(109, 18, 18);
inline constexpr Color kMenuRed = rgb(144, 27, 27);
inline constexpr Color kRed = rgb(186, 35, 35);
inline constexpr Color kRose = rgb(227, 108, 108);
inline constexpr Color kPaleRose = rgb(189, 121, 120);
inline constexpr Color kReadoutGreen = rgb(73, 212, 0);

inline constexpr Color kBlack = rgb(0, 0, 0);
inline constexpr Color kPaper = rgb(236, 228, 222);  // lettering that matters
inline constexpr Color kLettering = rgb(190, 180, 173);
inline constexpr Color kFaint = rgb(168, 158, 151);  // units, end marks: 4.5 to 1 at least
inline constexpr Color kGlass = rgb(12, 10, 10);     // ground of displays
inline constexpr Color kGroove = rgb(9, 7, 7);       // ground of rings
inline constexpr Color kPanel = rgb(37, 34, 33);     // ground of the panels
inline constexpr Color kHighlight = rgb(255, 244, 236);

// Each modulator has a tint, wherever it is named.
inline constexpr Color kFollowerTint = kRose;
inline constexpr Color kLfoTint = rgb(122, 188, 82);
inline constexpr Color kSequencerTint = rgb(150, 173, 176);
inline constexpr Color kControllerTint = rgb(240, 196, 72);  // of what MIDI moves

}  // namespace zum::pictures
