// Presets as a user names them: files, and programs of the bank. Used by the presets and render
// commands.
#pragma once

#include <filesystem>
#include <string>

#include "apps/zum/effect_view.hpp"
#include "preset_text/preset_document.hpp"

namespace zum {

/// Fills a fresh document from a file. Empty, or why the effect would not load it.
std::string readPresetFile(const std::filesystem::path& path, PresetDocument& document);

// Each makes the preset the effect's state; throws Failure.
void loadPresetFile(const std::filesystem::path& path, EffectView& effect);
/// `name` is FOLDER/NAME as the bank has it, in any case.
void loadProgram(const std::string& name, EffectView& effect);

}  // namespace zum
