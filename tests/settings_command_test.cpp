// The commands that show and change settings, end to end through the built program.
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
      {"set own --int -5", 0, ""},
      {"list", 0, "\nown                    int     -5\n"},
      {"delete OWN", 0, ""},
      {"get own", 1, "there is no setting own"},
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

}  // namespace
}  // namespace zum::test
