// A small CLAP host for tests: the finished file, what goes in and out of an instance, and the list
// of what the host was asked for.
#pragma once

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <limits>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "adaptor/clap/interface.hpp"
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

/// A state in pieces.
struct ClapStream {
  static std::int64_t write(const clap_ostream_t* to, const void* from, std::uint64_t count) {
    auto& all = *static_cast<ClapStream*>(to->ctx);
    const auto taken = std::min<std::size_t>(count, all.piece);
    all.bytes.append(static_cast<const char*>(from), taken);
    return static_cast<std::int64_t>(taken);
  }
  static std::int64_t read(const clap_istream_t* from, void* to, std::uint64_t count) {
    auto& all = *static_cast<ClapStream*>(from->ctx);
    const auto given = std::min({std::size_t{count}, all.piece, all.bytes.size()});
    std::memcpy(to, all.bytes.data(), given);
    all.bytes.erase(0, given);
    return static_cast<std::int64_t>(given);
  }
  std::string bytes;
  std::size_t piece;  // at most
  clap_ostream_t out{this, write};
  clap_istream_t in{this, read};
};

// ---- the file, and the host of one instance

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

struct ClapHost {
  using Host = clap_host_t;
  static ClapHost& of(const Host* host) { return *static_cast<ClapHost*>(host->host_data); }
  static void ignore(const Host* /*host*/) {}
  static void callback(const Host* host) { ++of(host).callbacks; }
  static const void* extension(const Host* host, const char* wanted) {
    static const clap_host_params_t params{[](const Host* asked, std::uint32_t flags) {
                                             if (flags == CLAP_PARAM_RESCAN_VALUES)
                                               ++of(asked).rescans;
                                           },
                                           [](const Host*, clap_id, std::uint32_t) {},
                                           [](const Host* asked) { ++of(asked).flushes; }};
    static const clap_host_state_t state{[](const Host* asked) { ++of(asked).dirty; }};
    static const clap_host_timer_support_t timers{
        [](const Host* asked, std::uint32_t, clap_id* id) {
          return of(asked).timers.insert(*id = of(asked).nextTimer++).second;
        },
        [](const Host* asked, clap_id id) { return of(asked).timers.erase(id) == 1; }};
    static const clap_host_preset_load_t presets{
        [](const Host* asked, std::uint32_t, const char*, const char*, std::int32_t, const char*) {
          ++of(asked).failed;
        },
        [](const Host* asked, std::uint32_t, const char*, const char*) { ++of(asked).loaded; }};
    const std::string name = wanted;
    if (name == CLAP_EXT_PARAMS) return &params;
    if (name == CLAP_EXT_STATE) return &state;
    if (name == CLAP_EXT_TIMER_SUPPORT && of(host).hasTimers) return &timers;
    return name == CLAP_EXT_PRESET_LOAD ? &presets : nullptr;
  }
  Host record{CLAP_VERSION, this,      "Test Host", "Test", "",
              "1",          extension, ignore,      ignore, callback};
  bool hasTimers = true;
  std::atomic<int> flushes{0}, callbacks{0};  // from any thread
  int rescans = 0, dirty = 0, loaded = 0, failed = 0;
  std::set<clap_id> timers;
  clap_id nextTimer = 7;
};

/// One instance in its host. With a rate it plays, else it is not even active.
class ClapPlug {
 public:
  explicit ClapPlug(double rate = 44100.0, bool hasTimers = true) {
    host.hasTimers = hasTimers;
    plugin = clapFile().make(&host.record, "com.zelvane.zum");
    if (plugin == nullptr || !plugin->init(plugin)) throw std::runtime_error("no plug-in");
    if (rate > 0.0) start(rate);
  }
  ~ClapPlug() {
    stop();
    plugin->destroy(plugin);
  }
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

  template <class Extension>
  const Extension& get(const char* id) const {
    const void* const found = plugin->get_extension(plugin, id);
    if (found == nullptr) throw std::runtime_error(id);
    return *static_cast<const Extension*>(found);
  }
  const clap_plugin_params_t& params() const { return get<clap_plugin_params_t>(CLAP_EXT_PARAMS); }
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

  std::string save(std::size_t piece = 4096) const {
    ClapStream stream{.bytes = {}, .piece = piece};
    EXPECT_TRUE(get<clap_plugin_state_t>(CLAP_EXT_STATE).save(plugin, &stream.out));
    return stream.bytes;
  }
  bool load(const std::string& bytes, std::size_t piece = 4096) const {
    const ClapStream stream{.bytes = bytes, .piece = piece};
    return get<clap_plugin_state_t>(CLAP_EXT_STATE).load(plugin, &stream.in);
  }

  ClapHost host;
  const clap_plugin_t* plugin;
  const clap_event_transport_t* transport = nullptr;
  ClapSent sent;
  ClapHeard heard;

 private:
  bool isPlaying = false;
};

}  // namespace zum::test
