// A file that appears under its name only when it is whole; what went before stays until then. Used
// by everything that writes a file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "platform/neighbour_file.hpp"

namespace zum {

class TemporaryFile {
 public:
  /// Opens a neighbour of `destination` for writing, and holds signals from then on;
  /// throws Failure.
  explicit TemporaryFile(const std::filesystem::path& destination);
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  int descriptor() const { return next->descriptor(); }
  /// Bytes that were written: fewer than `count` after a failure, and none ever after it.
  std::size_t write(const void* data, std::size_t count);
  /// errno of the first write that failed, 0 for none.
  int writeError() const { return error; }
  /// Closes it and puts it in the place of the destination; throws Failure, also when a write
  /// failed before, and the Interruption that is due.
  void commit();
  /// The same for what is to be kept whatever ends the program.
  void keep();
  /// Takes a write that failed back: the file ends at `length` bytes, and can be written again.
  /// False when not even that can be done.
  bool forgive(std::int64_t length);

 private:
  std::filesystem::path target;
  std::unique_ptr<NeighbourFile> next;
  int error = 0;
};

/// Throws Failure when the file to be written, which is `what` to the user, is one of `inputs`, by
/// whatever name. Empty paths stand for no file.
void refuseToOverwrite(const std::filesystem::path& written, const std::string& what,
                       const std::vector<std::filesystem::path>& inputs);

}  // namespace zum
