// The system's MIDI inputs: all of them, new ones as they come, or those that the user names.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "apps/zum/play/midi_lanes.hpp"

namespace zum {

/// [main]
class MidiPorts {
 public:
  /// With names, the ports alone whose name holds one of them, in capitals or not; nothing is no
  /// port, and an empty list all. The lanes outlive it.
  MidiPorts(MidiLanes& to, std::vector<std::string> names, bool hearsAll);
  ~MidiPorts();
  MidiPorts(const MidiPorts&) = delete;
  MidiPorts& operator=(const MidiPorts&) = delete;

  /// Every second or so: opens what came, lets go of what went.
  void look();
  /// Names of the ports that are heard.
  std::vector<std::string> heard() const;
  /// Names of all ports that there are.
  static std::vector<std::string> list();

 private:
  struct Port;
  class System;

  MidiLanes& lanes;
  const std::vector<std::string> wanted;
  const bool all;
  std::vector<std::unique_ptr<System>> systems;
  std::vector<std::unique_ptr<Port>> ports;
};

}  // namespace zum
