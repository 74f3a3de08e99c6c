// The window's still parts: the background and the pages on it. Strips and buttons cut what lies
// behind them out of these, so that no edge shows.
#pragma once

#include <cairo.h>

namespace zum::pictures {

enum class Scene { base, filter, vowel, follower, lfo, lfoSync, sequencer };

/// Paints with the window's point x, y at the origin.
void paintScene(cairo_t* cr, Scene scene, int x, int y);

// The layers, in window coordinates; the base lies under all of them.
void drawBase(cairo_t* cr);
void drawFilterPage(cairo_t* cr);
void drawVowelPage(cairo_t* cr);
void drawFollowerPage(cairo_t* cr);
void drawLfoPage(cairo_t* cr);
void drawLfoSyncPage(cairo_t* cr);
void drawSequencerPage(cairo_t* cr);

}  // namespace zum::pictures
