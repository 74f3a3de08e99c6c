// lv2-bundle PRESETS FOLDER VERSION: writes the texts of the LV2 bundle. Run by the build.
#include <algorithm>
#include <exception>
#include <fstream>
#include <iostream>
#include <stdexcept>

#include "apps/lv2bundle/descriptions.hpp"
#include "platform/standard_streams.hpp"
#include "state/preset_format.hpp"

namespace {

namespace fs = std::filesystem;

/// Those in folders: what lies beside them is not for browsers. A user's own stay out.
std::vector<zum::BundlePreset> presetsBelow(const fs::path& root) {
  std::vector<zum::BundlePreset> presets;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root)) {
    const fs::path folder = entry.path().parent_path();
    if (entry.path().extension() != '.' + std::string(zum::preset::kExtension) || folder == root ||
        folder.filename() == "User") {
      continue;
    }
    presets.push_back({folder.filename(), entry.path().stem(), entry.path()});
  }
  std::ranges::sort(presets, {}, &zum::BundlePreset::file);
  return presets;
}

void write(const fs::path& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary);
  if (!(file << text).flush()) throw std::runtime_error("cannot write " + path.string());
}

}  // namespace

int main(int count, char** words) {
  zum::openStandardStreams();
  try {
    if (count != 4) throw std::runtime_error("usage: lv2-bundle PRESETS FOLDER VERSION");
    const auto presets = presetsBelow(words[1]);
    const fs::path start = fs::path(words[1]) / (std::string("default.") + zum::preset::kExtension);
    const fs::path bundle = words[2];
    fs::create_directories(bundle);
    write(bundle / "manifest.ttl", zum::manifestText(presets));
    write(bundle / "zum.ttl", zum::pluginText(words[3], zum::portValues(start)));
    write(bundle / "presets.ttl", zum::presetsText(presets));
    return 0;
  } catch (const std::exception& fault) {
    std::cerr << "lv2-bundle: " << fault.what() << '\n';
    return 1;
  }
}
