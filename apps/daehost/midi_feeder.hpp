// The host's MIDI thread: hands over what belongs to a block while the audio thread waits for it,
// so that two runs give the same.
#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

#include "apps/daehost/plug_in_file.hpp"
#include "apps/zum/midi_file.hpp"

namespace zum {

class MidiFeeder {
 public:
  MidiFeeder(HostedProcess& fed, MidiFile messages);
  ~MidiFeeder();
  MidiFeeder(const MidiFeeder&) = delete;
  MidiFeeder& operator=(const MidiFeeder&) = delete;

  /// Hands over all messages before that frame. The process has them when this returns their
  /// number.
  std::size_t deliverUntil(std::int64_t frame);

 private:
  void run();

  HostedProcess& process;
  MidiFile file;
  std::mutex guard;
  std::condition_variable changed;
  std::int64_t wanted = 0;     // frame
  std::int64_t delivered = 0;  // frame
  std::size_t count = 0;       // of the messages delivered last
  bool ending = false;
  std::thread thread;
};

}  // namespace zum
