// Paths as texts, in the internal form with backslashes. Used wherever files are named.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zum {

/// Appends a backslash to a path that is not empty and has none at its end; true when it did.
bool ensureTrailingBackslash(std::string& path);
/// Cuts behind the last backslash; empties a path without one.
void cutToFolder(std::string& path);
/// The file's name without its last extension.
std::string_view baseName(std::string_view path);
/// The file's name.
std::string_view lastComponent(std::string_view path);
/// The name of the folder that holds the file: what stands between the last two of "\" or ":".
std::string_view folderName(std::string_view path);
/// Sorts them in the order of listings.
void sortNames(std::vector<std::string>& names);

}  // namespace zum
