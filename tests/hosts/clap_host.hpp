// A small CLAP host for tests: the finished file, and what goes in and out of an instance.
#pragma once

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <utility>
#include <vector>

#include "tests/hosts/clap_instance.hpp"
#include "tests/support/realtime_watch.hpp"
#include "tests/support/test_host.hpp"

namespace zum::test {

// ---- events

union ClapEvent {
  clap_event_header_t header;
  clap_event_param_value_t value;
  clap_event_param_gesture_t gesture;
  clap_event_midi_t midi;
  clap_event_note_t note;
  clap_event_transport_t transport;
};

template <class Record>
ClapEvent eventOf(Record ClapEvent::*member, std::uint32_t frame, int type) {
  ClapEvent event{};
  event.*member = Record{};
  const auto kind = static_cast<std::uint16_t>(type);
  event.header = {sizeof(Record), frame, CLAP_CORE_EVENT_SPACE_ID, kind, 0};
  return event;
}

inline ClapEvent valueEvent(std::uint32_t frame, clap_id id, double plain) {
  ClapEvent event = eventOf(&ClapEvent::value, frame, CLAP_EVENT_PARAM_VALUE);
  event.value = {event.header, id, nullptr, -1, -1, -1, -1, plain};
  return event;
}

inline ClapEvent midiEvent(std::uint32_t frame, std::array<int, 3> bytes) {
  ClapEvent event = eventOf(&ClapEvent::midi, frame, CLAP_EVENT_MIDI);
  for (std::size_t i = 0; i < 3; ++i) event.midi.data[i] = static_cast<std::uint8_t>(bytes[i]);
  return event;
}

inline ClapEvent transportEvent(std::uint32_t frame, std::uint32_t flags, double tempo,
                                double beats = 0.0) {
  ClapEvent event = eventOf(&ClapEvent::transport, frame, CLAP_EVENT_TRANSPORT);
  event.transport.flags = flags | CLAP_TRANSPORT_HAS_TEMPO;
  event.transport.tempo = tempo;
  event.transport.song_pos_beats = static_cast<clap_beattime>(beats * CLAP_BEATTIME_FACTOR);
  return event;
}

/// What a host hands in.
struct ClapSent {
  static std::uint32_t size(const clap_input_events_t* of) {
    return static_cast<std::uint32_t>(static_cast<ClapSent*>(of->ctx)->events.size());
  }
  static const clap_event_header_t* get(const clap_input_events_t* of, std::uint32_t index) {
    const ClapEvent& event = static_cast<ClapSent*>(of->ctx)->events[index];
    return event.header.size == 0 ? nullptr : &event.header;  // a hole
  }
  std::vector<ClapEvent> events;
  clap_input_events_t list{this, size, get};
};

/// What it gets back. Never allocates in the block.
struct ClapHeard {
  static bool push(const clap_output_events_t* of, const clap_event_header_t* event) {
    auto& heard = *static_cast<ClapHeard*>(of->ctx);
    if (heard.count == heard.room) return false;
    std::memcpy(&heard.events[heard.count++], event, event->size);
    return true;
  }
  /// Types of one parameter's events, in order; the last value in `last`.
  std::vector<int> typesOf(int tag, double* last = nullptr) const {
    std::vector<int> types;
    for (std::size_t i = 0; i < count; ++i) {
      const bool isValue = events[i].header.type == CLAP_EVENT_PARAM_VALUE;
      const clap_id id = isValue ? events[i].value.param_id : events[i].gesture.param_id;
      if (id != static_cast<clap_id>(tag)) continue;
      types.push_back(events[i].header.type);
      if (isValue && last != nullptr) *last = events[i].value.value;
    }
    return types;
  }
  std::array<ClapEvent, 512> events{};
  std::size_t count = 0;
  std::size_t room = 512;
  clap_output_events_t list{this, push};
};

// ---- the file, and an instance of it

struct ClapFile {
  ClapFile() : library(dlopen(ZUM_CLAP, RTLD_NOW | RTLD_LOCAL)) {
    entry = static_cast<const clap_plugin_entry_t*>(dlsym(library, "clap_entry"));
    if (entry == nullptr || !entry->init(ZUM_CLAP)) throw std::runtime_error("no entry");
    factory = static_cast<const clap_plugin_factory_t*>(entry->get_factory(CLAP_PLUGIN_FACTORY_ID));
  }
  const clap_plugin_t* make(const clap_host_t* host, const char* id) const {
    return factory->create_plugin(factory, host, id);
  }
  void* library;
  const clap_plugin_entry_t* entry;
  const clap_plugin_factory_t* factory;
};

inline const ClapFile& clapFile() {
  static const ClapFile loaded;
  return loaded;
}

/// With a rate it plays, else it is not even active.
class ClapPlug : public ClapInstance {
 public:
  explicit ClapPlug(double rate = 44100.0, bool hasTimers = true)
      : ClapInstance(*clapFile().entry, hasTimers) {
    if (rate > 0.0) start(rate);
  }
  ~ClapPlug() { stop(); }
  ClapPlug(const ClapPlug&) = delete;
  ClapPlug& operator=(const ClapPlug&) = delete;

  void start(double rate = 44100.0) {
    ASSERT_TRUE(plugin->activate(plugin, rate, 1, 8192));
    ASSERT_TRUE(plugin->start_processing(plugin));
    isPlaying = true;
  }
  void stop() {
    if (isPlaying) plugin->stop_processing(plugin), plugin->deactivate(plugin);
    isPlaying = false;
  }
  /// What is to happen on the main thread.
  void answerCallbacks() {
    if (host.callbacks.exchange(0) > 0) plugin->on_main_thread(plugin);
  }

  const clap_plugin_gui_t& gui() const { return get<clap_plugin_gui_t>(CLAP_EXT_GUI); }
  double value(int tag) const {
    double value = std::numeric_limits<double>::quiet_NaN();
    params().get_value(plugin, static_cast<clap_id>(tag), &value);
    return value;
  }
  void set(const std::vector<std::pair<int, double>>& values) {
    ClapSent given;
    for (const auto& [tag, plain] : values) {
      given.events.push_back(valueEvent(0, static_cast<clap_id>(tag), plain));
    }
    params().flush(plugin, &given.list, nullptr);
  }
  void flush() {
    heard.count = 0;
    params().flush(plugin, nullptr, &heard.list);
  }

  /// One block in the middle of larger buffers; what it tells is in `heard`.
  clap_process_status process(const Stereo& in, Stereo& out, std::size_t at, std::uint32_t frames,
                              const Stereo* side = nullptr) {
    const auto channels = [at](const Stereo& of) {
      return std::array{const_cast<float*>(of.left.data() + at),
                        const_cast<float*>(of.right.data() + at)};
    };
    auto inputs = channels(in);
    auto sides = channels(side != nullptr ? *side : in);
    auto outputs = channels(out);
    const clap_audio_buffer_t from[] = {{inputs.data(), nullptr, 2, 0, 0},
                                        {sides.data(), nullptr, 2, 0, 0}};
    clap_audio_buffer_t to{outputs.data(), nullptr, 2, 0, 0};
    const clap_process_t block{-1, frames,     transport,  from, &to, side != nullptr ? 2U : 1U,
                               1,  &sent.list, &heard.list};
    heard.count = 0;
    const RealtimeWatch watch;
    return plugin->process(plugin, &block);
  }
  Stereo render(const Stereo& in, std::uint32_t block = 512, const Stereo* side = nullptr) {
    Stereo out(in.frames());
    for (std::size_t at = 0; at < in.frames(); at += block) {
      const auto left = static_cast<std::uint32_t>(in.frames() - at);
      EXPECT_EQ(process(in, out, at, std::min(block, left), side), CLAP_PROCESS_CONTINUE);
    }
    return out;
  }

  const clap_event_transport_t* transport = nullptr;
  ClapSent sent;
  ClapHeard heard;

 private:
  bool isPlaying = false;
};

}  // namespace zum::test
