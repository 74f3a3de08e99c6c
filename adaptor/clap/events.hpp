// [audio] A host's list of events, read with care: foreign spaces, short records and unknown
// parameters are passed over.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

#include "adaptor/clap/interface.hpp"
#include "core/parameter_table.hpp"

namespace zum::clap {

/// The record of a type, null for one that is shorter than its type.
template <class Event>
const Event* recordOf(const clap_event_header_t& header) ZUM_REALTIME {
  return header.size >= sizeof(Event) ? reinterpret_cast<const Event*>(&header) : nullptr;
}

/// Frames beyond any block count as its end.
inline std::int32_t frameOf(const clap_event_header_t& header) ZUM_REALTIME {
  return static_cast<std::int32_t>(std::min<std::uint32_t>(header.time, INT32_MAX));
}

using MidiBytes = std::array<std::uint8_t, 3>;

/// A note as MIDI tells it. Without a key all notes end.
inline MidiBytes midiOf(const clap_event_note_t& note) ZUM_REALTIME {
  const bool starts = note.header.type == CLAP_EVENT_NOTE_ON;
  constexpr MidiBytes kAllNotesOff{0xB0, 123, 0};
  if (note.key < 0 || note.key > 127) return starts ? MidiBytes{} : kAllNotesOff;
  // a velocity of 0 still starts a note here, and ends one in MIDI
  const double nearest = 127.0 * (note.velocity > 0.0 ? std::min(note.velocity, 1.0) : 0.0) + 0.5;
  const int strength = std::max(static_cast<int>(nearest), 1);
  const int channel = note.channel & 0x0F;
  return {static_cast<std::uint8_t>((starts ? 0x90 : 0x80) | channel),
          static_cast<std::uint8_t>(note.key), static_cast<std::uint8_t>(strength)};
}

/// Tells `sink` of one event: setPlain(), midi(), moveSong(), each with its frame ahead.
template <class Sink>
void deliverOne(const clap_event_header_t& header, Sink& sink) ZUM_REALTIME {
  if (header.space_id != CLAP_CORE_EVENT_SPACE_ID) return;
  const std::int32_t frame = frameOf(header);
  switch (header.type) {
    case CLAP_EVENT_PARAM_VALUE:
      if (const auto* event = recordOf<clap_event_param_value_t>(header); event != nullptr) {
        const int tag =
            event->param_id <= clap_id{kLastTag} ? static_cast<int>(event->param_id) : -1;
        // held in what every parameter has room for, so that a float can hold it, too
        const double plain = std::clamp(event->value, -1.0, 1000.0);
        if (facePosition(tag) >= 0) sink.setPlain(frame, tag, static_cast<float>(plain));
      }
      break;
    case CLAP_EVENT_MIDI:
      if (const auto* event = recordOf<clap_event_midi_t>(header); event != nullptr) {
        if (event->port_index == 0) sink.midi(frame, event->data);
      }
      break;
    case CLAP_EVENT_NOTE_ON:
    case CLAP_EVENT_NOTE_OFF:
    case CLAP_EVENT_NOTE_CHOKE:
      if (const auto* event = recordOf<clap_event_note_t>(header); event != nullptr) {
        sink.midi(frame, midiOf(*event).data());
      }
      break;
    case CLAP_EVENT_TRANSPORT:
      if (const auto* event = recordOf<clap_event_transport_t>(header); event != nullptr) {
        sink.moveSong(frame, *event);
      }
      break;
    default: break;
  }
}

template <class Sink>
void deliver(const clap_input_events_t* list, Sink& sink) ZUM_REALTIME {
  if (list == nullptr) return;
  // the list belongs to the block, and is made to be read in it
  const std::uint32_t count = trusted([&] { return list->size(list); });
  for (std::uint32_t i = 0; i < count; ++i) {
    const clap_event_header_t* const header = trusted([&] { return list->get(list, i); });
    if (header != nullptr) deliverOne(*header, sink);
  }
}

}  // namespace zum::clap
