#include "adaptor/vst3/component_handler.hpp"

namespace zum::vst3 {

// Each call holds the handler that it began with: the host may set another one meanwhile.

void ComponentHandler::beginEdit(v3_param_id id) const {
  if (const auto host = handler) host.call(&v3_component_handler::begin_edit, id);
}

void ComponentHandler::performEdit(v3_param_id id, double value) const {
  if (const auto host = handler) host.call(&v3_component_handler::perform_edit, id, value);
}

void ComponentHandler::endEdit(v3_param_id id) const {
  if (const auto host = handler) host.call(&v3_component_handler::end_edit, id);
}

void ComponentHandler::tellAllMoved() const {
  const auto host = handler;
  if (!host) return;
  host.call(&v3_component_handler::restart_component, V3_RESTART_PARAM_VALUES_CHANGED);
  tellDirty();
}

void ComponentHandler::tellDirty() const {
  const auto host = handler;
  if (!host) return;
  const auto second = host.as<v3_component_handler2>(v3_component_handler2_iid);
  if (second) second.call(&v3_component_handler2::set_dirty, v3_bool{1});
}

}  // namespace zum::vst3
