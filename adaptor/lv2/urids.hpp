// The numbers that the host has for the words of the standard.
#pragma once

#include <lv2/atom/atom.h>
#include <lv2/midi/midi.h>
#include <lv2/time/time.h>
#include <lv2/urid/urid.h>

#include "adaptor/lv2/ports.hpp"

namespace zum::lv2 {

struct Urids {
  explicit Urids(const LV2_URID_Map& map)
      : blank(map.map(map.handle, LV2_ATOM__Blank)),
        chunk(map.map(map.handle, LV2_ATOM__Chunk)),
        decimal(map.map(map.handle, LV2_ATOM__Float)),
        wideDecimal(map.map(map.handle, LV2_ATOM__Double)),
        whole(map.map(map.handle, LV2_ATOM__Int)),
        wideWhole(map.map(map.handle, LV2_ATOM__Long)),
        object(map.map(map.handle, LV2_ATOM__Object)),
        sequence(map.map(map.handle, LV2_ATOM__Sequence)),
        beatTime(map.map(map.handle, LV2_ATOM__beatTime)),
        midiEvent(map.map(map.handle, LV2_MIDI__MidiEvent)),
        position(map.map(map.handle, LV2_TIME__Position)),
        bar(map.map(map.handle, LV2_TIME__bar)),
        barBeat(map.map(map.handle, LV2_TIME__barBeat)),
        beat(map.map(map.handle, LV2_TIME__beat)),
        beatUnit(map.map(map.handle, LV2_TIME__beatUnit)),
        beatsPerBar(map.map(map.handle, LV2_TIME__beatsPerBar)),
        beatsPerMinute(map.map(map.handle, LV2_TIME__beatsPerMinute)),
        frame(map.map(map.handle, LV2_TIME__frame)),
        speed(map.map(map.handle, LV2_TIME__speed)),
        state(map.map(map.handle, kStateUri)) {}

  LV2_URID blank, chunk, decimal, wideDecimal, whole, wideWhole, object, sequence, beatTime;
  LV2_URID midiEvent;
  LV2_URID position, bar, barBeat, beat, beatUnit, beatsPerBar, beatsPerMinute, frame, speed;
  LV2_URID state;
};

}  // namespace zum::lv2
