// Menus as a user opens them and chooses, rows and their limits, and folders of files.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/files.hpp"
#include "support/desk.hpp"
#include "support/temporary_folder.hpp"
#include "toolkit/menu_style.hpp"
#include "toolkit/option_menu.hpp"
#include "toolkit/panel.hpp"

namespace zum::test {
namespace {

constexpr CRect kPlace{10, 10, 110, 27};

KvOptionMenu* addMenu(Desk& desk, std::uint32_t style = menu_style::kPlain) {
  auto* const menu = desk.add<KvOptionMenu>(kPlace, 60, "default", style);
  return menu;
}

CPoint middleOf(const MenuList& list, int row) {
  for (int y = list.getRect().top; y < list.getRect().bottom; ++y) {
    const CPoint point{list.getRect().left + 5, y + 5};
    if (list.rowAt(point) == row) return point;
  }
  return {-1, -1};
}
CPoint middleOf(const KvOptionMenu& menu, int row) { return middleOf(*menu.openList(), row); }

TEST(OptionMenu, ChoosesByClicksAndByOneDragAndClosesWithAClickOutside) {
  Desk desk;
  KvOptionMenu* const menu = addMenu(desk);
  for (const char* row : {"LP", "HP", "BP"}) menu->addEntry(row, -1, false);
  menu->addEntry("--More--", 1, true);
  desk.click(20, 15);
  ASSERT_TRUE(menu->isListOpen());
  EXPECT_EQ(desk.frame->getModalView(), menu);
  const CPoint header = middleOf(*menu, 1);
  desk.click(header.x, header.y);
  EXPECT_TRUE(menu->isListOpen());  // cannot be chosen
  const CPoint third = middleOf(*menu, 3);
  desk.click(third.x, third.y);
  EXPECT_FALSE(menu->isListOpen());
  EXPECT_EQ(desk.taken(), (std::vector{std::pair(60, 3.0F)}));
  EXPECT_EQ(menu->currentText(), "BP");
  desk.press(20, 15);
  const CPoint first = middleOf(*menu, 0);
  desk.drag(first.x, first.y);
  desk.release(first.x, first.y);
  EXPECT_EQ(desk.taken(), (std::vector{std::pair(60, 0.0F)}));
  desk.click(20, 15);
  desk.click(290, 190);
  EXPECT_FALSE(menu->isListOpen());
  EXPECT_EQ(desk.frame->getModalView(), nullptr);
  EXPECT_TRUE(desk.taken().empty());
}

TEST(OptionMenu, StaysInsideTheFrameAndAHiddenOneIsShut) {
  Desk desk;
  GroupMask mask;
  KvOptionMenu* const menu = addMenu(desk);
  menu->groupMask = &mask;
  menu->group = 3;
  for (int i = 0; i < 100; ++i) menu->addEntry("row " + std::to_string(i), -1, false);
  desk.click(20, 15);
  EXPECT_FALSE(menu->isListOpen());
  mask.set(3, true);
  menu->setBoundsAndArea(250, 180, 300, 197);
  desk.click(290, 190);
  ASSERT_TRUE(menu->isListOpen());
  const CRect list = menu->getListRect();
  EXPECT_EQ(list.join(desk.frame->getViewSize()), desk.frame->getViewSize());
  EXPECT_EQ(menu->getSelectedEntry(), -1);  // the list came under the pointer
  desk.window->wheel(290, 190, -1.0F);
  desk.ticks(1);
  EXPECT_EQ(menu->openList()->rowAt({list.left + 5, list.top + 5}), 3);
  mask.set(3, false);
  desk.ticks(1);
  EXPECT_FALSE(menu->isListOpen());
  EXPECT_EQ(desk.frame->getModalView(), nullptr);
}

TEST(OptionMenu, MarksTheRowInUseAlsoInAPicture) {
  Desk desk;
  const Held<CBitmap> picture(new CBitmap({60, 34, std::vector<std::uint32_t>(60 * 34)}));
  for (CBitmap* const bitmap : {static_cast<CBitmap*>(nullptr), picture.get()}) {
    KvOptionMenu* const menu = addMenu(desk);
    menu->openBitmap = bitmap;
    menu->look.markColor = kGreenColor;
    menu->addEntry("LP", -1, false);
    menu->addEntry("HP", -1, false);
    menu->setCurrent(1);
    desk.click(20, 15);
    for (const int row : {0, 1}) {
      const CPoint corner{menu->getListRect().left, menu->getListRect().top + 17 * row};
      const std::uint32_t pixel =
          desk.window->pixel(corner.x + (bitmap != nullptr ? 1 : 3), corner.y + 7);
      EXPECT_EQ(pixel == 0x00FF00U, row == 1);
    }
    desk.click(290, 190);
  }
}

/// An open list whose first row has a sub-menu, and where that row is.
struct OpenTree {
  OpenTree() {
    auto inner = std::make_unique<MenuRows>();
    for (const char* row : {"one", "two", "three", "four"}) inner->tryAppend(row);
    menu->addEntry(std::move(inner), "more");
    for (const char* row : {"LP", "HP", "BP"}) menu->addEntry(row, -1, false);
    desk.click(20, 15);
    first = middleOf(*menu, 0);
  }
  void move(int dx, int dy) { desk.drag(first.x + dx, first.y + dy, 0); }
  void key(std::uint8_t virt) {
    desk.window->keyDown({0, virt, 0});
    desk.window->keyUp({0, virt, 0});
    desk.ticks(3);
  }
  Desk desk;
  KvOptionMenu* menu = addMenu(desk);
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
      {{{0, 20}}, 0, false},
      {{{-4, 20}}, 0, false},
      {{{30, 20}, {30, 50}}, 0, false},
  };
  for (const auto& [way, rest, stays] : cases) {
    OpenTree tree;
    tree.move(0, 0);
    ASSERT_TRUE(tree.isInnerOpen());
    for (const CPoint& to : way) tree.move(to.x, to.y);
    tree.desk.ticks(rest);
    EXPECT_EQ(tree.isInnerOpen(), stays) << way.back().x << ' ' << way.back().y;
    // The wheel has nothing to scroll here.
    tree.desk.window->wheel(tree.first.x, tree.first.y, -1.0F);
    tree.desk.ticks(1);
    EXPECT_EQ(tree.isInnerOpen(), stays);
  }
}

TEST(OptionMenu, KeysOpenSubMenusLeaveThemAndChoose) {
  for (const std::uint8_t opens : {keys::kRight, keys::kReturn, keys::kEnter}) {
    for (const std::uint8_t leaves : {keys::kLeft, keys::kEscape}) {
      OpenTree tree;
      tree.key(keys::kDown);
      tree.key(opens);
      EXPECT_TRUE(tree.isInnerOpen());
      tree.key(leaves);
      EXPECT_FALSE(tree.isInnerOpen());
      EXPECT_TRUE(tree.menu->isListOpen());
      tree.key(keys::kLeft);
      tree.key(opens);
      tree.key(keys::kDown);
      tree.key(keys::kReturn);
      EXPECT_FALSE(tree.menu->isListOpen());
      EXPECT_EQ(tree.menu->currentText(), "two");
      EXPECT_EQ(tree.desk.taken().size(), 1U);
    }
  }
}

TEST(OptionMenu, KeepsItsRowsInOrderAndItsSelectionOnItsRow) {
  Desk desk;
  KvOptionMenu* const menu = addMenu(desk);
  std::string text;
  EXPECT_EQ(menu->getCurrent(text), -1);
  EXPECT_EQ(text, "Empty");
  for (std::size_t i = 0; i < MenuRows::kMost; ++i) {
    EXPECT_TRUE(menu->addEntry(std::to_string(i), -1, long(i)));
  }
  EXPECT_FALSE(menu->addEntry("too many", 0, false));
  EXPECT_FALSE(menu->addEntry(std::make_unique<MenuRows>(), "too many"));
  menu->setCurrent(5);
  EXPECT_TRUE(menu->removeEntry(2));
  EXPECT_EQ(menu->getCurrent(text), 4);
  EXPECT_EQ(text, "5");
  EXPECT_TRUE(menu->addEntry("new", 0, false));
  EXPECT_EQ(menu->getCurrent(text), 5);
  EXPECT_EQ(menu->getEntryIndex("6"), 6);
  EXPECT_EQ(dynamic_cast<const KvOptionMenuUserEntryLong*>(menu->getUserEntry(6))->value, 6);
  for (const int outside : {-2, -1, 1024, 100000}) {
    EXPECT_FALSE(menu->getEntry(outside, text));
    EXPECT_FALSE(menu->setEntry(outside, text));
    EXPECT_FALSE(menu->removeEntry(outside));
    menu->setCurrent(outside);
    EXPECT_EQ(menu->getSelectedEntry(), -1);
  }
  float index = 7.9F;
  menu->bind(&index);
  desk.ticks(1);
  EXPECT_EQ(menu->getSelectedEntry(), 7);
  EXPECT_TRUE(desk.taken().empty());  // a program's doing is not told
}

TEST(OptionMenu, OverAFolderListsFilesSubFoldersAndFixedRows) {
  namespace fs = std::filesystem;
  const TemporaryFolder folder;
  fs::create_directories(folder / "Bass" / "Deep");
  for (int i = 0; i < 129; ++i) std::ofstream(folder / (std::to_string(1000 + i) + ".kvz")) << i;
  std::ofstream(folder / "other.txt") << 1;
  std::ofstream(folder / "Bass" / "Deep" / "Low.kvz") << 1;
  fs::create_directory_symlink(folder, folder / "Bass" / "Loop");  // a tree without an end
  Desk desk;
  KvOptionMenu* const menu = addMenu(desk, 8 + 0x40 + 0x80 + 0x100);
  menu->setFolder(toInternalPath(folder.string()), "kvz");
  EXPECT_EQ(menu->getNbEntries(), 2 + 128);
  std::string text;
  EXPECT_TRUE(menu->getEntry(0, text));
  EXPECT_EQ(text, "Save Preset");
  EXPECT_FALSE(menu->getFileName(text, "kvz"));
  menu->stepPreset(1);
  EXPECT_EQ(desk.taken(), (std::vector{std::pair(60, 2.0F)}));
  EXPECT_TRUE(menu->getFileName(text, "kvz"));
  EXPECT_EQ(toSystemPath(text), (folder / "1000.kvz").string());
  menu->stepPreset(-1);
  EXPECT_EQ(menu->getSelectedEntry(), 2);  // stops at the end
  menu->setFolder(toInternalPath((folder / "nowhere").string()), "kvz");
  EXPECT_EQ(menu->getNbEntries(), 2);

  // Who listens may read the folders anew, while a list two levels down still tells.
  struct Rereader : CControlListener {
    void valueChanged(CControl& control) override {
      auto& menu = static_cast<KvOptionMenu&>(control);
      EXPECT_TRUE(menu.getFileName(file, "kvz"));
      told.emplace_back(menu.getValue(), menu.currentText());
      menu.setFolder(folder, "kvz");
    }
    std::string folder, file;
    std::vector<std::pair<float, std::string>> told;
  } rereader;
  rereader.folder = toInternalPath(folder.string());
  KvOptionMenu* const nested = addMenu(desk, 488);
  nested->setListener(&rereader);
  nested->setFolder(rereader.folder, "kvz");
  desk.click(20, 15);
  const MenuList* list = nested->openList();
  for (const int row : {nested->getEntryIndex("Bass"), 0}) {
    const CPoint at = middleOf(*list, row);
    desk.drag(at.x, at.y, 0);
    list = list->getChild();
    ASSERT_NE(list, nullptr) << row;
  }
  const CPoint low = middleOf(*list, 0);
  desk.click(low.x, low.y);
  EXPECT_EQ(rereader.told, (std::vector{std::pair(2.0F, std::string("Low"))}));
  EXPECT_EQ(toSystemPath(rereader.file), (folder / "Bass" / "Deep" / "Low.kvz").string());
  EXPECT_FALSE(nested->isListOpen());
  EXPECT_EQ(desk.frame->getModalView(), nullptr);
  EXPECT_EQ(desk.window->cursor(), WindowCursor::arrow);
}

}  // namespace
}  // namespace zum::test
