#include "apps/daehost/plug_in_file.hpp"

#include <dlfcn.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <system_error>

#include "apps/zum/failure.hpp"
#include "platform/ascii_case.hpp"

namespace zum {
namespace {

constexpr std::int32_t kFirstControl = 1;
constexpr double kTicks = 960000.0;  // to the quarter note

std::int32_t chunkId() {
  std::int32_t id = 0;
  std::memcpy(&id, "kvzm", sizeof id);
  return id;
}

template <class Routine>
Routine exportOf(void* library, const char* name, const std::filesystem::path& path) {
  void* const found = dlsym(library, name);
  if (found == nullptr) {
    throw Failure(path.string() + " has no entry " + name + "; choose a ZUM32.dpm");
  }
  return reinterpret_cast<Routine>(found);
}

}  // namespace

PlugInFile::PlugInFile(const std::filesystem::path& path) {
  std::error_code none;
  const auto status = std::filesystem::status(path, none);
  // The loader would wait for a pipe.
  if (!std::filesystem::is_regular_file(status)) {
    const char* why = exists(status) ? "it is no ordinary file" : "there is no such file";
    throw Failure("cannot load " + path.string() + " (" + why + "); build it or name another");
  }
  library = dlopen(std::filesystem::absolute(path, none).c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) {
    throw Failure("cannot load " + path.string() + " (" + dlerror() +
                  "); build it or name another");
  }
  const auto open = exportOf<std::int32_t (*)(std::int32_t)>(library, "WinPlugInOpen", path);
  close = exportOf<std::int32_t (*)(std::int32_t)>(library, "WinPlugInClose", path);
  const auto describe =
      exportOf<const PlugInRoutines* (*)()>(library, "_PI_GetRoutineDescriptor", path);
  const std::int32_t error = open(kInterfaceVersion);
  table = describe();
  if (error != 0 || table == nullptr || table->version != kInterfaceVersion) {
    close(0);  // a failed opening counts too
    throw Failure(path.string() + " does not open (" + std::to_string(error) +
                  "); use a plug-in file of the same version");
  }
}

// The library stays: windows and fonts may have left threads and handlers behind.
PlugInFile::~PlugInFile() { close(0); }

HostedProcess::HostedProcess(const PlugInFile& plugIn, Type type, float sampleRate,
                             double beatsPerMinute)
    : tempo(beatsPerMinute),
      file(plugIn),
      rate(sampleRate),
      host(hostRoutines(*this)),
      process(nullptr, {&plugIn.routines()}) {
  routines().setSampleRate(sampleRate);
  process.reset(routines().createProcess(type == Type::stereo ? 0 : 1, &host));
  if (process == nullptr) throw Failure("the plug-in made no process; free memory and try again");
}

HostRoutines HostedProcess::hostRoutines(HostedProcess& self) {
  return {.context = &self,
          .tempo = [](void* c) { return static_cast<HostedProcess*>(c)->tempo; },
          .isRunning =
              [](void* c) {
                return static_cast<std::int32_t>(static_cast<HostedProcess*>(c)->isRunning);
              },
          .meter = [](void*, std::int32_t* numerator,
                      std::int32_t* denominator) { *numerator = *denominator = 4; },
          .realTimeSample = [](void* c) { return static_cast<HostedProcess*>(c)->position; },
          .timelineSample = [](void* c) { return static_cast<HostedProcess*>(c)->position; },
          .samplesToTicks =
              [](void* c, std::int64_t samples) {
                const auto& me = *static_cast<HostedProcess*>(c);
                const double quarters =
                    static_cast<double>(samples) * me.tempo / 60.0 / static_cast<double>(me.rate);
                return static_cast<std::int64_t>(std::llround(quarters * kTicks));
              },
          .controlChanged = [](void*, std::int32_t, std::int32_t) {},
          .touched = [](void*, std::int32_t) {},
          .released = [](void*, std::int32_t) {}};
}

std::string HostedProcess::controlName(std::int32_t index) const {
  std::array<char, 64> name{};
  routines().controlName(get(), index, name.data(), static_cast<std::int32_t>(name.size()));
  return name.data();
}

std::string HostedProcess::controlText(std::int32_t index) const {
  std::array<char, 32> text{};
  routines().valueToText(get(), index, routines().getControl(get(), index), text.data(),
                         static_cast<std::int32_t>(text.size()));
  return text.data();
}

std::int32_t HostedProcess::findControl(const std::string& text) const {
  const std::int32_t count = routines().controlCount(get());
  for (std::int32_t index = kFirstControl; index < kFirstControl + count; ++index) {
    if (lowerCase(controlName(index)) == lowerCase(text) || std::to_string(index) == text)
      return index;
  }
  throw Failure("there is no control \"" + text + "\"; daehost list names them all",
                kExitWrongUsage);
}

void HostedProcess::set(const std::string& setting) {
  const std::size_t end = setting.find('=');
  if (end == std::string::npos || end == 0) {
    throw Failure('"' + setting + "\" sets nothing; write it as NAME=VALUE", kExitWrongUsage);
  }
  const std::int32_t index = findControl(setting.substr(0, end));
  const std::string value = setting.substr(end + 1);
  float number = 0.0F;
  if (!CLI::detail::lexical_cast(value, number) || !(number >= 0.0F && number <= 1.0F)) {
    throw Failure(
        "\"" + value + "\" in \"" + setting + "\" is no number from 0 to 1; give one, such as 0.5",
        kExitWrongUsage);
  }
  std::array<char, 32> plain{};  // the control reads decimals alone, the command line more
  std::to_chars(plain.data(), plain.data() + plain.size() - 1, number);
  const std::int32_t wanted = routines().textToValue(get(), index, plain.data());
  routines().setControl(get(), index, wanted);
  constexpr std::int64_t kRounding = 1000;  // the value is a float on its way
  if (std::abs(std::int64_t{routines().getControl(get(), index)} - wanted) > kRounding) {
    throw Failure("control " + std::to_string(index) + " (" + controlName(index) +
                      ") takes no value; choose another",
                  kExitWrongUsage);
  }
}

std::vector<char> HostedProcess::save() const {
  std::int32_t size = 0;
  if (routines().reportChunkSize(get(), chunkId(), &size) != 0 || size < kSessionHeader) {
    throw Failure("the plug-in has no state to save; this should not happen, please report it");
  }
  std::vector<char> bytes(static_cast<std::size_t>(size));
  auto* const record = reinterpret_cast<SessionRecord*>(bytes.data());
  if (routines().readChunk(get(), chunkId(), record, size) != 0) {
    throw Failure("the state grew while it was saved; save it again");
  }
  return bytes;
}

bool HostedProcess::load(const std::vector<char>& bytes) {
  const auto* const record = reinterpret_cast<const SessionRecord*>(bytes.data());
  return routines().writeChunk(get(), chunkId(), record, static_cast<std::int32_t>(bytes.size())) ==
         0;
}

std::filesystem::path plugInBesideProgram() {
  std::error_code none;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", none);
  return program.parent_path() / "ZUM32.dpm";
}

}  // namespace zum
