// Every picture of the window and of the transport strip: its size, its frames and who draws it.
#pragma once

#include <cairo.h>

#include <span>

#include "resources/scene.hpp"

namespace zum::pictures {

/// What lies behind a picture in its bitmap file, which has no alpha: this part of the window.
struct Backdrop {
  Scene scene = Scene::none;
  int x = 0, y = 0;  // of the picture in the window
};

struct PictureRow {
  int id;
  int width, height;  // logical pixels, of the whole strip
  int frames;
  int frameHeight;  // logical pixels
  /// From the frame's corner on, with true alpha; a frame's edges cut off what goes beyond.
  void (*draw)(cairo_t* cr, int id, int frame);
  Backdrop backdrop = {};
  bool isKeyed = false;  // its bitmap file has white where nothing is drawn
};

std::span<const PictureRow> pictureRows();
/// Of the transport strip, which plug-in windows do not have.
std::span<const PictureRow> stripPictureRows();
/// Of the window; null for none.
const PictureRow* pictureRow(int id);

}  // namespace zum::pictures
