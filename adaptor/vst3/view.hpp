// [main] The window inside of a host's, and who lets it work: the timer of the host's run loop, or
// a thread of our own where the host has none.
#pragma once

#include <travesty/view.h>

#include "adaptor/vst3/effect.hpp"
#include "adaptor/vst3/interface.hpp"

namespace zum::vst3 {

/// Keeps the effect, as hosts let go of the two in any order.
class View final : public Counted<View>, private HostSide::WindowFrame {
 public:
  /// The host holds it.
  static v3_plugin_view** create(Effect& effect);

  explicit View(Effect& shown);
  ~View();
  View(const View&) = delete;
  View& operator=(const View&) = delete;

  /// [any] One of its interfaces, null for others.
  void* query(const v3_tuid iid);

  /// False when the window does not open, or is open elsewhere.
  bool attach(std::uintptr_t parent);
  void detach();
  bool isAttached() const { return attached; }
  void setFrame(v3_plugin_frame** given) { frame = given; }
  void onTimer();
  v3_view_rect size();
  HostSide& host() { return effect.host; }

 private:
  bool resize(const HostSide::Size& wanted) override;
  /// Of the host's loop; where it has none, a thread of our own does the work.
  void startTimer();

  Effect& effect;
  Interface<View> view;
  Interface<View> scale;
  Interface<View> timer;
  v3_plugin_frame** frame = nullptr;  // the host's, which outlives what is attached to it
  Held<v3_run_loop> loop;             // while a timer runs
  bool attached = false;
};

}  // namespace zum::vst3
