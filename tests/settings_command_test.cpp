// The commands that show and change settings, end to end through the built program.
#include <sys/resource.h>
#include <sys/stat.h>

#include <string>

#include "support/settings_user.hpp"

namespace zum::test {
namespace {

using SettingsCommandTest = SettingsTest;

TEST_F(SettingsCommandTest, ShowsAndChangesValues) {
  expectTold(
      "", {
              {"settings delete presetpath0", 1, "there is no setting presetpath0"},
              {"settings set IgnorePrgChange 0", 0, ""},
              {"settings get ignorePrgChange", 0, "0\n"},
              {"settings set ignorePrgChange yes", 2, "\"yes\" is not a whole number"},
              {"settings set presetpath0 ./new", 0, ""},
              {"settings get presetpath0", 0, internal("new/") + "\n"},
              {"settings set --int presetpath0 1", 2, "leave out --int"},
              {"settings set presetpath0 " + std::string(1020, 'x'), 2, "at most 1024"},
              {"settings set own \"$(printf 'a\\033\\nb')\"", 0, ""},
              {"settings get own", 0, "a\\x1b\\nb\n"},
              {"settings set own --int -5", 0, ""},
              {"settings list", 0, "\nown                    int     -5\n"},
              {"settings delete OWN", 0, ""},
              {"settings list >none; rm -r config; ulimit -f 2; " ZUM_PROGRAM " settings set own x",
               1, "cannot write"},
          });
  putText(store, std::string(2000, '?'));
  expectTold("zum: ", {{"settings list", 1, "move the file away"}});
}

TEST_F(SettingsCommandTest, ContentIsCopiedKeptAndRegistered) {
  initSettings();  // without content the folders are relative
  writeSettingString(kAudioFilePath, "\\own\\samples");
  writeSettingInt(kIgnoreProgramChange, 0);
  putText(folder / "system/zum/Presets/Bass/Deep.kvz", "one");
  putText(folder / "system/zum/Presets/User/Mine.kvz", "theirs");
  putText(folder / "system/zum/Samples/Factory/Drums.wav", "drums");
  const fs::path copy = folder / "data/zum";
  putText(copy / "Presets/User/Mine.kvz", "mine");
  const Values before = allValues();
  const auto expectRegistered = [&](const std::string& content) {
    Values expected = {{"contentpath", internal(content)},
                       {"installpath", internal(content)},
                       {"presetpath0", internal(content + "Presets/")},
                       {"presetsavepath0", internal(content + "Presets/User/")}};
    expected.insert(before.begin(), before.end());  // all others stay
    EXPECT_EQ(allValues(), expected);
  };
  const auto copied = [&](const std::string& name) { return textIn(copy / name); };
  expectTold("", {{"install-content system/zum", 0, ""}});
  expectRegistered("data/zum/");
  EXPECT_EQ(copied("Presets/User/Mine.kvz") + copied("Samples/Factory/Drums.wav"), "minedrums");

  // A second time: a changed file is put aside, one of the user's own stays.
  putText(copy / "Presets/Bass/Own.kvz", "own");
  putText(copy / "Presets/Bass/Deep.kvz", "edited");
  expectTold("", {{"install-content system/zum", 0, "Deep.kvz.old\n"},
                  {"install-content system/zum", 0, ": 0 new, 0 refreshed, 2 unchanged"}});
  EXPECT_EQ(copied("Presets/Bass/Deep.kvz") + copied("Presets/Bass/Own.kvz"), "oneown");
  EXPECT_EQ(copied("Presets/Bass/Deep.kvz.old"), "edited");
  expectTold("", {{"install-content system/zum --in-place", 0, ""}});
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
  fs::resize_file(pack / "Large.wav", 33 * kLarge);
  putText(pack / "Deep.kvz", "two");
  expectTold("zum: ", {{"install-content pack", 1, "have more than 4 GB; take out"}});
  EXPECT_EQ(textIn(copy / "Deep.kvz"), "one");
}

}  // namespace
}  // namespace zum::test
