// A file that is read: an ordinary one, since a pipe could be waited for without end, and a device
// could feed us without end. Used by everything that reads files but presets.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace zum {

class InputFile {
 public:
  /// `kind` is what the file has to be, such as "music file", as failures call it. `flags` are more
  /// of open()'s, such as O_NOFOLLOW. Throws Failure.
  InputFile(const std::filesystem::path& path, const std::string& kind, int flags = 0);
  ~InputFile();
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  /// Bytes that were read, up to `count`; 0 at the end. Throws Failure.
  std::size_t read(char* to, std::size_t count);
  /// The bytes up to the end; nothing for a file with more than `most` left. Throws Failure.
  std::optional<std::vector<char>> readAll(std::size_t most);

 private:
  std::string name;
  int file = -1;
};

}  // namespace zum
