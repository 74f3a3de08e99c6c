// `daehost list`: what the plug-in file offers, and its controls with their values.
#include <cstring>
#include <iostream>
#include <memory>
#include <string>

#include "apps/daehost/commands.hpp"
#include "platform/printable_text.hpp"

namespace zum {
namespace {

std::string identifierText(std::int32_t id) {
  std::string text(4, ' ');
  std::memcpy(text.data(), &id, text.size());
  return text;
}

std::string firstForm(const char* forms) { return std::string(forms, std::strcspn(forms, "\n")); }

void list(const HostOptions& options) {
  const PlugInFile file(options.plugIn);
  HostedProcess process(file, options.type(), 44100.0F, options.tempo);
  options.apply(process);
  GroupDescription group{};
  file.routines().describeGroup(&group);
  std::cout << firstForm(group.product) << " by " << group.manufacturer << " ("
            << identifierText(group.manufacturerId) << "), version 0x" << std::hex << group.version
            << std::dec << ", category " << group.category << '\n';
  for (std::int32_t i = 0; i < group.types; ++i) {
    TypeDescription type{};
    file.routines().describeType(i, &type);
    std::cout << "type " << identifierText(type.typeId) << ": "
              << (type.inputStem == kStereoStem ? "stereo" : "mono") << " to "
              << (type.outputStem == kStereoStem ? "stereo" : "mono") << '\n';
  }
  std::cout << "MIDI: " << process.routines().midiNodeName(process.get()) << '\n';
  ChunkDescription chunk{};
  for (std::int32_t i = 0; process.routines().describeChunkType(process.get(), i, &chunk) == 0;
       ++i) {
    std::cout << "session record " << identifierText(chunk.id) << ": " << chunk.name << '\n';
  }
  const std::int32_t bypass = process.routines().masterBypass(process.get());
  const std::int32_t count = process.routines().controlCount(process.get());
  for (std::int32_t index = 1; index <= count; ++index) {
    const std::int32_t steps = process.routines().controlSteps(process.get(), index);
    std::cout << index << '\t' << printable(process.controlName(index)) << '\t'
              << printable(process.controlText(index)) << (steps > 0 ? "\tswitch" : "")
              << (index == bypass ? "\tmaster bypass" : "") << '\n';
  }
}

}  // namespace

void addListCommand(CLI::App& app) {
  auto options = std::make_shared<HostOptions>();
  CLI::App* const command = app.add_subcommand("list", "Show the file's types and controls");
  addHostOptions(*command, *options);
  command->callback([options] { list(*options); });
}

}  // namespace zum
