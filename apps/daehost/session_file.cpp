#include "apps/daehost/session_file.hpp"

#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>

#include "adaptor/hostlib/routines.hpp"
#include "apps/zum/failure.hpp"
#include "apps/zum/preset_document.hpp"

namespace zum {
namespace {

// A folder, a pipe or a device has no size, and is never waited for.
std::vector<char> readBytes(const std::filesystem::path& path) {
  constexpr std::uintmax_t kMostBytes = 64U << 20U;
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(path, error);
  if (!error && size > kMostBytes) {
    throw Failure(path.string() + " is too long for a session record; make one with daehost save");
  }
  std::ifstream file;
  if (!error) file.open(path, std::ios::binary);
  if (!file.is_open()) {
    throw Failure("cannot read " + path.string() + "; check its name and its rights");
  }
  std::vector<char> bytes(size);
  file.read(bytes.data(), std::ssize(bytes));
  bytes.resize(static_cast<std::size_t>(file.gcount()));
  return bytes;
}

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
  fault.word += kSessionHeader / 4;  // as the file counts
  return fault ? describe(fault) : std::string();
}

}  // namespace

std::vector<char> readSessionFile(const std::filesystem::path& path) {
  std::vector<char> bytes = readBytes(path);
  if (const std::string why = faultOf(bytes); !why.empty()) {
    throw Failure(path.string() + " is no session record that loads: " + why +
                  "; make one with daehost save");
  }
  return bytes;
}

}  // namespace zum
