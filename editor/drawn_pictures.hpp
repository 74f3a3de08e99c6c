// Pictures of a kind of window: their bitmap files, and the code that drew those.
#pragma once

#include <span>

#include "resources/picture_rows.hpp"
#include "toolkit/picture_table.hpp"

namespace zum {

/// [main]
class DrawnPictures final : public PictureSource {
 public:
  using Bytes = std::span<const std::byte> (*)(int id);

  /// Ids of the rows rise one by one.
  DrawnPictures(std::span<const pictures::PictureRow> pictureRows, Bytes fileOf)
      : rows(pictureRows), file(fileOf) {}

  std::span<const std::byte> bytes(int id) const override { return file(id); }
  PictureShape shape(int id) const override {
    const pictures::PictureRow* const row = find(id);
    if (row == nullptr) return {};
    return {row->width, row->height, row->frames, row->frameHeight};
  }
  void draw(cairo_t* cr, int id, int frame) const override {
    const pictures::PictureRow* const row = find(id);
    if (row != nullptr) row->draw(cr, id, frame);
  }

 private:
  const pictures::PictureRow* find(int id) const {
    const int index = id - rows.front().id;
    return index >= 0 && index < static_cast<int>(rows.size())
               ? &rows[static_cast<std::size_t>(index)]
               : nullptr;
  }

  std::span<const pictures::PictureRow> rows;
  Bytes file;
};

}  // namespace zum
