// Folders as commands read and make them.
#pragma once

#include <filesystem>
#include <vector>

namespace zum {

// They throw Failure.
/// Everything below a folder that is no folder, by name. Links to folders are not followed.
std::vector<std::filesystem::path> entriesBelow(const std::filesystem::path& folder);
/// All regular files below a folder, by name.
std::vector<std::filesystem::path> filesBelow(const std::filesystem::path& folder);
/// Makes the folder and all above it.
void makeFolder(const std::filesystem::path& folder);

}  // namespace zum
