// The finished bundle in an LV2 host of our own (lv2_host.hpp). Run twice: as it is, and with
// realtime_check preloaded, which watches every block.
#include "tests/hosts/lv2_host.hpp"

#include <cmath>
#include <sstream>

#include "core/parameter_text.hpp"
#include "tests/support/own_display.hpp"
#include "tests/support/own_home.hpp"
// X's macros after that
#include <X11/Xlib.h>

namespace zum::test {
namespace {

const NoHome noHome;

/// Sound that hangs on everything: controller 74 moves the cutoff, LFO and steps follow the song.
Bytes livelyState() {
  zum::HostSide maker(nullptr, nullptr);
  const std::pair<int, float> values[] = {
      {tag::mixDryWet, 1.0F}, {tag::cutoff, 0.4F},    {tag::resonance, 0.6F},
      {tag::lfoStyle, 1.0F},  {tag::cutoffLfo, 0.7F}, {tag::cutoffSeq, 0.9F},
      {tag::cutoffEf, 0.8F},  {tag::multiType, 5.0F}, {tag::lfoRate, 0.6F},
      {tag::seqTempo, 0.8F},  {tag::efGain, 0.8F},    {tag::seqMode, 0.0F}};
  for (const auto& [tag, value] : values) maker.setPlain(tag, value);
  for (int step = 0; step < 8; ++step) {
    maker.client().steps().setValue(step, 0, static_cast<float>(step % 3) / 2.0F);
  }
  maker.client().controllers().controllers[74].append({tag::cutoff, 0});
  return maker.saveState();
}

bool isSound(const Stereo& all) {
  for (std::size_t i = 0; i < all.frames(); ++i) {
    if (!(std::fabs(all.left[i]) < 8.0F && std::fabs(all.right[i]) < 8.0F)) return false;
  }
  return energy(all) > 0.0;
}

// ---- what the bundle says

constexpr const char* kSymbols =
    "in_left in_right out_left out_right sidechain_left sidechain_right events vowelCutoff master "
    "mixDryWet cutoff resonance overdrive efFreqRange efAttack efRelease efGain lfoRate lfoWave "
    "lfoTrigOnOff lfoTrigSens seqGlide seqMode seqTempo cutoffEf cutoffLfo cutoffSeq vowelEf "
    "vowelLfo vowelSeq resoEf resoLfo resoSeq driveEf driveLfo driveSeq mixEf mixLfo mixSeq "
    "efRangeLfo efRangeSeq efAttackLfo efAttackSeq efReleaseLfo efReleaseSeq efGainLfo efGainSeq "
    "lfoRateEf lfoRateSeq lfoWaveEf lfoWaveSeq lfoSensEf lfoSensSeq seqTempoEf seqTempoLfo "
    "seqGlideEf seqGlideLfo masterEf masterLfo masterSeq vowelA vowelB bank multiType vowelType "
    "lfoStyle enabled";

TEST(Lv2Bundle, PortsAreForEver) {
  std::istringstream symbols(kSymbols);
  std::size_t index = 0;
  for (std::string symbol; symbols >> symbol; ++index) {
    ASSERT_LT(index, portTexts().size());
    EXPECT_EQ(behind(portTexts()[index], "lv2:symbol \"", "\""), symbol);
    EXPECT_EQ(behind(portTexts()[index], "lv2:index ", " "), std::to_string(index));
  }
  EXPECT_EQ(portTexts().size(), index);
  for (std::size_t i = 0; i < kFaceParameters; ++i) {
    EXPECT_EQ(declared(i, "lv2:minimum "), 0.0F) << i;
    EXPECT_EQ(declared(i, "lv2:maximum "), plainEnd(*findRow(faceTags()[i]))) << i;
  }
  const std::string& type = portTexts()[kControls + 56];
  EXPECT_NE(type.find("lv2:enumeration"), std::string::npos);
  EXPECT_NE(type.find("\"COMB\" ; rdf:value 6.0 ]"), std::string::npos);
}

Bytes fromBase64(const std::string& text) {
  const std::string digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  Bytes bytes;
  unsigned bits = 0;
  int count = 0;
  for (const char digit : text.substr(0, text.find('='))) {
    bits = bits << 6U | static_cast<unsigned>(digits.find(digit)), count += 6;
    if (count >= 8) count -= 8, bytes.push_back(static_cast<std::byte>(bits >> count & 255U));
  }
  return bytes;
}

TEST(Lv2Bundle, EachPresetIsAStateAndItsPortValues) {
  const auto presets = parts(textOf("presets.ttl"), "<urn:zelvane:zum:preset:");
  EXPECT_EQ(presets.size(), 162U);
  const std::string manifest = textOf("manifest.ttl");
  Instance one;
  for (const std::string& preset : presets) {
    const std::string name = behind(preset, "<", ">");
    EXPECT_NE(manifest.find('<' + name + ">\n\ta pset:Preset"), std::string::npos) << name;
    ASSERT_EQ(one.restore(fromBase64(behind(preset, "#state> \"", "\""))), LV2_STATE_SUCCESS);
    for (std::size_t i = 0; i < kFaceParameters; ++i) {
      const std::string symbol = behind(portTexts()[kControls + i], "lv2:symbol ", ";");
      one.ports[i] = std::stof(behind(preset, symbol + "; pset:value ", " "));
    }
    EXPECT_EQ(one.values(), one.ports) << name;
  }
}

// ---- the plug-in

TEST(Lv2, ShowsOnePluginAndNeedsLittle) {
  ASSERT_EQ(std::getenv("ZUM_RT_STATUS") != nullptr, realtimeEnter != nullptr) << "not preloaded";
  EXPECT_STREQ(plugin().URI, "urn:zelvane:zum");
  EXPECT_STREQ(ui().URI, "urn:zelvane:zum#ui");
  for (const std::uint32_t index : {1U, 2U, ~0U}) {
    EXPECT_EQ(entry<LV2_Descriptor_Function>("lv2_descriptor")(index), nullptr);
    EXPECT_EQ(entry<LV2UI_DescriptorFunction>("lv2ui_descriptor")(index), nullptr);
  }
  EXPECT_EQ(plugin().extension_data("urn:nothing"), nullptr);
  EXPECT_EQ(ui().extension_data("urn:nothing"), nullptr);
  for (const double rate : {0.0, -1.0, double{NAN}, double{INFINITY}}) {
    EXPECT_EQ(plugin().instantiate(&plugin(), rate, "", nullptr), nullptr);
  }
  const LV2_Handle bare = plugin().instantiate(&plugin(), 44100.0, "", nullptr);
  ASSERT_NE(bare, nullptr);  // tools that offer no features
  plugin().run(bare, 64);    // and connect nothing
  plugin().connect_port(bare, 67, nullptr), plugin().connect_port(bare, ~0U, nullptr);
  plugin().cleanup(bare);
}

// A host may set ports alone. The declared defaults are those of the factory's first sound; a user
// may lack it, or start with another one.
TEST(Lv2, StartsAsItsPortsSayUnlessAStateCame) {
  const Bytes state = livelyState();
  const TemporaryFolder folder;
  installContent(ZUM_CONTENT, folder / "factory/system");
  std::filesystem::create_directories(folder / "own/data/zum/Presets");
  std::ofstream(folder / "own/data/zum/Presets/default.kvz", std::ios::binary)
      .write(reinterpret_cast<const char*>(state.data()),
             static_cast<std::streamsize>(state.size()));
  for (const char* const user : {"factory", "own", "none"}) {
    SCOPED_TRACE(user);
    useHome(folder / user);
    const bool isFactory = user == std::string("factory");
    Instance fresh;
    EXPECT_EQ(fresh.values() == fresh.ports, isFactory);
    const Stereo heard = fresh.play(noise(4096));
    EXPECT_EQ(fresh.values(), fresh.ports);
    Instance bare;  // and without ports as the effect itself starts
    for (std::uint32_t i = 0; i < kFaceParameters; ++i) bare.connect(kControls + i, nullptr);
    EXPECT_EQ(bare.play(noise(4096)) == heard, isFactory);

    for (const float cutoff : {0.0F, 0.4F, 1.0F}) {
      Instance set;
      set.port(tag::cutoff) = cutoff;
      set.play(noise(512));
      EXPECT_EQ(set.values(), set.ports) << cutoff;
    }

    Instance restored(44100.0, state);
    restored.port(tag::cutoff) = 0.9F;
    restored.play(noise(512));
    EXPECT_EQ(restored.save(), state);
  }
  useHome("/dev/null");
}

TEST(Lv2, TakesPortsThatMoveAndLeavesTheOthers) {
  Instance one;
  one.play(noise(512));
  struct Move {
    int tag;
    float port, heard;
  };
  const Move moves[] = {
      {tag::cutoff, 0.3F, 0.3F},    {tag::multiType, 3.2F, 3.0F},
      {tag::bypass, 0.0F, 0.0F},    {tag::overdrive, NAN, one.value(tag::overdrive)},
      {tag::mixEf, INFINITY, 1.0F}, {tag::lfoStyle, -9.0F, 0.0F}};
  PortValues wanted = one.ports;
  for (const Move& move : moves) {
    one.port(move.tag) = move.port;
    wanted[static_cast<std::size_t>(facePosition(move.tag))] = move.heard;
  }
  one.play(noise(512));
  EXPECT_EQ(one.values(), wanted);
  // a state wins over what ports still hold; then they move again, be it at once
  const Bytes state = livelyState();
  for (const float next : {0.3F, 0.8F, 0.7F}) {
    ASSERT_EQ(one.restore(state), LV2_STATE_SUCCESS);
    EXPECT_EQ(one.port(tag::cutoff) == next, next == 0.3F);
    one.port(tag::cutoff) = next;
    one.play(noise(512));
    EXPECT_EQ(one.value(tag::cutoff), next == 0.3F ? 0.4F : next);
    EXPECT_EQ(one.value(tag::resonance), 0.6F);
  }
}

TEST(Lv2, EventsActAtTheirFrame) {
  const Bytes state = livelyState();
  Stereo in = noise(1024);
  const auto played = [&](const std::vector<std::pair<std::size_t, Events>>& blocks) {
    Instance one(44100.0, state);
    Stereo out = in;
    for (std::size_t i = 0; i < blocks.size(); ++i) {
      const std::size_t end = i + 1 < blocks.size() ? blocks[i + 1].first : in.frames();
      one.connect(kEvents, blocks[i].second.atom());
      Stereo& from = blocks.size() > 1 ? out : in;  // in place, where it is cut
      one.run(from, out, blocks[i].first, end - blocks[i].first);
    }
    return out;
  };
  const Numbers song = {
      {"bar", 2}, {"barBeat", 1.5}, {"beatsPerBar", 3}, {"beatsPerMinute", 140}, {"speed", 1}};
  const Numbers jump = {{"bar", 7}, {"barBeat", 0.25}};
  const Numbers stop = {{"speed", 0}};
  const std::vector<std::uint8_t> up = {0xB0, 74, 90};
  const std::vector<std::uint8_t> down = {0xB0, 74, 10};
  const Stereo whole = played(
      {{0, Events().position(0, song).midi(100, up).position(333, jump).midi(777, down).position(
               900, stop)}});
  EXPECT_EQ(whole, played({{0, Events().position(0, song)},
                           {100, Events().midi(0, up)},
                           {333, Events().position(0, jump)},
                           {777, Events().midi(0, down)},
                           {900, Events().position(0, stop)}}));
  EXPECT_GT(errorDb(played({{0, Events().position(0, song)}}), whole), -40.0);
  EXPECT_GT(errorDb(played({{0, Events().midi(100, up).midi(777, down)}}), whole), -40.0);
}

// At this rate a block is a power of two of a beat, so that counting is exact.
TEST(Lv2, CountsBeatsFromAPositionThatIsToldOnce) {
  const auto played = [state = livelyState()](bool often, Numbers told) {
    Instance one(65536.0, state);
    Stereo in = noise(32768);
    Stereo out(in.frames());
    const double start = told["barBeat"];
    if (!often && start == 0.0) told.erase("barBeat");
    for (std::size_t block = 0; block < 512; ++block) {
      if (often) told["barBeat"] = start + static_cast<double>(block) / 1024.0;
      const Events events = often || block == 0 ? Events().position(0, told) : Events();
      one.connect(kEvents, events.atom());
      one.run(in, out, 64 * block, 64);
    }
    return out;
  };
  const Numbers start = {{"bar", 3}, {"barBeat", 0.5}, {"beatsPerMinute", 60}, {"speed", 1}};
  const Stereo counted = played(false, start);
  EXPECT_EQ(counted, played(true, start));
  const Numbers sameTold[] = {{{"beat", 12.5}, {"beatsPerMinute", 60}, {"speed", 1}},
                              {{"frame", 12.5 * 65536}, {"beatsPerMinute", 60}, {"speed", 1}},
                              {{"bar", 4},
                               {"barBeat", 1},
                               {"beatsPerBar", 6},
                               {"beatUnit", 8},
                               {"beatsPerMinute", 120},
                               {"speed", 2}}};
  for (const Numbers& told : sameTold) EXPECT_EQ(counted, played(false, told));
  EXPECT_GT(errorDb(played(false, {{"bar", 3}, {"beatsPerMinute", 60}, {"speed", 0}}), counted),
            -40.0);
}

// Work for the address sanitizer.
TEST(Lv2, BearsAtomsThatAreCutOrLie) {
  Instance one(44100.0, livelyState());
  const auto give = [&](Bytes bytes, std::size_t at, std::uint32_t word) {
    std::memcpy(&bytes[at], &word, sizeof word);
    const std::unique_ptr<std::byte[]> exact(new std::byte[bytes.size()]);
    std::copy(bytes.begin(), bytes.end(), exact.get());
    one.connect(kEvents, exact.get());
    EXPECT_TRUE(isSound(one.play(noise(64), 64)));
    one.connect(kEvents, nullptr);
  };
  const Bytes good = Events()
                         .midi(-5, {0xB0, 74, 90})
                         .midi(1LL << 40, {0xC0, 3})
                         .midi(3, {})
                         .midi(2, {0xF0, 1, 2, 3, 4, 0xF7})
                         .position(10, {{"bar", NAN}, {"beatsPerMinute", 1e300}, {"speed", 1}})
                         .position(11, {{"beatUnit", 0}, {"barBeat", -INFINITY}, {"bar", 1}})
                         .bytes;
  for (auto size = sizeof(LV2_Atom); size <= good.size(); ++size) {
    give(Bytes(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(size)), 0,
         static_cast<std::uint32_t>(size - sizeof(LV2_Atom)));
  }
  for (std::size_t at = 4; at < good.size(); at += 4) {
    for (const std::uint32_t lie : {0U, 1U, 7U, 9U, 0x7FFFFFFFU, 0x80000000U, ~0U, ~7U}) {
      give(good, at, lie);
    }
  }
}

TEST(Lv2, RefusesWhatIsNoState) {
  Instance one;
  const Bytes before = one.save();
  const Bytes good = livelyState();
  Kept none;
  EXPECT_EQ(states().restore(one.handle, retrieve, &none, 0, nullptr), LV2_STATE_ERR_NO_PROPERTY);
  EXPECT_EQ(one.restore(good, LV2_ATOM__String), LV2_STATE_ERR_BAD_TYPE);
  EXPECT_EQ(one.restore(Bytes(good.begin(), good.end() - 4)), LV2_STATE_ERR_UNKNOWN);
  EXPECT_EQ(one.save(), before);
  // and ports count as if none had come
  one.port(tag::cutoff) = 0.9F;
  one.play(noise(512));
  EXPECT_EQ(one.value(tag::cutoff), 0.9F);
}

// Many hosts hand in silence for what nobody has connected.
TEST(Lv2, HearsASideChainUnlessItIsSilent) {
  const auto played = [state = livelyState()](const Stereo* sideChain) {
    Instance one(44100.0, state);
    for (std::uint32_t i = 0; i < 2 && sideChain != nullptr; ++i) {
      one.connect(kSide + i, (i == 0 ? sideChain->left : sideChain->right).data());
    }
    return one.play(noise(4096, 0.05F), 4096);
  };
  const Stereo silence(4096);
  const Stereo loud = noise(4096, 0.9F);
  const Stereo alone = played(nullptr);
  EXPECT_EQ(played(&silence), alone);
  EXPECT_GT(errorDb(played(&loud), alone), -40.0);
}

// ---- the window

constexpr std::uint32_t kCutoffPort = 10;

struct Lv2Window : testing::Test {
  /// The cutoff's knob, step by step, in a host that hands back what is written, or does not.
  void drag(Window& window, bool echoes, const std::function<void()>& eachStep = nothing) {
    robot.moveTo(place.window, 252, 180), window.settle(echoes);
    robot.press(), window.settle(echoes);
    for (int dy = 10; dy <= 60; dy += 10) {
      robot.moveTo(place.window, 252, 180 - dy), window.settle(echoes);
      eachStep();
    }
    robot.release(), window.settle(echoes);
  }

  static void nothing() {}

  OwnDisplay server;
  Robot robot;
  HostWindow place{0};
};

TEST_F(Lv2Window, AKnobThatIsDraggedTouchesAndWritesItsPort) {
  Instance one(44100.0, livelyState());
  Window window(one, place.window);
  ASSERT_NE(window.handle, nullptr);
  EXPECT_NE(reinterpret_cast<std::uintptr_t>(window.widget), 0U);
  EXPECT_EQ(window.told, std::vector<std::string>{"508 by 470"});
  window.settle();
  const float before = one.value(tag::cutoff);
  window.told.clear();
  for (int i = 0; i < 100 && window.told.empty(); ++i) drag(window, true);
  ASSERT_GE(window.told.size(), 3U);
  EXPECT_EQ(window.told.front(), "touch 10");
  EXPECT_EQ(window.told[1], "write 10");
  EXPECT_EQ(window.told.back(), "leave 10");
  EXPECT_GT(one.value(tag::cutoff), before);
  EXPECT_EQ(one.port(tag::cutoff), one.value(tag::cutoff));
}

TEST_F(Lv2Window, HasTheScaleAndTheRoomThatItsHostGives) {
  Instance one(44100.0, livelyState());
  const Window window(one, place.window, true, true, 1.25F);
  ASSERT_NE(window.handle, nullptr);
  EXPECT_EQ(window.told, std::vector<std::string>{"635 by 588"});
  EXPECT_EQ(place.innerSize(), std::pair(635, 588));
  const auto* const sizes = static_cast<const LV2UI_Resize*>(ui().extension_data(LV2_UI__resize));
  for (const auto& size : {std::pair(762, 705), std::pair(508, 470)}) {
    EXPECT_EQ(sizes->ui_resize(window.handle, size.first, size.second), 0);
    for (int i = 0; i < 5; ++i) {
      usleep(2000);
      EXPECT_EQ(window.idle(), 0);
    }
    EXPECT_EQ(place.innerSize(), size);
  }
}

// The host is late: it hands back what was written before, then the last of it, then its own.
TEST_F(Lv2Window, AnEchoDoesNotFightTheWindow) {
  Instance one;
  Window window(one, place.window);
  window.settle();
  std::vector<float> wrote;
  drag(window, false, [&] {
    const auto found = window.writes.find(kCutoffPort);
    if (found != window.writes.end()) wrote.push_back(found->second);
  });
  ASSERT_GE(wrote.size(), 3U);
  const float last = one.value(tag::cutoff);
  EXPECT_EQ(wrote.back(), last);
  for (const float late : wrote) {
    one.port(tag::cutoff) = late;
    one.play(noise(64));
    EXPECT_EQ(one.value(tag::cutoff), last);
  }
  one.port(tag::cutoff) = 0.125F;
  one.play(noise(64));
  EXPECT_EQ(one.value(tag::cutoff), 0.125F);
  // what it moves in spite of what it was told counts in the end
  drag(window, false);
  one.port(tag::cutoff) = 0.375F;
  one.play(noise(64));
  EXPECT_NE(one.value(tag::cutoff), 0.375F);
  one.play(noise(11025));
  EXPECT_EQ(one.value(tag::cutoff), 0.375F);
}

TEST_F(Lv2Window, AStateAndALearnedControllerAreWrittenToThePorts) {
  Instance one;
  Window window(one, place.window);
  window.settle();
  ASSERT_EQ(one.restore(livelyState()), LV2_STATE_SUCCESS);
  window.told.clear();
  EXPECT_EQ(window.idle(), 0);
  EXPECT_EQ(window.told.size(), std::size_t{kFaceParameters});
  window.settle();
  window.told.clear();
  const Events events = Events().midi(0, {0xB0, 74, 127});
  one.connect(kEvents, events.atom());
  one.play(noise(512));
  one.connect(kEvents, nullptr);
  window.settle();
  EXPECT_EQ(window.told, std::vector<std::string>{"write 10"});
  EXPECT_EQ(one.port(tag::cutoff), one.value(tag::cutoff));
}

// Only what a host calls is answered to it: no call comes from the thread.
TEST_F(Lv2Window, WithoutATimerWhatMovedIsToldWhenAPortMoves) {
  Instance one(44100.0, livelyState());
  Window window(one, place.window, true, false);
  window.hearPort();
  EXPECT_EQ(window.writes.size(), std::size_t{kFaceParameters});
  window.told.clear();
  const float before = one.value(tag::cutoff);
  robot.moveTo(place.window, 252, 180), robot.press(), robot.moveTo(place.window, 252, 120);
  for (int i = 0; i < 1000 && one.value(tag::cutoff) == before; ++i) usleep(10000);
  robot.release();
  EXPECT_EQ(window.told, std::vector<std::string>{});
  window.hearPort();
  EXPECT_EQ(window.told, std::vector<std::string>{"write 10"});
  window.echo();
  one.play(noise(64));
  EXPECT_EQ(one.port(tag::cutoff), one.value(tag::cutoff));
  EXPECT_GT(one.value(tag::cutoff), before);
}

TEST_F(Lv2Window, OpensTwentyTimesAndOnlyWhereItCanReachTheInstance) {
  Instance one;
  EXPECT_EQ(Window(one, place.window, false).handle, nullptr);
  EXPECT_EQ(Window(one, 0).handle, nullptr);
  for (int i = 0; i < 20; ++i) {
    Window window(one, place.window, true, i % 4 != 0);
    ASSERT_NE(window.handle, nullptr) << i;
    EXPECT_EQ(Window(one, place.window).handle, nullptr) << "a second one";
    if (i % 4 != 0) window.settle();
  }
  Window last(one, place.window);
  last.settle();
  XDestroyWindow(place.display, place.window), XSync(place.display, False);
  for (int i = 0; i < 100 && last.idle() == 0; ++i) usleep(2000);
  EXPECT_TRUE(isSound(one.play(noise(512))));
}

}  // namespace
}  // namespace zum::test
