// Values as a host sets and reads them, 0 to 1, by the position of their parameter: through the
// controller on any thread, and as points of a block.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>

#include "adaptor/host_side.hpp"
#include "adaptor/vst3/block_events.hpp"
#include "adaptor/vst3/ids.hpp"
#include "adaptor/vst3/programs.hpp"

namespace zum::vst3 {

class Values {
 public:
  Values(HostSide& hosted, ProgramList& list) : host(hosted), programs(list) {}

  /// [any] 0 where there is no parameter.
  double get(int position) const ZUM_REALTIME;
  /// [any but audio] The same for the host, which knows it from then on.
  double read(int position);
  /// [any but audio] What the controller is set to. A host tells the controller of its automation,
  /// too, and later than the block: a parameter that has had points since the effect was switched
  /// on hears those alone.
  void set(int position, double value);
  /// [audio] A point, or a note.
  void play(HostSide::Block& block, const BlockEvent& event) ZUM_REALTIME;

  /// [main] From now on the controller is heard again.
  void forgetPoints() { withPoints = 0; }
  /// [main] Plays the program that the audio thread could not.
  void playWanted();
  /// [main] A state has come, and wins over what the host knew.
  void takeState();

 private:
  bool hasPoints(int position) const ZUM_REALTIME;
  void notePoint(int position) ZUM_REALTIME;
  bool isNews(int place) ZUM_REALTIME;
  void playMidi(HostSide::Block& block, const BlockEvent& event) ZUM_REALTIME;

  HostSide& host;
  ProgramList& programs;
  std::atomic<std::uint64_t> withPoints{0};  // bits by position, the program included
  // places of programs
  static constexpr int kNothing = -1;
  std::atomic<int> wanted{kNothing};
  std::atomic<int> known{ProgramList::kAsItIs};  // what the host set or read last
  std::atomic<int> outdated{kNothing};           // what it knew ahead of a state
  std::array<std::atomic<float>, kMidiParameters> midi{};
};

}  // namespace zum::vst3
