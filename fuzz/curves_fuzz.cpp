// Any bytes as an automation curve. Run by libFuzzer, or over the stored corpus by replay_main.cpp.
// Looks for values that no parameter can have.

#include "apps/zum/automation.hpp"
#include "fuzz/memory_file.hpp"
#include "preset_text/failure.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) try {
  using namespace zum;
  static const MemoryFile file;
  static const std::string option = "60=" + file.path();
  file.fill(data, size);
  AutomationCurve curve(option);
  for (const double time : {0.0, 0.5, 1.0, 1.0, 1e3, 1e300}) {
    const float value = curve.valueAt(time);
    demand(value >= 0.0F && value <= 1.0F);
  }
  return 0;
} catch (const zum::Failure& failure) {
  zum::demand(*failure.what() != '\0');
  return 0;
}
