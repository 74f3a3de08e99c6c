#include "apps/daehost/midi_feeder.hpp"

#include <utility>

namespace zum {

MidiFeeder::MidiFeeder(HostedProcess& fed, MidiFile messages)
    : process(fed), file(std::move(messages)), thread([this] { run(); }) {}

MidiFeeder::~MidiFeeder() {
  {
    const std::lock_guard lock(guard);
    ending = true;
  }
  changed.notify_all();
  thread.join();
}

std::size_t MidiFeeder::deliverUntil(std::int64_t frame) {
  std::unique_lock lock(guard);
  wanted = frame;
  changed.notify_all();
  changed.wait(lock, [&] { return delivered >= frame; });
  return count;
}

void MidiFeeder::run() {
  std::unique_lock lock(guard);
  for (;;) {
    changed.wait(lock, [this] { return ending || wanted > delivered; });
    if (ending) return;
    const auto messages = file.takeUntil(wanted);
    for (const MidiMessage& message : messages) {
      process.routines().deliverMidi(process.get(), 0, message.bytes.data());
    }
    count = messages.size();
    delivered = wanted;
    changed.notify_all();
  }
}

}  // namespace zum
