#include "apps/zum/folders.hpp"

#include <algorithm>
#include <system_error>

#include "apps/zum/failure.hpp"

namespace zum {

namespace fs = std::filesystem;

std::vector<fs::path> entriesBelow(const fs::path& folder) {
  std::vector<fs::path> entries;
  std::error_code error;
  for (fs::recursive_directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    std::error_code none;
    if (!fs::is_directory(entry->symlink_status(none))) entries.push_back(entry->path());
  }
  if (error) {
    throw Failure("cannot read " + folder.string() + ": " + error.message() +
                  "; check that you may read all of it");
  }
  std::sort(entries.begin(), entries.end());
  return entries;
}

std::vector<fs::path> filesBelow(const fs::path& folder) {
  std::vector<fs::path> files = entriesBelow(folder);
  const auto isNoFile = [](const fs::path& path) {
    std::error_code none;  // of a link that leads nowhere
    return !fs::is_regular_file(path, none);
  };
  files.erase(std::remove_if(files.begin(), files.end(), isNoFile), files.end());
  return files;
}

void makeFolder(const fs::path& folder) {
  std::error_code error;
  fs::create_directories(folder, error);
  if (error) {
    throw Failure("cannot make the folder " + folder.string() + ": " + error.message() +
                  "; make room for it or check whose the folders above it are");
  }
}

}  // namespace zum
