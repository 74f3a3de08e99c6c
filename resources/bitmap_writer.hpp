// Bitmap files: 24 bits, uncompressed, bottom row first.
#pragma once

#include <string>

#include "resources/image.hpp"

namespace zum::pictures {

void writeBitmap(const Image& image, const std::string& path);

}  // namespace zum::pictures
