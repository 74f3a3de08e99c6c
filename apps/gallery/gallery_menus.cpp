// The gallery's menus: of pictures, plain, nested, too long for the window, and over a folder.
#include <filesystem>

#include "apps/gallery/gallery.hpp"
#include "apps/gallery/gallery_pictures.hpp"
#include "platform/files.hpp"
#include "state/preset_format.hpp"
#include "toolkit/button.hpp"
#include "toolkit/option_menu.hpp"

namespace zum {
namespace {

using Model = GalleryModel;
constexpr auto kPlain = KvOptionMenu::kPlain;
constexpr auto kPictures = KvOptionMenu::kPictures;
constexpr auto kFolder = KvOptionMenu::kFolder;
constexpr auto kSubFolders = KvOptionMenu::kSubFolders;

// clang-format off
struct MenuRow {
  const char* name;
  CRect place;
  std::uint32_t style;
  float Model::*variable;
};
constexpr MenuRow kMenus[] = {
    {"picture", { 20, 230, 124, 247}, kPictures, &Model::picture},
    {"list",    {144, 230, 248, 247}, kPlain, &Model::list},
    {"nested",  {268, 230, 372, 247}, kPlain | kSubFolders, &Model::nested},
    {"long",    {392, 230, 496, 247}, kPlain, &Model::longList},
    {"folder",  {516, 230, 620, 247}, kFolder | kSubFolders, &Model::folder},
};
// clang-format on
constexpr const char* kPlainRows[] = {"one", "two", "three"};
constexpr const char* kWaves[] = {"sine", "saw", "square"};
constexpr const char* kNoises[] = {"white", "pink"};

void fill(KvOptionMenu& menu, std::span<const char* const> rows) {
  for (const char* const row : rows) menu.addEntry(row, -1, false);
}

}  // namespace

void Gallery::addMenus() {
  const auto style = [this](KvOptionMenu& menu) {
    menu.backgroundColor = kBox;
    menu.look.selectedBackColor = kAccent;
    menu.look.frameColor = kDark;
    menu.font = font.get();
  };
  for (const MenuRow& row : kMenus) {
    float& variable = variables.*row.variable;
    auto* const menu = add<KvOptionMenu>(row.name, row.place, &variable, row.name, row.style);
    style(*menu);
    menu->labelText = row.name;
    menu->closedBitmap = pictures.menuBox.get();
    menu->bind(&variable);
  }
  auto& picture = get<KvOptionMenu>("picture");
  fill(picture, kGalleryRows);
  picture.closedBitmap = pictures.closedRows.get();
  picture.openBitmap = pictures.closedRows.get();
  picture.look.rowBitmap = pictures.litRows.get();
  fill(get<KvOptionMenu>("list"), kPlainRows);

  auto& nested = get<KvOptionMenu>("nested");
  const auto addSubMenu = [&](const char* name, std::span<const char* const> rows) {
    auto* const inner =
        new KvOptionMenu({}, nullptr, nested.getTag(), *frame.get(), name, KvOptionMenu::kPlain);
    style(*inner);
    inner->listOffsetX = 0;
    inner->listOffsetY = -inner->look.itemHeight;
    fill(*inner, rows);
    nested.addEntry(inner, name);
  };
  addSubMenu("waves", kWaves);
  addSubMenu("noises", kNoises);
  nested.addEntry("silence", -1, false);

  auto& rows = get<KvOptionMenu>("long");
  for (std::size_t i = 0; i < KvOptionMenu::kMostRows; ++i) {
    rows.addEntry("row " + std::to_string(i), -1, false);
  }
  if (folder.empty()) return;
  const std::string path = std::filesystem::absolute(folder).string();
  get<KvOptionMenu>("folder").setFolder(toInternalPath(path), preset::kExtension);
}

void Gallery::addMenuButton() {
  float& variable = variables.buttons[static_cast<std::size_t>(ButtonMode::opensMenu)];
  auto* const button = add<KvButton>("menu", {568, 152, 620, 174}, &variable, "menu", variable,
                                     ButtonMode::opensMenu);
  auto* const rows = add<KvOptionMenu>("rows", {}, nullptr, "rows", KvOptionMenu::kPlain);
  rows->backgroundColor = kBox;
  rows->look.selectedBackColor = kAccent;
  rows->look.frameColor = kDark;
  fill(*rows, kPlainRows);
  rows->onSelect = button;
  button->menu = rows;
  button->bind(&variable);
}

}  // namespace zum
