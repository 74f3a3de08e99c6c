// The programs of the host's list: the sound as it is, the factory presets, the user's.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "adaptor/vst3/ids.hpp"
#include "core/uni_client.hpp"

namespace zum::vst3 {

/// Sessions keep a program as its place in parts of the list's length. So the list is equally long
/// everywhere, and factory presets have the same places with or without their files. Behind them
/// come presets of the user's, as many as there is room for, as the bank was when the effect was
/// made. Empty places have a name, too: there are hosts that count those alone.
class ProgramList {
 public:
  static constexpr int kPlaces = 256;
  static constexpr int kSteps = kPlaces - 1;
  /// Of a sound that is none of the list's programs. Chosen, it leaves the sound alone; but then a
  /// program that was changed since may be chosen again.
  static constexpr int kAsItIs = 0;

  explicit ProgramList(KvUniClient& played);

  /// "Folder/Name", "-" for an empty place; empty for one that there is not.
  std::string_view nameOf(int place) const ZUM_REALTIME;
  /// -1 for a name that there is not.
  int find(std::string_view name) const;

  // Values of the program's parameter, 0 to 1.
  static int placeOf(double value) ZUM_REALTIME { return nearest(value * kSteps); }
  static double valueOf(int place) ZUM_REALTIME { return static_cast<double>(place) / kSteps; }

  /// [any] The program that was taken last, whatever was turned since.
  int current() const ZUM_REALTIME;
  /// [any but audio] Finds out what current() is where another than this list loaded a preset, or
  /// the sound got another name by being saved.
  void look();
  /// [any but audio] False where there is nothing to play.
  bool play(int place);
  /// [audio] Between two parts of a block. False also where only play() can.
  bool tryPlay(int place) ZUM_REALTIME;

 private:
  /// A place, and which of the presets that the effect took over stands there.
  struct Heard {
    std::uint32_t preset;
    std::int32_t place;
  };
  void hear(int place) ZUM_REALTIME { heard = Heard{effect.presetCount(), place}; }
  int placeOfSound() const;
  bool playInstalled(int place);

  KvUniClient& effect;
  std::vector<std::string> names;  // by place
  std::atomic<Heard> heard;
};

}  // namespace zum::vst3
