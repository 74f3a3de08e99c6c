#include "toolkit/picture_table.hpp"

#include <algorithm>
#include <memory>

#include "toolkit/view/bitmap_file.hpp"

namespace zum {
namespace {

/// One picture of a source.
class SourceFrames final : public PictureFrames {
 public:
  SourceFrames(const PictureSource& pictures, int pictureId, const BitmapFile& opened)
      : source(pictures), id(pictureId), file(opened) {}

  PictureShape shape() const override { return source.shape(id); }
  void copy(int frame, std::uint32_t* rows, std::size_t stride) const override {
    const int height = shape().frameHeight;
    const int first = frame * height;
    file.copyRows(first, std::min(height, file.height() - first), rows, stride);
  }
  void draw(cairo_t* cr, int frame) const override { source.draw(cr, id, frame); }

 private:
  const PictureSource& source;
  int id;
  BitmapFile file;
};

bool hasShape(const BitmapFile& file, const PictureShape& shape) {
  return file.width() == shape.width && file.height() == shape.height && shape.frames > 0 &&
         shape.frameHeight > 0 && (shape.frames - 1) * shape.frameHeight < shape.height;
}

}  // namespace

void PictureTable::open(const PictureSource& source) {
  if (users > 0) {
    ++users;
    return;
  }
  int id = firstId;
  for (Held<CBitmap>& picture : pictures) {
    const auto file = BitmapFile::open(source.bytes(id));
    if (file && hasShape(*file, source.shape(id))) {
      picture = Held<CBitmap>(new CBitmap(std::make_unique<SourceFrames>(source, id, *file)));
    }
    ++id;
  }
  users = 1;  // not before: where the memory ends, the next one who opens begins anew
}

void PictureTable::close() {
  if (--users > 0) return;
  for (Held<CBitmap>& picture : pictures) picture = {};
}

}  // namespace zum
