// Folders as commands read and make them.
#pragma once

#include <filesystem>
#include <vector>

namespace zum {

// Both throw Failure.
/// All regular files below a folder, by name.
std::vector<std::filesystem::path> filesBelow(const std::filesystem::path& folder);
/// With all folders above it.
void makeFolder(const std::filesystem::path& folder);

}  // namespace zum
