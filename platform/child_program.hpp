// A program that runs beside this one and says something on its standard output; nobody waits for
// it. Used by dialogs that are programs of their own.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace zum {

/// [any] The file of that name in the folders of PATH; empty for none. Folders of PATH that are
/// relative do not count: they depend on wherever a host runs.
std::string findProgram(const std::string& name);

/// [main] One run at a time.
class ChildProgram {
 public:
  /// A program that writes more than this is stopped.
  static constexpr std::size_t kOutputBytes = 4096;

  ChildProgram() = default;
  ChildProgram(const ChildProgram&) = delete;
  ChildProgram& operator=(const ChildProgram&) = delete;
  ~ChildProgram() { stop(); }

  /// Starts `file`; the first argument is its name. It gets the environment of this process, but
  /// neither its descriptors, nor its signals, nor a preloaded library. A program that nobody
  /// listens to may run on when this object is gone. False when it cannot run.
  bool start(const std::string& file, std::vector<std::string> arguments, bool listens = true);
  bool isRunning() const { return child > 0; }
  /// What it wrote, once it has ended well. Nothing while it isRunning(), when it failed, and when
  /// it was stopped because it wrote too much.
  std::optional<std::string> poll();
  /// Ends it, and what it started. Takes a millisecond, a tenth of a second from one that resists.
  void stop();

 private:
  bool hasEnded();
  bool waitForEnd(int milliseconds);
  bool takeOutput();
  void close();

  pid_t child = 0;  // also the number of its process group
  int pipeEnd = -1;
  bool failed = false;
  std::string output;
};

}  // namespace zum
