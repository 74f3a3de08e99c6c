// Undo, redo, A and B: every state comes back to the byte, whatever plays meanwhile, and the host
// hears of it without a silent frame.

#include <algorithm>
#include <atomic>
#include <functional>
#include <thread>
#include <tuple>

#include "core/tags.hpp"
#include "platform/files.hpp"
#include "platform/random_source.hpp"
#include "preset_text/sound_text.hpp"
#include "support/settings_user.hpp"
#include "support/test_host.hpp"

namespace zum::test {
namespace {

constexpr std::int32_t kFrames = 64;

/// An effect whose window was opened, and a user.
class HistoryTest : public SettingsTest {
 protected:
  HistoryTest() {
    initSettings();
    writeSettingString(kPresetPath, internal("tree"));
    fs::create_directories(folder / "tree/A");
    for (const char* name : {"A/one", "A/two", "A/three"}) putPreset(name);
    putText(folder / "map.kcm", "");
    host.emplace();
    for (int tag = 10; tag < 20; ++tag) bind(tag, tag::cutoff + tag % 3);
    effect().saveCcMap(internal("map.kcm").c_str());
    effect().clearAllBindings();
    effect().storeRevertPoint();
    effect().keepHistory();
  }

  KvUniClient& effect() { return host->client(); }
  std::string state() { return host->state(); }
  float raw(int tag) { return loadShared(effect().value(tag).raw); }

  void putPreset(const std::string& name) {
    const TestHost made;
    SystemRandom chance(static_cast<std::uint32_t>(name.size()));
    made.client().randomise(chance);
    if (name == "A/two") made.client().setStepColumns(13);
    if (name == "A/three") made.client().controllers().controllers[7].append({tag::mixDryWet, 0});
    putText(folder / "tree" / (name + ".kvz"), made.state());
  }
  void bind(int controller, int tag) {
    effect().controllers().controllers[static_cast<std::size_t>(controller)].append(
        {static_cast<std::int16_t>(tag), 0});
  }
  void load(const std::string& name) {
    effect().loadPresetFile(internal("tree/A/" + name + ".kvz").c_str(), 0, nullptr, true);
  }
  template <class... Values>
  void gesture(int tag, Values... values) {
    effect().beginEdit(tag);
    (effect().setByUser(tag, values), ...);
    effect().endEdit(tag);
  }
  /// One notch a gesture, as wheels and keys that repeat.
  template <class... Values>
  void wheel(int tag, Values... values) {
    for (const float value : {values...}) {
      effect().beginEdit(tag);
      effect().mergeStep();
      effect().setByUser(tag, value);
      effect().endEdit(tag);
    }
  }
  void draw(int step, float value) {
    effect().beginEdit(tag::stepTable);
    effect().steps().setValue(step, 0, value);
    effect().endEdit(tag::stepTable);
  }

  std::optional<TestHost> host;
};

TEST_F(HistoryTest, EachThingTheUserDoesIsOneStepWithAName) {
  const struct {
    std::string name;
    std::function<void()> act;
  } rows[] = {
      {"Cutoff", [&] { gesture(tag::cutoff, 0.1F, 0.2F, 0.9F); }},
      {"Vowel type", [&] { gesture(tag::vowelType, 0.55F); }},
      {"Resonance", [&] { wheel(tag::resonance, 0.9F, 0.8F, 0.7F); }},
      {"Overdrive by LFO", [&] { gesture(tag::driveLfo, 0.1F); }},
      {"Zero all mod", [&] { wheel(tag::resetAll, 0.5F, 0.0F); }},
      {"Cutoff by LFO", [&] { gesture(tag::cutoffLfo, 0.9F); }},
      {"Cutoff: reset", [&] { wheel(tag::cutoffPanel.reset, 0.5F, 0.0F); }},
      {"Steps", [&] { draw(3, 0.375F); }},
      {"Steps", [&] { effect().setStepColumns(40); }},
      {"Preset two", [&] { load("two"); }},
      {"Preset three",
       [&] {
         effect().nextPreset(0);
         effect().nextPreset(0);
       }},
      {"Load controllers", [&] { effect().loadCcMap(internal("map.kcm").c_str()); }},
      {"Clear controllers", [&] { effect().clearBindings(tag::cutoff); }},
      {"Clear controllers", [&] { effect().clearAllBindings(); }},
      {"Randomise",
       [&] {
         SystemRandom chance(5);
         effect().randomise(chance);
       }},
      {"Revert", [&] { effect().revertToStored(); }},
      {"Initialise", [&] { effect().initialise(); }},
  };
  for (const auto& row : rows) {
    const std::string before = state();
    row.act();
    EXPECT_EQ(effect().undoName(), row.name);
    EXPECT_FALSE(state() == before) << row.name;
  }
  while (effect().undo()) {
  }
  effect().redo();
  EXPECT_EQ(effect().redoName(), "Vowel type");
  EXPECT_EQ(effect().undoName(), "Cutoff");
}

TEST_F(HistoryTest, WhatMovesNothingIsNoStepAndKeepsRedo) {
  gesture(tag::cutoff, 0.9F);
  ASSERT_TRUE(effect().undo());
  const float cutoff = raw(tag::cutoff);
  gesture(tag::resonance);
  gesture(tag::cutoff, 0.5F, cutoff);
  gesture(tag::mouseArea, 0.5F);
  effect().setParameter(tag::modChoice, 0.5F);  // the page is nothing that is heard
  load("missing");
  effect().endEdit(tag::cutoff);
  draw(0, 0.0F);
  EXPECT_FALSE(effect().canUndo());
  EXPECT_EQ(effect().redoName(), "Cutoff");
  effect().beginEdit(tag::cutoff);
  EXPECT_FALSE(effect().redo()) << "while it is held";
  effect().endEdit(tag::cutoff);
  EXPECT_TRUE(effect().redo());
  EXPECT_EQ(raw(tag::modChoice), 0.0F) << "the page on which it moved";
}

TEST_F(HistoryTest, AWheelIsOneStepUntilItRests) {
  wheel(tag::cutoff, 0.5F, 0.6F);
  wheel(tag::cutoff, 0.7F);
  effect().sealStep();
  wheel(tag::cutoff, 0.8F, 0.9F);
  wheel(tag::resonance, 0.3F);
  wheel(tag::cutoff, 1.0F);
  for (const float expected : {0.9F, 0.9F, 0.7F}) {
    ASSERT_TRUE(effect().undo());
    EXPECT_EQ(raw(tag::cutoff), expected);
  }
  ASSERT_TRUE(effect().undo());
  EXPECT_FALSE(effect().canUndo());
}

TEST_F(HistoryTest, UndoLeavesWhatAutomationMovesAndTellsTheHost) {
  gesture(tag::cutoff, 0.9F);
  gesture(tag::vowelType, 0.55F);  // unknown to this host
  host->set(tag::resonance, 0.25F);
  host->host.calls.clear();
  EXPECT_TRUE(effect().undo());
  EXPECT_TRUE(host->host.calls.empty());
  EXPECT_TRUE(effect().undo());
  EXPECT_EQ(host->host.calls, edits({tag::cutoff}));
  EXPECT_EQ(host->get(tag::cutoff), 0.2157F);
  EXPECT_EQ(host->get(tag::resonance), 0.25F);
  for (const auto& act : {std::function<void()>([&] { load("one"); }),
                          std::function<void()>([&] { draw(1, 0.5F); })}) {
    act();
    host->host.calls.clear();
    EXPECT_TRUE(effect().undo());
    EXPECT_EQ(host->host.calls, (HostCalls{{audioMasterUpdateDisplay, 0, 0}}));
  }
}

TEST_F(HistoryTest, AStateOfTheHostsAndAProgramInABlockEndIt) {
  const std::string session = state();
  gesture(tag::cutoff, 0.9F);
  effect().chooseSound(1);
  gesture(tag::cutoff, 0.8F);
  host->load(session);
  EXPECT_FALSE(effect().canUndo());
  EXPECT_EQ(effect().chosenSound(), 0);
  EXPECT_TRUE(effect().chooseSound(1));
  EXPECT_TRUE(state() == session);
  EXPECT_FALSE(effect().canUndo());
  gesture(tag::cutoff, 0.7F);
  host->dispatch(effSetProgram, 0, 1);  // of the host's main thread: a step
  EXPECT_EQ(effect().undoName(), "Preset three");
  EXPECT_TRUE(effect().tryProgram("A", "one"));
  EXPECT_FALSE(effect().canUndo());
  gesture(tag::cutoff, 0.6F);
  effect().beginEdit(tag::cutoff);
  effect().setByUser(tag::cutoff, 0.1F);
  EXPECT_TRUE(effect().tryProgram("A", "one"));
  effect().endEdit(tag::cutoff);
  EXPECT_FALSE(effect().canUndo()) << "what was held is not of the new program";
}

TEST_F(HistoryTest, AAndBHaveASoundAndAWayBackEach) {
  gesture(tag::cutoff, 0.9F);
  const std::string a = state();
  EXPECT_FALSE(effect().chooseSound(0));
  EXPECT_FALSE(effect().chooseSound(2));
  ASSERT_TRUE(effect().chooseSound(1));
  EXPECT_EQ(raw(tag::cutoff), 0.2157F) << "as both were";
  load("two");
  const std::string b = state();
  for (int i = 0; i < 2; ++i) {
    ASSERT_TRUE(effect().chooseSound(0));
    EXPECT_TRUE(state() == a);
    EXPECT_EQ(effect().undoName(), "Cutoff");
    ASSERT_TRUE(effect().chooseSound(1));
    EXPECT_TRUE(state() == b);
    EXPECT_EQ(effect().undoName(), "Preset two");
  }
  ASSERT_TRUE(effect().copySound());
  ASSERT_TRUE(effect().chooseSound(0));
  EXPECT_TRUE(state() == b);
  ASSERT_TRUE(effect().undo());
  EXPECT_TRUE(state() == a) << "what was copied over";
  ASSERT_TRUE(effect().undo());
  EXPECT_EQ(raw(tag::cutoff), 0.2157F);
}

// A host may bring its session inside of what it is told: no old value lands on it.
TEST_F(HistoryTest, ASessionThatComesDuringUndoStandsWhole) {
  const std::string session = state();
  SystemRandom chance(5);
  effect().randomise(chance);
  int brought = 0;
  host->host.onCall = [&](std::int32_t opcode) {
    if (opcode == audioMasterBeginEdit && brought++ == 0) host->load(session);
  };
  effect().undo();
  host->host.onCall = {};
  EXPECT_EQ(brought, 1);
  EXPECT_TRUE(state() == session);
  EXPECT_FALSE(effect().canUndo() || effect().canRedo());
}

TEST_F(HistoryTest, AnArrowKeepsItsControllerOnTheWayBackAndInTheOtherSound) {
  load("one");
  bind(20, tag::nextProgram);
  const auto isBound = [&] {
    return effect().controllers().controllers[20].moves(tag::nextProgram);
  };
  EXPECT_TRUE(effect().undo() && isBound());
  EXPECT_TRUE(effect().chooseSound(1) && isBound());
  EXPECT_TRUE(effect().chooseSound(0) && isBound());
  EXPECT_EQ(effect().controllers().controllers[20].size(), 1U);
}

TEST_F(HistoryTest, AnIsolatedMapStaysWithTheUser) {
  effect().setOption(UserSwitches::kIsolateMap, 1, false);
  load("one");
  bind(20, tag::cutoff);
  const std::string before = state();
  load("three");
  ASSERT_TRUE(effect().undo());
  EXPECT_TRUE(state() == before);
  ASSERT_TRUE(effect().redo());
  EXPECT_EQ(effect().controllers().controllers[20].size(), 1U);
}

TEST_F(HistoryTest, TheOldestStepsGoByNumberAndByBytes) {
  for (int i = 0; i < 130; ++i) gesture(tag::cutoff, static_cast<float>(i) / 130.0F);
  int steps = 0;
  for (; effect().undo(); ++steps) {
  }
  EXPECT_EQ(steps, 100);
  EXPECT_EQ(raw(tag::cutoff), 29.0F / 130.0F);
  effect().setStepColumns(200000);
  for (int i = 0; i < 30; ++i) draw(i, 0.6F);
  for (steps = 0; effect().undo(); ++steps) {
  }
  EXPECT_EQ(steps, 10) << "of 0.8 MB each";
  EXPECT_EQ(effect().steps().cell(19, 0), 0.6F);
  EXPECT_EQ(effect().steps().cell(20, 0), 0.0F);
}

TEST_F(HistoryTest, ASoundIsCopiedAsTextAndPastedAsOneStep) {
  load("two");
  gesture(tag::cutoff, 0.9F);
  draw(3, 0.375F);
  const std::string copied = soundText(effect());
  load("three");
  EXPECT_EQ(pasteSound(effect(), copied), "");
  EXPECT_EQ(effect().undoName(), "Paste");
  const auto sound = [](const std::string& text) { return text.substr(text.find("[param")); };
  EXPECT_EQ(sound(soundText(effect())), sound(copied)) << "the place in the bank stays";
  ASSERT_TRUE(effect().undo());
  EXPECT_EQ(effect().undoName(), "Preset three");
  const std::string three = state();
  const struct {
    std::string text, why;
  } rows[] = {{"", "no [parameters]"},
              {"hello", "the clipboard, line 1: "},
              {"[parameters]\nCutof = 0.5\n", "the clipboard, line 2: no parameter is called"},
              {"[parameters]\nCutoff = [[[\n", "line"},
              {std::string(20000, '['), "line 1"},
              {std::string(5U << 20U, '\n'), "more than 4 MB"},
              {std::string("\0\xFF\0", 3), "line 1"}};
  for (const auto& row : rows) {
    const std::string told = pasteSound(effect(), row.text);
    EXPECT_NE(told.find(row.why), std::string::npos) << told;
    EXPECT_TRUE(state() == three && effect().undoName() == "Preset three") << row.why;
  }
}

/// Everything that is a step, by chance.
class RandomUser : public HistoryTest {
 protected:
  int next(int count) { return chance.next() % count; }
  float unit() { return static_cast<float>(chance.next()) / 32767.0F; }

  static constexpr int kKinds = 24;
  void act(int kind) {
    constexpr int kValueActs = 14;
    switch (kind) {
      case 14: draw(next(effect().steps().size() + 1), unit()); break;
      case 15: effect().setStepColumns(next(60)); break;
      case 16: load(std::array{"one", "two", "three"}[static_cast<std::size_t>(next(3))]); break;
      case 17: host->dispatch(effSetProgram, 0, next(3)); break;
      case 18: effect().revertToStored(); break;
      case 19: effect().initialise(); break;
      case 20: effect().randomise(chance); break;
      case 21: effect().loadCcMap(internal("map.kcm").c_str()); break;
      case 22: effect().clearBindings(tag::cutoff + next(3)); break;
      case 23: wheel(tag::resetAll, 0.5F, 0.0F); break;
      default: {
        const int tag = someTag();
        const float by = unit();
        const float to = unit();
        kind < kValueActs / 2 ? gesture(tag, by, to) : wheel(tag, by, to);
      }
    }
    effect().sealStep();
  }
  int someTag() {
    for (;;) {
      const int tag = parameterRows()[static_cast<std::size_t>(next(kPresetRows))].tag;
      if (tag != tag::modChoice && tag != tag::stepTable) return tag;
    }
  }

  /// Some hundred things, each undone, each redone, and a part of it undone once more.
  void stretch() {
    std::vector<std::string> before;
    const auto perform = [&](const auto& what) {
      if (next(8) == 0) effect().setParameter(tag::modChoice, unit());
      std::string now = state();
      what();
      ++acts;
      if (state() != now) before.push_back(std::move(now));
    };
    for (const int count = 60 + next(30); static_cast<int>(before.size()) < count;) {
      perform([&] { act(next(kKinds)); });
    }
    std::vector<std::string> after(before.size());
    for (std::size_t i = before.size(); i-- > 0;) {
      after[i] = state();
      ASSERT_TRUE(effect().undo()) << i;
      ASSERT_TRUE(state() == before[i]) << i << ' ' << *effect().redoName();
    }
    ASSERT_FALSE(effect().canUndo());
    for (std::size_t i = 0; i < after.size(); ++i) {
      ASSERT_TRUE(effect().redo()) << i;
      ASSERT_TRUE(state() == after[i]) << i << ' ' << *effect().undoName();
    }
    ASSERT_FALSE(effect().canRedo());
    // What follows starts with a history of its own.
    const std::string session = state();
    host->load(session);
    effect().storeRevertPoint();
  }

  SystemRandom chance{19};
  int acts = 0;
};

TEST_F(RandomUser, ComesBackToEveryStateAndForthAgain) {
  while (acts < 7000 && !HasFatalFailure()) stretch();
}

TEST_F(HistoryTest, ValuesStepsAndMapsComeBackWithoutASilentBlock) {
  std::atomic<int> blocks{0};
  std::atomic<int> silent{0};
  host->set(tag::mixDryWet, 0.0F);
  const std::jthread audio([&](const std::stop_token& stop) {
    const Stereo in = noise(kFrames);
    while (!stop.stop_requested()) {
      Stereo out(kFrames);
      host->process(in, out, 0, kFrames);
      if (out == Stereo(kFrames)) ++silent;
      ++blocks;
    }
  });
  while (blocks.load() < 100) std::this_thread::yield();
  bind(9, tag::cutoff);
  draw(1, 0.25F);  // its table may grow
  effect().undo();
  ASSERT_TRUE(effect().copySound());
  silent = 0;
  for (int i = 0; i < 300; ++i) {
    gesture(tag::cutoff, 0.5F, 0.9F);
    draw(1, 0.25F);
    effect().clearAllBindings();
    for (int step = 0; step < 3; ++step) ASSERT_TRUE(effect().undo());
    for (int step = 0; step < 3; ++step) ASSERT_TRUE(effect().redo());
    for (int step = 0; step < 3; ++step) ASSERT_TRUE(effect().undo());
    gesture(tag::resonance, 0.1F, 0.9F);
    ASSERT_TRUE(effect().chooseSound(i % 2 == 0 ? 1 : 0));
  }
  EXPECT_EQ(silent.load(), 0) << "of " << blocks.load();
  load("two");
  load("one");
  for (int i = 0; i < 20; ++i) {
    const int seen = blocks.load();
    ASSERT_TRUE(effect().undo());
    while (blocks.load() < seen + 2) std::this_thread::yield();
    ASSERT_TRUE(effect().redo());
  }
  EXPECT_GT(silent.load(), 0) << "a preset is taken over in silence";
}

// It follows the tempo of presets: the way back is none, and neither is a sound from the start.
TEST_F(HistoryTest, AHostOfOurOwnHearsTheTempoOfPresetsAlone) {
  constexpr std::intptr_t kTempoOfPreset = 50;
  HostState own;
  own.vendor = "Zelvane";
  host.emplace(44100.0F, own);
  effect().keepHistory();
  const std::tuple<const char*, std::function<void()>, int> rows[] = {
      {"initialise", [&] { effect().initialise(); }, 0},
      {"load", [&] { load("one"); }, 1},
      {"undo", [&] { effect().undo(); }, 0},
      {"redo", [&] { effect().redo(); }, 0},
      {"B", [&] { effect().chooseSound(1); }, 0},
  };
  for (const auto& [what, act, told] : rows) {
    host->host.calls.clear();
    act();
    EXPECT_EQ(std::ranges::count(host->host.calls, kTempoOfPreset,
                                 [](const auto& call) { return call[0]; }),
              told)
        << what;
  }
}

}  // namespace
}  // namespace zum::test
