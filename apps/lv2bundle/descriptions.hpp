// The texts of the LV2 bundle, made of the parameter table and the factory presets.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "adaptor/lv2/ports.hpp"

namespace zum {

struct BundlePreset {
  std::string bank;  // the folder
  std::string name;
  std::filesystem::path file;
  /// Of the plug-in's name space, for ever: sessions may keep it.
  std::string uri() const;
};

/// What a preset file brings. Throws std::runtime_error for a file that is no preset.
lv2::PortValues portValues(const std::filesystem::path& file);

/// manifest.ttl: what a host reads of every bundle when it starts.
std::string manifestText(const std::vector<BundlePreset>& presets);
/// zum.ttl: the plug-in, its ports and its window. `version` is major.minor.patch; `defaults` are
/// those of the preset that the effect starts with, as hosts set ports to them.
std::string pluginText(const std::string& version, const lv2::PortValues& defaults);
/// presets.ttl. Throws std::runtime_error for a file that is no preset.
std::string presetsText(const std::vector<BundlePreset>& presets);

}  // namespace zum
