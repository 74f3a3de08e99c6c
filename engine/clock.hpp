// The timing block: sample rate, tempo, position, and every rate that the engine derives from them.
// Owned by the effect object; read by every stage in the control pass.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "engine/realtime.hpp"

namespace zum {

/// Memory that falls silent when the host suspends the effect.
struct BufferRecord {
  void* data;
  std::size_t bytes;
};

/// Told of every change of tempo, on the audio thread.
class TempoListener {
 public:
  TempoListener() = default;
  TempoListener(const TempoListener&) = delete;
  TempoListener& operator=(const TempoListener&) = delete;
  virtual ~TempoListener() = default;
  virtual void tempoChanged(double bpm) ZUM_REALTIME = 0;
};

class KvSystemInfo {
 public:
  static constexpr float kLowestSampleRate = 11050.0F;
  static constexpr float kHighestSampleRate = 196000.0F;
  static constexpr double kLowestTempo = 45.0;
  static constexpr double kHighestTempo = 500.0;

  /// Both registries stay with their owner, which outlives this object.
  KvSystemInfo(std::vector<BufferRecord>& bufferRegistry,
               std::vector<TempoListener*>& tempoListenerRegistry)
      : buffers(&bufferRegistry), tempoListeners(&tempoListenerRegistry) {}
  KvSystemInfo(const KvSystemInfo&) = delete;
  KvSystemInfo& operator=(const KvSystemInfo&) = delete;
  virtual ~KvSystemInfo() = default;
  virtual void reserved() {}

  /// Frames from one control pass to the next.
  void setControlInterval(std::int32_t frames) ZUM_REALTIME;
  /// Hz, 11050 to 196000; any other rate is ignored and the old one stays.
  void setSampleRate(float rate) ZUM_REALTIME;
  /// Beats per minute. Below 45 stores 45; above 500, or no number, is ignored.
  void setTempo(double bpm) ZUM_REALTIME;
  void clearBuffers() ZUM_REALTIME;
  void notifyTempoListeners() ZUM_REALTIME;

  double tempoBpm = 120.0;
  double samplesPerBeat = 22100.0;
  float controlInterval = 200.0F;    // frames of a control block
  std::int32_t controlFrames = 200;  // the same as an integer
  std::int32_t controlCounter = 0;   // frames since the last control pass
  float controlStep = 0.005F;        // 1 / controlInterval
  float sampleRate = 44100.0F;       // Hz
  float voices = 2.0F;               // size of the note arrays in use
  float transportPpq = 0.0F;         // song position in quarter notes, 0 while stopped
  double transportPpqWide = 0.0;     // the same in 64 bits
  float controlTicksPerBeat = 110.5F;
  float transportRunning = 0.0F;  // 0 or 1

  // derived from the sample rate
  float rateRatio = 0.0F;  // to 44100 Hz
  float invSampleRate = 0.0F;
  float twoOverRate = 0.0F;
  float twoPiOverRate = 0.0F;
  float piOverRate = 0.0F;
  float controlPeriod = 0.0F;  // seconds of a control block
  float ticksPerMs = 0.0F;     // control passes in a millisecond
  float samplesPerMs = 0.0F;
  float rateOverTwoPi = 0.0F;
  float inverseOfRatePer1024 = 0.0F;  // 1024 / sampleRate

 private:
  void deriveRates() ZUM_REALTIME;

  std::vector<BufferRecord>* buffers;
  std::vector<TempoListener*>* tempoListeners;
};

}  // namespace zum
