// The menu of the window: each row does what it says, and rows that are off do nothing. And the
// preset menu in the window: the current preset, what is typed, favourites.
#include <gtest/gtest.h>

#include "editor/window_menu.hpp"
#include "support/chooser.hpp"
#include "support/editor_desk.hpp"
#include "support/settings_user.hpp"

namespace zum::test {
namespace {

constexpr CPoint kGround{16, 462};  // no control is there

/// A place in the row of an open list.
CPoint placeIn(const MenuList& list, int row) {
  CPoint place{list.getRect().left + 5, list.getRect().top + 3};
  while (place.y < list.getRect().bottom && list.rowAt(place) != row) ++place.y;
  return place;
}

/// A tree of four presets, whose cutoffs tell them from each other.
class WindowMenus : public SettingsTest {
 protected:
  WindowMenus() {
    auto writer = std::make_unique<EditorDesk>();  // the first one there is fills in the settings
    for (const auto& [file, cutoff] : {std::pair{"one/Deep/Bass.kvz", 0.1F},
                                       {"one/Deep/Tape.kvz", 0.2F},
                                       {"one/High/Bass.kvz", 0.3F},
                                       {"one/Émile.kvz", 0.4F}}) {
      fs::create_directories((folder / file).parent_path());
      writer->host.set(tag::cutoff, cutoff);
      writer->effect().savePreset(internal(file).c_str(), 0, nullptr, false);
    }
    writeSettingString(kPresetPath, internal("one"));
    writer.reset();
    opened.emplace();
  }
  EditorDesk& desk() { return *opened; }
  float cutoff() { return desk().value(tag::cutoff); }
  KvOptionMenu& shown() { return static_cast<KvOptionMenu&>(*desk().openPopup()); }
  void openMenu() { desk().click(kGround, buttons::kRight); }
  /// The row of the open menu, -1 for none.
  int rowOf(const std::string& text) { return shown().getEntryIndex(text); }
  bool choose(const std::string& text, int inside = -1) {
    openMenu();
    const int row = rowOf(text);
    EXPECT_GE(row, 0) << text;
    desk().click(placeIn(*shown().openList(), row));
    if (inside >= 0) desk().click(placeIn(*shown().openList()->getChild(), inside));
    const bool closed = desk().openPopup() == nullptr;
    if (!closed && dynamic_cast<KvOptionMenu*>(desk().openPopup()) != nullptr) {
      shown().closePopup();
      return false;
    }
    return true;
  }

  std::optional<EditorDesk> opened;
};

TEST_F(WindowMenus, StepsBackAndForthAndKeepsTwoSounds) {
  const float before = cutoff();
  EXPECT_FALSE(choose("Undo"));
  EXPECT_FALSE(choose("Redo"));
  desk().drag(tag::cutoff, 0, -20);
  const float moved = cutoff();
  ASSERT_NE(moved, before);
  desk().host.host.calls.clear();
  EXPECT_TRUE(choose("Undo Cutoff"));
  EXPECT_EQ(cutoff(), before);
  EXPECT_FALSE(desk().host.host.calls.empty());
  EXPECT_TRUE(choose("Redo Cutoff"));
  EXPECT_EQ(cutoff(), moved);
  const struct {
    const char* row;
    float cutoff;
    int sound;
  } steps[] = {{"A", moved, 0},           {"B", before, 1}, {"A", moved, 0},
               {"Copy A to B", moved, 0}, {"B", moved, 1},  {"Undo Copy", before, 1}};
  for (const auto& [row, cut, sound] : steps) {
    EXPECT_TRUE(choose(row)) << row;
    EXPECT_EQ(cutoff(), cut) << row;
    EXPECT_EQ(desk().effect().chosenSound(), sound) << row;
  }
  openMenu();
  EXPECT_GE(rowOf("Copy B to A"), 0);
}

TEST_F(WindowMenus, ReplacesTheSound) {
  Chooser dialogs;
  EXPECT_FALSE(choose("Previous file"));  // there is none yet
  EXPECT_FALSE(choose("Revert"));
  desk().host.set(tag::cutoff, 0.9F);
  EXPECT_TRUE(choose("Initialise"));
  EXPECT_EQ(cutoff(), findRow(tag::cutoff)->initial);
  const auto before = desk().values();
  EXPECT_TRUE(choose("Randomise"));
  EXPECT_GT(desk().changedSince(before).size(), 10U);
  desk().effect().loadPresetFile(internal("one/Deep/Bass.kvz").c_str(), 0, nullptr, false);
  EXPECT_TRUE(choose("Next file"));
  EXPECT_EQ(cutoff(), 0.2F);
  EXPECT_TRUE(choose("Previous file"));
  EXPECT_EQ(cutoff(), 0.1F);
  desk().host.set(tag::cutoff, 0.9F);
  EXPECT_TRUE(choose("Random preset"));
  EXPECT_TRUE(cutoff() == 0.1F || cutoff() == 0.2F) << cutoff();  // of a folder of several
  void* state = nullptr;
  const auto size = desk().host.dispatch(effGetChunk, 0, 0, &state);
  const std::string session(static_cast<const char*>(state), static_cast<std::size_t>(size));
  desk().host.dispatch(effSetChunk, 0, size, const_cast<char*>(session.data()));
  const float stored = cutoff();
  desk().host.set(tag::cutoff, 0.9F);
  EXPECT_TRUE(choose("Revert"));
  EXPECT_EQ(cutoff(), stored);
}

TEST_F(WindowMenus, CopiesTheSoundAsTextAndSaysWhatIsNone) {
  auto* const clipboard = new OwnClipboard;
  WindowServices::get().setClipboard(std::unique_ptr<Clipboard>(clipboard));
  desk().host.set(tag::cutoff, 0.25F);
  EXPECT_TRUE(choose("Copy sound"));
  desk().host.set(tag::cutoff, 0.75F);
  EXPECT_TRUE(choose("Paste sound"));
  desk().tick();
  EXPECT_NEAR(cutoff(), 0.25F, 1e-6F);
  EXPECT_TRUE(choose("Undo Paste"));
  EXPECT_EQ(cutoff(), 0.75F);
  clipboard->give("nonsense");
  EXPECT_TRUE(choose("Paste sound"));
  desk().tick(2);
  EXPECT_TRUE(WindowServices::get().isMessageOpen());
  EXPECT_EQ(cutoff(), 0.75F);
  desk().boxes["ZUM"]->keyDown({0, keys::kReturn, 0});
  desk().tick();
  EXPECT_TRUE(choose("Paste sound"));
  desk().editor().close();  // nothing is answered any more
  desk().tick();
}

TEST_F(WindowMenus, KeepsTheControllerMapAndLearnsForThePrograms) {
  enum Inside { load, save, clear, learnNext = 4, learnPrevious };
  Chooser dialogs;
  EXPECT_FALSE(choose("Controller map", clear));
  desk().effect().beginLearn(tag::cutoff);
  desk().controller(20, 10);
  dialogs.chosen = internal("map");
  EXPECT_TRUE(choose("Controller map", save));
  EXPECT_TRUE(choose("Controller map", clear));
  EXPECT_FALSE(choose("Controller map", clear));
  for (const auto& file : fs::directory_iterator(folder)) {
    if (file.path().filename().string().starts_with("map")) {
      dialogs.chosen = internal(file.path().filename().string());
    }
  }
  EXPECT_TRUE(choose("Controller map", load));
  desk().controller(20, 127);
  EXPECT_EQ(cutoff(), 1.0F);

  EXPECT_TRUE(choose("Controller map", learnNext));
  EXPECT_EQ(desk().effect().learning(), tag::nextProgram);
  EXPECT_TRUE(choose("Controller map", learnNext));
  EXPECT_EQ(desk().effect().learning(), -1);
  EXPECT_TRUE(choose("Controller map", learnPrevious));
  desk().controller(31, 0);
  EXPECT_TRUE(choose("Controller map", learnNext));
  desk().controller(30, 0);
  desk().effect().playProgram("Deep", "Bass");
  // Up above the middle steps once, all else does nothing; at the end of a folder comes the next.
  const struct {
    int controller, value;
    float cutoff;
  } moves[] = {{30, 63, 0.1F}, {30, 64, 0.2F},  {30, 127, 0.2F}, {30, 0, 0.2F},
               {30, 70, 0.3F}, {31, 127, 0.2F}, {31, 0, 0.2F},   {31, 127, 0.1F}};
  for (const auto& [controller, value, cut] : moves) {
    desk().controller(controller, value);
    EXPECT_EQ(cutoff(), cut) << controller << ' ' << value;
  }
  EXPECT_EQ(desk().effect().slot().name.get(), "Bass");
  EXPECT_EQ(desk().effect().controllers().controllers[30].size(), 1U);
  EXPECT_TRUE(choose("Controller map", clear));
  desk().controller(30, 0);
  desk().controller(30, 127);
  EXPECT_EQ(cutoff(), 0.1F);
}

TEST_F(WindowMenus, LeadsToSizesFoldersAndHelp) {
  Chooser dialogs;
  fs::create_directories(folder / "two");
  dialogs.chosen = internal("two");
  EXPECT_TRUE(choose("Preset folder..."));
  EXPECT_EQ(readSettingString(kPresetPath), internal("two/"));
  // A host that makes no room is known by the first answer.
  const char* size = "Window size";
  for (const auto& [row, percent] : {std::pair(3, 200), {1, 125}, {0, 100}}) {
    EXPECT_TRUE(choose(size, row));
    EXPECT_EQ(readSettingInt(kWindowSize), percent);
    EXPECT_EQ(desk().editor().factor(), 1.0);
    size = "Window size when opened again";
    const MenuRows rows = WindowMenu{desk().effect(), desk().editor()}.rows();
    for (int at = 0; at < rows.size(); ++at) {
      EXPECT_TRUE(rows[at].text != size || (*rows[at].subMenu)[row].isMarked) << percent;
    }
  }
  desk().host.host.sizesWindow = true;
  EXPECT_TRUE(choose(size, 2));
  EXPECT_EQ(desk().editor().factor(), 1.5);
  EXPECT_TRUE(choose("Window size", 0));
  EXPECT_EQ(desk().editor().factor(), 1.0);
  EXPECT_TRUE(choose("About"));
  EXPECT_TRUE(desk().editor().aboutIsOpen());
  desk().tap(keys::kEscape);
  EXPECT_TRUE(choose("Manual"));
  EXPECT_TRUE(WindowServices::get().isMessageOpen());  // it is not installed
}

TEST_F(WindowMenus, OpenOnTheGroundAloneByMouseAndKeys) {
  const auto isOpen = [&] {
    auto* const menu = dynamic_cast<KvOptionMenu*>(desk().openPopup());
    const bool isMenu = menu != nullptr && menu->getEntryIndex("About") >= 0;
    if (desk().openPopup() != nullptr) desk().tap(keys::kEscape);
    EXPECT_EQ(desk().openPopup(), nullptr);
    return isMenu;
  };
  for (const CPoint at : {kGround, CPoint{505, 468}, CPoint{250, 120}}) {
    desk().click(at, buttons::kRight);
    const CRect list = shown().getListRect();
    EXPECT_EQ(list.join(layout::kWindow), layout::kWindow);
    EXPECT_TRUE(isOpen());
  }
  desk().window->keyDown({0, keys::kF1 + 9, keys::kShiftBit});
  desk().tick();
  EXPECT_TRUE(isOpen());
  desk().drag(tag::cutoff, 0, -20);
  const float moved = cutoff();
  openMenu();  // one press that goes on to a row chooses there
  const CPoint undo = placeIn(*shown().openList(), 0);
  desk().tap(keys::kEscape);
  desk().press(kGround, buttons::kRight);
  desk().move(undo, buttons::kRight);
  desk().release(undo);
  EXPECT_NE(cutoff(), moved);
  openMenu();  // keys go past what is off
  desk().tap(keys::kDown);
  desk().tap(keys::kReturn);
  EXPECT_EQ(cutoff(), moved);
  desk().click(kGround);
  EXPECT_FALSE(isOpen());
  for (const int tag : {tag::cutoff, tag::multiType, tag::bank, tag::about, tag::stepTable}) {
    desk().showPageOf(tag);
    desk().click(tag, buttons::kRight);
    EXPECT_FALSE(isOpen()) << tag;
  }
}

TEST_F(WindowMenus, FindPresetsThatAreTypedInAnyFolder) {
  KvOptionMenu& menu = desk().menu(tag::presetMenu);
  const struct {
    const char* typed;
    float cutoff;  // of what Return loads
  } rows[] = {{"ba", 0.1F}, {"HIGH", 0.3F}, {"bass hi", 0.3F}, {"ape", 0.2F}, {"MILE", 0.4F}};
  for (const auto& [typed, cut] : rows) {
    desk().click(tag::presetMenu);
    desk().type(typed);
    desk().tap(keys::kReturn);
    EXPECT_EQ(cutoff(), cut) << typed;
    EXPECT_FALSE(menu.isListOpen());
  }
  desk().click(tag::presetMenu);
  desk().window->keyDown({0xC9, 0, 0});  // capitals and accents as they are written, or not
  desk().type("mil");
  desk().tap(keys::kBack);
  desk().type("x");
  desk().tap(keys::kReturn);
  EXPECT_EQ(cutoff(), 0.4F);  // nothing was found
  ASSERT_TRUE(menu.isListOpen());
  desk().tap(keys::kEscape);  // all rows again
  ASSERT_TRUE(menu.isListOpen());
  EXPECT_EQ(menu.openList()->rowAt(placeIn(*menu.openList(), 4)), 4);
  desk().tap(keys::kEscape);
  EXPECT_FALSE(menu.isListOpen());
}

TEST_F(WindowMenus, OpenPresetsAtTheCurrentOneAndRememberFavourites) {
  KvOptionMenu& menu = desk().menu(tag::presetMenu);
  const auto lists = [&] {
    int count = 0;
    for (const MenuList* list = menu.openList(); list != nullptr; list = list->getChild()) ++count;
    return count;
  };
  desk().effect().loadPresetFile(internal("one/High/Bass.kvz").c_str(), 0, nullptr, false);
  desk().tick();
  desk().click(tag::presetMenu);
  ASSERT_EQ(lists(), 2);
  EXPECT_EQ(menu.openList()->getChild()->getRect().top,
            menu.openList()->getRect().top + 1 + 3 * 17);
  desk().click(placeIn(*menu.openList()->getChild(), 0), buttons::kRight);  // makes it a favourite
  EXPECT_TRUE(menu.isListOpen());
  desk().click(placeIn(*menu.openList(), 0), buttons::kRight);  // as ever: asks where to save
  EXPECT_EQ(readSettingString(kFavourites), "High\\Bass/");
  writeSettingString(kFavourites, "High\\Bass/Gone/Deep\\Tape///..\\x/" + std::string(200, '\x01'));

  desk().click(tag::presetMenu);
  ASSERT_EQ(menu.getEntryIndex("Favourites"), 2);
  EXPECT_EQ(menu.getEntryIndex("Save Preset"), 0);
  desk().move(placeIn(*menu.openList(), 2), 0);
  ASSERT_EQ(lists(), 2);
  const MenuList& inside = *menu.openList()->getChild();
  EXPECT_EQ(inside.rowAt(placeIn(inside, 1)), 1);
  EXPECT_EQ(inside.rowAt(placeIn(inside, 2)), -1);  // those that are there
  desk().click(placeIn(inside, 0));
  EXPECT_EQ(cutoff(), 0.2F);
  desk().click(tag::presetMenu);
  desk().type("tape");
  desk().tap(keys::kInsert);
  desk().tap(keys::kEscape);
  desk().tap(keys::kEscape);
  const std::string kept = readSettingString(kFavourites).value_or("");
  EXPECT_EQ(kept.find("Tape"), std::string::npos);
  EXPECT_TRUE(kept.starts_with("High\\Bass/Gone/")) << kept;
  writeSettingString(kFavourites, "Gone/");
  desk().click(tag::presetMenu);
  EXPECT_EQ(menu.getEntryIndex("Favourites"), -1);
}

}  // namespace
}  // namespace zum::test
