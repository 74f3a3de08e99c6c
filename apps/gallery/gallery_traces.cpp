// What the gallery shows of its variables as pictures: scopes, a wave, steps; and what lies beside.
#include "apps/gallery/gallery.hpp"
#include "apps/gallery/gallery_pictures.hpp"
#include "toolkit/image.hpp"
#include "toolkit/mouse_area.hpp"
#include "toolkit/scope_view.hpp"
#include "toolkit/table_view.hpp"
#include "toolkit/wave_form_view.hpp"

namespace zum {

void Gallery::addTraces() {
  using Style = KvBufferDraw::Style;
  const auto scope = [this](const char* name, const CRect& place, Style style) {
    auto* const view = add<KvScopeView>(name, place, nullptr, style);
    view->backgroundColor = kDark;
    view->setColors(kAccent, kSecondAccent, kWhiteColor);
    view->setRing(variables.ring.data(), &variables.writeIndex, GalleryModel::kRing);
  };
  scope("filled", {204, 304, 343, 354}, Style::filled);
  scope("outline", {351, 304, 490, 354}, Style::outline);
  KvWaveFormView::Waves waves{};
  for (std::size_t i = 0; i < waves.size(); ++i) waves[i] = variables.waves[i].data();
  auto* const wave = add<KvWaveFormView>("waveform", {498, 304, 560, 354}, nullptr, waves,
                                         &variables.page, &variables.wave);
  wave->backgroundColor = kDark;
  wave->setColors(kAccent, kSecondAccent, kWhiteColor);
  auto* const steps = add<KvTableView>("steps", {20, 400, 420, 464}, nullptr);
  steps->backgroundColor = kBox;
  steps->barColor = kSecondAccent;
  steps->barShade = kAccent;
  steps->barHighlight = kDark;
  steps->setTable(&variables.steps);
  add<KvMouseArea>("area", {452, 412, 540, 460}, &variables.area);
  add<KvImage>("image", {552, 412, 620, 460}, nullptr, pictures.emblem.get(), nullptr);
}

}  // namespace zum
