// [audio] What the host says of time in a block: song position and tempo.
#pragma once

#include <atomic>
#include <memory>

#include "core/aeffect.hpp"
#include "engine/clock.hpp"

namespace zum {

class Transport {
 public:
  /// What is asked of a host.
  static constexpr std::int32_t kFilter =
      kVstTransportPlaying | kVstPpqPosValid | kVstTempoValid | kVstBarsValid | kVstCyclePosValid;

  explicit Transport(KvSystemInfo& timing) : clock(timing) {}

  /// Of hosts that are treated in a way of their own.
  struct HostFlags {
    bool isFxpansion = false;  // nothing reads it
    bool isOwn = false;        // is told of a preset's tempo
    bool isAcid = false;       // plays while it says that it is stopped
  };
  /// [main] In the construction.
  void setHost(const char* vendor, const char* product);
  /// [any]
  const HostFlags& host() const ZUM_REALTIME { return hostFlags; }

  /// [any] Set by an adaptor that fills the record below and feeds events itself.
  std::atomic<bool> adaptorTransport{false};
  bool isFed() const ZUM_REALTIME { return adaptorTransport.load(std::memory_order_relaxed); }
  VstTimeInfo& adaptorTime() const ZUM_REALTIME { return *timeRecord; }

  /// At the start of a block. Null when the host has nothing to say.
  void read(const VstTimeInfo* time) ZUM_REALTIME;
  /// At the start of a control pass: true when the tempo is another one than the timing block has.
  bool takeTempo() ZUM_REALTIME;

 private:
  KvSystemInfo& clock;
  double workingTempo = 120.0;  // of this block, beats per minute
  HostFlags hostFlags;
  const std::unique_ptr<VstTimeInfo> timeRecord = std::make_unique<VstTimeInfo>();
};

}  // namespace zum
