// The routines of the library for the host, over the one group of the file.
#pragma once

#include "adaptor/hostlib/effect_group.hpp"

namespace zum {

const PlugInRoutines& routineTable();
/// Takes the group over; null lets it go.
void setProcessGroup(std::unique_ptr<CEffectGroup> group);

}  // namespace zum
