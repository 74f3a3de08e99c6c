// Pictures for the eye: one sheet with all of them, and the window as it comes out.
#pragma once

#include <string>

namespace zum::pictures {

void writeSheet(const std::string& path);
/// "filter", "vowel", "lfo", "sync", "sequencer", "panels" or "about": what that is seen, with
/// every knob at `position`, 0 to 1. Lays the finished pictures on each other as the window does.
void writePreview(const std::string& path, const std::string& page, double position);

}  // namespace zum::pictures
