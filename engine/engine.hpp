// The whole signal path of the effect: a control pass every 16 frames, the frame chain between.
// Owned by the effect object, which calls process() from the host's audio thread.
#pragma once

#include <array>
#include <optional>

#include "engine/clock.hpp"
#include "engine/controls.hpp"
#include "engine/dc_filter.hpp"
#include "engine/display_values.hpp"
#include "engine/envelope_follower.hpp"
#include "engine/filter_frequency.hpp"
#include "engine/level_detectors.hpp"
#include "engine/lfo.hpp"
#include "engine/modulation_sums.hpp"
#include "engine/multi_mode_filter.hpp"
#include "engine/output_stage.hpp"
#include "engine/overdrive.hpp"
#include "engine/step_sequencer.hpp"
#include "engine/vowel_filter.hpp"

namespace zum {

/// What the engine's owner does inside a control pass, on the audio thread.
class ControlPassOwner : public StepSource {
 public:
  /// Called first in every pass: takes due events and the tempo of the host.
  virtual void beginControlPass() ZUM_REALTIME = 0;
  /// Called behind the sums of a pass in which the editor's modulation page moved to `position`.
  virtual void modPageMoved(float position) ZUM_REALTIME = 0;

 protected:
  ~ControlPassOwner() = default;
};

/// Part of a host's block, up to the next control pass at most.
struct Run {
  const float* inLeft;
  const float* inRight;
  const float* heardLeft;  // by the level detectors: the input, or the side-chain
  const float* heardRight;
  float* outLeft;
  float* outRight;
  std::size_t frames;         // at most kRunFrames
  std::size_t firstPair = 0;  // in the lines of the ramps

  /// What is behind `pairs` pairs of frames.
  Run behind(std::size_t pairs) const ZUM_REALTIME {
    const std::size_t done = 2 * pairs;
    return {inLeft + done,  inRight + done,  heardLeft + done, heardRight + done,
            outLeft + done, outRight + done, frames - done,    firstPair + pairs};
  }
};

/// Bypass on its way in or out: the wet part of the mix, which goes to 0 ahead of the switch.
class BypassFade {
 public:
  /// Once a control pass. Gives what the mix is multiplied by.
  float advance(bool wanted, const KvSystemInfo& clock) ZUM_REALTIME;
  /// The output is the input already, so the switch is not heard.
  bool isOver() const ZUM_REALTIME { return passesAtRest > 1; }

 private:
  float level = 1.0F;
  int passesAtRest = 0;  // the mix lags one pass behind
};

class Engine {
 public:
  static constexpr std::int32_t kControlFrames = 16;

  EngineControls controls;  // [any]

  /// Everything that depends on sample rate or tempo. The caller re-applies the parameters.
  void recompute(const KvSystemInfo& clock, bool keepBuffers) ZUM_REALTIME;
  /// [main] between blocks. Forgets what the block DC filters have heard.
  void resetOutput() ZUM_REALTIME;
  /// [audio] between blocks. All that remembers the signal is reset: nothing rings on.
  void forget() ZUM_REALTIME;

  /// One block, any number of frames. A frame's inputs are read before its outputs are written, so
  /// the buffers may be the same ones, also crossed; not shifted against each other. Of two outputs
  /// in one buffer the right one stays, and passes the DC filter twice. The level detectors hear
  /// `sideChain`, which may be the inputs.
  void process(const float* const* inputs, const float* const* sideChain, float* const* outputs,
               std::int32_t frames, KvSystemInfo& clock, ControlPassOwner& owner) ZUM_REALTIME;
  /// [main] between blocks. From now on bypass fades in and out within 10 ms in place of its hard
  /// switch.
  void fadeBypass() { bypassFade.emplace(); }

  /// The memory that suspending clears.
  std::array<BufferRecord, 3> buffers();
  const OutputStage& meters() const { return output; }
  const Lfo& lfoDisplay() const { return lfo; }
  const EnvelopeFollower& followerDisplay() const { return follower; }
  /// [any] What the sequencer's amounts are multiplied by, 0 to 1.
  float sequenceLevel() const ZUM_REALTIME { return loadShared(modulators.seqOut); }
  /// [audio] between blocks. The last control pass's results.
  const ModulatorOutputs& modulation() const { return modulators; }
  float cutoffHz() const { return frequency.cutoffHz(); }
  float resonanceSum() const { return loadShared(shown.resonance); }
  /// [any]
  const DisplayValues& display() const { return shown; }

 private:
  static constexpr float kDither = 9.99999993922529e-09F;

  /// The filter type that frames go through, chosen once a run and once a control pass.
  struct Selection {
    int bank = 0;
    int type = 0;
    bool bypass = false;

    bool operator==(const Selection&) const = default;
  };

  Selection select() const ZUM_REALTIME;
  bool isBypassWanted() const ZUM_REALTIME { return loadShared(controls.bypass.integer) >= 1; }
  /// Called ahead of a control pass. Forgets where the frame before is not finite: a filter may
  /// diverge, and a host may send anything.
  void recover() ZUM_REALTIME;
  void controlPass(KvSystemInfo& clock, ControlPassOwner& owner) ZUM_REALTIME;
  float wantedModPage() const ZUM_REALTIME;
  void modulate(const KvSystemInfo& clock, ControlPassOwner& owner) ZUM_REALTIME;
  void play(const Run& run) ZUM_REALTIME;
  /// Pairs of frames, and the odd one that is left.
  template <class Filter>
  void playThrough(Filter& filter, const Run& run) ZUM_REALTIME {
    const bool fading = dcFilter.isFading();
    if (run.frames > 1) playPairs<2>(filter, run, fading);
    if (run.frames % 2 == 1) playPairs<1>(filter, run.behind(run.frames / 2), fading);
  }
  /// `frames` of a pair that are there, 1 or 2.
  template <int frames, class Filter>
  void playPairs(Filter& filter, const Run& run, bool fading) ZUM_REALTIME;

  ModulationSums sums;
  ModulatorOutputs modulators;
  StepSequencer sequencer;
  Lfo lfo;
  EnvelopeFollower follower;
  LevelDetectors detectors;
  Overdrive overdrive;
  FilterFrequency frequency;
  ResonanceCurve resonance;
  MultiModeFilter multiMode;
  VowelFilter vowel;
  OutputStage output;
  DcFilter dcFilter;
  DcFilter sharedDcFilter;  // used while both outputs are one buffer
  Selection selection;
  std::optional<BypassFade> bypassFade;
  enum Ramp : std::size_t { threshold, makeup, mix, master };
  FrameRamps ramps;
  Float4 dither = {kDither, -kDither, kDither, -kDither};  // of the next frames
  Float4 lastLimited{};                                    // for the meters
  DisplayValues shown;
  float modPagePosition = 0.0F;  // of the pass before
};

}  // namespace zum
