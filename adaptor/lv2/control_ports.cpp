#include "adaptor/lv2/control_ports.hpp"

namespace zum::lv2 {

ControlPorts::ControlPorts(const PortValues& held, std::int32_t patienceFrames)
    : unconnected(held), patience(patienceFrames) {
  for (std::size_t i = 0; i < held.size(); ++i) {
    known[i] = std::bit_cast<Word>(held[i]);
    places[i] = &unconnected[i];
  }
}

void ControlPorts::connect(std::size_t position, const float* place) ZUM_REALTIME {
  unconnected[position] = std::bit_cast<float>(known[position]);
  places[position] = place != nullptr ? place : &unconnected[position];
}

std::uint64_t ControlPorts::moved() const ZUM_REALTIME {
  std::uint64_t news = 0;
  for (std::size_t i = 0; i < places.size(); ++i) {
    news |= std::uint64_t{std::bit_cast<Word>(*places[i]) != known[i]} << i;
  }
  return news;
}

bool ControlPorts::isEcho(std::size_t position) ZUM_REALTIME {
  const std::uint64_t bit = std::uint64_t{1} << position;
  if ((awaited.load() & bit) == 0) return false;
  if (told[position].load() == known[position]) {
    awaited.fetch_and(~bit);
    unheard &= ~bit;
  } else {
    unheard |= bit;
  }
  return true;
}

/// What the host moved elsewhere in spite of what it was told: its word counts in the end.
std::uint64_t ControlPorts::giveUp(std::int32_t frames) ZUM_REALTIME {
  const std::uint32_t count = tells.load();
  waited = count == tellsBefore ? waited + frames : 0;
  tellsBefore = count;
  if (waited < patience) return 0;
  waited = 0;
  const std::uint64_t late = awaited.exchange(0) & unheard;
  unheard = 0;
  return late;
}

void ControlPorts::tell(std::size_t position, float value) {
  told[position].store(std::bit_cast<Word>(value));
  awaited.fetch_or(std::uint64_t{1} << position);
  tells.fetch_add(1);
}

}  // namespace zum::lv2
