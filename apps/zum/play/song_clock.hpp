// Where a song is that plays from its beginning on, counted in frames: no sum of small steps that
// would depend on the size of blocks.
#pragma once

#include <cstdint>

#include "engine/realtime.hpp"

namespace zum {

class SongClock {
 public:
  SongClock() = default;
  /// `rate` in Hz, `tempo` in quarter notes per minute.
  SongClock(double rate, double tempo) : sampleRate(rate), beatsPerMinute(tempo) {}

  void advance(std::int64_t frames) ZUM_REALTIME { played += frames; }
  /// From here on.
  void setTempo(double tempo) ZUM_REALTIME {
    if (tempo == beatsPerMinute) return;
    before = beats();
    played = 0;
    beatsPerMinute = tempo;
  }
  double tempo() const ZUM_REALTIME { return beatsPerMinute; }
  /// Quarter notes.
  double beats() const ZUM_REALTIME {
    return before + static_cast<double>(played) / sampleRate * beatsPerMinute / 60.0;
  }

 private:
  double sampleRate = 44100.0;
  double beatsPerMinute = 120.0;
  double before = 0.0;      // beats at the last change of tempo
  std::int64_t played = 0;  // frames since
};

}  // namespace zum
