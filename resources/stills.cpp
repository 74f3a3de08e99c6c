#include "resources/stills.hpp"

#include "resources/places.hpp"
#include "resources/row_of.hpp"
#include "resources/scene.hpp"

namespace zum::pictures {
namespace {

struct PageRow {
  int id;
  Scene scene;
  Rect rect;
};
constexpr PageRow kPages[] = {
    {1007, Scene::filter, kUpperPage},    {1054, Scene::vowel, kUpperPage},
    {1015, Scene::follower, kLowerPage},  {1021, Scene::lfo, kLowerPage},
    {1049, Scene::sequencer, kLowerPage},
};

}  // namespace

void drawBackground(cairo_t* cr, int /*id*/, int /*frame*/) { drawScene(cr, Scene::base, 0, 0); }

void drawPage(cairo_t* cr, int id, int /*frame*/) {
  const PageRow& row = rowOf(kPages, id);
  drawScene(cr, row.scene, row.rect.x, row.rect.y);
}

}  // namespace zum::pictures
