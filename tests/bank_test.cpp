// Presets on disk through the effect object: the bank and the walk through it, files and their
// neighbours, programs of MIDI.
#include <algorithm>
#include <chrono>
#include <cstring>
#include <memory>
#include <optional>
#include <set>
#include <thread>

#include "core/tags.hpp"
#include "platform/files.hpp"
#include "support/settings_user.hpp"
#include "support/test_host.hpp"
#include "support/told.hpp"

namespace zum::test {
namespace {

/// Settings of its own that name a tree of presets; each has a cutoff to be told by.
class BankTest : public SettingsTest {
 protected:
  BankTest() {
    initSettings();
    writeSettingString(kPresetPath, internal("tree"));
    fs::create_directories(folder / "tree");
  }

  static std::string stateWith(float cutoff) {
    const TestHost host;
    host.set(tag::cutoff, cutoff);
    return host.state();
  }
  void put(const std::string& name, const std::string& state) const {
    putText(folder / "tree" / (name + ".kvz"), state);
  }
  /// Three folders with presets and an empty one between them.
  void putTree() const {
    fs::create_directories(folder / "tree/B");
    float cutoff = 0.0F;
    for (const std::string name :
         {"A/a0", "A/a1", "A/a2", "C/c0", "C/c1", "Midi Programs/m0", "Midi Programs/m1"}) {
      put(name, stateWith(cutoff));
      cutoff += 0.0625F;
    }
  }
  /// As presets lie that were installed once: what was written just now is read again.
  void settle() const {
    for (const auto& file : fs::recursive_directory_iterator(folder / "tree")) {
      fs::last_write_time(file, file.last_write_time() - std::chrono::hours(1));
    }
  }
  std::string path(const std::string& name) const { return internal("tree/" + name); }
  void load(const TestHost& host, const std::string& name) const {
    host.client().loadPresetFile(path(name).c_str(), 0, nullptr, true);
  }
  void save(const TestHost& host, const std::string& name) const {
    host.client().savePreset(path(name).c_str(), 0, nullptr, false);
  }
  static std::string nameOf(const TestHost& host) { return host.client().slot().name.get(); }

  /// Where a host stands: folder and program of the bank, name and cutoff.
  using Stand = std::tuple<int, std::intptr_t, std::string, float>;
  static Stand standOf(const TestHost& host) {
    return {host.client().currentFolder(), host.dispatch(effGetProgram), nameOf(host),
            host.get(tag::cutoff)};
  }
};

TEST_F(BankTest, ProgramsWalkThroughTheWholeBank) {
  putTree();
  TestHost host;
  host.set(tag::cutoff, 1.0F);
  const std::pair<int, Stand> steps[] = {
      {0, {0, 0, "default", 1.0F}},  // where it stands already: nothing is loaded
      {1, {0, 1, "a1", 0.0625F}},   {2, {0, 2, "a2", 0.125F}},
      {3, {0, 0, "a0", 0.0F}},     // the next folder is empty
      {-1, {3, 1, "m1", 0.375F}},  // round the start
      {0, {3, 0, "m0", 0.3125F}},   {-1, {2, 1, "c1", 0.25F}},
      {2, {3, 0, "m0", 0.3125F}},  // the next folder is not
      {100, {0, 0, "a0", 0.0F}}};  // round the end
  for (const auto& [asked, stand] : steps) {
    host.client().setProgram(asked);
    EXPECT_EQ(standOf(host), stand) << asked;
  }
  EXPECT_EQ(host.text(effGetProgramNameIndexed, 2), "a2");
  EXPECT_EQ(host.text(effGetProgramNameIndexed, 7), "empty");
  const PresetSlot& slot = host.client().slot();
  EXPECT_EQ(slot.folder.get() + ": " + slot.path.get(), "A: " + path("A/a0.kvz"));
  fs::remove(folder / "tree/A/a1.kvz");  // in memory it stays
  host.client().setProgram(1);
  EXPECT_EQ(slot.folder.get() + ": " + nameOf(host), ":-(: a1");
}

TEST_F(BankTest, HoldsTheFirst128OfEachAndOnlyWhatIsAPreset) {
  const std::string state = stateWith(0.5F);
  for (int i = 1000; i < 1130; ++i) {
    put("A/" + std::to_string(i), state);
    fs::create_directories(folder / "tree" / ("F" + std::to_string(i)));
  }
  put("A/0 short", state.substr(0, 12));
  putText(folder / "tree/A/0 other.txt", state);
  put("A/0 long", state);
  fs::resize_file(folder / "tree/A/0 long.kvz", std::uintmax_t{1} << 40U);  // no disk has as much
  for (const auto& [at, byte] : {std::pair{16U, '?'}, {24U, '\0'}, {32U, '\x01'}}) {
    std::string other = state;  // magic number, product, reserved word
    other[at] = byte;
    put("A/0 " + std::to_string(at), other);
  }
  TestHost host;
  const auto bank = host.client().programs();
  ASSERT_EQ(std::pair(bank->folderCount(), bank->presetCount(0)), std::pair(128, 128));
  EXPECT_EQ(bank->folderName(127), "F1126");
  EXPECT_EQ(bank->presetName(0, 127), "1127");
  EXPECT_TRUE(bank->get(0, 128) == nullptr && bank->get(128, 0) == nullptr);
  // The window's arrows reach what the bank does not hold.
  load(host, "A/1127.kvz");
  host.client().nextPreset(0);
  EXPECT_EQ(nameOf(host), "1128");
  writeSettingString(kPresetPath, "presets");  // would lie wherever the host runs
  host.client().scanBank();
  EXPECT_EQ(host.client().programs()->folderCount(), 0);
}

TEST_F(BankTest, FilesHaveNeighboursRoundBothEnds) {
  putTree();
  TestHost host;
  KvUniClient& client = host.client();
  client.nextPreset(0);  // no file yet
  EXPECT_EQ(nameOf(host), "default");
  host.host.calls.clear();
  load(host, "C/c1.kvz");
  EXPECT_EQ(host.host.calls, (HostCalls{{audioMasterUpdateDisplay, 0, 0}}));
  EXPECT_EQ(standOf(host), Stand(2, 1, "c1", 0.25F));
  client.nextPreset(0);
  EXPECT_EQ(nameOf(host), "c0");
  client.previousPreset(0);
  EXPECT_EQ(nameOf(host), "c1");
  fs::rename(folder / "tree/C/c1.kvz", folder / "tree/C/d.kvz");
  client.previousPreset(0);  // without a match from the outside in
  EXPECT_EQ(nameOf(host), "d");
}

TEST_F(BankTest, ASavedStateIsAFileThatLoads) {
  putTree();
  TestHost host;
  KvUniClient& client = host.client();
  host.set(tag::cutoff, 0.875F);
  save(host, "C/new.kvz");
  EXPECT_EQ(client.slot().path.get(), path("C/new.kvz"));
  host.set(tag::cutoff, 0.0F);
  client.nextPreset(0);
  client.previousPreset(0);
  EXPECT_EQ(standOf(host), Stand(2, 2, "new", 0.875F));

  const std::string good = textIn(folder / "tree/C/new.kvz");
  std::string newer = good;
  newer[4] = 4;
  put("C/newer", newer);
  put("C/long", good + std::string(1U << 20U, '\0'));
  const std::string told = toldBy([&] {
    ASSERT_TRUE(client.setStepColumns(300000));
    save(host, "C/new.kvz");  // more than a file may have
    ASSERT_TRUE(client.setStepColumns(8));
    save(host, "none/new.kvz");
    for (const char* name : {"C/newer.kvz", "C/long.kvz", "C/missing.kvz"}) load(host, name);
    client.loadPresetFile("x", 0, nullptr, false);
    client.loadPresetFile(nullptr, 0, nullptr, false);  // no dialogs here: as if cancelled
    client.savePreset(nullptr, 0, nullptr, false);
  });
  EXPECT_TRUE(textIn(folder / "tree/C/new.kvz") == good);
  EXPECT_TRUE(has(told, "saving preset to " + path("none/new.kvz") + " failed")) << told;
  EXPECT_TRUE(has(told, "preset was written with a newer version of ZUM")) << told;
  EXPECT_TRUE(has(told, "This is no valid ZUM format!")) << told;
  EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 4) << told;
  EXPECT_EQ(nameOf(host), "new");
}

TEST_F(BankTest, WhatIsSavedIsTheProgramThatPlays) {
  putTree();
  TestHost host;
  KvUniClient& client = host.client();
  const auto before = client.programs();
  host.set(tag::cutoff, 0.875F);
  save(host, "A/a1.kvz");
  EXPECT_EQ(host.dispatch(effGetProgram), 1);
  client.setProgram(2);
  client.setProgram(1);
  EXPECT_EQ(host.get(tag::cutoff), 0.875F);
  EXPECT_EQ(client.programs()->get(2, 0), before->get(2, 0));  // not read again
  save(host, "Midi Programs/m1.kvz");
  host.set(tag::cutoff, 0.0F);
  client.playMidiProgram(1);
  EXPECT_EQ(host.get(tag::cutoff), 0.875F);
  save(host, "A/a0b.kvz");  // all behind it move on
  EXPECT_EQ(host.text(effGetProgramName), "a0b");
  client.setProgram(2);
  EXPECT_EQ(nameOf(host), "a1");
}

TEST_F(BankTest, MidiPlaysProgramsFromMemoryWhereTheUserAllowsIt) {
  putTree();
  TestHost host;
  fs::remove_all(folder / "tree");
  const auto change = [&](int program) {
    host.send({{0, 0xC0, program}});
    host.render(Stereo(16));
    return standOf(host);
  };
  host.set(tag::cutoff, 1.0F);
  EXPECT_EQ(change(1), Stand(0, 0, "default", 1.0F));
  host.client().setOption(0, 0, true);
  EXPECT_EQ(TestHost().client().option(0), 0.0F);  // kept in the settings
  for (const int program : {1, 2, 127}) EXPECT_EQ(change(program), Stand(0, 0, "m1", 0.375F));
  host.client().playMidiProgram(-1);
  EXPECT_FALSE(host.client().muteRequest.load());
  host.client().scanBank();
  EXPECT_EQ(change(0), Stand(0, 0, "m1", 0.375F));  // no such folder
}

constexpr int kReadsOfTheStore = 5;
constexpr std::uint32_t kMegabyte = 1U << 18U;  // in words: the most that a preset may have

TEST_F(BankTest, WhatIsRefusedKeepsItsPlaceAndNoMemory) {
  putTree();
  std::string other = stateWith(0.5F);
  other[24] = 2;
  put("A/a1", other);
  std::string hollow = stateWith(0.5F).substr(0, 36);
  std::memcpy(hollow.data(), &kMegabyte, 4);
  hollow.resize(std::size_t{4} * kMegabyte);
  put("A/a2", hollow);
  TestHost host;
  host.set(tag::cutoff, 1.0F);
  for (const auto& [program, message] :
       {std::pair{1, "wrong plugin version"}, {2, "This is no valid ZUM format!"}}) {
    EXPECT_EQ(host.client().programs()->get(0, program)->chunk.dataWords(), 0U);
    EXPECT_TRUE(has(toldBy([&, at = program] { host.client().setProgram(at); }), message));
    EXPECT_EQ(standOf(host), Stand(0, program, "default", 1.0F));
  }
}

TEST_F(BankTest, TakesNoMoreThan32Megabytes) {
  const std::string state = stateWith(0.5F);
  const auto words = static_cast<std::uint32_t>(state.size() / 4);
  const std::array<std::uint32_t, 2> unknown = {900001, kMegabyte - words - 2};
  std::string large = state;
  large.insert(36, std::string(reinterpret_cast<const char*>(unknown.data()), 8) +
                       std::string(4 * unknown[1], '\0'));
  std::memcpy(large.data(), &kMegabyte, 4);
  put("B/b", state);
  for (int i = 10; i < 43; ++i) put("A/" + std::to_string(i), large);
  std::unique_ptr<TestHost> host;
  const std::string told = toldBy([&] {
    host = std::make_unique<TestHost>();
    save(*host, "B/c.kvz");
  });
  const auto counts = [&] {
    const auto bank = host->client().programs();
    return std::pair(bank->presetCount(0), bank->presetCount(bank->findFolder("B")));
  };
  EXPECT_EQ(counts(), std::pair(32, 0));
  EXPECT_TRUE(has(told, "A\\42.kvz")) << told;
  EXPECT_EQ(told.find("32 MB"), told.rfind("32 MB")) << told;
  fs::remove(folder / "tree/A/42.kvz");
  fs::remove(folder / "tree/A/41.kvz");
  save(*host, "B/d.kvz");
  EXPECT_EQ(counts(), std::pair(31, 3));
}

TEST_F(BankTest, EffectsOfAProcessShareWhatIsUnchanged) {
  putTree();
  settle();
  auto first = std::make_unique<TestHost>();
  const auto held = first->client().programs();
  EXPECT_EQ(TestHost().client().programs(), held);
  put("A/a1", stateWith(0.875F));  // in place, and of the same size
  fs::remove(folder / "tree/C/c0.kvz");
  const auto cutoffOf = [](const TestHost& host, int program) {
    host.client().setProgram(program);
    return host.get(tag::cutoff);
  };
  TestHost second;
  const auto newer = second.client().programs();
  EXPECT_EQ(newer->get(3, 0), held->get(3, 0));
  EXPECT_EQ(std::pair(newer->presetCount(2), held->presetCount(2)), std::pair(1, 2));
  EXPECT_EQ(std::pair(cutoffOf(second, 1), cutoffOf(*first, 1)), std::pair(0.875F, 0.0625F));
  put("A/a1", stateWith(0.75F));  // within the tick of the clock that the files are stamped by
  TestHost third;
  EXPECT_EQ(cutoffOf(third, 1), 0.75F);
  save(third, "A/a2.kvz");
  EXPECT_EQ(cutoffOf(TestHost(), 2), 0.75F);
}

TEST_F(BankTest, ASharedBankIsReadOnceByAllWhoAskAndGoesWithTheLast) {
  putTree();
  settle();
  std::weak_ptr<const KvProgramBank> shared;
  {
    std::array<std::unique_ptr<LinkedEffect>, 8> effects;
    std::array<SharedBank::Held, 8> banks;
    {
      std::vector<std::jthread> hosts;
      hosts.reserve(effects.size());
      for (std::size_t i = 0; i < effects.size(); ++i) {
        hosts.emplace_back([&, i] {
          effects[i] = std::make_unique<LinkedEffect>();
          const std::jthread window([&, i] { effects[i]->client().setProgram(1); });
          banks[i] = effects[i]->client().programs();
        });
      }
    }
    for (const auto& bank : banks) EXPECT_EQ(bank, banks[0]);
    EXPECT_EQ(banks[0]->presetCount(0), 3);
    shared = banks[0];
  }
  EXPECT_TRUE(shared.expired());
}

/// Calls of read() by this process so far; nothing where the system does not count them.
std::optional<int> readCalls() {
  std::ifstream counters("/proc/self/io");
  for (std::string name; counters >> name;) {
    if (int calls = 0; name == "syscr:" && counters >> calls) return calls;
  }
  return std::nullopt;
}

TEST_F(BankTest, ConstructionReadsNoProgramAndASecondEffectNone) {
  putTree();
  settle();
  const auto callsOf = [](const auto& work) {
    const auto before = readCalls();
    work();
    return readCalls().value_or(0) - before.value_or(0);
  };
  const int own = callsOf([] {});
  std::unique_ptr<LinkedEffect> first;
  std::unique_ptr<LinkedEffect> second;
  const auto resume = [](const auto& effect) { effect->resume(44100.0F, 64); };
  // The store's header, the page that tells of changes, and its one table.
  EXPECT_LE(callsOf([&] { first = std::make_unique<LinkedEffect>(); }) - own, kReadsOfTheStore);
  // A rate is all that some hosts give an effect before they play.
  EXPECT_GE(callsOf([&] { first->client().setSampleRate(48000.0F); }) - own, readCalls() ? 7 : 0);
  EXPECT_LE(callsOf([&] { second = std::make_unique<LinkedEffect>(); }) - own, kReadsOfTheStore);
  EXPECT_EQ(callsOf([&] { resume(second); }) - own, 0);
  put("C/c2", stateWith(0.5F));
  EXPECT_EQ(first->client().programs()->presetCount(2), 2);
  EXPECT_EQ(LinkedEffect().client().programs()->presetCount(2), 3);
}

// An offline block never says that it ended.
TEST_F(BankTest, ReplacedBanksGo) {
  putTree();
  TestHost host;
  KvUniClient& client = host.client();
  host.host.level = kVstProcessLevelOffline;
  host.render(noise(64));
  ASSERT_TRUE(client.inProcess.load());
  std::vector<std::weak_ptr<const KvProgramBank>> banks;
  for (int i = 0; i < 10; ++i) {
    i % 2 == 0 ? client.scanBank() : save(host, "A/new.kvz");
    banks.emplace_back(client.programs());
  }
  EXPECT_EQ(std::ranges::count_if(banks, [](const auto& bank) { return !bank.expired(); }), 1);
}

// Blocks of nothing but program changes, as dense as they come.
TEST_F(BankTest, StatesAreSavedAndBanksReplacedBesideProgramChanges) {
  putTree();
  TestHost host;
  KvUniClient& client = host.client();
  std::jthread audio([&client](const std::stop_token& stop) {
    while (!stop.stop_requested()) {
      client.inProcess.store(true);
      for (int i = 0; i < 100 && !client.muteRequest.load(); ++i) client.playMidiProgram(i % 2);
      client.inProcess.store(false);
    }
  });
  for (int i = 0; i < 200; ++i) {
    EXPECT_FALSE(host.state().empty()) << i;
    client.scanBank();
  }
  audio = {};
  EXPECT_FALSE(client.muteRequest.load());
}

// Not with the message that teaches it; and pressure, which nothing could clear, is not taught.
TEST_F(BankTest, AControllerThatLearnedTheArrowStepsFromItsNextPressOn) {
  putTree();
  TestHost host;
  KvUniClient& client = host.client();
  ASSERT_TRUE(client.programs() && client.beginLearn(tag::nextProgram));
  const std::int32_t before = client.currentProgram();
  client.handleEvent({0, EngineEvent::kAftertouch, 127, 0});
  EXPECT_EQ(client.learning(), tag::nextProgram);
  const auto turn = [&client](std::uint8_t value) {
    client.handleEvent({0, EngineEvent::kController, 20, value});
    return client.currentProgram();
  };
  EXPECT_EQ(turn(127), before);
  EXPECT_EQ(client.learning(), -1);
  EXPECT_EQ(turn(0), before);
  EXPECT_EQ(turn(127), before + 1);
}

// Of a tree without programs for MIDI, in an effect that has loaded none of them yet; nothing of a
// program that fills a list is lost, and what both arrows learned, or had in a session more than
// once, lies beside it.
TEST_F(BankTest, AnArrowStepsToProgramsThatNeedMoreRoom) {
  constexpr int kBindings = 40;
  TestHost maker;
  maker.client().setStepColumns(64);
  for (int i = 0; i < kBindings; ++i) {
    maker.client().controllers().controllers[20].append({tag::cutoff, 0});
  }
  put("A/a0", stateWith(0.0F));
  put("A/a1", maker.state());
  TestHost many;
  for (std::int16_t i = 0; i < 5; ++i) {
    many.client().controllers().controllers[20].append({tag::nextProgram, i});
  }
  TestHost host;
  host.load(many.state());
  KvUniClient& client = host.client();
  const auto turn = [&client] {
    for (const std::uint8_t value : {std::uint8_t{0}, std::uint8_t{127}}) {
      client.handleEvent({0, EngineEvent::kController, 20, value});
    }
  };
  for (int times = 0; times < 2; ++times) {
    for (const int arrow : {tag::previousProgram, tag::nextProgram}) {
      ASSERT_TRUE(client.beginLearn(arrow));
      client.handleEvent({0, EngineEvent::kController, 20, 127});
    }
  }
  turn();
  EXPECT_EQ(client.currentProgram(), 1);
  EXPECT_EQ(client.steps().size(), 64);
  EXPECT_EQ(client.controllers().controllers[20].size(), std::size_t{kBindings + 2});
}

TEST_F(BankTest, ASessionHoldsThePositionOfItsState) {
  putTree();
  TestHost host;
  host.client().setProgram(1);
  const std::jthread window([&host](const std::stop_token& stop) {
    for (int i = 0; !stop.stop_requested(); ++i) host.client().setProgram(1 + i % 2);
  });
  TestHost other;
  for (int i = 0; i < 200 && !HasFailure(); ++i) {
    other.load(host.state());
    EXPECT_EQ(other.get(tag::cutoff), 0.0625F * static_cast<float>(other.dispatch(effGetProgram)))
        << i;
  }
}

// A host of our own hears of the state that it gives, and two more of its threads act meanwhile.
TEST_F(BankTest, WhoeverActsDuringALoadWaitsForItsEnd) {
  putTree();
  HostState state;
  state.vendor = "Zelvane";
  TestHost host(44100.0F, state);
  host.client().setProgram(1);
  const auto rate = [&host] {
    float written = 0.0F;
    std::memcpy(&written, &host.state()[12], sizeof written);
    return written;
  };
  std::vector<std::jthread> others;
  host.host.onCall = [&](std::int32_t /*opcode*/) {
    if (!others.empty()) return;
    others.reserve(2);
    others.emplace_back([&host] { host.client().setProgram(2); });
    others.emplace_back([&host] { host.dispatch(effSetSampleRate, 0, 0, nullptr, 48000.0F); });
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(std::pair(host.dispatch(effGetProgram), rate()),
              std::pair(std::intptr_t{1}, 44100.0F));
  };
  host.load(host.state());
  others.clear();
  EXPECT_EQ(standOf(host), Stand(0, 2, "a2", 0.125F));
  EXPECT_EQ(rate(), 48000.0F);
}

TEST_F(BankTest, ConstructionLoadsTheDefaultPresetAndARecallFindsItsFile) {
  putTree();
  put("default", stateWith(0.6875F));
  TestHost host;
  EXPECT_EQ(standOf(host), Stand(0, 0, "default", 0.6875F));
  EXPECT_EQ(host.client().slot().path.get(), path("default.kvz"));
  EXPECT_TRUE(host.host.calls.empty() || host.host.calls.back()[0] != audioMasterUpdateDisplay);
  load(host, "C/c1.kvz");
  TestHost other;
  other.load(host.state());
  const PresetSlot& slot = other.client().slot();
  EXPECT_EQ(slot.folder.get() + ": " + slot.path.get(), "C: " + path("C/c1.kvz"));
  EXPECT_EQ(standOf(other), Stand(2, 1, "c1", 0.25F));
}

TEST_F(BankTest, ChancePicksFoldersOfSeveral) {
  put("A/alone", stateWith(0.0F));
  TestHost host;
  host.client().randomPreset();
  EXPECT_EQ(nameOf(host), "default");
  // A file holds the name that the state had before it was saved there.
  TestHost writer;
  for (const std::string name : {"one", "two", "three"}) save(writer, "A/" + name + ".kvz");
  host.client().scanBank();
  std::set<std::string> seen;
  for (int i = 0; i < 2000 && seen.size() < 3; ++i) {
    host.client().randomPreset();
    seen.insert(nameOf(host));
    std::this_thread::sleep_for(std::chrono::milliseconds(1));  // the seed is the time
  }
  EXPECT_EQ(seen, (std::set<std::string>{"default", "one", "two"}));
}

}  // namespace
}  // namespace zum::test
