// What the second host finds in the plug-in file: opening and closing, counted, and the routines of
// the library.

#include <dlfcn.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <memory>

#include "adaptor/dae/hostlib/effect_group.hpp"
#include "adaptor/dae/wrapper_group.hpp"

namespace zum {
namespace {

constexpr std::int32_t kNoMemory = -7003;
constexpr std::int32_t kRefused = -1;

/// [main] The file, as long as it is open.
struct Module {
  int opens = 0;
  std::int32_t error = kNoError;  // of the first opening
  std::array<char, 4096> file{};
  std::array<char, 4096> resourceFile{};
};
Module module;

void findModule() {
  Dl_info about{};
  if (dladdr(&module, &about) == 0 || about.dli_fname == nullptr) return;
  (void)std::snprintf(module.file.data(), module.file.size(), "%s", about.dli_fname);
  (void)std::snprintf(module.resourceFile.data(), module.resourceFile.size(), "%s.rsr",
                      about.dli_fname);
}

bool isFailure(std::int32_t result) { return (result & 0xFFFF) != 0; }

}  // namespace
}  // namespace zum

extern "C" {

__attribute__((visibility("default"))) std::int32_t NewPlugIn(std::int32_t /*reserved*/) {
  try {
    std::unique_ptr<zum::CEffectGroup> group = std::make_unique<zum::KvRTASWrapperGroup>();
    const std::int32_t result = group->Initialize();
    zum::setProcessGroup(std::move(group));
    return result & ~0xFFFF;
  } catch (const std::exception&) {
    return zum::kNoMemory;
  }
}

// Every opening wants a close, also one that failed.
__attribute__((visibility("default"))) std::int32_t WinPlugInOpen(std::int32_t version) {
  if (version != zum::kInterfaceVersion) return zum::kRefused;
  if (zum::module.opens++ > 0) return zum::module.error;
  zum::findModule();
  const std::int32_t result = NewPlugIn(0);
  zum::module.error = zum::isFailure(result) ? result : zum::kNoError;
  if (zum::module.error != zum::kNoError) zum::setProcessGroup(nullptr);
  return zum::module.error;
}

__attribute__((visibility("default"))) std::int32_t WinPlugInClose(std::int32_t /*reserved*/) {
  if (zum::module.opens < 1 || --zum::module.opens > 0) return zum::kNoError;
  zum::setProcessGroup(nullptr);
  return zum::kNoError;
}

// NOLINTNEXTLINE(bugprone-reserved-identifier): the name that hosts look for
__attribute__((visibility("default"))) const zum::PlugInRoutines* _PI_GetRoutineDescriptor() {
  return &zum::routineTable();
}
}
