// Writes a finished loop to disk; main.cpp is the only caller.
#pragma once

#include <filesystem>
#include <string>

#include "apps/loops/loop.hpp"

namespace zum::loops {

// 16-bit WAV. Returns what went wrong, or an empty text. The file appears whole or not at all: it
// grows beside its place as NAME.part and is renamed at the end.
std::string writeWav(const std::filesystem::path& path, const Loop& loop);

}  // namespace zum::loops
