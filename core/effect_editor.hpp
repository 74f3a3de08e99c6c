// The editor of this effect as its core knows it. The plug-in's entry hands in the real one, so
// that a build without a window links no window code.
#pragma once

#include <mutex>

#include "core/audio_effect.hpp"

namespace zum {

/// What all windows of the process share knows one thread at a time: mostly the one on which a host
/// has its windows, but a face may let one work on a thread of its own.
inline std::recursive_mutex& windowTurn() {
  static std::recursive_mutex turn;
  return turn;
}

/// In pixels of the screen.
struct WindowSize {
  int width = 0;
  int height = 0;
  bool operator==(const WindowSize&) const = default;
};

/// [main] What looks at the window takes the windowTurn().
class EffectEditor : public AEffEditor {
 public:
  /// [any] Everything is drawn again at the next idle.
  virtual void requestFullRedraw() ZUM_REALTIME = 0;
  /// [any] A state was replaced: every control shows its new value at the next idle.
  virtual void update() ZUM_REALTIME = 0;
  virtual void raiseAbout() = 0;
  virtual void openManual() = 0;
  virtual bool aboutIsOpen() const = 0;
  /// How large a host shows its windows, 1 for plain. An open one asks for its new size. False for
  /// what is no scale.
  virtual bool setHostScale(double scale) = 0;
  /// The largest size that the window can have inside of what is offered; its smallest one where
  /// there is none.
  virtual WindowSize fitting(const WindowSize& offered) = 0;
  /// A window comes up no larger than that, whatever was chosen; an open one may grow.
  virtual void limitFirstSize(const WindowSize& most) = 0;
  /// The host, or the user by it, gave the window so much room.
  virtual void takeSize(const WindowSize& given) = 0;
};

/// [any] The way from the rooms of the effect to its window, of which there may be none.
class EditorLink {
 public:
  /// [main] Null for no window.
  void connect(EffectEditor* shown) { editor = shown; }
  EffectEditor* get() const ZUM_REALTIME { return editor; }

  void requestFullRedraw() const ZUM_REALTIME {
    if (editor != nullptr) editor->requestFullRedraw();
  }
  /// A state was replaced.
  void update() const ZUM_REALTIME {
    if (editor != nullptr) editor->update();
  }

 private:
  EffectEditor* editor = nullptr;
};

}  // namespace zum
