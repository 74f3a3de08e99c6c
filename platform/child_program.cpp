#include "platform/child_program.hpp"

#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <string_view>
#include <thread>

namespace zum {
namespace {

constexpr const char* kPreload = "LD_PRELOAD=";  // made for the host, and may break others

bool isProgram(const std::string& file) {
  struct stat about {};
  return stat(file.c_str(), &about) == 0 && S_ISREG(about.st_mode) &&
         access(file.c_str(), X_OK) == 0;
}

std::vector<char*> environmentOfChild() {
  std::vector<char*> kept;
  for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
    if (!std::string_view(*entry).starts_with(kPreload)) kept.push_back(*entry);
  }
  kept.push_back(nullptr);
  return kept;
}

/// How a child starts: its output goes into a pipe, and it inherits no other stream, descriptor or
/// signal mask.
class SpawnSettings {
 public:
  explicit SpawnSettings(int output) {
    posix_spawn_file_actions_init(&files);
    // The pipe comes first: where a host has closed its own streams, the pipe has one of their
    // numbers.
    if (output >= 0) {
      posix_spawn_file_actions_adddup2(&files, output, STDOUT_FILENO);
    } else {
      posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    }
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addclosefrom_np(&files, STDERR_FILENO + 1);
    posix_spawnattr_init(&attributes);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes, &signals);
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&attributes, &signals);
    posix_spawnattr_setpgroup(&attributes, 0);
    posix_spawnattr_setflags(
        &attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETPGROUP);
  }
  SpawnSettings(const SpawnSettings&) = delete;
  SpawnSettings& operator=(const SpawnSettings&) = delete;
  ~SpawnSettings() {
    posix_spawn_file_actions_destroy(&files);
    posix_spawnattr_destroy(&attributes);
  }

  posix_spawn_file_actions_t files{};
  posix_spawnattr_t attributes{};
};

}  // namespace

std::string findProgram(const std::string& name) {
  const char* value = std::getenv("PATH");
  std::string_view folders = value != nullptr ? value : "";
  while (!folders.empty()) {
    const std::size_t end = folders.find(':');
    const std::string_view folder = folders.substr(0, end);
    std::string file = std::string(folder) + "/" + name;
    if (folder.starts_with('/') && isProgram(file)) return file;
    folders.remove_prefix(end == std::string_view::npos ? folders.size() : end + 1);
  }
  return {};
}

bool ChildProgram::start(const std::string& file, std::vector<std::string> arguments,
                         bool listens) {
  if (isRunning()) return false;
  std::vector<char*> texts;
  texts.reserve(arguments.size() + 1);
  for (std::string& argument : arguments) texts.push_back(argument.data());
  texts.push_back(nullptr);
  std::vector<char*> environment = environmentOfChild();
  std::array<int, 2> ends{-1, -1};
  if (listens && pipe2(ends.data(), O_CLOEXEC) != 0) return false;
  const SpawnSettings settings(ends[1]);
  const bool runs = (!listens || fcntl(ends[0], F_SETFL, O_NONBLOCK) == 0) &&
                    posix_spawn(&child, file.c_str(), &settings.files, &settings.attributes,
                                texts.data(), environment.data()) == 0;
  if (listens) ::close(ends[1]);
  pipeEnd = ends[0];
  if (!runs) close();
  return runs;
}

std::optional<std::string> ChildProgram::poll() {
  if (!isRunning()) return std::nullopt;
  const bool ended = hasEnded();  // asked first: then all that it said is in the pipe
  if (!takeOutput()) {
    if (ended) {
      close();
    } else {
      stop();
    }
    return std::nullopt;
  }
  if (!ended) return std::nullopt;
  std::optional<std::string> said;
  if (!failed) said = std::move(output);
  close();
  return said;
}

// A host that ignores its children's ends, or collects them all, leaves no status behind: then the
// output alone counts.
bool ChildProgram::hasEnded() {
  int status = 0;
  const pid_t found = waitpid(child, &status, WNOHANG);
  if (found == 0 || (found < 0 && errno == EINTR)) return false;
  failed = found == child && !(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  return true;
}

// Its end is not told by the end of the pipe, which programs that it started may hold open.
bool ChildProgram::takeOutput() {
  std::array<char, 1024> part{};
  while (output.size() <= kOutputBytes) {
    const ssize_t count = read(pipeEnd, part.data(), part.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return true;
    output.append(part.data(), static_cast<std::size_t>(count));
  }
  return false;
}

bool ChildProgram::waitForEnd(int milliseconds) {
  for (int i = 0; i < milliseconds; ++i) {
    if (hasEnded()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return hasEnded();
}

// Asked before each signal whether it still runs: a number that was given back may be another's.
void ChildProgram::stop() {
  constexpr int kPatience = 100;  // milliseconds
  if (!isRunning()) return;
  for (const int signal : {SIGTERM, SIGKILL}) {
    if (hasEnded()) break;
    kill(-child, signal);
    if (waitForEnd(kPatience)) break;
  }
  close();
}

void ChildProgram::close() {
  if (pipeEnd >= 0) ::close(pipeEnd);
  pipeEnd = -1;
  child = 0;
  failed = false;
  output.clear();
}

}  // namespace zum
