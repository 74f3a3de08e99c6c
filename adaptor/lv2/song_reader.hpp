// Where the song is, of what hosts tell: the whole position or parts of it, once or in each block.
#pragma once

#include "adaptor/host_side.hpp"
#include "adaptor/lv2/atoms.hpp"

namespace zum::lv2 {

/// [audio]
class SongReader {
 public:
  /// `rate` in Hz.
  SongReader(const Urids& words, double rate) : urids(words), sampleRate(rate) {}

  /// Moves the song by a time:Position; what that does not tell, or tells as nonsense, stays.
  void take(const AtomView& position, HostSide::Song& song) ZUM_REALTIME;

 private:
  const Urids& urids;
  const double sampleRate;
  double beatsPerBar = 4.0;
  double beatUnit = 4.0;        // what a beat is: 4 is a quarter note
  double beatsPerMinute = 0.0;  // 0 until it is told
};

}  // namespace zum::lv2
