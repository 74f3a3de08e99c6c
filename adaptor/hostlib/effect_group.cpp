#include "adaptor/hostlib/effect_group.hpp"

namespace zum {

GroupDescription CEffectGroup::describe() const {
  return {manufacturer.c_str(),
          manufacturerId,
          product.c_str(),
          version,
          category,
          static_cast<std::int32_t>(types.size())};
}

const CEffectTypeRTAS* CEffectGroup::getType(std::int32_t index) const {
  if (index < 0 || index >= static_cast<std::int32_t>(types.size())) return nullptr;
  return types[static_cast<std::size_t>(index)].get();
}

}  // namespace zum
