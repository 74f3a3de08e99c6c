// The window's still parts: the background and the pages on it. What lies behind strips and buttons
// in their bitmap files is cut out of these, so that no edge shows.
#pragma once

#include <cairo.h>

#include <cstdint>

namespace zum::pictures {

enum class Scene : std::uint8_t {
  none,
  base,
  filter,
  vowel,
  follower,
  lfo,
  lfoSync,
  sequencer,
  strip,  // not of this window: drawStripGround draws it
};
inline constexpr int kScenes = 9;

/// All that is not clipped away, with the window's point x, y at the origin.
void drawScene(cairo_t* cr, Scene scene, int x, int y);

// The layers, in window coordinates; the base lies under all of them.
void drawBase(cairo_t* cr);
void drawFilterPage(cairo_t* cr);
void drawVowelPage(cairo_t* cr);
void drawFollowerPage(cairo_t* cr);
void drawLfoPage(cairo_t* cr);
void drawLfoSyncPage(cairo_t* cr);
void drawSequencerPage(cairo_t* cr);

}  // namespace zum::pictures
