// [main] What a file is to hold next, under a name beside it that nobody looks at. A program that
// dies meanwhile leaves it there; the next one that writes into that folder takes it away.
#pragma once

#include <sys/types.h>

#include <string>

namespace zum {

class NeighbourFile {
 public:
  /// Beside `target`, a path of the system, whose name may leave no room for a longer one. It has
  /// the mode of what is there, else what the user's mask leaves of 0666.
  explicit NeighbourFile(std::string target);
  /// Goes unless it has replaced the target.
  ~NeighbourFile();
  NeighbourFile(const NeighbourFile&) = delete;
  NeighbourFile& operator=(const NeighbourFile&) = delete;

  /// Open for reading and writing; -1 where the folder took none, which errno tells, and once
  /// closed.
  int descriptor() const { return file; }
  /// False when the system could not keep what was written; errno tells why.
  bool close();
  /// [once closed] Stands in the target's place from here on, or errno tells why not.
  bool replaceTarget();

 private:
  bool open(mode_t mode);
  bool hold();

  std::string target;
  std::string name;  // empty for none
  int file = -1;
  int held = -1;  // of the same file: its lock says that somebody is writing
};

}  // namespace zum
