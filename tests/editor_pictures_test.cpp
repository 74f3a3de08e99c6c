// The window as it looks: every page, panel and list beside the pictures that the manual shows.
// The target update-pictures takes them anew; look at each before it is kept.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>

#include "editor/layout.hpp"
#include "support/editor_desk.hpp"
#include "support/settings_user.hpp"
#include "support/sound_file.hpp"
#include "toolkit/view/png_file.hpp"

namespace zum::test {
namespace {

const bool isUpdating = std::getenv("ZUM_UPDATE_PICTURES") != nullptr;

class Pictures : public SettingsTest {
 protected:
  // The window at work, and the same each time: the factory content is a user's own copy, its loops
  // play, and the host stops in the middle of them.
  void SetUp() override {
    SettingsTest::SetUp();
    const fs::path data = folder / ".local/share";
    fs::create_directories(data);
    fs::create_directory_symlink(ZUM_CONTENT, data / "zum");
    setenv("HOME", folder.c_str(), 1);
    setenv("XDG_DATA_HOME", data.c_str(), 1);
    opened.emplace();
    EditorDesk& desk = *opened;
    for (const auto& [tag, value] : kShown) desk.host.set(tag, value);
    for (int step = 0; step < 8; ++step) {
      desk.effect().steps().setValue(step, static_cast<float>((step * 5 + 2) % 8) / 8.0F + 0.1F);
    }
    desk.effect().beginLearn(3);
    desk.controller(20, 60);
    desk.input = factoryLoops(ZUM_CONTENT);
    desk.host.host.hasTime = true;
    desk.host.host.time.tempo = 120.0;
    desk.host.host.time.flags = kVstTransportPlaying | kVstPpqPosValid | kVstTempoValid;
    for (int i = 0; i < kTicks; ++i) desk.tick();
    desk.plays = false;
  }
  void TearDown() override {
    opened.reset();
    SettingsTest::TearDown();
  }

  /// What comes up for a while has gone.
  void settle() {
    for (int i = 0; i < 8; ++i) opened->tick();
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
        const std::uint32_t now = opened->window->pixel(part.left + x, part.top + y);
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

  std::optional<EditorDesk> opened;

 private:
  static constexpr int kTicks = 1810;  // some three seconds, to the middle of a third step
  static constexpr std::pair<int, float> kShown[] = {
      {3, 0.3F},  {4, 0.3F},  {5, 0.2F},   {17, 0.7F}, {18, 0.35F}, {19, 0.65F}, {41, 0.6F},
      {10, 0.4F}, {11, 0.5F}, {165, 0.0F}, {58, 0.5F}, {59, 0.8F},  {0, 0.4F}};

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
      for (int x = part.left; x < part.right; ++x) words.push_back(opened->window->pixel(x, y));
    }
    cairo_surface_t* const surface = cairo_image_surface_create_for_data(
        reinterpret_cast<unsigned char*>(words.data()), CAIRO_FORMAT_RGB24, part.width(),
        part.height(), 4 * part.width());
    EXPECT_EQ(cairo_surface_write_to_png(surface, file.c_str()), CAIRO_STATUS_SUCCESS);
    cairo_surface_destroy(surface);
  }
};

TEST_F(Pictures, PagesListsAndTheAboutPanel) {
  EditorDesk& desk = *opened;
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
    desk.tap(keys::kEscape);
  }
  desk.click(221);
  settle();
  expectLooksAs("about", {33, 70, 474, 258});
}

TEST_F(Pictures, PanelsAndReadouts) {
  EditorDesk& desk = *opened;
  for (const layout::Panel& panel : layout::kPanels) {
    const std::string name = "knob-" + std::to_string(panel.knob);
    for (const auto& table : {layout::kUpperKnobs, layout::kLowerKnobs}) {
      for (const layout::Knob& knob : table) {
        if (knob.tag == panel.knob) desk.showGroup(knob.group);
      }
    }
    settle();
    const KnobPanel& inside = *findRow(panel.knob)->panel;
    if (inside.amounts.size() == 2) {
      desk.press(desk.middleOf(panel.knob));
      desk.release(desk.middleOf(panel.knob));
      const CRect rect = desk.editor().getControl(panel.knob)->getViewSize();
      expectLooksAs(name + "-readout", {rect.left - 20, rect.top - 12, rect.right + 20, 376});
    }
    desk.press(desk.middleOf(panel.knob), buttons::kRight);
    desk.release(desk.middleOf(panel.knob));
    const KvControl* const shown = desk.editor().shownFrame()->getModalView();
    ASSERT_NE(shown, nullptr);
    expectLooksAs(name + "-panel", shown->getViewSize());
    desk.click(inside.buttons.close);
    desk.window->leave();
  }
}

/// Relative luminance as WCAG 2 defines it, 0 to 1.
double luminance(std::uint32_t word) {
  const auto linear = [word](unsigned shift) {
    const double channel = static_cast<double>(word >> shift & 0xFFU) / 255.0;
    return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(16) + 0.7152 * linear(8) + 0.0722 * linear(0);
}

TEST_F(Pictures, SmallLetteringStandsOutFromItsGround) {
  EditorDesk& desk = *opened;
  enum Over { page, about, panel };
  const struct {
    const char* word;
    int group;
    CRect rect;
    Over over = page;
  } rows[] = {{"READY", layout::filterPage, {380, 10, 430, 22}},
              {"CLEAN", layout::filterPage, {52, 197, 82, 208}},
              {"HOT", layout::filterPage, {102, 197, 122, 208}},
              {"MIN", layout::filterPage, {384, 208, 402, 219}},
              {"MAX", layout::filterPage, {442, 208, 462, 219}},
              {"23 Hz", layout::filterPage, {221, 224, 243, 234}},
              {"15 kHz", layout::filterPage, {260, 224, 286, 234}},
              {"VOWEL", layout::filterPage, {426, 76, 464, 86}},
              {"LFO", layout::filterPage, {356, 268, 376, 278}},
              {"DRY", layout::filterPage, {58, 439, 76, 450}},
              {"WET", layout::filterPage, {102, 439, 122, 450}},
              {"OFF", layout::filterPage, {387, 440, 404, 451}},
              {"+6 dB", layout::filterPage, {427, 440, 452, 451}},
              {"WET scopes", layout::filterPage, {230, 450, 280, 462}},
              {"DRAW STEPS", layout::sequencerPage, {194, 330, 228, 352}},
              {"FOLLOWS THE SONG POSITION", layout::syncedLfo, {156, 314, 230, 336}},
              {"-100", layout::filterPage, {12, 49, 36, 59}, panel},
              {"+100", layout::filterPage, {134, 49, 160, 59}, panel},
              {"CONTROLLER", layout::filterPage, {12, 145, 72, 156}, panel},
              {"CLICK TO CLOSE", layout::filterPage, {380, 238, 466, 249}, about}};
  for (const auto& [word, group, rect, over] : rows) {
    desk.showGroup(group);
    if (over == about) desk.click(221);
    const CPoint corner = over == panel ? desk.middleOf(3) : CPoint{0, 0};
    if (over == panel) desk.click(corner, buttons::kRight);
    std::vector<double> lights;
    for (int y = rect.top; y < rect.bottom; ++y) {
      for (int x = rect.left; x < rect.right; ++x) {
        lights.push_back(luminance(desk.window->pixel(corner.x + x, corner.y + y)));
      }
    }
    std::ranges::sort(lights);
    // Hinted strokes are a whole pixel wide somewhere in every letter.
    const double ground = lights[lights.size() / 2];
    const double stroke = lights[lights.size() - 3];
    EXPECT_GE((stroke + 0.05) / (ground + 0.05), 4.5) << word;
    if (over != page) desk.click({60, 250});  // in the one panel, beside the other
  }
}

}  // namespace
}  // namespace zum::test
