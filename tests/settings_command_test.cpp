// The commands that show and change settings, end to end through the built program.
#include <sys/resource.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <tuple>

#include "support/settings_user.hpp"

namespace zum::test {
namespace {

using SettingsCommandTest = SettingsTest;

TEST_F(SettingsCommandTest, TheCommandShowsAndChangesValues) {
  const std::tuple<std::string, int, std::string> cases[] = {
      {"list", 0, "name  type    value\n"},
      {"get presetpath0", 1, "zum settings list"},
      {"delete presetpath0", 1, "there is no setting presetpath0"},
      {"set IgnorePrgChange 0", 0, ""},
      {"get ignorePrgChange", 0, "0\n"},
      {"set ignorePrgChange yes", 2, "\"yes\" is not a whole number"},
      {"set presetpath0 ./new", 0, ""},
      {"get presetpath0", 0, internal("new/") + "\n"},
      {"set --int presetpath0 1", 2, "leave out --int"},
      {"set presetpath0 " + std::string(1020, 'x'), 2, "at most 1024"},
      {"set own \"$(printf 'a\\033\\nb')\"", 0, ""},
      {"get own", 0, "a\\x1b\\nb\n"},
      {"set own --int -5", 0, ""},
      {"list", 0, "\nown                    int     -5\n"},
      {"delete OWN", 0, ""},
      {"get own", 1, "there is no setting own"},
      {"get ' '", 2, "NAME: \" \" says nothing"},
      {"list >none; rm -r config; ulimit -f 2; " ZUM_PROGRAM " settings set own x", 1,
       "cannot write"},
      {"", 2, "zum settings --help"},
  };
  for (const auto& [arguments, exitCode, printed] : cases) {
    SCOPED_TRACE(arguments);
    const auto outcome = run("settings " + arguments);
    EXPECT_EQ(outcome.first, exitCode);
    EXPECT_NE(outcome.second.find(printed), std::string::npos) << outcome.second;
  }
  putText(store, std::string(2000, '?'));
  const auto outcome = run("settings list");
  EXPECT_TRUE(outcome.first == 1 && outcome.second.find("move the file away") != std::string::npos);
}

TEST_F(SettingsCommandTest, ContentIsCopiedKeptAndRegistered) {
  initSettings(ignoreSwitch);  // without content the folders are relative
  writeSettingString(kAudioFilePath, "\\own\\samples");
  writeSettingInt(kIgnoreProgramChange, 0);
  putText(folder / "system/zum/Presets/Bass/Deep.kvz", "one");
  putText(folder / "system/zum/Presets/User/Mine.kvz", "theirs");
  putText(folder / "system/zum/Samples/Factory/Drums.wav", "drums");
  const fs::path copy = folder / "data/zum";
  putText(copy / "Presets/User/Mine.kvz", "mine");
  const auto expectRegistered = [&](const std::string& content) {
    Values values = allValues();
    EXPECT_EQ(values["contentpath"], internal(content));
    EXPECT_EQ(values["installpath"], internal(content));
    EXPECT_EQ(values["presetpath0"], internal(content + "Presets/"));
    EXPECT_EQ(values["presetsavepath0"], internal(content + "Presets/User/"));
    EXPECT_EQ(values["audiofilepath"], "\\own\\samples");
    EXPECT_EQ(values["ignorePrgChange"], "0");
  };
  EXPECT_EQ(run("install-content system/zum").first, 0);
  expectRegistered("data/zum/");
  EXPECT_EQ(textIn(copy / "Presets/User/Mine.kvz"), "mine");
  EXPECT_EQ(textIn(copy / "Samples/Factory/Drums.wav"), "drums");

  // A second time: a changed file is put aside, one of the user's own stays.
  putText(copy / "Presets/Bass/Own.kvz", "own");
  putText(copy / "Presets/Bass/Deep.kvz", "edited");
  EXPECT_NE(run("install-content system/zum").second.find("Deep.kvz.old\n"), std::string::npos);
  EXPECT_NE(run("install-content system/zum").second.find(": 0 new, 0 refreshed, 2 unchanged"),
            std::string::npos);
  EXPECT_EQ(textIn(copy / "Presets/Bass/Deep.kvz"), "one");
  EXPECT_EQ(textIn(copy / "Presets/Bass/Deep.kvz.old"), "edited");
  EXPECT_EQ(textIn(copy / "Presets/Bass/Own.kvz"), "own");

  EXPECT_EQ(run("install-content system/zum --in-place").first, 0);
  expectRegistered("system/zum/");

  // A copy that breaks off changes no setting.
  fs::remove(copy / "Samples/Factory/Drums.wav");
  fs::create_directory(copy / "Samples/Factory/Drums.wav");
  for (const char* arguments : {"system/zum", "config", "data", "nowhere --in-place"}) {
    EXPECT_NE(run("install-content "s + arguments).first, 0) << arguments;
    expectRegistered("system/zum/");
  }
}

TEST_F(SettingsCommandTest, APackBringsItsOwnFilesAlone) {
  putText(folder / "secret/key", "key");
  putText(folder / "mine", "mine");
  const fs::path pack = folder / "pack/Presets", copy = folder / "data/zum/Presets";
  putText(pack / "Deep.kvz", "one");
  constexpr std::uintmax_t kLarge = 128 << 20;
  putText(pack / "Large.wav", "");
  fs::resize_file(pack / "Large.wav", kLarge);
  fs::create_symlink(folder / "secret/key", pack / "Link.kvz");
  fs::create_directory_symlink(folder / "secret", pack / "Links");
  mkfifo((pack / "Pipe.kvz").c_str(), 0600);
  fs::create_directories(copy);
  fs::create_symlink(folder / "mine", copy / "Deep.kvz");
  const auto [exitCode, printed] = run("install-content pack");
  EXPECT_EQ(exitCode, 0) << printed;
  for (const char* name : {"Link.kvz", "Links", "Pipe.kvz"}) {
    EXPECT_NE(printed.find("left out " + (pack / name).string() + ":"), std::string::npos) << name;
    EXPECT_FALSE(fs::exists(copy / name)) << name;
  }
  EXPECT_EQ(textIn(copy / "Deep.kvz"), "one");
  EXPECT_EQ(textIn(folder / "mine"), "mine");
  EXPECT_TRUE(fs::is_symlink(copy / "Deep.kvz.old"));
  EXPECT_EQ(fs::file_size(copy / "Large.wav"), kLarge);
  rusage used{};
  getrusage(RUSAGE_CHILDREN, &used);
  EXPECT_LT(used.ru_maxrss, static_cast<long>(kLarge >> 10U));  // in KiB
}

}  // namespace
}  // namespace zum::test
