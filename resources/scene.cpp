#include "resources/scene.hpp"

#include <array>
#include <cstddef>
#include <memory>

#include "resources/ground.hpp"

namespace zum::pictures {
namespace {

std::unique_ptr<Image> make(Scene scene) {
  auto image = std::make_unique<Image>(kWindow.w, kWindow.h);
  brushedGround(*image);
  cairo_t* const cr = image->context();
  drawBase(cr);
  switch (scene) {
    case Scene::base: break;
    case Scene::filter: drawFilterPage(cr); break;
    case Scene::vowel: drawVowelPage(cr); break;
    case Scene::follower: drawFollowerPage(cr); break;
    case Scene::lfo: drawLfoPage(cr); break;
    case Scene::lfoSync: drawLfoSyncPage(cr); break;
    case Scene::sequencer: drawSequencerPage(cr); break;
  }
  return image;
}

}  // namespace

void paintScene(cairo_t* cr, Scene scene, int x, int y) {
  static std::array<std::unique_ptr<Image>, 7> made;
  auto& image = made.at(static_cast<std::size_t>(scene));
  if (!image) image = make(scene);
  cairo_set_source_surface(cr, image->picture(), -x, -y);
  cairo_paint(cr);
}

}  // namespace zum::pictures
