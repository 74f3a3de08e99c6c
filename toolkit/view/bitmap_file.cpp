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

std::optional<BitmapFile> BitmapFile::open(std::span<const std::byte> file) {
  if (!isKnownFormat(file)) return std::nullopt;
  const auto width = static_cast<std::int32_t>(wordAt(file, kWidth));
  const auto signedHeight = static_cast<std::int32_t>(wordAt(file, kHeight));
  if (signedHeight == std::numeric_limits<std::int32_t>::min()) return std::nullopt;
  const std::int32_t height = std::abs(signedHeight);
  if (width < 1 || width > kMostPixels || height < 1 || height > kMostPixels) return std::nullopt;

  BitmapFile opened;
  opened.columns = width;
  opened.rows = height;
  opened.isUpsideDown = signedHeight > 0;
  opened.rowBytes = (static_cast<std::size_t>(width) * kPixelBytes + 3) / 4 * 4;
  const std::size_t bytes = opened.rowBytes * static_cast<std::size_t>(height);
  const std::size_t start = wordAt(file, kPixelOffset);
  if (start < kInfoSize + std::size_t{wordAt(file, kInfoSize)} || start > file.size() ||
      bytes > file.size() - start) {
    return std::nullopt;
  }
  opened.pixels = file.subspan(start, bytes);
  return opened;
}

void BitmapFile::copyRows(int first, int count, std::uint32_t* to, std::size_t stride) const {
  for (int row = first; row < first + count; ++row) {
    const int stored = isUpsideDown ? rows - 1 - row : row;
    const auto from = pixels.subspan(static_cast<std::size_t>(stored) * rowBytes);
    for (std::size_t x = 0; x < static_cast<std::size_t>(columns); ++x) {
      const std::size_t at = x * kPixelBytes;
      to[x] =
          0xFF000000U | byteAt(from, at + 2) << 16U | byteAt(from, at + 1) << 8U | byteAt(from, at);
    }
    to += stride;
  }
}

}  // namespace zum
