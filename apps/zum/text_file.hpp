// The lines of a file; used by automation, plots and texts of presets.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>

#include "apps/zum/input_file.hpp"
#include "preset_text/text_lines.hpp"

namespace zum {

/// Throws Failure, here and where the lines go on behind `mostBytes`.
inline TextLines linesOf(const std::filesystem::path& path, std::uint64_t mostBytes) {
  auto file = std::make_shared<InputFile>(path, "text file");
  return {path.string(), [file](char* to, std::size_t room) { return file->read(to, room); },
          mostBytes};
}

}  // namespace zum
