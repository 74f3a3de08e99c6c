// `zum ccmap`: what a file of learned controllers holds.
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <memory>

#include "apps/zum/commands.hpp"
#include "apps/zum/controller_options.hpp"
#include "apps/zum/parameter_names.hpp"

namespace zum {
namespace {

void show(const std::filesystem::path& path) {
  ControllerMap map;
  readControllerMap(path, map);
  std::cout << "controller  parameter\n";
  for (std::size_t number = 0; number < map.controllers.size(); ++number) {
    for (const Binding binding : map.controllers[number].all()) {
      const std::string name = parameterName(binding.tag);
      std::cout << std::setw(10) << number << "  "
                << (name.empty() ? "tag " + std::to_string(binding.tag) : name);
      if (binding.mode != 0) std::cout << ", mode " << binding.mode;
      std::cout << '\n';
    }
  }
}

}  // namespace

void addCcMapCommand(CLI::App& app) {
  auto path = std::make_shared<std::filesystem::path>();
  CLI::App* command = app.add_subcommand("ccmap", "Show what controllers move");
  command->require_subcommand(1);
  CLI::App* shown = command->add_subcommand("show", "Print the bindings of a controller map");
  shown->add_option("FILE", *path, "Map to read (.kvm)")->required();
  shown->callback([path] { show(*path); });
}

}  // namespace zum
