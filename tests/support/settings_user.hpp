// What the tests of settings, files and programs share: a user of their own, whose home, data and
// installed content lie in a temporary folder, and the programs that this user starts there.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "state/registry_key.hpp"
#include "state/settings.hpp"
#include "tests/support/temporary_folder.hpp"

namespace zum::test {

namespace fs = std::filesystem;
using namespace std::string_literals;
using Values = std::map<std::string, std::string>;

inline void putText(const fs::path& path, const std::string& text) {
  fs::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << text;
}

inline std::string textIn(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// A standard MIDI file of one track with these events, at 480 ticks a quarter.
inline std::string midiFile(const std::string& events) {
  const auto size = static_cast<std::uint32_t>(events.size() + 4);
  std::string length;
  for (const unsigned shift : {24U, 16U, 8U, 0U}) length += static_cast<char>(size >> shift);
  return "MThd\0\0\0\6\0\0\0\1\1\xE0MTrk"s + length + events + "\0\xFF\x2F\0"s;
}

/// Runs `work` in processes of their own, at once; true if each was content.
inline bool inProcesses(int count, const std::function<bool(int)>& work) {
  for (int i = 0; i < count; ++i) {
    if (fork() == 0) _exit(work(i) ? 0 : 1);
  }
  bool good = true;
  for (int status = 0; wait(&status) > 0;) good = good && status == 0;
  return good;
}

#ifndef ZUM_PROGRAM
#define ZUM_PROGRAM "none"  // of tests that run none
#endif
const std::string kProgram = "'" ZUM_PROGRAM "' ";

/// No way leads to a sound device, nor starts a server.
inline void useNoSound(const fs::path& folder) {
  setenv("JACK_DEFAULT_SERVER", "zum-none", 1);
  setenv("PULSE_SERVER", ("unix:" + (folder / "no-pulse").string()).c_str(), 1);
  setenv("ALSA_CONFIG_PATH", "/dev/null", 1);
}

class SettingsTest : public testing::Test {
 protected:
  SettingsTest() { useHome(folder); }

  // The form that the store keeps of a path below the test's folder.
  std::string internal(const std::string& path) const {
    std::string text = (folder / path).string();
    for (char& c : text) c = c == '/' ? '\\' : c;
    return text;
  }

  // Exit code, and everything that was printed, of lines of shell in the folder.
  std::pair<int, std::string> shell(const std::string& script) const {
    const std::string out = (folder / ".out").string();
    const int status = std::system(
        ("cd '" + folder.string() + "' && ( " + script + "\n ) >" + out + " 2>&1").c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, textIn(out)};
  }
  // The same of the program.
  std::pair<int, std::string> run(const std::string& arguments) const {
    return shell("timeout -s KILL 60 " + kProgram + arguments);
  }
  struct Told {
    std::string arguments;
    int exitCode;
    std::string words;  // printed somewhere
  };
  // One run after the other; `start` is how each of them begins what it prints.
  void expectTold(const std::string& start, const std::vector<Told>& runs) const {
    for (const Told& each : runs) {
      const auto [exitCode, text] = run(each.arguments);
      EXPECT_EQ(exitCode, each.exitCode) << each.arguments << '\n' << text;
      EXPECT_EQ(text.substr(0, start.size()), start) << each.arguments;
      EXPECT_NE(text.find(each.words), std::string::npos) << each.arguments << '\n' << text;
    }
  }

  const TemporaryFolder folder;
  const fs::path store = folder / "config/Zelvane/registry.db";
};

inline Values allValues() {
  Values all;
  for (const auto& value : KvRegistryKey("ZUM").values()) {
    const auto* text = std::get_if<std::string>(&value.data);
    all[value.name] = text != nullptr ? *text : std::to_string(std::get<1>(value.data));
  }
  return all;
}

}  // namespace zum::test
