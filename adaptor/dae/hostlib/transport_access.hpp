// The host's transport.
#pragma once

#include "adaptor/dae/hostlib/routines.hpp"

namespace zum {

/// [any] Of one host, which outlives it.
class TransportAccess {
 public:
  explicit TransportAccess(const HostRoutines& hostRoutines) : host(hostRoutines) {}

  double getCurrentTempo() const { return host.tempo(host.context); }
  bool isTransportRunning() const { return host.isRunning(host.context) != 0; }
  void getCurrentMeter(std::int32_t& numerator, std::int32_t& denominator) const {
    host.meter(host.context, &numerator, &denominator);
  }
  /// Where it plays, samples.
  std::int64_t getRealTimeSampleLocation() const { return host.realTimeSample(host.context); }
  /// Where it would play from, samples.
  std::int64_t getTimelinePosition() const { return host.timelineSample(host.context); }
  /// 960000 ticks to the quarter note.
  std::int64_t samplesToTicks(std::int64_t samples) const {
    return host.samplesToTicks(host.context, samples);
  }

 private:
  const HostRoutines& host;
};

}  // namespace zum
