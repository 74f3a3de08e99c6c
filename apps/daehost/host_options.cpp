#include <fstream>
#include <iterator>

#include "apps/daehost/commands.hpp"
#include "apps/zum/failure.hpp"
#include "apps/zum/option_checks.hpp"

namespace zum {

void HostOptions::apply(HostedProcess& process) const {
  if (!session.empty()) process.load(readBytes(session));
  for (const std::string& setting : settings) process.set(setting);
}

// A folder, a pipe or a device has no size, and is never waited for.
std::vector<char> readBytes(const std::filesystem::path& path) {
  constexpr std::uintmax_t kMostBytes = 64U << 20U;
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(path, error);
  std::ifstream file;
  if (!error && size <= kMostBytes) file.open(path, std::ios::binary);
  if (!file.is_open())
    throw Failure("cannot read " + path.string() + "; check its name and its rights");
  return {std::istreambuf_iterator<char>(file), {}};
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
