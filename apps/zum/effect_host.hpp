// The smallest host of the effect: for commands that play files through it.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "adaptor/host_side.hpp"
#include "apps/zum/midi_file.hpp"
#include "apps/zum/play/song_clock.hpp"

namespace zum {

class EffectHost {
 public:
  /// An open effect that is switched on; throws Failure when there is none to be had. `tempo` in
  /// beats per minute; the transport plays from position 0 or stands still. It has no window.
  EffectHost(double sampleRate, int blockSize, double tempo, bool plays);
  EffectHost(const EffectHost&) = delete;
  EffectHost& operator=(const EffectHost&) = delete;

  void setParameter(int tag, float value) { host->client().setParameter(tag, value); }
  /// Two channels in, two out, at most `blockSize` frames; `sideChain` null for none. A transport
  /// that plays moves on.
  void process(const float* const* inputs, const float* const* sideChain, float* const* outputs,
               int frames);
  /// MIDI of the next block, which starts with frame `start`.
  void send(std::span<const MidiMessage> messages, std::int64_t start);
  /// What an EffectView looks into.
  KvUniClient& client() { return host->client(); }

 private:
  std::unique_ptr<HostSide> host;
  const double rate;  // Hz
  SongClock clock;
};

}  // namespace zum
