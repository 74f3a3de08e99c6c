// The pictures of a window, shared by all windows of its kind in a process: made with the first one
// that opens, gone with the last one that closes.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "toolkit/view/bitmap.hpp"

namespace zum {

/// [main]
class PictureTable {
 public:
  /// The bytes of a picture's bitmap file by its id; empty for none.
  using Source = std::function<std::span<const std::byte>(int id)>;

  /// Ids from `first` on, without a gap.
  PictureTable(int first, std::size_t count) : firstId(first), pictures(count) {}

  /// Each call wants a close(). A picture that is no bitmap stays null.
  void open(const Source& source) {
    if (users++ > 0) return;
    int id = firstId;
    for (Held<CBitmap>& picture : pictures) {
      if (const auto pixels = readBitmapFile(source(id++))) {
        picture = Held<CBitmap>(new CBitmap(*pixels));
      }
    }
  }
  void close() {
    if (--users > 0) return;
    for (Held<CBitmap>& picture : pictures) picture = {};
  }
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
