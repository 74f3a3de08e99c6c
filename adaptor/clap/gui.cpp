// The window as hosts ask for it. What is not done answers false: other sizes and scales, windows
// that float.

#include "adaptor/clap/plugin.hpp"

namespace zum::clap {
namespace {

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

bool setScale(const clap_plugin_t* /*plugin*/, double /*scale*/) { return false; }

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

bool canResize(const clap_plugin_t* /*plugin*/) { return false; }

bool resizeHints(const clap_plugin_t* /*plugin*/, clap_gui_resize_hints_t* /*hints*/) {
  return false;
}

bool adjustSize(const clap_plugin_t* /*plugin*/, std::uint32_t* /*width*/,
                std::uint32_t* /*height*/) {
  return false;
}

bool setSize(const clap_plugin_t* /*plugin*/, std::uint32_t /*width*/, std::uint32_t /*height*/) {
  return false;
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
