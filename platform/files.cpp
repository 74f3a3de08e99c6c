#include "platform/files.hpp"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <filesystem>
#include <memory>

#include "platform/ascii_case.hpp"
#include "platform/neighbour_file.hpp"

namespace zum {
namespace {

constexpr int kNoFile = -1;

/// A descriptor that closes itself.
class Descriptor {
 public:
  explicit Descriptor(int opened) : file(opened) {}
  ~Descriptor() {
    if (file != kNoFile) ::close(file);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int get() const { return file; }
  /// False when the system could not keep what was written.
  bool close() { return ::close(std::exchange(file, kNoFile)) == 0; }

 private:
  int file;
};

// Without O_NONBLOCK opening a pipe waits for somebody to write into it.
int openForReading(const std::string& path) {
  return ::open(toSystemPath(path).c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
}

bool isRegular(int file, struct stat& status) {
  return file != kNoFile && ::fstat(file, &status) == 0 && S_ISREG(status.st_mode);
}

FileTime timeOf(const timespec& time) { return {time.tv_sec, time.tv_nsec}; }

FileStamp stampOf(const struct stat& status) {
  return {{status.st_dev, status.st_ino},
          static_cast<std::uint64_t>(status.st_size),
          timeOf(status.st_mtim),
          timeOf(status.st_ctim)};
}

/// Nothing where there is no file of that kind.
std::optional<FileStamp> stampOfKind(const std::string& path, mode_t kind) {
  struct stat status {};
  if (::stat(toSystemPath(path).c_str(), &status) != 0 || (status.st_mode & S_IFMT) != kind) {
    return std::nullopt;
  }
  return stampOf(status);
}

bool writeAll(int file, const void* bytes, std::size_t count) {
  const auto* from = static_cast<const char*>(bytes);
  while (count > 0) {
    const ssize_t written = ::write(file, from, count);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    from += written;
    count -= static_cast<std::size_t>(written);
  }
  return true;
}

/// Where a path leads to behind its links, whether something is there or not.
std::string behindLinks(std::filesystem::path path) {
  constexpr int kMostLinks = 40;  // as many as the system follows
  for (int i = 0; i < kMostLinks; ++i) {
    std::error_code isNoLink;
    const std::filesystem::path next = std::filesystem::read_symlink(path, isNoLink);
    if (isNoLink) break;
    path = path.parent_path() / next;
  }
  return path.string();
}

/// True for the errors of a folder that takes no new name, or no new file in the place of an old
/// one.
bool isShutFolder(int error) {
  return error == EACCES || error == EPERM || error == EROFS || error == EBUSY ||
         error == ENAMETOOLONG;
}

/// Writes into the file itself, for one in such a folder. What was there is lost only when the
/// system fails in the middle: a disk without room for a longer one shows ahead.
bool overwrite(const std::string& target, const void* bytes, std::size_t count) {
  const auto size = static_cast<off_t>(count);
  Descriptor file(::open(target.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
  struct stat old {};
  if (!isRegular(file.get(), old)) return false;
  if (size > old.st_size && ::posix_fallocate(file.get(), 0, size) != 0) {
    [[maybe_unused]] const int asItWas = ::ftruncate(file.get(), old.st_size);
    return false;
  }
  const bool whole = writeAll(file.get(), bytes, count) && ::ftruncate(file.get(), size) == 0 &&
                     ::fsync(file.get()) == 0;
  return file.close() && whole;
}

}  // namespace

std::string toInternalPath(std::string_view systemPath) {
  std::string path(systemPath);
  std::replace(path.begin(), path.end(), '/', '\\');
  return path;
}

std::string toSystemPath(std::string_view internalPath) {
  std::string path(internalPath);
  std::replace(path.begin(), path.end(), '\\', '/');
  return path;
}

bool isAbsolutePath(std::string_view internalPath) { return internalPath.starts_with('\\'); }

bool namesRise(std::string_view a, std::string_view b) {
  const auto [inA, inB] = std::mismatch(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
    return lowerCase(x) == lowerCase(y);
  });
  if (inA != a.end() && inB != b.end()) {
    return static_cast<unsigned char>(lowerCase(*inA)) <
           static_cast<unsigned char>(lowerCase(*inB));
  }
  return inA == a.end() && inB == b.end() ? a < b : inB != b.end();
}

std::optional<std::vector<FolderEntry>> listFolder(const std::string& path) {
  const std::string folder = toSystemPath(path);
  const std::unique_ptr<DIR, int (*)(DIR*)> open(::opendir(folder.c_str()), ::closedir);
  if (open == nullptr) return std::nullopt;
  std::vector<FolderEntry> entries;
  while (const dirent* entry = ::readdir(open.get())) {
    const std::string_view name = entry->d_name;
    if (name == "." || name == ".." || name.find('\\') != name.npos) continue;
    bool isFolder = entry->d_type == DT_DIR;
    if (entry->d_type == DT_LNK || entry->d_type == DT_UNKNOWN) {
      struct stat status {};
      isFolder =
          ::fstatat(::dirfd(open.get()), entry->d_name, &status, 0) == 0 && S_ISDIR(status.st_mode);
    }
    entries.push_back({std::string(name), isFolder});
  }
  std::sort(entries.begin(), entries.end(),
            [](const FolderEntry& a, const FolderEntry& b) { return namesRise(a.name, b.name); });
  return entries;
}

std::optional<FolderId> folderId(const std::string& path) {
  struct stat status {};
  if (::stat(toSystemPath(path).c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) {
    return std::nullopt;
  }
  return FolderId{status.st_dev, status.st_ino};
}

std::optional<FileStamp> fileStamp(const std::string& path) { return stampOfKind(path, S_IFREG); }
std::optional<FileStamp> folderStamp(const std::string& path) { return stampOfKind(path, S_IFDIR); }

bool isSettled(const FileStamp& stamp) {
  constexpr std::time_t kCoarsestClock = 2;  // seconds, of a file system
  timespec latest{};
  ::clock_gettime(CLOCK_REALTIME, &latest);
  latest.tv_sec -= kCoarsestClock;
  return stamp.written < timeOf(latest);
}

std::optional<std::uint64_t> fileSize(const std::string& path) {
  const auto stamp = fileStamp(path);
  return stamp ? std::optional(stamp->size) : std::nullopt;
}

bool fileExists(const std::string& path) { return fileSize(path).has_value(); }

std::optional<std::size_t> readStart(const std::string& path, void* buffer, std::size_t count,
                                     FileStamp* stamp) {
  const Descriptor file(openForReading(path));
  struct stat status {};
  if (!isRegular(file.get(), status)) return std::nullopt;
  if (stamp != nullptr) *stamp = stampOf(status);
  auto* to = static_cast<char*>(buffer);
  std::size_t done = 0;
  // no call more than it takes: a bank is hundreds of small files
  count = std::min(count, static_cast<std::size_t>(status.st_size));
  while (done < count) {
    const ssize_t got = ::read(file.get(), to + done, count - done);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    done += static_cast<std::size_t>(got);
  }
  return done;
}

bool writeWhole(const std::string& path, const void* bytes, std::size_t count) {
  const std::string target = behindLinks(toSystemPath(path));
  struct stat old {};
  const bool exists = ::stat(target.c_str(), &old) == 0;
  if (!exists && errno != ENOENT) return false;
  if (exists && (!S_ISREG(old.st_mode) || ::access(target.c_str(), W_OK) != 0)) return false;
  NeighbourFile next(target);
  const int file = next.descriptor();
  if (file == kNoFile) return exists && isShutFolder(errno) && overwrite(target, bytes, count);
  const bool whole = writeAll(file, bytes, count) && ::fsync(file) == 0;
  if (!next.close() || !whole) return false;
  if (next.replaceTarget()) return true;
  return exists && isShutFolder(errno) && overwrite(target, bytes, count);
}

bool makeFolders(const std::string& path) {
  std::string folder = toSystemPath(path);
  while (folder.size() > 1 && folder.back() == '/') folder.pop_back();
  std::error_code failure;
  std::filesystem::create_directories(folder, failure);
  return !failure && folderId(path).has_value();
}

}  // namespace zum
