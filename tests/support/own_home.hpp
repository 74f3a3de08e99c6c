// A place for settings and content that belongs to this process alone, so that no program of a
// tester's own leaves its marks in somebody's settings, or finds presets there.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

namespace zum::test {

/// Lives as long as the program needs it; made before the first effect is.
class OwnHome {
 public:
  OwnHome() noexcept {  // no test can go on without it
    std::string name = (std::filesystem::temp_directory_path() / "zum-home.XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) std::abort();
    folder = name;
    for (const char* variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_DATA_DIRS"}) {
      setenv(variable, (folder / variable).c_str(), 1);
    }
  }
  ~OwnHome() {
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
  }
  OwnHome(const OwnHome&) = delete;
  OwnHome& operator=(const OwnHome&) = delete;

 private:
  std::filesystem::path folder;
};

}  // namespace zum::test
