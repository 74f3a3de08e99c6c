#include "apps/zum/play/quiet_systems.hpp"

#include <alsa/asoundlib.h>
#include <jack/jack.h>

#include <mutex>

namespace zum {
namespace {

// NOLINTNEXTLINE(cert-dcl50-cpp): ALSA's kind of handler
void ignore(const char* /*file*/, int /*line*/, const char* /*function*/, int /*error*/,
            const char* /*format*/, ...) {}

}  // namespace

void quietenSoundSystems() {
  static std::once_flag once;
  std::call_once(once, [] {
    snd_lib_error_set_handler(&ignore);
    jack_set_error_function([](const char*) {});
    jack_set_info_function([](const char*) {});
  });
}

bool hasAlsaSequencer() {
  quietenSoundSystems();
  snd_seq_t* sequencer = nullptr;
  if (snd_seq_open(&sequencer, "default", SND_SEQ_OPEN_DUPLEX, SND_SEQ_NONBLOCK) < 0) return false;
  snd_seq_close(sequencer);
  return true;
}

}  // namespace zum
