#include "platform/neighbour_file.hpp"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

namespace zum {
namespace {

constexpr int kClosed = -1;
constexpr std::string_view kStart = ".zum-";  // then the process, a dash and a count

bool isNeighbour(std::string_view name) {
  return name.starts_with(kStart) && name.find('-', kStart.size()) != name.npos &&
         name.find_first_not_of("0123456789-", kStart.size()) == name.npos;
}

/// The name still leads to the open file.
bool isAt(int file, int folder, const char* name) {
  struct stat opened {};
  struct stat named {};
  return ::fstat(file, &opened) == 0 && ::fstatat(folder, name, &named, AT_SYMLINK_NOFOLLOW) == 0 &&
         opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

/// What nobody holds was left by a program that died.
void removeAbandoned(const std::string& folder) {
  const std::unique_ptr<DIR, int (*)(DIR*)> open(::opendir(folder.c_str()), ::closedir);
  while (const dirent* entry = open != nullptr ? ::readdir(open.get()) : nullptr) {
    if (!isNeighbour(entry->d_name)) continue;
    const int within = ::dirfd(open.get());
    // For writing: some network file systems lock no other files.
    const int file = ::openat(within, entry->d_name, O_RDWR | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC);
    if (file == kClosed) continue;
    if (::flock(file, LOCK_EX | LOCK_NB) == 0 && isAt(file, within, entry->d_name)) {
      ::unlinkat(within, entry->d_name, 0);
    }
    ::close(file);
  }
}

}  // namespace

NeighbourFile::NeighbourFile(std::string path) : target(std::move(path)) {
  constexpr int kTries = 100;
  struct stat old {};
  std::optional<mode_t> mode;
  if (::stat(target.c_str(), &old) == 0) mode = old.st_mode & 07777U;
  const std::string folder = target.substr(0, target.rfind('/') + 1);
  removeAbandoned(folder.empty() ? "." : folder);
  static std::atomic<unsigned> made{0};
  for (int i = 0; i < kTries && file == kClosed; ++i) {
    name = folder;
    name.append(kStart).append(std::to_string(::getpid())).append(1, '-');
    name += std::to_string(made++);
    if (!open(mode.value_or(0666) & 0777U) && errno != EEXIST) break;
  }
  // What the mask has taken, and bits that are not for everybody.
  if (file != kClosed && mode) (void)::fchmod(file, *mode);  // some file systems have no modes
}

NeighbourFile::~NeighbourFile() {
  if (file != kClosed) ::close(file);
  if (!name.empty()) ::unlink(name.c_str());
  if (held != kClosed) ::close(held);
}

// The system applies the user's mask: to ask for it would change it for other threads.
bool NeighbourFile::open(mode_t mode) {
  file = ::open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode);
  if (file != kClosed && hold()) return true;
  const int why = file != kClosed ? EEXIST : errno;
  for (int* each : {&file, &held}) {
    if (*each != kClosed) ::close(std::exchange(*each, kClosed));
  }
  name.clear();
  errno = why;
  return false;
}

/// False where somebody has taken it for abandoned in between. A file system without locks has none
/// who could.
bool NeighbourFile::hold() {
  held = ::fcntl(file, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  if (::flock(file, LOCK_EX | LOCK_NB) != 0) return errno != EWOULDBLOCK;
  return isAt(file, AT_FDCWD, name.c_str());
}

bool NeighbourFile::close() { return ::close(std::exchange(file, kClosed)) == 0; }

bool NeighbourFile::replaceTarget() {
  if (::rename(name.c_str(), target.c_str()) != 0) return false;
  name.clear();
  return true;
}

}  // namespace zum
