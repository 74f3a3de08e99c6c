// The variables behind the gallery's controls, in place of an engine's.
#pragma once

#include <array>
#include <cstdint>

#include "state/table_xy.hpp"
#include "toolkit/wave_form_view.hpp"

namespace zum {

/// [main]
struct GalleryModel {
  static constexpr int kSteps = 16;
  static constexpr int kRing = 139;  // samples
  static constexpr int kWaves = 5;

  GalleryModel();
  /// A tick further: the ring takes the next sample of a slow sine, now and then a step is played.
  void advance();

  // knobs, 0 to 1 where nothing else is said
  float knob = 0.5F;
  float amount = 0.3F;
  float spring = 0.5F;
  float jump = 0.25F;
  float plain = 12.5F;  // -50 to 50
  float slider = 0.4F;
  float fader = 0.6F;
  float number = 0.5F;
  float first = 0.2F;
  float second = 0.8F;
  std::array<float, 9> buttons{};  // by their modes
  float page = 0.0F;               // 0 or 1
  float wave = 0.0F;               // 0 to 4
  float close = 0.0F;
  float area = 0.0F;
  // rows
  float picture = 1.0F;
  float list = 0.0F;
  float nested = -1.0F;
  float longList = 0.0F;
  float folder = -1.0F;

  std::array<float, kRing> ring{};
  std::int32_t writeIndex = 0;
  KvTableXY steps;
  std::array<std::array<float, KvWaveFormView::kPoints>, kWaves> waves{};
  int ticks = 0;
};

}  // namespace zum
