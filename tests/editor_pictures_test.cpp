// The window as it looks: every page, panel and list beside the pictures that the manual shows.
// ZUM_UPDATE_PICTURES=1 takes the pictures anew; look at each before it is kept.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

#include "editor/layout.hpp"
#include "support/editor_desk.hpp"
#include "toolkit/view/png_file.hpp"

namespace zum::test {
namespace {

namespace fs = std::filesystem;

const bool isUpdating = std::getenv("ZUM_UPDATE_PICTURES") != nullptr;

class Pictures : public testing::Test {
 protected:
  Pictures() {
    // Something to see, and the same each time.
    for (const auto& [tag, value] : {std::pair{3, 0.45F},
                                     {4, 0.3F},
                                     {5, 0.2F},
                                     {17, 0.8F},
                                     {18, 0.35F},
                                     {10, 0.4F},
                                     {58, 0.5F},
                                     {59, 0.8F},
                                     {0, 0.4F}}) {
      desk.host.set(tag, value);
    }
    for (int step = 0; step < 8; ++step) {
      desk.effect().steps().setValue(step, static_cast<float>((step * 5 + 2) % 8) / 8.0F + 0.1F);
    }
    settle();
  }
  /// Ramps have come to their ends.
  void settle() {
    for (int i = 0; i < 8; ++i) desk.tick();
  }

  /// A part of the window, as it stands.
  void expectLooksAs(const std::string& name, const CRect& part = layout::kWindow) {
    const fs::path file = fs::path(ZUM_PICTURES) / (name + ".png");
    if (isUpdating) return write(file, part);
    std::ifstream stream(file, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    const auto kept = readPngFile(std::as_bytes(std::span(bytes)));
    ASSERT_TRUE(kept) << file;
    ASSERT_EQ(kept->width, part.width()) << name;
    ASSERT_EQ(kept->height, part.height()) << name;
    std::map<std::pair<int, int>, int> different;  // pixels, by square
    for (int y = 0; y < part.height(); ++y) {
      for (int x = 0; x < part.width(); ++x) {
        const std::uint32_t now = desk.window->pixel(part.left + x, part.top + y);
        const std::size_t at =
            static_cast<std::size_t>(y) * static_cast<std::size_t>(part.width()) +
            static_cast<std::size_t>(x);
        if (distance(now, kept->words[at]) > kTolerance) ++different[{x / kSquare, y / kSquare}];
      }
    }
    // Letters may be drawn a little otherwise by another version of the drawing library; another
    // letter is too much.
    for (const auto& [square, count] : different) {
      EXPECT_LE(count, kSquare) << name << " at " << square.first * kSquare << ", "
                                << square.second * kSquare;
    }
  }

  EditorDesk desk;

 private:
  static constexpr int kTolerance = 48;  // of a colour's 255
  static constexpr int kSquare = 16;     // pixels a side

  static int distance(std::uint32_t a, std::uint32_t b) {
    int most = 0;
    for (const unsigned shift : {0U, 8U, 16U}) {
      const auto byte = [shift](std::uint32_t word) {
        return static_cast<int>(word >> shift & 0xFFU);
      };
      most = std::max(most, std::abs(byte(a) - byte(b)));
    }
    return most;
  }
  void write(const fs::path& file, const CRect& part) {
    fs::create_directories(file.parent_path());
    std::vector<std::uint32_t> words;
    for (int y = part.top; y < part.bottom; ++y) {
      for (int x = part.left; x < part.right; ++x) words.push_back(desk.window->pixel(x, y));
    }
    cairo_surface_t* const surface = cairo_image_surface_create_for_data(
        reinterpret_cast<unsigned char*>(words.data()), CAIRO_FORMAT_RGB24, part.width(),
        part.height(), 4 * part.width());
    EXPECT_EQ(cairo_surface_write_to_png(surface, file.c_str()), CAIRO_STATUS_SUCCESS);
    cairo_surface_destroy(surface);
  }
};

TEST_F(Pictures, PagesListsAndTheAboutPanel) {
  const struct {
    const char* name;
    int group;
  } pages[] = {{"filter", layout::filterPage},
               {"lfo-free", layout::freeLfo},
               {"lfo-sync", layout::syncedLfo},
               {"sequencer", layout::sequencerPage},
               {"vowel", layout::vowelPage}};
  for (const auto& [name, group] : pages) {
    desk.showGroup(group);
    settle();
    expectLooksAs(name);
  }
  desk.showGroup(layout::filterPage);
  const struct {
    const char* name;
    int tag;
  } lists[] = {{"types", 61}, {"orders", 15}, {"presets", 162}};
  for (const auto& [name, tag] : lists) {
    desk.press(desk.middleOf(tag));
    desk.release(desk.middleOf(tag));
    expectLooksAs(name);
    desk.key(keys::kEscape);
  }
  desk.click(221);
  settle();
  expectLooksAs("about", {33, 70, 474, 258});
}

TEST_F(Pictures, PanelsAndReadouts) {
  for (const layout::Panel& panel : layout::kPanels) {
    const std::string name = "knob-" + std::to_string(panel.knob);
    for (const auto& table : {layout::kUpperKnobs, layout::kLowerKnobs}) {
      for (const layout::Knob& knob : table) {
        if (knob.tag == panel.knob) desk.showGroup(knob.group);
      }
    }
    settle();
    if (panel.sliders[2] < 0) {
      desk.press(desk.middleOf(panel.knob));
      desk.release(desk.middleOf(panel.knob));
      const CRect rect = desk.editor().getControl(panel.knob)->getViewSize();
      expectLooksAs(name + "-readout", {rect.left - 20, rect.top - 12, rect.right + 20, 376});
    }
    desk.press(desk.middleOf(panel.knob), buttons::kRight);
    desk.release(desk.middleOf(panel.knob));
    const KvControl* const opened = desk.editor().shownFrame()->getModalView();
    ASSERT_NE(opened, nullptr);
    expectLooksAs(name + "-panel", opened->getViewSize());
    desk.click(panel.close);
  }
}

}  // namespace
}  // namespace zum::test
