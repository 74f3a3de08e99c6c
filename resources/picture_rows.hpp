// Every picture of the window and of the transport strip: its size, its frames and who draws it.
#pragma once

#include <span>

#include "resources/image.hpp"

namespace zum::pictures {

struct PictureRow {
  int id;
  int width, height;  // pixels, of the whole strip
  int frames;
  int frameHeight;  // pixels
  void (*draw)(cairo_t* cr, int id, int frame);
};

std::span<const PictureRow> pictureRows();
/// Of the transport strip, which plug-in windows do not have.
std::span<const PictureRow> stripPictureRows();
/// Of the window; null for none.
const PictureRow* pictureRow(int id);

/// All frames, one below the other.
Image makePicture(const PictureRow& row);

}  // namespace zum::pictures
