// Files of every version that this product has written or read, kept for ever: each is read to the
// state that it was read to when its answer was recorded, and written as it was written then. Files
// and answers are never changed; a new version of a format adds some. `ZUM_RECORD_ANSWERS=1` takes
// down those that are missing, and no others.
#include <cstdlib>
#include <sstream>

#include "support/settings_user.hpp"
#include "support/test_host.hpp"

namespace zum::test {
namespace {

const fs::path kFiles = ZUM_FORMATS;
const fs::path kAnswers = kFiles / "answers.txt";

/// FNV-1a, 64 bits.
std::string hashOf(const std::string& bytes) {
  std::uint64_t hash = 14695981039346656037U;
  for (const char c : bytes) hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211U;
  std::ostringstream text;
  text << bytes.size() << ' ' << std::hex << hash;
  return text.str();
}

class FormatsTest : public SettingsTest {
 public:
  std::string throughASession(const std::string& file) const {
    TestHost host;
    host.load(textIn(folder / file));
    return host.state();
  }
  std::string throughAPreset(const std::string& file) const {
    const TestHost host;
    host.client().loadPresetFile(internal(file).c_str(), 0, nullptr, false);
    return host.state();
  }
  std::string throughAMap(const std::string& file) const {
    const TestHost host;
    host.client().loadCcMap(internal(file).c_str());
    host.client().saveCcMap(internal("written.kvm").c_str());
    return textIn(folder / "written.kvm");
  }
  std::string throughARecord(const std::string& file) const {
    EXPECT_EQ(shell("'" ZUM_DAEHOST "' save written --session " + file).first, 0);
    return textIn(folder / "written");
  }
  std::string throughAText(const std::string& file) const {
    EXPECT_EQ(run("presets make " + file + " written.kvz"), std::pair(0, ""s));
    return textIn(folder / "written.kvz");
  }
};

struct Door {
  const char* extension;
  const char* name;
  /// What is written once `file`, a name in the test's folder, was read by a fresh effect.
  std::string (FormatsTest::*through)(const std::string& file) const;
  bool isOwn;  // what is written is of the kind that was read
};
constexpr Door kDoors[] = {
    {".kvz", "session", &FormatsTest::throughASession, true},
    {".kvz", "preset", &FormatsTest::throughAPreset, true},
    {".kvm", "map", &FormatsTest::throughAMap, true},
    {".session", "record", &FormatsTest::throughARecord, true},
    {".toml", "text", &FormatsTest::throughAText, false},
};

TEST_F(FormatsTest, EveryFileIsReadAndWrittenAsItWasOnTheFirstDay) {
  Values answers;
  std::ifstream recorded(kAnswers);
  for (std::string door, file, answer; recorded >> door >> file && getline(recorded, answer);) {
    answers[door + ' ' + file] = answer.empty() ? answer : answer.substr(1);
  }
  const std::size_t known = answers.size();
  std::size_t read = 0;
  for (const auto& entry : fs::directory_iterator(kFiles)) {
    const std::string file = entry.path().filename().string();
    for (const Door& door : kDoors) {
      if (entry.path().extension() != door.extension) continue;
      SCOPED_TRACE(door.name + " "s + file);
      fs::copy_file(entry.path(), folder / file, fs::copy_options::overwrite_existing);
      const std::string written = (this->*door.through)(file);
      ASSERT_FALSE(written.empty());
      std::string& answer = answers[door.name + " "s + file];
      if (answer.empty() && std::getenv("ZUM_RECORD_ANSWERS") != nullptr) answer = hashOf(written);
      EXPECT_EQ(hashOf(written), answer);
      if (door.isOwn) {
        putText(folder / file, written);
        EXPECT_TRUE((this->*door.through)(file) == written) << "read again, it is not the same";
      }
      ++read;
    }
  }
  EXPECT_EQ(read, answers.size()) << "a file has gone";
  if (answers.size() == known) return;
  std::ofstream all(kAnswers);
  for (const auto& [key, answer] : answers) all << key << ' ' << answer << '\n';
}

}  // namespace
}  // namespace zum::test
