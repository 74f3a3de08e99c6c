// What a host finds in the file: the entry, and behind it one kind of plug-in and its presets.

#include <cstring>

#include "adaptor/clap/plugin.hpp"

namespace zum::clap {
namespace {

bool init(const char* /*path*/) { return true; }

void deinit() {}

std::uint32_t countPlugins(const clap_plugin_factory_t* /*factory*/) { return 1; }

const clap_plugin_descriptor_t* describePlugin(const clap_plugin_factory_t* /*factory*/,
                                               std::uint32_t index) {
  return index == 0 ? &kDescriptor : nullptr;
}

const clap_plugin_t* createPlugin(const clap_plugin_factory_t* /*factory*/, const clap_host_t* host,
                                  const char* id) {
  if (host == nullptr || id == nullptr || std::strcmp(id, kDescriptor.id) != 0) return nullptr;
  return clap_version_is_compatible(host->clap_version) ? makePlugin(*host) : nullptr;
}

constexpr clap_plugin_factory_t kPlugins{countPlugins, describePlugin, createPlugin};

const void* getFactory(const char* id) {
  if (id == nullptr) return nullptr;
  if (std::strcmp(id, CLAP_PLUGIN_FACTORY_ID) == 0) return &kPlugins;
  const bool isForPresets = std::strcmp(id, CLAP_PRESET_DISCOVERY_FACTORY_ID) == 0 ||
                            std::strcmp(id, CLAP_PRESET_DISCOVERY_FACTORY_ID_COMPAT) == 0;
  return isForPresets ? &kPresetDiscovery : nullptr;
}

}  // namespace
}  // namespace zum::clap

// declared, and made visible, by the interface
const clap_plugin_entry_t clap_entry{CLAP_VERSION, zum::clap::init, zum::clap::deinit,
                                     zum::clap::getFactory};
