// The temporary beside the destination: made, renamed at the end, removed on failures and signals.
#include "apps/zum/temporary_file.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "apps/zum/failure.hpp"

namespace zum {
namespace {

// Read by the signal handler: whether there is a file to remove, and which.
volatile std::sig_atomic_t armed = 0;
const char* doomedPath = nullptr;

extern "C" void removeAndDie(int signal) {
  if (armed != 0) unlink(doomedPath);
  (void)raise(signal);  // the handler served once: this now has the usual effect
}

void guardAgainstSignals(const char* path) {
  doomedPath = path;
  armed = 1;
  struct sigaction remove {};
  remove.sa_handler = &removeAndDie;
  remove.sa_flags = static_cast<int>(SA_RESETHAND | SA_NODEFER);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction earlier {};
    // What was ignored from the start, as under nohup, stays ignored.
    sigaction(signal, nullptr, &earlier);
    if (earlier.sa_handler != SIG_IGN) sigaction(signal, &remove, nullptr);
  }
  struct sigaction ignore {};
  ignore.sa_handler = SIG_IGN;
  sigaction(SIGXFSZ, &ignore, nullptr);  // a file size limit then fails the write, like a full disk
}

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
  path = target.parent_path() / ".zum-XXXXXX";
  file = mkostemp(path.data(), O_CLOEXEC);
  if (file < 0) {
    refuse(destination, std::strerror(errno) +
                            std::string("; choose a folder that exists and that you can write to"));
  }
  guardAgainstSignals(path.c_str());
  fchmod(file, modeFor(target.c_str()));  // some file systems have no modes: then as it is
}

TemporaryFile::~TemporaryFile() {
  if (file >= 0) close(file);
  if (armed != 0) unlink(path.c_str());
  armed = 0;
}

void TemporaryFile::keep() {
  const int closed = close(std::exchange(file, -1));
  if (closed != 0 || rename(path.c_str(), target.c_str()) != 0) {
    refuse(target, std::strerror(errno) + std::string("; free space or choose another folder"));
  }
  armed = 0;
}

}  // namespace zum
