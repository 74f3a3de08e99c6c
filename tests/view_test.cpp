// The view layer's drawing, off screen: pictures and what their files may get wrong, rectangles,
// lines and text. What is made of it all, the pictures of the window show.
#include <cairo.h>
#include <gtest/gtest.h>
#include <pango/pango.h>

#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "engine/display_values.hpp"
#include "support/pixel_picture.hpp"
#include "toolkit/buffer_draw.hpp"
#include "toolkit/view/bitmap_file.hpp"
#include "toolkit/view/control.hpp"
#include "toolkit/view/draw_context.hpp"

namespace zum::test {
namespace {

constexpr std::uint32_t kWhite = 0xFFFFFF;
constexpr std::uint32_t kRed = 0xFF0000;
constexpr std::uint32_t kGreen = 0x00FF00;
constexpr float kNoNumber = std::numeric_limits<float>::quiet_NaN();

/// A white picture in memory.
class Canvas {
 public:
  static constexpr CRect kAll{0, 0, 40, 20};

  explicit Canvas(const CRect& clip = kAll) : context(surface.get(), clip) {
    CDrawContext(surface.get(), kAll).drawRect(kAll, DrawStyle::filled);
    context.setFont(font.get());
  }
  std::uint32_t at(int x, int y) const {
    cairo_surface_flush(surface.get());
    const unsigned char* row = cairo_image_surface_get_data(surface.get()) +
                               y * cairo_image_surface_get_stride(surface.get());
    std::uint32_t pixel = 0;
    std::memcpy(&pixel, row + 4 * x, sizeof pixel);
    return pixel & 0xFFFFFFU;
  }
  std::vector<std::uint32_t> row(int x, int y, std::size_t count) const {
    std::vector<std::uint32_t> pixels(count);
    for (std::uint32_t& pixel : pixels) pixel = at(x++, y);
    return pixels;
  }
  /// Pixels that are no longer white, inside and outside of a rectangle.
  std::pair<int, int> painted(const CRect& inside) const {
    std::pair<int, int> count;
    for (int i = 0; i < kAll.width() * kAll.height(); ++i) {
      const CPoint point{i % kAll.width(), i / kAll.width()};
      if (at(point.x, point.y) == kWhite) continue;
      ++(inside.contains(point) ? count.first : count.second);
    }
    return count;
  }

 private:
  const std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> surface{
      cairo_image_surface_create(CAIRO_FORMAT_RGB24, kAll.width(), kAll.height()),
      cairo_surface_destroy};

 public:
  const Held<CFontDesc> font{new CFontDesc("Arial", 12)};
  CDrawContext context;
};
using Row = std::vector<std::uint32_t>;

/// Two rows of three: red, green, blue above; white, black, grey (1, 2, 3) below.
std::string bitmapFile(int height = 2) {
  std::string file(54, '\0');
  const std::pair<int, int> words[] = {{0, 'B' | 'M' << 8}, {10, 54},          {14, 40}, {18, 3},
                                       {22, height},        {26, 1 | 24 << 16}};
  for (const auto& [at, value] : words) {
    std::memcpy(file.data() + at, &value, 4);
  }
  const std::string above("\0\0\xFF\0\xFF\0\xFF\0\0\0\0\0", 12);
  const std::string below("\xFF\xFF\xFF\0\0\0\3\2\1\0\0\0", 12);
  return file + (height > 0 ? below + above : above + below);
}

/// Empty for no bitmap.
Row read(const std::string& file) {
  const auto opened =
      BitmapFile::open({reinterpret_cast<const std::byte*>(file.data()), file.size()});
  if (!opened) return {};
  Row words(static_cast<std::size_t>(opened->width()) * static_cast<std::size_t>(opened->height()));
  opened->copyRows(0, opened->height(), words.data(), static_cast<std::size_t>(opened->width()));
  return words;
}

TEST(BitmapFile, IsReadFromEitherEndAndRefusedWhenItDoesNotFit) {
  for (const std::int32_t height : {2, -2}) {
    EXPECT_EQ(read(bitmapFile(height)), (Row{0xFFFF0000, 0xFF00FF00, 0xFF0000FF,  //
                                             0xFFFFFFFF, 0xFF000000, 0xFF010203}))
        << height;
  }
  const std::string good = bitmapFile();
  for (std::size_t bytes = 0; bytes < good.size(); ++bytes) {
    EXPECT_TRUE(read(good.substr(0, bytes)).empty()) << bytes;
  }
  const std::pair<std::size_t, std::vector<std::uint32_t>> wrong[] = {
      {0, {0}},
      {10, {53, 0xFFFFFFFF}},
      {14, {12}},
      {18, {0, 16385, 0x80000000}},
      {22, {0, 3, 0x7FFFFFFF, 0x80000000}},
      {26, {24U << 16U, 1 | 8U << 16U}},
      {30, {1}}};
  for (const auto& [at, words] : wrong) {
    for (const std::uint32_t word : words) {
      std::string file = good;
      std::memcpy(file.data() + at, &word, 4);
      EXPECT_TRUE(read(file).empty()) << at << ' ' << word;
    }
  }
}

TEST(Bitmap, DrawsPartsWithAndWithoutItsKeyColour) {
  const Held<CBitmap> bitmap = pixelPicture(3, 2, read(bitmapFile()));
  Canvas canvas;
  bitmap->setTransparentColor({0, 0, 255, 7});
  bitmap->draw(canvas.context, {10, 5, 12, 6}, {1, 0});
  bitmap->draw(canvas.context, {0, 0, 5, 5}, {-2, 100});  // nothing
  EXPECT_EQ(canvas.row(10, 5, 2), (Row{0x00FF00, 0x0000FF}));
  EXPECT_EQ(canvas.painted({10, 5, 12, 6}), std::pair(2, 0));
  bitmap->drawTransparent(canvas.context, {20, 5, 40, 20}, {0, 0});  // more than there is
  EXPECT_EQ(canvas.row(20, 5, 4), (Row{kRed, kGreen, kWhite, kWhite}));
  EXPECT_EQ(canvas.row(20, 6, 4), (Row{kWhite, 0, 0x010203, kWhite}));
  bitmap->drawAlphaBlend(canvas.context, {30, 5, 31, 6}, {0, 0}, 51);
  EXPECT_EQ(canvas.at(30, 5), 0xFFCCCCU);
}

TEST(DrawContext, RectanglesAndLinesAreSharpAndStayInsideTheClip) {
  Canvas canvas({0, 0, 30, 20});
  canvas.context.setFrameColor(kRedColor);
  canvas.context.setFillColor(kBlackColor);
  const CRect rect{2, 2, 8, 6};
  canvas.context.drawRect(rect, DrawStyle::stroked);
  EXPECT_EQ(canvas.painted(rect), std::pair(16, 0));
  canvas.context.drawRect(rect, DrawStyle::filledAndStroked);
  EXPECT_EQ(canvas.row(2, 4, 6), (Row{kRed, 0, 0, 0, 0, kRed}));
  canvas.context.moveTo({10, 10});
  canvas.context.lineTo({14, 14});
  canvas.context.lineTo({10, 14});
  EXPECT_EQ(canvas.painted({10, 10, 15, 15}), std::pair(9, 24));
  canvas.context.drawLine({25, 0}, {39, 0});
  EXPECT_EQ(canvas.painted({25, 0, 40, 1}).first, 5);
}

TEST(DrawContext, TextKeepsToItsRectangleWhateverItsBytes) {
  const CRect rect{10, 2, 30, 18};
  for (const std::string text : {"a very long line that leaves it", "\xFF\xFE wrong", "\x01\n\x7F",
                                 "\xED\xA0\x80", "\xE2\x80\xA8line"}) {
    Canvas canvas;
    canvas.context.drawString(text, rect, false, TextAlign::centre);
    const auto [inside, outside] = canvas.painted(rect);
    EXPECT_GT(inside, 5) << text;
    EXPECT_EQ(outside, 0) << text;
    canvas.context.drawRect({0, 0, 2, 2}, DrawStyle::stroked);  // drawing goes on
    EXPECT_EQ(canvas.painted({0, 0, 2, 2}).first, 4);
    EXPECT_LT(canvas.context.getStringWidth("i"), canvas.context.getStringWidth("iii"));
  }
}

// The upper half of the side where it was cut: there are dots, and no letter.
TEST(DrawContext, TextThatIsTooLongShowsTheOtherEndAndAnEllipsis) {
  for (const auto& [align, isCut] : {std::pair(TextAlign::left, CRect{32, 0, 40, 9}),
                                     std::pair(TextAlign::right, CRect{0, 0, 8, 9})}) {
    for (const bool isLong : {false, true}) {
      Canvas canvas;
      canvas.context.drawString(isLong ? "HHHHHHHHHH" : "HHHH", Canvas::kAll, false, align);
      EXPECT_EQ(canvas.painted(isCut).first > 0, !isLong);
    }
  }
}

TEST(DrawContext, TakesLettersThatAFontLacksFromAnother) {
  Canvas canvas;
  for (const auto& [text, lacking, isReadFromTheRight] :
       {std::tuple("a\xE2\x82\xAC\xD0\x96", 0, false),  // euro, Zhe
        {"\xD7\x90\xD7\x91", 0, true},                  // Hebrew
        {"\xEF\xBF\xBF", 1, false}}) {                  // no character
    const int end = canvas.context.getStringEnd(text);
    EXPECT_EQ(end, isReadFromTheRight ? 0 : canvas.context.getStringWidth(text)) << text;
    EXPECT_EQ(pango_layout_get_unknown_glyphs_count(canvas.font->layoutAt(12)), lacking) << text;
  }
  EXPECT_EQ(canvas.context.getStringWidth("e\xCC\x81"), canvas.context.getStringWidth("\xC3\xA9"));
}

// At every factor: what shares a pixel of the screen with a part that is drawn again is found.
TEST(Scale, KeepsEdgesTogetherAndMissesNothing) {
  for (int percent = 100; percent <= 300; ++percent) {
    const Scale scale(percent / 100.0);
    for (int x = 0; x < 509; ++x) {
      const CRect touched = scale.outward({x, 0, x + 1, 1});
      ASSERT_GT(scale.rounded(x + 1), scale.rounded(x)) << percent;
      ASSERT_GE(scale.rounded(x), touched.left) << percent;
      ASSERT_LE(scale.rounded(x + 1), touched.right) << percent;
      ASSERT_GE(scale.lineStart(x), touched.left) << percent;
      ASSERT_LE(scale.lineStart(x) + scale.lineWidth(), touched.right) << percent;
      for (int pixel = touched.left; pixel < touched.right; ++pixel) {
        ASSERT_TRUE(scale.logical(CRect{pixel, 0, pixel + 1, 1}).intersects({x, 0, x + 1, 1}))
            << percent << ' ' << x;
      }
      const CRect back = scale.logical(touched);
      ASSERT_TRUE(back.left <= x && back.right > x) << percent;
    }
    ASSERT_LT(scale.logical(CPoint{scale.rounded(508) - 1, 0}).x, 508) << percent;
  }
  EXPECT_EQ(Scale(kNoNumber).factor(), 1.0);
  EXPECT_EQ(Scale(99.0).factor(), 3.0);
  EXPECT_EQ(Scale(1.1).outward({0, 0, 10, 470}), (CRect{0, 0, 11, 517}));  // no pixel more
}

TEST(FrameCache, KeepsWhatWindowsShowAndForgetsTheRest) {
  FrameCache& cache = FrameCache::get();
  const auto picture = pixelPicture(1, 1, {0});
  const auto key = [&](int frame, double factor) {
    return FrameCache::Key{picture.get(), frame, false, factor, 0, 0};
  };
  const auto keep = [&](int frame, double factor) {  // a mebibyte each
    cache.keep(key(frame, factor),
               Surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, 512, 512)));
  };
  const std::size_t before = cache.bytes();
  {
    const CacheUser small(1.0);
    {
      const CacheUser large(2.0);
      for (int i = 0; i < 24; ++i) keep(i, i % 2 == 0 ? 1.0 : 2.0);
      EXPECT_NE(cache.find(key(0, 1.0)), nullptr);  // used again: the next one goes for it
      keep(24, 1.0);
      EXPECT_NE(cache.find(key(0, 1.0)), nullptr);
      EXPECT_EQ(cache.find(key(1, 2.0)), nullptr);
    }
    EXPECT_EQ(cache.find(key(3, 2.0)), nullptr);  // nobody is that large any more
    EXPECT_NE(cache.find(key(2, 1.0)), nullptr);
  }
  EXPECT_EQ(cache.bytes(), before);
}

TEST(Control, KeepsItsValueInsideItsEnds) {
  struct Plain final : CControl {
    using CControl::CControl;
  };
  const Held<Plain> control(new Plain({}, nullptr, 3));
  for (const auto& [set, kept] :
       {std::pair(0.5F, 0.5F), {2.0F, 1.0F}, {-1.0F, 0.0F}, {0.5F, 0.5F}, {kNoNumber, 0.0F}}) {
    control->setValue(set);
    EXPECT_EQ(control->getValue(), kept);
  }
  control->report();  // to nobody
}

TEST(BufferDraw, ReadsARingFromItsOldestSample) {
  DisplayRing<139> ring;
  for (int i = 1; i <= 139 + 100; ++i) ring.push(static_cast<float>(i % 139) / 256.0F);
  ring.points[5] = 2.0F;  // no levels
  ring.points[6] = kNoNumber;
  KvBufferDrawAuto one({0, 0, 139, 20});  // a sample a column
  one.setRing(ring.points.data(), &ring.writeIndex, 139);
  one.fetch();
  std::vector<float> expected;
  for (int i = 101; i <= 101 + 138; ++i) expected.push_back(static_cast<float>(i % 139) / 256.0F);
  expected[43] = expected[44] = 0.0F;
  EXPECT_EQ(one.columns(), expected);
  std::vector<float> many(2048, 0.5F);
  KvBufferDrawAuto few({0, 0, 218, 20});
  std::int32_t newest = 0;
  few.setRing(many.data(), &newest, 2048);
  for (; newest < 2048; ++newest) few.fetch();
  EXPECT_EQ(few.columns(), std::vector<float>(218, 0.5F));
}

TEST(BufferDraw, FillsBelowTheTraceAndSoftensItsEdges) {
  KvBufferDraw draw({0, 0, 4, 20});
  draw.setColors(kRedColor, kGreenColor, kBlueColor);
  draw.setBackground(kWhiteColor);
  draw.columns() = {0.0F, 1.0F, 1.0F, 0.5F};
  draw.render(KvBufferDraw::Style::filled);
  const auto at = [&draw](int x, int y) { return draw.picture().row(y)[x]; };
  EXPECT_EQ((Row{at(0, 18), at(0, 19)}), (Row{kGreen, kRed}));  // the trace itself
  EXPECT_EQ((Row{at(1, 1), at(1, 2), at(1, 10)}), (Row{kWhite, kGreen, kRed}));
  EXPECT_EQ(at(0, 10) & 0xFFU, 0U);  // rises, from red to green
  EXPECT_EQ(at(3, 5) & kRed, 0U);    // falls, from green to blue
  draw.render(KvBufferDraw::Style::outline);
  Canvas canvas;
  draw.picture().blit(canvas.context, {10, 0, 12, 20}, {1, 0});
  EXPECT_EQ(canvas.at(10, 2), kRed);  // a line alone is bright
  EXPECT_EQ(canvas.at(10, 10), kWhite);
  draw.columns() = {-1e30F, 1e30F, 0.0F, 0.0F};  // stays inside
  draw.render(KvBufferDraw::Style::filled);
}

}  // namespace
}  // namespace zum::test
