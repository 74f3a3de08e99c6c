// Standard streams that whoever started the program had closed. Called by every main, first of all.
#pragma once

#include <fcntl.h>
#include <unistd.h>

namespace zum {

/// Opens the ones that are closed on /dev/null, or the next file to be opened would be one of them
/// and get our messages into its bytes. The wrong way round: what is read or written there fails
/// as it would on a closed one, and is told.
inline void openStandardStreams() {
  for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
    if (fcntl(stream, F_GETFD) >= 0) continue;
    // The lowest free number, which is this one.
    static_cast<void>(open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY));
  }
}

}  // namespace zum
