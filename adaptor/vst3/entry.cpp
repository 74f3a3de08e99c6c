// What a host of this interface finds in the plug-in file.
#include "adaptor/vst3/factory.hpp"

extern "C" {

__attribute__((visibility("default"))) void* GetPluginFactory() { return zum::vst3::factory(); }

// The module needs nothing ahead of its effects, and stays loaded behind them.
__attribute__((visibility("default"))) bool ModuleEntry(void* /*library*/) { return true; }
__attribute__((visibility("default"))) bool ModuleExit() { return true; }
}
