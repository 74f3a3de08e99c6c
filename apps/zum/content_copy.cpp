// The walk over the content, and what becomes of one file.
#include "apps/zum/content_copy.hpp"

#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>

#include "apps/zum/failure.hpp"
#include "apps/zum/folders.hpp"
#include "apps/zum/interruption.hpp"
#include "apps/zum/temporary_file.hpp"

namespace zum {
namespace {

namespace fs = std::filesystem;

/// An ordinary file, read piece by piece; throws Failure.
class PieceReader {
 public:
  /// `flags` of open(), such as O_NOFOLLOW.
  explicit PieceReader(const fs::path& name, int flags = 0) : path(name) {
    // Without O_NONBLOCK opening a pipe waits for somebody to write into it.
    const int opened = ::open(name.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | flags);
    if (opened < 0) refuse();
    file.reset(::fdopen(opened, "rb"));
    struct stat status {};
    if (file == nullptr || ::fstat(opened, &status) != 0 || !S_ISREG(status.st_mode)) refuse();
  }

  /// As long as the room is, but for the last one; empty at the end.
  std::string_view next() {
    const std::size_t count = std::fread(piece.data(), 1, piece.size(), file.get());
    if (std::ferror(file.get()) != 0) refuse();
    return {piece.data(), count};
  }

 private:
  [[noreturn]] void refuse() const {
    throw Failure("cannot read " + path.string() + "; check that you may read it");
  }

  fs::path path;
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file{nullptr, std::fclose};
  std::array<char, 65536> piece{};
};

bool haveSameBytes(const fs::path& one, const fs::path& other) {
  PieceReader a(one, O_NOFOLLOW), b(other);
  for (;;) {
    const std::string_view piece = a.next();
    if (piece != b.next()) return false;
    if (piece.empty()) return true;
  }
}

void copyFile(const fs::path& source, const fs::path& target) {
  PieceReader from(source, O_NOFOLLOW);
  TemporaryFile to(target);
  for (std::string_view piece = from.next(); !piece.empty(); piece = from.next()) {
    throwIfInterrupted();
    if (to.write(piece.data(), piece.size()) < piece.size()) break;
  }
  to.keep();
}

// Beside the file, under the first free name. A link stays one, and what it leads to as it is.
fs::path putAside(const fs::path& path) {
  std::error_code error;
  const bool isLink = fs::is_symlink(path, error);
  for (int number = 1;; ++number) {
    fs::path aside = path;
    aside += ".old" + (number == 1 ? "" : std::to_string(number));
    error.clear();
    if (isLink) {
      fs::copy_symlink(path, aside, error);
      if (!error) fs::remove(path, error);
    } else {
      fs::copy_file(path, aside, error);
    }
    if (!error) return aside;
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
  for (const fs::path& source : entriesBelow(from)) {
    std::error_code none;
    // A pack may come from anybody; a link in it could lead to a private file.
    if (!fs::is_regular_file(fs::symlink_status(source, none))) {
      warn("left out " + source.string() + ": it is a link or no ordinary file");
      continue;
    }
    const fs::path relative = source.lexically_relative(from);
    const fs::path target = to / relative;
    const fs::file_status there = fs::symlink_status(target, none);
    const bool exists = fs::exists(there);
    if (exists && isUsersOwn(relative)) continue;
    if (fs::is_regular_file(target, none) && haveSameBytes(source, target)) {
      ++done.unchanged;
      continue;
    }
    if (fs::is_regular_file(there) || fs::is_symlink(there)) {
      done.keptAside.push_back(putAside(target));
    }
    makeFolder(target.parent_path());
    copyFile(source, target);
    ++(exists ? done.refreshed : done.added);
  }
  return done;
}

}  // namespace zum
