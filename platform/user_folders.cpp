#include "platform/user_folders.hpp"

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <string_view>

namespace zum {
namespace {

namespace fs = std::filesystem;

// The standard has relative paths ignored: a host's working folder is nobody's home.
fs::path absoluteOrNone(std::string_view path) {
  return path.starts_with('/') ? fs::path(path) : fs::path();
}

fs::path fromEnvironment(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? absoluteOrNone(value) : fs::path();
}

}  // namespace

fs::path userHome() {
  if (fs::path path = fromEnvironment("HOME"); !path.empty()) return path;
  std::array<char, 16384> text{};
  passwd record{};
  passwd* found = nullptr;
  if (getpwuid_r(getuid(), &record, text.data(), text.size(), &found) != 0 || found == nullptr ||
      record.pw_dir == nullptr) {
    return {};
  }
  return absoluteOrNone(record.pw_dir);
}

namespace {

fs::path userFolder(const char* name, const char* belowHome) {
  if (fs::path path = fromEnvironment(name); !path.empty()) return path;
  const fs::path base = userHome();
  return base.empty() ? base : base / belowHome;
}

}  // namespace

fs::path configHome() { return userFolder("XDG_CONFIG_HOME", ".config"); }

fs::path dataHome() { return userFolder("XDG_DATA_HOME", ".local/share"); }

std::vector<fs::path> dataFolders() {
  const char* value = std::getenv("XDG_DATA_DIRS");
  std::string_view list = value != nullptr ? value : "";
  if (list.empty()) list = "/usr/local/share:/usr/share";
  std::vector<fs::path> folders;
  while (!list.empty()) {
    const std::size_t end = list.find(':');
    if (fs::path path = absoluteOrNone(list.substr(0, end)); !path.empty()) {
      folders.push_back(std::move(path));
    }
    list.remove_prefix(end == std::string_view::npos ? list.size() : end + 1);
  }
  return folders;
}

}  // namespace zum
