// The window's pictures, which lie in the program itself.
#pragma once

#include <cstddef>
#include <span>

namespace zum {

/// The bytes of a picture's bitmap file, empty for an id that there is not.
std::span<const std::byte> pictureBytes(int id);

}  // namespace zum
