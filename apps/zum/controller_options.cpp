#include "apps/zum/controller_options.hpp"

#include <string>
#include <system_error>

#include "apps/zum/failure.hpp"
#include "platform/files.hpp"
#include "preset_text/numbers_in_text.hpp"
#include "preset_text/parameter_names.hpp"
#include "state/library_record.hpp"
#include "state/preset_files.hpp"

namespace zum {
namespace {

namespace fs = std::filesystem;

std::string internalPath(const fs::path& path) {
  return toInternalPath(fs::absolute(path).string());
}

std::string whyUnread(const fs::path& path, ControllerMap& map) {
  KvChunk chunk;
  switch (readChunkFile(internalPath(path), chunk)) {
    case ChunkFile::read: break;
    case ChunkFile::missing: return "it cannot be read";
    case ChunkFile::tooLong: return "it is too long for one";
  }
  if (!chunk.readHeader()) return "another magic number";
  if (chunk.isNewer()) {
    return std::string("it was written with a newer version of ") + libraryRecord().product;
  }
  switch (map.readCcMap(chunk)) {
    case ControllerMap::Read::taken: return {};
    case ControllerMap::Read::otherVersion: return "it has another format version";
    case ControllerMap::Read::damaged: return "its lists do not fit together";
  }
  return {};
}

}  // namespace

ControllerSetting parseControllerSetting(std::string_view text) {
  const std::size_t equals = text.find('=');
  const std::string_view source = text.substr(0, equals);
  int controller = -1;
  const bool known = source == "aftertouch" || (parseWhole(source, controller) && controller >= 0 &&
                                                controller < preset::kControllers);
  if (equals == std::string_view::npos || !known) {
    throw Failure("cannot read \"" + std::string(text) +
                      "\"; write CC=NAME with a controller from 0 to 127, or aftertouch=NAME",
                  kExitWrongUsage);
  }
  return {controller, findParameterTag(text.substr(equals + 1))};
}

void readControllerMap(const fs::path& path, ControllerMap& map) {
  const std::string why = whyUnread(path, map);
  if (why.empty()) return;
  throw Failure(path.string() + " is no controller map that loads: " + why +
                "; give another file, or --learn what it should bind");
}

void loadControllerMap(const fs::path& path, EffectView& effect) {
  ControllerMap checked;
  readControllerMap(path, checked);
  effect.loadControllerMap(internalPath(path));
}

}  // namespace zum
