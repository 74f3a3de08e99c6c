#include "apps/daehost/session_file.hpp"

#include <cstring>
#include <iterator>
#include <string>
#include <utility>

#include "adaptor/dae/hostlib/routines.hpp"
#include "apps/zum/failure.hpp"
#include "apps/zum/input_file.hpp"
#include "preset_text/preset_document.hpp"

namespace zum {
namespace {

constexpr std::size_t kMostBytes = 64U << 20U;

// Empty, or why it is no record.
std::string faultOf(const std::vector<char>& bytes) {
  const auto count = std::int64_t{std::ssize(bytes)};
  if (count < kSessionHeader) return "it is shorter than a header";
  std::int32_t stated = 0;
  std::memcpy(&stated, bytes.data(), sizeof stated);
  if (stated != count) {
    return "its header states " + std::to_string(stated) + " bytes, and there are " +
           std::to_string(count);
  }
  if (stated == kSessionHeader) return {};
  KvChunk preset;
  preset.borrow(bytes.data() + kSessionHeader,
                static_cast<std::uint32_t>(stated - kSessionHeader) / 4);
  PresetDocument document;
  PresetFault fault = readPresetDocument(preset, document);
  fault.word += kSessionHeader / 4;  // counted from the start of the file
  return fault ? describe(fault) : std::string();
}

}  // namespace

std::vector<char> readSessionFile(const std::filesystem::path& path) {
  auto bytes = InputFile(path, "session record").readAll(kMostBytes);
  if (!bytes) {
    throw Failure(path.string() + " is too long for a session record; make one with daehost save");
  }
  if (const std::string why = faultOf(*bytes); !why.empty()) {
    throw Failure(path.string() + " is no session record that loads: " + why +
                  "; make one with daehost save");
  }
  return *std::move(bytes);
}

}  // namespace zum
