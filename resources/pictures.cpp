#include "resources/pictures.hpp"

#include <cstdint>

extern "C" {
// All files, one behind the other, and where each begins; the last offset is the end.
extern const std::byte zumPictureBytes[] __attribute__((visibility("hidden")));
extern const std::uint32_t zumPictureOffsets[] __attribute__((visibility("hidden")));
}

namespace zum {
namespace {

constexpr int kFirstId = 1000;
constexpr int kPictures = 59;

}  // namespace

std::span<const std::byte> pictureBytes(int id) {
  if (id < kFirstId || id >= kFirstId + kPictures) return {};
  const std::uint32_t* const offset = zumPictureOffsets + (id - kFirstId);
  return {zumPictureBytes + offset[0], zumPictureBytes + offset[1]};
}

}  // namespace zum
