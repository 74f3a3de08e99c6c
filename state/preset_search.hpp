// Where in the tree of presets a file lies. Asked when a state names its preset.
#pragma once

#include <string>

namespace zum {

struct FoundPreset {
  std::string path;    // of the file
  std::string folder;  // name of the folder that holds it
};

/// [main] The first file of exactly that name, depth first in the order of listings; empty texts
/// for none. Folders that links lead to twice are searched once, and a tree without an end is given
/// up.
FoundPreset findPresetFile(const std::string& root, const std::string& fileName);

}  // namespace zum
