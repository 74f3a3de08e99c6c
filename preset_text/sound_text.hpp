// [main] The sound of an effect as text, and a text as its sound: copy and paste of the window.
#pragma once

#include <string>
#include <string_view>

#include "core/uni_client.hpp"

namespace zum {

/// As `zum presets show` prints it. Empty where the memory does not suffice.
std::string soundText(KvUniClient& effect);

/// One step of the way back. Empty, or, for a text that is no preset, what is wrong with it and in
/// which line, to be shown to the user; then nothing has changed.
std::string pasteSound(KvUniClient& effect, std::string_view text);

}  // namespace zum
