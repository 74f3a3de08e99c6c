// `zum parameters`: the table of what `--set` takes.
#include <algorithm>
#include <cstring>
#include <iomanip>
#include <iostream>

#include "apps/zum/commands.hpp"
#include "preset_text/parameter_names.hpp"

namespace zum {
namespace {

void printParameters() {
  const auto rows = settableParameters();
  std::size_t width = std::strlen("name");
  for (const ParameterRow& row : rows) width = std::max(width, parameterName(row).size());
  const auto nameWidth = static_cast<int>(width);
  std::cout << "tag  " << std::left << std::setw(nameWidth) << "name"
            << "  default\n";
  for (const ParameterRow& row : rows) {
    std::cout << std::right << std::setw(3) << row.tag << "  " << std::left << std::setw(nameWidth)
              << parameterName(row) << "  " << row.initial << '\n';
  }
}

}  // namespace

void addParametersCommand(CLI::App& app) {
  app.add_subcommand("parameters", "List the parameters: tag number, name, default value")
      ->callback(printParameters);
}

}  // namespace zum
