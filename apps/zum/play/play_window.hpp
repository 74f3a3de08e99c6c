// The program's own window: the effect's inside of it, and the transport strip below.
#pragma once

#include <filesystem>
#include <optional>

#include "adaptor/host_side.hpp"
#include "apps/zum/play/strip.hpp"
#include "toolkit/resting_scale.hpp"

namespace zum {

/// [main] It may not go inside of what it calls.
class PlayWindow : private CEditorInterface, private HostSide::WindowFrame {
 public:
  /// Both outlive it; the effect's window must be closed. Comes up at `place`, as far as the screen
  /// reaches, or where the window manager wants it. Throws Failure where there is no display.
  PlayWindow(HostSide& host, StripOwner& owner, std::optional<ScreenPlace> place = std::nullopt);
  ~PlayWindow() override;

  /// Some thirty times a second.
  void idle();
  /// Closed by its user, or gone with the display.
  bool isGone() const { return frame->isGone(); }
  /// Where its user has put it; also when it is gone. Nothing before that is known.
  std::optional<ScreenPlace> place() const { return frame->screenPlace(); }
  /// All of it as drawn last, as PNG. False when the file cannot be written.
  bool writePicture(const std::filesystem::path& path) const;

 private:
  bool keyPressed(const WindowKey& key) override;
  bool keyReleased(const WindowKey& key) override;
  void filesDropped(const std::vector<std::string>& paths) override { strip.takeFiles(paths); }
  void windowResized(int width, int height) override;
  bool resize(const HostSide::Size& wanted) override;
  void showAt(const Scale& scale);
  bool isBlocked() const override;

  HostSide& effect;
  Held<KvFrame> frame;
  Strip strip;
  RestingScale resting;  // of a corner that is dragged
  CPoint lastGiven{};    // size that the window was given, by a user or by the system
};

}  // namespace zum
