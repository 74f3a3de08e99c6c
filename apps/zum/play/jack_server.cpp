#include "apps/zum/play/jack_server.hpp"

#include "apps/zum/play/quiet_systems.hpp"

namespace zum {

JackClient openJackClient(const char* name) {
  quietenSoundSystems();
  return JackClient(jack_client_open(name, JackNoStartServer, nullptr));
}

JackServer& JackServer::get() {
  static JackServer server;
  return server;
}

jack_client_t* JackServer::client() {
  if (open != nullptr && !isGone.load()) return open.get();
  if (open != nullptr && JackStay::count() > 0) return nullptr;
  open.reset();
  isGone.store(false);
  open = openJackClient("ZUM looks");
  if (open == nullptr) return nullptr;
  ++count;
  jack_on_info_shutdown(
      open.get(),
      [](jack_status_t, const char*, void* gone) {
        static_cast<std::atomic<bool>*>(gone)->store(true);
      },
      &isGone);
  return open.get();
}

}  // namespace zum
