#include "toolkit/view/bitmap_file.hpp"

#include <cstdlib>
#include <limits>

namespace zum {
namespace {

// Offsets in bytes; all numbers are little-endian.
constexpr std::size_t kPixelOffset = 10;
constexpr std::size_t kInfoSize = 14;
constexpr std::size_t kWidth = 18;
constexpr std::size_t kHeight = 22;
constexpr std::size_t kPlanes = 26;
constexpr std::size_t kBits = 28;
constexpr std::size_t kCompression = 30;
constexpr std::size_t kHeaderBytes = 54;

constexpr std::uint32_t kSmallestInfo = 40;
constexpr std::int32_t kMostPixels = 16384;  // of a side
constexpr std::size_t kPixelBytes = 3;

std::uint32_t byteAt(std::span<const std::byte> file, std::size_t at) {
  return std::to_integer<std::uint32_t>(file[at]);
}
std::uint32_t shortAt(std::span<const std::byte> file, std::size_t at) {
  return byteAt(file, at) | byteAt(file, at + 1) << 8U;
}
std::uint32_t wordAt(std::span<const std::byte> file, std::size_t at) {
  return shortAt(file, at) | shortAt(file, at + 2) << 16U;
}

bool isKnownFormat(std::span<const std::byte> file) {
  return file.size() >= kHeaderBytes && shortAt(file, 0) == 0x4D42 &&
         wordAt(file, kInfoSize) >= kSmallestInfo && shortAt(file, kPlanes) == 1 &&
         shortAt(file, kBits) == 8 * kPixelBytes && wordAt(file, kCompression) == 0;
}

}  // namespace

std::optional<Pixels> readBitmapFile(std::span<const std::byte> file) {
  if (!isKnownFormat(file)) return std::nullopt;
  const auto width = static_cast<std::int32_t>(wordAt(file, kWidth));
  const auto signedHeight = static_cast<std::int32_t>(wordAt(file, kHeight));
  if (signedHeight == std::numeric_limits<std::int32_t>::min()) return std::nullopt;
  const std::int32_t height = std::abs(signedHeight);
  if (width < 1 || width > kMostPixels || height < 1 || height > kMostPixels) return std::nullopt;

  const auto columns = static_cast<std::size_t>(width);
  const auto rows = static_cast<std::size_t>(height);
  const std::size_t rowBytes = (columns * kPixelBytes + 3) / 4 * 4;
  const std::size_t start = wordAt(file, kPixelOffset);
  if (start < kInfoSize + std::size_t{wordAt(file, kInfoSize)} || start > file.size() ||
      rowBytes * rows > file.size() - start) {
    return std::nullopt;
  }

  Pixels pixels{width, height, std::vector<std::uint32_t>(columns * rows)};
  for (std::size_t row = 0; row < rows; ++row) {
    const std::size_t stored = signedHeight > 0 ? rows - 1 - row : row;
    for (std::size_t column = 0; column < columns; ++column) {
      const std::size_t at = start + stored * rowBytes + column * kPixelBytes;
      pixels.words[row * columns + column] =
          0xFF000000U | byteAt(file, at + 2) << 16U | byteAt(file, at + 1) << 8U | byteAt(file, at);
    }
  }
  return pixels;
}

}  // namespace zum
