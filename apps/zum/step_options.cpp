// Reading of --steps and --seq-mode.
#include "apps/zum/step_options.hpp"

#include <algorithm>
#include <array>
#include <iterator>
#include <string>

#include "apps/zum/failure.hpp"
#include "core/tags.hpp"
#include "preset_text/numbers_in_text.hpp"
#include "preset_text/text_lines.hpp"
#include "state/table_xy.hpp"

namespace zum {

std::vector<float> parseSteps(std::string_view text) {
  std::vector<float> steps;
  for (const std::string_view word : words(text, ", \t")) {
    if (!parseUnit(word, steps.emplace_back())) {
      throw Failure(
          "the step \"" + std::string(word) + "\" is out of range; give a number from 0 to 1",
          kExitWrongUsage);
    }
  }
  if (steps.empty() || steps.size() > static_cast<std::size_t>(KvTableXY::kSteps)) {
    throw Failure("there are " + std::to_string(steps.size()) +
                      " steps; give 1 to 8 values such as --steps 0,1,0.5",
                  kExitWrongUsage);
  }
  return steps;
}

ParameterSetting parseSequencerMode(std::string_view name) {
  constexpr std::array<std::string_view, 5> kModes = {"forward", "backward", "ping-pong", "inverse",
                                                      "random"};
  const auto* const found = std::find(kModes.begin(), kModes.end(), name);
  if (found != kModes.end()) {
    const auto position = static_cast<float>(std::distance(kModes.begin(), found));
    return {tag::seqMode, position / static_cast<float>(kModes.size()) + 0.1F};
  }
  std::string list;
  for (const std::string_view mode : kModes) {
    if (!list.empty()) list += ", ";
    list += mode;
  }
  throw Failure("no sequencer mode is called \"" + std::string(name) + "\"; give one of " + list,
                kExitWrongUsage);
}

}  // namespace zum
