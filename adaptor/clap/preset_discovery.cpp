// [main] Presets for a host's browser: where they lie, and what a file tells by its name. No effect
// is needed for it.

#include <algorithm>
#include <cstring>
#include <exception>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "adaptor/clap/plugin.hpp"
#include "core/plugin_base.hpp"
#include "core/preset_desk.hpp"
#include "platform/content_folder.hpp"
#include "platform/files.hpp"
#include "state/path_text.hpp"
#include "state/preset_format.hpp"

namespace zum::clap {
namespace {

constexpr clap_preset_discovery_provider_descriptor_t kProvider{
    CLAP_VERSION, "com.zelvane.zum.presets", "ZUM presets", kVendor};

struct Provider {
  clap_preset_discovery_provider_t record;
  const clap_preset_discovery_indexer_t& indexer;
};

struct Place {
  std::string folder;  // internal form, a backslash at its end
  std::uint32_t flags;
};

/// The tree that the effect's own menus show, and what was installed where that is another one.
std::vector<Place> places() {
  std::vector<Place> found;
  const auto add = [&](const std::string& folder, std::uint32_t flags) {
    const auto isSame = [&](const Place& place) {
      return folderId(place.folder) == folderId(folder);
    };
    if (folder.empty() || !folderId(folder)) return;
    if (std::none_of(found.begin(), found.end(), isSame)) found.push_back({folder, flags});
  };
  const std::string content = installedContentFolder();
  if (!content.empty()) add(content + "Presets\\", CLAP_PRESET_DISCOVERY_IS_FACTORY_CONTENT);
  add(PresetDesk::root(), CLAP_PRESET_DISCOVERY_IS_USER_CONTENT);
  return found;
}

bool initProvider(const clap_preset_discovery_provider_t* provider) try {
  const clap_preset_discovery_indexer_t& indexer =
      static_cast<const Provider*>(provider->provider_data)->indexer;
  const clap_preset_discovery_filetype_t type{"ZUM preset", "", preset::kExtension};
  if (!indexer.declare_filetype(&indexer, &type)) return false;
  for (const Place& place : places()) {
    std::string folder = toSystemPath(place.folder);
    folder.pop_back();  // the separator
    const clap_preset_discovery_location_t location{
        place.flags, "ZUM presets", CLAP_PRESET_DISCOVERY_LOCATION_FILE, folder.c_str()};
    if (!indexer.declare_location(&indexer, &location)) return false;
  }
  return true;
} catch (const std::exception&) {
  return false;
}

void destroyProvider(const clap_preset_discovery_provider_t* provider) {
  delete static_cast<const Provider*>(provider->provider_data);
}

bool getMetadata(const clap_preset_discovery_provider_t* /*provider*/, std::uint32_t kind,
                 const char* location,
                 const clap_preset_discovery_metadata_receiver_t* receiver) try {
  if (kind != CLAP_PRESET_DISCOVERY_LOCATION_FILE || location == nullptr || receiver == nullptr) {
    return false;
  }
  const std::string file = toInternalPath(location);
  if (!file.ends_with(std::string(".") + preset::kExtension) || !fileExists(file)) {
    receiver->on_error(receiver, 0, "the file is missing or no preset");
    return false;
  }
  const std::string name(baseName(file));
  if (name == "default") return true;  // what an effect starts with, and no program of the bank
  const std::string folder(folderName(file));  // "Bass", "Drums"
  if (!receiver->begin_preset(receiver, name.c_str(), "")) return true;
  const clap_universal_plugin_id_t plugin{"clap", kDescriptor.id};
  receiver->add_plugin_id(receiver, &plugin);
  if (!folder.empty()) receiver->add_feature(receiver, folder.c_str());
  return true;
} catch (const std::exception&) {
  return false;
}

const void* noExtension(const clap_preset_discovery_provider_t* /*provider*/, const char* /*id*/) {
  return nullptr;
}

std::uint32_t countProviders(const clap_preset_discovery_factory_t* /*factory*/) { return 1; }

const clap_preset_discovery_provider_descriptor_t* describeProvider(
    const clap_preset_discovery_factory_t* /*factory*/, std::uint32_t index) {
  return index == 0 ? &kProvider : nullptr;
}

const clap_preset_discovery_provider_t* createProvider(
    const clap_preset_discovery_factory_t* /*factory*/,
    const clap_preset_discovery_indexer_t* indexer, const char* id) {
  if (indexer == nullptr || id == nullptr || std::strcmp(id, kProvider.id) != 0) return nullptr;
  auto* const made = new (std::nothrow) Provider{
      {&kProvider, nullptr, initProvider, destroyProvider, getMetadata, noExtension}, *indexer};
  if (made == nullptr) return nullptr;
  made->record.provider_data = made;
  return &made->record;
}

}  // namespace

const clap_preset_discovery_factory_t kPresetDiscovery{countProviders, describeProvider,
                                                       createProvider};

}  // namespace zum::clap
