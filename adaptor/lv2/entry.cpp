// What LV2 hosts find in the file: one plug-in and its window.
#include <lv2/atom/atom.h>
#include <lv2/core/lv2.h>
#include <lv2/instance-access/instance-access.h>
#include <lv2/options/options.h>
#include <lv2/ui/ui.h>
#include <lv2/urid/urid.h>

#include <cstring>
#include <exception>
#include <memory>
#include <string_view>

#include "adaptor/lv2/plugin.hpp"
#include "adaptor/lv2/window.hpp"

namespace zum::lv2 {
namespace {

Plugin& pluginOf(LV2_Handle handle) ZUM_REALTIME { return *static_cast<Plugin*>(handle); }

/// Nothing is thrown into a host.
template <class Work, class Answer>
auto guarded(Answer atFault, Work&& work) -> decltype(work()) {
  try {
    return work();
  } catch (const std::exception&) {
    return atFault;
  }
}

const LV2_Feature* featureOf(const LV2_Feature* const* features, std::string_view uri) {
  for (; features != nullptr && *features != nullptr; ++features) {
    if ((*features)->URI != nullptr && uri == (*features)->URI) return *features;
  }
  return nullptr;
}

template <class Data>
Data* dataOf(const LV2_Feature* const* features, std::string_view uri) {
  const LV2_Feature* const found = featureOf(features, uri);
  return found != nullptr ? static_cast<Data*>(found->data) : nullptr;
}

// ---- states

LV2_State_Status saveState(LV2_Handle instance, LV2_State_Store_Function store,
                           LV2_State_Handle handle, std::uint32_t /*flags*/,
                           const LV2_Feature* const* /*features*/) {
  return guarded(LV2_STATE_ERR_UNKNOWN, [&] { return pluginOf(instance).save(store, handle); });
}

LV2_State_Status restoreState(LV2_Handle instance, LV2_State_Retrieve_Function retrieve,
                              LV2_State_Handle handle, std::uint32_t /*flags*/,
                              const LV2_Feature* const* /*features*/) {
  return guarded(LV2_STATE_ERR_UNKNOWN,
                 [&] { return pluginOf(instance).restore(retrieve, handle); });
}

const void* extensionOfPlugin(const char* uri) {
  static const LV2_State_Interface states{saveState, restoreState};
  return std::string_view(uri) == LV2_STATE__interface ? &states : nullptr;
}

// ---- the plug-in

/// Some tools offer nothing, although the plug-in asks for a map. They send no events and keep no
/// states; numbers that differ are all it takes.
LV2_URID countWords(LV2_URID_Map_Handle count, const char* /*uri*/) {
  return ++*static_cast<LV2_URID*>(count);
}

LV2_Handle instantiate(const LV2_Descriptor* /*descriptor*/, double rate, const char* /*bundle*/,
                       const LV2_Feature* const* features) {
  const auto* const map = dataOf<LV2_URID_Map>(features, LV2_URID__map);
  if (!HostSide::isRate(rate)) return nullptr;
  LV2_URID words = 0;
  const LV2_URID_Map counted{&words, countWords};
  return guarded(LV2_Handle{},
                 [&] { return LV2_Handle{new Plugin(rate, map != nullptr ? *map : counted)}; });
}

void connectPort(LV2_Handle instance, std::uint32_t port, void* place) {
  pluginOf(instance).connect(port, place);
}

void activate(LV2_Handle instance) {
  guarded(0, [&] { return pluginOf(instance).activate(), 0; });
}

void run(LV2_Handle instance, std::uint32_t frames) ZUM_REALTIME { pluginOf(instance).run(frames); }

void deactivate(LV2_Handle instance) {
  guarded(0, [&] { return pluginOf(instance).deactivate(), 0; });
}

void cleanUp(LV2_Handle instance) { delete &pluginOf(instance); }

constexpr LV2_Descriptor kDescriptor{kPluginUri, instantiate, connectPort, activate,
                                     run,        deactivate,  cleanUp,     extensionOfPlugin};

// ---- the window

/// What a host offers as an option, for which it must have numbers for words.
double scaleIn(const LV2_Feature* const* features) {
  const auto* const map = dataOf<LV2_URID_Map>(features, LV2_URID__map);
  const auto* option = dataOf<LV2_Options_Option>(features, LV2_OPTIONS__options);
  if (map == nullptr || option == nullptr) return 0.0;
  const LV2_URID wanted = map->map(map->handle, LV2_UI__scaleFactor);
  const LV2_URID decimal = map->map(map->handle, LV2_ATOM__Float);
  for (; option->key != 0; ++option) {
    if (option->key != wanted || option->type != decimal || option->size != sizeof(float)) continue;
    float scale = 0.0F;
    if (option->value != nullptr) std::memcpy(&scale, option->value, sizeof scale);
    return static_cast<double>(scale);
  }
  return 0.0;
}

PluginWindow& windowOf(LV2UI_Handle handle) { return *static_cast<PluginWindow*>(handle); }

LV2UI_Handle openWindow(const LV2UI_Descriptor* /*descriptor*/, const char* pluginUri,
                        const char* /*bundle*/, LV2UI_Write_Function write,
                        LV2UI_Controller controller, LV2UI_Widget* widget,
                        const LV2_Feature* const* features) {
  auto* const plugin = dataOf<Plugin>(features, LV2_INSTANCE_ACCESS_URI);
  void* const parent = dataOf<void>(features, LV2_UI__parent);
  if (plugin == nullptr || parent == nullptr || widget == nullptr || pluginUri == nullptr ||
      std::strcmp(pluginUri, kPluginUri) != 0 || plugin->window() != nullptr) {
    return nullptr;
  }
  const PluginWindow::Host host{write,
                                controller,
                                reinterpret_cast<std::uintptr_t>(parent),
                                dataOf<LV2UI_Resize>(features, LV2_UI__resize),
                                dataOf<LV2UI_Touch>(features, LV2_UI__touch),
                                featureOf(features, LV2_UI__idleInterface) != nullptr,
                                scaleIn(features)};
  return guarded(LV2UI_Handle{}, [&]() -> LV2UI_Handle {
    auto window = std::make_unique<PluginWindow>(*plugin, host);
    if (!window->open()) return nullptr;
    // NOLINTNEXTLINE(performance-no-int-to-ptr): hosts take the system's number as a pointer
    *widget = reinterpret_cast<LV2UI_Widget>(window->number());
    return window.release();
  });
}

void closeWindow(LV2UI_Handle handle) {
  guarded(0, [&] { return delete &windowOf(handle), 0; });
}

/// The window shows the effect itself; but hosts without a timer for windows call here.
void portMoved(LV2UI_Handle handle, std::uint32_t /*port*/, std::uint32_t /*size*/,
               std::uint32_t /*format*/, const void* /*value*/) {
  guarded(0, [&] { return windowOf(handle).hearPort(), 0; });
}

int idle(LV2UI_Handle handle) {
  return guarded(1, [&] { return windowOf(handle).idle() ? 0 : 1; });
}

int resize(LV2UI_Feature_Handle handle, int width, int height) {
  return guarded(1, [&] { return windowOf(handle).takeSize({width, height}), 0; });
}

const void* extensionOfWindow(const char* uri) {
  static const LV2UI_Idle_Interface idles{idle};
  static const LV2UI_Resize resizes{nullptr, resize};
  if (std::string_view(uri) == LV2_UI__resize) return &resizes;
  return std::string_view(uri) == LV2_UI__idleInterface ? &idles : nullptr;
}

constexpr LV2UI_Descriptor kUiDescriptor{kUiUri, openWindow, closeWindow, portMoved,
                                         extensionOfWindow};

}  // namespace
}  // namespace zum::lv2

extern "C" {

LV2_SYMBOL_EXPORT const LV2_Descriptor* lv2_descriptor(std::uint32_t index) {
  return index == 0 ? &zum::lv2::kDescriptor : nullptr;
}

LV2_SYMBOL_EXPORT const LV2UI_Descriptor* lv2ui_descriptor(std::uint32_t index) {
  return index == 0 ? &zum::lv2::kUiDescriptor : nullptr;
}
}
