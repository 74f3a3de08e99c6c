// Controllers as the command line gives them: bindings for one run, and map files. Used by the
// render and ccmap commands.
#pragma once

#include <filesystem>
#include <string_view>

#include "apps/zum/effect_view.hpp"
#include "core/controller_map.hpp"

namespace zum {

struct ControllerSetting {
  int controller;  // -1 for channel pressure
  int tag;
};

/// Reads "CC=NAME" or "aftertouch=NAME"; throws Failure.
ControllerSetting parseControllerSetting(std::string_view text);

/// Fills an empty map from a file; throws Failure.
void readControllerMap(const std::filesystem::path& path, ControllerMap& map);

/// Makes the file's map that of the effect; throws Failure.
void loadControllerMap(const std::filesystem::path& path, EffectView& effect);

}  // namespace zum
