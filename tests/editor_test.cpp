// The window: each control at its place does what it says, and nothing else; hosts open, feed and
// close it as they please.
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "support/chooser.hpp"
#include "support/editor_desk.hpp"
#include "support/settings_user.hpp"

namespace zum::test {
namespace {

using Tags = std::vector<int>;

TEST(Editor, EachKnobMovesItsOwnParameterAndTheHostHearsOfIt) {
  EditorDesk desk;
  std::vector<layout::Knob> knobs(layout::kUpperKnobs.begin(), layout::kUpperKnobs.end());
  knobs.insert(knobs.end(), layout::kLowerKnobs.begin(), layout::kLowerKnobs.end());
  for (const layout::Knob& knob : knobs) {
    SCOPED_TRACE(knob.tag);
    desk.showGroup(knob.group);
    desk.host.set(knob.tag, 0.5F);
    desk.tick();
    const auto before = desk.values();
    desk.host.host.calls.clear();
    desk.drag(knob.tag, 0, -20);
    EXPECT_EQ(desk.changedSince(before), Tags{knob.tag});
    EXPECT_NEAR(desk.value(knob.tag), 0.5F + 0.2F * knob.sensitivity, 1e-5F);
    EXPECT_EQ(desk.host.host.calls, edits({knob.tag}));
    desk.click(knob.tag, buttons::kLeft | buttons::kControl);
    EXPECT_EQ(desk.value(knob.tag), findRow(knob.tag)->home);
    EXPECT_EQ(desk.editor().getControl(knob.tag)->getMouseableArea(),
              knob.rect.grownBy(knob.border));
  }
}

TEST(Editor, EachPanelHoldsItsKnobsAmountsAndLearns) {
  EditorDesk desk;
  for (const layout::Panel& panel : layout::kPanels) {
    SCOPED_TRACE(panel.knob);
    // LEARN of tempo and glide teaches the other one.
    const int target = panel.knob == tag::seqTempo   ? tag::seqGlide
                       : panel.knob == tag::seqGlide ? tag::seqTempo
                                                     : panel.knob;
    const KnobPanel& inside = *findRow(panel.knob)->panel;
    desk.showPageOf(panel.knob);
    const auto initial = desk.values();
    desk.click(panel.knob, buttons::kRight);
    const Tags sliders(inside.amounts.begin(), inside.amounts.end());
    for (const int slider : sliders) {
      const auto before = desk.values();
      desk.drag(slider, 20, 0);
      EXPECT_EQ(desk.changedSince(before), Tags{slider});
      EXPECT_NEAR(desk.value(slider), 0.5F + 0.13F, 1e-5F);
    }
    desk.host.host.calls.clear();
    desk.click(inside.buttons.reset);
    EXPECT_EQ(desk.host.host.calls, edits(sliders));
    EXPECT_EQ(desk.changedSince(initial), Tags{});
    for (const int learning : {target, -1, target}) {
      desk.click(inside.buttons.learn);
      EXPECT_EQ(desk.effect().learning(), learning);
    }
    desk.controller(20, 30);
    EXPECT_EQ(desk.changedSince(initial), Tags{target});
    EXPECT_NEAR(desk.value(target), 30.0F / 127.0F, 1e-6F);
    const auto before = desk.values();
    desk.click(inside.buttons.clear);
    desk.controller(20, 10);
    EXPECT_EQ(desk.changedSince(before), Tags{});
    desk.click(inside.buttons.close);
    EXPECT_EQ(desk.openPopup(), nullptr);
  }
  const auto before = desk.values();
  desk.host.set(tag::cutoffEf, 0.9F);
  desk.host.set(tag::masterEf, 0.1F);
  desk.host.host.calls.clear();
  desk.click(tag::resetAll);
  EXPECT_EQ(desk.host.host.calls, edits({tag::cutoffEf, tag::masterEf}));
  EXPECT_EQ(desk.values(), before);
}

TEST(Editor, DotsTellWhatMovesAKnob) {
  EditorDesk desk;
  constexpr std::uint32_t kFollower = 0xE36C6C, kLfo = 0x7ABC52, kSequencer = 0x96ADB0,
                          kController = 0xF0C448;
  const std::map<int, std::vector<std::uint32_t>> tints = {{1032, {kFollower, kLfo, kSequencer}},
                                                           {1033, {kLfo, kSequencer}},
                                                           {1034, {kFollower, kSequencer}},
                                                           {1035, {kFollower, kLfo}}};
  for (const layout::Panel& panel : layout::kPanels) {
    SCOPED_TRACE(panel.knob);
    desk.showPageOf(panel.knob);
    const std::vector<std::uint32_t>& wanted = tints.at(panel.picture);
    const auto dot = [&](std::size_t place) {
      desk.tick();
      return desk.window->pixel(panel.marks.x + 6 * static_cast<int>(place) + 1, panel.marks.y + 1);
    };
    for (std::size_t i = 0; i < wanted.size(); ++i) {
      const auto dotAt = [&](float amount) {
        desk.host.set(findRow(panel.knob)->panel->amounts[i], amount);
        return dot(i);
      };
      EXPECT_EQ(dotAt(0.4F), wanted[i]);
      EXPECT_NE(dotAt(0.50001F), wanted[i]);
    }
    ControllerMap& map = desk.effect().controllers();
    for (BindingList* list : {&map.controllers[20], &map.aftertouch}) {
      list->append({static_cast<std::int16_t>(panel.knob), 0});
      EXPECT_EQ(dot(wanted.size()), kController);
      list->clear();
      EXPECT_NE(dot(wanted.size()), kController);
    }
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
    desk.host.set(tag::lfoStyle, style);
    desk.host.set(tag::lfoWave, wave);
    desk.tick(4);
    for (const auto& [quarters, level] : {std::pair{1, first}, {3, last}}) {
      const int x = kScreen.left + kScreen.width() * quarters / 4;
      int y = kScreen.top;
      while (y < kScreen.bottom && (desk.window->pixel(x, y) & 0xFF0000U) == 0) ++y;
      EXPECT_NEAR(static_cast<float>(y - kScreen.top), 63.0F - (0.5F + 0.5F * level) * 61.0F, 2.0F);
    }
  }
  desk.host.set(tag::lfoWave, NAN);  // there is no such wave
  desk.tick(4);
}

TEST(Editor, PagesFollowTheEffectAndSwitchesTheMouse) {
  EditorDesk desk;
  desk.host.set(tag::bank, 1.0F);
  desk.host.set(tag::modChoice, 0.5F);
  desk.reopen();
  const auto shown = [&desk](Tags tags) {
    std::erase_if(tags, [&](int tag) { return !desk.editor().getControl(tag)->isShown(); });
    return tags;
  };
  EXPECT_EQ(shown({tag::vowelCutoff, tag::vowelType, tag::lfoRate, tag::lfoTrigOnOff, tag::cutoff,
                   tag::multiType, tag::efFreqRange, tag::triggerCover, tag::modChoice}),
            (Tags{tag::vowelCutoff, tag::vowelType, tag::lfoRate, tag::lfoTrigOnOff}));
  desk.click(tag::lfoStyle);
  EXPECT_EQ(shown({tag::triggerCover, tag::lfoTrigSens}), Tags{tag::triggerCover});
  const Tags pages{tag::followerTrace, tag::lfoTrace, tag::stepTable};
  const CPoint strip = desk.middleOf(tag::pageTabs);
  desk.click({strip.x + 80, strip.y});
  EXPECT_EQ(shown(pages), Tags{tag::stepTable});
  desk.press({strip.x - 80, strip.y});
  EXPECT_EQ(shown(pages), Tags{tag::followerTrace});
  desk.move(strip);
  EXPECT_EQ(shown(pages), Tags{tag::lfoTrace});
  desk.editor().close();  // with the strip held
  desk.host.set(tag::modChoice, 1.0F);
  desk.reopen();
  EXPECT_EQ(shown(pages), Tags{tag::stepTable});
  desk.click(tag::bank);
  EXPECT_EQ(shown({tag::cutoff, tag::vowelCutoff}), Tags{tag::cutoff});
  desk.click(tag::bypass);
  EXPECT_EQ(desk.effect().value(tag::bypass).integer, 1);
  for (const auto& [menu, row] :
       {std::pair(tag::multiType, 5), {tag::vowelType, 9}, {tag::seqMode, 3}}) {
    desk.showPageOf(menu);
    desk.choose(menu, row);
    EXPECT_EQ(desk.effect().value(menu).integer, row) << menu;
  }
}

TEST(Editor, ATickDrawsWhatMovedAndNoMore) {
  EditorDesk desk;
  desk.showGroup(layout::followerPage);
  desk.tick(400);  // ramps have come to their ends
  const auto area = [&desk](int tag) {
    const CRect& rect = desk.editor().getControl(tag)->getViewSize();
    return long{rect.width()} * rect.height();
  };
  const auto drawn = [&desk] {
    desk.window->forgetShows();
    desk.tick();
    return desk.window->shownPixels();
  };
  const long traces = area(tag::followerTrace) + area(tag::meter) + area(tag::meterInverse);
  EXPECT_EQ(drawn(), traces);
  desk.host.set(tag::vowelA, 0.9F);      // on the page that is hidden
  desk.host.set(tag::efRangeSeq, 0.9F);  // in a panel that is closed: a dot alone
  EXPECT_EQ(drawn(), traces + 18L * 4);
  desk.host.set(tag::resonance, 0.9F);  // its ring follows within its rectangle
  EXPECT_EQ(drawn(), traces + area(tag::resonance));
  desk.editor().requestFullRedraw();
  EXPECT_EQ(drawn(), long{layout::kWindow.right} * layout::kWindow.bottom);
}

struct EditorPresets : SettingsTest {};

TEST_F(EditorPresets, AreChosenSavedAndLookedForFromTheWindow) {
  writeSettingString(kContentPath, internal("content/"));
  fs::create_directories(folder / "one/deep");
  fs::create_directories(folder / "content/Presets");
  auto writer = std::make_unique<EditorDesk>();  // the first one there is fills in the settings
  writeSettingString(kPresetPath, internal("one"));
  for (const auto& [file, cutoff] : {std::pair{"one/a.kvz", 0.1F},
                                     {"one/b.kvz", 0.2F},
                                     {"one/deep/c.kvz", 0.3F},
                                     {"one/deep/e.kvz", 0.5F},
                                     {"content/Presets/d.kvz", 0.4F}}) {
    writer->host.set(tag::cutoff, cutoff);
    writer->effect().savePreset(internal(file).c_str(), 0, nullptr, false);
  }
  writer.reset();
  Chooser dialogs;
  EditorDesk desk;
  const KvOptionMenu& menu = desk.menu(tag::presetMenu);
  const auto choose = [&](int row) { desk.choose(tag::presetMenu, row); };
  const auto rows = [&menu] {
    std::string all, text;
    for (int i = 0; menu.getEntry(i, text); ++i) all += text + ' ';
    return all;
  };
  const auto answerMessage = [&desk](const char* word) {
    ASSERT_TRUE(WindowServices::get().isMessageOpen()) << word;
    desk.boxes["ZUM"]->keyDown({0, keys::kReturn, 0});
    desk.tick();
  };
  EXPECT_EQ(rows(), "Save Preset --Presets-- deep a b ");
  desk.host.host.calls.clear();
  choose(4);
  EXPECT_EQ(desk.value(tag::cutoff), 0.2F);
  EXPECT_EQ(desk.host.host.calls.back()[0], audioMasterUpdateDisplay);
  desk.tick();
  EXPECT_EQ(menu.currentText(), "b");
  desk.click(tag::nextProgram);
  EXPECT_EQ(menu.currentText(), "e");
  desk.click(tag::previousProgram);
  EXPECT_EQ(desk.value(tag::cutoff), 0.3F);

  choose(0);  // and cancel
  EXPECT_EQ(menu.currentText(), "c");
  dialogs.chosen = internal("one/mine");
  choose(0);
  EXPECT_EQ(rows(), "Save Preset --Presets-- deep a b mine ");
  EXPECT_EQ(menu.currentText(), "mine");
  choose(3);
  EXPECT_EQ(desk.value(tag::cutoff), 0.1F);
  putText(folder / "one/b.kvz", "damaged");
  choose(4);
  answerMessage("damaged");
  EXPECT_EQ(menu.currentText(), "a");

  desk.click(tag::about);
  dialogs.chosen = internal("content/Presets");
  desk.click(tag::choosePresetFolder);
  EXPECT_EQ(rows(), "Save Preset --Presets-- d ");
  writeSettingString(kContentPath, internal("elsewhere"));
  desk.click(tag::resetPresetFolder);
  answerMessage("RESET");
  dialogs.chosen = internal("one");
  desk.click(tag::choosePresetFolder);
  writeSettingString(kContentPath, internal("content/"));
  desk.click(tag::resetPresetFolder);
  EXPECT_EQ(readSettingString(kPresetPath), internal("content/Presets/"));
  desk.click(tag::manual);
  answerMessage("MANUAL");  // there is none, either
}

TEST(Editor, OpensAgainAndAgainAndTwoWindowsShareThePictures) {
  constexpr int kKnobPicture = 1008;
  EditorDesk one;
  EditorDesk two;
  ERect* size = nullptr;
  EXPECT_EQ(one.host.dispatch(effEditGetRect, 0, 0, &size), 1);
  EXPECT_EQ(std::pair(size->right - size->left, size->bottom - size->top), std::pair(508, 470));
  for (int i = 0; i < 2; ++i) {
    CBitmap* const shared = one.editor().getBitmap(kKnobPicture);
    ASSERT_NE(shared, nullptr);
    for (const int none : {-1, 0, 999, 1059}) EXPECT_EQ(one.editor().getBitmap(none), nullptr);
    one.editor().close();
    one.editor().close();
    one.tick();  // hosts go on
    EXPECT_EQ(two.editor().getBitmap(kKnobPicture), shared);
    two.editor().close();
    EXPECT_FALSE(two.editor().open(nullptr, [](const auto&, auto&) { return nullptr; }));
    EXPECT_EQ(two.editor().getBitmap(kKnobPicture), nullptr);
    two.reopen();
    one.reopen();
  }
}

TEST(Editor, MayBeClosedByTheHostFromInsideOfWhatAControlTells) {
  for (const auto call : {audioMasterBeginEdit, audioMasterAutomate, audioMasterEndEdit}) {
    EditorDesk desk;
    desk.host.host.calls.clear();
    desk.host.host.onCall = [&](std::int32_t opcode) {
      if (opcode == call) desk.editor().close();
    };
    const CPoint knob = desk.middleOf(tag::cutoff);
    desk.window->press(knob.x, knob.y);
    desk.window->move(knob.x, knob.y - 5, buttons::kLeft);
    desk.window->release(knob.x, knob.y);
    desk.tick(2);
    EXPECT_FALSE(desk.editor().isOpen());
    EXPECT_EQ(desk.host.host.calls.back(), edits({tag::cutoff}).back());
  }
}

TEST(Editor, HoldsNothingOnceItsWindowIsGone) {
  EditorDesk desk;
  desk.press(desk.middleOf(tag::cutoff));
  ASSERT_EQ(desk.host.host.calls.back().front(), audioMasterBeginEdit);
  desk.window->vanish();
  desk.tick();
  EXPECT_EQ(desk.host.host.calls.back(), edits({tag::cutoff}).back());
  EXPECT_TRUE(desk.editor().isOpen());
}

TEST(Editor, RollsTheDiceOnceForAKeyThatIsHeldAndHandsOtherKeysToTheHost) {
  EditorDesk desk;
  const WindowKey dice{0, keys::kF1 + 1, 0};
  // Pressed and released in the window, d and u, or by the host, D and U; a dot is a tick, s are
  // two seconds.
  const std::pair<std::string, int> cases[] = {
      {"d.d.du..d", 2},
      {"d.ud.ud", 1},  // a server that tells of a release ahead of each repeat
      {"D.DUD.dU..D", 2},
      {"d" + std::string(60, '.') + "du", 1},  // a host that ticks fast
      {"d" + std::string(60, '.') + "sd", 2},  // the focus was elsewhere when it was released
  };
  for (const auto& [steps, rolls] : cases) {
    int rolled = 0;
    for (const char step : steps + "U...") {
      const auto before = desk.values();
      if (step == 'd') desk.window->keyDown(dice);
      if (step == 'u') desk.window->keyUp(dice);
      EXPECT_TRUE(step != 'D' || desk.host.dispatch(effEditKeyDown, 0, dice.virt) == 1);
      if (step == 'U') desk.host.dispatch(effEditKeyUp, 0, dice.virt);
      if (step == '.') desk.tick();
      if (step == 's') std::this_thread::sleep_for(std::chrono::seconds(2));
      if (step == 'd' || step == 'u') desk.editor().shownFrame()->idle();
      if (desk.values() != before) ++rolled;
    }
    EXPECT_EQ(rolled, rolls) << steps;
  }
  desk.press(desk.middleOf(tag::resonance));
  const auto before = desk.values();
  desk.key(dice.virt);  // not while a knob is held
  desk.key(keys::kF1);
  EXPECT_EQ(desk.values(), before);
  EXPECT_EQ(desk.window->hostKeys().back().virt, keys::kF1);
  EXPECT_EQ(desk.host.dispatch(effEditKeyDown, 0, keys::kHome), 0);
  EXPECT_EQ(desk.host.dispatch(effEditKeyUp, 0, keys::kHome), 0);
  for (const int opcode : {effEditMouse, effEditKey}) EXPECT_EQ(desk.host.dispatch(opcode), 0);
  // The release goes where the press went, whatever has become of the letter.
  EXPECT_EQ(
      desk.host.dispatch(effEditKeyDown, 'Z', 0, nullptr, keys::kControlBit | keys::kShiftBit), 1);
  EXPECT_EQ(desk.host.dispatch(effEditKeyUp, 'z', 0), 1);
  EXPECT_EQ(desk.host.dispatch(effEditKeyUp, 'z', 0), 0);
}

TEST(Editor, WhatOneDoesIsOneStepOfTheWayBack) {
  EditorDesk desk;
  const auto wheel = [&](int tag, int notches) {
    for (; notches > 0; --notches) {
      const CPoint at = desk.middleOf(tag);
      desk.window->wheel(at.x, at.y, -1.0F, 0);
      desk.tick(3);
    }
  };
  const auto draw = [&] {
    desk.showGroup(groups::sequencerPage);
    desk.drag(tag::stepTable, 60, 20);
  };
  const auto reset = [&] {
    desk.host.set(tag::cutoffEf, 0.9F);
    desk.click(tag::resetAll);
  };
  const struct {
    const char* name;
    std::function<void()> act;
    int steps = 1;
  } rows[] = {{"Cutoff", [&] { desk.drag(tag::cutoff, 0, -20); }},
              {"Resonance", [&] { wheel(tag::resonance, 3); }},
              {"Mix",
               [&] {
                 wheel(tag::mixDryWet, 3);
                 desk.tick(20);  // rests
                 wheel(tag::mixDryWet, 2);
               },
               2},
              {"Steps", draw},
              {"Steps", [&] { wheel(tag::stepTable, 3); }},
              {"Zero all mod", reset},
              {"Bank", [&] { desk.drag(tag::bank, 12, 0); }},
              {"Randomise", [&] { desk.tap(keys::kF1 + 1); }}};
  for (const auto& row : rows) {
    row.act();
    EXPECT_EQ(desk.effect().undoName().value_or("none"), row.name);
    const std::string after = desk.host.state();
    for (int i = 0; i < row.steps; ++i) EXPECT_TRUE(desk.effect().undo());
    EXPECT_FALSE(desk.effect().canUndo()) << row.name;
    for (int i = 0; i < row.steps; ++i) EXPECT_TRUE(desk.effect().redo());
    EXPECT_TRUE(desk.host.state() == after) << row.name;
    desk.host.load(after);
  }
  desk.click(tag::mouseArea);
  EXPECT_FALSE(desk.effect().canUndo()) << "a page";
}

TEST(Editor, EscapeClosesWhatIsOnTopAndNoMore) {
  EditorDesk desk;
  const auto escape = [&] {
    desk.key(keys::kEscape);
    desk.tap(keys::kEscape);  // held
    desk.tick();
    return desk.window->hostKeys().size();
  };
  for (const auto& [tag, button] : {std::pair(tag::cutoff, buttons::kRight),
                                    {tag::about, buttons::kLeft},
                                    {tag::multiType, buttons::kLeft}}) {
    desk.click(tag, button);
    EXPECT_NE(desk.openPopup(), nullptr) << tag;
    EXPECT_EQ(escape(), 0U);
    EXPECT_EQ(desk.openPopup(), nullptr) << tag;
  }
  EXPECT_EQ(escape(), 3U);
  desk.click(tag::cutoff, buttons::kRight);
  desk.press(desk.middleOf(tag::cutoffPanel.reset));
  escape();
  EXPECT_EQ(desk.effect().value(tag::cutoffPanel.reset).stepped, 0.0F);  // let go of
}

}  // namespace
}  // namespace zum::test
