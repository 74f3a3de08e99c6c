// The signal handler, which only takes a note, and its readers.
#include "apps/zum/interruption.hpp"

#include <csignal>
#include <cstdlib>
#include <initializer_list>

namespace zum {
namespace {

volatile std::sig_atomic_t noted = 0;

extern "C" void noteSignal(int signal) { noted = signal; }

}  // namespace

void holdSignals() {
  struct sigaction note {};
  note.sa_handler = &noteSignal;
  note.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction earlier {};
    // What was ignored from the start, as under nohup, stays ignored; what is held stays held.
    sigaction(signal, nullptr, &earlier);
    if (earlier.sa_handler == SIG_DFL) sigaction(signal, &note, nullptr);
  }
  struct sigaction ignore {};
  ignore.sa_handler = SIG_IGN;
  sigaction(SIGXFSZ, &ignore, nullptr);
}

void throwIfInterrupted() {
  if (noted != 0) throw Interruption{static_cast<int>(noted)};
}

void endBy(const Interruption& interruption) {
  static_cast<void>(std::signal(interruption.signal, SIG_DFL));
  (void)std::raise(interruption.signal);
  std::_Exit(128 + interruption.signal);
}

}  // namespace zum
