#include "engine/step_sequencer.hpp"

#include <cmath>

#include "engine/note_table.hpp"

namespace zum {

bool StepSequencer::controlPass(float glideSum, float tempoSum, int mode, const KvSystemInfo& clock,
                                StepSource& source) ZUM_REALTIME {
  deriveRate(tempoSum, clock);
  // A step's length times the cube of the glide.
  const float glideMs = stepMs * (glideSum * glideSum * glideSum);
  trackTransport(clock);
  countSteps();
  const float value = clampUnit(source.stepValue(clampIndex(chosenStep(mode), kSteps - 1)));
  return approach(value, glideMs, clock.ticksPerMs);
}

void StepSequencer::deriveRate(float tempoSum, const KvSystemInfo& clock) ZUM_REALTIME {
  const int index = noteIndexOf(tempoSum);
  if (index == noteIndex && clock.samplesPerBeat == ratedSamplesPerBeat &&
      clock.sampleRate == ratedSampleRate) {
    return;
  }
  noteIndex = index;
  ratedSamplesPerBeat = clock.samplesPerBeat;
  ratedSampleRate = clock.sampleRate;
  const auto stepFrames =
      static_cast<float>(static_cast<double>(noteLength(index)) * clock.samplesPerBeat * 4.0);
  const double stepsPerSecond =
      static_cast<double>(clock.sampleRate) / static_cast<double>(stepFrames);
  const double ticksPerSecond = static_cast<double>(clock.sampleRate / clock.controlInterval);
  stepAdvance = stepsPerSecond * (1.0 / ticksPerSecond);
  const auto msPerTick = static_cast<float>(1000.0 / ticksPerSecond);
  stepMs = static_cast<float>(1.0 / stepAdvance) * msPerTick;
}

// When the transport stops while the pulse lasts, the countdown goes on.
void StepSequencer::trackTransport(const KvSystemInfo& clock) ZUM_REALTIME {
  if (clock.transportRunning != seqRunningSeen) {
    seqRunningSeen = clock.transportRunning;
    if (seqRunningSeen != 0.0F) {
      pulse = 1.0F;
      pulseLeft = 1.0F;
      pulseStep = 1.0F / (clock.ticksPerMs + kDenormalGuard);
    } else {
      pulseLeft -= pulseStep;
      pulse = pulseLeft < 0.0F ? 0.0F : 1.0F;
    }
  } else if (pulseLeft > 0.0F) {
    pulseLeft -= pulseStep;
    if (pulseLeft < 0.0F) pulse = 0.0F;
  }
}

void StepSequencer::countSteps() ZUM_REALTIME {
  stepPhase += stepAdvance;
  if (!(stepPhase < kSteps)) stepPhase = 0.0;  // the rest is dropped: a jitter of one pass at most
  if (pulse != phasePulseSeen) {               // both edges of the pulse
    phasePulseSeen = pulse;
    stepPhase = 0.0;
  }
  forwardStep = static_cast<std::int32_t>(stepPhase) & (kSteps - 1);

  if (forwardStep != lastForwardStep) ++pingPongCount;
  lastForwardStep = forwardStep;
  if (pingPongCount >= 2 * (kSteps - 1)) pingPongCount = 0;
  if (pulse != pingPongPulseSeen) {
    pingPongPulseSeen = pulse;
    pingPongCount = 0;
  }
  if (pingPongCount + 1 != drawnCount) {  // counts from 1, so that the first pass draws, too
    drawnCount = pingPongCount + 1;
    randomStep = truncate(std::fabs(random.next() * static_cast<float>(kSteps)));
  }
}

std::int32_t StepSequencer::chosenStep(int mode) const ZUM_REALTIME {
  constexpr std::int32_t kLast = kSteps - 1;
  const std::int32_t c = pingPongCount;
  const std::int32_t pingPong = c < kLast ? c : c - 2 * ((c + 1) % kSteps);
  switch (mode) {
    case 0: return forwardStep;
    case 1: return kLast - forwardStep;
    case 2: return pingPong;
    case 3: return kLast - pingPong;
    default: return randomStep;
  }
}

bool StepSequencer::approach(float value, float glideMs, float ticksPerMs) ZUM_REALTIME {
  const bool jumps = glideMs == 0.0F;
  bool moved = false;
  if (value != stepTarget) {
    stepTarget = value;
    if (jumps) {
      out = value;
      moved = true;
    } else {
      glideTicks = glideMs * ticksPerMs;
      glideStep = (-1.0F / glideTicks) * (stepTarget - out);
    }
  }
  if (stepTarget != out) {  // also a ramp whose glide became 0 on the way
    out -= glideStep;
    glideTicks -= 1.0F;
    if (glideTicks <= 0.0F) {
      out = stepTarget;
      glideStep = 0.0F;
    }
    moved = true;
  }
  return moved;
}

}  // namespace zum
