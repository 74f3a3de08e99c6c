// Presets on disk through the effect object: the bank and the walk through it, files and their
// neighbours, programs of MIDI.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstring>
#include <set>
#include <thread>

#include "platform/files.hpp"
#include "support/settings_user.hpp"
#include "support/test_host.hpp"

namespace zum::test {
namespace {

/// Settings of its own that name a tree of presets; each has a cutoff to be told by.
class BankTest : public SettingsTest {
 protected:
  void SetUp() override {
    SettingsTest::SetUp();
    initSettings(ignoreSwitch);
    writeSettingString(kPresetPath, internal("tree"));
    fs::create_directories(folder / "tree");
  }

  static std::string stateWith(float cutoff) {
    TestHost host;
    host.set(kCutoff, cutoff);
    void* data = nullptr;
    const auto bytes = static_cast<std::size_t>(host.dispatch(effGetChunk, 0, 0, &data));
    return {static_cast<char*>(data), bytes};
  }
  void put(const std::string& name, float cutoff) const {
    putText(folder / "tree" / name, stateWith(cutoff));
  }
  /// Three folders with presets and an empty one between them.
  void putTree() const {
    put("A/a0.kvz", 0.0F);
    put("A/a1.kvz", 0.0625F);
    put("A/a2.kvz", 0.125F);
    fs::create_directories(folder / "tree/B");
    put("C/c0.kvz", 0.25F);
    put("C/c1.kvz", 0.3125F);
    put("Midi Programs/m0.kvz", 0.5F);
    put("Midi Programs/m1.kvz", 0.5625F);
  }
  std::string path(const std::string& name) const { return internal("tree/" + name); }

  static constexpr int kCutoff = 3;
};

TEST_F(BankTest, ProgramsWalkThroughTheWholeBank) {
  putTree();
  TestHost host;
  EXPECT_EQ(host.effect->numPrograms, 128);
  host.set(kCutoff, 1.0F);
  const struct {
    int asked, program, folder;
    const char* name;  // null: nothing is loaded
    float cutoff;
  } steps[] = {
      {0, 0, 0, "default", 1.0F},  // where it stands already
      {1, 1, 0, "a1", 0.0625F},   {2, 2, 0, "a2", 0.125F},
      {3, 0, 0, "a0", 0.0F},      // the next folder is empty
      {-1, 1, 3, "m1", 0.5625F},  // round the start
      {2, 0, 0, "a0", 0.0F},      // round the end
      {100, 0, 0, "a0", 0.0F},
  };
  for (const auto& step : steps) {
    SCOPED_TRACE(step.asked);
    host.client().setProgram(step.asked);
    EXPECT_EQ(host.dispatch(effGetProgram), step.program);
    EXPECT_EQ(host.client().currentFolder(), step.folder);
    EXPECT_EQ(host.client().slot().name.get(), step.name);
    EXPECT_EQ(host.text(effGetProgramName), step.name);
    EXPECT_EQ(host.get(kCutoff), step.cutoff);
  }
  EXPECT_EQ(host.client().slot().path.get(), path("A/a0.kvz"));
  EXPECT_EQ(host.client().slot().folder.get(), "A");
  fs::remove(folder / "tree/A/a1.kvz");  // in memory it stays
  host.client().setProgram(1);
  EXPECT_EQ(host.client().slot().name.get(), "a1");
  EXPECT_EQ(host.client().slot().folder.get(), ":-(");
}

TEST_F(BankTest, AWalkEntersTheNeighbourFolders) {
  put("A/a0.kvz", 0.0F);
  put("C/c0.kvz", 0.25F);
  put("C/c1.kvz", 0.3125F);
  TestHost host;
  const std::pair<int, const char*> steps[] = {{1, "c0"},  {1, "c1"}, {2, "a0"},
                                               {-1, "c1"}, {0, "c0"}, {-1, "a0"}};
  for (const auto& [asked, name] : steps) {
    host.client().setProgram(asked);
    EXPECT_EQ(host.client().slot().name.get(), name) << asked;
  }
  EXPECT_EQ(host.text(effGetProgramNameIndexed, 0), "a0");
  EXPECT_EQ(host.text(effGetProgramNameIndexed, 7), "empty");
}

TEST_F(BankTest, HoldsTheFirst128OfEachAndOnlyWhatIsAPreset) {
  const std::string state = stateWith(0.5F);
  for (int i = 0; i < 130; ++i) {
    const std::string number = std::to_string(1000 + i);
    putText(folder / "tree/A" / (number + ".kvz"), state);
    fs::create_directories(folder / "tree" / ("F" + number));
  }
  const auto put = [&](const std::string& name, std::size_t at, char byte) {
    std::string text = state;
    text[at] = byte;
    putText(folder / "tree/A" / name, text);
  };
  putText(folder / "tree/A/0 short.kvz", state.substr(0, 12));
  putText(folder / "tree/A/0 other.txt", state);
  putText(folder / "tree/A/0 long.kvz", state);
  fs::resize_file(folder / "tree/A/0 long.kvz", std::uintmax_t{1} << 40U);  // no disk has as much
  put("0 magic.kvz", 16, '?');
  put("0 product.kvz", 24, '\0');
  put("0 reserved.kvz", 32, '\x01');
  TestHost host;
  const auto held = host.client().programs();
  const KvProgramBank& bank = *held;
  EXPECT_EQ(bank.folderCount(), 128);
  EXPECT_EQ(bank.folderName(127), "F1126");
  ASSERT_EQ(bank.presetCount(0), 128);
  EXPECT_EQ(bank.presetName(0, 0), "1000");
  EXPECT_EQ(bank.presetName(0, 127), "1127");
  EXPECT_EQ(bank.get(0, 128), nullptr);
  EXPECT_EQ(bank.get(128, 0), nullptr);
  // The window's arrows reach what the bank does not hold.
  host.client().loadPresetFile(path("A/1127.kvz").c_str(), 0, nullptr, false);
  host.client().nextPreset(0);
  EXPECT_EQ(host.client().slot().name.get(), "1128");
  writeSettingString(kPresetPath, "presets");  // would lie wherever the host runs
  host.client().scanBank();
  EXPECT_EQ(host.client().programs()->folderCount(), 0);
}

TEST_F(BankTest, FilesHaveNeighboursRoundBothEnds) {
  putTree();
  TestHost host;
  KvUniClient& client = host.client();
  client.nextPreset(0);  // no file yet
  EXPECT_EQ(client.slot().name.get(), "default");
  host.host.calls.clear();
  client.loadPresetFile(path("C/c1.kvz").c_str(), 0, nullptr, true);
  EXPECT_EQ(host.host.calls,
            (std::vector<std::array<std::intptr_t, 3>>{{audioMasterUpdateDisplay, 0, 0}}));
  EXPECT_EQ(client.slot().folder.get(), "C");
  EXPECT_EQ(client.currentFolder(), 2);
  EXPECT_EQ(host.dispatch(effGetProgram), 1);
  const std::pair<void (KvUniClient::*)(int), float> steps[] = {
      {&KvUniClient::nextPreset, 0.25F},
      {&KvUniClient::previousPreset, 0.3125F},
      {&KvUniClient::previousPreset, 0.25F}};
  for (const auto& [step, cutoff] : steps) {
    (client.*step)(0);
    EXPECT_EQ(host.get(kCutoff), cutoff);
  }
  fs::rename(folder / "tree/C/c0.kvz", folder / "tree/C/d.kvz");
  client.previousPreset(0);  // without a match from the outside in
  EXPECT_EQ(client.slot().name.get(), "d");
}

TEST_F(BankTest, ASavedStateIsAFileThatLoads) {
  putTree();
  TestHost host;
  KvUniClient& client = host.client();
  host.set(kCutoff, 0.875F);
  client.savePreset(path("C/new.kvz").c_str(), 0, nullptr, false);
  EXPECT_EQ(client.slot().name.get(), "new");
  EXPECT_EQ(client.slot().path.get(), path("C/new.kvz"));
  host.set(kCutoff, 0.0F);
  client.nextPreset(0);
  client.previousPreset(0);
  EXPECT_EQ(host.get(kCutoff), 0.875F);
  client.scanBank();
  EXPECT_EQ(client.programs()->findPreset(client.programs()->findFolder("C"), "new"), 2);

  testing::internal::CaptureStderr();
  const std::string good = textIn(folder / "tree/C/new.kvz");
  ASSERT_TRUE(client.setStepColumns(300000));
  client.savePreset(path("C/new.kvz").c_str(), 0, nullptr, false);  // more than a file may have
  EXPECT_TRUE(textIn(folder / "tree/C/new.kvz") == good);
  ASSERT_TRUE(client.setStepColumns(8));
  client.savePreset(path("none/new.kvz").c_str(), 0, nullptr, false);
  std::string newer = textIn(folder / "tree/C/new.kvz");
  newer[4] = 4;
  putText(folder / "tree/C/newer.kvz", newer);
  client.loadPresetFile(path("C/newer.kvz").c_str(), 0, nullptr, false);
  fs::copy_file(folder / "tree/C/c0.kvz", folder / "tree/C/long.kvz");
  fs::resize_file(folder / "tree/C/long.kvz", (1U << 20U) + 1);
  client.loadPresetFile(path("C/long.kvz").c_str(), 0, nullptr, false);
  client.loadPresetFile(path("C/missing.kvz").c_str(), 0, nullptr, false);
  client.loadPresetFile("x", 0, nullptr, false);
  client.loadPresetFile(nullptr, 0, nullptr, false);  // no dialogs here: as if cancelled
  client.savePreset(nullptr, 0, nullptr, false);
  const std::string told = testing::internal::GetCapturedStderr();
  EXPECT_NE(told.find("saving preset to " + path("none/new.kvz") + " failed"), told.npos) << told;
  EXPECT_NE(told.find("preset was written with a newer version of ZUM"), told.npos) << told;
  EXPECT_NE(told.find("This is no valid ZUM format!"), told.npos) << told;
  EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 4) << told;
  EXPECT_EQ(client.slot().name.get(), "new");
}

TEST_F(BankTest, MidiPlaysProgramsFromMemory) {
  putTree();
  TestHost host;
  KvUniClient& client = host.client();
  fs::remove_all(folder / "tree");
  client.playMidiProgram(1);
  EXPECT_EQ(host.get(kCutoff), 0.5625F);
  EXPECT_EQ(client.slot().name.get(), "m1");
  for (const int index : {2, -1, 127}) client.playMidiProgram(index);
  EXPECT_EQ(client.slot().name.get(), "m1");
  EXPECT_FALSE(client.muteRequest.load());
  client.scanBank();
  host.set(kCutoff, 0.0F);
  client.playMidiProgram(1);  // no such folder
  EXPECT_EQ(host.get(kCutoff), 0.0F);
}

TEST_F(BankTest, WhatIsSavedIsTheProgramThatPlays) {
  putTree();
  TestHost host;
  KvUniClient& client = host.client();
  const auto before = client.programs();
  host.set(kCutoff, 0.875F);
  client.savePreset(path("A/a1.kvz").c_str(), 0, nullptr, false);
  EXPECT_EQ(host.dispatch(effGetProgram), 1);
  client.setProgram(2);
  client.setProgram(1);
  EXPECT_EQ(host.get(kCutoff), 0.875F);
  EXPECT_EQ(client.programs()->get(2, 0), before->get(2, 0));  // not read again
  client.savePreset(path("Midi Programs/m1.kvz").c_str(), 0, nullptr, false);
  host.set(kCutoff, 0.0F);
  client.playMidiProgram(1);
  EXPECT_EQ(host.get(kCutoff), 0.875F);
  client.savePreset(path("A/a0b.kvz").c_str(), 0, nullptr, false);  // all behind it move on
  EXPECT_EQ(host.text(effGetProgramName), "a0b");
  client.setProgram(2);
  EXPECT_EQ(client.slot().name.get(), "a1");
}

TEST_F(BankTest, WhatIsRefusedKeepsItsPlaceAndNoMemory) {
  putTree();
  std::string other = stateWith(0.5F);
  other[24] = 2;
  putText(folder / "tree/A/a1.kvz", other);
  constexpr std::uint32_t kWords = 1U << 18U;
  std::string hollow = stateWith(0.5F).substr(0, 36);
  std::memcpy(hollow.data(), &kWords, 4);
  putText(folder / "tree/A/a2.kvz", hollow);
  fs::resize_file(folder / "tree/A/a2.kvz", 4 * kWords);
  TestHost host;
  host.set(kCutoff, 1.0F);
  const std::pair<int, const char*> refused[] = {{1, "wrong plugin version"},
                                                 {2, "This is no valid ZUM format!"}};
  for (const auto& [program, message] : refused) {
    EXPECT_EQ(host.client().programs()->get(0, program)->chunk.dataWords(), 0U);
    testing::internal::CaptureStderr();
    host.client().setProgram(program);
    const std::string told = testing::internal::GetCapturedStderr();
    EXPECT_NE(told.find(message), told.npos) << told;
    EXPECT_EQ(host.dispatch(effGetProgram), program);
    EXPECT_EQ(host.get(kCutoff), 1.0F);
  }
}

TEST_F(BankTest, TakesNoMoreThan32Megabytes) {
  constexpr std::uint32_t kWords = 1U << 18U;
  const std::string state = stateWith(0.5F);
  const auto words = static_cast<std::uint32_t>(state.size() / 4);
  const std::array<std::uint32_t, 2> unknown = {900001, kWords - words - 2};
  std::string large = state;
  large.insert(36, std::string(reinterpret_cast<const char*>(unknown.data()), 8) +
                       std::string(4 * unknown[1], '\0'));
  std::memcpy(large.data(), &kWords, 4);
  putText(folder / "tree/B/b.kvz", state);
  for (int i = 10; i < 43; ++i) putText(folder / "tree/A" / (std::to_string(i) + ".kvz"), large);
  testing::internal::CaptureStderr();
  TestHost host;
  KvUniClient& client = host.client();
  EXPECT_EQ(client.programs()->presetCount(0), 32);
  EXPECT_EQ(client.programs()->findFolder("B"), 1);
  EXPECT_EQ(client.programs()->presetCount(1), 0);
  client.savePreset(path("B/c.kvz").c_str(), 0, nullptr, false);
  EXPECT_EQ(client.programs()->presetCount(1), 0);
  const std::string told = testing::internal::GetCapturedStderr();
  EXPECT_NE(told.find("A\\42.kvz"), told.npos) << told;
  EXPECT_EQ(told.find("32 MB"), told.rfind("32 MB")) << told;
  fs::remove(folder / "tree/A/42.kvz");
  fs::remove(folder / "tree/A/41.kvz");
  client.savePreset(path("B/d.kvz").c_str(), 0, nullptr, false);
  EXPECT_EQ(client.programs()->presetCount(1), 3);
}

// An offline block never says that it ended.
TEST_F(BankTest, ReplacedBanksGo) {
  putTree();
  TestHost host;
  KvUniClient& client = host.client();
  host.host.level = kVstProcessLevelOffline;
  Stereo out(64);
  host.process(noise(64), out, 0, 64);
  ASSERT_TRUE(client.inProcess.load());
  std::vector<std::weak_ptr<const KvProgramBank>> banks;
  for (int i = 0; i < 100; ++i) {
    if (i % 2 == 0) client.scanBank();
    if (i % 2 == 1) client.savePreset(path("A/new.kvz").c_str(), 0, nullptr, false);
    banks.emplace_back(client.programs());
  }
  EXPECT_EQ(std::count_if(banks.begin(), banks.end(), [](const auto& b) { return !b.expired(); }),
            1);
}

// Blocks of nothing but program changes, as dense as they come.
TEST_F(BankTest, StatesAreSavedAndBanksReplacedBesideProgramChanges) {
  putTree();
  TestHost host;
  KvUniClient& client = host.client();
  std::atomic<bool> stop{false};
  std::thread audio([&] {
    while (!stop.load()) {
      client.inProcess.store(true);
      for (int i = 0; i < 100 && !client.muteRequest.load(); ++i) client.playMidiProgram(i % 2);
      client.inProcess.store(false);
    }
  });
  for (int i = 0; i < 20; ++i) {
    void* data = nullptr;
    EXPECT_GT(client.getChunk(&data, false), 0) << i;
    for (int scans = 0; scans < 10; ++scans) client.scanBank();
  }
  stop.store(true);
  audio.join();
  EXPECT_FALSE(client.muteRequest.load());
}

TEST_F(BankTest, ASessionHoldsThePositionOfItsState) {
  putTree();
  TestHost host;
  host.client().setProgram(1);
  std::atomic<bool> stop{false};
  std::thread window([&] {
    for (int i = 0; !stop.load(); ++i) host.client().setProgram(1 + i % 2);
  });
  TestHost other;
  for (int i = 0; i < 200 && !HasFailure(); ++i) {
    void* data = nullptr;
    const std::intptr_t bytes = host.dispatch(effGetChunk, 0, 0, &data);
    other.dispatch(effSetChunk, 0, bytes, data);
    EXPECT_EQ(other.get(kCutoff), 0.0625F * static_cast<float>(other.dispatch(effGetProgram))) << i;
  }
  stop.store(true);
  window.join();
}

TEST_F(BankTest, ConstructionLoadsTheDefaultPresetAndARecallFindsItsFile) {
  putTree();
  put("default.kvz", 0.6875F);
  TestHost host;
  EXPECT_EQ(host.get(kCutoff), 0.6875F);
  EXPECT_EQ(host.client().slot().path.get(), path("default.kvz"));
  EXPECT_TRUE(host.host.calls.empty() || host.host.calls.back()[0] != audioMasterUpdateDisplay);
  host.client().loadPresetFile(path("C/c1.kvz").c_str(), 0, nullptr, false);
  void* data = nullptr;
  const std::intptr_t bytes = host.dispatch(effGetChunk, 0, 0, &data);
  const std::string session(static_cast<char*>(data), static_cast<std::size_t>(bytes));
  TestHost other;
  other.dispatch(effSetChunk, 0, bytes, const_cast<char*>(session.data()));
  EXPECT_EQ(other.client().slot().path.get(), path("C/c1.kvz"));
  EXPECT_EQ(other.client().slot().folder.get(), "C");
  EXPECT_EQ(other.dispatch(effGetProgram), 1);
  EXPECT_EQ(other.client().currentFolder(), 2);
}

TEST_F(BankTest, ChancePicksFoldersOfSeveral) {
  put("A/alone.kvz", 0.0F);
  TestHost host;
  host.client().randomPreset();
  EXPECT_EQ(host.client().slot().name.get(), "default");
  // A file holds the name that the state had before it was saved there.
  TestHost writer;
  for (const std::string name : {"one", "two", "three"}) {
    writer.client().savePreset(path("A/" + name + ".kvz").c_str(), 0, nullptr, false);
  }
  host.client().scanBank();
  std::set<std::string> seen;
  for (int i = 0; i < 2000 && seen.size() < 3; ++i) {
    host.client().randomPreset();
    seen.insert(host.client().slot().name.get());
    std::this_thread::sleep_for(std::chrono::milliseconds(1));  // the seed is the time
  }
  EXPECT_EQ(seen, (std::set<std::string>{"default", "one", "two"}));
}

}  // namespace
}  // namespace zum::test
