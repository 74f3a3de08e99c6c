// [main] Modules of the parameter table as units: the root holds the effect's, one for each path.
#pragma once

#include <string_view>

namespace zum::vst3 {

/// The root included.
int unitCount();
/// The path of a unit that there is; the effect's name for the root.
std::string_view unitName(int unit);
/// A path that there is not belongs to the root.
int unitOfPath(std::string_view path);

}  // namespace zum::vst3
