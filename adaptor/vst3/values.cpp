#include "adaptor/vst3/values.hpp"

#include "adaptor/vst3/parameters.hpp"
#include "core/parameter_text.hpp"

namespace zum::vst3 {
namespace {

static_assert(kMidiPosition <= 64);

float plainOf(const ParameterRow& row, double value) ZUM_REALTIME {
  return static_cast<float>(value * static_cast<double>(plainEnd(row)));
}

std::array<std::uint8_t, 3> messageOf(int number, double value) ZUM_REALTIME {
  const auto scaled = [&](double end)
                          ZUM_REALTIME { return static_cast<std::uint32_t>(nearest(value * end)); };
  const auto low = static_cast<std::uint8_t>(scaled(127.0));
  if (number == kPressure) return {0xD0, low, 0};
  if (number != kPitchBend) return {0xB0, static_cast<std::uint8_t>(number), low};
  const std::uint32_t bend = scaled(16383.0);
  return {0xE0, static_cast<std::uint8_t>(bend & 0x7FU), static_cast<std::uint8_t>(bend >> 7U)};
}

}  // namespace

double Values::get(int position) const ZUM_REALTIME {
  if (const ParameterRow* const row = rowAt(position)) {
    return static_cast<double>(host.plainValue(row->tag)) / static_cast<double>(plainEnd(*row));
  }
  if (position == kProgramPosition) return ProgramList::valueOf(programs.current());
  const int number = position - kMidiPosition;
  if (number < 0 || number >= kMidiParameters) return 0.0;
  return static_cast<double>(midi[static_cast<std::size_t>(number)].load());
}

double Values::read(int position) {
  if (position == kProgramPosition) {
    programs.look();
    known = programs.current();
    outdated = kNothing;
  }
  return get(position);
}

void Values::set(int position, double value) {
  if (position >= kMidiPosition) {  // shown alone: what is played comes as points
    midi[static_cast<std::size_t>(position - kMidiPosition)] = static_cast<float>(value);
  } else if (hasPoints(position)) {
    return;
  } else if (const ParameterRow* const row = rowAt(position)) {
    host.setPlain(row->tag, plainOf(*row, value));
  } else if (const int place = ProgramList::placeOf(value); isNews(place)) {
    programs.look();
    if (place == programs.current()) return;
    wanted = kNothing;
    programs.play(place);
  }
}

void Values::play(HostSide::Block& block, const BlockEvent& event) ZUM_REALTIME {
  if (event.position < 0) return block.midi(event.frame, event.message.data());
  if (event.position >= kMidiPosition) return playMidi(block, event);
  notePoint(event.position);
  if (const ParameterRow* const row = rowAt(event.position)) {
    return block.setPlain(event.frame, row->tag, plainOf(*row, event.value));
  }
  const int place = ProgramList::placeOf(event.value);
  if (!isNews(place) || place == programs.current()) return;
  block.playTo(event.frame);
  wanted = programs.tryPlay(place) ? kNothing : place;
}

// Hosts repeat the program that they know, also along with a state: they may not have heard yet
// that it brought another one.
bool Values::isNews(int place) ZUM_REALTIME {
  if (place == outdated.load()) return false;
  outdated = kNothing;
  known = place;
  return true;
}

void Values::takeState() {
  wanted = kNothing;
  programs.look();
  outdated = known != programs.current() ? known.load() : kNothing;
}

void Values::playMidi(HostSide::Block& block, const BlockEvent& event) ZUM_REALTIME {
  const int number = event.position - kMidiPosition;
  midi[static_cast<std::size_t>(number)] = static_cast<float>(event.value);
  block.midi(event.frame, messageOf(number, event.value).data());
}

void Values::playWanted() {
  const int place = wanted.exchange(kNothing);
  if (place != kNothing) programs.play(place);
}

bool Values::hasPoints(int position) const ZUM_REALTIME {
  return position >= 0 && (withPoints.load() >> static_cast<unsigned>(position) & 1U) != 0;
}

void Values::notePoint(int position) ZUM_REALTIME {
  if (!hasPoints(position)) withPoints |= std::uint64_t{1} << static_cast<unsigned>(position);
}

}  // namespace zum::vst3
