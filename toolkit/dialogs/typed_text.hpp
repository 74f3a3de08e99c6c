// Text as keys write it.
#pragma once

#include <string>

#include "platform/input.hpp"

namespace zum {

/// Adds a character to a text in UTF-8, or takes the last one away. False for any other key.
bool typeInto(std::string& text, const WindowKey& key);

}  // namespace zum
