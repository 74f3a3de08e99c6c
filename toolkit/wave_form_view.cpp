#include "toolkit/wave_form_view.hpp"

#include "toolkit/control_frame.hpp"

namespace zum {

KvWaveFormView::KvWaveFormView(const CRect& rect, CControlListener* controlListener, int controlTag,
                               KvFrame& owner, const Waves& fiveWaves, const float* styleVariable,
                               const float* waveVariable)
    : KvControl(rect, controlListener, controlTag, owner),
      canvas(rect, owner.scale()),
      freeWaves(fiveWaves),
      syncedWaves(fiveWaves),
      formA{styleVariable, 1.0F, -1.0F},
      formB{waveVariable, 1.0F, -1.0F} {
  setMouseEnabled(false);
}

void KvWaveFormView::draw(CDrawContext& context) {
  idleStep(0);
  if (canvas.fit(getViewSize(), context.scale())) render();
  canvas.picture().blit(context, getViewSize(), {0, 0});
}

void KvWaveFormView::idleStep(int /*flag*/) {
  if (!isShown() || frozen) return;
  const float style = formA.raw();
  const float wave = formB.raw();
  if (style == drawnA && wave == drawnB) return;
  drawnA = style;
  drawnB = wave;
  render();
  setDirty(true);
}

// A number that no wave has leaves the picture as it is.
void KvWaveFormView::render() {
  const Waves& waves = drawnA > 0.0F ? syncedWaves : freeWaves;
  if (!(drawnB >= 0.0F && drawnB < static_cast<float>(waves.size()))) return;
  const float* const wave = waves[static_cast<std::size_t>(drawnB)];
  std::vector<float>& columns = canvas.columns();
  const float step = static_cast<float>(kPoints) / static_cast<float>(columns.size());
  for (std::size_t x = 0; x < columns.size(); ++x) {
    columns[x] = 0.5F + 0.5F * wave[static_cast<std::size_t>(static_cast<float>(x) * step)];
  }
  canvas.setBackground(backgroundColor);
  canvas.render(KvBufferDraw::Style::outline);
}

}  // namespace zum
