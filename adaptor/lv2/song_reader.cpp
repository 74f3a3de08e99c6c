#include "adaptor/lv2/song_reader.hpp"

namespace zum::lv2 {
namespace {

/// False for what no clock can mean, NaN among it.
bool isWithin(double value, double low, double high) ZUM_REALTIME {
  return value >= low && value <= high;
}

}  // namespace

void SongReader::take(const AtomView& position, HostSide::Song& song) ZUM_REALTIME {
  std::optional<double> bar;
  std::optional<double> barBeat;
  std::optional<double> beat;
  std::optional<double> frame;
  constexpr double kFar = 1e12;
  forEachProperty(position, [&](LV2_URID key, const AtomView& atom) ZUM_REALTIME {
    const std::optional<double> number = numberOf(atom, urids);
    if (!number || !isWithin(*number, -kFar, kFar)) return;
    if (key == urids.bar) bar = number;
    if (key == urids.barBeat) barBeat = number;
    if (key == urids.beat) beat = number;
    if (key == urids.frame) frame = number;
    if (key == urids.speed) song.isPlaying = *number > 0.0;
    if (key == urids.beatUnit && isWithin(*number, 1.0, 128.0)) beatUnit = *number;
    if (key == urids.beatsPerBar && isWithin(*number, 0.01, 1000.0)) beatsPerBar = *number;
    if (key == urids.beatsPerMinute && isWithin(*number, 0.1, 10000.0)) beatsPerMinute = *number;
  });
  const double quarters = 4.0 / beatUnit;  // of a beat
  if (beatsPerMinute > 0.0) song.tempo = beatsPerMinute * quarters;
  if (bar && barBeat) {
    song.beats = (*bar * beatsPerBar + *barBeat) * quarters;
  } else if (beat) {
    song.beats = *beat * quarters;
  } else if (frame) {
    song.beats = *frame / sampleRate * song.tempo / 60.0;
  }
}

}  // namespace zum::lv2
