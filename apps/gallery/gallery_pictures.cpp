#include "apps/gallery/gallery_pictures.hpp"

#include <cmath>
#include <cstring>
#include <numbers>

#include "toolkit/view/draw_context.hpp"

namespace zum {
namespace {

constexpr int kTextSize = 11;  // pixels

/// A surface to draw on, then to be taken as a bitmap.
class Canvas {
 public:
  explicit Canvas(CPoint canvasSize)
      : size(canvasSize), surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, size.x, size.y)) {}
  ~Canvas() { cairo_surface_destroy(surface); }
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;

  void box(const CRect& rect, CColor fill, CColor frame) {
    CDrawContext context(surface, rect);
    context.setFillColor(fill);
    context.setFrameColor(frame);
    context.drawRect(rect, DrawStyle::filledAndStroked);
  }
  void text(const std::string& words, const CRect& rect, CColor color, TextAlign align) {
    CDrawContext context(surface, rect);
    context.setFont(nullptr, kTextSize);
    context.setFontColor(color);
    context.drawString(words, rect, false, align);
  }
  /// A part of a circle; angles in turns, clockwise from the right.
  void arc(CPoint middle, double radius, double from, double to, CColor color, double width) {
    constexpr double kTurn = 2.0 * std::numbers::pi;
    cairo_t* const pen = cairo_create(surface);
    cairo_set_source_rgb(pen, color.red / 255.0, color.green / 255.0, color.blue / 255.0);
    cairo_arc(pen, middle.x, middle.y, radius, from * kTurn, to * kTurn);
    if (width > 0.0) {
      cairo_set_line_width(pen, width);
      cairo_stroke(pen);
    } else {
      cairo_fill(pen);
    }
    cairo_destroy(pen);
  }
  Held<CBitmap> bitmap() {
    cairo_surface_flush(surface);
    const auto columns = static_cast<std::size_t>(size.x);
    Pixels pixels{size.x, size.y, std::vector<std::uint32_t>(columns * size_t(size.y))};
    for (int row = 0; row < size.y; ++row) {
      std::memcpy(pixels.words.data() + columns * static_cast<std::size_t>(row),
                  cairo_image_surface_get_data(surface) +
                      std::ptrdiff_t{row} * cairo_image_surface_get_stride(surface),
                  columns * sizeof(std::uint32_t));
    }
    return Held<CBitmap>(new CBitmap(pixels));
  }

 private:
  CPoint size;
  cairo_surface_t* surface;
};

double share(int picture, int count) {
  return count > 1 ? static_cast<double>(picture) / (count - 1) : 0.0;
}

}  // namespace

Held<CBitmap> drawKnobStrip(int size, int count, CColor pointer) {
  constexpr double kFirst = 0.375;  // of a turn: at the bottom left
  constexpr double kWay = 0.75;
  Canvas canvas({size, size * count});
  for (int i = 0; i < count; ++i) {
    const CPoint middle{size / 2, size * i + size / 2};
    const double radius = size / 2.0 - 3.0;
    const double end = kFirst + kWay * share(i, count);
    canvas.box({0, size * i, size, size * (i + 1)}, kPaper, kPaper);
    canvas.arc(middle, radius, kFirst, kFirst + kWay, kBox, 4.0);
    if (i > 0) canvas.arc(middle, radius, kFirst, end, pointer, 4.0);
    canvas.arc(middle, radius - 4.0, 0.0, 1.0, kDark, 0.0);
    const double angle = end * 2.0 * std::numbers::pi;
    const CPoint tip{middle.x + static_cast<int>(std::lround((radius - 9.0) * std::cos(angle))),
                     middle.y + static_cast<int>(std::lround((radius - 9.0) * std::sin(angle)))};
    canvas.arc(tip, 2.5, 0.0, 1.0, kWhiteColor, 0.0);
  }
  return canvas.bitmap();
}

Held<CBitmap> drawSliderStrip(CPoint size, int count) {
  constexpr int kHandle = 10;
  Canvas canvas({size.x, size.y * count});
  for (int i = 0; i < count; ++i) {
    const int top = size.y * i;
    const int left = static_cast<int>(std::lround(share(i, count) * (size.x - kHandle)));
    const int middle = top + size.y / 2;
    canvas.box({0, top, size.x, top + size.y}, kPaper, kPaper);
    canvas.box({0, middle - 2, size.x, middle + 2}, kBox, kDark);
    canvas.box({0, middle - 2, left + 1, middle + 2}, kAccent, kDark);
    canvas.box({left, top, left + kHandle, top + size.y}, kDark, kInk);
  }
  return canvas.bitmap();
}

Held<CBitmap> drawHandle(CPoint size) {
  Canvas canvas(size);
  canvas.box({0, 0, size.x, size.y}, kDark, kInk);
  canvas.box({2, size.y / 2 - 1, size.x - 2, size.y / 2 + 1}, kWhiteColor, kWhiteColor);
  return canvas.bitmap();
}

Held<CBitmap> drawButtonStrip(CPoint size, int states) {
  constexpr CColor kLights[] = {kBox, {120, 190, 110}, {226, 180, 70}, {120, 160, 220}, kPaper};
  Canvas canvas({size.x, size.y * states * 2});
  for (int i = 0; i < 2 * states; ++i) {
    const bool pressed = i % 2 != 0;
    const CRect place{0, size.y * i, size.x, size.y * (i + 1)};
    canvas.box(place, kLights[static_cast<std::size_t>(i / 2) % std::size(kLights)], kInk);
    if (pressed) canvas.box(place.grownBy(-2), kDark, kAccent);
    canvas.text(std::to_string(i / 2), place, pressed ? kWhiteColor : kInk, TextAlign::centre);
  }
  return canvas.bitmap();
}

Held<CBitmap> drawRows(CPoint rowSize, std::span<const char* const> rows, bool lit) {
  Canvas canvas({rowSize.x, rowSize.y * static_cast<int>(rows.size())});
  for (int i = 0; const char* const row : rows) {
    const CRect place{0, rowSize.y * i, rowSize.x, rowSize.y * (i + 1)};
    canvas.box(place, lit ? kAccent : kBox, lit ? kAccent : kDark);
    canvas.text(row, {place.left + 6, place.top, place.right, place.bottom},
                lit ? kWhiteColor : kInk, TextAlign::left);
    ++i;
  }
  return canvas.bitmap();
}

Held<CBitmap> drawBox(CPoint size, CColor fill) {
  Canvas canvas(size);
  canvas.box({0, 0, size.x, size.y}, fill, kDark);
  return canvas.bitmap();
}

Held<CBitmap> drawEmblem(CPoint size) {
  Canvas canvas(size);
  canvas.box({0, 0, size.x, size.y}, kDark, kInk);
  for (int x = 4; x + 3 < size.x; x += 5) {
    const double wave = std::sin(x * 2.0 * std::numbers::pi / size.x);
    const int height = static_cast<int>(std::lround((size.y - 8) * (0.5 + 0.45 * wave)));
    canvas.box({x, size.y - 4 - height, x + 3, size.y - 4}, kAccent, kAccent);
  }
  return canvas.bitmap();
}

Held<CBitmap> drawBackground(CPoint size, std::span<const Label> labels) {
  Canvas canvas(size);
  canvas.box({0, 0, size.x, size.y}, kPaper, kPaper);
  for (const auto& [text, place, framed] : labels) {
    if (framed) {
      canvas.box(place, kPaper, kGreyColor);
      canvas.text(text, {place.left + 6, place.top + 2, place.right, place.top + 16}, kAccent,
                  TextAlign::left);
    } else {
      canvas.text(text, {place.left, place.top - 14, place.right, place.top}, kInk,
                  TextAlign::centre);
    }
  }
  return canvas.bitmap();
}

}  // namespace zum
