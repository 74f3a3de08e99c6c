// What the tests of the settings share: a user of their own, whose home, data and installed content
// lie in a temporary folder.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <utility>
#include <variant>

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

inline void ignoreSwitch(int /*index*/, float /*value*/) {}

class SettingsTest : public testing::Test {
 protected:
  SettingsTest() { useHome(folder); }

  // The form that the store keeps of a path below the test's folder.
  std::string internal(const std::string& path) const {
    std::string text = (folder / path).string();
    for (char& c : text) c = c == '/' ? '\\' : c;
    return text;
  }

  // Exit code, and everything that was printed.
  std::pair<int, std::string> run(const std::string& arguments) const {
    const std::string out = (folder / "out").string();
    const int status = std::system(
        ("cd "s + folder.string() + "; " ZUM_PROGRAM " " + arguments + " >" + out + " 2>&1")
            .c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, textIn(out)};
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
