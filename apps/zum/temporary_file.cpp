// The temporary beside the destination: made, renamed at the end, removed when it is given up.
#include "apps/zum/temporary_file.hpp"

#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "apps/zum/failure.hpp"
#include "apps/zum/interruption.hpp"

namespace zum {
namespace {

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
  next = std::make_unique<NeighbourFile>(target.string());
  if (descriptor() < 0) {
    refuse(destination, std::strerror(errno) +
                            std::string("; choose a folder that exists and that you can write to"));
  }
}

std::size_t TemporaryFile::write(const void* data, std::size_t count) {
  std::size_t done = 0;
  while (done < count && error == 0) {
    const ssize_t step = ::write(descriptor(), static_cast<const char*>(data) + done, count - done);
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
  if (!next->close() && error == 0) error = errno;
  if (error == 0 && !next->replaceTarget()) error = errno;
  if (error != 0) {
    refuse(target, std::strerror(error) + std::string("; free space or choose another folder"));
  }
}

bool TemporaryFile::forgive(std::int64_t length) {
  error = ftruncate(descriptor(), length) == 0 ? 0 : errno;
  return error == 0 && lseek(descriptor(), length, SEEK_SET) == length;
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
