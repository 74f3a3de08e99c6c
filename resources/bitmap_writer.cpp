#include "resources/bitmap_writer.hpp"

#include <cstddef>
#include <fstream>
#include <stdexcept>

namespace zum::pictures {
namespace {

constexpr std::uint32_t kHeaderBytes = 54;  // of file and picture together
constexpr std::uint32_t kInfoBytes = 40;
constexpr std::uint32_t kDotsPerMetre = 2835;

void put(std::string& bytes, std::uint32_t value, int count) {
  for (int i = 0; i < count; ++i) bytes.push_back(static_cast<char>(value >> (8 * i) & 0xFFU));
}

}  // namespace

void writeBitmap(const Image& image, const std::string& path) {
  const auto width = static_cast<std::uint32_t>(image.width());
  const auto height = static_cast<std::uint32_t>(image.height());
  const std::uint32_t rowBytes = (width * 3 + 3) / 4 * 4;
  std::string bytes;
  bytes.reserve(kHeaderBytes + std::size_t{rowBytes} * height);
  bytes += "BM";
  put(bytes, kHeaderBytes + rowBytes * height, 4);
  put(bytes, 0, 4);
  put(bytes, kHeaderBytes, 4);
  put(bytes, kInfoBytes, 4);
  put(bytes, width, 4);
  put(bytes, height, 4);
  put(bytes, 1, 2);   // planes
  put(bytes, 24, 2);  // bits
  put(bytes, 0, 4);   // no compression
  put(bytes, rowBytes * height, 4);
  put(bytes, kDotsPerMetre, 4);
  put(bytes, kDotsPerMetre, 4);
  put(bytes, 0, 4);  // no palette
  put(bytes, 0, 4);
  for (int y = image.height() - 1; y >= 0; --y) {
    const std::uint32_t* const row = image.row(y);
    for (std::uint32_t x = 0; x < width; ++x) put(bytes, row[x], 3);
    bytes.append(rowBytes - width * 3, '\0');
  }
  std::ofstream file(path, std::ios::binary);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!file.flush()) throw std::runtime_error("cannot write " + path);
}

}  // namespace zum::pictures
