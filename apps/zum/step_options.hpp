// The sequencer's steps and mode as the command line gives them; used by the render command.
#pragma once

#include <string_view>
#include <vector>

#include "preset_text/parameter_names.hpp"

namespace zum {

/// Reads "0,1,0.5": 1 to 8 values from 0 to 1. Throws Failure.
std::vector<float> parseSteps(std::string_view text);

/// The setting that a mode's name stands for; throws Failure with the names that there are.
ParameterSetting parseSequencerMode(std::string_view name);

}  // namespace zum
