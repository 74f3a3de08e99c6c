// No memory: of all that an operation allocates one piece fails, each in its turn. Then all is as
// it was or as it should be, blocks play on, and a second try succeeds.
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>

#include "core/tags.hpp"
#include "platform/files.hpp"
#include "state/settings.hpp"
#include "tests/support/editor_desk.hpp"
#include "tests/support/failing_memory.hpp"
#include "tests/support/temporary_folder.hpp"
#include "tests/support/test_host.hpp"

namespace zum::test {
namespace {

/// A user with two folders of presets, a controller map, and a session that needs more room for
/// steps and bindings than an effect starts with.
class NoMemory : public testing::Test {
 protected:
  NoMemory() {
    useHome(folder);
    initSettings();
    for (const char* name : {"tree/A", "tree/Midi Programs"}) {
      std::filesystem::create_directories(folder / name);
    }
    writeSettingString(kPresetPath, path("tree"));
    TestHost maker;
    for (int step = 0; step < 40; ++step)
      maker.client().controllers().controllers[7].append({tag::cutoff, 0});
    maker.client().saveCcMap(path("map.kvm").c_str());
    maker.client().setStepColumns(32);
    for (const char* name : {"tree/A/a0.kvz", "tree/A/a1.kvz", "tree/Midi Programs/m0.kvz"}) {
      maker.client().savePreset(path(name).c_str(), 0, nullptr, false);
    }
    session = maker.state();
  }

  std::string path(const std::string& name) const {
    return toInternalPath((folder / name).string());
  }

  static void expectSound(TestHost& host) {
    const Stereo in = noise(64);
    Stereo out(64);
    host.process(in, out, 0, 64);
    EXPECT_GT(energy(out), 0.01 * energy(in));
  }

  const TemporaryFolder folder;
  std::string session;
};

TEST_F(NoMemory, AnEffectIsMadeWholeOrNotAtAll) {
  const std::string whole = TestHost().state();
  int made = 0;
  for (int n = 1, more = 1; more != 0; ++n) {
    SCOPED_TRACE(n);
    AEffect* record = nullptr;
    more = failsAt(n, [&] { record = createEffect(nullptr); });
    if (record == nullptr) continue;
    ++made;
    const EffectInstance effect(record);
    EXPECT_EQ(effect.state(), whole);
  }
  EXPECT_GT(made, 1);  // without its first preset an effect can do
}

// Whoever first needs the programs reads them.
TEST_F(NoMemory, ProgramsThatFoundNoRoomAreReadLater) {
  const std::string a1 = path("tree/A/a1.kvz");
  const std::function<void(const LinkedEffect&)> first[] = {
      [](const LinkedEffect& effect) { effect.resume(44100.0F, 64); },
      [](const LinkedEffect& effect) { effect.dispatch(effSetProgram, 0, 1); },
      [&](const LinkedEffect& effect) {
        effect.client().loadPresetFile(a1.c_str(), 0, nullptr, false);
      }};
  for (const auto& act : first) {
    int readLater = 0;
    for (int n = 1, more = 1; more != 0; ++n) {
      SCOPED_TRACE(n);
      const LinkedEffect effect;
      more = failsAt(n, [&] { act(effect); });
      readLater += more;
      EXPECT_EQ(effect.client().programs()->presetCount(0), 2);
      EXPECT_EQ(effect.client().programs()->presetCount(1), 1);
    }
    EXPECT_GT(readLater, 10);
  }
}

// Half a window would be one without pictures, or with controls that are not there.
TEST_F(NoMemory, AWindowOpensWholeOrNotAtAll) {
  EditorDesk desk;
  KvUniClientEditor& editor = desk.editor();
  const std::size_t views = editor.shownFrame()->children().size();
  int refused = 0;
  // Each of the first, then ever fewer: one of some thousand.
  for (int n = 1, more = 1; more != 0; n += 1 + n / 20) {
    SCOPED_TRACE(n);
    editor.close();
    more = failsAt(n, [&] { desk.reopen(); });
    refused += editor.isOpen() ? 0 : 1;
    if (!editor.isOpen()) desk.reopen();
    EXPECT_EQ(editor.shownFrame()->children().size(), views);
    EXPECT_NE(editor.getBitmap(1000), nullptr);
  }
  EXPECT_GT(refused, 50);
}

TEST_F(NoMemory, AnOperationIsDoneWholeOrNotAtAll) {
  void* bytes = nullptr;
  const std::string a1 = path("tree/A/a1.kvz");
  const std::string map = path("map.kvm");
  const struct {
    const char* name;
    std::function<void(const TestHost&, KvUniClient&)> act;
    bool needsFullList = false;  // of controller 0
  } operations[] = {
      {"session",
       [&](auto& host, auto& /*effect*/) {
         host.dispatch(effSetChunk, 0, std::ssize(session), session.data());
       }},
      {"its saving",
       [&](auto& host, auto& /*effect*/) { host.dispatch(effGetChunk, 0, 0, &bytes); }},
      {"program", [](auto& host, auto& /*effect*/) { host.dispatch(effSetProgram, 0, 1); }},
      {"preset",
       [&](auto&, auto& effect) { effect.loadPresetFile(a1.c_str(), 0, nullptr, false); }},
      {"its saving",
       [&](auto&, auto& effect) { effect.savePreset(a1.c_str(), 0, nullptr, false); }},
      {"revert", [](auto&, auto& effect) { effect.revertToStored(); }},
      {"its point", [](auto&, auto& effect) { effect.storeRevertPoint(); }},
      {"map", [&](auto&, auto& effect) { effect.loadCcMap(map.c_str()); }},
      {"its saving", [&](auto&, auto& effect) { effect.saveCcMap(map.c_str()); }},
      {"columns", [](auto&, auto& effect) { effect.setStepColumns(64); }},
      {"pages", [](auto&, auto& effect) { effect.setStepPages(9); }},
      {"bank", [](auto&, auto& effect) { effect.scanBank(); }},
      {"learning", [](auto&, auto& effect) { effect.beginLearn(tag::cutoff); }, true},
  };
  for (const auto& [name, act, needsFullList] : operations) {
    std::string whole;
    std::string wholeRevert;
    int n = 0;  // at first nothing fails
    for (bool fails = true; fails; ++n) {
      SCOPED_TRACE(name + (" " + std::to_string(n)));
      TestHost host;
      KvUniClient& effect = host.client();
      BindingList& list = effect.controllers().controllers[0];
      while (needsFullList && list.tryAppend({tag::master, 0})) continue;
      const std::string revert = host.state();
      effect.storeRevertPoint();
      host.set(tag::cutoff, 0.25F);
      const std::string before = host.state();
      const bool failed = failsAt(n, [&] { act(host, effect); });
      const std::string after = host.state();
      if (n == 0) {
        whole = after;
      } else {
        EXPECT_TRUE(after == whole || (failed && after == before));
        EXPECT_EQ(effect.programs()->presetCount(0), 2);
        EXPECT_FALSE(effect.controllers().learning);
        expectSound(host);
        act(host, effect);
        EXPECT_EQ(host.state(), whole);
        fails = failed;
      }
      host.set(tag::cutoff, 0.75F);
      effect.revertToStored();
      if (n == 0) wholeRevert = host.state();
      EXPECT_TRUE(host.state() == wholeRevert || host.state() == revert);
    }
    EXPECT_GT(n, 2) << name;
  }
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    EXPECT_FALSE(entry.path().filename().string().starts_with(".zum")) << entry;  // half a file
  }
}

}  // namespace
}  // namespace zum::test
