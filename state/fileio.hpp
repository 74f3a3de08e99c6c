// Listing of folders and moving of whole files, under every file operation. Paths are in the
// internal form.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace zum {

/// Holds its last listing.
class KvFileio {
 public:
  /// Room for a name, terminator included; files with longer ones are left out.
  static constexpr std::size_t kNameBytes = 260;
  using Name = std::array<char, kNameBytes>;

  /// Files alone. Null, and a count of 0, when the folder does not exist.
  const Name* listFiles(const std::string& folder, int& count) {
    return list(folder, count, false);
  }
  /// Files and folders; isFolder() tells which.
  const Name* listAll(const std::string& folder, int& count) { return list(folder, count, true); }
  bool isFolder(int entry) const { return folderFlags[static_cast<std::size_t>(entry)] != 0; }

  /// Returns 1, also for a file that is shorter: the rest of the buffer is 0 then. Returns 0 for a
  /// path of less than two characters, for no buffer, and for what cannot be opened.
  static int readFile(const char* path, void* buffer, std::size_t byteCount);
  /// Returns 1, or 0 when the file cannot be written: then what was there stays.
  static int writeFile(const char* path, const void* buffer, std::size_t byteCount);

 private:
  const Name* list(const std::string& folder, int& count, bool withFolders);

  std::vector<Name> names;
  std::vector<std::uint8_t> folderFlags;
};

/// One open file, closed at its end.
class KvStreamableFile {
 public:
  /// `mode` as for std::fopen. Regular files alone.
  KvStreamableFile(const std::string& path, const char* mode);
  ~KvStreamableFile();
  KvStreamableFile(const KvStreamableFile&) = delete;
  KvStreamableFile& operator=(const KvStreamableFile&) = delete;

  /// Null when the file could not be opened.
  std::FILE* stream() const { return file; }

 private:
  std::FILE* file = nullptr;
};

}  // namespace zum
