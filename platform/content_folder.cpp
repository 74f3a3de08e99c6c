#include "platform/content_folder.hpp"

#include <filesystem>

#include "platform/files.hpp"
#include "platform/user_folders.hpp"

namespace zum {
namespace {

namespace fs = std::filesystem;

bool isContent(const fs::path& folder) {
  std::error_code none;
  return fs::is_directory(folder / "Presets", none);
}

// With an empty last part the text ends in a separator.
std::string internalFolder(const fs::path& folder) {
  return toInternalPath((folder / "").string());
}

}  // namespace

bool holdsContent(std::string_view folder) { return isContent(toSystemPath(folder)); }

std::string userContentFolder() {
  const fs::path home = dataHome();
  return home.empty() ? std::string() : internalFolder(home / "zum");
}

std::string systemContentFolder() {
  for (const fs::path& folder : dataFolders()) {
    if (isContent(folder / "zum")) return internalFolder(folder / "zum");
  }
  return {};
}

std::string installedContentFolder() {
  std::string own = userContentFolder();
  return !own.empty() && holdsContent(own) ? own : systemContentFolder();
}

std::string programContentFolder() {
  std::error_code none;
  const fs::path folder = fs::read_symlink("/proc/self/exe", none).parent_path();
  if (folder.empty()) return {};
  for (const fs::path& content : {folder.parent_path() / "share/zum", folder / "content"}) {
    if (isContent(content)) return internalFolder(content);
  }
  return {};
}

}  // namespace zum
