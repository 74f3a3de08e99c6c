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
  /// Of the ports whose name holds one of `names`, in capitals or not; of all for no names. The
  /// lanes outlive it. Nothing is open before the first look().
  MidiPorts(MidiLanes& to, std::vector<std::string> names);
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
  struct System;
  struct Port;

  bool isWanted(const std::string& name) const;
  void open(const System& system, unsigned number, const std::string& name);

  MidiLanes& lanes;
  const std::vector<std::string> wanted;  // in small letters
  std::vector<std::unique_ptr<Port>> ports;
  std::vector<System> systems;
};

}  // namespace zum
