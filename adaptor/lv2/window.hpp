// The effect's window inside of an LV2 host's: works on the instance itself, and tells the host by
// writing ports.
#pragma once

#include <lv2/ui/ui.h>

#include <cstdint>
#include <memory>

#include "adaptor/lv2/plugin.hpp"

namespace zum::lv2 {

/// [main] The instance outlives it.
class PluginWindow final : private HostSide::Listener, private HostSide::WindowFrame {
 public:
  /// What the host offers; null for what it does not.
  struct Host {
    LV2UI_Write_Function write;
    LV2UI_Controller controller;
    std::uintptr_t parent;  // number of its window
    const LV2UI_Resize* resize;
    const LV2UI_Touch* touch;
    bool hasIdle;
    double scale;  // at which it shows its windows; 0 where it does not say
  };

  PluginWindow(Plugin& instance, const Host& host);
  PluginWindow(const PluginWindow&) = delete;
  PluginWindow& operator=(const PluginWindow&) = delete;
  ~PluginWindow();

  /// False when there is no window to be had.
  bool open();
  /// The host made room for so many pixels.
  void takeSize(const HostSide::Size& given) { plugin.host().resizeWindow(given); }
  /// The system's number of the window.
  std::uintptr_t number() const;
  /// False when the window is gone.
  bool idle();
  /// A port moved: the one call that a host without a timer for windows makes.
  void hearPort();

 private:
  /// Writes the ports of all that has moved by itself.
  void tellChanges();
  void gestureBegan(int tag) override { touch(tag, true); }
  void gestureMoved(int tag, float raw) override;
  void gestureEnded(int tag) override { touch(tag, false); }
  void presetChanged() override {}  // what that writes is told with all other changes

  bool resize(const HostSide::Size& wanted) override;

  void touch(int tag, bool holds);
  void write(std::size_t position, float value);

  Plugin& plugin;
  const Host host;
  const std::shared_ptr<bool> life = std::make_shared<bool>(true);
};

}  // namespace zum::lv2
