#include "core/latest_events.hpp"

#include <algorithm>

namespace zum {
namespace {

// A word is number, code, first and second data byte; for a note's end, how often it came is in the
// place of the second byte.
constexpr unsigned kNumberShift = 17;

std::uint64_t packed(std::uint64_t number, const EngineEvent& event, std::size_t ends)
    ZUM_REALTIME {
  const auto part = [](std::int32_t value, unsigned bits) ZUM_REALTIME {
    return static_cast<std::uint64_t>(static_cast<std::uint32_t>(value) & ((1U << bits) - 1));
  };
  const bool isEnd = event.code == EngineEvent::kNoteOff;
  return number << kNumberShift | part(event.code - EngineEvent::kNoteOn, 3) << 14U |
         part(event.data1, 7) << 7U | part(isEnd ? static_cast<int>(ends) : event.data2, 7);
}

EngineEvent unpacked(std::uint64_t word, std::int32_t time) ZUM_REALTIME {
  return {.time = time,
          .code = static_cast<EngineEvent::Code>(EngineEvent::kNoteOn + (word >> 14U & 7U)),
          .data1 = static_cast<std::uint8_t>(word >> 7U & 127U),
          .data2 = static_cast<std::uint8_t>(word & 127U)};
}

}  // namespace

void LatestEvents::keep(const EngineEvent& event) ZUM_REALTIME {
  const std::size_t kind = kindOf(event);
  if (kind == kEventKinds) return;
  const std::uint64_t number = kept.load(std::memory_order_relaxed) + 1;
  std::atomic<std::uint64_t>& word = words[kind];
  std::uint64_t before = word.load(std::memory_order_relaxed);
  std::uint64_t now = 0;
  do {  // a second time only when the other thread has just taken it
    const std::size_t ends = std::min<std::size_t>((before & 127U) + 1, mostOfItsKind(event));
    now = packed(number, event, ends);
  } while (!word.compare_exchange_strong(before, now, std::memory_order_relaxed));
  kept.store(number, std::memory_order_release);
}

void LatestEvents::takeInto(EventQueue& queue, std::uint64_t last, std::int32_t time) ZUM_REALTIME {
  if (last == taken.load(std::memory_order_relaxed)) return;
  std::array<std::uint64_t, kEventKinds> found{};
  std::size_t count = 0;
  for (std::atomic<std::uint64_t>& each : words) {
    std::uint64_t word = each.load(std::memory_order_relaxed);
    if (word == 0 || word >> kNumberShift > last) continue;
    if (each.compare_exchange_strong(word, 0, std::memory_order_relaxed)) found[count++] = word;
  }
  std::sort(found.begin(), found.begin() + static_cast<std::ptrdiff_t>(count));
  for (std::size_t i = 0; i < count; ++i) {
    const EngineEvent event = unpacked(found[i], time);
    const int times = event.code == EngineEvent::kNoteOff ? event.data2 : 1;
    for (int k = 0; k < times; ++k) queue.insert(event);
  }
  taken.store(last, std::memory_order_release);
}

}  // namespace zum
