// A plug-in file as its host sees it: four exports, and what they lead to.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "adaptor/dae/hostlib/routines.hpp"

namespace zum {

/// Opened by the constructor. Throws Failure.
class PlugInFile {
 public:
  explicit PlugInFile(const std::filesystem::path& path);
  ~PlugInFile();
  PlugInFile(const PlugInFile&) = delete;
  PlugInFile& operator=(const PlugInFile&) = delete;

  const PlugInRoutines& routines() const { return *table; }

 private:
  void* library = nullptr;
  std::int32_t (*close)(std::int32_t) = nullptr;
  const PlugInRoutines* table = nullptr;
};

/// One process of it, with a host that counts samples. Throws Failure.
class HostedProcess {
 public:
  /// The types of the group, by their stems.
  enum class Type : std::uint8_t { stereo, mono };

  HostedProcess(const PlugInFile& file, Type type, float sampleRate, double tempo);

  const PlugInRoutines& routines() const { return file.routines(); }
  ProcessHandle* get() const { return process.get(); }

  std::string controlName(std::int32_t index) const;
  /// The index of the control of that name, in any case, or of that index.
  std::int32_t findControl(const std::string& text) const;
  std::string controlText(std::int32_t index) const;
  /// Takes "NAME=VALUE", the value as the control reads it.
  void set(const std::string& setting);

  /// A whole session record, header and all.
  std::vector<char> save() const;
  /// False when it is refused.
  bool load(const std::vector<char>& record);

  // The transport, in samples.
  std::int64_t position = 0;
  bool isRunning = true;
  double tempo;  // beats per minute

 private:
  struct Destroy {
    const PlugInRoutines* routines;
    void operator()(ProcessHandle* ended) const { routines->destroyProcess(ended); }
  };
  static HostRoutines hostRoutines(HostedProcess& self);

  const PlugInFile& file;
  float rate;  // Hz
  HostRoutines host;
  std::unique_ptr<ProcessHandle, Destroy> process;
};

/// The one that was built beside this program.
std::filesystem::path plugInBesideProgram();

}  // namespace zum
