// Which file format and sample format an output file gets; asked by the audio output.
#pragma once

#include <filesystem>

namespace zum {

/// The libsndfile format for `path`, by its extension and, where the file format leaves a choice,
/// as near as possible to `inputFormat` (of the file that was read). Throws Failure with the list
/// of extensions for an unknown one.
int outputFormat(const std::filesystem::path& path, int inputFormat);

/// Bits per sample of an integer format, 0 of all others.
int integerBits(int format);

}  // namespace zum
