// Brings a user's own copy of the content up to date; part of `zum install-content`.
#pragma once

#include <filesystem>
#include <vector>

namespace zum {

struct ContentCopy {
  int added = 0, refreshed = 0, unchanged = 0;
  /// Where files of the user's are now that had the name of a refreshed one.
  std::vector<std::filesystem::path> keptAside;
};

/// Copies every file below `from`, each whole or not at all; links and what else is no ordinary
/// file are left out with a warning. Files that only `to` has stay, and everything in Presets/User
/// does. A file that differs is put aside before it is replaced: it may be an older factory file or
/// an hour of the user's work. Throws Failure, ahead of the first copy where all of them take more
/// than 4 GB.
ContentCopy copyContent(const std::filesystem::path& from, const std::filesystem::path& to);

}  // namespace zum
