// Signals that end the program, taken only where nothing is left half done; used by whoever writes
// files.
#pragma once

namespace zum {

/// Thrown in place of the signal's effect: the way up to main removes what is unfinished.
struct Interruption {
  int signal;
};

/// From here on SIGINT, SIGTERM and SIGHUP wait for throwIfInterrupted(); a second one of the same
/// kind does not. Full disks and file size limits show as failed writes.
void holdSignals();
/// Throws the Interruption that is due.
void throwIfInterrupted();
/// Ends the program as the signal would have.
[[noreturn]] void endBy(const Interruption& interruption);

}  // namespace zum
