// A pop-up list that this program draws itself: rows of text or a picture of rows, sub-menus, and
// the files of a folder. Closed, it shows what is selected.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "toolkit/base_control.hpp"
#include "toolkit/bound_value.hpp"
#include "toolkit/menu_aim.hpp"
#include "toolkit/menu_entry.hpp"
#include "toolkit/menu_scroll.hpp"

namespace zum {

/// [main] Its value is the number of the selected row. Rows of a sub-menu live in that menu.
class KvOptionMenu final : public KvControl, public CControlListener {
 public:
  // bits of the style
  static constexpr std::uint32_t kPlain = 1;
  static constexpr std::uint32_t kPictures = 2;         // closed and open, the rows are a picture
  static constexpr std::uint32_t kFolder = 8;           // rows are the files of a folder
  static constexpr std::uint32_t kSelectFolder = 0x10;  // a row to choose the folder with
  static constexpr std::uint32_t kSubFolders = 0x20;    // sub-folders are sub-menus
  static constexpr std::uint32_t kSteps = 0x40;         // next and previous stop at the ends
  static constexpr std::uint32_t kSaveEntry = 0x80;
  static constexpr std::uint32_t kPresetsHeader = 0x100;
  static constexpr std::uint32_t kLoadEntry = 0x800;
  static constexpr std::uint32_t kStepsThroughSubMenus = 0x80000;
  static constexpr std::uint32_t kInherited = 0x200000;
  static constexpr std::uint32_t kBrackets = 0x400000;  // round the fixed rows

  static constexpr std::size_t kMostRows = 1024;
  static constexpr int kMostFiles = 128;  // of a folder
  // Tags of buttons that may stand beside it, and values that tell the listener of them.
  static constexpr int kNextTag = 10051;
  static constexpr int kPreviousTag = 10052;
  static constexpr int kLoadTag = 10053;
  static constexpr int kSaveTag = 10054;

  KvOptionMenu(const CRect& rect, CControlListener* controlListener, int controlTag, KvFrame& owner,
               std::string menuName, std::uint32_t menuStyle);

  // Rows. An index of -1 appends. False for a row too many, or one that is not there.
  bool addEntry(const std::string& text, int index, bool isHeader);
  /// Takes over the holder that the menu was made with, in any case.
  bool addEntry(KvOptionMenu* subMenu, const std::string& text);
  bool addEntry(const std::string& text, int index, long userValue);
  /// The selected row and its text; -1 and "Empty" without rows.
  int getCurrent(std::string& text) const;
  /// -1 for none.
  int getEntryIndex(std::string_view text) const;
  bool getEntry(int index, std::string& text) const;
  bool setEntry(int index, const std::string& text);
  bool removeEntry(int index);
  void removeAllEntries() override;
  int getNbEntries() const { return static_cast<int>(entries.size()); }
  int getSelectedEntry() const { return selectedEntry; }
  bool isListOpen() const { return isOpen; }
  void setEntryEnabled(int index, bool enabled);
  void setEntryMarked(int index, bool marked);
  const KvOptionMenuUserEntry* getUserEntry(int index) const;

  /// Selects a row, or, for one that is not there, none.
  void setCurrent(int entry) override;
  void setValue(float newValue) override;
  /// Of whom the menu is opened for next.
  void setTag(int controlTag) override { userTag = controlTag; }
  int getUserTag() const { return userTag; }
  const std::string& getName() const { return name; }
  /// Follows a variable that holds the number of the row.
  void bind(const float* variable) { boundIndex = {variable}; }
  /// What it shows when it is closed, until the next choice.
  void setShownText(std::string text);
  std::string currentText() const;

  // Files
  void setFolder(const std::string& path, std::string extension);
  /// Reads the folder anew; null keeps it, another path replaces it.
  void rescan(const char* folder) override;
  /// The path of the selected file. False when the row is none.
  bool getFileName(std::string& path, const std::string& extension) const;
  /// Selects the next file, 1, or the one before, -1, and reports it.
  void stepPreset(int direction) override;
  /// Rows ahead of the files.
  int fixedRows() const { return fixedCount; }

  void draw(CDrawContext& context) override;
  CRect drawnArea() const override {
    const CRect closed = KvControl::drawnArea();
    return isOpen ? closed.join(listRect) : closed;
  }
  MouseResult onMouseDown(CPoint& where, int buttons) override;
  MouseResult onMouseUp(CPoint& where, int buttons) override;
  MouseResult onMouseMoved(CPoint& where, int buttons) override;
  bool onWheel(CPoint& where, float distance, int buttons) override;
  bool onKeyDown(const WindowKey& key) override;
  void popup(PopupMode mode, const CPoint* where, int popupTag) override;
  void closePopup() override;
  void idleStep(int flag) override;
  void setPopupPanel(KvViewContainer* panel) override { popupPanel = panel; }
  /// Of the buttons beside it and of sub-menus.
  void valueChanged(CControl& control) override;

  const CRect& getListRect() const { return listRect; }
  const KvOptionMenu* openSubMenu() const { return childMenu; }
  /// The row at a place of the open list, -1 for none.
  int rowAt(CPoint where) const;

  CBitmap* closedBitmap = nullptr;  // rows, one below the other, of which it shows the selected
  CBitmap* openBitmap = nullptr;    // the whole list
  int listOffsetX = 0;              // of the list from the control, pixels
  int listOffsetY = 17;
  /// What sub-menus share with their root, besides the font and its two colours.
  struct {
    CBitmap* rowBitmap = nullptr;      // rows as they are under the pointer
    int rowBitmapHeight = 17;          // pixels
    CBitmap* subMenuBitmap = nullptr;  // sign of a sub-menu: plain and, a row lower, lit
    int itemHeight = 17;               // of a row, pixels
    int fontSize = 12;                 // pixels
    CColor selectedTextColor = kWhiteColor;
    CColor selectedBackColor = kGreyColor;
    CColor markColor = kGreyColor;  // of the row in use
    CColor frameColor = kGreyColor;
    CColor separatorColor = kGreyColor;  // of headers and of rows that are off
  } look;
  KvOptionMenuExtraCallBack* onSelect = nullptr;

 private:
  ~KvOptionMenu() override;

  bool has(int index) const { return index >= 0 && index < getNbEntries(); }
  KvOptionMenuEntryInfo& entry(int index) { return entries[static_cast<std::size_t>(index)]; }
  const KvOptionMenuEntryInfo& entry(int index) const {
    return entries[static_cast<std::size_t>(index)];
  }
  bool insert(KvOptionMenuEntryInfo info, int index);
  void removeRows();
  static void orphan(const KvOptionMenuEntryInfo& info);

  // files
  struct FolderWalk;
  void fill(FolderWalk& walk);
  void addFixedRows();
  void addSubFolders(FolderWalk& walk);
  std::string filePath(int row) const;
  void stepInRing(int direction);
  void choosePath(const std::string& path, const std::string& text);
  void reportChoice();

  // the open list
  static constexpr int kTextInset = 6;   // pixels
  static constexpr int kMarkWidth = 12;  // of the sign of a sub-menu
  void layOut(const CPoint* where);
  int rowsInside() const;
  int firstVisible() const;
  CRect rowRect(int row) const;
  KvOptionMenu& root();
  KvOptionMenu* menuAt(CPoint where);
  void hover(int row);
  void follow(CPoint where);
  void endDetours();
  void openChild(int row);
  void closeChild();
  void walk(int from, int direction);
  void choose(int row);
  void drawClosed(CDrawContext& context) const;
  void drawList(CDrawContext& context);
  void drawRow(CDrawContext& context, int row) const;
  std::string shownName() const;
  bool isInUse(int row, const std::string& shown) const;

  std::string name;
  std::vector<KvOptionMenuEntryInfo> entries;
  int selectedEntry = -1;
  std::uint32_t style;
  int userTag;
  BoundValue boundIndex;
  std::string shownText;

  std::string folderPath;
  std::string fileExtension;
  std::string chosenPath;  // of a row in a sub-menu
  int fixedCount = 0;

  CRect listRect;
  MenuScroll scroll;
  int hoveredRow = -1;
  MenuAim aim;  // from the hovered row
  bool isOpen = false;
  bool closing = false;
  bool ignoreNextUp = false;  // the release belongs to whoever opened the list
  bool openingClick = false;  // not released yet
  bool selectionMade = false;
  KvOptionMenu* parentMenu = nullptr;
  KvOptionMenu* childMenu = nullptr;  // open now
  KvViewContainer* popupPanel = nullptr;
};

}  // namespace zum
