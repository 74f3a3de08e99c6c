// The finished file in a CLAP host: what it tells of itself, its events and lists, states, presets
// for browsers, and whatever a careless host may do. What all faces share is proved in
// host_side_test; here the linked effect plays beside the file. Run twice like plugin_file_test:
// with realtime_check preloaded, too.
#include <filesystem>
#include <map>
#include <span>
#include <thread>

#include "adaptor/host_side.hpp"
#include "core/tags.hpp"
#include "state/settings.hpp"
#include "tests/hosts/clap_host.hpp"
#include "tests/support/own_home.hpp"

namespace zum::test {
namespace {

const NoHome noHome;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// Values that differ from those of a new effect.
const std::vector<std::pair<int, double>> kLoud = {
    {tag::mixDryWet, 1.0}, {tag::master, 0.5},    {tag::cutoff, 0.6},   {tag::bank, 0.0},
    {tag::multiType, 5.0}, {tag::resonance, 0.4}, {tag::cutoffEf, 0.8}, {tag::lfoStyle, 1.0}};

clap_id idOf(int tag) { return static_cast<clap_id>(tag); }

// ---- what it is

TEST(ClapFile, TellsWhatItIsAndMakesNothingElse) {
  const auto& factory = *clapFile().factory;
  ASSERT_EQ(factory.get_plugin_count(&factory), 1U);
  EXPECT_EQ(factory.get_plugin_descriptor(&factory, 1), nullptr);
  const clap_plugin_descriptor_t& is = *factory.get_plugin_descriptor(&factory, 0);
  EXPECT_EQ(std::string(is.id) + is.name + is.vendor, "com.zelvane.zumZUMZelvane");
  EXPECT_STREQ(is.features[0], CLAP_PLUGIN_FEATURE_AUDIO_EFFECT);
  const ClapHost host;
  EXPECT_EQ(clapFile().make(&host.record, "com.zelvane.other"), nullptr);
  EXPECT_EQ(clapFile().make(&host.record, nullptr), nullptr);
  EXPECT_EQ(clapFile().make(nullptr, is.id), nullptr);
  EXPECT_EQ(clapFile().entry->get_factory("clap.other"), nullptr);
  const ClapPlug plug(0.0);
  EXPECT_EQ(plug.plugin->get_extension(plug.plugin, "clap.other"), nullptr);
  for (const char* id : {CLAP_EXT_LATENCY, CLAP_EXT_TAIL}) {  // one function each, of one form
    EXPECT_EQ(plug.get<clap_plugin_latency_t>(id).get(plug.plugin), 0U) << id;
  }
  const auto& audio = plug.get<clap_plugin_audio_ports_t>(CLAP_EXT_AUDIO_PORTS);
  std::string ports;
  for (const bool isInput : {true, false}) {
    clap_audio_port_info_t port{};
    std::uint32_t i = 0;
    for (; audio.get(plug.plugin, i, isInput, &port); ++i) {
      ports += isInput ? " in" : " out";
      ports += port.flags == CLAP_AUDIO_PORT_IS_MAIN ? ":main" : ":";
      ports += std::to_string(port.channel_count) + (port.in_place_pair == 0 ? "=" : "");
    }
    EXPECT_EQ(audio.count(plug.plugin, isInput), i);
  }
  EXPECT_EQ(ports, " in:main2= in:2 out:main2=");
  clap_note_port_info_t notes{};
  const auto& midi = plug.get<clap_plugin_note_ports_t>(CLAP_EXT_NOTE_PORTS);
  ASSERT_TRUE(midi.get(plug.plugin, 0, true, &notes));
  EXPECT_NE(notes.supported_dialects & CLAP_NOTE_DIALECT_MIDI, 0U);
  EXPECT_EQ(midi.count(plug.plugin, false), 0U);
}

// The order of faceTags() is pinned elsewhere, and so are all texts.
TEST(ClapParams, HaveIdsKindsNamesAndTexts) {
  const ClapPlug plug(0.0);
  const auto& params = plug.params();
  std::map<clap_id, clap_param_info_t> all;
  std::vector<clap_id> ids;
  for (std::uint32_t i = 0; i < params.count(plug.plugin); ++i) {
    clap_param_info_t info{};
    ASSERT_TRUE(params.get_info(plug.plugin, i, &info));
    ids.push_back(info.id);
    all[info.id] = info;
    const double now = plug.value(static_cast<int>(info.id));
    EXPECT_TRUE(now >= info.min_value && now <= info.max_value) << info.name;
  }
  EXPECT_EQ(ids, std::vector<clap_id>(faceTags().begin(), faceTags().end()));

  constexpr clap_param_info_flags kSteps = CLAP_PARAM_IS_STEPPED | CLAP_PARAM_IS_ENUM;
  const struct {
    int tag;
    const char* name;
    clap_param_info_flags kind;
    double end, value;
    const char* text;
  } kRows[] = {
      {tag::cutoff, "Filter/Cutoff", 0, 1.0, 0.5, "2636 Hz"},
      {tag::lfoRate, "LFO/Rate", 0, 1.0, 15 / 26.0, "1/8 T"},
      {tag::lfoRateEf, "LFO/Rate by follower", 0, 1.0, 0.7, "+40 %"},
      {tag::multiType, "Filter/Filter type", kSteps, 9.0, 6.0, "COMB"},
      {tag::bypass, "Output/Bypass", CLAP_PARAM_IS_STEPPED | CLAP_PARAM_IS_BYPASS, 1.0, 1.0, "On"}};
  for (const auto& row : kRows) {
    const clap_param_info_t& info = all[idOf(row.tag)];
    EXPECT_EQ(std::string(info.module) + "/" + info.name, row.name);
    EXPECT_EQ(info.flags, CLAP_PARAM_IS_AUTOMATABLE | row.kind) << row.name;
    EXPECT_EQ(info.max_value, row.end) << row.name;
    std::array<char, 16> text{};
    double back = kNan;
    ASSERT_TRUE(params.value_to_text(plug.plugin, info.id, row.value, text.data(), 16));
    EXPECT_STREQ(text.data(), row.text);
    ASSERT_TRUE(params.text_to_value(plug.plugin, info.id, row.text, &back)) << row.name;
    EXPECT_NEAR(back, row.value, 1e-3) << row.name;
  }

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
  EXPECT_EQ(shown, std::multiset<clap_id>(ids.begin(), ids.end()));  // each once
}

// ---- the block

constexpr std::uint32_t kPlaysOn = CLAP_TRANSPORT_IS_PLAYING;  // tells no beats
constexpr std::uint32_t kPlays = kPlaysOn | CLAP_TRANSPORT_HAS_BEATS_TIMELINE;

/// A block of the linked effect, whose cuts are proved elsewhere, by the same events.
void playLinked(zum::HostSide& host, const zum::HostSide::Buffers& buffers, bool isPlaying,
                const std::vector<ClapEvent>& events) {
  zum::HostSide::Song song = host.song();
  song.isPlaying = isPlaying;
  zum::HostSide::Block block(host, buffers, song);
  for (const ClapEvent& event : events) {
    const auto frame = static_cast<std::int32_t>(event.header.time);
    if (event.header.type == CLAP_EVENT_PARAM_VALUE) {
      const auto plain = static_cast<float>(event.value.value);
      block.setPlain(frame, static_cast<int>(event.value.param_id), plain);
    } else if (event.header.type == CLAP_EVENT_MIDI) {
      block.midi(frame, event.midi.data);
    } else {
      block.playTo(frame);
      const bool hasBeats = (event.transport.flags & CLAP_TRANSPORT_HAS_BEATS_TIMELINE) != 0;
      const auto beats = static_cast<double>(event.transport.song_pos_beats) / CLAP_BEATTIME_FACTOR;
      block.moveSong(frame, {true, hasBeats ? beats : host.song().beats, event.transport.tempo});
    }
  }
}

TEST(ClapBlock, EventsActWhereTheyStandAndOthersNowhere) {
  zum::HostSide linked(nullptr, nullptr);
  linked.client().setFace();
  linked.client().controllers().controllers[74].append({tag::cutoff, 0});
  linked.activate(48000.0, 8192);
  const std::vector<std::byte> learned = linked.saveState();
  ClapPlug plug(48000.0);
  ASSERT_TRUE(plug.load({reinterpret_cast<const char*>(learned.data()), learned.size()}));
  const std::vector<ClapEvent> events = {
      valueEvent(0, tag::mixDryWet, 1.0),     valueEvent(0, tag::lfoStyle, 1.0),
      valueEvent(0, tag::bypass, 0.0),        transportEvent(5, kPlays, 133.0, 2.25),
      valueEvent(37, tag::multiType, 4.0),    valueEvent(37, tag::resonance, 0.9),
      midiEvent(100, {0xB0, 74, 100}),        valueEvent(101, tag::cutoffLfo, 0.9),
      valueEvent(300, tag::cutoffEf, 0.9),    valueEvent(333, tag::seqMode, 2.0),
      valueEvent(99, tag::lfoRate, 0.4),      valueEvent(334, tag::resonance, kNan),
      transportEvent(400, kPlays, 97.0, 8.5), midiEvent(511, {0xB0, 74, 20}),
      valueEvent(700, tag::cutoffSeq, 0.9),   transportEvent(802, kPlaysOn, 211.0),
      valueEvent(901, tag::bank, 1.0),        valueEvent(950, tag::bypass, 1.0),
      midiEvent(999, {0xB0, 74, 90}),         valueEvent(INT32_MAX, tag::master, 0.4)};
  plug.sent.events = events;
  plug.sent.events.back().header.time = 1U << 31U;
  ClapEvent foreign = valueEvent(200, tag::resonance, 0.1);
  foreign.header.space_id = 7;
  ClapEvent cut = valueEvent(200, tag::resonance, 0.1);
  cut.header.size = sizeof(clap_event_header_t);
  plug.sent.events.insert(plug.sent.events.begin() + 8,
                          {foreign, cut, eventOf(&ClapEvent::note, 200, CLAP_EVENT_MIDI_SYSEX),
                           eventOf(&ClapEvent::note, 200, 999), ClapEvent{},
                           valueEvent(200, 53, 0.5), valueEvent(200, tag::cutoffPanel.reset, 1.0),
                           valueEvent(200, 1U << 31U, 0.5), valueEvent(200, CLAP_INVALID_ID, 0.5)});

  const ClapEvent going = transportEvent(0, kPlaysOn, 211.0);
  const Stereo in = noise(1000, 0.1F);
  const float* const from[] = {in.left.data(), in.right.data()};
  for (const bool goesOn : {false, true}) {
    SCOPED_TRACE(goesOn);
    plug.transport = goesOn ? &going.transport : nullptr;
    const Stereo side = noise(1000, goesOn ? 0.9F : 0.0F);  // counts from its first sound on
    const float* const heard[] = {side.left.data(), side.right.data()};
    Stereo expected(1000);
    float* const to[] = {expected.left.data(), expected.right.data()};
    playLinked(linked, {from, goesOn ? heard : nullptr, to, 1000}, goesOn, events);
    Stereo sound = in;  // in place
    EXPECT_EQ(plug.process(sound, sound, 0, 1000, &side), CLAP_PROCESS_CONTINUE);
    EXPECT_TRUE(sound == expected);
    EXPECT_GT(energy(expected), 1.0);
    double told = 0.0;
    EXPECT_EQ(plug.heard.typesOf(tag::cutoff, &told), std::vector<int>{CLAP_EVENT_PARAM_VALUE});
    EXPECT_EQ(told, plug.value(tag::cutoff));  // the controller's
    EXPECT_EQ(plug.heard.count, 1U);           // and nothing of what the host set itself
  }
}

// On the audio thread: with the checker preloaded nothing waits.
TEST(ClapBlock, ResetEndsWhatRings) {
  ClapPlug plug;
  plug.set(kLoud), plug.set({{tag::multiType, 6.0}, {tag::resonance, 1.0}});
  for (const bool isReset : {false, true}) {
    plug.render(noise(4096));
    if (isReset) {
      const RealtimeWatch watch;
      plug.plugin->reset(plug.plugin);
    }
    EXPECT_EQ(energy(plug.render(Stereo(1024))) < 1e-9, isReset);
  }
}

TEST(ClapBlock, BearsWhatACarelessHostDoes) {
  ClapPlug off(0.0);
  ClapPlug on;
  Stereo out(64);
  EXPECT_EQ(off.process(out, out, 0, 64), CLAP_PROCESS_ERROR);
  std::array<float*, 2> both = {out.left.data(), out.right.data()};
  std::array<float*, 2> half = {out.left.data(), nullptr};
  std::array<double*, 2> wide{};
  clap_audio_buffer_t good{both.data(), nullptr, 2, 0, 0};
  clap_audio_buffer_t bad[] = {{nullptr, nullptr, 2, 0, 0},
                               {nullptr, wide.data(), 2, 0, 0},
                               {both.data(), nullptr, 1, 0, 0},
                               {half.data(), nullptr, 2, 0, 0}};
  ClapSent sent;
  sent.events = {valueEvent(0, tag::cutoff, 0.25)};
  for (const ClapPlug* plug : {&off, &on}) {
    const clap_plugin_t* const plugin = plug->plugin;
    EXPECT_EQ(plugin->process(plugin, nullptr), CLAP_PROCESS_ERROR);
    for (clap_audio_buffer_t& buffer : bad) {
      for (const clap_process_t& block : std::initializer_list<clap_process_t>{
               {-1, 64, nullptr, &buffer, &good, 1, 1, &sent.list, nullptr},
               {-1, 64, nullptr, &good, &buffer, 1, 1, nullptr, nullptr},
               {-1, 64, nullptr, nullptr, nullptr, 0, 0, nullptr, nullptr},
               {-1, UINT32_MAX, nullptr, &good, &good, 1, 1, nullptr, nullptr}}) {
        EXPECT_EQ(plugin->process(plugin, &block), CLAP_PROCESS_ERROR);
      }
    }
    EXPECT_EQ(plug->value(tag::cutoff), 0.25);  // an event counts ahead of activation, too
    const auto& params = plug->params();
    double value = 0.0;
    std::array<char, 8> text{};
    const auto show = [&](clap_id id, double shown, std::uint32_t room) {
      text.fill('#');
      return params.value_to_text(plugin, id, shown, text.data(), room);
    };
    for (const clap_id id : {53U, 73U, 163U, 223U, 1U << 31U, CLAP_INVALID_ID}) {
      EXPECT_FALSE(show(id, 0.5, 8) || params.get_value(plugin, id, &value) ||
                   params.text_to_value(plugin, id, "0.5", &value));
    }
    EXPECT_FALSE(params.get_info(plugin, 60, nullptr) || params.get_info(plugin, 0, nullptr) ||
                 params.text_to_value(plugin, tag::cutoff, nullptr, &value) ||
                 params.text_to_value(plugin, tag::cutoff, "loud", &value) ||
                 show(tag::cutoff, kNan, 8) || show(tag::cutoff, 0.5, 0));
    EXPECT_TRUE(show(tag::cutoff, -1e308, 8) && std::string("23.2 Hz") == text.data());
    EXPECT_TRUE(show(tag::bank, kInfinity, 8) && std::string("Vowel") == text.data());
    EXPECT_TRUE(show(tag::multiType, 6.0, 3) && std::string("CO") == text.data());
    EXPECT_EQ(text[3], '#');
    EXPECT_TRUE(show(tag::vowelA, 0.3, 2) && text[0] == '\0');  // a letter of two bytes
    params.flush(plugin, nullptr, nullptr);
    plugin->on_main_thread(plugin), plugin->reset(plugin);
    EXPECT_FALSE(plug->get<clap_plugin_state_t>(CLAP_EXT_STATE).load(plugin, nullptr));
  }
  for (const double rate : {11049.0, 196001.0, 0.0, -1.0, kNan, 1e300}) {
    EXPECT_FALSE(off.plugin->activate(off.plugin, rate, 1, 512)) << rate;
  }
  EXPECT_FALSE(off.plugin->start_processing(off.plugin) || on.plugin->init(on.plugin) ||
               on.plugin->activate(on.plugin, 48000.0, 1, 64));  // a second time
  EXPECT_GT(energy(on.render(noise(4000))), 1.0);
  const clap_plugin_t* const raw = clapFile().make(&on.host.record, kClapId);
  double value = 0.0;  // all of it ahead of init()
  EXPECT_FALSE(on.params().get_value(raw, tag::cutoff, &value) ||
               raw->activate(raw, 48000.0, 1, 64) || on.gui().create(raw, "x11", false));
  raw->destroy(raw);
}

// ---- states

TEST(ClapState, PassesInAnyPiecesOrNotAtAll) {
  ClapPlug plug;
  plug.set(kLoud);
  const std::string state = plug.save();
  const auto bytes = std::as_bytes(std::span(state));
  zum::HostSide linked(nullptr, nullptr);
  ASSERT_TRUE(linked.loadState(bytes));  // every face's
  EXPECT_TRUE(std::ranges::equal(linked.saveState(), bytes));
  for (const std::size_t piece : {1U, 7U}) {
    EXPECT_EQ(plug.save(piece), state);
    const ClapPlug next;
    EXPECT_TRUE(next.load(state, piece));
    EXPECT_EQ(next.save(), state);
  }
  const ClapPlug other;
  const std::string before = other.save();
  EXPECT_FALSE(other.load(state.substr(0, state.size() - 4)));
  EXPECT_FALSE(other.load(std::string(std::size_t{3} << 20U, 'x')));
  const clap_istream_t broken{
      nullptr, [](const clap_istream_t*, void*, std::uint64_t) { return std::int64_t{-1}; }};
  const clap_istream_t liar{nullptr, [](const clap_istream_t*, void*, std::uint64_t count) {
                              return static_cast<std::int64_t>(count) + 1;
                            }};
  const clap_ostream_t full{
      nullptr, [](const clap_ostream_t*, const void*, std::uint64_t) { return std::int64_t{0}; }};
  const auto& context = other.get<clap_plugin_state_context_t>(CLAP_EXT_STATE_CONTEXT);
  EXPECT_FALSE(context.load(other.plugin, &broken, CLAP_STATE_CONTEXT_FOR_PRESET));
  EXPECT_FALSE(context.load(other.plugin, &liar, CLAP_STATE_CONTEXT_FOR_PROJECT));
  EXPECT_FALSE(context.save(other.plugin, &full, CLAP_STATE_CONTEXT_FOR_DUPLICATE));
  EXPECT_EQ(other.save(), before);
}

// Whatever a block sees of a load that is at work, taken or refused.
TEST(ClapState, AHostsOwnLoadIsNoNewsToIt) {
  ClapPlug plug;
  const std::string state = plug.save();
  const std::string cut = state.substr(0, state.size() - 4);
  std::atomic<bool> isOver{false};
  std::thread loader([&] {
    for (int i = 0; i < 200; ++i) EXPECT_NE(plug.load(i % 3 != 0 ? state : cut), i % 3 == 0);
    isOver.store(true);
  });
  Stereo sound(16);
  while (!isOver.load()) plug.process(sound, sound, 0, 16);
  loader.join();
  plug.process(sound, sound, 0, 16);
  EXPECT_EQ(plug.host.callbacks.load(), 0);
}

// ---- presets

/// Of a user who has the factory content.
struct ContentHome : OtherHome {
  ContentHome() {
    installContent(ZUM_CONTENT, folder / "system");
    { const ClapPlug first(0.0); }  // which writes the settings
  }
};

using Indexer = clap_preset_discovery_indexer_t;
using Receiver = clap_preset_discovery_metadata_receiver_t;

/// What a browser hears.
struct Found {
  static Found& of(const Indexer* to) { return *static_cast<Found*>(to->indexer_data); }
  static Found& of(const Receiver* to) { return *static_cast<Found*>(to->receiver_data); }
  static bool type(const Indexer* to, const clap_preset_discovery_filetype_t* kind) {
    return of(to).told.insert(kind->file_extension), true;
  }
  static bool place(const Indexer* to, const clap_preset_discovery_location_t* where) {
    return of(to).places.emplace_back(where->location), true;
  }
  static void error(const Receiver* to, std::int32_t /*system*/, const char* /*text*/) {
    of(to).told.insert("error");
  }
  static bool begin(const Receiver* to, const char* name, const char* /*key*/) {
    return of(to).names.insert(name), true;
  }
  static void plugin(const Receiver* to, const clap_universal_plugin_id_t* id) {
    of(to).told.insert(std::string(id->abi) + id->id);
  }
  static void feature(const Receiver* to, const char* name) { of(to).told.insert(name); }

  std::vector<std::string> places;
  std::multiset<std::string> told, names;
  const Indexer indexer{CLAP_VERSION, "Test", "", "", "1", this, type, place, nullptr, nullptr};
  const Receiver receiver{this,    error,   begin,   plugin,  nullptr, nullptr,
                          nullptr, nullptr, nullptr, feature, nullptr};
};

TEST(ClapPresets, AreFoundAndLoadedByTheHostsBrowser) {
  const ContentHome home;
  Found found;
  const auto& factory = *static_cast<const clap_preset_discovery_factory_t*>(
      clapFile().entry->get_factory(CLAP_PRESET_DISCOVERY_FACTORY_ID));
  ASSERT_EQ(factory.count(&factory), 1U);
  EXPECT_EQ(factory.create(&factory, &found.indexer, "other"), nullptr);
  const auto* const provider =
      factory.create(&factory, &found.indexer, factory.get_descriptor(&factory, 0)->id);
  ASSERT_TRUE(provider != nullptr && provider->init(provider));
  ASSERT_EQ(found.places.size(), 1U);
  const auto reads = [&](const char* path) {
    return provider->get_metadata(provider, CLAP_PRESET_DISCOVERY_LOCATION_FILE, path,
                                  &found.receiver);
  };
  std::string bass;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(found.places[0])) {
    if (entry.path().extension() != ".kvz") continue;
    EXPECT_TRUE(reads(entry.path().c_str()));
    if (entry.path().parent_path().filename() == "Bass") bass = entry.path();
  }
  EXPECT_EQ(found.names.size(), 162U);
  EXPECT_FALSE(reads("/nowhere/a.kvz") || reads(ZUM_CLAP));
  for (const auto& [told, times] :
       {std::pair{"kvz", 1U}, {"clapcom.zelvane.zum", 162U}, {"error", 2U}, {"Bass", 1U}}) {
    EXPECT_GE(found.told.count(told), times) << told;
  }
  provider->destroy(provider);

  ClapPlug plug;
  const std::string before = plug.save();
  const auto& presets = plug.get<clap_plugin_preset_load_t>(CLAP_EXT_PRESET_LOAD);
  EXPECT_FALSE(presets.from_location(plug.plugin, 0, "/nowhere/a.kvz", "") ||
               presets.from_location(plug.plugin, 1, bass.c_str(), "") ||
               presets.from_location(plug.plugin, 0, nullptr, nullptr));
  EXPECT_EQ(plug.save(), before);
  ASSERT_TRUE(presets.from_location(plug.plugin, 0, bass.c_str(), nullptr));
  EXPECT_NE(plug.save(), before);
  EXPECT_EQ(plug.host.loaded * 10 + plug.host.failed, 11);
  plug.answerCallbacks();
  plug.render(Stereo(64)), plug.answerCallbacks();
  EXPECT_EQ(plug.host.rescans * 10 + plug.host.dirty, 11);  // once
}

TEST(ClapPresets, ProgramChangesAreToldOnceAndOnlyWhereTheyCount) {
  const ContentHome home;
  for (const int isIgnored : {0, 1}) {
    writeSettingInt(kSwitches[0].valueName, isIgnored);
    ClapPlug plug;
    ASSERT_TRUE(plug.load(plug.save()) && !plug.load("no state"));
    plug.sent.events = {midiEvent(3, {0xC0, 2, 0})};  // right behind loads of the host's own
    plug.heard.room = 10;                             // and of the others in the next block
    std::vector<std::size_t> told;
    Stereo out(64);
    for (int block = 0; block < 3; ++block) {
      plug.process(out, out, 0, 64);
      told.push_back(plug.heard.count);
      plug.sent.events.clear(), plug.heard.room = 512;
    }
    plug.answerCallbacks(), plug.answerCallbacks();
    EXPECT_EQ(plug.host.rescans * 10 + plug.host.dirty, isIgnored == 1 ? 0 : 11);
    EXPECT_EQ(told[0], isIgnored == 1 ? 0U : 10U);
    EXPECT_EQ(told[1] > 30, isIgnored == 0);
    EXPECT_EQ(told[2], 0U);
  }
}

}  // namespace
}  // namespace zum::test
