// Signals that end the program, taken only where nothing is left half done; used by every command
// line, and by whoever writes files.
#pragma once

namespace zum {

/// Thrown in place of the signal's effect: the way up to main removes what is unfinished.
struct Interruption {
  int signal;
};

/// At the start of a program. From here on SIGPIPE and SIGXFSZ do not end it: the write fails, and
/// after SIGPIPE throwIfInterrupted() throws. SIGCHLD is as it is by default, so that children can
/// be waited for whatever the parent ignored.
void prepareSignals();
/// From here on SIGINT, SIGTERM and SIGHUP wait for throwIfInterrupted(); a second one of the same
/// kind does not.
void holdSignals();
/// Throws the Interruption that is due.
void throwIfInterrupted();
/// Ends the program as the signal would have.
[[noreturn]] void endBy(const Interruption& interruption);

}  // namespace zum
