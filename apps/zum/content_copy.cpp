// The walk over the content, and what becomes of one file.
#include "apps/zum/content_copy.hpp"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <system_error>

#include "apps/zum/failure.hpp"
#include "apps/zum/folders.hpp"
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

}  // namespace

ContentCopy copyContent(const fs::path& from, const fs::path& to) {
  ContentCopy done;
  makeFolder(to / "Presets" / "User");
  for (const fs::path& source : filesBelow(from)) {
    const fs::path relative = source.lexically_relative(from);
    const fs::path target = to / relative;
    std::error_code none;
    const bool exists = fs::exists(target, none);
    if (exists && isUsersOwn(relative)) continue;
    const std::string bytes = bytesOf(source);
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
