#include "adaptor/lv2/window.hpp"

#include <bit>

#include "core/parameter_text.hpp"
#include "editor/uni_client_editor.hpp"

namespace zum::lv2 {

PluginWindow::PluginWindow(Plugin& instance, const Host& theHost)
    : plugin(instance), host(theHost) {
  plugin.setWindow(this);
}

PluginWindow::~PluginWindow() {
  plugin.host().closeWindow();
  plugin.setWindow(nullptr);
}

bool PluginWindow::open() {
  plugin.host().setWindowScale(host.scale);
  if (!plugin.host().openWindow(host.parent, this)) return false;
  resize(plugin.host().windowSize());
  if (!host.hasIdle) plugin.host().idleByOwnThread();
  return true;
}

std::uintptr_t PluginWindow::number() const {
  const auto* const editor =
      dynamic_cast<const KvUniClientEditor*>(plugin.host().client().getEditor());
  return editor != nullptr && editor->shownFrame() != nullptr ? editor->shownFrame()->nativeHandle()
                                                              : 0;
}

// A host may close the window inside of what it hears.
bool PluginWindow::idle() {
  const std::weak_ptr<bool> alive = life;
  plugin.host().idleWindow();
  if (alive.expired()) return false;
  tellChanges();
  return plugin.host().isWindowOpen();
}

void PluginWindow::hearPort() {
  if (!host.hasIdle) tellChanges();
}

// ---- towards the host

bool PluginWindow::resize(const HostSide::Size& wanted) {
  return host.resize != nullptr && host.resize->ui_resize != nullptr &&
         host.resize->ui_resize(host.resize->handle, wanted.width, wanted.height) == 0;
}

void PluginWindow::tellChanges() {
  const auto tags = faceTags();
  std::uint64_t changes = plugin.takeChanges();
  for (; changes != 0; changes &= changes - 1) {
    const auto i = static_cast<std::size_t>(std::countr_zero(changes));
    write(i, portOfPlain(tags[i], plugin.host().plainValue(tags[i])));
  }
}

void PluginWindow::gestureMoved(int tag, float raw) {
  const int position = facePosition(tag);
  if (position < 0) return;
  write(static_cast<std::size_t>(position), portOfPlain(tag, plainOfRaw(*findRow(tag), raw)));
}

void PluginWindow::touch(int tag, bool holds) {
  const int position = facePosition(tag);
  if (position < 0 || host.touch == nullptr || host.touch->touch == nullptr) return;
  host.touch->touch(host.touch->handle, Port::firstControl + static_cast<std::uint32_t>(position),
                    holds);
}

void PluginWindow::write(std::size_t position, float value) {
  if (host.write == nullptr) return;
  plugin.controls().tell(position, value);
  constexpr std::uint32_t kPlainFloat = 0;
  host.write(host.controller, Port::firstControl + static_cast<std::uint32_t>(position),
             sizeof value, kPlainFloat, &value);
}

}  // namespace zum::lv2
