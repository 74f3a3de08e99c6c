// Bits of a menu's style.
#pragma once

#include <cstdint>

namespace zum::menu_style {

inline constexpr std::uint32_t kPlain = 1;
inline constexpr std::uint32_t kPictures = 2;         // closed and open, the rows are a picture
inline constexpr std::uint32_t kFolder = 8;           // rows are the files of a folder
inline constexpr std::uint32_t kSelectFolder = 0x10;  // a row to choose the folder with
inline constexpr std::uint32_t kSubFolders = 0x20;    // sub-folders are sub-menus
inline constexpr std::uint32_t kSteps = 0x40;         // next and previous stop at the ends
inline constexpr std::uint32_t kSaveEntry = 0x80;
inline constexpr std::uint32_t kPresetsHeader = 0x100;
inline constexpr std::uint32_t kLoadEntry = 0x800;
inline constexpr std::uint32_t kStepsThroughSubMenus = 0x80000;
inline constexpr std::uint32_t kBrackets = 0x400000;  // round the fixed rows

}  // namespace zum::menu_style
