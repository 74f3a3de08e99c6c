// The block calls of one render, from the first frame to the end of the tail; used by the render
// command.
#pragma once

#include <vector>

#include "apps/zum/audio_input.hpp"
#include "apps/zum/audio_output.hpp"
#include "apps/zum/automation.hpp"
#include "apps/zum/effect_host.hpp"
#include "apps/zum/midi_file.hpp"
#include "apps/zum/trace.hpp"

namespace zum {

struct RenderLoop {
  EffectHost& host;
  AudioInput& input;
  AudioInput* sideChain;  // null: none; where it ends before the input, silence follows
  AudioOutput& output;
  std::vector<AutomationCurve>& curves;
  MidiFile* midi;      // null: none
  TraceWriter* trace;  // null: none; else blocks are control blocks
  int block;           // frames of a block
  sf_count_t tailFrames;
};

struct Rendered {
  double length = 0.0;   // seconds of music
  double elapsed = 0.0;  // seconds in the block calls alone
};

/// Throws Failure, and Interruption between two blocks.
Rendered run(const RenderLoop& loop);

}  // namespace zum
