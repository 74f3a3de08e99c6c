// The pictures of a window, shared by all windows of a process: made with the first one that opens,
// gone with the last one that closes.
#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <span>

#include "toolkit/view/bitmap.hpp"

namespace zum {

/// [main]
class PictureTable {
 public:
  static constexpr int kFirstId = 1000;
  static constexpr std::size_t kPictures = 59;
  /// The bytes of a picture's bitmap file by its id; empty for none.
  using Source = std::function<std::span<const std::byte>(int id)>;

  /// Each call wants a close(). A picture that is no bitmap stays null.
  void open(const Source& source) {
    if (users++ > 0) return;
    for (std::size_t i = 0; i < kPictures; ++i) {
      const auto pixels = readBitmapFile(source(kFirstId + static_cast<int>(i)));
      if (pixels) pictures[i] = Held<CBitmap>(new CBitmap(*pixels));
    }
  }
  void close() {
    if (--users == 0) pictures = {};
  }
  /// Null for an id that there is not, and while nothing is open.
  CBitmap* get(int id) const {
    constexpr int kEnd = kFirstId + static_cast<int>(kPictures);
    if (id < kFirstId || id >= kEnd) return nullptr;
    return pictures[static_cast<std::size_t>(id - kFirstId)].get();
  }

 private:
  std::array<Held<CBitmap>, kPictures> pictures;
  int users = 0;
};

}  // namespace zum
