// [any] The way from the rooms of the effect to its window, of which there may be none.
#pragma once

#include "core/effect_editor.hpp"

namespace zum {

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
