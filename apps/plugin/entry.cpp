// What a host finds in the plug-in file: the entry of today and, under the name that older hosts
// look for, the same once more.

#include "core/create_effect.hpp"
#include "editor/create_editor.hpp"

extern "C" {

__attribute__((visibility("default"))) zum::AEffect* VSTPluginMain(zum::audioMasterCallback host) {
  return zum::createEffect(host, zum::createEditor);
}

// A C++ function cannot be called main and take this argument, but its symbol can.
__attribute__((visibility("default"))) zum::AEffect* entryOfOlderHosts(
    zum::audioMasterCallback host) asm("main");

zum::AEffect* entryOfOlderHosts(zum::audioMasterCallback host) { return VSTPluginMain(host); }
}
