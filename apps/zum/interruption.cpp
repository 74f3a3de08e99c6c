// The signal handler, which only takes a note, and its readers.
#include "apps/zum/interruption.hpp"

#include <csignal>
#include <cstdlib>
#include <initializer_list>

namespace zum {
namespace {

volatile std::sig_atomic_t noted = 0;

extern "C" void noteSignal(int signal) { noted = signal; }

// What was ignored from the start, as under nohup, stays ignored; what is held stays held.
void note(int signal, int flags) {
  struct sigaction earlier {};
  sigaction(signal, nullptr, &earlier);
  if (earlier.sa_handler != SIG_DFL) return;
  struct sigaction action {};
  action.sa_handler = &noteSignal;
  action.sa_flags = flags;
  sigaction(signal, &action, nullptr);
}

}  // namespace

void prepareSignals() {
  note(SIGPIPE, SA_RESTART);
  static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));
  static_cast<void>(std::signal(SIGCHLD, SIG_DFL));
}

void holdSignals() {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    note(signal, static_cast<int>(SA_RESETHAND | SA_RESTART));
  }
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
