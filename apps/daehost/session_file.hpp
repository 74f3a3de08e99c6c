// A session record in a file, header and all.
#pragma once

#include <filesystem>
#include <vector>

namespace zum {

/// A whole record, or a header alone, which keeps what is set. Throws Failure for what the plug-in
/// would not take over: a process answers with success then, and stays as it was.
std::vector<char> readSessionFile(const std::filesystem::path& path);

}  // namespace zum
