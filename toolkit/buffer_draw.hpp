// A canvas for traces: one value for each column of the screen's pixels, drawn with a soft edge.
// Used by scopes and wave pictures.
#pragma once

#include <array>
#include <memory>
#include <vector>

#include "toolkit/raw_blit.hpp"
#include "toolkit/view/geometry.hpp"

namespace zum {

/// [main] Only fit allocates.
class KvBufferDraw {
 public:
  enum class Style : std::uint8_t { filled, outline };

  explicit KvBufferDraw(const CRect& bounds, const Scale& scale = {});

  /// True when the canvas was made anew, and is to be rendered.
  bool fit(const CRect& bounds, const Scale& scale);
  /// The trace runs into the shade where it rises, and from the shade into the highlight where it
  /// falls.
  void setColors(CColor trace, CColor shade, CColor highlight);
  void setBackground(CColor color) { background = KvRawBlit::pixelOf(color); }

  /// Values of 0, at the bottom, to 1; one for each column.
  std::vector<float>& columns() { return values; }
  void render(Style style);
  KvRawBlit& picture() { return *canvas; }

 protected:
  const Scale& scale() const { return screen; }

 private:
  int heightOf(std::size_t column) const;

  static constexpr std::size_t kHalf = 256;
  CRect rect;
  Scale screen;
  std::unique_ptr<KvRawBlit> canvas;
  std::vector<float> values;
  std::array<std::uint32_t, 2 * kHalf> ramp{};
  std::uint32_t background = 0;
};

/// [main] The same for a ring of samples that the audio thread writes.
class KvBufferDrawAuto : public KvBufferDraw {
 public:
  using KvBufferDraw::KvBufferDraw;

  /// `samples` of `length`, and the place that was written last; both outlive this.
  void setRing(const float* samples, const std::int32_t* writeIndex, int length);
  /// Takes a sample for each column, the oldest first; on finer screens a value between two where
  /// there are fewer samples. What is outside of 0..1 counts as 0.
  void fetch();

 private:
  float sampleAt(int index) const;
  void fetchBetween();

  const float* ring = nullptr;
  const std::int32_t* newest = nullptr;
  int size = 0;
};

}  // namespace zum
