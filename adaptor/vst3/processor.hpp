// The block call: buffers, transport and events of a host's block on their way to the effect, and
// back what moved by itself.
#pragma once

#include <travesty/audio_processor.h>

#include <atomic>
#include <cstdint>
#include <vector>

#include "adaptor/host_side.hpp"
#include "adaptor/vst3/values.hpp"

namespace zum::vst3 {

class Processor {
 public:
  Processor(HostSide& hosted, Values& all) : host(hosted), values(all) {}

  // [main] while no block runs
  /// False for what the effect cannot do, and then nothing changes.
  bool setUp(const v3_process_setup& setup);
  void setActive(bool active);
  /// [main]
  void hearSideChain(bool heard) { hearsSideChain = heard; }

  /// [audio]
  v3_result process(const v3_process_data& data) ZUM_REALTIME;

  /// [main] What moved and could not be told, as the host takes no values from the block: bits by
  /// facePosition(), cleared.
  std::uint64_t takeUntold() { return untold.exchange(0); }

 private:
  struct Pair {
    float* left = nullptr;
    float* right = nullptr;
    bool isComplete() const ZUM_REALTIME { return left != nullptr && right != nullptr; }
  };
  static Pair busOf(const v3_audio_bus_buffers* buses, std::int32_t count, std::int32_t index)
      ZUM_REALTIME;
  HostSide::Song songOf(const v3_process_context* context) ZUM_REALTIME;
  void playBlock(const v3_process_data& data, const HostSide::Buffers& buffers) ZUM_REALTIME;
  void tellChanges(const v3_process_data& data) ZUM_REALTIME;

  HostSide& host;
  Values& values;
  double rate = 44100.0;
  std::int32_t mostFrames = 1024;
  std::atomic<bool> hearsSideChain{false};
  std::vector<float> silence;  // for an input that is not there
  std::vector<float> unheard;  // for an output that is not there
  std::atomic<std::uint64_t> untold{0};
};

}  // namespace zum::vst3
