#include "adaptor/vst3/factory_programs.hpp"

#include <algorithm>

namespace zum::vst3 {
namespace {

// Sessions keep places: a preset that comes later goes behind the last one, and none moves or goes.
// First the programs of MIDI, so that the number in their names is that of the place.
// clang-format off
constexpr std::string_view kNames[] = {
    "Midi Programs/01 First Light", "Midi Programs/02 Lamps On", "Midi Programs/03 Steam Valve",
    "Midi Programs/04 Pulse Runner", "Midi Programs/05 Elastic Walk",
    "Midi Programs/06 Triplet Engine", "Midi Programs/07 Loose Gate", "Midi Programs/08 Full Open",
    "Midi Programs/09 Thin Ice", "Midi Programs/10 Needle", "Midi Programs/11 Kite",
    "Midi Programs/12 Speaking Tube", "Midi Programs/13 Hole Punch", "Midi Programs/14 Broken Horn",
    "Midi Programs/15 Up And Away", "Midi Programs/16 Moth Wing", "Midi Programs/17 Bottle Neck",
    "Midi Programs/18 Rain Pipe", "Midi Programs/19 Turbine", "Midi Programs/20 Deep Cistern",
    "Midi Programs/21 Twin Pipes", "Midi Programs/22 Jet Gate", "Midi Programs/23 Fretless Ghost",
    "Midi Programs/24 Anvil", "Midi Programs/25 Good Morning", "Midi Programs/26 Small Talk",
    "Midi Programs/27 Gossip", "Midi Programs/28 Argument", "Midi Programs/29 Silence Please",
    "Midi Programs/30 Dark Hymn", "Midi Programs/31 Chewing Gum", "Midi Programs/32 Last Word",
    "Midi Programs/33 Straight Gate", "Midi Programs/34 Tresillo", "Midi Programs/35 Double Dutch",
    "Midi Programs/36 Slow Strobe", "Midi Programs/37 Drum Teacher", "Midi Programs/38 Swing Door",
    "Midi Programs/39 Roll Call", "Midi Programs/40 Hocket", "Midi Programs/41 Gravel Road",
    "Midi Programs/42 Toy Computer", "Midi Programs/43 Bit Tide", "Midi Programs/44 Fax From Mars",
    "Midi Programs/45 Sand Clock", "Midi Programs/46 Cheap Sampler",
    "Midi Programs/47 Static Prayer", "Midi Programs/48 Crumble",
    "Midi Programs/49 Clock In A Storm", "Midi Programs/50 Gear Box",
    "Midi Programs/51 Shape Shifter", "Midi Programs/52 Nervous Fan",
    "Midi Programs/53 Listening Ear", "Midi Programs/54 Soft Machine Age",
    "Midi Programs/55 Late Reply", "Midi Programs/56 Three Body", "Midi Programs/57 Lift Off",
    "Midi Programs/58 Searchlight", "Midi Programs/59 Swarm Theory",
    "Midi Programs/60 Broken Mirror", "Midi Programs/61 Overload", "Midi Programs/62 Aftershock",
    "Midi Programs/63 Cooling Down", "Midi Programs/64 Home",
    "Bass/Acid Ladder", "Bass/Bit Eater", "Bass/Fuzz Cable", "Bass/Growl Box", "Bass/Hollow Log",
    "Bass/Nose Drone", "Bass/Rubber Band", "Bass/Stair Cellar", "Bass/Sub Keeper", "Bass/Tube Worm",
    "Bass/Upside Quack", "Bass/Wire Rasp", "Bass/Wobble Shift", "Bass/Yoy Machine",
    "Chords/Attic Radio", "Chords/Bell Picker", "Chords/Choir Loft", "Chords/Chopped Light",
    "Chords/Glass Rim", "Chords/Open Window", "Chords/Paper Lantern", "Chords/Phase Garden",
    "Chords/Rust Organ", "Chords/Silk Pulse", "Chords/Slow Tide", "Chords/Swell Pedal",
    "Chords/Undertow", "Chords/Vapour",
    "Drums/Basement", "Drums/Break Bender", "Drums/Crushed Kit", "Drums/Gate Keeper",
    "Drums/Grain Ghosts", "Drums/Hat Sifter", "Drums/Jam Jar", "Drums/Kick Door",
    "Drums/Loud Garage", "Drums/Metal Drummer", "Drums/Notch Walk", "Drums/Snare Bloom",
    "Drums/Talking Toms", "Drums/Tin Snare",
    "Extreme/Alien Radio", "Extreme/Bee Swarm", "Extreme/Broken Lift", "Extreme/Cross Wires",
    "Extreme/Data Moth", "Extreme/Earthquake", "Extreme/Insect Choir", "Extreme/Iron Ring",
    "Extreme/Laser Tag", "Extreme/Meltdown", "Extreme/Panic Button", "Extreme/Siren Street",
    "Extreme/Splinter", "Extreme/Time Slip",
    "Rhythm/Backward March", "Rhythm/Call And Answer", "Rhythm/Clockwork", "Rhythm/Dice Roll",
    "Rhythm/Dotted Rider", "Rhythm/Gallop", "Rhythm/Half Time Lean", "Rhythm/Mirror Steps",
    "Rhythm/Offbeat Lift", "Rhythm/Ratchet", "Rhythm/Shuffle Foot", "Rhythm/Stutter Comb",
    "Rhythm/Three Three Two", "Rhythm/Triplet Turn",
    "Speech/Choir Practice", "Speech/Consonants", "Speech/Kitchen Phone", "Speech/Long Yawn",
    "Speech/Market Shout", "Speech/Old Modem", "Speech/Pixel Choir", "Speech/Plain Speech",
    "Speech/Question Mark", "Speech/Robot Poet", "Speech/Throat Song", "Speech/Toy Parrot",
    "Speech/Two Mouths", "Speech/Whisperer",
    "Subtle/Air Lift", "Subtle/Body Heat", "Subtle/Faded Photo", "Subtle/Front Row",
    "Subtle/Gentle Roof", "Subtle/Grain Dust", "Subtle/Half Lid", "Subtle/Next Room",
    "Subtle/Polite Scoop", "Subtle/Slow Breath", "Subtle/Spoken Hint", "Subtle/Thin Shimmer",
    "Subtle/Velvet Duck", "Subtle/Warm Wool",
};
// clang-format on

}  // namespace

std::span<const std::string_view> factoryPrograms() { return kNames; }

bool isFactoryProgram(std::string_view name) {
  return std::ranges::find(kNames, name) != std::end(kNames);
}

}  // namespace zum::vst3
