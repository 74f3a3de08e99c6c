// `zum ccmap`: files of learned controllers, shown and made.
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "apps/zum/commands.hpp"
#include "apps/zum/controller_options.hpp"
#include "apps/zum/failure.hpp"
#include "apps/zum/option_checks.hpp"
#include "apps/zum/temporary_file.hpp"
#include "preset_text/parameter_names.hpp"
#include "state/preset_files.hpp"

namespace zum {
namespace {

struct CcMapOptions {
  std::filesystem::path path;
  std::vector<std::string> bindings;
};

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

void make(const CcMapOptions& options) {
  ControllerMap map;
  for (const std::string& text : options.bindings) {
    const auto [controller, tag] = parseControllerSetting(text);
    if (controller < 0) {
      throw Failure("a map holds controllers alone; leave \"" + text + "\" out", kExitWrongUsage);
    }
    map.controllers[static_cast<std::size_t>(controller)].append(
        {static_cast<std::int16_t>(tag), 0});
  }
  KvChunk chunk;
  writeMapFile(map, chunk);
  if (!fitsChunkFile(chunk)) {
    throw Failure("a map of so many bindings does not load; leave some out", kExitWrongUsage);
  }
  TemporaryFile file(options.path);
  file.write(chunk.data(), std::size_t{4} * chunk.dataWords());
  file.commit();
}

}  // namespace

void addCcMapCommand(CLI::App& app) {
  auto options = std::make_shared<CcMapOptions>();
  CLI::App* command = app.add_subcommand("ccmap", "Show and make maps of what controllers move");
  command->require_subcommand(1);
  CLI::App* shown = command->add_subcommand("show", "Print the bindings of a map");
  shown->add_option("FILE", options->path, "Map to read (.kvm)")->required()->check(notEmpty());
  shown->callback([options] { show(options->path); });
  CLI::App* made = command->add_subcommand("make", "Write a map of the bindings given");
  made->add_option("FILE", options->path, "Map to write (.kvm)")->required()->check(notEmpty());
  made->add_option("BINDING", options->bindings, "Controllers and what they move")
      ->type_name("CC=NAME")
      ->required();
  made->callback([options] { make(*options); });
}

}  // namespace zum
