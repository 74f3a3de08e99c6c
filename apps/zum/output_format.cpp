// Choice of the output format, from libsndfile's own tables.
#include "apps/zum/output_format.hpp"

#include <sndfile.h>

#include <map>
#include <string>
#include <vector>

#include "apps/zum/failure.hpp"
#include "platform/ascii_case.hpp"

namespace zum {
namespace {

bool writesStereo(int format) {
  SF_INFO info{};
  info.samplerate = 48000;
  info.channels = 2;
  info.format = format;
  return sf_format_check(&info) == SF_TRUE;
}

std::vector<SF_FORMAT_INFO> formatTable(int countCommand, int command) {
  int count = 0;
  sf_command(nullptr, countCommand, &count, sizeof count);
  std::vector<SF_FORMAT_INFO> table(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    SF_FORMAT_INFO& info = table[static_cast<std::size_t>(i)];
    info.format = i;
    sf_command(nullptr, command, &info, sizeof info);
  }
  return table;
}

// Sample formats to try, best first. Music read from a lossy file goes on at 24 bits.
std::vector<int> wishes(int inputFormat) {
  switch (inputFormat & SF_FORMAT_SUBMASK) {
    case SF_FORMAT_FLOAT:
    case SF_FORMAT_DOUBLE: return {SF_FORMAT_FLOAT, SF_FORMAT_PCM_24, SF_FORMAT_PCM_16};
    case SF_FORMAT_PCM_32:
    case SF_FORMAT_ALAC_32:
      return {SF_FORMAT_PCM_32, SF_FORMAT_PCM_24, SF_FORMAT_FLOAT, SF_FORMAT_PCM_16};
    case SF_FORMAT_PCM_16:
    case SF_FORMAT_ALAC_16: return {SF_FORMAT_PCM_16};  // there is no container without it
    case SF_FORMAT_PCM_S8:
    case SF_FORMAT_PCM_U8: return {SF_FORMAT_PCM_U8, SF_FORMAT_PCM_S8, SF_FORMAT_PCM_16};
    default: return {SF_FORMAT_PCM_24, SF_FORMAT_FLOAT, SF_FORMAT_PCM_16};
  }
}

// Formats with no choice of samples (Ogg Vorbis, MP3, ...) come from the table of simple formats,
// all others from the table of containers, where the first of an extension is the usual one.
std::map<std::string, int> formatsByExtension(int inputFormat) {
  std::map<std::string, int> formats;
  for (const SF_FORMAT_INFO& major :
       formatTable(SFC_GET_FORMAT_MAJOR_COUNT, SFC_GET_FORMAT_MAJOR)) {
    // Raw files tell no player their rate; Sound Designer needs a second file beside the first.
    if (major.format == SF_FORMAT_RAW || major.format == SF_FORMAT_SD2) continue;
    for (const int subtype : wishes(inputFormat)) {
      const int format = major.format | subtype;
      if (writesStereo(format) && formats.emplace(major.extension, format).second) break;
    }
  }
  for (const SF_FORMAT_INFO& simple :
       formatTable(SFC_GET_SIMPLE_FORMAT_COUNT, SFC_GET_SIMPLE_FORMAT)) {
    if (writesStereo(simple.format)) formats.emplace(simple.extension, simple.format);
  }
  for (const auto& [alias, name] : {std::pair{"aif", "aiff"}, {"oga", "ogg"}, {"wave", "wav"}}) {
    if (formats.count(name) != 0) formats.emplace(alias, formats[name]);
  }
  return formats;
}

}  // namespace

int outputFormat(const std::filesystem::path& path, int inputFormat) {
  std::string extension = lowerCase(path.extension().string());
  extension.erase(0, 1);
  const auto formats = formatsByExtension(inputFormat);
  if (const auto found = formats.find(extension); found != formats.end()) return found->second;
  std::string list;
  for (const auto& [name, format] : formats) list += (list.empty() ? "." : ", .") + name;
  throw Failure(
      "the name " + path.string() + " does not tell a format; let it end in one of " + list,
      kExitWrongUsage);
}

int integerBits(int format) {
  switch (format & SF_FORMAT_SUBMASK) {
    case SF_FORMAT_PCM_S8:
    case SF_FORMAT_PCM_U8: return 8;
    case SF_FORMAT_PCM_16: return 16;
    case SF_FORMAT_PCM_24: return 24;
    case SF_FORMAT_PCM_32: return 32;
    default: return 0;
  }
}

}  // namespace zum
