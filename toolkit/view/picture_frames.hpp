// What one picture consists of, as a program carries it.
#pragma once

#include <cairo.h>

#include <cstddef>
#include <cstdint>

namespace zum {

/// Frames lie one below the other. Logical pixels.
struct PictureShape {
  int width = 0;
  int height = 0;  // of all; the last frame may be cut short
  int frames = 1;
  int frameHeight = 0;
};

/// [main] What they throw leaves the picture as it was.
class PictureFrames {
 public:
  PictureFrames() = default;
  PictureFrames(const PictureFrames&) = delete;
  PictureFrames& operator=(const PictureFrames&) = delete;
  virtual ~PictureFrames() = default;

  virtual PictureShape shape() const = 0;
  /// As it looks at factor 1, opaque: 0xFFRRGGBB, from the top, `stride` words from row to row.
  virtual void copy(int frame, std::uint32_t* rows, std::size_t stride) const = 0;
  /// The same from its corner on in logical pixels, for any scale, with true alpha.
  virtual void draw(cairo_t* cr, int frame) const = 0;
};

}  // namespace zum
