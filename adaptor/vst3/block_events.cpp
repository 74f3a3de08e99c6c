#include "adaptor/vst3/block_events.hpp"

#include <algorithm>

namespace zum::vst3 {
namespace {

std::uint8_t sevenBits(float part) ZUM_REALTIME {
  return static_cast<std::uint8_t>(part > 0.0F ? std::min(part, 1.0F) * 127.0F + 0.5F : 0.0F);
}

/// False for what is no note of this effect.
bool messageOf(const v3_event& event, std::array<std::uint8_t, 3>& message) ZUM_REALTIME {
  if (event.bus_index != 0) return false;
  const auto put = [&](int status, int channel, int pitch, int velocity) ZUM_REALTIME {
    if (channel < 0 || channel > 15 || pitch < 0 || pitch > 127) return false;
    message = {static_cast<std::uint8_t>(status | channel), static_cast<std::uint8_t>(pitch),
               static_cast<std::uint8_t>(velocity)};
    return true;
  };
  switch (event.type) {
    case V3_EVENT_NOTE_ON:  // at a velocity of 0 it would be the end of one
      return put(0x90, event.note_on.channel, event.note_on.pitch,
                 std::max<int>(1, sevenBits(event.note_on.velocity)));
    case V3_EVENT_NOTE_OFF:
      return put(0x80, event.note_off.channel, event.note_off.pitch,
                 sevenBits(event.note_off.velocity));
    default: return false;
  }
}

}  // namespace

// The host's own routines, which it calls real-time safe.
BlockEvents::BlockEvents(v3_param_changes** changes, v3_event_list** events) ZUM_REALTIME
    : notes(events) {
  trusted([&] {
    const std::int32_t queues =
        changes != nullptr ? v3_cpp_obj(changes)->get_param_count(changes) : 0;
    for (std::int32_t i = 0; i < queues && cursors < kParameters; ++i) {
      v3_param_value_queue** const from = v3_cpp_obj(changes)->get_param_data(changes, i);
      if (from == nullptr) continue;
      const int position = positionOfId(v3_cpp_obj(from)->get_param_id(from));
      if (position < 0) continue;
      Cursor cursor{0, i, 0, v3_cpp_obj(from)->get_point_count(from), from, position, 0.0};
      if (readPoint(cursor)) heap[static_cast<std::size_t>(cursors++)] = cursor;
    }
    if (notes != nullptr) {
      noteCount = static_cast<std::int32_t>(
          std::min<std::uint32_t>(v3_cpp_obj(notes)->get_event_count(notes), INT32_MAX));
    }
  });
  std::make_heap(heap.begin(), heap.begin() + cursors, isLater);
  hasNote = readNote();
}

bool BlockEvents::readPoint(Cursor& cursor) ZUM_REALTIME {
  return trusted([&] {
    while (cursor.point < cursor.points) {
      double value = 0.0;
      const v3_result read =
          v3_cpp_obj(cursor.from)->get_point(cursor.from, cursor.point++, &cursor.frame, &value);
      if (read != V3_OK || value != value) continue;
      cursor.value = std::clamp(value, 0.0, 1.0);
      return true;
    }
    return false;
  });
}

bool BlockEvents::readNote() ZUM_REALTIME {
  return trusted([&] {
    while (nextNote < noteCount) {
      v3_event event{};
      if (v3_cpp_obj(notes)->get_event(notes, nextNote++, &event) != V3_OK) continue;
      if (!messageOf(event, note.message)) continue;
      note.frame = event.sample_offset;
      return true;
    }
    return false;
  });
}

bool BlockEvents::next(BlockEvent& event) ZUM_REALTIME {
  if (cursors == 0 || (hasNote && note.frame < heap.front().frame)) {
    if (!hasNote) return false;
    event = note;
    hasNote = readNote();
    return true;
  }
  std::pop_heap(heap.begin(), heap.begin() + cursors, isLater);
  Cursor& first = heap[static_cast<std::size_t>(cursors - 1)];
  event = {first.frame, first.position, first.value, {}};
  if (readPoint(first)) {
    std::push_heap(heap.begin(), heap.begin() + cursors, isLater);
  } else {
    --cursors;
  }
  return true;
}

}  // namespace zum::vst3
