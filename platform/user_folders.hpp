// Where this system keeps what belongs to one user, after the XDG base directory standard. Asked by
// the settings store and by the search for content.
#pragma once

#include <filesystem>
#include <vector>

namespace zum {

/// [any] Empty for a user without a home.
std::filesystem::path userHome();
/// [any] The folder of settings; empty for a user without a home.
std::filesystem::path configHome();
/// [any] The folder of a user's own data; empty for a user without a home.
std::filesystem::path dataHome();
/// [any] The folders of data that all users share, most important first.
std::vector<std::filesystem::path> dataFolders();

}  // namespace zum
