// MIDI from the host's events to what they move: the queue, learning, notes, programs and
// controller maps as files.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <sstream>

#include "core/tags.hpp"
#include "support/settings_user.hpp"
#include "support/test_host.hpp"
#include "support/told.hpp"

namespace zum::test {
namespace {

using Bindings = std::vector<Binding>;
constexpr std::int32_t kPass = 16;  // frames

EngineEvent controller(std::int32_t time, std::int32_t number, std::int32_t value = 0) {
  return {.time = time, .code = EngineEvent::kController, .data1 = number, .data2 = value};
}

class MidiTest : public SettingsTest {
 protected:
  /// One control pass.
  static void pass(TestHost& host) { host.render(Stereo(kPass), {kPass}); }
  static void play(TestHost& host, const std::vector<ShortMessage>& messages) {
    EXPECT_EQ(host.send(messages), 1);
    pass(host);
  }
};

TEST(EventQueue, TimesRunFromEventToEventAndAnInsertionShiftsAllThatFollow) {
  EventQueue queue;
  // 58 frames behind the first, as late and so behind it, and in front: 30, 48 and -10 are left
  for (const auto& [time, name] : {std::pair{40, 1}, {98, 2}, {98, 3}, {10, 0}}) {
    queue.insert(controller(time, name));
  }
  std::vector<std::pair<int, int>> taken;  // frames, name
  for (int frames = 0; queue.size() > 0; frames += kPass) {
    for (EngineEvent event; queue.next(event);) taken.emplace_back(frames, event.data1);
    queue.age(kPass);
  }
  EXPECT_EQ(taken, (std::vector<std::pair<int, int>>{{16, 0}, {48, 1}, {96, 2}, {96, 3}}));
  for (std::size_t i = 0; i < EventQueue::kRoom; ++i) {
    queue.insert(controller(i % 2 == 0 ? 2147483647 : -2147483647 - 1, 0));
  }
}

TEST(EventQueue, FullItKeepsTheLastOfAKindAndTheEndsOfNotes) {
  EventQueue queue;
  const auto insert = [&queue](std::int32_t time, EngineEvent::Code code, std::int32_t data1) {
    queue.insert({.time = time, .code = code, .data1 = data1, .data2 = time});
  };
  for (int i = 0; i < 3; ++i) insert(0, EngineEvent::kNoteOff, 60);
  insert(0, EngineEvent::kNoteOn, 61);
  constexpr auto kValues = static_cast<std::int32_t>(EventQueue::kRoom) - 4;
  for (std::int32_t i = 1; i <= kValues; ++i) insert(i, EngineEvent::kController, i % 2);
  insert(kValues, EngineEvent::kProgramChange, 9);
  std::vector<std::array<std::int32_t, 3>> taken;
  for (std::int32_t frames = 0; queue.size() > 0; ++frames) {
    for (EngineEvent event; queue.next(event);) taken.push_back({frames, event.code, event.data1});
    queue.age(1);
  }
  EXPECT_EQ(taken,
            (std::vector<std::array<std::int32_t, 3>>{{0, EngineEvent::kNoteOff, 60},
                                                      {0, EngineEvent::kNoteOff, 60},
                                                      {kValues - 1, EngineEvent::kController, 1},
                                                      {kValues, EngineEvent::kController, 0},
                                                      {kValues, EngineEvent::kProgramChange, 9}}));
}

TEST(EventInbox, WhatOverflowsGoesPastNothingThatIsDueLater) {
  EventInbox inbox;
  EventQueue queue;
  inbox.push(controller(500, 7));
  for (std::size_t i = 1; i < EventInbox::kRoom; ++i) inbox.push(controller(0, 8));
  inbox.push(controller(3, 7, 127));
  inbox.takeInto(queue);
  EngineEvent event;
  for (; queue.size() > 0; queue.age(500)) {
    while (queue.next(event)) {
    }
  }
  EXPECT_EQ(std::pair(event.data1, event.data2), std::pair(7, 127));
}

TEST_F(MidiTest, AControllerMovesInTheControlPassThatItIsDueIn) {
  TestHost host;
  ASSERT_TRUE(host.client().beginLearn(tag::cutoff));
  play(host, {{0, 0xB5, 7, 127}});  // the message that teaches moves already
  EXPECT_EQ(host.get(tag::cutoff), 1.0F);
  host.send({{112, 0xB0, 7, 0}, {112, 0xB0, 7, 127}, {112, 0xB0, 7, 64}, {130, 0xB0, 8, 1}});
  for (int passes = 1; passes <= 7; ++passes) {
    EXPECT_EQ(host.get(tag::cutoff), 1.0F) << passes;
    pass(host);
  }
  EXPECT_EQ(host.get(tag::cutoff), 64.0F / 127.0F);  // the last of those at once
  EXPECT_EQ(host.client().controllerValue(8), 0.0F);
  pass(host);
  pass(host);
  EXPECT_FLOAT_EQ(host.client().controllerValue(8), 1.0F / 127.0F);
  VstEvents none{};
  for (const int count : {2, -5}) {  // of null pointers
    none.numEvents = count;
    EXPECT_EQ(host.dispatch(effProcessEvents, 0, 0, &none), 1);
  }
}

TEST_F(MidiTest, LearningIsSpentByOneMessageAndBindsAsOftenAsAsked) {
  TestHost host;
  KvUniClient& client = host.client();
  ControllerMap& map = client.controllers();
  for (const int tag : {tag::cutoff, tag::cutoff, tag::resonance}) {
    ASSERT_TRUE(client.beginLearn(tag));
    play(host, {{0, 0xB0, 20, 127}, {0, 0xB0, 21, 127}});
  }
  EXPECT_EQ(map.controllers[20].all(),
            (Bindings{{tag::cutoff, 0}, {tag::cutoff, 0}, {tag::resonance, 0}}));
  EXPECT_EQ(map.controllers[21].size(), 0U);
  play(host, {{0, 0xB0, 20, 0}});
  EXPECT_EQ(host.get(tag::cutoff) + host.get(tag::resonance), 0.0F);
  client.beginLearn(tag::overdrive);
  client.endLearn();
  play(host, {{0, 0xB0, 22, 127}});
  EXPECT_EQ(map.controllers[22].size(), 0U);
  client.beginLearn(tag::cutoff);
  play(host, {{0, 0xD0, 127}});
  EXPECT_EQ(map.aftertouch.all(), (Bindings{{tag::cutoff, 0}}));
  EXPECT_EQ(host.get(tag::cutoff), 1.0F);
  EXPECT_EQ(client.played().aftertouch, 1.0F);
  for (const int tag : {-1, tag::masterSeq + 1, kLastTag + 1, 40000})
    EXPECT_FALSE(client.beginLearn(tag));

  // Room is made in silence, and a silence of others' outlasts it.
  while (map.controllers[30].tryAppend({tag::master, 0})) continue;
  client.muteRequest.store(true);
  EXPECT_TRUE(client.beginLearn(tag::cutoff) && map.controllers[30].tryAppend({tag::master, 0}));
  EXPECT_TRUE(client.muteRequest.exchange(false));
  client.endLearn();

  map.controllers[20].append({tag::cutoff, 1});
  client.clearBindings(tag::cutoff);  // not those of a mode, nor of pressure
  EXPECT_EQ(map.controllers[20].all(), (Bindings{{tag::resonance, 0}, {tag::cutoff, 1}}));
  EXPECT_EQ(map.aftertouch.size(), 1U);
  client.clearAllBindings();
  EXPECT_EQ(map.controllers[20].size(), 0U);
  EXPECT_FALSE(map.learning.load());
}

TEST_F(MidiTest, AMapThatIsBeingRewrittenMovesNothing) {
  TestHost host;
  ControllerMap& map = host.client().controllers();
  map.controllers[7].append({tag::cutoff, 0});
  map.aftertouch.append({tag::cutoff, 0});
  const float before = host.get(tag::cutoff);
  host.send({{0, 0xB0, 7, 127}});  // waits already
  map.learning.store(true);
  host.client().setOption(KvUniClient::kIgnoreProgramChanges, 0, false);
  play(host, {{0, 0xB0, 7, 127}, {0, 0xD0, 127}, {0, 0xC0, 5}, {0, 0x90, 60, 100}});
  EXPECT_EQ(host.client().played().lastProgram, 0);
  EXPECT_EQ(host.get(tag::cutoff), before);
  EXPECT_EQ(host.client().played().lastNote, 60.0F);
  map.learning.store(false);
  pass(host);
  EXPECT_EQ(host.get(tag::cutoff), before);
  host.client().adaptorTransport.store(true);
  play(host, {{0, 0xB0, 7, 127}});
  EXPECT_EQ(host.get(tag::cutoff), before);
}

TEST_F(MidiTest, NotesTakeVoicesAndLeaveThem) {
  TestHost host;
  const NoteState& played = host.client().played();
  play(host, {{0, 0x90, 69, 64}, {0, 0x90, 81, 127}, {0, 0xE0, 5, 0}});
  EXPECT_EQ(played.notes, (std::array<float, 2>{69.0F, 81.0F}));
  EXPECT_EQ(played.pitches, (std::array<float, 2>{440.0F, 880.0F}));
  EXPECT_EQ(played.velocities, (std::array<float, 2>{0.5F + 1.2e-6F, 127 * 0.0078125F + 2.4e-6F}));
  EXPECT_EQ(played.firstNote, 0.0F);
  EXPECT_EQ(played.pitchBend, -1.0F);
  play(host, {{0, 0x80, 81, 0}, {0, 0xE0, 0, 127}});
  EXPECT_EQ(played.lastNote, 69.0F);
  EXPECT_FLOAT_EQ(played.pitchBend, 1.0F);
  play(host, {{0, 0x9F, 69, 0}, {0, 0x90, 40, 1}});
  EXPECT_EQ(played.firstNote, 1.0F);
  play(host, {{0, 0xB1, 123, 0}});  // on the second channel a controller like others
  EXPECT_NE(played.lastVelocity, 0.0F);
  play(host, {{0, 0xB0, 123, 0}});
  EXPECT_EQ(played.velocities, (std::array<float, 2>{}));
  EXPECT_EQ(played.lastVelocity, 0.0F);

  host.send({{40, 0x90, 51, 100}, {40, 0x90, 50, 100}});
  play(host, {{0, 0x80, 50, 0}});  // ahead of its begin: that note alone never sounds
  for (int i = 0; i < 4; ++i) pass(host);
  EXPECT_EQ(played.notes[0], 51.0F);                 // the first voice is due again
  EXPECT_EQ(played.lastVelocity, 100 * 0.0078125F);  // the fourth offset is next to nothing
  EXPECT_EQ(std::ranges::count(played.velocities, 0.0F), 1);
  EXPECT_EQ(host.client().eventQueue().size(), 0U);
}

TEST_F(MidiTest, ProgramsChangeWhereTheUserAllowsIt) {
  initSettings(ignoreSwitch);
  writeSettingString(kPresetPath, internal("tree"));
  fs::create_directories(folder / "tree/Midi Programs");
  TestHost writer;
  writer.set(tag::cutoff, 0.875F);
  writer.client().savePreset(internal("tree/Midi Programs/only.kvz").c_str(), 0, nullptr, false);
  TestHost host;
  const auto change = [&](int program) {
    host.set(tag::cutoff, 0.25F);
    play(host, {{0, 0xC0, program}});
    return host.get(tag::cutoff);
  };
  EXPECT_EQ(change(0), 0.25F);
  host.client().setOption(0, 0, true);
  EXPECT_EQ(change(0), 0.875F);
  EXPECT_EQ(host.client().slot().name.get(), "only");
  EXPECT_EQ(change(5), 0.25F);  // there is none
  EXPECT_EQ(TestHost().client().option(0), 0.0F);
}

// A host goes on sending while no block takes it, far more than there is room for.
TEST_F(MidiTest, WhatNoBlockTakesEndsAsItWasPlayed) {
  enum class Gap { mute, offline, noBlock };  // the last one as in the second host's bypass
  for (const Gap gap : {Gap::mute, Gap::offline, Gap::noBlock}) {
    TestHost host;
    KvUniClient& client = host.client();
    client.setOption(KvUniClient::kIgnoreProgramChanges, 0, false);
    client.controllers().controllers[7].append({tag::cutoff, 0});
    client.controllers().controllers[8].append({tag::cutoff, 0});
    play(host, {{0, 0x90, 60, 100}, {0, 0x91, 60, 100}});
    client.muteRequest.store(gap == Gap::mute);
    host.host.level = gap == Gap::offline ? kVstProcessLevelOffline : kVstProcessLevelRealtime;
    const auto go = [&](std::vector<ShortMessage> messages) {
      for (ShortMessage& each : messages) each.delta *= gap == Gap::noBlock ? 0 : 1;
      host.send(messages);
      if (gap != Gap::noBlock) pass(host);
    };
    for (int block = 0; block < 15; ++block) {
      std::vector<ShortMessage> messages(200);
      for (int i = 0; i < 200; ++i) messages[static_cast<std::size_t>(i)] = {i, 0xB0, 7, i % 127};
      go(messages);
    }
    go({{0, 0x80, 60},
        {0, 0x81, 60},
        {0, 0xC0, 5},
        {0, 0xC0, 9},
        {0, 0xE0, 0, 127},
        {0, 0xD0, 127}});
    go({{0, 0xB0, 7, 127}, {1, 0xB0, 8, 1}, {2, 0xB0, 7, 127}});
    client.muteRequest.store(false);
    host.host.level = kVstProcessLevelRealtime;
    pass(host);
    const NoteState& played = client.played();
    EXPECT_EQ(host.get(tag::cutoff), 1.0F) << static_cast<int>(gap);
    EXPECT_EQ(played.velocities, (std::array<float, 2>{}));
    EXPECT_EQ(played.lastProgram, 9);
    EXPECT_FLOAT_EQ(played.pitchBend, 1.0F);
    EXPECT_EQ(played.aftertouch, 1.0F);
    play(host, {{0, 0xB0, 8, 0}});
    EXPECT_EQ(host.get(tag::cutoff), 0.0F);
  }
}

TEST_F(MidiTest, MapsAreFiles) {
  TestHost host;
  KvUniClient& client = host.client();
  ControllerMap& map = client.controllers();
  const std::string path = internal("map.kvm");
  client.saveCcMap(path.c_str());
  EXPECT_EQ(textIn(folder / "map.kvm").size(), 4U * (5 + 130));
  map.controllers[7].append({tag::cutoff, 0});
  map.controllers[127].append({-300, 5});
  map.controllers[126].append({preset::kEndOfController, 0});  // which no preset could hold
  client.saveCcMap(path.c_str());
  std::string whole = textIn(folder / "map.kvm");
  const auto load = [&](const std::string& bytes) {
    putText(folder / "other.kvm", bytes);
    map.controllers[7].clear();
    map.controllers[9].append({tag::master, 0});
    const std::string told = toldBy([&] { client.loadCcMap(internal("other.kvm").c_str()); });
    const bool taken = map.controllers[9].size() == 0;
    map.controllers[9].clear();
    return std::pair(taken, told);
  };
  EXPECT_EQ(load(whole), std::pair(true, ""s));
  EXPECT_EQ(map.controllers[7].all(), (Bindings{{tag::cutoff, 0}}));
  EXPECT_EQ(map.controllers[127].all(), (Bindings{{-300, 5}}));
  EXPECT_EQ(map.controllers[126].size(), 0U);
  const auto with = [&whole](std::size_t word, char value) {
    std::string bytes = whole;
    bytes[4 * word] = value;
    return bytes;
  };
  const std::string newer = "midi map was written with a newer version of ZUM";
  const std::string invalid = "\t This is no valid ZUM format!";
  EXPECT_TRUE(has(load(with(1, 4)).second, newer));
  for (const auto& [word, value] : {std::pair{4U, 0}, {5U, 102}, {6U, 1}}) {
    EXPECT_EQ(load(with(word, static_cast<char>(value))), std::pair(false, ""s));  // another format
  }
  for (const std::string& damaged :
       {with(7, 127), whole.substr(0, 400), whole + std::string(1U << 20U, '\0')}) {
    EXPECT_TRUE(has(load(damaged).second, invalid));
  }
  EXPECT_FALSE(load("").first);

  std::string old = whole.substr(0, 20) + "d\0\0\0\0\0\0\0"s + "\1\0\0\0\4\0\0\0"s;  // version 100
  for (int i = 1; i < 128; ++i) old += "\0\0\0\0"s;
  const auto words = static_cast<std::uint32_t>(old.size() / 4);
  std::memcpy(old.data(), &words, 4);
  EXPECT_EQ(load(old), std::pair(true, ""s));
  EXPECT_EQ(map.controllers[0].all(), (Bindings{{tag::resonance, 0}}));

  EXPECT_EQ(toldBy([&] {
              client.saveCcMap(internal("none/map.kvm").c_str());
              for (const char* silent : {"x", "EMPTY", static_cast<const char*>(nullptr)}) {
                client.saveCcMap(silent);
              }
            }),
            "ZUM: saving cc map to " + internal("none/map.kvm") + " failed\n");
}

TEST_F(MidiTest, TheCommandLinePlaysFilesAndShowsMaps) {
  fs::copy_file(ZUM_SOURCE_DIR "/content/Samples/Factory/Chords.wav", folder / "in.wav");
  // One track, 480 to a beat: controller 74 down at once, up after a beat.
  const std::string track = "\0\xB0\x4A\0\x83\x60\x4A\x7F\0\xFF\x2F\0"s;
  putText(folder / "song.mid", "MThd\0\0\0\6\0\0\0\1\1\xE0MTrk\0\0\0\x0C"s + track);
  ASSERT_EQ(run("ccmap make cutoff.kvm 74=Cutoff").first, 0);
  for (const std::string source : {"--learn 74=Cutoff", "--cc-map cutoff.kvm"}) {
    const std::string arguments = "render in.wav out.wav --midi song.mid --trace t.csv " + source;
    ASSERT_EQ(run(arguments).first, 0);
    std::istringstream rows(textIn(folder / "t.csv"));
    std::vector<double> cutoffs;
    for (std::string row; std::getline(rows, row);) {
      const double time = std::strtod(row.c_str(), nullptr);
      const auto comma = [&row](std::size_t from) { return row.find(',', from) + 1; };
      const double cutoff = std::strtod(row.c_str() + comma(comma(comma(comma(0)))), nullptr);
      if ((time > 0.4 && time < 0.49) || time > 0.6) cutoffs.push_back(cutoff);
    }
    ASSERT_FALSE(cutoffs.empty());
    EXPECT_LT(cutoffs.front(), 30.0) << source;
    EXPECT_GT(cutoffs.back(), 10000.0) << source;
  }
  EXPECT_EQ(run("ccmap show cutoff.kvm"),
            std::pair(0, "controller  parameter\n        74  Cutoff\n"s));
  const std::pair<std::string, std::string> wrong[] = {
      {"ccmap show song.mid", "song.mid is no controller map that loads: another magic number"},
      {"render in.wav out.wav --midi in.wav", "is no standard MIDI file"},
      {"render in.wav out.wav --midi none.mid", "cannot read none.mid"},
      {"render in.wav out.wav --learn 128=Cutoff", "a controller from 0 to 127"},
      {"render in.wav song.mid --midi song.mid", "would overwrite song.mid"}};
  for (const auto& [arguments, why] : wrong) {
    const auto outcome = run(arguments);
    EXPECT_TRUE(outcome.first != 0 && has(outcome.second, why)) << outcome.second;
  }
  // Cut anywhere the file is refused or read as far as it goes; the library ends its process.
  const std::string song = textIn(folder / "song.mid");
  for (std::size_t bytes = 0; bytes < song.size(); ++bytes) {
    putText(folder / "cut.mid", song.substr(0, bytes));
    const int exitCode = run("render in.wav out.wav --midi cut.mid").first;
    EXPECT_TRUE(exitCode == 0 || exitCode == 1) << bytes;
  }
}

}  // namespace
}  // namespace zum::test
