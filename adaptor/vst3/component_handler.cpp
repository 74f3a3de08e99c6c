#include "adaptor/vst3/component_handler.hpp"

namespace zum::vst3 {

void ComponentHandler::set(v3_component_handler** given) {
  Held<v3_component_handler> next(given);
  const std::lock_guard lock(access);
  std::swap(handler, next);
}

Held<v3_component_handler> ComponentHandler::held() const {
  const std::lock_guard lock(access);
  return handler;
}

void ComponentHandler::beginEdit(v3_param_id id) const {
  if (const auto host = held()) host.call(&v3_component_handler::begin_edit, id);
}

void ComponentHandler::performEdit(v3_param_id id, double value) const {
  if (const auto host = held()) host.call(&v3_component_handler::perform_edit, id, value);
}

void ComponentHandler::endEdit(v3_param_id id) const {
  if (const auto host = held()) host.call(&v3_component_handler::end_edit, id);
}

void ComponentHandler::tellAllMoved() const {
  const auto host = held();
  if (!host) return;
  host.call(&v3_component_handler::restart_component, V3_RESTART_PARAM_VALUES_CHANGED);
  const auto second = host.as<v3_component_handler2>(v3_component_handler2_iid);
  if (second) second.call(&v3_component_handler2::set_dirty, v3_bool{1});
}

}  // namespace zum::vst3
