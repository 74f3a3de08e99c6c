// Where content (presets and samples) lies on this system when no setting tells it. Asked at
// every start until then, and by the command that registers content. Paths are in the internal form
// and end in a backslash; an empty text is none.
#pragma once

#include <string>
#include <string_view>

namespace zum {

/// [any] A folder is content when it contains the folder Presets.
bool holdsContent(std::string_view folder);
/// [any] The place of the user's own copy, whether it exists or not.
std::string userContentFolder();
/// [any] Content that is installed for all users.
std::string systemContentFolder();
/// [any] The user's own copy if it exists, else what is installed for all users.
std::string installedContentFolder();
/// [any] What was installed, or built, together with the running program.
std::string programContentFolder();

}  // namespace zum
