// The walk over the content, and what becomes of one file.
#include "apps/zum/content_copy.hpp"

#include <fcntl.h>

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "apps/zum/failure.hpp"
#include "apps/zum/folders.hpp"
#include "apps/zum/input_file.hpp"
#include "apps/zum/interruption.hpp"
#include "apps/zum/temporary_file.hpp"

namespace zum {
namespace {

namespace fs = std::filesystem;

using Piece = std::array<char, 65536>;

// A file of holes takes no room in a pack, and all of it where it is copied to.
constexpr std::uintmax_t kMostOfAPack = std::uintmax_t{4} << 30U;

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

// A pack may come from anybody; a link in it could lead to a private file.
bool belongsToThePack(const fs::path& path) {
  std::error_code none;
  return fs::is_regular_file(fs::symlink_status(path, none));
}

void refuseTooLarge(const fs::path& folder, const std::vector<fs::path>& entries) {
  std::uintmax_t left = kMostOfAPack;
  for (const fs::path& entry : entries) {
    std::error_code gone;
    const std::uintmax_t bytes = belongsToThePack(entry) ? fs::file_size(entry, gone) : 0;
    if (gone) continue;
    if (bytes > left) {
      throw Failure("the files in " + folder.string() + " have more than " +
                    std::to_string(kMostOfAPack >> 30U) +
                    " GB; take out what is too large, or use --in-place");
    }
    left -= bytes;
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
  const std::vector<fs::path> sources = entriesBelow(from);
  refuseTooLarge(from, sources);
  makeFolder(to / "Presets" / "User");
  for (const fs::path& source : sources) {
    if (!belongsToThePack(source)) {
      warn("left out " + source.string() + ": it is a link or no ordinary file");
      continue;
    }
    std::error_code none;
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
