// The temporary beside the destination: made, renamed at the end, removed when it is given up.
#include "apps/zum/temporary_file.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "apps/zum/failure.hpp"
#include "apps/zum/interruption.hpp"

namespace zum {
namespace {

mode_t modeFor(const char* target) {
  struct stat earlier {};
  if (stat(target, &earlier) == 0) return earlier.st_mode & 0777U;
  const mode_t mask = umask(0);
  umask(mask);
  return 0666U & ~mask;
}

[[noreturn]] void refuse(const std::filesystem::path& target, const std::string& why) {
  throw Failure("cannot write " + target.string() + ": " + why);
}

bool areSame(const std::filesystem::path& a, const std::filesystem::path& b) {
  std::error_code ignored;
  // Of a relative path that does not exist yet, weakly_canonical alone makes no full path.
  const auto full = [&ignored](const std::filesystem::path& path) {
    return std::filesystem::weakly_canonical(std::filesystem::absolute(path), ignored);
  };
  return std::filesystem::equivalent(a, b, ignored) || full(a) == full(b);
}

}  // namespace

TemporaryFile::TemporaryFile(const std::filesystem::path& destination) {
  std::error_code ignored;
  // The end of a chain of links is what is replaced, not the link.
  target = std::filesystem::weakly_canonical(destination, ignored);
  if (target.empty()) target = destination;
  if (std::filesystem::is_directory(target, ignored)) {
    refuse(destination, "it is a folder; add a file name");
  }
  if (std::filesystem::exists(target, ignored)) {
    if (!std::filesystem::is_regular_file(target, ignored)) {
      refuse(destination, "it is not an ordinary file; choose another name");
    }
    if (access(target.c_str(), W_OK) != 0) {
      refuse(destination, std::strerror(errno) + std::string("; choose another name"));
    }
  }
  holdSignals();
  path = target.parent_path() / ".zum-XXXXXX";
  file = mkostemp(path.data(), O_CLOEXEC);
  if (file < 0) {
    refuse(destination, std::strerror(errno) +
                            std::string("; choose a folder that exists and that you can write to"));
  }
  fchmod(file, modeFor(target.c_str()));  // fails on file systems without modes, which is fine
}

TemporaryFile::~TemporaryFile() {
  if (file >= 0) close(file);
  if (!committed) unlink(path.c_str());
}

std::size_t TemporaryFile::write(const void* data, std::size_t count) {
  std::size_t done = 0;
  while (done < count && error == 0) {
    const ssize_t step = ::write(file, static_cast<const char*>(data) + done, count - done);
    if (step >= 0) {
      done += static_cast<std::size_t>(step);
    } else if (errno != EINTR) {
      error = errno;
    }
  }
  return done;
}

void TemporaryFile::commit() {
  throwIfInterrupted();
  keep();
}

void TemporaryFile::keep() {
  if (close(std::exchange(file, -1)) != 0 && error == 0) error = errno;
  if (error == 0 && rename(path.c_str(), target.c_str()) != 0) error = errno;
  if (error != 0) {
    refuse(target, std::strerror(error) + std::string("; free space or choose another folder"));
  }
  committed = true;
}

bool TemporaryFile::forgive(std::int64_t length) {
  error = ftruncate(file, length) == 0 ? 0 : errno;
  return error == 0 && lseek(file, length, SEEK_SET) == length;
}

void refuseToOverwrite(const std::filesystem::path& written, const std::string& what,
                       const std::vector<std::filesystem::path>& inputs) {
  for (const std::filesystem::path& input : inputs) {
    if (written.empty() || input.empty() || !areSame(written, input)) continue;
    throw Failure("the " + what + " would overwrite " + input.string() + "; give it another name",
                  kExitWrongUsage);
  }
}

}  // namespace zum
