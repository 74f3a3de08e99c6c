// Pictures as they are embedded in the plug-in file: uncompressed bitmaps of 24 bits a pixel.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace zum {

/// The bytes outlive it.
class BitmapFile {
 public:
  /// A bitmap with a header of 40 bytes or more, its rows from the bottom up or, with a negative
  /// height, from the top down. Nothing for any other format, for sides above 16384 pixels, and for
  /// fewer bytes than the header states.
  static std::optional<BitmapFile> open(std::span<const std::byte> file);

  int width() const { return columns; }
  int height() const { return rows; }
  /// 0xFFRRGGBB of `count` rows from the top one `first` on, all of which are there, to `stride`
  /// words from row to row.
  void copyRows(int first, int count, std::uint32_t* to, std::size_t stride) const;

 private:
  std::span<const std::byte> pixels;
  std::size_t rowBytes = 0;
  int columns = 0;
  int rows = 0;
  bool isUpsideDown = false;
};

}  // namespace zum
