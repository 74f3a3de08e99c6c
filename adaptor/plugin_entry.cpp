// What the second host finds in the plug-in file: opening and closing, counted, and the routines of
// the library.

#include <dlfcn.h>

#include <cstdint>
#include <new>
#include <string>

#include "adaptor/hostlib/routine_table.hpp"
#include "adaptor/wrapper_group.hpp"

namespace zum {
namespace {

constexpr std::int32_t kNoMemory = -7003;
constexpr std::int32_t kRefused = -1;

/// The file, as long as it is open. [main]
struct Module {
  int opens = 0;
  bool isOpen = false;
  std::string file;
  std::string resourceFile;
};
Module module;

void findModule() {
  Dl_info about{};
  if (dladdr(&module, &about) == 0 || about.dli_fname == nullptr) return;
  module.file = about.dli_fname;
  module.resourceFile = module.file + ".rsr";
}

bool isFailure(std::int32_t result) { return (result & 0xFFFF) != 0; }

}  // namespace
}  // namespace zum

extern "C" {

__attribute__((visibility("default"))) std::int32_t NewPlugIn(std::int32_t /*reserved*/) {
  std::unique_ptr<zum::CEffectGroup> group(new (std::nothrow) zum::KvRTASWrapperGroup);
  if (group == nullptr) return zum::kNoMemory;
  const std::int32_t result = group->Initialize();
  zum::setProcessGroup(std::move(group));
  return result & ~0xFFFF;
}

__attribute__((visibility("default"))) std::int32_t WinPlugInOpen(std::int32_t version) {
  if (version != zum::kInterfaceVersion) return zum::kRefused;
  if (zum::module.opens++ > 0) return zum::kNoError;
  zum::findModule();
  const std::int32_t result = NewPlugIn(0);
  zum::module.isOpen = !zum::isFailure(result);
  if (!zum::module.isOpen) zum::setProcessGroup(nullptr);
  return zum::module.isOpen ? zum::kNoError : result;
}

__attribute__((visibility("default"))) std::int32_t WinPlugInClose(std::int32_t /*reserved*/) {
  if (zum::module.opens < 1 || --zum::module.opens > 0) return zum::kNoError;
  zum::module.isOpen = false;
  zum::setProcessGroup(nullptr);
  return zum::kNoError;
}

// NOLINTNEXTLINE(bugprone-reserved-identifier): the name that hosts look for
__attribute__((visibility("default"))) const zum::PlugInRoutines* _PI_GetRoutineDescriptor() {
  return &zum::routineTable();
}
}
