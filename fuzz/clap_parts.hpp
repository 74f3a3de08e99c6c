// What a CLAP host of random bytes hands in. All memory is exactly as long as the interface asks.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "adaptor/clap/interface.hpp"
#include "core/parameter_table.hpp"
#include "fuzz/bytes.hpp"

namespace zum::fuzz {

inline clap_id anyId(Bytes& in) {
  const auto number = in.take<std::uint32_t>();
  return number % 16 == 0 ? number : static_cast<clap_id>(faceTags()[number % kFaceParameters]);
}

/// A list that a block reads; some of it is holes.
class InEvents {
 public:
  explicit InEvents(Bytes& in) : events(in.below(9)) {
    for (Event& event : events) {
      const unsigned kind = in.below(32);
      if (kind == 31) continue;
      const bool isWhole = kind != 30;
      const unsigned size = isWhole ? sizeof(clap_event_transport_t) : in.below(64);
      clap_event_header_t header{size, in.below(140), CLAP_CORE_EVENT_SPACE_ID,
                                 static_cast<std::uint16_t>(kind % 13), in.below(4)};
      if (kind == 29) header.time = in.take<std::uint32_t>(), header.space_id = 7;
      event.resize(std::max<std::size_t>(header.size, sizeof header));
      for (std::size_t i = sizeof header; i < std::min<std::size_t>(event.size(), 56); ++i) {
        event[i] = in.take<std::byte>();
      }
      std::memcpy(event.data(), &header, sizeof header);
      if (header.type != CLAP_EVENT_PARAM_VALUE || !isWhole) continue;
      const clap_id id = anyId(in);
      std::memcpy(&event[offsetof(clap_event_param_value_t, param_id)], &id, sizeof id);
    }
  }

  clap_input_events_t list{
      this,
      [](const clap_input_events_t* of) {
        return static_cast<std::uint32_t>(static_cast<InEvents*>(of->ctx)->events.size());
      },
      [](const clap_input_events_t* of, std::uint32_t index) {
        const Event& event = static_cast<InEvents*>(of->ctx)->events.at(index);
        const void* const first = event.empty() ? nullptr : event.data();
        return static_cast<const clap_event_header_t*>(first);
      }};

 private:
  using Event = std::vector<std::byte>;
  std::vector<Event> events;
};

/// With room for so many.
struct OutEvents {
  mutable unsigned room;
  clap_output_events_t list{this,
                            [](const clap_output_events_t* to, const clap_event_header_t* event) {
                              unsigned& left = static_cast<OutEvents*>(to->ctx)->room;
                              demand(event->size >= sizeof *event);
                              return left > 0 && left-- > 0;
                            }};
};

/// 0 to 3 channels of sound, mostly 2.
struct Port {
  Port(Bytes& in, std::size_t frames) : channels(in.below(8) == 0 ? in.below(4) : 2) {
    for (auto& channel : channels) {
      channel.resize(frames, static_cast<float>(in.take<std::int8_t>()) / 128.0F);
      pointers.push_back(channel.data());
    }
    const unsigned way = in.below(32);
    if (way == 0 && !pointers.empty()) pointers[0] = nullptr;
    buffer.data32 = way == 1 ? nullptr : pointers.data();
    buffer.channel_count = static_cast<std::uint32_t>(pointers.size());
  }
  Port(const Port&) = delete;
  Port& operator=(const Port&) = delete;

  std::vector<std::vector<float>> channels;
  std::vector<float*> pointers;
  clap_audio_buffer_t buffer{};
};

inline void demandNumbers(const clap_audio_buffer_t& sound, std::size_t frames) {
  for (std::uint32_t i = 0; sound.data32 != nullptr && i < sound.channel_count; ++i) {
    for (std::size_t frame = 0; sound.data32[i] != nullptr && frame < frames; ++frame) {
      demand(std::isfinite(sound.data32[i][frame]));
    }
  }
}

}  // namespace zum::fuzz
