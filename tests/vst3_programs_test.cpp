// The program list of the VST3 face: the same places on every machine, and what stands there now.
#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

#include "adaptor/vst3/factory_programs.hpp"
#include "adaptor/vst3/programs.hpp"
#include "core/tags.hpp"
#include "platform/files.hpp"
#include "state/settings.hpp"
#include "tests/support/temporary_folder.hpp"
#include "tests/support/test_host.hpp"

namespace zum::test {
namespace {

namespace fs = std::filesystem;
using vst3::ProgramList;

constexpr int kFirstOwn = 163;  // place behind the factory's

struct Vst3ProgramList : testing::Test {
  Vst3ProgramList() { useHome(folder); }
  /// A tree of the user's own, which the settings name from then on.
  void makeOwnTree(KvUniClient& client) {
    for (const char* name : {"Bass", "Own"}) fs::create_directories(folder / "tree" / name);
    for (const char* name : {"Own/One", "Own/Two", "Bass/Acid Ladder"}) {
      client.savePreset(fileOf(name).c_str(), 0, nullptr, false);
    }
    writeSettingString(kPresetPath, toInternalPath((folder / "tree" / "").string()));
  }
  std::string fileOf(const std::string& name) const {
    return toInternalPath((folder / "tree" / (name + ".kvz")).string());
  }
  const TemporaryFolder folder;
};

TEST_F(Vst3ProgramList, FactoryPresetsKeepTheirPlaces) {
  const auto names = vst3::factoryPrograms();
  ASSERT_GE(names.size(), 162U);
  std::uint32_t pinned = 2166136261U;  // what is added goes behind these
  for (const std::string_view name : names.first(162)) {
    for (const char c : name) pinned = (pinned ^ static_cast<std::uint8_t>(c)) * 16777619U;
  }
  EXPECT_EQ(pinned, 1897872520U);
  EXPECT_EQ(names[4], "Midi Programs/05 Elastic Walk");
  std::set<std::string> listed;
  std::set<std::string> presets;  // a name alone tells which it is
  for (const std::string_view name : names) {
    listed.emplace(name);
    EXPECT_TRUE(presets.emplace(name.substr(name.find('/') + 1)).second) << name;
  }
  std::set<std::string> made;
  for (const auto& file : fs::recursive_directory_iterator(ZUM_CONTENT "/Presets")) {
    const fs::path name = fs::relative(file.path(), ZUM_CONTENT "/Presets").replace_extension();
    if (file.is_regular_file() && name.has_parent_path()) made.insert(name.string());
  }
  EXPECT_EQ(listed, made);
}

TEST_F(Vst3ProgramList, IsAsLongWithoutFilesAndTheUsersStandBehind) {
  TestHost bare;
  ProgramList without(bare.client());
  EXPECT_FALSE(without.play(1));  // nothing is there
  EXPECT_EQ(without.current(), ProgramList::kAsItIs);
  makeOwnTree(bare.client());
  TestHost host;
  const ProgramList own(host.client());
  for (int place = 0; place < ProgramList::kPlaces; ++place) {
    const bool isOwn = place == kFirstOwn || place == kFirstOwn + 1;
    EXPECT_EQ(own.nameOf(place) == without.nameOf(place), !isOwn) << place;
    EXPECT_EQ(without.nameOf(place) == "-", place >= kFirstOwn);
  }
  EXPECT_EQ(own.find("Own/Two"), kFirstOwn + 1);
}

TEST_F(Vst3ProgramList, FactoryPresetsPlayFromWhatIsInstalled) {
  TestHost first;
  makeOwnTree(first.client());
  installContent(ZUM_CONTENT, folder / "system");
  TestHost host;
  ProgramList list(host.client());
  const int place = list.find("Speech/Plain Speech");
  EXPECT_FALSE(list.tryPlay(place));  // no file is read in a block
  ASSERT_TRUE(list.play(place));
  EXPECT_EQ(list.current(), place);
  EXPECT_EQ(host.client().slot().name.get(), "Plain Speech");
  void* session = nullptr;
  const auto words = static_cast<std::uint32_t>(host.client().getChunk(&session, false)) / 4;
  useHome("/dev/null");  // a machine without presets
  TestHost elsewhere;
  ProgramList other(elsewhere.client());
  ASSERT_TRUE(elsewhere.client().loadState(session, words));
  other.look();
  EXPECT_EQ(other.current(), place);
}

// What stands in the bank is not what the list holds once presets come or another root is chosen.
TEST_F(Vst3ProgramList, TellsWhatIsHeardWhateverBecomesOfTheBank) {
  TestHost first;
  makeOwnTree(first.client());
  TestHost host;
  KvUniClient& client = host.client();
  ProgramList list(client);
  const int one = list.find("Own/One");
  const int two = list.find("Own/Two");
  const auto now = [&] { return list.look(), list.current(); };
  ASSERT_TRUE(list.play(one));
  ASSERT_TRUE(list.tryPlay(two));
  EXPECT_EQ(now(), two);
  client.setParameter(tag::cutoff, 0.3F);
  EXPECT_EQ(now(), two);
  client.savePreset(fileOf("Own/A First").c_str(), 0, nullptr, false);
  EXPECT_EQ(now(), ProgramList::kAsItIs);  // no program of the list
  ASSERT_TRUE(list.play(one));             // one further down in the bank than it was
  EXPECT_EQ(now(), one);
  client.loadPresetFile(fileOf("Own/Two").c_str(), 0, nullptr, false);
  EXPECT_EQ(list.current(), ProgramList::kAsItIs);  // until somebody looks
  EXPECT_EQ(now(), two);
  client.nextPreset(0);
  EXPECT_EQ(now(), ProgramList::kAsItIs);
  ASSERT_TRUE(list.play(two));
  void* session = nullptr;
  const auto words = static_cast<std::uint32_t>(client.getChunk(&session, false)) / 4;
  writeSettingString(kPresetPath, "\\none\\");
  client.scanBank();
  EXPECT_EQ(now(), two);
  EXPECT_FALSE(list.play(one));
  EXPECT_EQ(now(), two);
  TestHost elsewhere;  // where the user's presets are not
  ProgramList other(elsewhere.client());
  ASSERT_TRUE(elsewhere.client().loadState(session, words));
  other.look();
  EXPECT_EQ(other.current(), ProgramList::kAsItIs);
}

}  // namespace
}  // namespace zum::test
