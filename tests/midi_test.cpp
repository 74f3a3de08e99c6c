// MIDI from the host's events to what they move: the queue, learning, notes and controller maps
// as files.
#include <algorithm>
#include <cstring>

#include "core/tags.hpp"
#include "support/settings_user.hpp"
#include "support/test_host.hpp"
#include "support/told.hpp"

namespace zum::test {
namespace {

using Bindings = std::vector<Binding>;
constexpr std::int32_t kPass = 16;  // frames

EngineEvent controller(std::int32_t time, std::int32_t number, std::int32_t value = 0) {
  return {time, EngineEvent::kController, static_cast<std::uint8_t>(number),
          static_cast<std::uint8_t>(value)};
}

/// What leaves the queue in passes of so many frames: when, and its first number.
std::vector<std::pair<int, int>> takenFrom(EventQueue& queue, std::int32_t frames) {
  std::vector<std::pair<int, int>> taken;
  for (std::int32_t now = 0; queue.size() > 0; now += frames) {
    for (EngineEvent event{}; queue.next(event);) taken.emplace_back(now, event.data1);
    queue.age(frames);
  }
  return taken;
}

class MidiTest : public SettingsTest {
 protected:
  static void pass(TestHost& host, int passes = 1) {
    host.render(Stereo(static_cast<std::size_t>(passes) * kPass), {kPass});
  }
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
  EXPECT_EQ(takenFrom(queue, kPass),
            (std::vector<std::pair<int, int>>{{16, 0}, {48, 1}, {96, 2}, {96, 3}}));
  for (std::size_t i = 0; i < EventQueue::kRoom; ++i) {
    queue.insert(controller(i % 2 == 0 ? 2147483647 : -2147483647 - 1, 0));
  }
}

TEST(EventQueue, FullItKeepsTheLastOfAKindAndTheEndsOfNotes) {
  EventQueue queue;
  const auto insert = [&queue](std::int32_t time, EngineEvent::Code code, std::int32_t data1) {
    queue.insert({time, code, static_cast<std::uint8_t>(data1), static_cast<std::uint8_t>(time)});
  };
  for (int i = 0; i < 3; ++i) insert(0, EngineEvent::kNoteOff, 60);
  insert(0, EngineEvent::kNoteOn, 61);
  constexpr auto kValues = static_cast<std::int32_t>(EventQueue::kRoom) - 4;
  for (std::int32_t i = 1; i <= kValues; ++i) insert(i, EngineEvent::kController, i % 2);
  insert(kValues, EngineEvent::kProgramChange, 9);
  EXPECT_EQ(takenFrom(queue, 1),
            (std::vector<std::pair<int, int>>{
                {0, 60}, {0, 60}, {kValues - 1, 1}, {kValues, 0}, {kValues, 9}}));
}

TEST(EventInbox, WhatOverflowsGoesPastNothingThatIsDueLater) {
  EventInbox inbox;
  EventQueue queue;
  inbox.push(controller(500, 7));
  for (std::size_t i = 1; i < EventInbox::kRoom; ++i) inbox.push(controller(0, 8));
  inbox.push(controller(3, 7, 127));
  inbox.takeInto(queue);
  EngineEvent event{};
  for (; queue.size() > 0; queue.age(500)) {
    while (queue.next(event)) continue;
  }
  EXPECT_EQ(std::pair(int{event.data1}, int{event.data2}), std::pair(7, 127));
}

TEST_F(MidiTest, AControllerMovesInTheControlPassThatItIsDueIn) {
  TestHost host;
  ASSERT_TRUE(host.client().beginLearn(tag::cutoff));
  play(host, {{0, 0xB5, 7, 127}});  // the message that teaches moves already
  EXPECT_EQ(host.get(tag::cutoff), 1.0F);
  host.send({{112, 0xB0, 7, 0}, {112, 0xB0, 7, 127}, {112, 0xB0, 7, 64}, {130, 0xB0, 8, 1}});
  pass(host, 6);
  EXPECT_EQ(host.get(tag::cutoff), 1.0F);
  pass(host);
  EXPECT_EQ(host.get(tag::cutoff), 64.0F / 127.0F);  // the last of those at once
  EXPECT_EQ(host.client().controllerValue(8), 0.0F);
  pass(host, 2);
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
  client.beginLearn(tag::overdrive);
  client.endLearn();
  play(host, {{0, 0xB0, 20, 0}, {0, 0xB0, 22, 127}});
  EXPECT_EQ(host.get(tag::cutoff) + host.get(tag::resonance), 0.0F);
  EXPECT_EQ(map.controllers[21].size() + map.controllers[22].size(), 0U);
  client.beginLearn(tag::cutoff);
  play(host, {{0, 0xD0, 127}});
  EXPECT_EQ(map.aftertouch.all(), (Bindings{{tag::cutoff, 0}}));
  EXPECT_TRUE(host.get(tag::cutoff) == 1.0F && client.played().aftertouch == 1.0F);
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
  EXPECT_TRUE(map.controllers[20].all().empty() && !map.learning.load());
}

TEST_F(MidiTest, AMapThatIsBeingRewrittenMovesNothing) {
  TestHost host;
  ControllerMap& map = host.client().controllers();
  map.controllers[7].append({tag::cutoff, 0});
  map.aftertouch.append({tag::cutoff, 0});
  const float before = host.get(tag::cutoff);
  host.send({{0, 0xB0, 7, 127}});  // waits already
  map.learning.store(true);
  host.client().setOption(UserSwitches::kIgnoreProgramChanges, 0, false);
  play(host, {{0, 0xB0, 7, 127}, {0, 0xD0, 127}, {0, 0xC0, 5}, {0, 0x90, 60, 100}});
  const NoteState& played = host.client().played();
  EXPECT_TRUE(played.lastProgram == 0 && played.lastNote == 60.0F);
  map.learning.store(false);
  pass(host);
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
  EXPECT_TRUE(played.firstNote == 0.0F && played.pitchBend == -1.0F);
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
  pass(host, 4);
  EXPECT_EQ(played.notes[0], 51.0F);                 // the first voice is due again
  EXPECT_EQ(played.lastVelocity, 100 * 0.0078125F);  // the fourth offset is next to nothing
  EXPECT_EQ(std::ranges::count(played.velocities, 0.0F), 1);
  EXPECT_EQ(host.client().eventQueue().size(), 0U);
}

// A host goes on sending while no block takes it, far more than there is room for.
TEST_F(MidiTest, WhatNoBlockTakesEndsAsItWasPlayed) {
  enum class Gap { mute, offline, noBlock };  // the last one as in the second host's bypass
  for (const Gap gap : {Gap::mute, Gap::offline, Gap::noBlock}) {
    TestHost host;
    KvUniClient& client = host.client();
    client.setOption(UserSwitches::kIgnoreProgramChanges, 0, false);
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
    std::vector<ShortMessage> flood(200);
    for (int i = 0; i < 200; ++i) flood[static_cast<std::size_t>(i)] = {i, 0xB0, 7, i % 127};
    for (int block = 0; block < 15; ++block) go(flood);
    go({{0, 0x80, 60}, {0, 0x81, 60}, {0, 0xC0, 5}, {0, 0xC0, 9}});
    go({{0, 0xE0, 0, 127}, {0, 0xD0, 127}});
    go({{0, 0xB0, 7, 127}, {1, 0xB0, 8, 1}, {2, 0xB0, 7, 127}});
    client.muteRequest.store(false);
    host.host.level = kVstProcessLevelRealtime;
    pass(host);
    const NoteState& played = client.played();
    EXPECT_EQ(host.get(tag::cutoff), 1.0F) << static_cast<int>(gap);
    EXPECT_EQ(played.velocities, (std::array<float, 2>{}));
    EXPECT_TRUE(played.lastProgram == 9 && played.aftertouch == 1.0F);
    EXPECT_FLOAT_EQ(played.pitchBend, 1.0F);
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
  const std::string whole = textIn(folder / "map.kvm");
  const auto with = [&whole](std::size_t word, char value) {
    std::string bytes = whole;
    bytes[4 * word] = value;
    return bytes;
  };
  std::string old = whole.substr(0, 20) + "d\0\0\0\0\0\0\0"s + "\1\0\0\0\4\0\0\0"s;  // version 100
  old += std::string(std::size_t{4} * 127, '\0');
  const auto words = static_cast<std::uint32_t>(old.size() / 4);
  std::memcpy(old.data(), &words, 4);

  const std::string newer = "midi map was written with a newer version of ZUM";
  const std::string invalid = "\t This is no valid ZUM format!";
  const struct {
    std::string bytes, told;
    std::array<Bindings, 3> bound = {{{}, {{tag::master, 0}}, {}}};  // to controllers 0, 7 and 127
  } cases[] = {{whole, "", {{{}, {{tag::cutoff, 0}}, {{-300, 5}}}}},
               {old, "", {{{{tag::resonance, 0}}, {}, {}}}},
               {with(1, 4), newer},
               {with(4, 0), ""},  // other formats
               {with(5, 102), ""},
               {with(6, 1), ""},
               {with(7, 127), invalid},
               {whole.substr(0, 400), invalid},
               {whole + std::string(1U << 20U, '\0'), invalid},
               {"", ""}};
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    putText(folder / "other.kvm", cases[i].bytes);
    client.clearAllBindings();
    map.controllers[7].append({tag::master, 0});
    const std::string told = toldBy([&] { client.loadCcMap(internal("other.kvm").c_str()); });
    EXPECT_TRUE(has(told, cases[i].told) && told.empty() == cases[i].told.empty()) << i << told;
    EXPECT_EQ((std::array{map.controllers[0].all(), map.controllers[7].all(),
                          map.controllers[127].all()}),
              cases[i].bound)
        << i;
    EXPECT_EQ(map.controllers[126].size(), 0U);
  }

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
  // Controller 74 down at once, up after a beat.
  putText(folder / "song.mid", midiFile("\0\xB0\x4A\0\x83\x60\x4A\x7F"s));
  ASSERT_EQ(run("ccmap make cutoff.kvm 74=Cutoff").first, 0);
  for (const std::string source : {"--learn 74=Cutoff", "--cc-map cutoff.kvm"}) {
    ASSERT_EQ(run("render in.wav out.wav --midi song.mid --trace t.csv " + source).first, 0);
    // Time and cutoff are its first and its fifth column.
    EXPECT_EQ(shell("awk -F, '$1 < 0.49 {low = $5} {high = $5}"
                    " END {print (low < 30 && high > 10000)}' t.csv"),
              std::pair(0, "1\n"s))
        << source;
  }
  expectTold("", {{"ccmap show cutoff.kvm", 0, "controller  parameter\n        74  Cutoff\n"},
                  {"ccmap show song.mid", 1,
                   "song.mid is no controller map that loads: another magic number"},
                  {"render in.wav out.wav --midi in.wav", 1, "is no standard MIDI file"},
                  {"render in.wav out.wav --midi none.mid", 1, "cannot read none.mid"},
                  {"render in.wav out.wav --learn 128=Cutoff", 2, "a controller from 0 to 127"},
                  {"render in.wav song.mid --midi song.mid", 2, "would overwrite song.mid"}});
}

}  // namespace
}  // namespace zum::test
