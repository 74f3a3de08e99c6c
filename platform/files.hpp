// Files and folders. The one place that knows the operating system's form of a path: inside the
// system paths are written with backslashes ("\home\me\x.kvz"), here they are turned at the call.
// Nothing throws; what fails says so by its result.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zum {

std::string toInternalPath(std::string_view systemPath);
std::string toSystemPath(std::string_view internalPath);
/// False also for a path of another system's, such as "c:\x".
bool isAbsolutePath(std::string_view internalPath);

struct FolderEntry {
  std::string name;
  bool isFolder;  // links are followed
};
/// What a folder holds, in the order in which names are shown: without regard to ASCII case, then
/// by bytes. Names with a backslash cannot be named here and are left out. Nothing for a missing
/// folder.
std::optional<std::vector<FolderEntry>> listFolder(const std::string& path);
/// The order of listFolder.
bool namesRise(std::string_view a, std::string_view b);
/// A folder's device and its number there: the same for every path that leads to it.
using FolderId = std::pair<std::uint64_t, std::uint64_t>;
std::optional<FolderId> folderId(const std::string& path);

/// Seconds since 1970, and nanoseconds. A file may be of any year.
using FileTime = std::pair<std::int64_t, std::int64_t>;
/// What tells a regular file from what lies there later: its place, its size, and when it was
/// written and renamed.
struct FileStamp {
  FolderId place;
  std::uint64_t size;
  FileTime written;
  FileTime changed;

  bool operator==(const FileStamp&) const = default;
};
std::optional<FileStamp> fileStamp(const std::string& path);
/// The same of a folder: another one where a name came or went since.
std::optional<FileStamp> folderStamp(const std::string& path);
/// False for a file that was written so short a time ago that the next write may leave its stamp.
bool isSettled(const FileStamp& stamp);

/// The size of a regular file. Nothing for a pipe or a device; none of them is waited for.
std::optional<std::uint64_t> fileSize(const std::string& path);
bool fileExists(const std::string& path);
/// Bytes that were read from the start of a regular file, at most `count`; nothing when it cannot
/// be opened. `stamp` is for the file ahead of the read.
std::optional<std::size_t> readStart(const std::string& path, void* buffer, std::size_t count,
                                     FileStamp* stamp = nullptr);
/// The file appears whole, or what was there before stays; links lead to it, and it keeps its mode.
/// Where its folder may not be written, the file itself is.
bool writeWhole(const std::string& path, const void* bytes, std::size_t count);
/// Makes the folder and all above it. True when it is there in the end.
bool makeFolders(const std::string& path);

}  // namespace zum
