#include "adaptor/clap/edits.hpp"

#include <bit>

#include "engine/shared_value.hpp"

namespace zum::clap {
namespace {

constexpr std::uint64_t bitOf(int position) ZUM_REALTIME { return std::uint64_t{1} << position; }

int tagAt(int position) ZUM_REALTIME { return faceTags()[static_cast<std::size_t>(position)]; }

template <class Event>
clap_event_header_t headerOf(std::uint32_t frame, std::uint16_t type, std::uint32_t flags)
    ZUM_REALTIME {
  return {sizeof(Event), frame, CLAP_CORE_EVENT_SPACE_ID, type, flags};
}

// The list copies it, and belongs to the block.
bool push(const clap_output_events_t& list, const clap_event_header_t& event) ZUM_REALTIME {
  return trusted([&] { return list.try_push(&list, &event); });
}

}  // namespace

bool pushValue(const clap_output_events_t& list, std::uint32_t frame, int tag, double plain,
               std::uint32_t flags) ZUM_REALTIME {
  clap_event_param_value_t event{};
  event.header = headerOf<clap_event_param_value_t>(frame, CLAP_EVENT_PARAM_VALUE, flags);
  event.param_id = static_cast<clap_id>(tag);
  event.note_id = event.port_index = event.channel = event.key = -1;  // of all
  event.value = plain;
  return push(list, event.header);
}

bool pushGesture(const clap_output_events_t& list, std::uint16_t type, int tag) ZUM_REALTIME {
  clap_event_param_gesture_t event{};
  event.header = headerOf<clap_event_param_gesture_t>(0, type, CLAP_EVENT_IS_LIVE);
  event.param_id = static_cast<clap_id>(tag);
  return push(list, event.header);
}

// ---- [main]

void Edits::begin(int position) {
  held.fetch_or(bitOf(position));
  touched.fetch_or(bitOf(position));
}

void Edits::move(int position, float plain) {
  storeShared(values[static_cast<std::size_t>(position)], plain);
  moved.fetch_or(bitOf(position));
}

void Edits::end(int position) {
  held.fetch_and(~bitOf(position));
  touched.fetch_or(bitOf(position));
}

// ---- [audio]

void Edits::tell(const clap_output_events_t& list) ZUM_REALTIME {
  if (!hasUntold()) return;
  // In this order: whatever a hand does meanwhile is touched once more, and told by the next call.
  std::uint64_t due = touched.exchange(0);
  std::uint64_t moves = moved.exchange(0);
  const std::uint64_t holds = held.load();
  for (due |= moves; due != 0; due &= due - 1) {
    if (tellOne(list, std::countr_zero(due), moves, holds)) continue;
    touched.fetch_or(due);
    moved.fetch_or(moves);
    return;
  }
}

bool Edits::tellOne(const clap_output_events_t& list, int position, std::uint64_t& moves,
                    std::uint64_t holds) ZUM_REALTIME {
  const std::uint64_t bit = bitOf(position);
  const int tag = tagAt(position);
  if ((told & bit) == 0) {
    if (((moves | holds) & bit) == 0) return true;  // taken and let go, and nothing became of it
    if (!pushGesture(list, CLAP_EVENT_PARAM_GESTURE_BEGIN, tag)) return false;
    told |= bit;
  }
  if ((moves & bit) != 0) {
    const float plain = loadShared(values[static_cast<std::size_t>(position)]);
    if (!pushValue(list, 0, tag, static_cast<double>(plain), CLAP_EVENT_IS_LIVE)) return false;
    moves &= ~bit;
  }
  if ((holds & bit) != 0) return true;
  if (!pushGesture(list, CLAP_EVENT_PARAM_GESTURE_END, tag)) return false;
  told &= ~bit;
  return true;
}

}  // namespace zum::clap
