// What the host's control ports say, and which of it is news. Positions are those of faceTags().
//
// A port holds its value as long as the host likes, also when a state, a program or a learned
// controller has moved the parameter since: only a port that moves counts. What the window tells
// the host comes back through the port, late and perhaps by way of values that were told before,
// and must not take the knob back.
#pragma once

#include <array>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "adaptor/lv2/ports.hpp"
#include "engine/realtime.hpp"

namespace zum::lv2 {

class ControlPorts {
 public:
  /// `held`: what the effect starts with, so that ports that say otherwise count from the first
  /// block on. `patienceFrames`: how long what was told may take to come back.
  ControlPorts(const PortValues& held, std::int32_t patienceFrames);

  /// [audio] Null: the port keeps its value.
  void connect(std::size_t position, const float* place) ZUM_REALTIME;
  /// [audio] Once a block. Calls moved(position, value) for each port that the host has moved.
  template <class Moved>
  void take(std::int32_t frames, Moved&& moved) ZUM_REALTIME;
  /// [any] A state wins over what ports hold. Where no block has run yet nobody knows what they
  /// held before, and the first values are no news; later the rule is as always.
  void takeState() { trusts.store(true); }

  /// [main] This is about to be told to the host.
  void tell(std::size_t position, float value);

 private:
  /// The bits of a float: NaN is equal to itself.
  using Word = std::uint32_t;

  std::uint64_t moved() const ZUM_REALTIME;
  bool isEcho(std::size_t position) ZUM_REALTIME;
  std::uint64_t giveUp(std::int32_t frames) ZUM_REALTIME;

  // [audio]
  std::array<const float*, kFaceParameters> places{};
  PortValues unconnected;
  std::array<Word, kFaceParameters> known{};  // what ports said in the last block
  bool isFirst = true;
  std::uint64_t unheard = 0;  // moved while an echo was awaited, to something else
  std::uint32_t tellsBefore = 0;
  std::int32_t waited = 0;  // frames since the last one was told
  const std::int32_t patience;

  // [any]
  std::array<std::atomic<Word>, kFaceParameters> told{};
  std::atomic<std::uint64_t> awaited{0};
  std::atomic<std::uint32_t> tells{0};
  std::atomic<bool> trusts{false};
};

template <class Moved>
void ControlPorts::take(std::int32_t frames, Moved&& tellMoved) ZUM_REALTIME {
  std::uint64_t news = moved();
  const bool waits = awaited.load() != 0;
  const bool trusting = isFirst && trusts.load();
  isFirst = false;
  if (news == 0 && !waits) return;
  for (; news != 0; news &= news - 1) {
    const auto position = static_cast<std::size_t>(std::countr_zero(news));
    const float value = *places[position];
    known[position] = std::bit_cast<Word>(value);
    if (!isEcho(position) && !trusting) tellMoved(position, value);
  }
  if (!waits) return;
  for (std::uint64_t late = giveUp(frames); late != 0; late &= late - 1) {
    const auto position = static_cast<std::size_t>(std::countr_zero(late));
    tellMoved(position, std::bit_cast<float>(known[position]));
  }
}

}  // namespace zum::lv2
