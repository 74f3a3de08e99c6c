// [main] What the effect tells its host of by itself: gestures in the window, and presets.
#pragma once

#include <travesty/edit_controller.h>

#include "adaptor/vst3/interface.hpp"

namespace zum::vst3 {

class ComponentHandler {
 public:
  /// Null for none.
  void set(v3_component_handler** given) { handler = Held<v3_component_handler>(given); }

  void beginEdit(v3_param_id id) const;
  void performEdit(v3_param_id id, double value) const;
  void endEdit(v3_param_id id) const;
  /// All values are to be read anew, and the session is to be saved.
  void tellAllMoved() const;
  /// The latter alone.
  void tellDirty() const;

 private:
  Held<v3_component_handler> handler;
};

}  // namespace zum::vst3
