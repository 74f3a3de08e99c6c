// The window: each control at its place does what it says, and nothing else.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "editor/layout.hpp"
#include "support/editor_desk.hpp"
#include "support/settings_user.hpp"
#include "toolkit/display.hpp"
#include "toolkit/option_menu.hpp"
#include "toolkit/text_view.hpp"

namespace zum::test {
namespace {

using Tags = std::vector<int>;

/// What each panel is called, and what its LEARN teaches: of tempo and glide the other one.
constexpr struct {
  int knob;
  const char* title;
  int learns;
} kPanels[] = {{6, "RANGE", 6},     {7, "ATTACK", 7}, {8, "RELEASE", 8}, {9, "GAIN", 9},
               {10, "RATE", 10},    {11, "WAVE", 11}, {13, "SENS", 13},  {16, "TEMPO", 14},
               {14, "GLIDE", 16},   {3, "CUTOFF", 3}, {0, "MORPH", 0},   {4, "RESONANCE", 4},
               {5, "OVERDRIVE", 5}, {2, "MIX", 2},    {1, "MASTER", 1}};

layout::Group groupOf(int knobTag) {
  for (const auto& table : {layout::kUpperKnobs, layout::kLowerKnobs}) {
    for (const layout::Knob& knob : table) {
      if (knob.tag == knobTag) return knob.group;
    }
  }
  return layout::always;
}

/// What a host hears of amounts that a click centres.
std::vector<std::array<std::intptr_t, 3>> edits(const Tags& tags) {
  std::vector<std::array<std::intptr_t, 3>> calls;
  for (const std::intptr_t tag : tags) {
    for (const std::int32_t call :
         {audioMasterBeginEdit, audioMasterAutomate, audioMasterEndEdit}) {
      calls.push_back({call, tag, 0});
    }
  }
  return calls;
}

TEST(Editor, EachKnobMovesItsOwnParameterAndTheHostHearsOfIt) {
  EditorDesk desk;
  for (const auto& table : {layout::kUpperKnobs, layout::kLowerKnobs}) {
    for (const layout::Knob& knob : table) {
      desk.showGroup(knob.group);
      desk.host.set(knob.tag, 0.5F);
      desk.tick();
      const auto before = desk.values();
      desk.host.host.calls.clear();
      desk.drag(knob.tag, 0, -20);
      EXPECT_EQ(desk.changedSince(before), Tags{knob.tag});
      EXPECT_NEAR(desk.values()[knob.tag], 0.5F + 0.2F * knob.sensitivity, 1e-5F) << knob.tag;
      std::vector<std::intptr_t> heard;
      for (const auto& call : desk.host.host.calls) {
        EXPECT_EQ(call[1], knob.tag);
        heard.push_back(call[0]);
      }
      EXPECT_EQ(heard, (std::vector<std::intptr_t>{audioMasterBeginEdit, audioMasterAutomate,
                                                   audioMasterEndEdit}));
      desk.click(desk.middleOf(knob.tag), buttons::kLeft | buttons::kControl);
      EXPECT_EQ(desk.values()[knob.tag], knob.initial) << knob.tag;
      // Just outside of its picture it can still be taken, beyond its border not.
      const CRect area = knob.rect.grownBy(knob.border);
      EXPECT_EQ(desk.editor().getControl(knob.tag)->getMouseableArea(), area);
    }
  }
}

TEST(Editor, EachPanelHoldsItsKnobsAmountsAndLearns) {
  EditorDesk desk;
  for (const auto& [knob, title, target] : kPanels) {
    SCOPED_TRACE(title);
    const layout::Panel& panel = *std::ranges::find(layout::kPanels, knob, &layout::Panel::knob);
    const KnobPanel& inside = *findRow(knob)->panel;
    desk.showGroup(groupOf(knob));
    desk.click(desk.middleOf(knob), buttons::kRight);
    auto* const opened = static_cast<KvViewContainer*>(desk.editor().shownFrame()->getModalView());
    ASSERT_NE(opened, nullptr);
    EXPECT_EQ(opened->getViewSize().width(), panel.rect.width());
    EXPECT_EQ(opened->getViewSize().height(), panel.rect.height());
    EXPECT_EQ(static_cast<KvTextView*>(opened->children().front().get())->getText(), title);
    Tags sliders;
    for (const int slider : inside.amounts) {
      sliders.push_back(slider);
      const auto before = desk.values();
      desk.drag(slider, 20, 0);
      EXPECT_EQ(desk.changedSince(before), Tags{slider});
      EXPECT_NEAR(desk.values()[slider], 0.5F + 0.13F, 1e-5F);
    }
    desk.host.host.calls.clear();
    desk.click(inside.buttons.reset);
    EXPECT_EQ(desk.host.host.calls, edits(sliders));
    for (const int slider : sliders) EXPECT_EQ(desk.values()[slider], 0.5F);
    desk.click(inside.buttons.learn);
    EXPECT_EQ(desk.effect().learning(), target);
    desk.click(inside.buttons.learn);
    EXPECT_EQ(desk.effect().learning(), -1);
    desk.click(inside.buttons.learn);
    desk.click(inside.buttons.clear);  // nothing to clear yet, and still learning
    auto before = desk.values();
    desk.controller(20, 30);
    EXPECT_EQ(desk.changedSince(before), Tags{target});
    desk.controller(20, 90);
    EXPECT_NEAR(desk.values()[target], 90.0F / 127.0F, 1e-6F);
    before = desk.values();
    desk.click(inside.buttons.clear);
    desk.controller(20, 10);
    EXPECT_EQ(desk.changedSince(before), Tags{});
    desk.click(inside.buttons.close);
    EXPECT_EQ(desk.editor().shownFrame()->getModalView(), nullptr);
  }
  desk.host.set(17, 0.9F);
  desk.host.set(50, 0.1F);
  desk.host.host.calls.clear();
  desk.click(199);
  EXPECT_EQ(desk.host.host.calls, edits({17, 50}));
  EXPECT_EQ(desk.values()[17], 0.5F);
  EXPECT_EQ(desk.values()[50], 0.5F);
}

TEST(Editor, DotsTellWhatMovesAKnob) {
  EditorDesk desk;
  constexpr std::uint32_t kFollower = 0xE36C6C, kLfo = 0x7ABC52, kSequencer = 0x96ADB0;
  constexpr std::uint32_t kController = 0xF0C448;
  const std::map<int, std::vector<std::uint32_t>> tints = {{1032, {kFollower, kLfo, kSequencer}},
                                                           {1033, {kLfo, kSequencer}},
                                                           {1034, {kFollower, kSequencer}},
                                                           {1035, {kFollower, kLfo}}};
  for (const layout::Panel& panel : layout::kPanels) {
    SCOPED_TRACE(panel.knob);
    desk.showGroup(groupOf(panel.knob));
    const auto dot = [&](std::size_t i) {
      return desk.window->pixel(panel.marks.x + 6 * static_cast<int>(i) + 1, panel.marks.y + 1);
    };
    const std::vector<std::uint32_t>& wanted = tints.at(panel.picture);
    const std::span amounts = findRow(panel.knob)->panel->amounts;
    std::size_t i = 0;
    for (; i < wanted.size(); ++i) {
      const std::uint32_t bare = dot(i);
      desk.host.set(amounts[i], 0.4F);
      desk.tick();
      EXPECT_EQ(dot(i), wanted[i]);
      desk.host.set(amounts[i], 0.50001F);
      desk.tick();
      EXPECT_EQ(dot(i), bare);
    }
    const std::uint32_t bare = dot(i);
    desk.effect().beginLearn(panel.knob);
    desk.controller(20, 30);
    desk.tick();
    EXPECT_EQ(dot(i), kController);
    desk.effect().clearBindings(panel.knob);
    desk.tick();
    EXPECT_EQ(dot(i), bare);
  }
}

// Lines at a quarter and three quarters of a cycle, -1 to 1.
TEST(Editor, TheWaveIsDrawnAsItsStyleSounds) {
  EditorDesk desk;
  constexpr CRect kScreen{253, 288, 471, 353};
  const struct {
    float style, wave, first, last;
  } rows[] = {{0.0F, 0.0F, 1.0F, -1.0F},    {0.0F, 0.25F, 1.0F, -1.0F}, {0.0F, 0.5F, 0.43F, -0.46F},
              {0.0F, 0.75F, 0.85F, -0.85F}, {1.0F, 0.0F, 1.0F, -1.0F},  {1.0F, 0.25F, -1.0F, 1.0F},
              {1.0F, 0.5F, -0.5F, 0.5F},    {1.0F, 0.75F, -0.5F, -0.5F}};
  desk.showGroup(layout::lfoPage);
  for (const auto& [style, wave, first, last] : rows) {
    SCOPED_TRACE(testing::Message() << style << ' ' << wave);
    desk.host.set(65, style);
    desk.host.set(11, wave);
    for (int i = 0; i < 4; ++i) desk.tick();
    for (const auto& [quarters, level] : {std::pair{1, first}, {3, last}}) {
      const int x = kScreen.left + kScreen.width() * quarters / 4;
      int y = kScreen.top;
      while (y < kScreen.bottom && (desk.window->pixel(x, y) & 0xFF0000U) == 0) ++y;
      EXPECT_NEAR(static_cast<float>(y - kScreen.top), 63.0F - (0.5F + 0.5F * level) * 61.0F, 2.0F);
    }
  }
}

TEST(Editor, PagesFollowTheEffectAndSwitchesTheMouse) {
  EditorDesk desk;
  desk.host.set(62, 1.0F);
  desk.host.set(165, 0.5F);
  desk.reopen();
  const auto shown = [&](int tag) { return desk.editor().getControl(tag)->isShown(); };
  EXPECT_TRUE(shown(0) && shown(60) && shown(10) && shown(12));
  EXPECT_FALSE(shown(3) || shown(61) || shown(6) || shown(66) || shown(165));
  desk.click(65);
  EXPECT_TRUE(shown(66));
  EXPECT_FALSE(shown(13));
  const CPoint strip = desk.middleOf(164);
  desk.click({strip.x + 80, strip.y});
  EXPECT_TRUE(shown(68));
  desk.press({strip.x - 80, strip.y});
  EXPECT_TRUE(shown(67));
  desk.move(strip);
  EXPECT_TRUE(shown(64));
  desk.editor().close();  // with the strip held
  desk.host.set(165, 1.0F);
  desk.reopen();
  EXPECT_TRUE(shown(68));
  desk.click(62);
  EXPECT_TRUE(shown(3));
  for (const int on : {1, 0}) {
    desk.click(222);
    EXPECT_EQ(desk.effect().value(222).integer, on);
  }
  const struct {
    int tag;
    int row;
    int group;
  } menus[] = {{61, 5, 1}, {60, 9, 2}, {15, 3, 5}, {15, 4, 5}};
  for (const auto& [tag, row, group] : menus) {
    desk.showGroup(group);
    desk.click(tag);
    auto* const menu = static_cast<KvOptionMenu*>(desk.editor().getControl(tag));
    const CRect list = menu->getListRect();
    desk.click({list.left + 10, list.top + 17 * row + 9});
    EXPECT_EQ(desk.effect().value(tag).integer, row) << tag;
  }
}

TEST(Editor, ATickDrawsWhatMovedAndNoMore) {
  EditorDesk desk;
  desk.showGroup(layout::followerPage);
  for (int i = 0; i < 400; ++i) desk.tick();  // ramps have come to their ends
  const auto drawn = [&desk] {
    desk.window->forgetShows();
    desk.tick();
    return desk.window->shownPixels();
  };
  const auto area = [&desk](int tag) {
    const CRect& rect = desk.editor().getControl(tag)->getViewSize();
    return long{rect.width()} * rect.height();
  };
  const long traces = area(67) + area(200) + area(201);
  EXPECT_EQ(drawn(), traces);
  desk.host.set(58, 0.9F);  // on the page that is hidden
  desk.host.set(33, 0.9F);  // in a panel that is closed: a dot alone
  EXPECT_EQ(drawn(), traces + 18L * 4);
  desk.host.set(4, 0.9F);  // its ring follows within its rectangle
  EXPECT_EQ(drawn(), traces + area(4));
}

TEST(Editor, ReadoutsComeUpWithATouchAndSayTheSetting) {
  EditorDesk desk;
  const struct {
    int knob, readout, group;
    float value;
    const char* text;
  } cases[] = {{6, 147, 3, 0.0F, "OFF"},      {6, 147, 3, 1.0F, "7244Hz"},
               {7, 145, 3, 1.0F, "1150.0ms"}, {9, 144, 3, 0.5F, "0.0db"},
               {8, 146, 3, 0.0F, "2.6ms"},    {13, 150, 6, 0.5F, "-12.0db"},
               {14, 152, 5, 0.25F, "25.0%"}};
  for (const auto& c : cases) {
    desk.showGroup(c.group);
    desk.host.set(c.knob, c.value);
    auto* const readout = static_cast<KvDisplay*>(desk.editor().getControl(c.readout));
    for (int i = 0; i < 10; ++i) desk.tick();
    EXPECT_FALSE(readout->isVisible());
    desk.press(desk.middleOf(c.knob));
    EXPECT_TRUE(readout->isVisible());
    EXPECT_EQ(readout->text(), c.text);
    desk.release(desk.middleOf(c.knob));
    desk.window->leave();
  }
}

/// Answers at once with what a test has chosen.
struct Chooser final : FileDialogs {
  Chooser() { setFileDialogs(this); }
  ~Chooser() override { setFileDialogs(nullptr); }
  void load(const FileQuestion& /*question*/, FileAnswer answer) override { answer(chosen); }
  void save(const FileQuestion& /*question*/, FileAnswer answer) override { answer(chosen); }
  void folder(const FileQuestion& /*question*/, FileAnswer answer) override { answer(chosen); }
  void cancel(void* /*owner*/) override {}
  std::optional<std::string> chosen;
};

class EditorPresets : public SettingsTest {
 protected:
  void SetUp() override {
    SettingsTest::SetUp();
    writeSettingString(kContentPath, internal("content/"));
    fs::create_directories(folder / "one/deep");
    fs::create_directories(folder / "content/Presets");
    EditorDesk writer;  // the first one there is fills in the settings
    writeSettingString(kPresetPath, internal("one"));
    for (const auto& [file, cutoff] : {std::pair{"one/a.kvz", 0.1F},
                                       {"one/b.kvz", 0.2F},
                                       {"one/deep/c.kvz", 0.3F},
                                       {"one/deep/e.kvz", 0.5F},
                                       {"content/Presets/d.kvz", 0.4F}}) {
      writer.host.set(3, cutoff);
      writer.effect().savePreset(internal(file).c_str(), 0, nullptr, false);
    }
  }
};

TEST_F(EditorPresets, AreChosenSavedAndLookedForFromTheWindow) {
  Chooser dialogs;
  EditorDesk desk;
  auto& menu = static_cast<KvOptionMenu&>(*desk.editor().getControl(162));
  const auto choose = [&](int row) {
    desk.click(162);
    const CRect list = menu.getListRect();
    desk.click({list.left + 10, list.top + 1 + 17 * row + 8});
  };
  const auto marked = [&] {
    desk.click(162);
    const CRect list = menu.getListRect();
    std::vector<int> found;
    for (int row = 0; row < menu.getNbEntries(); ++row) {
      const int middle = list.top + 1 + 17 * row + 8;
      if (desk.window->pixel(list.left + 3, middle - 1) != 0) found.push_back(row);
    }
    desk.tap(keys::kEscape);
    return found;
  };
  const auto rows = [&menu] {
    std::string all;
    std::string text;
    for (int i = 0; menu.getEntry(i, text); ++i) all += text + ' ';
    return all;
  };
  EXPECT_EQ(rows(), "Save Preset --Presets-- deep a b ");
  desk.host.host.calls.clear();
  choose(4);
  EXPECT_EQ(desk.values()[3], 0.2F);
  EXPECT_EQ(desk.host.host.calls.back()[0], audioMasterUpdateDisplay);
  desk.tick();
  EXPECT_EQ(menu.currentText(), "b");
  EXPECT_EQ(marked(), std::vector{4});
  desk.click(209);
  EXPECT_EQ(menu.currentText(), "e");
  EXPECT_EQ(marked(), std::vector{2});  // the folder that it is in
  desk.click(210);
  EXPECT_EQ(desk.values()[3], 0.3F);

  desk.host.set(3, 0.9F);
  choose(0);  // and cancel
  EXPECT_EQ(menu.currentText(), "c");
  EXPECT_EQ(rows(), "Save Preset --Presets-- deep a b ");
  dialogs.chosen = internal("one/mine");
  choose(0);
  EXPECT_EQ(rows(), "Save Preset --Presets-- deep a b mine ");
  EXPECT_EQ(menu.currentText(), "mine");
  choose(3);
  EXPECT_EQ(desk.values()[3], 0.1F);
  putText(folder / "one/b.kvz", "damaged");
  choose(4);
  EXPECT_EQ(desk.values()[3], 0.1F);
  EXPECT_TRUE(WindowServices::get().isMessageOpen());
  WindowServices::get().getMessageWindow()->getFrame().onKeyDown({0, keys::kReturn, 0});
  desk.tick();
  EXPECT_EQ(menu.currentText(), "a");

  desk.click(221);
  EXPECT_TRUE(desk.editor().aboutIsOpen());
  const auto& folderLine =
      *static_cast<KvTextView*>(desk.editor().getAboutPanel()->children().back().get());
  EXPECT_EQ(folderLine.getText(), (folder / "one").string());
  dialogs.chosen = internal("content/Presets");
  desk.click(203);
  EXPECT_EQ(rows(), "Save Preset --Presets-- d ");
  EXPECT_EQ(folderLine.getText(), (folder / "content/Presets").string());
  dialogs.chosen = internal("one");
  desk.click(203);
  desk.click(205);
  EXPECT_EQ(rows(), "Save Preset --Presets-- d ");
  EXPECT_EQ(readSettingString(kPresetPath), internal("content/Presets/"));
  const auto answerMessage = [&desk](const char* word) {
    ASSERT_TRUE(WindowServices::get().isMessageOpen()) << word;
    WindowServices::get().getMessageWindow()->getFrame().onKeyDown({0, keys::kReturn, 0});
    desk.tick();
  };
  for (const std::string& none : {""s, internal("elsewhere")}) {
    writeSettingString(kContentPath, none);
    desk.click(205);
    answerMessage("RESET");
    EXPECT_EQ(readSettingString(kPresetPath), internal("content/Presets/"));
  }
  desk.click(204);
  answerMessage("MANUAL");        // there is none, either
  desk.click(desk.middleOf(62));  // the panel lies over it
  EXPECT_FALSE(desk.editor().aboutIsOpen());
  EXPECT_EQ(desk.effect().value(62).integer, 0);
}

TEST(Editor, TheRowUnderThePointerReadsAsWellAsTheOthers) {
  EditorDesk desk;
  desk.click(162);
  const CRect list = static_cast<KvOptionMenu*>(desk.editor().getControl(162))->getListRect();
  desk.move({list.left + 10, list.top + 10}, 0);
  const auto light = [&desk](int x, int y) {  // as it is seen, of 1
    const auto part = [pixel = desk.window->pixel(x, y)](unsigned shift) {
      return std::pow(static_cast<double>(pixel >> shift & 0xFFU) / 255.0, 2.2);
    };
    return 0.2126 * part(16) + 0.7152 * part(8) + 0.0722 * part(0);
  };
  double darkest = 1.0;
  double lightest = 0.0;
  for (int y = list.top + 3; y < list.top + 16; ++y) {
    for (int x = list.left + 5; x < list.right - 5; ++x) {
      darkest = std::min(darkest, light(x, y));
      lightest = std::max(lightest, light(x, y));
    }
  }
  EXPECT_GT(darkest, 0.0);  // it is lit
  EXPECT_GE((lightest + 0.05) / (darkest + 0.05), 7.0);
}

TEST(Editor, TwoWindowsShareThePicturesAndKeysRollTheDice) {
  EditorDesk one;
  EditorDesk two;
  CBitmap* const strip = one.editor().getBitmap(1008);
  ASSERT_NE(strip, nullptr);
  EXPECT_EQ(strip, two.editor().getBitmap(1008));
  one.editor().close();
  two.reopen();
  EXPECT_NE(two.editor().getBitmap(1008), nullptr);
  EXPECT_EQ(two.editor().getBitmap(1059), nullptr);
  const auto before = two.values();
  two.key(keys::kF1);
  EXPECT_EQ(two.changedSince(before), Tags{});
  two.key(keys::kF1 + 1);
  EXPECT_GT(two.changedSince(before).size(), 40U);
  for (const auto& [tag, value] : two.values()) {
    EXPECT_TRUE(value >= 0.0F && value <= 1.0F);
    const auto& row = parameterRows()[static_cast<std::size_t>(rowOfTag(tag))];
    EXPECT_TRUE(!isAmount(row.rule) || std::abs(value - 0.5F) <= 0.25F) << tag;
  }
}

TEST(Editor, RollsTheDiceOnceForAKeyThatIsHeld) {
  EditorDesk desk;
  const WindowKey dice{0, keys::kF1 + 1, 0};
  const auto fromHost = [&](int opcode) { desk.host.dispatch(opcode, 0, dice.virt); };
  // Pressed and released in the window, d and u, or by the host, D and U; a dot is a tick.
  const std::pair<std::string, int> cases[] = {
      {"d.d.du..d", 2},
      {"d.ud.ud", 1},  // a server that tells of a release ahead of each repeat
      {"D.DUD.dU..D", 2},
      {"d" + std::string(60, '.') + "d", 2},  // the focus was elsewhere when it was released
  };
  for (const auto& [steps, rolls] : cases) {
    int rolled = 0;
    for (const char step : steps + "U...") {
      const auto before = desk.values();
      if (step == 'd') desk.window->keyDown(dice);
      if (step == 'u') desk.window->keyUp(dice);
      if (step == 'D') fromHost(effEditKeyDown);
      if (step == 'U') fromHost(effEditKeyUp);
      if (step == '.') desk.tick();
      if (step == 'd' || step == 'u') desk.editor().shownFrame()->idle();
      rolled += desk.changedSince(before).empty() ? 0 : 1;
    }
    EXPECT_EQ(rolled, rolls) << steps;
  }
  desk.press(desk.middleOf(4));
  const auto before = desk.values();
  desk.key(dice.virt);
  EXPECT_EQ(desk.changedSince(before), Tags{});  // not while a knob is held
}

TEST(Editor, EscapeClosesWhatIsOnTopAndNoMore) {
  EditorDesk desk;
  const auto isOpen = [&] { return desk.editor().shownFrame()->getModalView() != nullptr; };
  const auto escape = [&] {
    desk.key(keys::kEscape);
    desk.key(keys::kEscape);  // held
    desk.window->keyUp({0, keys::kEscape, 0});
    for (int i = 0; i < 3; ++i) desk.tick();
    return desk.window->hostKeys().size();
  };
  const std::pair<int, int> opened[] = {
      {3, buttons::kRight}, {221, buttons::kLeft}, {61, buttons::kLeft}};
  std::size_t toHost = 0;
  for (const auto& [tag, button] : opened) {
    desk.click(desk.middleOf(tag), button);
    EXPECT_TRUE(isOpen()) << tag;
    EXPECT_EQ(escape(), ++toHost);  // the release alone
    EXPECT_FALSE(isOpen()) << tag;
  }
  EXPECT_EQ(escape(), toHost + 3);
  desk.click(desk.middleOf(3), buttons::kRight);
  desk.press(desk.middleOf(155));  // ZERO
  EXPECT_EQ(desk.effect().value(155).stepped, 1.0F);
  escape();
  EXPECT_EQ(desk.effect().value(155).stepped, 0.0F);  // let go of
}

}  // namespace
}  // namespace zum::test
