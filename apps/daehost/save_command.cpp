// `daehost save`: a session record of a process.
#include <filesystem>
#include <iostream>
#include <memory>

#include "apps/daehost/commands.hpp"
#include "apps/zum/option_checks.hpp"
#include "apps/zum/temporary_file.hpp"

namespace zum {
namespace {

struct SaveOptions : HostOptions {
  std::filesystem::path output;
};

void save(const SaveOptions& options) {
  const PlugInFile file(options.plugIn);
  HostedProcess process(file, options.type(), 44100.0F, options.tempo);
  options.apply(process);
  const std::vector<char> record = process.save();
  TemporaryFile written(options.output);
  written.write(record.data(), record.size());
  written.keep();
  std::cout << options.output.string() << ": " << record.size() << " bytes\n";
}

}  // namespace

void addSaveCommand(CLI::App& app) {
  auto options = std::make_shared<SaveOptions>();
  CLI::App* const command = app.add_subcommand("save", "Save a session record");
  command->add_option("output", options->output, "File to write")->required()->check(notEmpty());
  addHostOptions(*command, *options);
  command->callback([options] { save(*options); });
}

}  // namespace zum
