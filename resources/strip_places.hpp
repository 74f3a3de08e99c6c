// The transport strip below the effect's window: where everything stands in it, for the pictures
// and for the controls. Pixels from the strip's own corner.
#pragma once

#include "resources/places.hpp"

namespace zum::pictures::strip {

inline constexpr Rect kStrip{0, 0, kWindow.w, 90};
inline constexpr Rect kPlate{22, 4, 464, 78};  // as wide as the effect's
inline constexpr int kUpperLabels = 17;        // feet of the letters
inline constexpr int kLowerLabels = 54;

// the upper row
inline constexpr Rect kPlay{35, 22, 58, 19};
inline constexpr Rect kRecord{97, 22, 52, 19};
inline constexpr Rect kTempo{166, 22, 62, 19};
inline constexpr Rect kTap{232, 22, 34, 19};
inline constexpr Rect kInput{283, 22, 84, 19};
inline constexpr Rect kLevelIn{397, 22, 60, 7};
inline constexpr Rect kLevelOut{397, 34, 60, 7};
inline constexpr Rect kClipIn{463, 21, 9, 9};
inline constexpr Rect kClipOut{463, 33, 9, 9};

// the lower row
inline constexpr Rect kLoop{49, 58, 133, 17};  // its name
inline constexpr Rect kLoopButton{35, 58, 14, 17};
inline constexpr Rect kDevice{193, 58, 229, 17};
inline constexpr Rect kXruns{433, 58, 39, 17};

// A level is shown by segments of so many decibels, from the lowest one on; each is lit from its
// own lower end on.
inline constexpr int kSegments = 15;
inline constexpr int kSegmentWidth = 4;  // with the gap behind it
inline constexpr double kLowestLevel = -56.0;
inline constexpr double kSegmentRange = 4.0;
inline constexpr int kAmberSegment = 12;  // the first from -8 dB on
inline constexpr int kRedSegment = 14;    // from 0 dB on
static_assert(kSegments * kSegmentWidth == kLevelIn.w);

}  // namespace zum::pictures::strip
