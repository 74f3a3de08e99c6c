// Menus as a user opens them and chooses, rows and their limits, and folders of files.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/files.hpp"
#include "support/desk.hpp"
#include "support/pixel_picture.hpp"
#include "support/temporary_folder.hpp"
#include "toolkit/menu_style.hpp"
#include "toolkit/option_menu.hpp"

namespace zum::test {
namespace {

CPoint placeOf(const MenuList& list, int row) {
  CPoint place{list.getRect().left + 5, list.getRect().top + 5};
  while (place.y < list.getRect().bottom && list.rowAt(place) != row) ++place.y;
  return place;
}

struct MenuDesk : Desk {
  explicit MenuDesk(std::uint32_t menuStyle = menu_style::kPlain) : style(menuStyle) {}
  void open() { click(20, 15); }
  void clickRow(int row) {
    const CPoint at = placeOf(*menu->openList(), row);
    click(at.x, at.y);
  }
  std::uint32_t style;
  KvOptionMenu* menu = add<KvOptionMenu>(CRect{10, 10, 110, 27}, 60, "default", style);
};

TEST(MenuRows, KeepTheirOrderAndTheirSelectionAndHaveALimit) {
  MenuRows rows;
  for (std::size_t i = 0; i < MenuRows::kMost; ++i) EXPECT_TRUE(rows.tryAppend(std::to_string(i)));
  EXPECT_FALSE(rows.tryAppend("too many", std::make_unique<MenuRows>()));
  rows.select(5);
  EXPECT_TRUE(rows.remove(2));
  EXPECT_EQ(rows[rows.selected()].text, "5");
  for (const int outside : {-2, 1024, 100000}) {
    EXPECT_FALSE(rows.tryInsert({}, outside) || rows.remove(outside)) << outside;
  }
  EXPECT_TRUE(rows.tryInsert({}, 0));
  EXPECT_EQ(rows[rows.selected()].text, "5");
  EXPECT_EQ(rows.find("6"), 6);
  rows.select(1024);
  EXPECT_EQ(rows.selected(), -1);
}

TEST(OptionMenu, FollowsItsVariableAndHasNoRowsButItsOwn) {
  MenuDesk desk;
  std::string text;
  EXPECT_EQ(desk.menu->getCurrent(text), -1);
  EXPECT_EQ(text, "Empty");
  for (const long i : {0, 1, 2}) desk.menu->addEntry(std::to_string(i), -1, i);
  const KvOptionMenuUserEntry* const last = desk.menu->getUserEntry(2);
  EXPECT_EQ(dynamic_cast<const KvOptionMenuUserEntryLong*>(last)->value, 2);
  for (const int outside : {-1, 3}) {
    EXPECT_FALSE(desk.menu->getEntry(outside, text));
    EXPECT_FALSE(desk.menu->setEntry(outside, text));
    EXPECT_FALSE(desk.menu->removeEntry(outside));
  }
  float index = 1.9F;
  desk.menu->bind(&index);
  desk.ticks(1);
  EXPECT_EQ(desk.menu->getSelectedEntry(), 1);
  EXPECT_EQ(desk.told(), "");  // a program's doing
}

TEST(OptionMenu, ChoosesByClicksAndByOneDragAndClosesWithAClickOutside) {
  MenuDesk desk;
  for (const char* row : {"LP", "HP", "BP"}) desk.menu->addEntry(row, -1, false);
  desk.menu->addEntry("--More--", 1, true);
  desk.open();
  EXPECT_EQ(desk.frame->getModalView(), desk.menu);
  desk.clickRow(1);
  ASSERT_TRUE(desk.menu->isListOpen());  // cannot be chosen
  const CPoint first = placeOf(*desk.menu->openList(), 0);
  desk.clickRow(3);
  EXPECT_FALSE(desk.menu->isListOpen());
  EXPECT_EQ(desk.menu->currentText(), "BP");
  desk.press(20, 15);
  desk.drag(first.x, first.y);
  desk.release(first.x, first.y);
  EXPECT_EQ(desk.told(), "( 60:3 ) ( 60:0 ) ");
  desk.open();
  desk.click(290, 190);
  EXPECT_FALSE(desk.menu->isListOpen());
  EXPECT_EQ(desk.frame->getModalView(), nullptr);
  EXPECT_EQ(desk.told(), "");
}

TEST(OptionMenu, StaysInsideTheFrameAndAHiddenOneIsShut) {
  MenuDesk desk;
  GroupMask mask;
  desk.menu->groupMask = &mask;
  desk.menu->group = 3;
  for (int i = 0; i < 100; ++i) desk.menu->addEntry(std::to_string(i), -1, false);
  desk.open();
  EXPECT_FALSE(desk.menu->isListOpen());
  mask.set(3, true);
  desk.menu->setBoundsAndArea(250, 180, 300, 197);
  desk.click(290, 190);
  ASSERT_TRUE(desk.menu->isListOpen());
  const CRect list = desk.menu->getListRect();
  EXPECT_EQ(list.join(desk.frame->getViewSize()), desk.frame->getViewSize());
  EXPECT_EQ(desk.menu->getSelectedEntry(), -1);  // the list came under the pointer
  desk.wheel(290, 190, -1.0F);
  EXPECT_EQ(desk.menu->openList()->rowAt({list.left + 5, list.top + 5}), 3);
  mask.set(3, false);
  desk.ticks(1);
  EXPECT_FALSE(desk.menu->isListOpen());
  EXPECT_EQ(desk.frame->getModalView(), nullptr);
}

TEST(OptionMenu, MarksTheRowInUseAlsoInAPicture) {
  const Held<CBitmap> picture = pixelPicture(60, 34, std::vector<std::uint32_t>(60 * 34));
  for (const bool isPicture : {false, true}) {
    MenuDesk desk;
    if (isPicture) desk.menu->openBitmap = picture.get();
    desk.menu->look.markColor = kGreenColor;
    for (const char* row : {"LP", "HP"}) desk.menu->addEntry(row, -1, false);
    desk.menu->setCurrent(1);
    desk.open();
    const CPoint corner = desk.menu->getListRect().topLeft();
    for (const int row : {0, 1}) {
      const int x = corner.x + (isPicture ? 1 : 3);
      EXPECT_EQ(desk.window->pixel(x, corner.y + 17 * row + 7) == 0x00FF00U, row == 1);
    }
  }
}

/// An open list whose first row has a sub-menu, and where that row is.
struct OpenTree : MenuDesk {
  OpenTree() {
    auto inner = std::make_unique<MenuRows>();
    for (const char* row : {"one", "two", "three", "four"}) inner->tryAppend(row);
    menu->addEntry(std::move(inner), "more");
    for (const char* row : {"LP", "HP", "BP"}) menu->addEntry(row, -1, false);
    open();
    first = placeOf(*menu->openList(), 0);
  }
  void tap(std::uint8_t virt) {
    key(virt);
    window->keyUp({0, virt, 0});
    ticks(2);  // or the next press would be a repeat
  }
  bool isInnerOpen() const { return menu->openList()->getChild() != nullptr; }
  CPoint first;
};

TEST(OptionMenu, ASubMenuStaysForAHandThatIsOnItsWayThere) {
  const struct {
    std::vector<CPoint> way;  // from the row that it belongs to, across those below
    int rest;                 // ticks
    bool stays;
  } cases[] = {
      {{{30, 20}, {60, 34}}, 5, true},
      {{{0, 12}, {1, 14}}, 0, true},
      {{{30, 20}, {60, 34}}, 12, false},  // means the row where it rests
      {{{-4, 20}}, 0, false},
      {{{30, 20}, {30, 50}}, 0, false},
  };
  for (const auto& [way, rest, stays] : cases) {
    OpenTree tree;
    tree.drag(tree.first.x, tree.first.y, 0);
    ASSERT_TRUE(tree.isInnerOpen());
    for (const CPoint& to : way) tree.drag(tree.first.x + to.x, tree.first.y + to.y, 0);
    tree.ticks(rest);
    tree.wheel(tree.first.x, tree.first.y, -1.0F);  // has nothing to scroll here
    EXPECT_EQ(tree.isInnerOpen(), stays) << way.back().x << ' ' << way.back().y;
  }
}

TEST(OptionMenu, AChoiceOnTheWayToASubMenuTakesItFromTheScreen) {
  OpenTree tree;
  tree.drag(tree.first.x, tree.first.y, 0);
  const CRect inner = tree.menu->openList()->getChild()->getRect();
  const auto shown = [&] { return tree.window->pixel(inner.right - 3, inner.bottom - 3); };
  const std::uint32_t open = shown();
  tree.drag(tree.first.x + 30, tree.first.y + 20, 0);
  ASSERT_TRUE(tree.isInnerOpen());
  tree.click(tree.first.x + 30, tree.first.y + 20);
  EXPECT_FALSE(tree.menu->isListOpen());
  EXPECT_NE(shown(), open);
}

TEST(OptionMenu, KeysOpenSubMenusLeaveThemAndChoose) {
  for (const std::uint8_t opens : {keys::kRight, keys::kReturn, keys::kEnter}) {
    for (const std::uint8_t leaves : {keys::kLeft, keys::kEscape}) {
      OpenTree tree;
      for (const std::uint8_t key : {keys::kDown, opens}) tree.tap(key);
      EXPECT_TRUE(tree.isInnerOpen());
      tree.tap(leaves);
      ASSERT_TRUE(tree.menu->isListOpen());
      EXPECT_FALSE(tree.isInnerOpen());
      for (const std::uint8_t key : {keys::kLeft, opens, keys::kDown, keys::kReturn}) tree.tap(key);
      EXPECT_FALSE(tree.menu->isListOpen());
      EXPECT_EQ(tree.menu->currentText(), "two");
      EXPECT_EQ(tree.told(), "( 60:0 ) ");
    }
  }
}

TEST(OptionMenu, OverAFolderListsFilesSubFoldersAndFixedRows) {
  namespace fs = std::filesystem;
  using namespace menu_style;
  const TemporaryFolder folder;
  fs::create_directories(folder / "Bass" / "Deep");
  for (int i = 0; i < 129; ++i) std::ofstream(folder / (std::to_string(1000 + i) + ".kvz")) << i;
  std::ofstream(folder / "other.txt") << 1;
  std::ofstream(folder / "Bass" / "Deep" / "Low.kvz") << 1;
  fs::create_directory_symlink(folder, folder / "Bass" / "Loop");  // a tree without an end
  // Who listens may read the folders anew, while a list two levels down still tells.
  struct Rereader : MenuDesk {
    using MenuDesk::MenuDesk;
    void valueChanged(CControl& control) override {
      EXPECT_TRUE(menu->getFileName(file, "kvz"));
      MenuDesk::valueChanged(control);
      if (rereads) menu->rescan(nullptr);
    }
    bool rereads = false;
    std::string file;
  } desk(kFolder | kSubFolders | kSteps | kSaveEntry | kPresetsHeader);
  desk.menu->setFolder(toInternalPath(folder.string()), "kvz");
  EXPECT_EQ(desk.menu->getNbEntries(), 2 + 1 + 128);
  EXPECT_EQ(desk.menu->getEntryIndex("Save Preset"), 0);
  EXPECT_FALSE(desk.menu->getFileName(desk.file, "kvz"));
  for (const int step : {1, -1}) desk.menu->stepPreset(step);  // stops at the end
  EXPECT_EQ(desk.told(), "( 60:3 ) ");
  EXPECT_EQ(toSystemPath(desk.file), (folder / "1000.kvz").string());
  desk.rereads = true;
  desk.open();
  const MenuList* list = desk.menu->openList();
  for (const int row : {desk.menu->getEntryIndex("Bass"), 0}) {
    const CPoint at = placeOf(*list, row);
    desk.drag(at.x, at.y, 0);
    list = list->getChild();
    ASSERT_NE(list, nullptr) << row;
  }
  const CPoint low = placeOf(*list, 0);
  desk.click(low.x, low.y);
  EXPECT_EQ(desk.told(), "( 60:2 ) ");
  EXPECT_EQ(desk.menu->currentText(), "Low");
  EXPECT_EQ(toSystemPath(desk.file), (folder / "Bass" / "Deep" / "Low.kvz").string());
  EXPECT_FALSE(desk.menu->isListOpen());
  EXPECT_EQ(desk.frame->getModalView(), nullptr);
  EXPECT_EQ(desk.window->cursor(), WindowCursor::arrow);
  desk.menu->setFolder(toInternalPath((folder / "nowhere").string()), "kvz");
  EXPECT_EQ(desk.menu->getNbEntries(), 2);
}

}  // namespace
}  // namespace zum::test
