// The window as hosts ask for it. What is not done answers false: windows that float.

#include <algorithm>

#include "adaptor/clap/plugin.hpp"

namespace zum::clap {
namespace {

/// What a host says is a number of any size.
HostSide::Size sizeOf(std::uint32_t width, std::uint32_t height) {
  constexpr std::uint32_t kMost = 1U << 15U;
  return {static_cast<int>(std::min(width, kMost)), static_cast<int>(std::min(height, kMost))};
}

bool supportsApi(const clap_plugin_t* /*plugin*/, const char* api, bool isFloating) {
  return Window::isSupported(api, isFloating);
}

bool preferredApi(const clap_plugin_t* /*plugin*/, const char** api, bool* isFloating) {
  if (api == nullptr || isFloating == nullptr) return false;
  *api = CLAP_WINDOW_API_X11;
  *isFloating = false;
  return true;
}

bool create(const clap_plugin_t* plugin, const char* api, bool isFloating) {
  return ask(plugin, false, [&](Face& face) { return face.window().create(api, isFloating); });
}

void destroy(const clap_plugin_t* plugin) {
  tell(plugin, [](Face& face) { face.window().destroy(); });
}

bool setScale(const clap_plugin_t* plugin, double scale) {
  return ask(plugin, false, [&](Face& face) { return face.window().setScale(scale); });
}

bool getSize(const clap_plugin_t* plugin, std::uint32_t* width, std::uint32_t* height) {
  if (width == nullptr || height == nullptr) return false;
  return ask(plugin, false, [&](Face& face) {
    const auto size = face.window().size();
    if (!size) return false;
    *width = static_cast<std::uint32_t>(size->width);
    *height = static_cast<std::uint32_t>(size->height);
    return true;
  });
}

bool canResize(const clap_plugin_t* /*plugin*/) { return true; }

bool resizeHints(const clap_plugin_t* plugin, clap_gui_resize_hints_t* hints) {
  if (hints == nullptr) return false;
  return ask(plugin, false, [&](Face& face) {
    const HostSide::Size plain = face.window().plainSize();
    *hints = {true, true, true, static_cast<std::uint32_t>(plain.width),
              static_cast<std::uint32_t>(plain.height)};
    return true;
  });
}

bool adjustSize(const clap_plugin_t* plugin, std::uint32_t* width, std::uint32_t* height) {
  if (width == nullptr || height == nullptr) return false;
  return ask(plugin, false, [&](Face& face) {
    const HostSide::Size size = face.window().fitting(sizeOf(*width, *height));
    *width = static_cast<std::uint32_t>(size.width);
    *height = static_cast<std::uint32_t>(size.height);
    return true;
  });
}

bool setSize(const clap_plugin_t* plugin, std::uint32_t width, std::uint32_t height) {
  return ask(plugin, false,
             [&](Face& face) { return face.window().setSize(sizeOf(width, height)); });
}

bool setParent(const clap_plugin_t* plugin, const clap_window_t* window) {
  if (window == nullptr) return false;
  return ask(plugin, false, [&](Face& face) { return face.window().setParent(*window); });
}

bool setTransient(const clap_plugin_t* /*plugin*/, const clap_window_t* /*window*/) {
  return false;
}

void suggestTitle(const clap_plugin_t* /*plugin*/, const char* /*title*/) {}

bool show(const clap_plugin_t* plugin) {
  return ask(plugin, false, [](Face& face) { return face.window().show(); });
}

bool hide(const clap_plugin_t* plugin) {
  return ask(plugin, false, [](Face& face) { return face.window().hide(); });
}

void onTimer(const clap_plugin_t* plugin, clap_id timer) {
  tell(plugin, [timer](Face& face) { face.window().tick(timer); });
}

}  // namespace

const clap_plugin_gui_t kGui{supportsApi, preferredApi, create,       destroy,    setScale,
                             getSize,     canResize,    resizeHints,  adjustSize, setSize,
                             setParent,   setTransient, suggestTitle, show,       hide};

const clap_plugin_timer_support_t kTimerSupport{onTimer};

}  // namespace zum::clap
