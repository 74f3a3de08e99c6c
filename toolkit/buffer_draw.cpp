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

KvBufferDraw::KvBufferDraw(const CRect& bounds, const Scale& scale) {
  fit(bounds, scale);
  constexpr CColor kTrace{255, 128, 128};
  setColors(kTrace, kTrace, kTrace);
}

bool KvBufferDraw::fit(const CRect& bounds, const Scale& scale) {
  if (canvas && bounds == rect && scale == screen) return false;
  rect = bounds;
  screen = scale;
  const CRect onScreen = screen.rounded(rect);
  canvas = std::make_unique<KvRawBlit>(onScreen.width(), onScreen.height());
  values.assign(static_cast<std::size_t>(canvas->getWidth()), 0.0F);
  return true;
}

void KvBufferDraw::setColors(CColor trace, CColor shade, CColor highlight) {
  for (std::size_t i = 0; i < kHalf; ++i) {
    ramp[i] = between(trace, shade, i, kHalf - 1);
    ramp[kHalf + i] = between(shade, highlight, i, kHalf - 1);
  }
}

// The line's upper edge. Borders of one line below it and of two above stay free.
int KvBufferDraw::heightOf(std::size_t column) const {
  const auto line = static_cast<float>(screen.lineWidth());
  const auto height = static_cast<float>(canvas->getHeight());
  const float top = (height - 2.0F * line) - values[column] * (height - 4.0F * line);
  // also where it is no number
  return static_cast<int>(top > 0.0F ? std::min(top, height - 1.0F) : 0.0F);
}

// Of two neighbours the lower one gets the soft edge, up to where the higher one begins: a rising
// edge from the first half of the ramp, a falling one from the second.
void KvBufferDraw::render(Style style) {
  canvas->fill(background);
  const int height = canvas->getHeight();
  const auto put = [this](std::size_t x, int y, std::size_t i) { canvas->row(y)[x] = ramp[i]; };
  for (std::size_t x = 0; x < values.size(); ++x) {
    const int y = heightOf(x);
    const int end = std::min(y + screen.lineWidth(), height);
    for (int below = end; style == Style::filled && below < height; ++below) put(x, below, 0);
    // a line alone needs the brighter one
    for (int on = y; on < end; ++on) put(x, on, style == Style::filled ? kHalf - 1 : 0);
    // A line of several pixels would look thinner where it is steep: there its edges stay bright.
    const bool isBright = style == Style::outline && screen.lineWidth() > 1;
    const auto soften = [&](std::size_t neighbour, std::size_t half) {
      const int distance = y - heightOf(neighbour);
      for (int k = 1; k < distance; ++k) {
        const auto left = static_cast<std::size_t>(distance - k);
        const std::size_t i = half + (kHalf - 1) * left / static_cast<std::size_t>(distance + 1);
        put(x, y - k, isBright ? 0 : i);
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

float KvBufferDrawAuto::sampleAt(int index) const {
  const float sample = loadShared(ring[index]);
  return sample >= 0.0F && sample <= 1.0F ? sample : 0.0F;
}

void KvBufferDrawAuto::fetch() {
  if (ring == nullptr || size < 1) return;
  const auto length = static_cast<float>(size);
  const float step = length / static_cast<float>(columns().size());
  if (step < 1.0F && !scale().isPlain()) return fetchBetween();
  float position = static_cast<float>(loadShared(*newest)) + step;
  if (position >= length) position -= length;
  const int grid = static_cast<int>(step);  // the samples that are read stay the same ones
  if (grid > 0) {
    const int whole = static_cast<int>(position);
    position = static_cast<float>(whole - whole % grid);
  }
  for (float& value : columns()) {
    const int index = std::clamp(static_cast<int>(std::lround(position)) % size, 0, size - 1);
    value = sampleAt(index);
    position += step;
    if (position >= length) position = 0.0F;
  }
}

// From the oldest sample, in the first column, to the newest in the last.
void KvBufferDrawAuto::fetchBetween() {
  const int oldest = std::clamp(loadShared(*newest), 0, size - 1) + 1;
  const float step = static_cast<float>(size - 1) /
                     static_cast<float>(std::max<std::size_t>(columns().size(), 2) - 1);
  float position = 0.0F;
  for (float& value : columns()) {
    const int before = std::min(static_cast<int>(position), std::max(size - 2, 0));
    const int after = std::min(before + 1, size - 1);
    const float share = std::min(position - static_cast<float>(before), 1.0F);
    const float from = sampleAt((oldest + before) % size);
    value = from + share * (sampleAt((oldest + after) % size) - from);
    position += step;
  }
}

}  // namespace zum
