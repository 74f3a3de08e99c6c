// The pictures of a window, shared by all windows of its kind in a process: there with the first
// one that opens, gone with the last one that closes.
#pragma once

#include <cairo.h>

#include <cstddef>
#include <span>
#include <vector>

#include "toolkit/view/bitmap.hpp"

namespace zum {

/// Where pictures come from, by their ids. Outlives what is opened with it.
class PictureSource {
 public:
  PictureSource() = default;
  PictureSource(const PictureSource&) = delete;
  PictureSource& operator=(const PictureSource&) = delete;
  virtual ~PictureSource() = default;

  /// Of a picture's bitmap file, with all frames at factor 1; empty for none.
  virtual std::span<const std::byte> bytes(int id) const = 0;
  virtual PictureShape shape(int id) const = 0;
  /// As `PictureFrames::draw`.
  virtual void draw(cairo_t* cr, int id, int frame) const = 0;
};

/// [main]
class PictureTable {
 public:
  /// Ids from `first` on, without a gap.
  PictureTable(int first, std::size_t count) : firstId(first), pictures(count) {
    FrameCache::get();  // a table that lasts to the end of the program goes ahead of it
  }

  /// Each call wants a close(). A picture that is no bitmap of its shape stays null.
  void open(const PictureSource& source);
  void close();
  /// Null for an id that there is not, and while nothing is open.
  CBitmap* get(int id) const {
    if (id < firstId || id >= firstId + static_cast<int>(pictures.size())) return nullptr;
    return pictures[static_cast<std::size_t>(id - firstId)].get();
  }

 private:
  const int firstId;
  std::vector<Held<CBitmap>> pictures;
  int users = 0;
};

}  // namespace zum
