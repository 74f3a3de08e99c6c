// An open list of a menu, and beside it the lists of the sub-menus that are open: where they lie,
// what they look like, and what the mouse and the keys do to them.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>

#include "platform/input.hpp"
#include "toolkit/menu_aim.hpp"
#include "toolkit/menu_rows.hpp"
#include "toolkit/menu_scroll.hpp"
#include "toolkit/view/bitmap.hpp"
#include "toolkit/view/damage.hpp"
#include "toolkit/view/font.hpp"

namespace zum {

/// How lists look.
struct MenuLook {
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
  CColor fieldColor = kWhiteColor;     // ground of what is typed
};
// Pixels beside the text of a row; the left one also of a closed menu. On the right the signs
// stand.
constexpr int kMenuTextInset = 6;
constexpr int kMenuSignWidth = 12;

/// [main] The outermost one takes what the user does, and hands it to the list it is meant for.
class MenuList {
 public:
  struct Style {
    MenuLook look;
    const CFontDesc* font = nullptr;
    CColor textColor = kBlackColor;
    CColor backgroundColor = kWhiteColor;
    CBitmap* picture = nullptr;  // of the whole list; sub-menus have none
    Scale scale;                 // of the window that it lies in
  };
  /// Whether a row is what the menu shows when it is closed.
  using InUse = std::function<bool(const MenuRows& rows, int row)>;

  /// Its top left corner as near to `corner` as the room allows; what is too long is scrolled. The
  /// rows outlive it.
  MenuList(MenuRows& shown, const Style& listStyle, const CRect& space, CPoint corner,
           int leastWidth);
  /// It opens next time where it was left.
  ~MenuList() { rows.scrollPosition = scroll.getPosition(); }
  MenuList(const MenuList&) = delete;
  MenuList& operator=(const MenuList&) = delete;

  const CRect& getRect() const { return rect; }
  /// Of the window, as its rows were measured.
  const Scale& scale() const { return style.scale; }
  /// The list of the sub-menu that is open, null for none.
  const MenuList* getChild() const { return child.get(); }
  /// -1 for none.
  int rowAt(CPoint where) const;
  /// Of all lists.
  CRect drawnArea() const;
  void draw(CDrawContext& context, const InUse& inUse) const;
  /// Adds what changed since the last call.
  void gatherDamage(Damage& damage);

  /// Opens the sub-menus on the way to a row, one number a list, and shows it. Keys start there.
  void reveal(std::span<const int> way);
  /// Nobody has done anything in it since.
  bool isAsRevealed() const { return asRevealed; }
  /// As if the pointer were on it.
  void light(int row) { hover(row); }
  /// What is under the pointer, or was chosen by keys, in whichever list.
  std::optional<MenuChoice> choiceAt(CPoint where);
  std::optional<MenuChoice> litChoice();

  void press(CPoint where);
  void move(CPoint where);
  /// True when it ended the drag of a scroll bar.
  bool release();
  bool isOnRow(CPoint where);
  /// Chooses the row at a place, or opens its sub-menu.
  std::optional<MenuChoice> pick(CPoint where);
  /// False for a place outside of all lists.
  bool wheel(CPoint where, float distance);
  std::optional<MenuChoice> pressKey(const WindowKey& key);
  /// A pointer that rests on its way into a sub-menu means the row under it.
  void tick(std::optional<CPoint> pointer);

 private:
  int rowsInside() const;
  int firstVisible() const { return scroll.isNeeded() ? scroll.firstRow() : 0; }
  CRect rowRect(int row) const;
  void drawRow(CDrawContext& context, int row, bool isMarked) const;
  void drawPictureRow(CDrawContext& context, int row, bool isMarked) const;
  void drawHeader(CDrawContext& context, int row) const;
  void drawSigns(CDrawContext& context, int row, CColor color) const;
  void placeBar();
  void changed() { damaged.add(rect); }
  MenuList* listAt(CPoint where);
  MenuList* dragged();
  void follow(CPoint where);
  void hover(int row);
  void walk(int from, int direction);
  void openChild(int row);
  void closeChild();
  std::optional<MenuChoice> choose(int row);

  MenuRows& rows;
  Style style;
  CRect room;
  CRect rect;
  MenuScroll scroll;
  int hoveredRow = -1;
  int startRow = -1;  // of keys
  bool asRevealed = false;
  MenuAim aim;  // from the hovered row
  Damage damaged;
  std::unique_ptr<MenuList> child;  // of the hovered row
};

}  // namespace zum
