#include "apps/daehost/commands.hpp"
#include "apps/daehost/session_file.hpp"
#include "apps/zum/failure.hpp"
#include "apps/zum/option_checks.hpp"

namespace zum {

void HostOptions::apply(HostedProcess& process) const {
  if (!session.empty() && !process.load(readSessionFile(session))) {
    throw Failure("the plug-in refuses " + session.string() + "; make one with daehost save");
  }
  for (const std::string& setting : settings) process.set(setting);
}

void addHostOptions(CLI::App& command, HostOptions& options) {
  command
      .add_option("--plug-in", options.plugIn, "Plug-in file, in place of the one beside daehost")
      ->type_name("FILE.dpm")
      ->check(notEmpty());
  command.add_flag("--mono", options.mono, "The mono type, which uses the left channel alone");
  command.add_option("--session", options.session, "Session record to start from")
      ->type_name("FILE")
      ->check(notEmpty());
  command.add_option("--set", options.settings, "Control to set, from 0 to 1 (repeatable)")
      ->type_name("NAME=VALUE")
      ->allow_extra_args(false);
  command.add_option("--tempo", options.tempo, "Of the transport, in beats per minute")
      ->check(between(45, 500))
      ->capture_default_str();
}

}  // namespace zum
