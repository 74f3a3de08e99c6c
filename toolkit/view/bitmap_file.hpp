// Pictures as they are embedded in the plug-in file: uncompressed bitmaps of 24 bits a pixel.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace zum {

struct Pixels {
  int width = 0;
  int height = 0;
  std::vector<std::uint32_t> words;  // 0xFFRRGGBB, row by row from the top
};

/// Reads a bitmap with a header of 40 bytes or more, its rows from the bottom up or, with a
/// negative height, from the top down. Nothing for any other format, for sides above 16384 pixels,
/// and for fewer bytes than the header states.
std::optional<Pixels> readBitmapFile(std::span<const std::byte> file);

}  // namespace zum
