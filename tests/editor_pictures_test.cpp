// The window as it looks at three sizes: every page, panel and list beside pictures of it, those of
// factor 2 as the manual shows them.
// The target update-pictures takes them anew; look at each before it is kept.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>
#include <optional>

#include "editor/layout.hpp"
#include "state/settings.hpp"
#include "support/editor_desk.hpp"
#include "support/settings_user.hpp"
#include "support/sound_file.hpp"
#include "toolkit/option_menu.hpp"

namespace zum::test {
namespace {

const bool isUpdating = std::getenv("ZUM_UPDATE_PICTURES") != nullptr;

using Picture = std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)>;

class Pictures : public SettingsTest {
 protected:
  // The window at work, and the same each time: the factory content is a user's own copy, its loops
  // play, and the host stops in the middle of them.
  Pictures() {
    installContent(ZUM_CONTENT, folder / ".local/share");
    setenv("HOME", folder.c_str(), 1);
    setenv("XDG_DATA_HOME", (folder / ".local/share").c_str(), 1);
    EditorDesk& desk = opened.emplace();
    for (const auto& [tag, value] : kShown) desk.host.set(tag, value);
    for (int step = 0; step < 8; ++step) {
      desk.effect().steps().setValue(step, static_cast<float>((step * 5 + 2) % 8) / 8.0F + 0.1F);
    }
    desk.effect().beginLearn(tag::cutoff);
    desk.controller(20, 60);
    desk.input = factoryLoops(ZUM_CONTENT);
    desk.host.giveTime(120.0, 0.0, kVstTransportPlaying | kVstPpqPosValid | kVstTempoValid);
    desk.host.host.moves = true;
    desk.tick(kTicks);
    desk.plays = false;
  }
  /// A part of the window, as it stands.
  void expectLooksAs(const std::string& name, const CRect& logical = layout::kWindow) {
    const std::string file = folderOf(opened->editor().factor()) + "/" + name + ".png";
    const CRect part = opened->editor().shownFrame()->scale().rounded(logical);
    const int width = part.width();
    std::vector<std::uint32_t> now = opened->pixels(part);
    if (isUpdating) {
      const Picture shot(
          cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(now.data()),
                                              CAIRO_FORMAT_RGB24, width, part.height(), 4 * width),
          cairo_surface_destroy);
      EXPECT_EQ(cairo_surface_write_to_png(shot.get(), file.c_str()), CAIRO_STATUS_SUCCESS);
      return;
    }
    const Picture kept(cairo_image_surface_create_from_png(file.c_str()), cairo_surface_destroy);
    ASSERT_EQ(std::pair(cairo_image_surface_get_width(kept.get()),
                        cairo_image_surface_get_height(kept.get())),
              std::pair(width, part.height()))
        << file;
    const auto* const words =
        reinterpret_cast<const std::uint32_t*>(cairo_image_surface_get_data(kept.get()));
    std::map<std::pair<int, int>, int> different;  // pixels, by square
    for (int i = 0; i < std::ssize(now); ++i) {
      if (distance(now[static_cast<std::size_t>(i)], words[i]) <= kTolerance) continue;
      ++different[{i % width / kSquare, i / width / kSquare}];
    }
    // Letters may be drawn a little otherwise by another version of the drawing library; another
    // letter is too much.
    for (const auto& [square, count] : different) {
      EXPECT_LE(count, kSquare) << name << " at " << testing::PrintToString(square);
    }
  }

  std::optional<EditorDesk> opened;

 private:
  static constexpr int kTicks = 1810;  // some three seconds, to the middle of a third step
  static constexpr std::pair<int, float> kShown[] = {
      {tag::cutoff, 0.3F},     {tag::resonance, 0.3F},  {tag::overdrive, 0.2F},
      {tag::cutoffEf, 0.7F},   {tag::cutoffLfo, 0.35F}, {tag::cutoffSeq, 0.65F},
      {tag::lfoRateSeq, 0.6F}, {tag::lfoRate, 0.4F},    {tag::lfoWave, 0.5F},
      {tag::modChoice, 0.0F},  {tag::vowelA, 0.5F},     {tag::vowelB, 0.8F},
      {tag::vowelCutoff, 0.4F}};

  static std::string folderOf(double factor) {
    if (factor == 2.0) return ZUM_MANUAL_PICTURES;
    return factor == 1.0 ? ZUM_PICTURES "/1" : ZUM_PICTURES "/1.5";
  }

  static constexpr int kTolerance = 48;  // of a colour's 255
  static constexpr int kSquare = 16;     // pixels a side

  static int distance(std::uint32_t a, std::uint32_t b) {
    int most = 0;
    for (const unsigned shift : {0U, 8U, 16U}) {
      most = std::max(most, std::abs(int(a >> shift & 0xFFU) - int(b >> shift & 0xFFU)));
    }
    return most;
  }
};

constexpr double kFactors[] = {1.0, 1.5, 2.0};

TEST_F(Pictures, PagesListsAndTheAboutPanel) {
  EditorDesk& desk = *opened;
  for (const double factor : kFactors) {
    desk.editor().setFactor(factor);
    for (const auto& [name, group] : {std::pair("filter", layout::filterPage),
                                      {"lfo-free", layout::freeLfo},
                                      {"lfo-sync", layout::syncedLfo},
                                      {"sequencer", layout::sequencerPage},
                                      {"vowel", layout::vowelPage}}) {
      desk.showGroup(group);
      desk.tick(8);  // what comes up for a while has gone
      expectLooksAs(name);
    }
    desk.showGroup(layout::filterPage);
    for (const auto& [name, tag] : {std::pair("types", tag::multiType),
                                    {"orders", tag::seqMode},
                                    {"presets", tag::presetMenu}}) {
      desk.click(tag);
      expectLooksAs(name);
      desk.tap(keys::kEscape);
    }
    desk.click(tag::about);
    desk.tick(8);
    expectLooksAs("about", {33, 70, 474, 258});
    desk.tap(keys::kEscape);
    desk.window->leave();
    desk.showGroup(layout::followerPage);
    desk.tick(8);
  }
}

TEST_F(Pictures, PanelsAndReadouts) {
  EditorDesk& desk = *opened;
  for (const double factor : kFactors) {
    desk.editor().setFactor(factor);
    for (const layout::Panel& panel : layout::kPanels) {
      const std::string name = "knob-" + std::to_string(panel.knob);
      desk.showPageOf(panel.knob);
      desk.tick(8);
      const KnobPanel& inside = *findRow(panel.knob)->panel;
      if (inside.amounts.size() == 2) {
        desk.click(panel.knob);
        const CRect rect = desk.editor().getControl(panel.knob)->getViewSize();
        expectLooksAs(name + "-readout", {rect.left - 20, rect.top - 12, rect.right + 20, 376});
      }
      desk.click(panel.knob, buttons::kRight);
      ASSERT_NE(desk.openPopup(), nullptr);
      expectLooksAs(name + "-panel", desk.openPopup()->getViewSize());
      desk.click(inside.buttons.close);
      desk.window->leave();
    }
    desk.tick(8);
  }
}

TEST_F(Pictures, TheMenuWhatIsFoundAndWhatIsTyped) {
  EditorDesk& desk = *opened;
  writeSettingString(kFavourites,
                     "Bass\\Rubber Band/Drums\\Gate Keeper/Midi Programs\\22 Jet Gate/");
  for (const double factor : kFactors) {
    desk.editor().setFactor(factor);
    desk.drag(tag::overdrive, 0, -5);
    desk.click(CPoint{150, 24}, buttons::kRight);
    const auto& menu = static_cast<KvOptionMenu&>(*desk.openPopup());
    const int sizes = menu.getListRect().top + 17 * menu.getEntryIndex("Window size");
    desk.move({200, sizes + 9}, 0);
    expectLooksAs("menu");
    for (int open = 0; open < 2; ++open) desk.tap(keys::kEscape);
    desk.click(tag::presetMenu);
    desk.type("gate");
    expectLooksAs("found");
    for (int open = 0; open < 2; ++open) desk.tap(keys::kEscape);
    desk.twiceOn(tag::cutoff, buttons::kLeft | buttons::kAlt);
    desk.type("2.5 k");
    expectLooksAs("typed", {170, 0, 490, 262});
    desk.tap(keys::kEscape);
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

/// Of letters to their ground, as WCAG 2 has it, in a part of the window at factor 1.
double contrastIn(const EditorDesk& desk, const CRect& rect) {
  std::vector<double> lights;
  for (const std::uint32_t word : desk.pixels(rect)) lights.push_back(luminance(word));
  std::ranges::sort(lights);
  // Hinted strokes are a whole pixel wide somewhere in every letter.
  const double ground = lights[lights.size() / 2];
  const double stroke = lights[lights.size() - 3];
  return (stroke + 0.05) / (ground + 0.05);
}

TEST_F(Pictures, SmallLetteringStandsOutFromItsGround) {
  EditorDesk& desk = *opened;
  using namespace groups;  // NOLINT(google-build-using-namespace)
  enum Over { page, about, panel };
  // One of each kind.
  const struct {
    const char* word;
    CRect rect;
    Group group = filterPage;
    Over over = page;
  } rows[] = {{"CLEAN", {52, 197, 82, 208}},
              {"VOWEL", {426, 76, 464, 86}},
              {"LFO", {356, 268, 376, 278}},
              {"WET scopes", {230, 450, 280, 462}},
              {"READY", {388, 10, 424, 21}},
              {"DRAW STEPS", {194, 330, 228, 352}, sequencerPage},
              {"FOLLOWS THE SONG POSITION", {156, 314, 230, 336}, syncedLfo},
              {"-100", {12, 49, 36, 59}, filterPage, panel},
              {"CONTROLLER", {12, 145, 72, 156}, filterPage, panel},
              {"CLICK TO CLOSE", {380, 238, 466, 249}, filterPage, about}};
  for (const auto& [word, rect, group, over] : rows) {
    desk.showGroup(group);
    CPoint corner;
    if (over == about) desk.click(tag::about);
    if (over == panel) desk.click(corner = desk.middleOf(tag::cutoff), buttons::kRight);
    EXPECT_GE(contrastIn(desk, rect.movedBy(corner.x, corner.y)), 4.5) << word;
    if (over != page) desk.click({60, 250});  // in the about panel, beside the others
  }
}

}  // namespace
}  // namespace zum::test
