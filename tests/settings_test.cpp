// The settings store and what fills it: several processes, files that are no store, first starts.
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <optional>
#include <string>
#include <utility>

#include "support/settings_user.hpp"
#include "support/test_host.hpp"

namespace zum::test {
namespace {

using Switches = std::array<std::int32_t, 2>;

/// The switches that a start of the effect is given.
Switches start() { return initSettings().switches; }

/// Another program's hand in the store.
void execute(const fs::path& store, const std::string& sql) {
  fs::create_directories(store.parent_path());
  sqlite3* db = nullptr;
  ASSERT_EQ(sqlite3_open(store.c_str(), &db), SQLITE_OK);
  EXPECT_EQ(sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sql;
  sqlite3_close(db);
}

TEST_F(SettingsTest, AValueIsReadBackAsItsTypeAlone) {
  EXPECT_FALSE(readSettingString("a") || readSettingInt("a"));
  EXPECT_FALSE(fs::exists(folder / "config"));  // reading leaves no trace
  EXPECT_TRUE(writeSettingInt("a", -7) && writeSettingInt("b", 1) && writeSettingString("c", ""));
  EXPECT_TRUE(readSettingInt("a") == -7 && readSettingString("c") == "" && !readSettingInt("c"));
  EXPECT_FALSE(readSettingString("a"));
  EXPECT_TRUE(writeSettingString("A", "x\\y\xFF"));  // any bytes, and names without regard to case
  EXPECT_TRUE(readSettingString("a") == "x\\y\xFF" && !readSettingInt("a"));
  EXPECT_EQ(allValues(), (Values{{"A", "x\\y\xFF"}, {"b", "1"}, {"c", ""}}));
  int value = 0;
  EXPECT_FALSE(KvRegistryKey("Another").getInt("b", value));
}

TEST_F(SettingsTest, ATextFitsIntoItsBufferOrIsAbsent) {
  EXPECT_TRUE(writeSettingString("edge", std::string(1024, 'x')));
  EXPECT_FALSE(writeSettingString("edge", std::string(1025, 'y')));
  char buffer[KvRegistryKey::kTextBytes + 1] = {};
  buffer[KvRegistryKey::kTextBytes] = '#';
  EXPECT_TRUE(KvRegistryKey("ZUM").getString("edge", buffer));
  EXPECT_EQ(buffer, std::string(1024, 'x'));
  // Too long a text, a number of 64 bits, a type that is none, another one than is stored.
  for (const char* row : {"'edge','string',printf('%1025c','z')", "'wide','int',4294967296",
                          "'odd','float',1.5", "'liar','string',5"}) {
    execute(store, "INSERT OR REPLACE INTO registry VALUES('Software\\Zelvane\\ZUM',"s + row + ")");
  }
  EXPECT_FALSE(KvRegistryKey("ZUM").getString("edge", buffer));
  EXPECT_EQ(buffer[KvRegistryKey::kTextBytes], '#');
  for (const char* name : {"wide", "odd", "liar"}) {
    EXPECT_FALSE(readSettingInt(name) || readSettingString(name)) << name;
  }
}

TEST_F(SettingsTest, ProcessesThatWriteAtOnceLoseNothing) {
  EXPECT_TRUE(inProcesses(4, [](int writer) {
    for (int i = 0; i < 50; ++i) {
      const std::string name = std::to_string(writer) + "-" + std::to_string(i);
      if (!writeSettingInt(name.c_str(), i) || readSettingInt(name.c_str()) != i) return false;
    }
    return true;
  }));
  EXPECT_EQ(allValues().size(), 200U);
}

TEST_F(SettingsTest, StartsAtOnceInitialiseOnceAndWhole) {
  // Every start sees the whole of the first; a switch that the user changes then stays so.
  EXPECT_TRUE(inProcesses(4, [](int) {
    start();
    if (allValues().size() != 7) return false;
    return writeSettingInt(kIgnoreProgramChange, 0);
  }));
  EXPECT_EQ(readSettingInt(kIgnoreProgramChange), 0);
}

TEST_F(SettingsTest, AProcessThatEndsInATransactionLeavesNoTrace) {
  writeSettingInt("a", 1);
  EXPECT_TRUE(inProcesses(1, [](int) {
    KvRegistryKey key("ZUM");
    auto whole = key.transaction();
    int value = 0;
    const bool seen = whole.begun() && key.setInt("a", 2) && key.getInt("a", value) && value == 2;
    return seen && readSettingInt("a") == 1;
  }));
  EXPECT_EQ(allValues(), (Values{{"a", "1"}}));
}

TEST_F(SettingsTest, NoStoreMeansAbsentAndNotWritten) {
  for (const char* name : {"a", "b", "c"}) writeSettingString(name, std::string(1000, 'x'));
  const std::string whole = textIn(store);
  const std::pair<const char*, std::function<void()>> cases[] = {
      {"garbage", [&] { putText(store, std::string(5000, '?')); }},
      {"cut", [&] { putText(store, whole.substr(0, whole.size() / 2)); }},
      {"pipe", [&] { mkfifo(store.c_str(), 0600); }},
      {"pipe for a journal",
       [&] { putText(store, whole), mkfifo((store.string() + "-journal").c_str(), 0600); }},
      {"device", [&] { fs::create_symlink("/dev/zero", store); }},
      {"file in the folder's place",
       [&] { fs::remove(store.parent_path()), putText(store.parent_path(), ""); }},
      {"no folder to make one in", [] { setenv("XDG_CONFIG_HOME", "/proc/none", 1); }},
  };
  for (const auto& [what, breakIt] : cases) {
    SCOPED_TRACE(what);
    fs::remove_all(folder / "config");
    fs::create_directories(store.parent_path());
    breakIt();
    const std::string broken = fs::is_regular_file(store) ? textIn(store) : "";
    EXPECT_FALSE(readSettingString("a") || writeSettingInt("a", 1) || writeSettingString("a", "b"));
    EXPECT_FALSE(KvRegistryKey("ZUM").remove("a"));
    EXPECT_EQ(start(), (Switches{1, 0}));
    EXPECT_EQ(run("settings set a b").first, 1);
    EXPECT_TRUE(broken.empty() || textIn(store) == broken);  // it may be mended by hand
  }
}

TEST_F(SettingsTest, NothingInTheFileRunsForLong) {
  const std::string endless =
      "(WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i FROM n) SELECT i FROM n)";
  const std::string own =
      "CREATE TABLE registry(key, name, type, data, PRIMARY KEY(key, name)) WITHOUT ROWID;";
  // One call that nobody could break off, were texts of any length allowed.
  const std::string slow =
      "(replace(printf('%.2000000c', 'a'), printf('%.1000000c', 'a') || 'b', data))";
  const std::pair<const char*, std::string> cases[] = {
      {"view", "CREATE VIEW registry AS SELECT -i AS key, -i AS name, i AS type, i AS data FROM " +
                   endless},
      {"trigger", own + "CREATE TRIGGER t BEFORE INSERT ON registry BEGIN SELECT count(*) FROM " +
                      endless + "; END"},
      {"check", "CREATE TABLE registry(key, name, type, data CHECK" + slow + ")"},
      {"rows",
       "CREATE TABLE registry(name, type, data);"
       "INSERT INTO registry SELECT 'a', 'int', 1 FROM " +
           endless.substr(0, endless.size() - 1) +
           " LIMIT 200000);"
           "ALTER TABLE registry ADD COLUMN key AS (replace(hex(zeroblob(4000 - data)), '00', "
           "'a'))"},
  };
  for (const auto& [what, sql] : cases) {
    SCOPED_TRACE(what);
    fs::remove_all(folder / "config");
    execute(store, sql);
    const auto begin = std::chrono::steady_clock::now();
    const TestHost host;
    EXPECT_FALSE(readSettingInt("a"));
    EXPECT_TRUE(writeSettingInt("b", 1) || what != "trigger"s);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 3 * RegistryStore::kPatience);
  }
}

TEST_F(SettingsTest, AStartWaitsOnceForWhoKeepsTheStore) {
  start();
  writeSettingInt(kIgnoreProgramChange, 0);
  sqlite3* db = nullptr;
  ASSERT_EQ(sqlite3_open(store.c_str(), &db), SQLITE_OK);
  sqlite3_exec(db, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr);
  const auto begin = std::chrono::steady_clock::now();
  const TestHost host;
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 3 * RegistryStore::kPatience / 2);
  sqlite3_close(db);
  EXPECT_EQ(readSettingInt(kIgnoreProgramChange), 0);  // who comes later asks again
}

TEST_F(SettingsTest, AUserWithoutRightsOrHomeReadsWhatThereIs) {
  writeSettingString("a", "b");
  const fs::path folders[] = {folder, folder / "config", store.parent_path()};
  for (const fs::path& path : folders) fs::permissions(path, fs::perms(0555));
  const auto asAnybody = [](std::optional<std::string> expected) {
    return inProcesses(1, [&](int) {
      if (getuid() == 0 && setuid(54321) != 0) return false;  // a number that nobody has
      start();
      return readSettingString("a") == expected && !writeSettingString("a", "c");
    });
  };
  fs::permissions(store, fs::perms(0444));
  EXPECT_TRUE(asAnybody("b"));
  EXPECT_EQ(allValues().size(), 1U);
  fs::permissions(store, fs::perms(0));
  EXPECT_TRUE(asAnybody({}));
  for (const fs::path& path : folders) fs::permissions(path, fs::perms(0755));
  // A relative folder of settings is none: the home's is taken, and there may be none either.
  setenv("XDG_CONFIG_HOME", "here", 1);
  setenv("HOME", (folder / "home").c_str(), 1);
  EXPECT_TRUE(writeSettingInt("d", 1) && fs::exists(folder / "home/.config/Zelvane/registry.db"));
  setenv("HOME", "here", 1);
  EXPECT_TRUE(getuid() != 0 || asAnybody({}));
}

/// What a start writes when content is found in a folder.
Values below(const std::string& content) {
  return {{"contentpath", content},
          {"presetpath0", content + "Presets\\"},
          {"presetsavepath0", content + "Presets\\User\\"},
          {"audiofilepath", content + "Samples\\Factory"}};
}

TEST_F(SettingsTest, AFirstStartFillsInWhatIsMissing) {
  const Values relative = {{"installpath", "c:\\Programme\\Zelvane\\ZUM\\"},
                           {"presetpath0", "Presets\\"},
                           {"presetsavepath0", "Presets\\User\\"},
                           {"audiofilepath", "Samples\\Factory"},
                           {"ignorePrgChange", "1"},
                           {"CC Map Recall isolate", "0"},
                           {"initialised", "1"}};
  const struct {
    const char* what;
    Values before;
    const char* content;  // folder that is installed
    Values written;       // the rest as in `relative`
    bool later = false;   // installed after a start without it
  } cases[] = {
      {"fresh", {}, nullptr, {}},
      {"installer", {{"contentpath", "\\c\\"}, {"installpath", "\\i"}}, "data", below("\\c\\")},
      {"no backslash", {{"contentpath", "\\c"}}, nullptr, below("\\c")},
      {"content for all", {}, "system", below(internal("system/zum/"))},
      {"content of the user's", {}, "data", below(internal("data/zum/"))},
      {"older version", {{"presetpath", "\\mine\\"}}, nullptr, {{"presetpath0", "\\mine\\"}}},
      {"content later", {}, "system", below(internal("system/zum/")), true},
      {"content later, a folder of one's own",  // stays, and what goes with it
       {{"presetpath", "\\mine\\"}},
       "system",
       {{"presetpath0", "\\mine\\"}, {"contentpath", internal("system/zum/")}},
       true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    for (const char* name : {"config", "data", "system"}) fs::remove_all(folder / name);
    for (const auto& [name, value] : c.before) writeSettingString(name.c_str(), value);
    if (c.later) start();
    if (c.content != nullptr) fs::create_directories(folder / c.content / "zum/Presets");
    start();
    Values expected = c.written;
    for (const Values& rest : {c.before, relative}) expected.insert(rest.begin(), rest.end());
    EXPECT_EQ(allValues(), expected);
  }
}

TEST_F(SettingsTest, LaterStartsReadTheSwitchesAndMendThePresetFolderAlone) {
  start();
  writeSettingInt(kIgnoreProgramChange, 0);
  writeSettingInt(kIsolateMapRecall, 3);
  writeSettingString("presetpath", "\\old\\");
  KvRegistryKey("ZUM").remove(kPresetPath);
  KvRegistryKey("ZUM").remove(kAudioFilePath);
  EXPECT_EQ(start(), (Switches{0, 3}));
  EXPECT_EQ(readSettingString(kPresetPath), "\\old\\");
  EXPECT_FALSE(readSettingString(kAudioFilePath));
}

TEST_F(SettingsTest, AStartSeesWhatOthersWroteSinceTheLastOne) {
  fs::create_directories(folder / "data/zum/Presets");
  const auto longAgo = fs::file_time_type::clock::now() - std::chrono::hours(1);
  for (const std::int32_t value : {1, 0, 1}) {
    start();
    fs::last_write_time(store, longAgo);
    start();  // which the next one relies on
    EXPECT_TRUE(inProcesses(1, [=](int) { return writeSettingInt(kIsolateMapRecall, value); }));
    fs::last_write_time(store, longAgo);
    EXPECT_EQ(start(), (Switches{1, value}));
  }
}

}  // namespace
}  // namespace zum::test
