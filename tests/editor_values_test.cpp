// What the window says in numbers and takes from the keyboard: values over the status strip, the
// focus and its walk, values that are typed, and the tree of all controls.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <utility>

#include "editor/value_field.hpp"
#include "editor/value_strip.hpp"
#include "support/editor_desk.hpp"
#include "toolkit/key_focus.hpp"

namespace zum::test {
namespace {

class ValuesDesk : public EditorDesk {
 public:
  /// "CUTOFF 438 Hz" or "CUTOFF LFO +40 %", and behind an arrow where modulators have it.
  std::string strip() {
    const Reading& read = child<ValueStrip>().reading();
    std::string line = read.name;
    for (const std::string& part : {read.by, read.value}) line += part.empty() ? "" : ' ' + part;
    return read.moved.empty() ? line : line + " > " + read.moved;
  }
  const ValueField& field() { return child<ValueField>(); }
  int focus() {
    const KvControl* const view = editor().shownFrame()->keyFocus().get();
    return view != nullptr ? view->getTag() : -1;
  }
  void focusOn(int tag) {
    for (int i = 0; i < 60 && focus() != tag; ++i) tap(keys::kTab);
    ASSERT_EQ(focus(), tag);
  }
  void tapWith(std::uint8_t virt, std::uint8_t modifier) {
    window->keyDown({0, virt, modifier});
    window->keyUp({0, virt, modifier});
    tick(3);
  }
  HostCalls takeCalls() { return std::exchange(host.host.calls, {}); }

 private:
  template <class View>
  const View& child() {
    for (const auto& view : editor().shownFrame()->children()) {
      if (const auto* const found = dynamic_cast<const View*>(view.get())) return *found;
    }
    throw std::logic_error("no such view");
  }
};

TEST(EditorValues, StandOverTheStatusStripWhileAKnobIsInUse) {
  ValuesDesk desk;
  desk.host.set(tag::cutoff, 0.4F);
  desk.window->move(desk.middleOf(tag::cutoff).x, desk.middleOf(tag::cutoff).y);
  desk.tick();
  EXPECT_EQ(desk.strip(), "");  // the pointer may be on its way
  desk.tick(2);
  EXPECT_EQ(desk.strip(), "CUTOFF 1570 Hz");
  desk.window->move(2, 2);
  desk.tick(4);
  EXPECT_NE(desk.strip(), "");
  desk.tick(4);
  EXPECT_EQ(desk.strip(), "");
  const CPoint knob = desk.middleOf(tag::resonance);
  desk.host.set(tag::resonance, 0.5F);
  desk.tick();
  desk.press(knob);
  EXPECT_EQ(desk.strip(), "RESONANCE 50 %");
  desk.move({knob.x, knob.y - 20});
  EXPECT_EQ(desk.strip(), "RESONANCE 56 %");
  desk.release(knob);
  desk.host.set(tag::resoSeq, 0.7F);
  desk.tick(3);
  EXPECT_EQ(desk.strip().substr(0, 17), "RESONANCE 56 % > ");
  desk.click(tag::resonance, buttons::kRight);
  desk.press(desk.middleOf(tag::resoSeq));
  EXPECT_EQ(desk.strip(), "RESONANCE SEQ +40 %");
  desk.release({2, 2});
  desk.click(tag::resonancePanel.learn);
  desk.press(desk.middleOf(tag::resoSeq));
  EXPECT_EQ(desk.strip(), "");  // the strip asks for a controller
}

TEST(EditorValues, NoKeyMeansAnythingBeforeTabAndAfterEscape) {
  ValuesDesk desk;
  const auto before = desk.values();
  const auto tapAll = [&desk] {
    for (const std::uint8_t virt :
         {keys::kLeft, keys::kUp, keys::kRight, keys::kDown, keys::kPageUp, keys::kPageDown,
          keys::kHome, keys::kEnd, keys::kSpace, keys::kReturn, keys::kDelete, keys::kEscape}) {
      desk.tap(virt);
    }
    return desk.window->hostKeys().size();
  };
  EXPECT_EQ(tapAll(), 24U);
  desk.tap(keys::kTab);
  EXPECT_GE(desk.focus(), 0);
  desk.tap(keys::kEscape);
  EXPECT_EQ(desk.focus(), -1);
  const std::size_t toHost = desk.window->hostKeys().size();
  EXPECT_EQ(tapAll(), toHost + 24);
  desk.tapWith(keys::kTab, keys::kAltBit);
  EXPECT_EQ(desk.focus(), -1);
  desk.tap(keys::kTab);
  desk.click(tag::cutoff);  // a press takes the mark away, and the walk goes on from there
  EXPECT_EQ(desk.focus(), -1);
  desk.tap(keys::kTab);
  EXPECT_EQ(desk.focus(), tag::cutoff);
  EXPECT_EQ(desk.changedSince(before), std::vector<int>{});
}

TEST(EditorValues, TheWalkReadsThePageAndComesBackToItsStart) {
  ValuesDesk desk;
  desk.showGroup(layout::filterPage);
  desk.showGroup(layout::followerPage);
  const std::vector<int> wanted = {
      tag::previousProgram, tag::presetMenu, tag::nextProgram, tag::about,    tag::bypass,
      tag::multiType,       tag::bank,       tag::overdrive,   tag::cutoff,   tag::resonance,
      tag::resetAll,        tag::mouseArea,  tag::efFreqRange, tag::efAttack, tag::efRelease,
      tag::efGain,          tag::mixDryWet,  tag::master};
  for (int round = 0; round < 2; ++round) {
    for (const int tag : wanted) {
      desk.tap(round == 0 || tag == wanted.front() ? keys::kTab : keys::kRight);
      EXPECT_EQ(desk.focus(), tag);
    }
  }
  for (std::size_t i = wanted.size() - 1; i-- > 0;) {
    desk.tapWith(keys::kTab, keys::kShiftBit);
    EXPECT_EQ(desk.focus(), wanted[i]);
  }
  desk.focusOn(tag::cutoff);
  desk.host.set(tag::bank, 1.0F);  // its page goes
  desk.tick();
  EXPECT_EQ(desk.focus(), -1);
}

TEST(EditorValues, KeysMoveWhatHasTheFocusInOneEditAHold) {
  ValuesDesk desk;
  desk.focusOn(tag::resonance);
  const struct {
    std::uint8_t virt;
    std::uint8_t modifier;
    float from, to;
  } rows[] = {{keys::kUp, 0, 0.5F, 0.5175F},
              {keys::kDown, 0, 0.5F, 0.4825F},
              {keys::kUp, 1, 0.5F, 0.5055F},
              {keys::kPageUp, 0, 0.5F, 0.6F},
              {keys::kPageDown, 0, 0.5F, 0.4F},
              {keys::kHome, 0, 0.5F, 0.0F},
              {keys::kEnd, 0, 0.5F, 1.0F},
              {keys::kUp, 0, 1.0F, 1.0F},
              {keys::kDelete, 0, 0.5F, findRow(tag::resonance)->home}};
  for (const auto& [virt, modifier, from, to] : rows) {
    SCOPED_TRACE(int{virt});
    desk.host.set(tag::resonance, from);
    desk.tick();
    desk.takeCalls();
    desk.tapWith(virt, modifier);
    EXPECT_NEAR(desk.value(tag::resonance), to, 1e-5F);
    EXPECT_EQ(desk.takeCalls(), edits({tag::resonance}));
  }
  EXPECT_EQ(desk.strip(), "RESONANCE 0 %");
  // Held, with and without a release ahead of each repeat; and held when the window goes.
  for (const bool releases : {false, true}) {
    for (int i = 0; i < 6; ++i) {
      if (releases && i > 0) desk.window->keyUp({0, keys::kUp, 0});
      desk.key(keys::kUp);
    }
    EXPECT_EQ(desk.host.host.calls.size(), 7U);
    desk.window->keyUp({0, keys::kUp, 0});
    desk.tick(3);
    EXPECT_EQ(desk.takeCalls(), edits({tag::resonance}, 6));
  }
  desk.key(keys::kUp);
  desk.window->setFocus(true);
  desk.tick();
  desk.window->setFocus(false);
  desk.tick();
  EXPECT_EQ(desk.takeCalls(), edits({tag::resonance}));
  desk.key(keys::kDown);
  desk.press(desk.middleOf(tag::overdrive));
  desk.release(desk.middleOf(tag::overdrive));
  HostCalls both = edits({tag::resonance});
  for (const auto& call : edits({tag::overdrive}, 0)) both.push_back(call);
  EXPECT_EQ(desk.takeCalls(), both);
  desk.focusOn(tag::resonance);
  desk.key(keys::kDown);
  desk.editor().close();
  EXPECT_EQ(desk.takeCalls(), edits({tag::resonance}));
}

TEST(EditorValues, KeysPressOpenAndChoose) {
  ValuesDesk desk;
  desk.showGroup(layout::sequencerPage);
  desk.focusOn(tag::bypass);
  EXPECT_EQ(desk.strip(), "BYPASS OFF");
  desk.tap(keys::kSpace);
  EXPECT_EQ(desk.strip(), "BYPASS ON");
  desk.focusOn(tag::multiType);
  desk.host.set(tag::multiType, 0.25F);
  desk.tick();
  desk.tap(keys::kDown);
  EXPECT_EQ(desk.effect().value(tag::multiType).integer, 3);
  for (const std::uint8_t key : {keys::kSpace, keys::kDown, keys::kReturn}) desk.tap(key);
  EXPECT_EQ(desk.effect().value(tag::multiType).integer, 4);
  EXPECT_EQ(desk.focus(), tag::multiType);
  desk.focusOn(tag::cutoff);
  desk.tap(keys::kSpace);  // its panel; the focus walks inside
  ASSERT_NE(desk.openPopup(), nullptr);
  for (const int tag :
       {tag::cutoffPanel.reset, tag::cutoffPanel.close, tag::cutoffEf, tag::cutoffLfo,
        tag::cutoffSeq, tag::cutoffPanel.learn, tag::cutoffPanel.clear, tag::cutoffPanel.reset}) {
    EXPECT_EQ(desk.focus(), tag);
    if (tag == tag::cutoffLfo) desk.tap(keys::kEnd);
    desk.tap(keys::kTab);
  }
  EXPECT_EQ(desk.value(tag::cutoffLfo), 1.0F);
  desk.tap(keys::kEscape);
  EXPECT_EQ(desk.openPopup(), nullptr);
  EXPECT_EQ(desk.focus(), tag::cutoff);
  desk.focusOn(tag::mouseArea);
  desk.tap(keys::kUp);
  EXPECT_EQ(desk.strip(), "PAGE LFO");
  desk.tap(keys::kDown);
  desk.focusOn(tag::stepTable);
  desk.effect().steps().setValue(2, 0.5F);
  for (const std::uint8_t key : {keys::kRight, keys::kRight, keys::kUp}) desk.tap(key);
  EXPECT_NEAR(desk.effect().steps().getValue(2, 0), 0.55F, 1e-5F);
  EXPECT_EQ(desk.strip(), "STEPS 3: 55 %");
  for (int i = 0; i < desk.effect().steps().size(); ++i) desk.tap(keys::kRight);
  EXPECT_NE(desk.focus(), tag::stepTable);
}

TEST(EditorValues, KeysGoThroughTheHistory) {
  ValuesDesk desk;
  const auto press = [&desk](char letter, std::uint8_t modifier) {
    desk.tick(20);  // what goes on within half a second is one step
    desk.window->keyDown({letter, 0, modifier});
    desk.window->keyUp({letter, 0, modifier});
    desk.tick(3);
    return desk.value(tag::resonance);
  };
  constexpr std::uint8_t kControl = keys::kControlBit;
  constexpr std::uint8_t kBoth = keys::kControlBit | keys::kShiftBit;
  desk.host.set(tag::resonance, 0.5F);
  desk.showGroup(layout::sequencerPage);
  desk.focusOn(tag::resonance);
  for (int i = 0; i < 5; ++i) desk.key(keys::kPageDown);  // held
  desk.window->keyUp({0, keys::kPageDown, 0});
  desk.tick(20);
  desk.tap(keys::kReturn);
  desk.type("25");
  desk.tap(keys::kReturn);
  EXPECT_NEAR(press('z', kControl), 0.0F, 1e-5F);
  EXPECT_NEAR(press('z', kControl), 0.5F, 1e-5F);
  EXPECT_NEAR(press('Z', kBoth), 0.0F, 1e-5F);
  EXPECT_NEAR(press('y', kControl), 0.25F, 1e-5F);
  EXPECT_NEAR(press('z', 0), 0.25F, 1e-5F);
  EXPECT_EQ(desk.window->hostKeys().back().character, 'z');
  const auto step = [&desk] { return desk.effect().steps().getValue(0, 0); };
  desk.focusOn(tag::stepTable);
  const float before = step();
  desk.tap(before > 0.5F ? keys::kHome : keys::kEnd);
  EXPECT_NE(step(), before);
  press('z', kControl);
  EXPECT_EQ(step(), before);
}

TEST(EditorValues, AreTypedAndRefusedInPlace) {
  ValuesDesk desk;
  const struct {
    int tag;
    const char* typed;
    const char* shown;
  } rows[] = {{tag::cutoff, "438", "438 Hz"},        {tag::cutoff, "1,5 kHz", "1500 Hz"},
              {tag::cutoff, "99999999", "15213 Hz"}, {tag::master, "-6 db", "-6.0 dB"},
              {tag::efAttack, "12 MS", "12 ms"},     {tag::resonance, "40", "40 %"}};
  for (const auto& [tag, typed, shown] : rows) {
    SCOPED_TRACE(typed);
    desk.twiceOn(tag, buttons::kLeft | buttons::kAlt);
    ASSERT_EQ(desk.openPopup(), &desk.field());
    desk.takeCalls();
    desk.type(typed);
    EXPECT_EQ(desk.field().getText(), typed);
    desk.tap(keys::kReturn);
    EXPECT_EQ(desk.openPopup(), nullptr);
    EXPECT_EQ(desk.takeCalls(), edits({tag}));
    const std::string info = desk.editor().getControl(tag)->getInfoString();
    EXPECT_TRUE(info.ends_with(shown)) << info;
  }
  const auto before = desk.values();
  desk.focusOn(tag::cutoff);
  desk.tap(keys::kReturn);
  EXPECT_TRUE(desk.field().isSelected);
  EXPECT_EQ(desk.strip(), "CUTOFF 15213 Hz");
  desk.type("loud");
  desk.tap(keys::kReturn);
  EXPECT_TRUE(desk.field().isWrong);
  EXPECT_EQ(desk.openPopup(), &desk.field());
  const std::size_t toHost = desk.window->hostKeys().size();
  desk.tap(keys::kSpace);  // a letter here
  EXPECT_EQ(desk.window->hostKeys().size(), toHost);
  EXPECT_FALSE(desk.field().isWrong);
  desk.tap(keys::kEscape);
  EXPECT_EQ(desk.openPopup(), nullptr);
  EXPECT_EQ(desk.focus(), tag::cutoff);
  desk.click(tag::cutoff, buttons::kRight);
  desk.twiceOn(tag::cutoffEf, buttons::kLeft | buttons::kAlt);
  desk.type("12");
  desk.click(CPoint{5, 5});  // leaves the field, not the panel
  ASSERT_NE(desk.openPopup(), nullptr);
  EXPECT_EQ(desk.changedSince(before), std::vector<int>{});
  desk.twiceOn(tag::cutoffEf, buttons::kLeft | buttons::kAlt);
  desk.type("-30");
  desk.tap(keys::kReturn);
  EXPECT_NEAR(desk.value(tag::cutoffEf), 0.35F, 1e-5F);
  desk.tap(keys::kEscape);
  desk.twiceOn(tag::resonance, buttons::kLeft);
  EXPECT_EQ(desk.value(tag::resonance), findRow(tag::resonance)->home);
  desk.twiceOn(tag::cutoff, buttons::kLeft | buttons::kAlt);
  desk.host.set(tag::bank, 1.0F);
  desk.tick(2);
  EXPECT_EQ(desk.openPopup(), nullptr);
}

TEST(EditorValues, EveryControlThatTakesTheMouseHasANameAndAValue) {
  ValuesDesk desk;
  desk.tap(keys::kTab);
  const auto tree = desk.editor().controlTree();
  std::set<std::pair<int, std::string>> names;
  std::set<std::pair<int, int>> places;
  int focused = 0;
  for (const ControlInfo& info : tree) {
    SCOPED_TRACE(info.name);
    EXPECT_TRUE(names.insert({info.parent, info.name}).second);
    EXPECT_FALSE(info.name.empty());
    const bool isGroup = info.role == ControlRole::window || info.role == ControlRole::panel;
    EXPECT_NE(info.value.empty(), !isGroup);
    focused += info.isFocused ? 1 : 0;
    places.insert({info.rect.left, info.rect.top});
  }
  EXPECT_EQ(focused, 1);
  // Whatever a pointer can hit, on any page.
  std::size_t used = 0;
  const auto expectNamed = [&](const KvControl& view) {
    if (!view.getMouseEnabled() || view.isContainer() || view.getViewSize().isEmpty()) return;
    if (dynamic_cast<const ValueField*>(&view) != nullptr) return;
    if (!view.isVisible()) return;  // holds the page
    ++used;
    EXPECT_TRUE(std::ranges::any_of(tree, [&view](const ControlInfo& info) {
      return info.tag == view.getTag() && info.rect == view.getViewSize();
    })) << view.getTag();
    EXPECT_NE(view.getInfoString(), "no info");
  };
  for (const auto& held : desk.editor().shownFrame()->children()) {
    const auto* const view = dynamic_cast<const KvControl*>(held.get());
    ASSERT_NE(view, nullptr);
    expectNamed(*view);
    if (!view->isContainer()) continue;
    for (const auto& inner : static_cast<const KvViewContainer*>(view)->children()) {
      expectNamed(*inner.get());
    }
  }
  EXPECT_GT(used, 120U);
}

}  // namespace
}  // namespace zum::test
