// The whole signal path of the effect: a control pass every 16 frames, the frame chain between.
// Owned by the effect object, which calls process() from the host's audio thread.
#pragma once

#include <array>

#include "engine/clock.hpp"
#include "engine/controls.hpp"
#include "engine/dc_filter.hpp"
#include "engine/filter_frequency.hpp"
#include "engine/multi_mode_filter.hpp"
#include "engine/output_stage.hpp"
#include "engine/overdrive.hpp"
#include "engine/vowel_filter.hpp"

namespace zum {

/// What the engine's owner does inside a control pass, on the audio thread.
class ControlPassOwner {
 public:
  ControlPassOwner() = default;
  ControlPassOwner(const ControlPassOwner&) = delete;
  ControlPassOwner& operator=(const ControlPassOwner&) = delete;
  /// First of all in a pass: due events and the host's tempo.
  virtual void beginControlPass() ZUM_REALTIME = 0;
  /// Last of all: the editor's modulation page moved to `position`.
  virtual void modPageMoved(float position) ZUM_REALTIME = 0;

 protected:
  ~ControlPassOwner() = default;
};

class Engine {
 public:
  static constexpr std::int32_t kControlFrames = kRunFrames;

  EngineControls controls;  // [any]

  /// Everything that depends on sample rate or tempo. The caller re-applies the parameters.
  void recompute(const KvSystemInfo& clock, bool keepBuffers) ZUM_REALTIME;
  /// Forgets what the block DC filter has heard. [main] between blocks
  void resetOutput() ZUM_REALTIME { dcFilter.reset(); }

  /// One block, any number of frames. A frame's inputs are read before its outputs are written, so
  /// the buffers may be the same.
  void process(const float* const* inputs, float* const* outputs, std::int32_t frames,
               KvSystemInfo& clock, ControlPassOwner& owner) ZUM_REALTIME;

  /// The memory that suspending clears.
  std::array<BufferRecord, 3> buffers();
  const OutputStage& meters() const { return output; }

 private:
  /// Left and right of at most one control block, next to each other.
  using Pairs = std::array<float, 2 * static_cast<std::size_t>(kControlFrames)>;

  void controlPass(const KvSystemInfo& clock, ControlPassOwner& owner) ZUM_REALTIME;
  void runFrames(Pairs& pairs, std::int32_t frames) ZUM_REALTIME;
  template <bool vowelBank, class Filter>
  void runThrough(Filter& filter, Pairs& pairs, std::int32_t frames) ZUM_REALTIME;

  Overdrive overdrive;
  FilterFrequency frequency;
  ResonanceCurve resonance;
  MultiModeFilter multiMode;
  VowelFilter vowel;
  OutputStage output;
  DcFilter dcFilter;
  float modPagePosition = 0.0F;  // of the pass before
};

}  // namespace zum
