#include "editor/window_menu.hpp"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <memory>
#include <string>
#include <utility>

#include "core/tags.hpp"
#include "editor/uni_client_editor.hpp"

namespace zum {
namespace {

using M = const WindowMenu;

bool hasPresets(M& menu, int /*argument*/) {
  const auto all = menu.effect.programs();
  for (int folder = 0; folder < all->folderCount(); ++folder) {
    if (all->presetCount(folder) > 1) return true;
  }
  return false;
}

bool hasFile(M& menu, int /*argument*/) { return !menu.effect.slot().path.get().empty(); }

bool hasBindings(M& menu, int /*argument*/) {
  return std::ranges::any_of(menu.effect.controllers().controllers,
                             [](const BindingList& list) { return list.size() > 0; });
}

bool isLearning(M& menu, int tag) { return menu.effect.learning().load() == tag; }

void learn(M& menu, int tag) {
  if (isLearning(menu, tag)) return menu.effect.endLearn();
  menu.effect.beginLearn(tag);
}

std::string undone(M& menu) { return menu.effect.undoName().value_or(""); }
std::string redone(M& menu) { return menu.effect.redoName().value_or(""); }
std::string otherSound(M& menu) { return menu.effect.chosenSound() == 0 ? "A to B" : "B to A"; }

bool isChosen(M& menu, int sound) { return menu.effect.chosenSound() == sound; }
void choose(M& menu, int sound) {
  if (!isChosen(menu, sound)) menu.effect.chooseSound(sound);
}

bool hasSize(M& menu, int percent) {
  return std::lround(100.0 * menu.editor.factorChosen()) == percent;
}
std::string whenSized(M& menu) { return menu.editor.mayResize() ? "" : "when opened again"; }
void setSize(M& menu, int percent) { menu.editor.chooseFactor(percent / 100.0); }

/// The routines get `argument`.
struct MenuRow {
  int level;         // 1 for the rows of the sub-menu that the last row of level 0 opens
  const char* text;  // "" for a line
  void (*act)(M& menu, int argument) = nullptr;
  bool (*isOn)(M& menu, int argument) = nullptr;      // null: always
  bool (*isMarked)(M& menu, int argument) = nullptr;  // null: never
  int argument = 0;
  std::string (*object)(M& menu) = nullptr;  // behind the text; null: none
};

// clang-format off
constexpr MenuRow kRows[] = {
//   text                    does                                             is on        is marked
  {0, "Undo",                [](M& m, int) { m.effect.undo(); },
                             [](M& m, int) { return m.effect.canUndo(); },    nullptr, 0, undone},
  {0, "Redo",                [](M& m, int) { m.effect.redo(); },
                             [](M& m, int) { return m.effect.canRedo(); },    nullptr, 0, redone},
  {0, ""},
  {0, "A",                   choose,                                          nullptr, isChosen, 0},
  {0, "B",                   choose,                                          nullptr, isChosen, 1},
  {0, "Copy",                [](M& m, int) { m.effect.copySound(); },         nullptr, nullptr, 0, otherSound},
  {0, ""},
  {0, "Initialise",          [](M& m, int) { m.effect.initialise(); }},
  {0, "Randomise",           [](M& m, int) { m.editor.rollDice(); }},
  {0, "Random preset",       [](M& m, int) { m.editor.playAnyPreset(); },     hasPresets},
  {0, "Revert",              [](M& m, int) { m.editor.revert(); },
                             [](M& m, int) { return m.effect.canRevert(); }},
  {0, ""},
  {0, "Previous file",       [](M& m, int) { m.effect.previousPreset(0); },   hasFile},
  {0, "Next file",           [](M& m, int) { m.effect.nextPreset(0); },       hasFile},
  {0, ""},
  {0, "Copy sound",          [](M& m, int) { m.editor.copySoundText(); }},
  {0, "Paste sound",         [](M& m, int) { m.editor.pasteSoundText(); }},
  {0, ""},
  {0, "Controller map"},
  {1, "Load...",             [](M& m, int) { m.effect.loadCcMap(nullptr); }},
  {1, "Save...",             [](M& m, int) { m.effect.saveCcMap(nullptr); }},
  {1, "Clear all",           [](M& m, int) { m.effect.clearAllBindings(); },  hasBindings},
  {1, ""},
  {1, "Learn next preset",     learn, nullptr, isLearning, tag::nextProgram},
  {1, "Learn previous preset", learn, nullptr, isLearning, tag::previousProgram},
  {0, "Window size", nullptr, nullptr, nullptr, 0, whenSized},
  {1, "100 %",               setSize, nullptr, hasSize, 100},
  {1, "125 %",               setSize, nullptr, hasSize, 125},
  {1, "150 %",               setSize, nullptr, hasSize, 150},
  {1, "200 %",               setSize, nullptr, hasSize, 200},
  {1, "250 %",               setSize, nullptr, hasSize, 250},
  {1, "300 %",               setSize, nullptr, hasSize, 300},
  {0, ""},
  {0, "Preset folder...",    [](M& m, int) { m.editor.choosePresetFolder(); }},
  {0, "Manual",              [](M& m, int) { m.editor.openManual(); }},
  {0, "About",               [](M& m, int) { m.editor.raiseAbout(); }},
};
// clang-format on

}  // namespace

MenuRows WindowMenu::rows() const {
  MenuRows all;
  for (const MenuRow& row : kRows) {
    KvOptionMenuEntryInfo info;
    info.text = row.text;
    info.isHeader = info.text.empty();
    const std::string object = row.object != nullptr ? row.object(*this) : "";
    if (!object.empty()) info.text += ' ' + object;
    info.enabled = row.isOn == nullptr || row.isOn(*this, row.argument);
    info.isMarked = row.isMarked != nullptr && row.isMarked(*this, row.argument);
    const bool opens = row.act == nullptr && !info.isHeader;
    if (row.act != nullptr) {
      info.userEntry = std::make_unique<KvOptionMenuUserEntryLong>(&row - kRows);
    }
    if (opens) info.subMenu = std::make_unique<MenuRows>();
    MenuRows& level = row.level == 0 ? all : *all[all.size() - 1].subMenu;
    level.tryInsert(std::move(info), -1);
  }
  return all;
}

// Things may have changed since the list was opened.
void WindowMenu::act(long place) const {
  if (place < 0 || place >= std::ssize(kRows)) return;
  const MenuRow& row = kRows[place];
  if (row.isOn == nullptr || row.isOn(*this, row.argument)) row.act(*this, row.argument);
}

}  // namespace zum
