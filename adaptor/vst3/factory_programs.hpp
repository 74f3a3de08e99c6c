// [any] The factory presets in the order that hosts' sessions rely on, whether their files are
// installed or not.
#pragma once

#include <span>
#include <string_view>

namespace zum::vst3 {

/// "Folder/Name".
std::span<const std::string_view> factoryPrograms();
bool isFactoryProgram(std::string_view name);

}  // namespace zum::vst3
