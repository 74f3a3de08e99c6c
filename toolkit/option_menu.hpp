// A menu: closed it shows what is selected, open it has a list of its rows, which may be the files
// of a folder.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "toolkit/base_control.hpp"
#include "toolkit/bound_value.hpp"
#include "toolkit/folder_rows.hpp"
#include "toolkit/menu_favourites.hpp"
#include "toolkit/menu_find.hpp"
#include "toolkit/menu_list.hpp"
#include "toolkit/menu_rows.hpp"

namespace zum {

/// Where a user's favourites are kept, as the text of MenuFavourites.
struct FavouriteStore {
  std::function<std::string()> read;  // empty for none
  std::function<void(const std::string& text)> write;
};

/// [main] Over a folder, letters that are typed into the open list look for files in all of its
/// folders; a press of the right button on one, or Insert, makes it a favourite, or no more.
///
/// Its value is the number of the selected row. Of a choice in a sub-menu whoever listens
/// hears the number of the first row that is not fixed, however deep it lay.
class KvOptionMenu final : public KvControl, public CControlListener {
 public:
  // Tags of buttons that may stand beside it, and values that tell the listener of them.
  static constexpr int kNextTag = 10051;
  static constexpr int kPreviousTag = 10052;
  static constexpr int kLoadTag = 10053;
  static constexpr int kSaveTag = 10054;

  /// The style is made of bits of `menu_style`.
  KvOptionMenu(const CRect& rect, CControlListener* controlListener, int controlTag, KvFrame& owner,
               std::string menuName, std::uint32_t menuStyle);

  // Rows. An index of -1 appends. False for a row too many, or one that is not there.
  bool addEntry(const std::string& text, int index, bool isHeader);
  bool addEntry(std::unique_ptr<MenuRows> subMenu, const std::string& text);
  bool addEntry(const std::string& text, int index, long userValue);
  /// The selected row and its text; -1 and "Empty" without rows.
  int getCurrent(std::string& text) const;
  /// -1 for none.
  int getEntryIndex(std::string_view text) const { return rows.find(text); }
  bool getEntry(int index, std::string& text) const;
  bool setEntry(int index, const std::string& text);
  bool removeEntry(int index);
  void removeAllEntries();
  int getNbEntries() const { return rows.size(); }
  int getSelectedEntry() const { return rows.selected(); }
  void setEntryEnabled(int index, bool enabled);
  const KvOptionMenuUserEntry* getUserEntry(int index) const;
  /// All rows at once, in place of those there are.
  void setRows(MenuRows fresh);
  /// What the row carries that was chosen last, also in a sub-menu; -1 for nothing.
  long getChosenValue() const { return chosenValue; }

  /// Selects a row, or, for one that is not there, none.
  void setCurrent(int entry);
  void setValue(float newValue) override;
  /// Of whom the menu is opened for next.
  void setTag(int controlTag) override { userTag = controlTag; }
  int getUserTag() const { return userTag; }
  const std::string& getName() const { return name; }
  /// Follows a variable that holds the number of the row.
  void bind(const float* variable) { boundIndex = {variable}; }
  /// What it shows when it is closed, until the next choice; `path` is that of the file, if known.
  void setShownText(std::string text, std::string path = {});
  std::string currentText() const;

  // Files
  void setFolder(const std::string& path, std::string extension);
  /// Reads the folder anew; null keeps it, another path replaces it.
  void rescan(const char* path);
  /// The path of the selected file. False when the row is none.
  bool getFileName(std::string& path, const std::string& extension) const;
  /// Selects the next file, 1, or the one before, -1, and reports it.
  void stepPreset(int direction);

  void draw(CDrawContext& context) override;
  CRect drawnArea() const override;
  void gatherDamage(Damage& damage) override;
  MouseResult onMouseDown(CPoint& where, int buttons) override;
  MouseResult onMouseUp(CPoint& where, int buttons) override;
  MouseResult onMouseMoved(CPoint& where, int buttons) override;
  bool onWheel(CPoint& where, float distance, int buttons) override;
  bool onKeyDown(const WindowKey& key) override;
  void popup(PopupMode mode, const CPoint* where, int popupTag) override;
  /// At a place of the frame. The press that opened it may go on to a row and choose there.
  void openAt(CPoint where, bool byPress);
  void closePopup() override;
  void idleStep(int flag) override;
  void setPopupPanel(KvViewContainer* panel) override { popupPanel = panel; }
  bool takesFocus() const override { return getMouseEnabled(); }
  /// Space and Return open it, Up and Down choose the row beside.
  bool onFocusKey(const WindowKey& key, bool repeats) override;
  /// Of the buttons beside it.
  void valueChanged(CControl& control) override;

  bool isListOpen() const { return list != nullptr; }
  /// Null while it is closed.
  const MenuList* openList() const { return list.get(); }
  CRect getListRect() const { return list != nullptr ? list->getRect() : CRect{}; }

  CBitmap* closedBitmap = nullptr;  // rows, one below the other, of which it shows the selected
  CBitmap* openBitmap = nullptr;    // the whole list
  int listOffsetX = 0;              // of the list from the control, pixels
  int listOffsetY = 17;
  MenuLook look;
  KvOptionMenuExtraCallBack* onSelect = nullptr;
  FavouriteStore favourites;

 private:
  ~KvOptionMenu() override = default;

  bool hasStyle(std::uint32_t bit) const { return (style & bit) != 0; }
  bool insert(KvOptionMenuEntryInfo row, int index);
  /// The value follows the selected row.
  void showSelected();
  void choose(const MenuChoice& choice);
  void chooseInSubMenu(const MenuChoice& choice);
  void stepInRing(int direction);
  void reportChoice();
  bool isInUse(const MenuRows& shown, int row) const;
  void showList(MenuRows& shown, int leastWidth);
  void takeListAway();

  // over folders
  bool isFile(const MenuChoice& at) const;
  template <class Fits>
  bool findWay(const MenuRows& shown, const Fits& fits, std::vector<int>& way) const;
  std::vector<int> wayToCurrent() const;
  void showFound();
  bool pressFileKey(const WindowKey& key);
  std::string nameOf(const MenuChoice& file) const;
  void showFavourites();
  void toggleFavourite(const MenuChoice& at);

  std::string name;
  std::uint32_t style;
  MenuRows rows;
  FolderRows folder;
  int fixedCount = 0;
  std::string chosenPath;  // of a row in a sub-menu
  std::string shownText;
  std::string shownPath;  // of the file behind it
  MenuFinder finder;
  CPoint listCorner;
  long chosenValue = -1;
  BoundValue boundIndex;
  int userTag;
  KvViewContainer* popupPanel = nullptr;
  std::unique_ptr<MenuList> list;
  bool ignoreNextUp = false;  // the release belongs to whoever opened the list
  bool openingClick = false;  // not released yet
  CPoint pressedAt;           // by the press of openAt()
  bool mayGoOn = false;       // that press, to a row
};

}  // namespace zum
