#include "resources/scene.hpp"

#include "resources/ground.hpp"

namespace zum::pictures {

void drawScene(cairo_t* cr, Scene scene, int x, int y) {
  cairo_save(cr);
  cairo_translate(cr, -x, -y);
  brushedGround(cr, kWindow);
  drawBase(cr);
  switch (scene) {
    case Scene::none:
    case Scene::base:
    case Scene::strip: break;
    case Scene::filter: drawFilterPage(cr); break;
    case Scene::vowel: drawVowelPage(cr); break;
    case Scene::follower: drawFollowerPage(cr); break;
    case Scene::lfo: drawLfoPage(cr); break;
    case Scene::lfoSync: drawLfoSyncPage(cr); break;
    case Scene::sequencer: drawSequencerPage(cr); break;
  }
  cairo_restore(cr);
}

}  // namespace zum::pictures
