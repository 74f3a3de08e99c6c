// The pictures of the transport strip, which lie in the program alone.
#pragma once

#include <cstddef>
#include <span>

namespace zum {

inline constexpr int kFirstStripPicture = 1100;
inline constexpr std::size_t kStripPictures = 7;

/// The bytes of a picture's bitmap file, empty for an id that there is not.
std::span<const std::byte> stripPictureBytes(int id);

}  // namespace zum
