// From what a user calls a parameter to its tag; used by the subcommands.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/parameter_table.hpp"

namespace zum {

/// The rows of the sound that a user can set, in the order of their tags. These have names.
std::vector<ParameterRow> settableParameters();

/// A name that is the parameter's alone: where several share theirs, the tag is put behind it as in
/// "textedit_60".
std::string parameterName(const ParameterRow& row);
/// The same of a tag; empty for a tag that only a number stands for.
std::string parameterName(int tag);

/// The tag that `text` means: a tag number, also of a button of the window, or a name in any case.
/// Throws Failure, with the names that are spelled nearly so, or that share the text.
int findParameterTag(std::string_view text);

struct ParameterSetting {
  int tag;
  float value;
};

/// Reads "NAME=VALUE", the value from 0 to 1; throws Failure.
ParameterSetting parseParameterSetting(std::string_view text);

}  // namespace zum
