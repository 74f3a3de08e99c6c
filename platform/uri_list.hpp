// What a drag between programs carries: one address a line.
#pragma once

#include <string>
#include <vector>

namespace zum {

/// Paths of those of its addresses that are files of this machine; what is anything else, or
/// broken, is left out.
std::vector<std::string> filesOfUriList(const std::string& list);

}  // namespace zum
