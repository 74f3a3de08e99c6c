// The walk over the content, and what becomes of one file.
#include "apps/zum/content_copy.hpp"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <system_error>

#include "apps/zum/failure.hpp"
#include "apps/zum/temporary_file.hpp"

namespace zum {
namespace {

namespace fs = std::filesystem;

std::string bytesOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::string bytes{std::istreambuf_iterator<char>(file), {}};
  if (!file.is_open() || file.bad()) {
    throw Failure("cannot read " + path.string() + "; check that you may read it");
  }
  return bytes;
}

void makeFolder(const fs::path& folder) {
  std::error_code error;
  fs::create_directories(folder, error);
  if (error) {
    throw Failure("cannot make the folder " + folder.string() + ": " + error.message() +
                  "; make room for it or check whose the folders above it are");
  }
}

// Beside the file, under the first free name.
fs::path putAside(const fs::path& path) {
  for (int number = 1;; ++number) {
    fs::path aside = path;
    aside += ".old" + (number == 1 ? "" : std::to_string(number));
    std::error_code error;
    if (fs::copy_file(path, aside, error)) return aside;
    if (error != std::errc::file_exists) {
      throw Failure("cannot keep a copy of " + path.string() + ": " + error.message() +
                    "; free space or check the folder");
    }
  }
}

bool isUsersOwn(const fs::path& relative) {
  auto part = relative.begin();
  return part != relative.end() && *part++ == "Presets" && part != relative.end() &&
         *part == "User";
}

// In the order of names, so that a run that breaks off can be told.
std::vector<fs::path> filesBelow(const fs::path& folder) {
  std::vector<fs::path> files;
  std::error_code error;
  for (fs::recursive_directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    if (entry->is_regular_file(error)) files.push_back(entry->path().lexically_relative(folder));
  }
  if (error) {
    throw Failure("cannot read " + folder.string() + ": " + error.message() +
                  "; check that you may read all of it");
  }
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace

ContentCopy copyContent(const fs::path& from, const fs::path& to) {
  ContentCopy done;
  makeFolder(to / "Presets" / "User");
  for (const fs::path& relative : filesBelow(from)) {
    const fs::path target = to / relative;
    std::error_code none;
    const bool exists = fs::exists(target, none);
    if (exists && isUsersOwn(relative)) continue;
    const std::string bytes = bytesOf(from / relative);
    if (exists && fs::is_regular_file(target, none)) {
      if (bytesOf(target) == bytes) {
        ++done.unchanged;
        continue;
      }
      done.keptAside.push_back(putAside(target));
    }
    makeFolder(target.parent_path());
    TemporaryFile file(target);
    file.write(bytes.data(), bytes.size());
    file.keep();
    ++(exists ? done.refreshed : done.added);
  }
  return done;
}

}  // namespace zum
