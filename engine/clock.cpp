#include "engine/clock.hpp"

#include <cstring>

#include "engine/shared_value.hpp"

namespace zum {

void KvSystemInfo::setControlInterval(std::int32_t frames) ZUM_REALTIME {
  controlFrames = frames;
  controlInterval = static_cast<float>(frames);
  controlStep = 1.0F / controlInterval;
}

void KvSystemInfo::setSampleRate(float rate) ZUM_REALTIME {
  if (!(rate >= kLowestSampleRate && rate <= kHighestSampleRate)) return;
  sampleRate = rate;
  rateRatio = sampleRate * 2.2675737e-5F;
  invSampleRate = 1.0F / sampleRate;
  twoOverRate = 2.0F / sampleRate;
  twoPiOverRate = 6.2831855F / sampleRate;
  piOverRate = 3.1415927F / sampleRate;
  controlPeriod = controlInterval / sampleRate;
  deriveRates();
}

void KvSystemInfo::setTempo(double bpm) ZUM_REALTIME {
  if (!(bpm <= kHighestTempo)) return;
  storeShared(tempoBpm, bpm < kLowestTempo ? kLowestTempo : bpm);
  deriveRates();
}

void KvSystemInfo::deriveRates() ZUM_REALTIME {
  ticksPerMs = 0.001F * sampleRate / controlInterval;
  samplesPerMs = 0.001F * sampleRate;
  rateOverTwoPi = sampleRate * 0.15915494309644432F;
  inverseOfRatePer1024 = 1.0F / (sampleRate * 0.0009765625F);
  samplesPerBeat = static_cast<double>(sampleRate) / (tempoBpm * 0.016666666666666666);
  controlTicksPerBeat = static_cast<float>(samplesPerBeat * static_cast<double>(controlStep));
}

void KvSystemInfo::clearBuffers() ZUM_REALTIME {
  for (const BufferRecord& buffer : *buffers) std::memset(buffer.data, 0, buffer.bytes);
}

void KvSystemInfo::notifyTempoListeners() ZUM_REALTIME {
  for (TempoListener* listener : *tempoListeners) listener->tempoChanged(tempoBpm);
}

}  // namespace zum
