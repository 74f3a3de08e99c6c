// Lookup of parameters by name or tag number, with the nearest names when there is no such name.
#include "preset_text/parameter_names.hpp"

#include <algorithm>
#include <numeric>
#include <utility>

#include "platform/ascii_case.hpp"
#include "platform/printable_text.hpp"
#include "preset_text/failure.hpp"
#include "preset_text/numbers_in_text.hpp"

namespace zum {
namespace {

constexpr std::size_t kMostSuggestions = 4;

// Fewest insertions, deletions and replacements of one character that make `a` into `b`.
std::size_t editDistance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i + 1);
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t replaced = diagonal + (a[i] == b[j] ? 0U : 1U);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, diagonal + 1, row[j] + 1});
    }
  }
  return row.back();
}

std::string nearNames(std::string_view text) {
  const std::string wanted = lowerCase(text);
  if (isBlank(wanted)) return {};  // it is in all names
  const std::size_t farthest = 1 + wanted.size() / 4;
  std::vector<std::pair<std::size_t, std::string>> near;
  for (const ParameterRow& row : settableParameters()) {
    const std::string own = parameterName(row);
    const std::string name = lowerCase(own);
    std::size_t distance = editDistance(wanted, name);
    if (name.find(wanted) != std::string::npos) distance = std::min(distance, farthest);
    if (distance <= farthest) near.emplace_back(distance, own);
  }
  std::sort(near.begin(), near.end());
  if (near.size() > kMostSuggestions) near.resize(kMostSuggestions);
  std::string list;
  for (const auto& [distance, name] : near) list += (list.empty() ? "" : ", ") + name;
  return list;
}

std::vector<ParameterRow> rowsNamed(std::string_view text) {
  std::vector<ParameterRow> exact;
  std::vector<ParameterRow> anyCase;
  for (const ParameterRow& row : settableParameters()) {
    const std::string own = parameterName(row);
    if (row.name == text || own == text) exact.push_back(row);
    if (lowerCase(row.name) == lowerCase(text) || lowerCase(own) == lowerCase(text)) {
      anyCase.push_back(row);
    }
  }
  return exact.empty() ? anyCase : exact;
}

}  // namespace

std::vector<ParameterRow> settableParameters() {
  std::vector<ParameterRow> rows;
  for (const ParameterRow& row : parameterRows()) {
    if (row.id >= 0 && row.rule != Rule::table) rows.push_back(row);
  }
  std::sort(rows.begin(), rows.end(),
            [](const ParameterRow& a, const ParameterRow& b) { return a.tag < b.tag; });
  return rows;
}

std::string parameterName(const ParameterRow& row) {
  const auto rows = parameterRows();
  const bool shared = std::count_if(rows.begin(), rows.end(), [&](const ParameterRow& other) {
                        return other.id >= 0 && std::string_view(other.name) == row.name;
                      }) > 1;
  return shared ? std::string(row.name) + '_' + std::to_string(row.tag) : row.name;
}

std::string parameterName(int tag) {
  const int row = rowOfTag(tag);
  if (row < 0) return {};
  const ParameterRow& found = parameterRows()[static_cast<std::size_t>(row)];
  return found.id < 0 || found.rule == Rule::table ? std::string() : parameterName(found);
}

int findParameterTag(std::string_view text) {
  const std::string quoted = '"' + std::string(text) + '"';
  if (int number = 0; parseWhole(text, number)) {
    const int row = rowOfTag(number);
    if (row >= 0 && parameterRows()[static_cast<std::size_t>(row)].rule != Rule::table) {
      return number;
    }
    throw Failure(
        "no parameter has the tag " + std::string(text) + "; run zum parameters to see them all",
        kExitWrongUsage);
  }
  const std::vector<ParameterRow> rows = rowsNamed(text);
  if (rows.size() == 1) return rows.front().tag;
  if (rows.empty()) {
    const std::string near = nearNames(text);
    throw Failure("no parameter is called " + quoted + "; " +
                      (near.empty() ? "" : "did you mean " + near + "? Otherwise ") +
                      "run zum parameters to see them all",
                  kExitWrongUsage);
  }
  std::string list;
  for (const ParameterRow& row : rows) list += (list.empty() ? "" : " or ") + parameterName(row);
  throw Failure(quoted + " is the name of several parameters; give " + list, kExitWrongUsage);
}

ParameterSetting parseParameterSetting(std::string_view text) {
  const std::size_t equals = text.rfind('=');
  if (equals == std::string_view::npos || equals == 0) {
    throw Failure(
        "cannot read the setting \"" + std::string(text) + "\"; write NAME=VALUE or TAG=VALUE",
        kExitWrongUsage);
  }
  const int tag = findParameterTag(text.substr(0, equals));
  float value = 0.0F;
  if (!parseUnit(text.substr(equals + 1), value)) {
    throw Failure(
        "the value in \"" + std::string(text) + "\" is out of range; give a number from 0 to 1",
        kExitWrongUsage);
  }
  return {tag, value};
}

}  // namespace zum
