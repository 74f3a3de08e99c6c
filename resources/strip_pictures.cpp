#include "resources/strip_pictures.hpp"

#include <cstdint>

extern "C" {
// As of the window's pictures.
extern const std::byte zumStripPictureBytes[] __attribute__((visibility("hidden")));
extern const std::uint32_t zumStripPictureOffsets[] __attribute__((visibility("hidden")));
}

namespace zum {

std::span<const std::byte> stripPictureBytes(int id) {
  const int index = id - kFirstStripPicture;
  if (index < 0 || index >= static_cast<int>(kStripPictures)) return {};
  const std::uint32_t* const offset = zumStripPictureOffsets + index;
  return {zumStripPictureBytes + offset[0], zumStripPictureBytes + offset[1]};
}

}  // namespace zum
