// The step sequencer: eight steps at a rate of the host's tempo, counted in control passes. Runs
// with the transport stopped too and only re-aligns when the transport starts.
#pragma once

#include "engine/clock.hpp"
#include "engine/random_generator.hpp"

namespace zum {

/// Where the sequencer reads its steps.
class StepSource {
 public:
  StepSource() = default;
  StepSource(const StepSource&) = delete;
  StepSource& operator=(const StepSource&) = delete;
  /// `step` 0 to 7. Any value may come back; it is held in 0 to 1.
  virtual float stepValue(std::int32_t step) ZUM_REALTIME = 0;

 protected:
  ~StepSource() = default;
};

class StepSequencer {
 public:
  static constexpr std::int32_t kSteps = 8;
  static constexpr int kModes = 5;

  /// Glide and tempo 0 to 1, mode 0 to 4: forward, backward, ping-pong, its inverse, random.
  /// True if the output moved.
  bool controlPass(float glideSum, float tempoSum, int mode, const KvSystemInfo& clock,
                   StepSource& source) ZUM_REALTIME;

  /// 0 to 1.
  float seqOut() const ZUM_REALTIME { return out; }
  /// 1 for about a millisecond behind the start of the transport, else 0.
  float startPulse() const ZUM_REALTIME { return pulse; }

 private:
  void deriveRate(float tempoSum, const KvSystemInfo& clock) ZUM_REALTIME;
  void trackTransport(const KvSystemInfo& clock) ZUM_REALTIME;
  void countSteps() ZUM_REALTIME;
  std::int32_t chosenStep(int mode) const ZUM_REALTIME;
  bool approach(float value, float glideMs, float ticksPerMs) ZUM_REALTIME;

  // rate, kept while nothing moves
  int noteIndex = -1;
  double ratedSamplesPerBeat = 0.0;
  float ratedSampleRate = 0.0F;
  double stepAdvance = 0.0;  // steps a control pass
  float stepMs = 0.0F;       // length of a step

  // start pulse
  float seqRunningSeen = 0.0F;
  float pulse = 0.0F;
  float pulseLeft = 0.0F;
  float pulseStep = 0.0F;

  // step counters, and what their last tests saw
  double stepPhase = 0.0;  // 0 to 8
  std::int32_t forwardStep = 0;
  std::int32_t lastForwardStep = 0;
  float phasePulseSeen = 0.0F;
  std::int32_t pingPongCount = 0;  // 0 to 13
  float pingPongPulseSeen = 0.0F;
  std::int32_t drawnCount = 0;
  std::int32_t randomStep = 0;
  RandomGenerator random{3902};

  // glide
  float stepTarget = 0.0F;
  float out = 0.0F;
  float glideStep = 0.0F;
  float glideTicks = 0.0F;
};

}  // namespace zum
