// Stands in for standard streams that whoever started the program had closed. Called by every main,
// first of all.
#pragma once

#include <fcntl.h>
#include <unistd.h>

namespace zum {

/// Opens the closed ones on /dev/null: otherwise the next file that is opened would get their
/// number, and our messages into its bytes. They are opened the wrong way round, so that reads and
/// writes fail as on a closed stream, and the failure is told.
inline void openStandardStreams() {
  for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
    if (fcntl(stream, F_GETFD) >= 0) continue;
    // The lowest free number, which is this one.
    static_cast<void>(open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY));
  }
}

}  // namespace zum
