// How a command ends early, and how it warns; runCommandLine prints the one and sets the exit code.
#pragma once

#include <string>

#include "preset_text/failure.hpp"

namespace zum {

/// What messages begin with; set once, at the program's start.
inline const char* programName = "zum";

// Each prints one line on standard error, whatever file names and the like are in the text.
void complain(const std::string& text);
void warn(const std::string& text);

}  // namespace zum
