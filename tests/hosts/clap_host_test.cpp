// A CLAP host of our own: the finished file as such hosts load it, under a user's hand too, and
// whatever a careless host may do to it. What the effect plays is proved elsewhere; here the linked
// one plays beside it. Run twice like plugin_file_test: with realtime_check preloaded, too.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "adaptor/clap/interface.hpp"
#include "core/parameter_text.hpp"
#include "core/tags.hpp"
#include "state/settings.hpp"
#include "tests/support/own_display.hpp"
#include "tests/support/realtime_watch.hpp"
#include "tests/support/temporary_folder.hpp"
#include "tests/support/test_host.hpp"
// X's macros after that
#include <X11/Xlib.h>

namespace zum::test {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

/// The same numbers each time.
struct Chance {
  std::uint32_t seed = 1;
  std::uint32_t next() { return (seed = seed * 1664525U + 1013904223U) >> 8U; }
};

// ---- events

union Event {
  clap_event_header_t header;
  clap_event_param_value_t value;
  clap_event_param_gesture_t gesture;
  clap_event_midi_t midi;
  clap_event_note_t note;
  clap_event_transport_t transport;
};

template <class Record>
Event eventOf(Record Event::*member, std::uint32_t frame, std::uint16_t type) {
  Event event{};
  event.*member = Record{};
  event.header = {sizeof(Record), frame, CLAP_CORE_EVENT_SPACE_ID, type, 0};
  return event;
}

Event valueEvent(std::uint32_t frame, clap_id id, double plain) {
  Event event = eventOf(&Event::value, frame, CLAP_EVENT_PARAM_VALUE);
  event.value.param_id = id;
  event.value.note_id = event.value.port_index = event.value.channel = event.value.key = -1;
  event.value.value = plain;
  return event;
}

Event midiEvent(std::uint32_t frame, int status, int data1, int data2) {
  Event event = eventOf(&Event::midi, frame, CLAP_EVENT_MIDI);
  std::uint8_t* const data = event.midi.data;
  data[0] = static_cast<std::uint8_t>(status);
  data[1] = static_cast<std::uint8_t>(data1);
  data[2] = static_cast<std::uint8_t>(data2);
  return event;
}

Event transportEvent(std::uint32_t frame, std::uint32_t flags, double tempo, double beats = 0.0) {
  Event event = eventOf(&Event::transport, frame, CLAP_EVENT_TRANSPORT);
  event.transport.flags = flags | CLAP_TRANSPORT_HAS_TEMPO;
  event.transport.tempo = tempo;
  event.transport.song_pos_beats = static_cast<clap_beattime>(beats * CLAP_BEATTIME_FACTOR);
  return event;
}

/// What a host hands in.
struct Sent {
  std::vector<Event> events;
  clap_input_events_t list{
      this,
      [](const clap_input_events_t* of) {
        return static_cast<std::uint32_t>(static_cast<Sent*>(of->ctx)->events.size());
      },
      [](const clap_input_events_t* of, std::uint32_t index) -> const clap_event_header_t* {
        const Event& event = static_cast<Sent*>(of->ctx)->events[index];
        return event.header.size == 0 ? nullptr : &event.header;  // a hole
      }};
};

/// What it gets back. Never allocates in the block.
struct Heard {
  std::array<Event, 512> events{};
  std::size_t count = 0;
  std::size_t room = 512;
  clap_output_events_t list{this,
                            [](const clap_output_events_t* of, const clap_event_header_t* event) {
                              auto& heard = *static_cast<Heard*>(of->ctx);
                              if (heard.count == heard.room) return false;
                              std::memcpy(&heard.events[heard.count++], event, event->size);
                              return true;
                            }};

  /// Types of one parameter's events, in order; the last value in `last`.
  std::vector<int> typesOf(int tag, double* last = nullptr) const {
    std::vector<int> types;
    for (std::size_t i = 0; i < count; ++i) {
      const Event& event = events[i];
      const bool isValue = event.header.type == CLAP_EVENT_PARAM_VALUE;
      const clap_id id = isValue ? event.value.param_id : event.gesture.param_id;
      if (id != static_cast<clap_id>(tag)) continue;
      types.push_back(event.header.type);
      if (isValue && last != nullptr) *last = event.value.value;
    }
    return types;
  }
};

// ---- the host, and what it makes of the file

struct File {
  File() : library(dlopen(ZUM_CLAP, RTLD_NOW | RTLD_LOCAL)) {
    entry = static_cast<const clap_plugin_entry_t*>(dlsym(library, "clap_entry"));
    if (entry == nullptr || !entry->init(ZUM_CLAP)) throw std::runtime_error("no entry");
    factory = static_cast<const clap_plugin_factory_t*>(entry->get_factory(CLAP_PLUGIN_FACTORY_ID));
  }
  void* library;
  const clap_plugin_entry_t* entry;
  const clap_plugin_factory_t* factory;
};

const File& file() {
  static const File loaded;
  return loaded;
}

struct ClapHost {
  bool hasTimers = true;
  std::atomic<int> flushes{0}, callbacks{0};  // from any thread
  int rescans = 0, dirty = 0, loaded = 0, failed = 0;
  std::set<clap_id> timers;
  clap_id nextTimer = 7;

  static ClapHost& of(const clap_host_t* host) { return *static_cast<ClapHost*>(host->host_data); }
  clap_host_t record{CLAP_VERSION,
                     this,
                     "Test Host",
                     "Test",
                     "",
                     "1",
                     &ClapHost::extension,
                     [](const clap_host_t*) {},
                     [](const clap_host_t*) {},
                     [](const clap_host_t* host) { ++of(host).callbacks; }};

  static const void* extension(const clap_host_t* host, const char* wanted) {
    static const clap_host_params_t params{
        [](const clap_host_t* of, std::uint32_t flags) {
          if (flags == CLAP_PARAM_RESCAN_VALUES) ++ClapHost::of(of).rescans;
        },
        [](const clap_host_t*, clap_id, std::uint32_t) {},
        [](const clap_host_t* of) { ++ClapHost::of(of).flushes; }};
    static const clap_host_state_t state{[](const clap_host_t* of) { ++ClapHost::of(of).dirty; }};
    static const clap_host_timer_support_t timers{
        [](const clap_host_t* of, std::uint32_t, clap_id* id) {
          return ClapHost::of(of).timers.insert(*id = ClapHost::of(of).nextTimer++).second;
        },
        [](const clap_host_t* of, clap_id id) { return ClapHost::of(of).timers.erase(id) == 1; }};
    static const clap_host_preset_load_t presets{
        [](const clap_host_t* of, std::uint32_t, const char*, const char*, std::int32_t,
           const char*) { ++ClapHost::of(of).failed; },
        [](const clap_host_t* of, std::uint32_t, const char*, const char*) {
          ++ClapHost::of(of).loaded;
        }};
    const std::string name = wanted;
    if (name == CLAP_EXT_PARAMS) return &params;
    if (name == CLAP_EXT_STATE) return &state;
    if (name == CLAP_EXT_TIMER_SUPPORT && of(host).hasTimers) return &timers;
    return name == CLAP_EXT_PRESET_LOAD ? &presets : nullptr;
  }
};

class Plug {
 public:
  explicit Plug(double rate = 44100.0, bool hasTimers = true) {
    host.hasTimers = hasTimers;
    plugin = file().factory->create_plugin(file().factory, &host.record, "com.zelvane.zum");
    if (plugin == nullptr || !plugin->init(plugin)) throw std::runtime_error("no plug-in");
    if (rate > 0.0) start(rate);
  }
  ~Plug() {
    stop();
    plugin->destroy(plugin);
  }
  Plug(const Plug&) = delete;
  Plug& operator=(const Plug&) = delete;

  void start(double rate) {
    ASSERT_TRUE(plugin->activate(plugin, rate, 1, 8192));
    ASSERT_TRUE(plugin->start_processing(plugin));
    isPlaying = true;
  }
  void stop() {
    if (isPlaying) plugin->stop_processing(plugin), plugin->deactivate(plugin);
    isPlaying = false;
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
    double value = kNan;
    params().get_value(plugin, static_cast<clap_id>(tag), &value);
    return value;
  }
  void set(const std::vector<std::pair<int, double>>& values) {
    Sent given;
    for (const auto& [tag, plain] : values) {
      given.events.push_back(valueEvent(0, static_cast<clap_id>(tag), plain));
    }
    params().flush(plugin, &given.list, nullptr);
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
    struct Out {
      std::string bytes;
      std::size_t piece;
    } out{{}, piece};
    const clap_ostream_t stream{
        &out, [](const clap_ostream_t* to, const void* bytes, std::uint64_t count) -> std::int64_t {
          auto& all = *static_cast<Out*>(to->ctx);
          const auto taken = std::min<std::size_t>(count, all.piece);
          all.bytes.append(static_cast<const char*>(bytes), taken);
          return static_cast<std::int64_t>(taken);
        }};
    EXPECT_TRUE(get<clap_plugin_state_t>(CLAP_EXT_STATE).save(plugin, &stream));
    return out.bytes;
  }
  bool load(const std::string& bytes, std::size_t piece = 4096) const {
    struct In {
      const std::string& bytes;
      std::size_t piece, at;
    } in{bytes, piece, 0};
    const clap_istream_t stream{
        &in, [](const clap_istream_t* from, void* room, std::uint64_t count) -> std::int64_t {
          auto& all = *static_cast<In*>(from->ctx);
          const auto given = std::min({std::size_t{count}, all.piece, all.bytes.size() - all.at});
          std::memcpy(room, all.bytes.data() + all.at, given);
          all.at += given;
          return static_cast<std::int64_t>(given);
        }};
    return get<clap_plugin_state_t>(CLAP_EXT_STATE).load(plugin, &stream);
  }

  ClapHost host;
  const clap_plugin_t* plugin;
  const clap_event_transport_t* transport = nullptr;
  Sent sent;
  Heard heard;

 private:
  bool isPlaying = false;
};

/// Values that differ from those of a new effect.
const std::vector<std::pair<int, double>> kLoud = {
    {tag::mixDryWet, 1.0}, {tag::master, 0.5},    {tag::cutoff, 0.6},   {tag::bank, 0.0},
    {tag::multiType, 5.0}, {tag::resonance, 0.4}, {tag::cutoffEf, 0.8}, {tag::lfoStyle, 1.0}};

// ---- what it is

TEST(ClapFile, TellsWhatItIsAndMakesNothingElse) {
  const auto& factory = *file().factory;
  ASSERT_EQ(factory.get_plugin_count(&factory), 1U);
  EXPECT_EQ(factory.get_plugin_descriptor(&factory, 1), nullptr);
  const clap_plugin_descriptor_t& is = *factory.get_plugin_descriptor(&factory, 0);
  EXPECT_EQ(std::string(is.id) + is.name + is.vendor, "com.zelvane.zumZUMZelvane");
  std::set<std::string> features;
  for (const char* const* each = is.features; *each != nullptr; ++each) features.insert(*each);
  EXPECT_TRUE(features.contains(CLAP_PLUGIN_FEATURE_AUDIO_EFFECT));
  ClapHost host;
  EXPECT_EQ(factory.create_plugin(&factory, &host.record, "com.zelvane.other"), nullptr);
  EXPECT_EQ(factory.create_plugin(&factory, &host.record, nullptr), nullptr);
  EXPECT_EQ(factory.create_plugin(&factory, nullptr, is.id), nullptr);
  EXPECT_EQ(file().entry->get_factory("clap.other"), nullptr);
  const Plug plug(0.0);
  EXPECT_EQ(plug.plugin->get_extension(plug.plugin, "clap.other"), nullptr);
  for (const char* id : {CLAP_EXT_LATENCY, CLAP_EXT_TAIL}) {  // one function each, of one form
    EXPECT_EQ(plug.get<clap_plugin_latency_t>(id).get(plug.plugin), 0U) << id;
  }
}

TEST(ClapFile, ShowsItsPorts) {
  const Plug plug(0.0);
  const auto& audio = plug.get<clap_plugin_audio_ports_t>(CLAP_EXT_AUDIO_PORTS);
  ASSERT_EQ(audio.count(plug.plugin, true), 2U);
  ASSERT_EQ(audio.count(plug.plugin, false), 1U);
  clap_audio_port_info_t port{};
  for (const bool isInput : {true, false}) {
    ASSERT_TRUE(audio.get(plug.plugin, 0, isInput, &port));
    EXPECT_EQ(port.flags, CLAP_AUDIO_PORT_IS_MAIN + 0U);
    EXPECT_EQ(port.channel_count, 2U);
    EXPECT_EQ(port.in_place_pair, 0U);
  }
  ASSERT_TRUE(audio.get(plug.plugin, 1, true, &port));
  EXPECT_EQ(port.flags, 0U);
  EXPECT_EQ(port.in_place_pair, CLAP_INVALID_ID);
  EXPECT_FALSE(audio.get(plug.plugin, 1, false, &port));
  clap_note_port_info_t notes{};
  const auto& midi = plug.get<clap_plugin_note_ports_t>(CLAP_EXT_NOTE_PORTS);
  ASSERT_TRUE(midi.get(plug.plugin, 0, true, &notes));
  EXPECT_NE(notes.supported_dialects & CLAP_NOTE_DIALECT_MIDI, 0U);
  EXPECT_EQ(midi.count(plug.plugin, false), 0U);
}

// For ever: automation, sessions and controllers of users hold ids and positions.
// clang-format off
constexpr clap_id kIds[] = {
    0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13, 14, 15, 16, 17, 18, 19,
    20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31, 32, 33, 34, 35, 36, 37, 38, 39,
    40, 41, 42, 43, 44, 45, 46, 47, 48, 49, 50, 51, 52, 58, 59, 62, 61, 60, 65, 222,
};
// clang-format on

TEST(ClapParams, KeepTheirIdsAndReadBothWays) {
  const Plug plug(0.0);
  const auto& params = plug.params();
  ASSERT_EQ(params.count(plug.plugin), std::size(kIds));
  std::set<std::string> titles;
  std::map<clap_id, clap_param_info_t> all;
  for (std::uint32_t i = 0; i < std::size(kIds); ++i) {
    clap_param_info_t info{};
    ASSERT_TRUE(params.get_info(plug.plugin, i, &info));
    EXPECT_EQ(info.id, kIds[i]) << info.name;
    all[info.id] = info;
    titles.insert(std::string(info.module) + "/" + info.name);
    EXPECT_TRUE(info.flags & CLAP_PARAM_IS_AUTOMATABLE);
    const bool isStepped = (info.flags & CLAP_PARAM_IS_STEPPED) != 0;
    const int last = isStepped ? static_cast<int>(info.max_value) : 16;
    std::set<std::string> texts;
    for (int position = 0; position <= last; ++position) {
      const double value = info.max_value * position / last;
      std::array<char, 64> text{};
      double back = kNan;
      std::array<char, 64> again{};
      ASSERT_TRUE(params.value_to_text(plug.plugin, info.id, value, text.data(), 64));
      ASSERT_TRUE(params.text_to_value(plug.plugin, info.id, text.data(), &back)) << text.data();
      ASSERT_TRUE(params.value_to_text(plug.plugin, info.id, back, again.data(), 64));
      EXPECT_STREQ(text.data(), again.data()) << info.name;
      EXPECT_TRUE(!isStepped || back == value) << info.name;
      texts.insert(text.data());
    }
    EXPECT_GT(texts.size(), 1U) << info.name;
    EXPECT_TRUE(!isStepped || static_cast<double>(texts.size()) == info.max_value + 1) << info.name;
    double now = kNan;
    EXPECT_TRUE(params.get_value(plug.plugin, info.id, &now));
    EXPECT_TRUE(now >= info.min_value && now <= info.max_value);
  }
  EXPECT_EQ(titles.size(), std::size(kIds));
  for (const auto& [tag, end] : {std::pair{tag::bank, 1.0},
                                 {tag::multiType, 9.0},
                                 {tag::vowelType, 9.0},
                                 {tag::lfoStyle, 1.0},
                                 {tag::seqMode, 4.0}}) {
    const clap_param_info_t& info = all[static_cast<clap_id>(tag)];
    EXPECT_EQ(info.max_value, end) << info.name;
    EXPECT_TRUE(info.flags & CLAP_PARAM_IS_ENUM) << info.name;
  }
  EXPECT_TRUE(all[tag::bypass].flags & CLAP_PARAM_IS_BYPASS);
  EXPECT_EQ(std::string(all[tag::lfoRateEf].module) + "|" + all[tag::lfoRateEf].name,
            "LFO|Rate by follower");
  std::array<char, 4> room{'#', '#', '#', '#'};
  EXPECT_TRUE(params.value_to_text(plug.plugin, tag::multiType, 0.0, room.data(), 3));
  EXPECT_EQ(std::string(room.data(), 4), std::string("HI\0#", 4));
  EXPECT_TRUE(params.value_to_text(plug.plugin, tag::vowelA, 0.3, room.data(), 2));
  EXPECT_STREQ(room.data(), "");  // a letter of two bytes
}

TEST(ClapParams, EveryPageOfAControllerShowsWhatIsThere) {
  const Plug plug(0.0);
  const auto& pages = plug.get<clap_plugin_remote_controls_t>(CLAP_EXT_REMOTE_CONTROLS);
  std::multiset<clap_id> shown;
  clap_remote_controls_page_t page{};
  for (std::uint32_t i = 0; i < pages.count(plug.plugin); ++i) {
    ASSERT_TRUE(pages.get(plug.plugin, i, &page));
    EXPECT_EQ(page.page_id, i);
    for (const clap_id id : page.param_ids) {
      if (id != CLAP_INVALID_ID) shown.insert(id);
    }
  }
  EXPECT_FALSE(pages.get(plug.plugin, pages.count(plug.plugin), &page));
  EXPECT_EQ(shown, (std::multiset<clap_id>(std::begin(kIds), std::end(kIds))));  // each once
}

// ---- the block

/// One thing that happens: to the face as an event, to the linked effect between two blocks.
struct Happening {
  Event event;
  std::function<void(TestHost&)> linked;
};

Happening parameter(std::uint32_t frame, int tag, double plain) {
  return {valueEvent(frame, static_cast<clap_id>(tag), plain), [tag, plain](TestHost& host) {
            host.set(tag, rawOfPlain(*findRow(tag), static_cast<float>(plain)));
          }};
}

Happening controller(std::uint32_t frame, int data) {
  return {midiEvent(frame, 0xB0, 74, data), [data](TestHost& host) {
            host.send({{0, 0xB0, 74, data}});
          }};
}

constexpr std::uint32_t kPlays = CLAP_TRANSPORT_IS_PLAYING | CLAP_TRANSPORT_HAS_BEATS_TIMELINE;
constexpr std::int32_t kPlaying = kVstTransportPlaying | kVstPpqPosValid | kVstTempoValid;

Happening song(std::uint32_t frame, double tempo, double beats) {
  return {transportEvent(frame, kPlays, tempo, beats),
          [=](TestHost& host) { host.giveTime(tempo, beats, kPlaying); }};
}

/// A change of tempo that tells no beats.
Happening tempo(std::uint32_t frame, double tempo) {
  return {transportEvent(frame, CLAP_TRANSPORT_IS_PLAYING, tempo),
          [=](TestHost& host) { host.host.time.tempo = tempo; }};
}

TEST(ClapBlock, EventsActWhereTheyStandAsInBlocksThatAreCutThere) {
  const Stereo in = noise(3000);
  TestHost teacher;
  teacher.client().beginLearn(tag::cutoff);
  teacher.send({{0, 0xB0, 74, 60}});
  teacher.render(Stereo(64));
  const std::string learned = teacher.state();
  TestHost linked;
  linked.host.moves = true;
  linked.load(learned);
  Plug plug;
  ASSERT_TRUE(plug.load(learned));
  const std::vector<Happening> events = {parameter(0, tag::mixDryWet, 1.0),
                                         parameter(0, tag::lfoStyle, 1.0),
                                         song(5, 133.0, 2.25),
                                         parameter(37, tag::multiType, 4.0),
                                         parameter(37, tag::resonance, 0.9),
                                         controller(100, 100),
                                         parameter(101, tag::cutoffLfo, 0.9),
                                         parameter(333, tag::seqMode, 2.0),
                                         song(400, 97.0, 8.5),
                                         controller(511, 20),
                                         parameter(700, tag::cutoffSeq, 0.9),
                                         tempo(802, 211.0),
                                         parameter(901, tag::bank, 1.0),
                                         controller(999, 90)};
  Stereo out(3000);
  Stereo expected(3000);
  const Event going = transportEvent(0, CLAP_TRANSPORT_IS_PLAYING, 211.0);  // tells no beats
  for (std::size_t start = 0; start < 3000; start += 1000) {
    plug.transport = start == 0 ? nullptr : &going.transport;
    plug.sent.events.clear();
    if (start == 0) linked.giveTime(120.0);
    std::size_t done = 0;
    for (const Happening& each : events) {
      if (start != 0 && each.event.header.type == CLAP_EVENT_TRANSPORT) continue;
      plug.sent.events.push_back(each.event);
      if (const std::size_t frame = each.event.header.time; frame > done) {
        linked.process(in, expected, start + done, static_cast<std::int32_t>(frame - done));
        done = frame;
      }
      each.linked(linked);
    }
    linked.process(in, expected, start + done, static_cast<std::int32_t>(1000 - done));
    plug.process(in, out, start, 1000);
    EXPECT_TRUE(out.left == expected.left && out.right == expected.right) << start;
    double told = 0.0;
    EXPECT_EQ(plug.heard.typesOf(tag::cutoff, &told), std::vector<int>{CLAP_EVENT_PARAM_VALUE});
    EXPECT_EQ(told, plug.value(tag::cutoff));  // the controller's
    EXPECT_EQ(plug.heard.count, 1U);           // and nothing of what the host set itself
  }
  EXPECT_GT(energy(out), 10.0);
}

TEST(ClapBlock, PassesOverWhatItDoesNotKnow) {
  const Stereo in = noise(512);
  const auto with = [&](const std::vector<Event>& events) {
    Plug plug;
    plug.set(kLoud);
    plug.sent.events = events;
    return plug.render(in);
  };
  Event foreign = valueEvent(3, tag::cutoff, 0.1);
  foreign.header.space_id = 7;
  Event cut = valueEvent(3, tag::cutoff, 0.1);
  cut.header.size = sizeof(clap_event_header_t);
  Event sysex = eventOf(&Event::note, 0, CLAP_EVENT_MIDI_SYSEX);
  Event strange = eventOf(&Event::note, 0, 999);
  const Stereo plain = with({});
  EXPECT_EQ(with({foreign, cut, sysex, strange, Event{}, valueEvent(9, 53, 0.5),
                  valueEvent(9, tag::cutoffPanel.reset, 1.0), valueEvent(9, 1U << 31U, 0.5),
                  valueEvent(9, CLAP_INVALID_ID, 0.5), valueEvent(9, tag::cutoff, kNan)}),
            plain);
  // Late times count as the last frame, and earlier ones as the event before them.
  EXPECT_EQ(with({valueEvent(1U << 31U, tag::cutoff, 0.1)}), plain);
  const Stereo sorted =
      with({valueEvent(200, tag::cutoff, 0.1), valueEvent(200, tag::master, 0.2)});
  EXPECT_EQ(with({valueEvent(200, tag::cutoff, 0.1), valueEvent(100, tag::master, 0.2)}), sorted);
  EXPECT_NE(sorted, plain);
}

TEST(ClapBlock, PlaysInPlaceAtAnyRateAndSizeAndAgain) {
  const Stereo in = noise(8192);
  for (const double rate : {11050.0, 44100.0, 196000.0}) {
    SCOPED_TRACE(rate);
    Plug plug(rate);
    plug.set(kLoud);
    const Stereo whole = plug.render(in, 8192);
    EXPECT_GT(energy(whole), 10.0);
    for (int i = 0; i < 2; ++i) {  // off and on again starts anew
      Plug other(rate);
      other.set(kLoud);
      if (i == 1) {
        other.stop();
        Stereo left = in;
        EXPECT_EQ(other.process(in, left, 0, 64), CLAP_PROCESS_ERROR);
        other.start(rate);
      }
      Stereo both = in;
      for (std::size_t at = 0; at < 8192; ++at) other.process(both, both, at, 1);
      EXPECT_EQ(both, whole);
    }
  }
  const Plug off(0.0);
  for (const double rate : {11049.0, 196001.0, 0.0, -1.0, kNan, 1e300}) {
    EXPECT_FALSE(off.plugin->activate(off.plugin, rate, 1, 512)) << rate;
  }
  EXPECT_FALSE(off.plugin->start_processing(off.plugin));
}

TEST(ClapBlock, EightInstancesDoNotHearEachOther) {
  const Stereo in = noise(2048);
  std::vector<std::unique_ptr<Plug>> all;
  std::vector<Stereo> expected;
  const auto prepare = [](Plug& plug, std::size_t i) {
    plug.set(kLoud), plug.set({{tag::multiType, static_cast<double>(i)}});
  };
  for (std::size_t i = 0; i < 8; ++i) {
    Plug alone;
    prepare(alone, i);
    expected.push_back(alone.render(in));
    prepare(*all.emplace_back(std::make_unique<Plug>()), i);
  }
  std::vector<Stereo> outs(8, Stereo(2048));
  for (std::size_t at = 0; at < 2048; at += 64) {
    for (std::size_t i = 0; i < 8; ++i) all[i]->process(in, outs[i], at, 64);
  }
  EXPECT_EQ(outs, expected);
}

TEST(ClapBlock, HearsTheSideChainOnceItSounds) {
  const Stereo in = noise(4096, 0.1F);
  const Stereo loud = noise(4096, 0.9F);
  Stereo silent(4096);
  silent.left[5] = -0.0F;
  const auto play = [&](const Stereo* side) {
    Plug plug;
    plug.set(kLoud);
    return plug.render(in, 512, side);
  };
  const Stereo without = play(nullptr);
  EXPECT_EQ(play(&silent), without);  // what hosts give for an input without a cable
  TestHost linked;
  for (const auto& [tag, plain] : kLoud) parameter(0, tag, plain).linked(linked);
  Stereo expected(4096);
  const float* const from[] = {in.left.data(), in.right.data()};
  const float* const side[] = {loud.left.data(), loud.right.data()};
  float* const to[] = {expected.left.data(), expected.right.data()};
  linked.client().process(from, side, to, 4096);
  EXPECT_EQ(play(&loud), expected);
  EXPECT_NE(expected, without);
}

TEST(ClapBlock, BypassFades) {
  constexpr std::size_t kFrames = 9600;
  Stereo in(kFrames);
  for (std::size_t i = 0; i < kFrames; ++i) {
    in.left[i] = in.right[i] = 0.5F * std::sin(static_cast<float>(i) * 0.05F);
  }
  Plug plug(48000.0);
  plug.set({{tag::mixDryWet, 1.0}, {tag::master, 0.1}, {tag::cutoff, 1.0}, {tag::resonance, 0.0}});
  Stereo out(kFrames);
  for (std::size_t at = 0; at < kFrames; at += 2400) {
    if (at == 2400) plug.sent.events = {valueEvent(133, tag::bypass, 1.0)};
    if (at == 7200) plug.sent.events = {valueEvent(133, tag::bypass, 0.0)};
    plug.process(in, out, at, 2400);
    plug.sent.events.clear();
  }
  float largest = 0.0F;
  for (std::size_t i = 1; i < kFrames; ++i) {
    if (i > 600) largest = std::max(largest, std::abs(out.left[i] - out.left[i - 1]));
  }
  // the sine's own slope, and 10 ms for what lies between dry and wet
  EXPECT_LT(largest, 0.5F * 0.05F + 2.0F / 480.0F);
  const auto peak = [&](std::size_t from, std::size_t to) {
    return *std::max_element(out.left.data() + from, out.left.data() + to);
  };
  EXPECT_LT(peak(1200, 2400 + 133), 0.3F);
  EXPECT_NEAR(peak(2400 + 133 + 480 + 32, 7200), 0.5F, 0.01F);
  EXPECT_LT(peak(7200 + 133 + 480 + 32, kFrames), 0.3F);
}

TEST(ClapBlock, BearsWhatACarelessHostDoes) {
  const Plug off(0.0);
  Plug on;
  const Stereo in = noise(64);
  Stereo out(64);
  std::array<float*, 2> both = {out.left.data(), out.right.data()};
  std::array<float*, 2> half = {out.left.data(), nullptr};
  std::array<double*, 2> wide{};
  const clap_audio_buffer_t good{both.data(), nullptr, 2, 0, 0};
  const clap_audio_buffer_t bad[] = {{nullptr, nullptr, 2, 0, 0},
                                     {nullptr, wide.data(), 2, 0, 0},
                                     {both.data(), nullptr, 1, 0, 0},
                                     {half.data(), nullptr, 2, 0, 0}};
  Sent sent;
  sent.events = {valueEvent(0, tag::cutoff, 0.25)};
  for (const Plug* plug : {&off, static_cast<const Plug*>(&on)}) {
    const clap_plugin_t* const plugin = plug->plugin;
    EXPECT_EQ(plugin->process(plugin, nullptr), CLAP_PROCESS_ERROR);
    for (const clap_audio_buffer_t& buffer : bad) {
      clap_audio_buffer_t to = good;
      clap_audio_buffer_t toBad = buffer;
      const clap_process_t blocks[] = {
          {-1, 64, nullptr, &buffer, &to, 1, 1, &sent.list, nullptr},
          {-1, 64, nullptr, &good, &toBad, 1, 1, nullptr, nullptr},
          {-1, 64, nullptr, nullptr, nullptr, 0, 0, nullptr, nullptr},
          {-1, UINT32_MAX, nullptr, &good, &to, 1, 1, nullptr, nullptr}};
      for (const clap_process_t& block : blocks) {
        EXPECT_EQ(plugin->process(plugin, &block), CLAP_PROCESS_ERROR);
      }
    }
    EXPECT_EQ(plug->value(tag::cutoff), 0.25);  // an event counts ahead of activation, too
    const auto& params = plug->params();
    double value = 0.0;
    std::array<char, 8> text{};
    EXPECT_FALSE(params.get_info(plugin, 60, nullptr) || params.get_info(plugin, 0, nullptr));
    for (const clap_id id : {53U, 73U, 163U, 223U, 1U << 31U, CLAP_INVALID_ID}) {
      EXPECT_FALSE(params.get_value(plugin, id, &value)) << id;
      EXPECT_FALSE(params.value_to_text(plugin, id, 0.5, text.data(), 8)) << id;
      EXPECT_FALSE(params.text_to_value(plugin, id, "0.5", &value)) << id;
    }
    EXPECT_FALSE(params.value_to_text(plugin, tag::cutoff, kNan, text.data(), 8));
    EXPECT_FALSE(params.value_to_text(plugin, tag::cutoff, 0.5, text.data(), 0));
    EXPECT_FALSE(params.text_to_value(plugin, tag::cutoff, nullptr, &value));
    EXPECT_FALSE(params.text_to_value(plugin, tag::cutoff, "loud", &value));
    for (const double wild : {-1e308, 1e308, std::numeric_limits<double>::infinity()}) {
      EXPECT_TRUE(params.value_to_text(plugin, tag::cutoff, wild, text.data(), 8));
    }
    params.flush(plugin, nullptr, nullptr);
    plugin->on_main_thread(plugin), plugin->reset(plugin);
    EXPECT_FALSE(plug->get<clap_plugin_state_t>(CLAP_EXT_STATE).load(plugin, nullptr));
  }
  EXPECT_FALSE(on.plugin->init(on.plugin));
  EXPECT_FALSE(on.plugin->activate(on.plugin, 48000.0, 1, 64));  // a second time
  EXPECT_GT(energy(on.render(noise(4000))), 1.0);
  const clap_plugin_t* raw =
      file().factory->create_plugin(file().factory, &on.host.record, "com.zelvane.zum");
  double value = 0.0;  // all of it ahead of init()
  EXPECT_FALSE(on.params().get_value(raw, tag::cutoff, &value));
  EXPECT_FALSE(raw->activate(raw, 48000.0, 1, 64) || on.gui().create(raw, "x11", false));
  raw->destroy(raw);
}

// Work for the checker and the sanitizers: everything that may come into a block.
TEST(ClapBlock, PlaysOnWhateverComes) {
  Chance chance;
  const auto upTo = [&](std::uint32_t end) { return chance.next() % end; };
  Plug plug(48000.0);
  const Stereo in = noise(1024);
  Stereo out(1024);
  Event going{};
  for (int round = 0; round < 400; ++round) {
    going = transportEvent(0, upTo(2) != 0 ? kPlays : 0, 20.0 + upTo(600), upTo(64));
    plug.transport = upTo(4) != 0 ? &going.transport : nullptr;
    plug.heard.room = upTo(8) != 0 ? 512 : upTo(3);
    plug.sent.events.clear();
    const std::uint32_t frames = 1 + upTo(1024);
    for (std::uint32_t i = upTo(24); i > 0; --i) {
      const std::uint32_t frame = upTo(frames + 8);
      const auto byte = [&] { return static_cast<int>(upTo(256)); };
      Event note = eventOf(&Event::note, frame, static_cast<std::uint16_t>(upTo(6)));
      note.note.key = static_cast<std::int16_t>(upTo(4) != 0 ? upTo(140) : 0xFFFF);
      note.note.channel = static_cast<std::int16_t>(upTo(4) != 0 ? upTo(20) : 0xFFFF);
      note.note.velocity = upTo(3) != 0 ? upTo(3) * 0.6 : kNan;
      const Event choice[] = {valueEvent(frame, kIds[upTo(60)], upTo(12) * 0.25),
                              midiEvent(frame, byte(), byte(), byte()), note,
                              transportEvent(frame, kPlays, upTo(2) != 0 ? 150.0 : kNan, 3.0)};
      plug.sent.events.push_back(choice[upTo(4)]);
    }
    ASSERT_EQ(plug.process(in, out, 0, frames, upTo(2) != 0 ? &in : nullptr),
              CLAP_PROCESS_CONTINUE);
    for (const float x : out.left) ASSERT_LT(std::fabs(x), 8.0F);
  }
}

// ---- states

TEST(ClapState, IsThePresetFileInAnyPiecesAndNothingElse) {
  Plug plug;
  plug.set(kLoud);
  const std::string state = plug.save();
  for (const std::size_t piece : {1U, 7U}) EXPECT_EQ(plug.save(piece), state);
  TestHost linked;
  ASSERT_EQ(linked.load(state), 1);
  EXPECT_EQ(linked.state(), state);  // every face's
  const Plug other;
  const std::string before = other.save();
  for (std::size_t length = 0; length < state.size(); ++length) {
    ASSERT_FALSE(other.load(state.substr(0, length))) << length;
  }
  EXPECT_FALSE(other.load(state + std::string(4, '\0')));
  EXPECT_FALSE(other.load(std::string(std::size_t{3} << 20U, 'x')));
  Chance chance;
  for (std::size_t i = 0; i < 300; ++i) {
    std::string bytes(i * 4, '\0');
    for (char& byte : bytes) byte = static_cast<char>(chance.next());
    EXPECT_FALSE(other.load(bytes)) << i;
  }
  EXPECT_EQ(other.save(), before);
  for (const std::size_t piece : {1U, 7U}) {
    Plug next;
    ASSERT_TRUE(next.load(state, piece));
    next.render(Stereo(64));
    for (const clap_id id : kIds) {
      EXPECT_EQ(next.value(static_cast<int>(id)), plug.value(static_cast<int>(id))) << id;
    }
    EXPECT_EQ(next.host.callbacks.load(), 0);  // the host did it itself
  }
  const clap_istream_t broken{
      nullptr, [](const clap_istream_t*, void*, std::uint64_t) -> std::int64_t { return -1; }};
  const clap_istream_t liar{nullptr, [](const clap_istream_t*, void*, std::uint64_t count) {
                              return static_cast<std::int64_t>(count) + 1;
                            }};
  const clap_ostream_t full{
      nullptr, [](const clap_ostream_t*, const void*, std::uint64_t) -> std::int64_t { return 0; }};
  const auto& context = other.get<clap_plugin_state_context_t>(CLAP_EXT_STATE_CONTEXT);
  EXPECT_FALSE(context.load(other.plugin, &broken, CLAP_STATE_CONTEXT_FOR_PRESET));
  EXPECT_FALSE(context.load(other.plugin, &liar, CLAP_STATE_CONTEXT_FOR_PROJECT));
  EXPECT_FALSE(context.save(other.plugin, &full, CLAP_STATE_CONTEXT_FOR_DUPLICATE));
}

// ---- presets

/// The folders of a user who has the factory content, while it lives.
struct ContentHome {
  ContentHome() {
    for (auto& [name, value] : before) value = getenv(name);
    std::filesystem::create_directories(folder / "system");
    std::filesystem::create_directory_symlink(ZUM_CONTENT, folder / "system/zum");
    useHome(folder);
  }
  ~ContentHome() {
    for (const auto& [name, value] : before) setenv(name, value.c_str(), 1);
  }
  ContentHome(const ContentHome&) = delete;
  ContentHome& operator=(const ContentHome&) = delete;

  TemporaryFolder folder;
  std::map<const char*, std::string> before = {
      {"XDG_CONFIG_HOME", ""}, {"XDG_DATA_HOME", ""}, {"XDG_DATA_DIRS", ""}};
};

TEST(ClapPresets, AreFoundAndLoadedByTheHostsBrowser) {
  const ContentHome home;
  struct Found {
    std::vector<std::string> types, places, names, features, plugins;
    int errors = 0;
  } found;
  const auto of = [](const auto* record, void* data) -> Found& {
    EXPECT_NE(record, nullptr);
    return *static_cast<Found*>(data);
  };
  static const auto& reach = of;
  const clap_preset_discovery_indexer_t indexer{
      CLAP_VERSION,
      "Test",
      "",
      "",
      "1",
      &found,
      [](const clap_preset_discovery_indexer_t* to, const clap_preset_discovery_filetype_t* type) {
        reach(to, to->indexer_data).types.emplace_back(type->file_extension);
        return true;
      },
      [](const clap_preset_discovery_indexer_t* to, const clap_preset_discovery_location_t* place) {
        reach(to, to->indexer_data).places.emplace_back(place->location);
        return true;
      },
      nullptr,
      nullptr};
  const clap_preset_discovery_metadata_receiver_t receiver{
      &found,
      [](const clap_preset_discovery_metadata_receiver_t* to, std::int32_t, const char*) {
        ++reach(to, to->receiver_data).errors;
      },
      [](const clap_preset_discovery_metadata_receiver_t* to, const char* name, const char*) {
        reach(to, to->receiver_data).names.emplace_back(name);
        return true;
      },
      [](const clap_preset_discovery_metadata_receiver_t* to,
         const clap_universal_plugin_id_t* plugin) {
        reach(to, to->receiver_data).plugins.push_back(std::string(plugin->abi) + plugin->id);
      },
      nullptr,
      nullptr,
      nullptr,
      nullptr,
      nullptr,
      [](const clap_preset_discovery_metadata_receiver_t* to, const char* feature) {
        reach(to, to->receiver_data).features.emplace_back(feature);
      },
      nullptr};
  const auto& factory = *static_cast<const clap_preset_discovery_factory_t*>(
      file().entry->get_factory(CLAP_PRESET_DISCOVERY_FACTORY_ID));
  ASSERT_EQ(factory.count(&factory), 1U);
  EXPECT_EQ(factory.create(&factory, &indexer, "other"), nullptr);
  const auto* const provider =
      factory.create(&factory, &indexer, factory.get_descriptor(&factory, 0)->id);
  ASSERT_TRUE(provider != nullptr && provider->init(provider));
  EXPECT_EQ(found.types, std::vector<std::string>{"kvz"});
  ASSERT_EQ(found.places.size(), 1U);
  std::string bass;
  namespace fs = std::filesystem;
  for (const auto& entry : fs::recursive_directory_iterator(found.places[0])) {
    if (entry.path().extension() != ".kvz") continue;
    EXPECT_TRUE(provider->get_metadata(provider, CLAP_PRESET_DISCOVERY_LOCATION_FILE,
                                       entry.path().c_str(), &receiver));
    if (entry.path().parent_path().filename() == "Bass") bass = entry.path();
  }
  EXPECT_EQ(found.names.size(), 162U);
  EXPECT_EQ(std::set<std::string>(found.plugins.begin(), found.plugins.end()),
            std::set<std::string>{"clapcom.zelvane.zum"});
  EXPECT_EQ(std::count(found.features.begin(), found.features.end(), "Bass") > 0, true);
  for (const char* wrong : {"/nowhere/a.kvz", ZUM_CLAP}) {
    EXPECT_FALSE(
        provider->get_metadata(provider, CLAP_PRESET_DISCOVERY_LOCATION_FILE, wrong, &receiver));
  }
  EXPECT_EQ(found.errors, 2);
  provider->destroy(provider);

  { const Plug first(0.0); }                   // which writes the settings
  writeSettingInt(kSwitches[0].valueName, 0);  // program changes count
  Plug plug;
  const std::string before = plug.save();
  const auto& presets = plug.get<clap_plugin_preset_load_t>(CLAP_EXT_PRESET_LOAD);
  EXPECT_FALSE(presets.from_location(plug.plugin, 0, "/nowhere/a.kvz", ""));
  EXPECT_FALSE(presets.from_location(plug.plugin, 1, bass.c_str(), ""));
  EXPECT_FALSE(presets.from_location(plug.plugin, 0, nullptr, nullptr));
  EXPECT_EQ(plug.save(), before);
  ASSERT_TRUE(presets.from_location(plug.plugin, 0, bass.c_str(), nullptr));
  EXPECT_NE(plug.save(), before);
  EXPECT_EQ(plug.host.loaded * 10 + plug.host.failed, 11);
  plug.plugin->on_main_thread(plug.plugin);
  EXPECT_EQ(plug.host.rescans * 10 + plug.host.dirty, 11);

  // A program change within a block: the host hears of every value, once.
  plug.render(Stereo(64));
  plug.plugin->on_main_thread(plug.plugin);
  const int callbacks = plug.host.callbacks.load();
  const int rescans = plug.host.rescans;
  plug.sent.events = {midiEvent(3, 0xC0, 2, 0)};
  plug.heard.room = 10;  // and of the others in the next block
  Stereo out(64);
  plug.process(out, out, 0, 64);
  EXPECT_EQ(plug.heard.count, 10U);
  plug.sent.events.clear(), plug.heard.room = 512;
  plug.process(out, out, 0, 64);
  EXPECT_GT(plug.heard.count, 30U);
  plug.process(out, out, 0, 64);
  EXPECT_EQ(plug.heard.count, 0U);
  EXPECT_EQ(plug.host.callbacks.load(), callbacks + 1);
  plug.plugin->on_main_thread(plug.plugin), plug.plugin->on_main_thread(plug.plugin);
  EXPECT_EQ(plug.host.rescans, rescans + 1);
}

// ---- the window

struct ClapWindow : testing::Test {
  OwnDisplay server;
  Robot robot;
  HostWindow place{0};

  static clap_window_t windowOf(const HostWindow& of) {
    clap_window_t window{};
    window.api = CLAP_WINDOW_API_X11;
    window.x11 = of.window;
    return window;
  }
  static bool open(const Plug& plug, const HostWindow& in) {
    const clap_window_t window = windowOf(in);
    const clap_plugin_gui_t& gui = plug.gui();
    return gui.create(plug.plugin, CLAP_WINDOW_API_X11, false) &&
           gui.set_parent(plug.plugin, &window) && gui.show(plug.plugin);
  }
  static void close(const Plug& plug) { plug.gui().destroy(plug.plugin); }
  static void tick(const Plug& plug) {
    const auto& timers = plug.get<clap_plugin_timer_support_t>(CLAP_EXT_TIMER_SUPPORT);
    const std::set<clap_id> due = plug.host.timers;
    for (const clap_id id : due) timers.on_timer(plug.plugin, id);
  }

  using Types = std::vector<int>;
  /// Drags the cutoff's knob and lets go; what the host hears of it until it is over, or nothing.
  /// `listens` is how the host takes events.
  Types drag(const Plug& plug, const std::function<void(const std::function<void()>&)>& listens) {
    Types all;
    double value = -1.0;
    const auto settle = [&](int times) {
      for (int i = 0; i < times; ++i) {
        usleep(2000);
        tick(plug);
        listens([&] {
          const Types heard = plug.heard.typesOf(tag::cutoff, &value);
          all.insert(all.end(), heard.begin(), heard.end());
        });
      }
    };
    const std::uintptr_t at = place.window;
    robot.moveTo(at, 252, 180), settle(30);
    robot.press(), settle(30);
    robot.moveTo(at, 252, 170), settle(30);
    robot.moveTo(at, 252, 160), settle(30);
    robot.release();
    settle(60);
    EXPECT_EQ(value, plug.value(tag::cutoff));
    return all;
  }
  /// Without a timer of the host's no hand is told of, and values move by themselves.
  static void expectOneHold(const Types& heard, bool hasTimers = true) {
    if (!hasTimers) {
      EXPECT_FALSE(heard.empty());
      EXPECT_EQ(std::set<int>(heard.begin(), heard.end()), std::set<int>{CLAP_EVENT_PARAM_VALUE});
      return;
    }
    ASSERT_GE(heard.size(), 3U);
    EXPECT_EQ(heard.front(), CLAP_EVENT_PARAM_GESTURE_BEGIN);
    EXPECT_EQ(heard.back(), CLAP_EVENT_PARAM_GESTURE_END);
    EXPECT_EQ(std::count(heard.begin(), heard.end(), CLAP_EVENT_PARAM_VALUE),
              static_cast<std::ptrdiff_t>(heard.size()) - 2);
  }
};

TEST_F(ClapWindow, TellsTheHostOfEachHoldInAndOutOfProcessing) {
  for (const bool hasTimers : {true, false}) {
    SCOPED_TRACE(hasTimers);
    Plug plug(44100.0, hasTimers);
    Stereo sound(64, 0.25F);
    ASSERT_TRUE(open(plug, place));
    EXPECT_EQ(plug.host.timers.size(), hasTimers ? 1U : 0U);
    plug.set({{tag::cutoff, 0.5}});
    expectOneHold(drag(plug, [&](const auto& look) { plug.process(sound, sound, 0, 64), look(); }),
                  hasTimers);
    EXPECT_GT(plug.value(tag::cutoff), 0.5);
    EXPECT_EQ(plug.host.flushes.load(), 0);
    plug.stop();
    plug.set({{tag::cutoff, 0.5}});
    int answered = 0;
    const auto heard = drag(plug, [&](const auto& look) {
      if (hasTimers && plug.host.flushes.load() == answered) return;
      answered = plug.host.flushes.load();
      plug.heard.count = 0;
      plug.params().flush(plug.plugin, nullptr, &plug.heard.list);
      look();
    });
    expectOneHold(heard, hasTimers);
    EXPECT_EQ(plug.host.flushes.load() > 0, hasTimers);
    close(plug);
    EXPECT_TRUE(plug.host.timers.empty());
  }
}

TEST_F(ClapWindow, KeepsWhatAFullListRefusesAndEndsAHoldWithTheWindow) {
  Plug plug;
  Stereo sound(64, 0.25F);
  ASSERT_TRUE(open(plug, place));
  int calls = 0;
  expectOneHold(drag(plug, [&](const auto& look) {
    plug.heard.room = ++calls < 130 ? 0 : 1;  // the hand has let go by then
    plug.process(sound, sound, 0, 64), look();
  }));
  EXPECT_GT(calls, 130);
  plug.heard.room = 512;
  const auto heardWhile = [&](const std::function<void()>& hand) {
    Types all;
    hand();
    for (int i = 0; i < 30 || (all.empty() && i < 1000); ++i) {
      usleep(2000), tick(plug), plug.process(sound, sound, 0, 64);
      const Types heard = plug.heard.typesOf(tag::cutoff);
      all.insert(all.end(), heard.begin(), heard.end());
    }
    return all;
  };
  EXPECT_EQ(heardWhile([&] { robot.press(); }), Types{CLAP_EVENT_PARAM_GESTURE_BEGIN});
  EXPECT_EQ(heardWhile([&] { close(plug); }), Types{CLAP_EVENT_PARAM_GESTURE_END});
  robot.release();
  const HostWindow passing(0);
  ASSERT_TRUE(open(plug, passing));
  robot.moveTo(passing.window, 252, 180);
  EXPECT_EQ(heardWhile([&] { robot.press(); }), Types{CLAP_EVENT_PARAM_GESTURE_BEGIN});
  const auto vanish = [&] {
    XDestroyWindow(passing.display, passing.window), XSync(passing.display, False);
    tick(plug), close(plug);
  };
  EXPECT_EQ(heardWhile(vanish), Types{CLAP_EVENT_PARAM_GESTURE_END});
  robot.release();
}

TEST_F(ClapWindow, OpensAgainAndAgainAndOutlivesItsPlace) {
  const HostWindow beside(512);
  for (const bool hasTimers : {true, false}) {
    Plug plug(44100.0, hasTimers);
    const Plug neighbour(44100.0, hasTimers);
    ASSERT_TRUE(open(neighbour, beside));
    const auto& gui = plug.gui();
    for (int i = 0; i < 20; ++i) {
      ASSERT_TRUE(open(plug, place)) << i;
      EXPECT_TRUE(i % 3 != 0 || (gui.hide(plug.plugin) && gui.show(plug.plugin)));
      if (i % 4 == 0) usleep(40000);  // the own thread has a turn
      tick(plug), tick(neighbour);
      close(plug);
    }
    {
      const HostWindow passing(0);
      ASSERT_TRUE(open(plug, passing));
      tick(plug);
      XDestroyWindow(passing.display, passing.window), XSync(passing.display, False);
      for (int i = 0; i < 5; ++i) usleep(20000), tick(plug);
      gui.show(plug.plugin), gui.hide(plug.plugin);
    }
    close(plug);
    ASSERT_TRUE(open(plug, place));
    tick(plug);
    robot.moveTo(place.window, 258, 186), robot.press(), tick(plug);
    usleep(50000), tick(plug);
  }  // by a host that closes nothing, while a knob is held
  robot.release();
}

TEST_F(ClapWindow, RefusesWhatItDoesNotDo) {
  const Plug plug;
  const auto& gui = plug.gui();
  const clap_plugin_t* const plugin = plug.plugin;
  clap_window_t window = windowOf(place);
  EXPECT_FALSE(gui.set_parent(plugin, &window) || gui.show(plugin) || gui.hide(plugin));
  for (const char* api : {"wayland", "win32", "", static_cast<const char*>(nullptr)}) {
    EXPECT_FALSE(gui.is_api_supported(plugin, api, false) || gui.create(plugin, api, false));
  }
  EXPECT_FALSE(gui.is_api_supported(plugin, "x11", true) || gui.create(plugin, "x11", true));
  EXPECT_TRUE(gui.is_api_supported(plugin, "x11", false));
  ASSERT_TRUE(gui.create(plugin, "x11", false));
  EXPECT_FALSE(gui.create(plugin, "x11", false));
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  EXPECT_TRUE(gui.get_size(plugin, &width, &height));
  EXPECT_TRUE(width > 300 && height > 300);
  EXPECT_FALSE(gui.get_size(plugin, nullptr, nullptr));
  EXPECT_FALSE(gui.set_scale(plugin, 2.0) || gui.can_resize(plugin) ||
               gui.adjust_size(plugin, &width, &height) || gui.set_size(plugin, width, height) ||
               gui.set_transient(plugin, &window));
  EXPECT_FALSE(gui.set_parent(plugin, nullptr));
  window.x11 = 0;
  EXPECT_FALSE(gui.set_parent(plugin, &window));
  gui.suggest_title(plugin, nullptr);
  gui.destroy(plugin), gui.destroy(plugin);
}

}  // namespace
}  // namespace zum::test
