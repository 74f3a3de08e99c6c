// A folder of a test's own, and the folders of the user that a test plays: settings, data and
// installed content. Any program may include this; it needs no test framework.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

namespace zum::test {

/// `TemporaryFolder folder;` as a member of a fixture, or in a test: made empty, and gone at its
/// end with all that is in it. Stands for its path.
class TemporaryFolder {
 public:
  TemporaryFolder() noexcept {  // no test can go on without it
    std::string name = (std::filesystem::temp_directory_path() / "zum-test.XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) std::abort();
    path = name;
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  operator const std::filesystem::path&() const { return path; }
  std::filesystem::path operator/(const std::filesystem::path& below) const { return path / below; }
  std::string string() const { return path.string(); }
  const char* c_str() const { return path.c_str(); }

 private:
  std::filesystem::path path;
};

/// From here on the user's settings lie in `folder`/config, presets and content of their own in
/// `folder`/data, what is installed for all in `folder`/system. Below /dev/null there are none.
inline void useHome(const std::filesystem::path& folder) {
  setenv("XDG_CONFIG_HOME", (folder / "config").c_str(), 1);
  setenv("XDG_DATA_HOME", (folder / "data").c_str(), 1);
  setenv("XDG_DATA_DIRS", (folder / "system").c_str(), 1);
}

/// As if it were installed there: below data or system.
inline void installContent(const std::filesystem::path& content,
                           const std::filesystem::path& folder) {
  std::filesystem::create_directories(folder);
  std::filesystem::create_directory_symlink(content, folder / "zum");
}

}  // namespace zum::test
