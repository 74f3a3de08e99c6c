#include "apps/gallery/gallery_model.hpp"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zum {
namespace {

constexpr float kTurn = 2.0F * std::numbers::pi_v<float>;
constexpr int kTicksPerSine = 120;
constexpr int kTicksPerStep = 8;

/// `phase` from 0 to 1, the value from -1 to 1.
float waveAt(int shape, float phase) {
  switch (shape) {
    case 0: return std::sin(kTurn * phase);
    case 1: return 1.0F - 4.0F * std::fabs(phase - 0.5F);
    case 2: return phase < 0.5F ? 1.0F : -1.0F;
    case 3: return 2.0F * phase - 1.0F;
    default: return std::sin(kTurn * phase) * std::sin(kTurn * 9.0F * phase);
  }
}

}  // namespace

GalleryModel::GalleryModel() {
  (void)steps.setColumns(kSteps);
  for (int i = 0; i < kSteps; ++i) steps.setValue(i, 0.15F + 0.05F * static_cast<float>(i));
  for (int shape = 0; shape < kWaves; ++shape) {
    auto& points = waves[static_cast<std::size_t>(shape)];
    for (int i = 0; i < KvWaveFormView::kPoints; ++i) {
      const float phase = static_cast<float>(i) / static_cast<float>(KvWaveFormView::kPoints);
      points[static_cast<std::size_t>(i)] = waveAt(shape, phase);
    }
  }
}

void GalleryModel::advance() {
  const float phase = static_cast<float>(ticks % kTicksPerSine) / float{kTicksPerSine};
  writeIndex = (writeIndex + 1) % kRing;
  ring[static_cast<std::size_t>(writeIndex)] = 0.5F + 0.45F * std::sin(kTurn * phase);
  (void)steps.getValue(ticks / kTicksPerStep % kSteps, 0);
  ++ticks;
}

}  // namespace zum
