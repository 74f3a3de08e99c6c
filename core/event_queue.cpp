#include "core/event_queue.hpp"

#include <algorithm>
#include <limits>

namespace zum {
namespace {

// Hosts may send any time at all.
std::int32_t difference(std::int32_t a, std::int32_t b) ZUM_REALTIME {
  using Limits = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(
      std::clamp<std::int64_t>(std::int64_t{a} - b, Limits::min(), Limits::max()));
}

}  // namespace

bool EventQueue::insert(EngineEvent event) ZUM_REALTIME {
  if (size() == kRoom) return false;
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
  return true;
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
