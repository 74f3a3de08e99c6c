// Pictures as they are kept beside the plug-in: PNG (ISO/IEC 15948).
#pragma once

#include <cstddef>
#include <optional>
#include <span>

#include "toolkit/view/bitmap_file.hpp"

namespace zum {

/// Any kind of PNG, as eight bits a colour; what is clear lies on black. Nothing for damaged bytes
/// and for more than 16 million pixels.
std::optional<Pixels> readPngFile(std::span<const std::byte> file);

}  // namespace zum
