#include "toolkit/view/bitmap.hpp"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "toolkit/view/draw_context.hpp"

namespace zum {
namespace {

constexpr std::uint32_t kRgb = 0x00FFFFFFU;
constexpr double kPhases = 1 << 24U;  // to a pixel of the screen

std::int32_t phaseOf(int at, const Scale& scale) {
  return static_cast<std::int32_t>(
      std::lround((at * scale.factor() - scale.rounded(at)) * kPhases));
}

const std::uint32_t* rowOf(cairo_surface_t* surface, int row) {
  const unsigned char* const data = cairo_image_surface_get_data(surface);
  return reinterpret_cast<const std::uint32_t*>(data + std::ptrdiff_t{row} *
                                                           cairo_image_surface_get_stride(surface));
}

/// Where anything is drawn.
CRect drawnPart(cairo_surface_t* made, CPoint size) {
  const auto isDrawn = [](std::uint32_t word) { return word != 0; };
  CRect part{size.x, size.y, 0, 0};
  for (int row = 0; row < size.y; ++row) {
    const std::uint32_t* const first = rowOf(made, row);
    const std::uint32_t* const end = first + size.x;
    const std::uint32_t* const left = std::find_if(first, first + part.left, isDrawn);
    if (left == first + part.left && std::none_of(left, end, isDrawn)) continue;
    const auto right = std::find_if(std::reverse_iterator(end),
                                    std::reverse_iterator(first + part.right), isDrawn);
    part = {static_cast<int>(left - first), std::min(part.top, row),
            static_cast<int>(right.base() - first), row + 1};
  }
  return part;
}

bool isOpaque(cairo_surface_t* made, const CRect& part) {
  for (int row = part.top; row < part.bottom; ++row) {
    const std::uint32_t* const first = rowOf(made, row);
    const auto isFull = [](std::uint32_t word) { return word >= ~kRgb; };
    if (!std::all_of(first + part.left, first + part.right, isFull)) return false;
  }
  return true;
}

/// What is empty or has no alpha takes no memory for it, and is drawn faster. The corner stays
/// where it was.
Surface trimmed(Surface made, CPoint size) {
  cairo_surface_flush(made.get());
  const CRect part = drawnPart(made.get(), size);
  if (part.isEmpty()) return Surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 1, 1));
  const cairo_format_t format =
      isOpaque(made.get(), part) ? CAIRO_FORMAT_RGB24 : CAIRO_FORMAT_ARGB32;
  Surface kept(cairo_image_surface_create(format, part.width(), part.height()));
  cairo_surface_set_device_offset(kept.get(), -part.left, -part.top);
  const std::unique_ptr<cairo_t, decltype(&cairo_destroy)> copying(cairo_create(kept.get()),
                                                                   cairo_destroy);
  cairo_set_operator(copying.get(), CAIRO_OPERATOR_SOURCE);
  cairo_set_source_surface(copying.get(), made.get(), 0.0, 0.0);
  cairo_paint(copying.get());
  return cairo_status(copying.get()) == CAIRO_STATUS_SUCCESS ? std::move(kept) : std::move(made);
}

}  // namespace

CBitmap::CBitmap(std::unique_ptr<const PictureFrames> shown)
    : frames(std::move(shown)), shape(frames->shape()) {
  if (shape.width < 1 || shape.height < 1 || shape.frames < 1 || shape.frameHeight < 1) shape = {};
}

CBitmap::~CBitmap() { FrameCache::get().drop(this); }

void CBitmap::setTransparentColor(CColor keyColor) {
  const std::uint32_t left = static_cast<std::uint32_t>(keyColor.red) << 16U |
                             static_cast<std::uint32_t>(keyColor.green) << 8U | keyColor.blue;
  if (key == left) return;
  key = left;
  FrameCache::get().drop(this);
}

Surface CBitmap::copied(int frame, CPoint size, bool isCut) const {
  Surface made(
      cairo_image_surface_create(isCut ? CAIRO_FORMAT_ARGB32 : CAIRO_FORMAT_RGB24, size.x, size.y));
  if (cairo_surface_status(made.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
  cairo_surface_flush(made.get());
  auto* const words = reinterpret_cast<std::uint32_t*>(cairo_image_surface_get_data(made.get()));
  const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(made.get())) / 4;
  frames->copy(frame, words, stride);
  for (std::size_t row = 0; isCut && row < static_cast<std::size_t>(size.y); ++row) {
    std::uint32_t* const first = words + row * stride;
    std::replace_if(
        first, first + size.x, [this](std::uint32_t pixel) { return (pixel & kRgb) == *key; }, 0U);
  }
  cairo_surface_mark_dirty(made.get());
  return made;
}

Surface CBitmap::drawn(int frame, CPoint size, CPoint phase, double factor) const {
  Surface made(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, size.x, size.y));
  const std::unique_ptr<cairo_t, decltype(&cairo_destroy)> drawing(cairo_create(made.get()),
                                                                   cairo_destroy);
  if (cairo_status(drawing.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
  cairo_set_antialias(drawing.get(), CAIRO_ANTIALIAS_GRAY);
  cairo_translate(drawing.get(), phase.x / kPhases, phase.y / kPhases);
  cairo_scale(drawing.get(), factor, factor);
  frames->draw(drawing.get(), frame);
  return trimmed(std::move(made), size);
}

// The remainder that rounding its corner leaves goes into the drawing: so all of it stands exactly
// where it would if it were drawn into the window.
cairo_surface_t* CBitmap::surfaceOf(int frame, const CRect& place, const Scale& scale,
                                    bool isCut) const {
  const bool isPlain = scale.isPlain();
  const CPoint phase =
      isPlain ? CPoint{} : CPoint{phaseOf(place.left, scale), phaseOf(place.top, scale)};
  const FrameCache::Key wanted{this,           frame,   isPlain && isCut && key,
                               scale.factor(), phase.x, phase.y};
  FrameCache& cache = FrameCache::get();
  if (cairo_surface_t* const there = cache.find(wanted)) return there;
  const CRect onScreen = scale.rounded(place);
  const CPoint size{onScreen.width(), onScreen.height()};
  Surface made =
      isPlain ? copied(frame, size, wanted.isCut) : drawn(frame, size, phase, scale.factor());
  return made ? cache.keep(wanted, std::move(made)) : nullptr;
}

void CBitmap::paint(CDrawContext& context, const CRect& rect, CPoint offset, double alpha,
                    bool isCut) const {
  const Scale& scale = context.scale();
  const CPoint corner{rect.left - offset.x, rect.top - offset.y};
  const CRect all =
      rect.meet({corner.x, corner.y, corner.x + shape.width, corner.y + shape.height});
  if (all.isEmpty()) return;
  for (int i = (all.top - corner.y) / shape.frameHeight; i < shape.frames; ++i) {
    const int top = i * shape.frameHeight;
    const int bottom = std::min(top + shape.frameHeight, shape.height);
    const CRect place = CRect{0, top, shape.width, bottom}.movedBy(corner.x, corner.y);
    if (place.top >= all.bottom) break;
    context.drawPicture(surfaceOf(i, place, scale, isCut), scale.rounded(place.topLeft()),
                        scale.rounded(place.meet(all)), alpha);
  }
}

void CBitmap::draw(CDrawContext& context, const CRect& rect, CPoint offset) const {
  paint(context, rect, offset, 1.0, false);
}

void CBitmap::drawTransparent(CDrawContext& context, const CRect& rect, CPoint offset) const {
  paint(context, rect, offset, 1.0, true);
}

void CBitmap::drawAlphaBlend(CDrawContext& context, const CRect& rect, CPoint offset,
                             int alpha) const {
  paint(context, rect, offset, std::clamp(alpha, 0, 255) / 255.0, true);
}

}  // namespace zum
