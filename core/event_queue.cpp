#include "core/event_queue.hpp"

#include <algorithm>
#include <limits>

namespace zum {
namespace {

// Hosts may send any time at all.
std::int32_t bounded(std::int64_t time) ZUM_REALTIME {
  using Limits = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(time, Limits::min(), Limits::max()));
}
std::int32_t difference(std::int32_t a, std::int32_t b) ZUM_REALTIME {
  return bounded(std::int64_t{a} - b);
}

}  // namespace

void EventQueue::insert(EngineEvent event) ZUM_REALTIME {
  if (size() == kRoom) thinOut();
  if (end == kRoom) {
    std::copy(events.begin() + static_cast<std::ptrdiff_t>(first), events.end(), events.begin());
    end -= first;
    first = 0;
  }
  std::size_t at = first;
  for (; at < end && event.time >= events[at].time; ++at) {
    event.time = difference(event.time, events[at].time);
  }
  for (std::size_t i = end; i > at; --i) {
    events[i] = events[i - 1];
    events[i].time = difference(events[i].time, event.time);
  }
  events[at] = event;
  ++end;
}

// From the end on, so that the last of a kind stay. The time of an event that goes is added to the
// one behind it, so that all others stay due when they were.
void EventQueue::thinOut() ZUM_REALTIME {
  std::array<std::size_t, kEventKinds> kept{};
  std::size_t start = end;
  for (std::size_t i = end; i-- > first;) {
    const EngineEvent event = events[i];
    const std::size_t kind = kindOf(event);
    if (kind < kEventKinds && kept[kind] < mostOfItsKind(event)) {
      ++kept[kind];
      events[--start] = event;
    } else if (start < end) {
      events[start].time = bounded(std::int64_t{events[start].time} + event.time);
    }
  }
  first = start;
}

void EventQueue::age(std::int32_t frames) ZUM_REALTIME {
  if (size() > 0) events[first].time = difference(events[first].time, frames);
}

bool EventQueue::next(EngineEvent& event) ZUM_REALTIME {
  if (size() == 0 || events[first].time > 0) return false;
  event = events[first++];
  if (first == end) first = end = 0;
  return true;
}

void EventQueue::cancelNoteOn(std::int32_t note) ZUM_REALTIME {
  for (std::size_t i = first; i < end; ++i) {
    EngineEvent& event = events[i];
    if (event.code != EngineEvent::kNoteOn || event.data1 != note) continue;
    event.code = EngineEvent::kCancelled;
    return;
  }
}

}  // namespace zum
