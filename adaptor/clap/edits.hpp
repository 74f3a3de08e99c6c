// What a hand does in the window, on its way into a list of events. The window and the block never
// wait for each other, and nothing can overflow: of each parameter the last value counts, and the
// host hears of each hold from its start to its end.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>

#include "adaptor/clap/interface.hpp"
#include "core/parameter_table.hpp"

namespace zum::clap {

/// [audio] Each appends one event; false when the list takes no more.
bool pushValue(const clap_output_events_t& list, std::uint32_t frame, int tag, double plain,
               std::uint32_t flags) ZUM_REALTIME;
bool pushGesture(const clap_output_events_t& list, std::uint16_t type, int tag) ZUM_REALTIME;

class Edits {
 public:
  // ---- [main] By position in faceTags().
  void begin(int position);
  void move(int position, float plain);
  void end(int position);

  /// [audio] Or whoever flushes parameters instead of it. What a full list refuses comes next time.
  void tell(const clap_output_events_t& list) ZUM_REALTIME;
  /// [any]
  bool hasUntold() const ZUM_REALTIME { return (touched.load() | moved.load()) != 0; }

 private:
  /// False where the list is full; what was told of it no longer stands in `moves`.
  bool tellOne(const clap_output_events_t& list, int position, std::uint64_t& moves,
               std::uint64_t holds) ZUM_REALTIME;

  // bits by position
  std::atomic<std::uint64_t> touched{0};  // something is to be told
  std::atomic<std::uint64_t> moved{0};
  std::atomic<std::uint64_t> held{0};
  std::array<float, kFaceParameters> values{};  // plain, of the last move
  std::uint64_t told = 0;                       // [audio] held, as the host knows it
};

}  // namespace zum::clap
