// A file that appears under its name only when it is whole; what went before stays until then.
#pragma once

#include <filesystem>
#include <string>

namespace zum {

/// One at a time in the program, because signals that end it also remove the file.
class TemporaryFile {
 public:
  /// Opens an unnamed neighbour of `destination` for writing; throws Failure.
  explicit TemporaryFile(const std::filesystem::path& destination);
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  int descriptor() const { return file; }
  /// Closes it and puts it in the place of the destination; throws Failure.
  void keep();

 private:
  std::filesystem::path target;
  std::string path;
  int file = -1;
};

}  // namespace zum
