// The view layer's drawing, off screen: pictures and what their files may get wrong, rectangles,
// lines and text, pixel by pixel.
#include <cairo.h>
#include <gtest/gtest.h>
#include <pango/pango.h>

#include <array>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "engine/display_values.hpp"
#include "toolkit/buffer_draw.hpp"
#include "toolkit/view/bitmap.hpp"
#include "toolkit/view/control.hpp"
#include "toolkit/view/draw_context.hpp"

namespace zum::test {
namespace {

constexpr std::uint32_t kWhite = 0xFFFFFF;
constexpr std::uint32_t kRed = 0xFF0000;

/// A white picture in memory.
class Canvas {
 public:
  static constexpr CRect kAll{0, 0, 40, 20};

  Canvas() {
    CDrawContext context(surface.get(), kAll);
    context.drawRect(kAll, DrawStyle::filled);
  }
  cairo_surface_t* get() const { return surface.get(); }
  std::uint32_t at(int x, int y) const {
    cairo_surface_flush(surface.get());
    const unsigned char* row = cairo_image_surface_get_data(surface.get()) +
                               y * cairo_image_surface_get_stride(surface.get());
    std::uint32_t pixel = 0;
    std::memcpy(&pixel, row + 4 * x, sizeof pixel);
    return pixel & 0xFFFFFFU;
  }
  /// Pixels that are no longer white, inside and outside of a rectangle.
  std::pair<int, int> painted(const CRect& inside) const {
    std::pair<int, int> count;
    for (int y = 0; y < kAll.height(); ++y) {
      for (int x = 0; x < kAll.width(); ++x) {
        if (at(x, y) == kWhite) continue;
        ++(inside.contains({x, y}) ? count.first : count.second);
      }
    }
    return count;
  }

 private:
  std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> surface{
      cairo_image_surface_create(CAIRO_FORMAT_RGB24, kAll.width(), kAll.height()),
      cairo_surface_destroy};
};

/// Two rows of three: red, green, blue above; white, black, grey (1, 2, 3) below.
std::string bitmapFile(std::int32_t height = 2) {
  std::string file(54, '\0');
  const auto put = [&file](std::size_t at, std::uint32_t value) {
    std::memcpy(file.data() + at, &value, 4);
  };
  file[0] = 'B';
  file[1] = 'M';
  put(10, 54);
  put(14, 40);
  put(18, 3);
  put(22, static_cast<std::uint32_t>(height));
  put(26, 1 | 24U << 16U);
  const std::string above("\0\0\xFF\0\xFF\0\xFF\0\0\0\0\0", 12);
  const std::string below("\xFF\xFF\xFF\0\0\0\3\2\1\0\0\0", 12);
  return file + (height > 0 ? below + above : above + below);
}

std::optional<Pixels> read(const std::string& file) {
  return readBitmapFile({reinterpret_cast<const std::byte*>(file.data()), file.size()});
}

TEST(BitmapFile, IsReadFromEitherEndAndRefusedWhenItDoesNotFit) {
  const std::vector<std::uint32_t> words = {0xFFFF0000, 0xFF00FF00, 0xFF0000FF,
                                            0xFFFFFFFF, 0xFF000000, 0xFF010203};
  for (const std::int32_t height : {2, -2}) {
    const auto pixels = read(bitmapFile(height));
    ASSERT_TRUE(pixels);
    EXPECT_EQ(pixels->words, words) << height;
  }
  const std::string good = bitmapFile();
  for (std::size_t bytes = 0; bytes < good.size(); ++bytes) {
    EXPECT_FALSE(read(good.substr(0, bytes))) << bytes;
  }
  const std::pair<std::size_t, std::uint32_t> wrong[] = {{0, 0},           {10, 53},
                                                         {10, 0xFFFFFFFF}, {14, 12},
                                                         {18, 0},          {18, 0x80000000},
                                                         {18, 16385},      {18, 5},
                                                         {22, 0},          {22, 0x80000000},
                                                         {22, 3},          {22, 0x7FFFFFFF},
                                                         {26, 24U << 16U}, {26, 1 | 8U << 16U},
                                                         {30, 1}};
  for (const auto& [at, word] : wrong) {
    std::string file = good;
    std::memcpy(file.data() + at, &word, 4);
    EXPECT_FALSE(read(file)) << at << ' ' << word;
  }
}

TEST(Bitmap, DrawsPartsWithAndWithoutItsKeyColour) {
  const Held<CBitmap> bitmap(new CBitmap(*read(bitmapFile())));
  EXPECT_EQ(bitmap->getWidth() * bitmap->getHeight(), 6);
  Canvas canvas;
  CDrawContext context(canvas.get(), Canvas::kAll);
  bitmap->setTransparentColor({0, 0, 255, 7});
  bitmap->draw(context, {10, 5, 12, 6}, {1, 0});
  EXPECT_EQ(canvas.at(10, 5), 0x00FF00U);
  EXPECT_EQ(canvas.at(11, 5), 0x0000FFU);
  EXPECT_EQ(canvas.painted({10, 5, 12, 6}), std::pair(2, 0));
  bitmap->drawTransparent(context, {20, 5, 40, 20}, {0, 0});  // more than there is
  EXPECT_EQ(canvas.at(20, 5), kRed);
  EXPECT_EQ(canvas.at(22, 5), kWhite);
  EXPECT_EQ(canvas.at(22, 6), 0x010203U);
  bitmap->drawAlphaBlend(context, {30, 5, 31, 6}, {0, 0}, 51);
  EXPECT_EQ(canvas.at(30, 5), 0xFFCCCCU);
  bitmap->draw(context, {0, 0, 5, 5}, {-2, 100});
  EXPECT_EQ(canvas.painted({0, 0, 5, 5}).first, 0);
}

TEST(DrawContext, RectanglesAndLinesAreSharpAndStayInsideTheClip) {
  Canvas canvas;
  CDrawContext context(canvas.get(), {0, 0, 30, 20});
  context.setFrameColor(kRedColor);
  context.setFillColor(kBlackColor);
  const CRect rect{2, 2, 8, 6};
  context.drawRect(rect, DrawStyle::stroked);
  EXPECT_EQ(canvas.painted(rect), std::pair(16, 0));
  EXPECT_EQ(canvas.at(2, 2), kRed);
  EXPECT_EQ(canvas.at(7, 5), kRed);
  context.drawRect(rect, DrawStyle::filledAndStroked);
  EXPECT_EQ(canvas.at(3, 3), 0U);
  EXPECT_EQ(canvas.painted(rect), std::pair(24, 0));
  context.moveTo({10, 10});
  context.lineTo({14, 14});
  context.lineTo({10, 14});
  EXPECT_EQ(canvas.painted({10, 10, 15, 15}), std::pair(9, 24));
  context.drawLine({25, 0}, {39, 0});
  EXPECT_EQ(canvas.painted({25, 0, 40, 1}).first, 5);
}

TEST(DrawContext, TextKeepsToItsRectangleWhateverItsBytes) {
  const Held<CFontDesc> font(new CFontDesc("Arial", 12));
  const CRect rect{10, 2, 30, 18};
  for (const std::string text :
       {"Hg", "a very long line that leaves it", "\xFF\xFE wrong", "a\xEF\xBF\xBF", "\x01\n\x7F",
        "\xED\xA0\x80", "\xE2\x80\xA8line"}) {
    Canvas canvas;
    CDrawContext context(canvas.get(), Canvas::kAll);
    context.setFont(font.get());
    context.drawString(text, rect, false, TextAlign::centre);
    const auto [inside, outside] = canvas.painted(rect);
    EXPECT_GT(inside, 5) << text;
    EXPECT_EQ(outside, 0) << text;
    context.drawRect({0, 0, 2, 2}, DrawStyle::stroked);  // drawing goes on
    EXPECT_EQ(canvas.painted({0, 0, 2, 2}).first, 4);
    EXPECT_LT(context.getStringWidth("i"), context.getStringWidth("iii"));
  }
}

// The upper half of the side where it was cut: there are dots, and no letter.
TEST(DrawContext, TextThatIsTooLongShowsTheOtherEndAndAnEllipsis) {
  const Held<CFontDesc> font(new CFontDesc("Arial", 12));
  for (const auto& [align, isCut] : {std::pair(TextAlign::left, CRect{32, 0, 40, 9}),
                                     std::pair(TextAlign::right, CRect{0, 0, 8, 9})}) {
    for (const bool isLong : {false, true}) {
      Canvas canvas;
      CDrawContext context(canvas.get(), Canvas::kAll);
      context.setFont(font.get());
      context.drawString(isLong ? "HHHHHHHHHH" : "HHHH", Canvas::kAll, false, align);
      EXPECT_EQ(canvas.painted(isCut).first > 0, !isLong);
    }
  }
}

TEST(DrawContext, TakesLettersThatAFontLacksFromAnother) {
  const Held<CFontDesc> font(new CFontDesc("Arial", 12));
  Canvas canvas;
  CDrawContext context(canvas.get(), Canvas::kAll);
  context.setFont(font.get());
  for (const auto& [text, lacking, isReadFromTheRight] :
       {std::tuple("a\xE2\x82\xAC\xD0\x96", 0, false),  // euro, Zhe
        {"\xD7\x90\xD7\x91", 0, true},                  // Hebrew
        {"\xD8\xB3\xD9\x84\xD8\xA7\xD9\x85", 0, true},  // Arabic
        {"\xEF\xBF\xBF", 1, false}}) {                  // no character
    const int end = context.getStringEnd(text);
    EXPECT_EQ(end, isReadFromTheRight ? 0 : context.getStringWidth(text)) << text;
    EXPECT_EQ(pango_layout_get_unknown_glyphs_count(font->layoutAt(12)), lacking) << text;
  }
  EXPECT_EQ(context.getStringWidth("e\xCC\x81"), context.getStringWidth("\xC3\xA9"));
}

TEST(View, DrawsThePartOfItsBackgroundThatIsAskedFor) {
  struct Plain final : CView {
    using CView::CView;
  };
  const Held<Plain> view(new Plain({10, 5, 13, 7}));
  const Held<CBitmap> bitmap(new CBitmap(*read(bitmapFile())));
  view->setBackground(bitmap);
  EXPECT_EQ(bitmap->holderCount(), 2);
  bitmap->setTransparentColor(kRedColor);
  Canvas canvas;
  CDrawContext context(canvas.get(), Canvas::kAll);
  view->drawRect(context, {11, 0, 40, 6});
  EXPECT_EQ(canvas.painted({11, 5, 13, 6}), std::pair(2, 0));
  EXPECT_EQ(canvas.at(11, 5), 0x00FF00U);
  view->setTransparency(true);
  view->setDirty(true);
  view->draw(context);
  EXPECT_FALSE(view->isDirty());
  EXPECT_EQ(canvas.at(10, 5), kWhite);
  EXPECT_EQ(canvas.at(12, 6), 0x010203U);
}

TEST(Control, KeepsItsValueInsideItsEnds) {
  struct Plain final : CControl {
    using CControl::CControl;
  };
  const Held<Plain> control(new Plain({}, nullptr, 3));
  for (const auto& [set, kept] : {std::pair(0.5F, 0.5F), {2.0F, 1.0F}, {-1.0F, 0.0F}}) {
    control->setValue(set);
    EXPECT_EQ(control->getValue(), kept);
  }
  control->setValue(std::numeric_limits<float>::quiet_NaN());
  EXPECT_EQ(control->getValue(), 0.0F);
  control->report();  // to nobody
}

TEST(BufferDraw, ReadsARingFromItsOldestSample) {
  DisplayRing<139> ring;
  for (int i = 1; i <= 139 + 100; ++i) ring.push(static_cast<float>(i % 139) / 256.0F);
  ring.points[5] = 2.0F;
  ring.points[6] = std::numeric_limits<float>::quiet_NaN();
  KvBufferDrawAuto one({0, 0, 139, 20});  // a sample a column
  one.setRing(ring.points.data(), &ring.writeIndex, 139);
  one.fetch();
  EXPECT_EQ(one.columns()[0], 101.0F / 256.0F);
  EXPECT_EQ(one.columns()[37], 138.0F / 256.0F);
  EXPECT_EQ(one.columns()[38], 0.0F);
  EXPECT_EQ(one.columns()[43] + one.columns()[44], 0.0F);  // what is no level
  EXPECT_EQ(one.columns()[138], 100.0F / 256.0F);          // what was entered last
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
  EXPECT_EQ(at(0, 18), 0x00FF00U);  // the trace itself
  EXPECT_EQ(at(0, 19), kRed);
  EXPECT_EQ(at(1, 2), 0x00FF00U);
  EXPECT_EQ(at(1, 1), kWhite);
  EXPECT_EQ(at(1, 10), kRed);
  EXPECT_NE(at(0, 10), kWhite);      // rises
  EXPECT_EQ(at(0, 10) & 0xFFU, 0U);  // from red to green
  EXPECT_EQ(at(3, 5) & kRed, 0U);    // falls, from green to blue
  draw.render(KvBufferDraw::Style::outline);
  EXPECT_EQ(at(1, 10), kWhite);
  Canvas canvas;
  CDrawContext context(canvas.get(), Canvas::kAll);
  draw.picture().blit(context, {10, 0, 12, 20}, {1, 0});
  EXPECT_EQ(canvas.at(10, 2), kRed);             // a line alone is bright
  draw.columns() = {-1e30F, 1e30F, 0.0F, 0.0F};  // stays inside
  draw.render(KvBufferDraw::Style::filled);
}

}  // namespace
}  // namespace zum::test
