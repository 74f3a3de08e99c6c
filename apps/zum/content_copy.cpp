// The walk over the content, and what becomes of one file.
#include "apps/zum/content_copy.hpp"

#include <fcntl.h>

#include <array>
#include <string>
#include <string_view>
#include <system_error>

#include "apps/zum/failure.hpp"
#include "apps/zum/folders.hpp"
#include "apps/zum/input_file.hpp"
#include "apps/zum/interruption.hpp"
#include "apps/zum/temporary_file.hpp"

namespace zum {
namespace {

namespace fs = std::filesystem;

using Piece = std::array<char, 65536>;

std::string_view nextPiece(InputFile& file, Piece& piece) {
  return {piece.data(), file.read(piece.data(), piece.size())};
}

InputFile fileOfThePack(const fs::path& path) { return {path, "file", O_NOFOLLOW}; }

bool haveSameBytes(const fs::path& one, const fs::path& other) {
  InputFile a = fileOfThePack(one), b(other, "file");
  Piece pieceOfA, pieceOfB;
  for (;;) {
    const std::string_view piece = nextPiece(a, pieceOfA);
    if (piece != nextPiece(b, pieceOfB)) return false;
    if (piece.empty()) return true;
  }
}

void copyFile(const fs::path& source, const fs::path& target) {
  InputFile from = fileOfThePack(source);
  TemporaryFile to(target);
  Piece buffer;
  for (auto piece = nextPiece(from, buffer); !piece.empty(); piece = nextPiece(from, buffer)) {
    throwIfInterrupted();
    if (to.write(piece.data(), piece.size()) < piece.size()) break;
  }
  to.commit();
}

// Copies the file to the first free name beside it. A link stays a link, and what it leads to stays
// as it is.
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
