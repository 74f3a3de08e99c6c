#include "apps/zum/input_file.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

#include "apps/zum/failure.hpp"

namespace zum {
namespace {

std::string whyNot(const struct stat& status, const std::string& kind) {
  if (S_ISREG(status.st_mode)) return {};
  if (S_ISDIR(status.st_mode)) return "it is a folder; name one " + kind + " in it";
  return "it is a pipe or a device; save what comes out of it as a file and name that";
}

}  // namespace

// Without O_NONBLOCK opening a pipe waits for somebody to write into it.
InputFile::InputFile(const std::filesystem::path& path, const std::string& kind, int flags)
    : name(path.string()),
      file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY | flags)) {
  struct stat status {};
  std::string why;
  if (file < 0 || fstat(file, &status) != 0) {
    why = std::strerror(errno) + std::string("; check the name, and that you may read it");
  } else {
    why = whyNot(status, kind);
  }
  if (why.empty()) return;
  if (file >= 0) close(file);
  throw Failure("cannot read " + name + ": " + why);
}

InputFile::~InputFile() { close(file); }

std::size_t InputFile::read(char* to, std::size_t count) {
  for (;;) {
    const ssize_t got = ::read(file, to, count);
    if (got >= 0) return static_cast<std::size_t>(got);
    if (errno != EINTR) {
      throw Failure("cannot read all of " + name + ": " + std::strerror(errno) +
                    "; copy or make it again");
    }
  }
}

std::optional<std::vector<char>> InputFile::readAll(std::size_t most) {
  std::vector<char> bytes;
  std::array<char, 65536> piece{};
  while (const std::size_t count = read(piece.data(), piece.size())) {
    if (count > most - bytes.size()) return std::nullopt;
    bytes.insert(bytes.end(), piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(count));
  }
  return bytes;
}

}  // namespace zum
