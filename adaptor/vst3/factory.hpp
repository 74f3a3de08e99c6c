// [main] What the module of this interface gives to a host.
#pragma once

namespace zum::vst3 {

/// Of the process; the host's reference is for nobody to count.
void* factory();

}  // namespace zum::vst3
