// A plug-in's process, as far as every plug-in has it in common: its controls, what it tells the
// host, and the chunk types that it knows.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "adaptor/dae/hostlib/midi_node.hpp"
#include "adaptor/dae/hostlib/plugin_control.hpp"
#include "adaptor/dae/hostlib/transport_access.hpp"
#include "engine/realtime.hpp"

namespace zum {

inline constexpr std::int32_t kNoError = 0;
inline constexpr std::int32_t kUnknownChunk = -7100;
inline constexpr std::int32_t kBadChunk = -7101;
inline constexpr std::int32_t kUnknownType = -7103;

/// [main] What the host shows in its plug-in window.
class CPlugInView {
 public:
  CPlugInView() = default;
  CPlugInView(const CPlugInView&) = delete;
  CPlugInView& operator=(const CPlugInView&) = delete;
  virtual ~CPlugInView() = default;
};

/// Drawn by the plug-in itself.
class CCustomView : public CPlugInView {
 public:
  /// A part of it; null for all.
  virtual void drawContents(const ViewRect* part) = 0;
};

/// [main] unless said otherwise. The list of controls, and the notifications by their index.
class CProcess {
 public:
  /// `hostRoutines` outlive it.
  explicit CProcess(const HostRoutines& hostRoutines) : host(hostRoutines) {}
  CProcess(const CProcess&) = delete;
  CProcess& operator=(const CProcess&) = delete;
  virtual ~CProcess() = default;

  const std::vector<std::unique_ptr<CPluginControl>>& getControls() const { return controls; }
  /// Null for an index that there is not.
  CPluginControl* getControl(std::int32_t index) const;
  /// 0 for none.
  std::int32_t getMasterBypass() const { return masterBypass; }
  const HostRoutines& getHost() const { return host; }

  /// The host moved a control.
  virtual void SetControl(std::int32_t index, std::int32_t value);
  /// Gives the lower end of the range for an index that there is not.
  virtual std::int32_t GetControl(std::int32_t index) const;

  // [any] The plug-in moved a control, or the user has a hand on it.
  void controlChanged(std::int32_t index, std::int32_t value);
  void touchControl(std::int32_t index) { host.touched(host.context, index); }
  void releaseControl(std::int32_t index) { host.released(host.context, index); }

  // Session records. What no subclass knows is an error.
  virtual std::int32_t ReportChunkSize(std::int32_t chunkId, std::int32_t& size);
  /// `room` bytes are there for the record.
  virtual std::int32_t ReadChunk(std::int32_t chunkId, SessionRecord& record, std::int32_t room);
  virtual std::int32_t WriteChunk(std::int32_t chunkId, const SessionRecord& record,
                                  std::int32_t room);

  virtual void GetViewRect(ViewRect& /*rect*/) {}
  virtual void SetViewPort(const ViewPort* /*port*/) {}
  virtual void ViewIdle() {}
  virtual std::unique_ptr<CCustomView> MakeCustomView() { return nullptr; }

 protected:
  void addControl(std::unique_ptr<CPluginControl> control) {
    controls.push_back(std::move(control));
  }
  void setMasterBypass(std::int32_t index) { masterBypass = index; }

 private:
  const HostRoutines& host;
  std::vector<std::unique_ptr<CPluginControl>> controls;
  std::int32_t masterBypass = 0;
};

class CDSPProcess : public CProcess {
 public:
  using CProcess::CProcess;
};

/// [main] Registers chunk types.
class CEffectProcess : public CDSPProcess {
 public:
  using CDSPProcess::CDSPProcess;

  /// Not 0 for an error.
  virtual std::int32_t EffectInit();

  struct ChunkType {
    std::int32_t id;
    std::string name;
    std::int32_t size;
  };
  const std::vector<ChunkType>& getChunkTypes() const { return chunkTypes; }

 protected:
  void addChunkType(std::int32_t id, std::string name, std::int32_t size) {
    chunkTypes.push_back({id, std::move(name), size});
  }

 private:
  std::vector<ChunkType> chunkTypes;
};

/// Renders on the host's own buffers.
class CEffectProcessRTAS : public virtual CEffectProcess {
 public:
  explicit CEffectProcessRTAS(const HostRoutines& hostRoutines) : CEffectProcess(hostRoutines) {}
  /// [audio] Arrays of channels of 32-bit floats, one block.
  virtual void RenderAudio(float** inputs, float** outputs, std::int32_t sampleCount)
      ZUM_REALTIME = 0;
};

/// Owns its MIDI nodes.
class CEffectProcessMIDI : public virtual CEffectProcess {
 public:
  explicit CEffectProcessMIDI(const HostRoutines& hostRoutines) : CEffectProcess(hostRoutines) {}
  const std::vector<std::unique_ptr<CEffectMIDIDirectDeliveryNode>>& getNodes() const {
    return nodes;
  }
  /// [host]
  void deliverMidi(std::int32_t timestampFlag, const ShortMessage& message) const {
    for (const auto& node : nodes) node->deliver(timestampFlag, message);
  }

 protected:
  std::string getMidiNodeName() const;
  /// It lives as long as the process.
  CEffectMIDIDirectDeliveryNode* addNode(std::unique_ptr<CEffectMIDIDirectDeliveryNode> node) {
    nodes.push_back(std::move(node));
    return nodes.back().get();
  }

 private:
  std::vector<std::unique_ptr<CEffectMIDIDirectDeliveryNode>> nodes;
};

}  // namespace zum
