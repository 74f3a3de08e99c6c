// [main] The effect's window inside of one of the host's, and who calls it thirty times a second.
#pragma once

#include <optional>

#include "adaptor/clap/host_link.hpp"
#include "adaptor/host_side.hpp"

namespace zum::clap {

class Window final : private HostSide::WindowFrame {
 public:
  Window(HostSide& of, const HostLink& link) : side(of), host(link) {}
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;
  ~Window() { close(); }

  /// X11, inside of the host's window, is all there is.
  static bool isSupported(const char* api, bool isFloating);

  bool create(const char* api, bool isFloating);
  void destroy();
  bool setParent(const clap_window_t& window);
  bool show();
  bool hide();
  /// Pixels.
  std::optional<HostSide::Size> size();
  /// All with the same proportion of their sides, from the plain size on.
  HostSide::Size plainSize() { return side.plainWindowSize(); }
  HostSide::Size fitting(const HostSide::Size& offered) { return side.fittingSize(offered); }
  bool setScale(double scale) { return side.setWindowScale(scale); }
  bool setSize(const HostSide::Size& given);
  void tick(clap_id firedTimer);

 private:
  bool resize(const HostSide::Size& wanted) override;
  bool open();
  void close();

  HostSide& side;
  const HostLink& host;
  bool isCreated = false;
  std::uintptr_t parent = 0;
  std::optional<clap_id> timer;
};

}  // namespace zum::clap
