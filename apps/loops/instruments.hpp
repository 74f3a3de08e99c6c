// The three factory loops, finished for the file; main.cpp calls each once.
#pragma once

#include "apps/loops/loop.hpp"

namespace zum::loops {

Loop drums();
Loop bass();
Loop chords();

}  // namespace zum::loops
