// A program that runs beside the test, and goes with it.
#pragma once

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace zum::test {

/// Asks every ten milliseconds; false when it did not come true in time.
inline bool comesTrue(const std::function<bool()>& isTrue,
                      std::chrono::milliseconds within = std::chrono::seconds(20)) {
  const auto end = std::chrono::steady_clock::now() + within;
  while (!isTrue()) {
    if (std::chrono::steady_clock::now() > end) return false;
    usleep(10'000);
  }
  return true;
}

class ChildProgram {
 public:
  /// What it prints goes into the file `told`. Started by the thread that outlives it.
  ChildProgram(std::vector<std::string> words, const std::filesystem::path& told) {
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const pid_t us = getpid();
    process = fork();
    if (process != 0) return;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != us) _exit(1);
    const int file = open(told.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    dup2(file, STDOUT_FILENO);
    dup2(file, STDERR_FILENO);
    execvp(arguments[0], arguments.data());
    _exit(127);
  }
  ~ChildProgram() {
    if (isRunning()) static_cast<void>(end(SIGKILL));
  }
  ChildProgram(const ChildProgram&) = delete;
  ChildProgram& operator=(const ChildProgram&) = delete;

  bool isRunning() {
    if (process > 0 && waitpid(process, &status, WNOHANG) == process) process = 0;
    return process > 0;
  }
  /// Its exit code, or 128 and the signal that ended it.
  int end(int signal) {
    if (process > 0) kill(process, signal);
    return wait();
  }
  /// In its own way, if it does within five seconds.
  void askToEnd() {
    if (process > 0) kill(process, SIGTERM);
    comesTrue([this] { return !isRunning(); }, std::chrono::seconds(5));
  }
  int wait() {
    if (process > 0) waitpid(std::exchange(process, 0), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }

 private:
  pid_t process = 0;
  int status = 0;
};

}  // namespace zum::test
