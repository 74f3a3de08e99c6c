#include "toolkit/buffer_draw.hpp"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "engine/shared_value.hpp"

namespace zum {
namespace {

std::uint32_t between(CColor from, CColor to, std::size_t i, std::size_t last) {
  const auto mix = [i, last](std::uint8_t a, std::uint8_t b) {
    return static_cast<std::uint8_t>((a * (last - i) + b * i + last / 2) / last);
  };
  return KvRawBlit::pixelOf(
      {mix(from.red, to.red), mix(from.green, to.green), mix(from.blue, to.blue)});
}

}  // namespace

KvBufferDraw::KvBufferDraw(const CRect& bounds) {
  setBounds(bounds);
  constexpr CColor kTrace{255, 128, 128};
  setColors(kTrace, kTrace, kTrace);
}

void KvBufferDraw::setBounds(const CRect& bounds) {
  rect = bounds;
  canvas = std::make_unique<KvRawBlit>(rect.width(), rect.height());
  values.assign(static_cast<std::size_t>(canvas->getWidth()), 0.0F);
}

void KvBufferDraw::setColors(CColor trace, CColor shade, CColor highlight) {
  for (std::size_t i = 0; i < kHalf; ++i) {
    ramp[i] = between(trace, shade, i, kHalf - 1);
    ramp[kHalf + i] = between(shade, highlight, i, kHalf - 1);
  }
}

// A border of two pixels stays free below, and of two above.
int KvBufferDraw::heightOf(std::size_t column) const {
  const auto last = static_cast<float>(canvas->getHeight() - 1);
  const float top = (last - 1.0F) - values[column] * (last - 3.0F);
  return static_cast<int>(top > 0.0F ? std::min(top, last) : 0.0F);  // also where it is no number
}

// Of two neighbours the lower one gets the soft edge, up to where the higher one begins: a rising
// edge from the first half of the ramp, a falling one from the second.
void KvBufferDraw::render(Style style) {
  canvas->fill(background);
  const int height = canvas->getHeight();
  const auto put = [this](std::size_t x, int y, std::size_t i) { canvas->row(y)[x] = ramp[i]; };
  for (std::size_t x = 0; x < values.size(); ++x) {
    const int y = heightOf(x);
    for (int below = y + 1; style == Style::filled && below < height; ++below) put(x, below, 0);
    put(x, y, style == Style::filled ? kHalf - 1 : 0);  // a line alone needs the brighter one
    const auto soften = [&](std::size_t neighbour, std::size_t half) {
      const int distance = y - heightOf(neighbour);
      for (int k = 1; k < distance; ++k) {
        const int left = distance - k;
        put(x, y - k,
            half + (kHalf - 1) * static_cast<std::size_t>(left) /
                       static_cast<std::size_t>(distance + 1));
      }
    };
    if (x + 1 < values.size()) soften(x + 1, 0);
    if (x > 0) soften(x - 1, kHalf);
  }
}

void KvBufferDrawAuto::setRing(const float* samples, const std::int32_t* writeIndex, int length) {
  ring = samples;
  newest = writeIndex;
  size = length;
}

void KvBufferDrawAuto::fetch() {
  if (ring == nullptr || size < 1) return;
  const auto length = static_cast<float>(size);
  const float step = length / static_cast<float>(columns().size());
  float position = static_cast<float>(loadShared(*newest)) + step;
  if (position >= length) position -= length;
  const int grid = static_cast<int>(step);  // the samples that are read stay the same ones
  if (grid > 0) {
    const int whole = static_cast<int>(position);
    position = static_cast<float>(whole - whole % grid);
  }
  for (float& value : columns()) {
    const int index = std::clamp(static_cast<int>(std::lround(position)) % size, 0, size - 1);
    const float sample = loadShared(ring[index]);
    value = sample >= 0.0F && sample <= 1.0F ? sample : 0.0F;
    position += step;
    if (position >= length) position = 0.0F;
  }
}

}  // namespace zum
