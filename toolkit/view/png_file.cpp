#include "toolkit/view/png_file.hpp"

#include <png.h>

#include <bit>

namespace zum {
namespace {

// A word of Pixels, byte by byte.
constexpr png_uint_32 kFormat =
    std::endian::native == std::endian::little ? PNG_FORMAT_BGRA : PNG_FORMAT_ARGB;
constexpr std::size_t kMostPixels = 1U << 24U;  // a few bytes can claim any size

}  // namespace

std::optional<Pixels> readPngFile(std::span<const std::byte> file) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  std::optional<Pixels> pixels;
  const bool begun = png_image_begin_read_from_memory(&image, file.data(), file.size()) != 0;
  const std::size_t count = std::size_t{image.width} * image.height;
  if (begun && count <= kMostPixels) {
    image.format = kFormat;
    pixels = {static_cast<int>(image.width), static_cast<int>(image.height),
              std::vector<std::uint32_t>(count)};
    if (png_image_finish_read(&image, nullptr, pixels->words.data(), 0, nullptr) == 0) pixels = {};
  }
  png_image_free(&image);
  if (!pixels) return pixels;
  for (std::uint32_t& word : pixels->words) {
    const std::uint32_t alpha = word >> 24U;
    if (alpha == 255) continue;
    const auto over = [&](unsigned shift) {
      return (word >> shift & 0xFFU) * alpha / 255U << shift;
    };
    word = 0xFF000000U | over(16) | over(8) | over(0);
  }
  return pixels;
}

}  // namespace zum
