// The VST3 bundle in a host of our own: what it is, parameters, programs, states, the window. Run
// twice with vst3_block_test.cpp: as it is, and with realtime_check preloaded, which watches
// blocks.
#include "tests/hosts/vst3_host.hpp"

#include <unistd.h>

#include <bit>
#include <cmath>
#include <limits>
#include <memory>
#include <numeric>
#include <set>

#include "tests/support/own_display.hpp"
#include "tests/support/own_home.hpp"
// X's macros after that
#include <X11/Xlib.h>

namespace zum::test {
namespace {

// ---- what it is

TEST(Vst3Factory, TellsOfOneEffectAndMakesNothingElse) {
  ASSERT_EQ(std::getenv("ZUM_RT_STATUS") != nullptr, realtimeEnter != nullptr) << "not preloaded";
  const auto& table = **factory();
  v3_factory_info info{};
  ASSERT_EQ(table.v1.get_factory_info(factory(), &info), V3_OK);
  EXPECT_STREQ(info.vendor, "Zelvane");
  ASSERT_EQ(table.v1.num_classes(factory()), 1);
  v3_class_info one{};
  v3_class_info_2 two{};
  v3_class_info_3 three{};
  for (const std::int32_t index : {-1, 0, 1, INT32_MAX}) {
    EXPECT_EQ(table.v1.get_class_info(factory(), index, &one) == V3_OK, index == 0);
    EXPECT_EQ(table.v2.get_class_info_2(factory(), index, &two) == V3_OK, index == 0);
    EXPECT_EQ(table.v3.get_class_info_utf16(factory(), index, &three) == V3_OK, index == 0);
  }
  for (const std::uint8_t* id : {one.class_id, two.class_id, three.class_id}) {
    EXPECT_TRUE(v3_tuid_match(id, kClass));
  }
  EXPECT_STREQ(one.category, "Audio Module Class");
  EXPECT_STREQ(two.sub_categories, "Fx|Filter");
  EXPECT_EQ(std::string(one.name) + two.name + utf8(three.name), "ZUMZUMZUM");
  EXPECT_EQ(utf8(three.version), two.version);
  EXPECT_EQ(make(v3_component_iid, v3_component_iid), nullptr);  // another class
  EXPECT_EQ(make(kClass, kClass), nullptr);                      // another interface
  for (const v3_tuid* iid : {&v3_funknown_iid, &v3_plugin_factory_iid, &v3_plugin_factory_2_iid,
                             &v3_plugin_factory_3_iid}) {
    EXPECT_EQ(queried<void>(factory(), *iid), static_cast<void*>(factory()));
  }
}

TEST(Vst3Factory, OneObjectHasAllInterfacesAndGoesWithTheLastReference) {
  const v3_tuid* const ids[] = {&v3_funknown_iid,        &v3_plugin_base_iid,
                                &v3_component_iid,       &v3_audio_processor_iid,
                                &v3_edit_controller_iid, &v3_unit_information_iid,
                                &v3_midi_mapping_iid,    &v3_process_context_requirements_iid};
  for (const v3_tuid* first : ids) {
    auto** const made = static_cast<v3_funknown**>(make(kClass, *first));
    ASSERT_NE(made, nullptr);
    void* const self = queried<void>(made, v3_funknown_iid);
    for (const v3_tuid* iid : ids) {
      auto** const face = queried<v3_funknown>(made, *iid);
      ASSERT_NE(face, nullptr);
      EXPECT_EQ(queried<void>(face, v3_funknown_iid), self);
      EXPECT_EQ((*face)->unref(face), 3U);  // each is counted as the whole
      EXPECT_EQ((*face)->unref(face), 2U);
    }
    EXPECT_EQ(queried<void>(made, kClass), nullptr);
    EXPECT_EQ((*made)->unref(made), 1U);
    EXPECT_EQ((*made)->unref(made), 0U);
  }
  Plugin plugin(0.0);
  plugin.end();
  EXPECT_EQ(plugin.left, 0U);
}

TEST(Vst3Factory, ShowsItsBuses) {
  Plugin plugin(0.0);
  constexpr std::int32_t kNone = 0;  // channels of a bus that there is not
  const struct {
    int media, direction, index, channels, type;
    std::uint32_t flags;
  } buses[] = {{V3_AUDIO, V3_INPUT, 0, 2, V3_MAIN, V3_DEFAULT_ACTIVE},
               {V3_AUDIO, V3_INPUT, 1, 2, V3_AUX, 0},
               {V3_AUDIO, V3_INPUT, 2, kNone, 0, 0},
               {V3_AUDIO, V3_OUTPUT, 0, 2, V3_MAIN, V3_DEFAULT_ACTIVE},
               {V3_AUDIO, V3_OUTPUT, 1, kNone, 0, 0},
               {V3_EVENT, V3_INPUT, 0, 16, V3_MAIN, V3_DEFAULT_ACTIVE},
               {V3_EVENT, V3_OUTPUT, 0, kNone, 0, 0},
               {7, 7, -1, kNone, 0, 0}};
  for (const auto& [media, direction, index, channels, type, flags] : buses) {
    v3_bus_info info{};
    const bool isThere = channels != kNone;
    const v3_result told =
        plugin.comp().get_bus_info(plugin.component, media, direction, index, &info);
    EXPECT_EQ(told == V3_OK, isThere);
    EXPECT_EQ(info.channel_count, channels);
    EXPECT_EQ(info.bus_type, type);
    EXPECT_EQ(info.flags, flags);
    const v3_result set = plugin.comp().activate_bus(plugin.component, media, direction, index, 1);
    EXPECT_EQ(set == V3_OK, isThere);
  }
  v3_speaker_arrangement stereo[] = {3, 3, 3};
  v3_speaker_arrangement mono[] = {V3_SPEAKER_M};
  const auto arrange = [&](v3_speaker_arrangement* in, int ins, v3_speaker_arrangement* out,
                           int outs) {
    return plugin.proc().set_bus_arrangements(plugin.processor, in, ins, out, outs) == V3_OK;
  };
  EXPECT_TRUE(arrange(stereo, 1, stereo, 1) && arrange(stereo, 2, stereo, 1));
  EXPECT_FALSE(arrange(mono, 1, stereo, 1) || arrange(stereo, 1, mono, 1) ||
               arrange(stereo, 3, stereo, 1) || arrange(nullptr, 0, nullptr, 0));
  EXPECT_NE(plugin.proc().can_process_sample_size(plugin.processor, V3_SAMPLE_64), V3_OK);
  v3_process_setup setup = {V3_REALTIME, V3_SAMPLE_64, 512, 48000.0};
  EXPECT_NE(plugin.proc().setup_processing(plugin.processor, &setup), V3_OK);
  EXPECT_EQ(plugin.proc().get_latency_samples(plugin.processor), 0U);
  EXPECT_EQ(plugin.proc().get_tail_samples(plugin.processor), 0U);
}

// ---- parameters

TEST(Vst3Parameters, IdsStandForEverAndMidiStaysOutOfSight) {
  Plugin plugin(0.0);
  std::vector<v3_param_id> ids(53);
  std::iota(ids.begin(), ids.end(), 0U);
  ids.insert(ids.end(), {58, 59, 62, 61, 60, 65, 222, kProgram});
  for (v3_param_id i = 0; i < 130; ++i) ids.push_back(kMidi + i);
  const auto count = static_cast<int>(ids.size());
  ASSERT_EQ(plugin.ctrl().get_parameter_count(plugin.controller), count);
  std::set<std::string> paths;
  v3_param_info info{};
  for (int i = 0; i < count; ++i) {
    const v3_param_id id = ids[static_cast<std::size_t>(i)];
    ASSERT_EQ(plugin.ctrl().get_parameter_info(plugin.controller, i, &info), V3_OK);
    EXPECT_EQ(info.param_id, id);
    EXPECT_NE(info.title[0], 0);
    EXPECT_EQ((info.flags & V3_PARAM_CAN_AUTOMATE) != 0, i < 61) << i;
    EXPECT_EQ((info.flags & V3_PARAM_IS_HIDDEN) != 0, i >= 61) << i;
    EXPECT_EQ((info.flags & V3_PARAM_IS_BYPASS) != 0, id == tag::bypass);
    EXPECT_EQ((info.flags & V3_PARAM_PROGRAM_CHANGE) != 0, id == kProgram);
    v3_unit_info unit{};
    ASSERT_EQ((*plugin.units)->unit.get_unit_info(plugin.units, info.unit_id, &unit), V3_OK);
    if (i < 60) paths.insert(utf8(unit.name));
  }
  EXPECT_EQ(paths,
            (std::set<std::string>{"Filter", "Drive", "Output", "Follower", "LFO", "Sequencer"}));
  v3_unit_info none{};
  EXPECT_EQ((*plugin.units)->unit.get_unit_count(plugin.units), 7);
  EXPECT_NE((*plugin.units)->unit.get_unit_info(plugin.units, 7, &none), V3_OK);
  for (const int i : {-1, count, INT32_MAX}) {
    EXPECT_NE(plugin.ctrl().get_parameter_info(plugin.controller, i, &info), V3_OK);
  }
  auto** const map = queried<v3_midi_mapping_cpp>(plugin.component, v3_midi_mapping_iid);
  const struct {
    int bus;
    std::int16_t channel, number;
    v3_param_id id;  // 7 for none
  } mapped[] = {{0, 0, 0, 2000}, {0, 15, 127, 2127}, {0, 15, 129, 2129}, {0, 0, 130, 7},
                {0, 16, 1, 7},   {0, -1, 1, 7},      {0, 0, -1, 7},      {1, 0, 1, 7}};
  for (const auto& [bus, channel, number, expected] : mapped) {
    v3_param_id id = 7;
    const v3_result told =
        (*map)->map.get_midi_controller_assignment(map, bus, channel, number, &id);
    EXPECT_EQ(told == V3_OK, expected != 7);
    EXPECT_EQ(id, expected);
  }
  (*map)->unref(map);
}

TEST(Vst3Parameters, TextsComeThroughBothWays) {
  Plugin plugin(0.0);
  const struct {
    v3_param_id id;
    double value, plain;
    const char* text;
  } shown[] = {{tag::master, 0.25, 0.25, "-6.0 dB"},
               {tag::cutoffLfo, 0.75, 0.75, "+50 %"},
               {tag::bypass, 1.0, 1.0, "On"},
               {tag::multiType, 1.0, 9.0, "S+H LOW PASS"},
               {kMidi + 7, 64.0 / 127.0, 64.0, "64"},
               {kProgram, 0.0, 0.0, "As it is"},
               {kProgram, 163.0 / kPrograms, 163.0, "-"}};
  for (const auto& [id, value, plain, text] : shown) {
    EXPECT_EQ(plugin.text(id, value), text);
    EXPECT_NEAR(plugin.valueOf(id, text), value, 1e-3) << text;
    EXPECT_EQ(plugin.valueOf(id, "so?"), -1.0);
    const auto& controller = plugin.ctrl();
    EXPECT_NEAR(controller.normalised_parameter_to_plain(plugin.controller, id, value), plain,
                1e-9);
    EXPECT_NEAR(controller.plain_parameter_to_normalised(plugin.controller, id, plain), value,
                1e-9);
  }
  v3_str_128 endless;
  std::fill(std::begin(endless), std::end(endless), std::int16_t{'9'});
  double value = 0.0;
  plugin.ctrl().get_parameter_value_for_string(plugin.controller, tag::cutoff, endless, &value);
}

TEST(Vst3Parameters, UnknownIdsAndBrokenValuesTouchNothing) {
  Plugin plugin;
  plugin.prepare();
  const auto before = plugin.all();
  const auto& controller = plugin.ctrl();
  v3_str_128 text = {'1', 0};
  double value = 7.0;
  for (const v3_param_id id : {53U, 223U, 999U, 1001U, 1999U, 2130U, 0x80000000U, ~0U}) {
    EXPECT_NE(controller.set_parameter_normalised(plugin.controller, id, 0.5), V3_OK) << id;
    EXPECT_EQ(plugin.get(id), 0.0);
    EXPECT_NE(controller.get_parameter_string_for_value(plugin.controller, id, 0.5, text), V3_OK);
    EXPECT_NE(controller.get_parameter_value_for_string(plugin.controller, id, text, &value),
              V3_OK);
    EXPECT_EQ(controller.normalised_parameter_to_plain(plugin.controller, id, 0.5), 0.0);
    plugin.render(noise(64), {{id, 3, 0.5}});
  }
  EXPECT_EQ(value, 7.0);
  const double nan = std::nan("");
  EXPECT_NE(controller.set_parameter_normalised(plugin.controller, tag::cutoff, nan), V3_OK);
  plugin.render(noise(64), {{tag::cutoff, 3, nan}});
  EXPECT_EQ(plugin.all(), before);
  plugin.render(noise(64), {{tag::cutoff, 3, 1e30}, {tag::resonance, 3, -1e30}});
  EXPECT_EQ(plugin.get(tag::cutoff), 1.0);
  EXPECT_EQ(plugin.get(tag::resonance), 0.0);
}

TEST(Vst3Parameters, TheControllerCountsUntilPointsCome) {
  Plugin plugin(0.0);
  const auto set = [&](double value) {
    return plugin.set(tag::cutoff, value), plugin.get(tag::cutoff);
  };
  EXPECT_EQ(set(0.75), 0.75);  // ahead of the activation
  plugin.activate(44100.0);
  EXPECT_EQ(plugin.get(tag::cutoff), 0.75);
  plugin.render(noise(64), {{tag::cutoff, 0, 0.25}});
  EXPECT_EQ(set(0.5), 0.25);  // the window of the host, behind the time
  plugin.set(tag::resonance, 0.5);
  EXPECT_EQ(plugin.get(tag::resonance), 0.5);
  plugin.activate(48000.0);
  EXPECT_EQ(set(0.5), 0.5);
}

// ---- states

TEST(Vst3State, ComesBackInPiecesOrIsRefused) {
  Plugin source(0.0);
  for (const std::int16_t tag : faceTags()) {
    const auto id = static_cast<v3_param_id>(tag);
    source.set(id, source.get(id) > 0.5 ? 0.0 : 1.0);
  }
  const auto values = source.all();
  const std::vector<std::byte> state = source.save();
  auto padded = state;  // by what the host keeps behind it
  padded.resize(state.size() + 100);
  for (const std::size_t piece : {std::size_t{1}, std::size_t{7}, kWhole}) {
    EXPECT_EQ(source.save(piece), state);
    Plugin other(0.0);
    const auto before = other.all();
    const std::vector<std::byte> none;
    const std::vector<std::byte> cut(state.begin(), state.end() - 4);
    const std::vector<std::byte> foreign(4096, std::byte{1});
    const std::vector<std::byte> huge(4096, std::byte{0x7F});  // its first word tells of 8 GB
    for (const auto& refused : {none, cut, foreign, huge}) EXPECT_FALSE(other.load(refused, piece));
    EXPECT_EQ(other.all(), before);
    ASSERT_TRUE(other.load(padded, piece));
    EXPECT_EQ(other.all(), values);
    Stream same{.bytes = state};
    EXPECT_EQ(other.ctrl().set_component_state(other.controller, same.face()), V3_OK);
    EXPECT_EQ(other.all(), values);
    EXPECT_TRUE(other.handler.calls.empty());
  }
  EXPECT_NE(source.comp().set_state(source.component, nullptr), V3_OK);
  EXPECT_NE(source.comp().get_state(source.component, nullptr), V3_OK);
}

// ---- programs: what the list is and what stands there now has a test of its own

struct Vst3Programs : testing::Test {
  Vst3Programs() { installContent(ZUM_CONTENT, home.folder / "system"); }
  const OtherHome home;
};

TEST_F(Vst3Programs, AreOneListWithTheirNames) {
  Plugin plugin(0.0);
  const auto& units = (*plugin.units)->unit;
  v3_program_list_info list{};
  ASSERT_EQ(units.get_program_list_count(plugin.units), 1);
  ASSERT_EQ(units.get_program_list_info(plugin.units, 0, &list), V3_OK);
  ASSERT_EQ(list.programCount, 256);
  v3_str_128 name{};
  for (int i = 0; i < 256; ++i) {
    ASSERT_EQ(units.get_program_name(plugin.units, list.id, i, name), V3_OK);
    EXPECT_EQ(utf8(name), plugin.text(kProgram, i / kPrograms));
    EXPECT_EQ(utf8(name) == "-", i > 162);
    if (i > 162) continue;
    EXPECT_NEAR(plugin.valueOf(kProgram, utf8(name)), i / kPrograms, 1e-9);
  }
  EXPECT_NE(units.get_program_name(plugin.units, list.id, 256, name), V3_OK);
  EXPECT_NE(units.get_program_name(plugin.units, list.id + 1, 0, name), V3_OK);
}

TEST_F(Vst3Programs, PlayFromAnyThreadAndTheHostHearsOfIt) {
  Plugin plugin;
  EXPECT_EQ(plugin.program(), 0);
  plugin.choose(1);  // the very first
  EXPECT_EQ(plugin.program(), 1);
  const auto first = plugin.all();
  plugin.choose(100);  // on the main thread
  EXPECT_EQ(plugin.program(), 100);
  EXPECT_TRUE(plugin.handler.calls.empty()) << "it may hold a lock";
  const auto chosen = plugin.all();
  EXPECT_NE(chosen, first);
  plugin.render(noise(64));
  EXPECT_GT(plugin.told.queues.size(), 50U);
  for (const Queue& queue : plugin.told.queues) {
    EXPECT_EQ(queue.points.at(0).value, chosen.at(queue.id));
  }
  Plugin automated;
  for (int i = 162; i > 0; --i) {  // in the block, at its sample
    automated.render(noise(256), {{kProgram, 64, i / kPrograms}});
    automated.set(tag::overdrive, automated.get(tag::overdrive));  // any call on the main thread
    ASSERT_EQ(automated.program(), i);
    EXPECT_EQ(automated.all() == chosen, i == 100);
  }
  EXPECT_EQ(automated.all(), first);
}

// A host may repeat what it knows at any time, and whether or not it read anew.
TEST_F(Vst3Programs, ThatTheHostKnowsDoNotPlayAgain) {
  Plugin plugin;
  const auto sees = [&](Plugin& by, int place, double cutoff) {
    EXPECT_NEAR(by.get(tag::cutoff), cutoff, 1e-6);
    EXPECT_EQ(by.program(), place);
  };
  const auto repeat = [](Plugin& by, int place) {
    by.render(noise(64), {{kProgram, 3, place / kPrograms}});
    by.activate(44100.0);  // the controller is heard again
    by.choose(place);
  };
  plugin.choose(100), plugin.set(tag::cutoff, 0.123);
  repeat(plugin, 100);
  sees(plugin, 100, 0.123);
  const std::vector<std::byte> session = plugin.save();
  for (const int known :
       {0, 100}) {  // in another process, ahead of and behind a look at the values
    Plugin restored;
    ASSERT_TRUE(restored.load(session));
    repeat(restored, known);
    sees(restored, 100, 0.123);
    repeat(restored, 100);
    sees(restored, 100, 0.123);
  }
  plugin.choose(7), plugin.set(tag::cutoff, 0.4);
  ASSERT_TRUE(plugin.load(session));
  repeat(plugin, 7);  // of before the state
  sees(plugin, 100, 0.123);
  plugin.choose(7);  // now it knows better, and the user wants it
  EXPECT_EQ(plugin.program(), 7);
  plugin.set(tag::cutoff, 0.4);
  plugin.choose(0);
  sees(plugin, 0, 0.4);
  plugin.choose(7);  // once more
  EXPECT_EQ(plugin.program(), 7);
  EXPECT_NE(plugin.get(tag::cutoff), 0.4);
  plugin.set(tag::cutoff, 0.4);
  plugin.choose(250);  // an empty place
  sees(plugin, 7, 0.4);
}

// ---- windows

struct Vst3Window : testing::Test {
  v3_plugin_view_cpp** show(Plugin& plugin, std::uintptr_t parent) {
    auto** const view = plugin.view();
    EXPECT_NE(view, nullptr);
    (*view)->view.set_frame(view, frame.face());
    EXPECT_EQ(attach(view, parent), V3_OK);
    return view;
  }
  static v3_result attach(v3_plugin_view_cpp** view, std::uintptr_t parent,
                          const char* type = V3_VIEW_PLATFORM_TYPE_X11) {
    return (*view)->view.attached(view, std::bit_cast<void*>(parent), type);
  }
  void settle(Plugin& plugin) {
    for (int i = 0; i < 3; ++i) {
      usleep(frame.hasLoop ? 2000 : 40000);
      plugin.render(Stereo(128, 0.25F));
      frame.tick();
    }
  }
  /// A hand turns the cutoff.
  void turn(Plugin& plugin, std::uintptr_t window) {
    robot.moveTo(window, 252, 180), settle(plugin);
    robot.press(), settle(plugin);
    for (const int y : {170, 160}) robot.moveTo(window, 252, y), settle(plugin);
    robot.release(), settle(plugin);
    for (int i = 0; i < 200 && plugin.get(tag::cutoff) <= 0.52; ++i) settle(plugin);
    settle(plugin);
  }

  OwnDisplay server;
  Robot robot;
  HostWindow place{0};
  Frame frame;
};

TEST_F(Vst3Window, AHandTellsTheHostFromBeginToEnd) {
  for (const bool hasLoop : {true, false}) {
    frame.hasLoop = hasLoop;
    Plugin plugin;
    plugin.prepare();
    auto** const view = show(plugin, place.window);
    EXPECT_EQ(frame.loop.registered, hasLoop ? 1 : 0);
    settle(plugin);
    turn(plugin, place.window);
    const auto& calls = plugin.handler.calls;
    EXPECT_GT(plugin.get(tag::cutoff), 0.52);
    if (hasLoop) {
      ASSERT_GE(calls.size(), 3U);
      EXPECT_EQ(calls.front(), "begin 3");
      EXPECT_EQ(calls.back(), "end 3");
      EXPECT_EQ(std::count(calls.begin() + 1, calls.end() - 1, "edit 3"),
                static_cast<std::ptrdiff_t>(calls.size() - 2));
      // A step is no value of the host's: the session is another one, and nothing is read anew.
      robot.moveTo(place.window, 460, 273), settle(plugin);  // the tab of the steps
      robot.click(), settle(plugin);
      plugin.handler.calls.clear();
      robot.moveTo(place.window, 262, 300), settle(plugin);
      robot.press(), settle(plugin), robot.release();
      for (int i = 0; i < 200 && calls.empty(); ++i) settle(plugin);
      EXPECT_EQ(calls, (std::vector<std::string>{"dirty 1"}));
    } else {
      EXPECT_TRUE(calls.empty()) << "the values came with the blocks";
      usleep(700'000), robot.press(), settle(plugin);  // held while the host closes it
    }
    EXPECT_EQ((*view)->view.removed(view), V3_OK);
    robot.release();
    EXPECT_TRUE(hasLoop || calls.empty()) << calls.front();
    EXPECT_EQ(frame.loop.registered, 0);
    EXPECT_EQ((*view)->unref(view), 0U);
  }
}

TEST_F(Vst3Window, HasOnePlatformAndTheScaleOfItsHost) {
  Plugin plugin;
  EXPECT_EQ(plugin.view("other"), nullptr);
  EXPECT_EQ(plugin.view(nullptr), nullptr);
  auto** const view = plugin.view();
  EXPECT_EQ((*view)->view.is_platform_type_supported(view, V3_VIEW_PLATFORM_TYPE_X11), V3_OK);
  EXPECT_NE((*view)->view.is_platform_type_supported(view, V3_VIEW_PLATFORM_TYPE_HWND), V3_OK);
  EXPECT_NE((*view)->view.is_platform_type_supported(view, nullptr), V3_OK);
  EXPECT_NE(attach(view, 0), V3_OK);
  EXPECT_NE(attach(view, place.window, "HWND"), V3_OK);
  EXPECT_NE((*view)->view.removed(view), V3_OK);
  v3_view_rect size{};
  ASSERT_EQ((*view)->view.get_size(view, &size), V3_OK);
  EXPECT_TRUE(size.right > 400 && size.bottom > 300);
  v3_view_rect wanted = {0, 0, 5000, 1};
  EXPECT_EQ((*view)->view.check_size_constraint(view, &wanted), V3_OK);
  EXPECT_EQ(wanted.right, 508);
  wanted = {7, 7, 7 + 5000, 7 + 705};
  EXPECT_EQ((*view)->view.check_size_constraint(view, &wanted), V3_OK);
  EXPECT_EQ(std::pair(wanted.left, wanted.right), std::pair(7, 7 + 762));
  wanted = {std::numeric_limits<int>::min(), 0, std::numeric_limits<int>::max(), 705};
  EXPECT_EQ((*view)->view.check_size_constraint(view, &wanted), V3_OK);
  EXPECT_EQ((*view)->view.can_resize(view), V3_OK);
  auto** const scale =
      queried<v3_plugin_view_content_scale_cpp>(view, v3_plugin_view_content_scale_iid);
  ASSERT_NE(scale, nullptr);
  EXPECT_NE((*scale)->scale.set_content_scale_factor(scale, std::nanf("")), V3_OK);
  EXPECT_EQ((*scale)->scale.set_content_scale_factor(scale, 2.0F), V3_OK);
  EXPECT_EQ((*view)->view.get_size(view, &size), V3_OK);
  EXPECT_EQ(std::pair(size.right, size.bottom), std::pair(1016, 940));
  ASSERT_EQ(attach(view, place.window), V3_OK);
  EXPECT_EQ(place.innerSize(), std::pair(1016, 940));
  for (const auto& [right, bottom] : {std::pair(635, 588), std::pair(508, 470)}) {
    wanted = {0, 0, right, bottom};
    EXPECT_EQ((*view)->view.on_size(view, &wanted), V3_OK);
    for (int i = 0; i < 100 && place.innerSize().first != right; ++i) settle(plugin);
    EXPECT_EQ(place.innerSize(), std::pair(right, bottom));
  }
  (*scale)->unref(scale);
  (*view)->unref(view);
}

TEST_F(Vst3Window, OpensAgainAndOutlivesWhatHostsGetWrong) {
  const HostWindow beside(512);
  auto plugin = std::make_unique<Plugin>();
  Plugin neighbour;
  auto** const next = show(neighbour, beside.window);
  (*next)->view.removed(next), (*next)->unref(next);
  auto** const view = show(*plugin, place.window);
  auto** const second = plugin->view();
  EXPECT_NE(attach(second, beside.window), V3_OK);  // one window at a time
  (*second)->unref(second);
  for (int i = 0; i < 20; ++i) {
    frame.hasLoop = i % 2 == 0;
    EXPECT_EQ((*view)->view.removed(view), V3_OK);
    ASSERT_EQ(attach(view, place.window), V3_OK) << i;
    if (i > 17) settle(*plugin);
  }
  XDestroyWindow(place.display, place.window), XSync(place.display, False);
  settle(*plugin);
  frame.hasLoop = true;
  (*view)->view.removed(view);
  ASSERT_EQ(attach(view, beside.window), V3_OK);
  settle(*plugin);
  plugin->end();  // with the window open, and the view held
  EXPECT_EQ(frame.loop.registered, 0);
  (*view)->view.set_frame(view, nullptr);
  EXPECT_NE((*view)->view.removed(view), V3_OK);
  EXPECT_EQ((*view)->unref(view), 0U);
}

}  // namespace
}  // namespace zum::test
