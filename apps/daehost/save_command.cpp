// `daehost save`: a session record of a process.
#include <filesystem>
#include <iostream>
#include <memory>

#include "apps/daehost/commands.hpp"
#include "apps/zum/failure.hpp"
#include "apps/zum/option_checks.hpp"
#include "apps/zum/temporary_file.hpp"
#include "platform/printable_text.hpp"

namespace zum {
namespace {

struct SaveOptions : HostOptions {
  std::filesystem::path output;
};

constexpr float kRate = 44100.0F;  // Hz

void save(const SaveOptions& options) {
  const PlugInFile file(options.plugIn);
  HostedProcess process(file, options.type(), kRate, options.tempo);
  options.apply(process);
  // the session that it starts from may be edited in place
  refuseToOverwrite(options.output, "output", {options.plugIn});
  const std::vector<char> record = process.save();
  HostedProcess restored(file, options.type(), kRate, options.tempo);
  if (!restored.load(record)) {
    throw Failure("the plug-in refuses what it saved; choose another --plug-in");
  }
  const std::int32_t count = process.routines().controlCount(process.get());
  for (std::int32_t index = 1; index <= count; ++index) {
    // The host keeps its bypass itself.
    if (restored.routines().getControl(restored.get(), index) !=
        process.routines().getControl(process.get(), index)) {
      throw Failure("a session record does not keep " + process.controlName(index) +
                        "; leave it out of --set",
                    kExitWrongUsage);
    }
  }
  TemporaryFile written(options.output);
  written.write(record.data(), record.size());
  written.commit();
  std::cout << printable(options.output.string()) << ": " << record.size() << " bytes\n";
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
