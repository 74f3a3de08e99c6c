// What single values are called, in the window's pictures and towards hosts.
#pragma once

#include <array>

namespace zum::names {

// clang-format off

/// Note lengths in the engine's order. D is dotted, T a triplet.
inline constexpr std::array<const char*, 27> kNotes = {
    "4 bars", "3 bars",  "2 bars",
    "1/1 D",  "1/1",     "1/2 D",  "1/1 T",
    "1/2",    "1/4 D",   "1/2 T",
    "1/4",    "1/8 D",   "1/4 T",
    "1/8",    "1/16 D",  "1/8 T",
    "1/16",   "1/32 D",  "1/16 T",
    "1/32",   "1/64 D",  "1/32 T",
    "1/64",   "1/128 D", "1/64 T",
    "1/128",  "1/128 T",
};
/// The same lengths as times of a release, which count beats where the others count bars.
inline constexpr std::array<const char*, 27> kReleases = {
    "1/1",    "1/2 D",   "1/2",
    "1/4 D",  "1/4",     "1/8 D",  "1/4 T",
    "1/8",    "1/16 D",  "1/8 T",
    "1/16",   "1/32 D",  "1/16 T",
    "1/32",   "1/64 D",  "1/32 T",
    "1/64",   "1/128 D", "1/64 T",
    "1/128",  "1/256 D", "1/128 T",
    "1/256",  "1/512 D", "1/256 T",
    "1/512",  "1/512 T",
};
inline constexpr std::array<const char*, 5> kWaves = {"Sine", "Square", "Saw", "Triangle", "Random"};
inline constexpr std::array<const char*, 5> kOrders = {"FWD", "BWD", "PING", "PONG", "RND"};
inline constexpr std::array<const char*, 10> kTypes = {
    "HIGH PASS 12", "HIGH PASS 24", "BAND PASS 6", "BAND PASS 12",  "LOW PASS 12",
    "LOW PASS 24",  "COMB",         "BAND REJECT", "S+H BAND PASS", "S+H LOW PASS",
};
/// That have the formants of the nine positions.
inline constexpr std::array<const char*, 9> kVowels = {
    "U", "O", "\u00C5", "A", "\u00D6", "\u00DC", "\u00C4", "E", "I",
};
inline constexpr std::array<const char*, 2> kSwitch = {"Off", "On"};
inline constexpr std::array<const char*, 2> kBanks = {"Filter", "Vowel"};
inline constexpr std::array<const char*, 2> kModes = {"Free", "Sync"};
inline constexpr std::array<const char*, 3> kPages = {"Follower", "LFO", "Sequencer"};

// clang-format on

}  // namespace zum::names
