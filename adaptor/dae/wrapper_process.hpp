// The effect as a process of the second host. To that host it is an effect process like any other;
// to the effect inside it is the host.
#pragma once

#include <atomic>
#include <memory>

#include "adaptor/dae/event_buffers.hpp"
#include "adaptor/dae/hostlib/effect_process.hpp"
#include "core/uni_client.hpp"
#include "platform/child_window.hpp"

namespace zum {

class KvRTASWrapperProcess final : public CEffectProcessMIDI, public CEffectProcessRTAS {
 public:
  /// Index of the bypass; the effect's parameters follow it.
  static constexpr std::int32_t kBypassControl = 1;
  static constexpr std::int32_t kFirstParameter = 2;

  /// [main] `rate` is the group's, in Hz. The routines outlive the process.
  KvRTASWrapperProcess(const HostRoutines& hostRoutines, float rate, bool stereo);
  ~KvRTASWrapperProcess() override;

  // [main]
  std::int32_t EffectInit() override;
  void SetControl(std::int32_t index, std::int32_t value) override;
  std::int32_t GetControl(std::int32_t index) const override;
  std::int32_t ReportChunkSize(std::int32_t id, std::int32_t& size) override;
  std::int32_t ReadChunk(std::int32_t id, SessionRecord& record, std::int32_t room) override;
  std::int32_t WriteChunk(std::int32_t id, const SessionRecord& record, std::int32_t room) override;
  void GetViewRect(ViewRect& rect) override;
  void SetViewPort(const ViewPort* port) override;
  void ViewIdle() override;
  std::unique_ptr<CCustomView> MakeCustomView() override;
  /// Draws a part of the editor again; null for all of it.
  void drawEditor(const ViewRect* part);

  /// [audio] On the host's own buffers, in blocks of any size, without delay. In the mono type both
  /// of the effect's channels lie on the first one.
  void RenderAudio(float** inputs, float** outputs, std::int32_t sampleCount) ZUM_REALTIME override;

  KvUniClient* getEffect() const { return effect.get(); }
  EventBuffers& getEvents() { return events; }

  /// [any] The callback that the effect is given.
  static std::intptr_t audioMaster(AEffect* record, std::int32_t opcode, std::int32_t index,
                                   std::intptr_t value, void* ptr, float opt);

 private:
  static void midiIn(std::int32_t timestampFlag, const ShortMessage& message, void* process);

  std::intptr_t answer(std::int32_t opcode, std::int32_t index, void* ptr, float opt);
  VstTimeInfo* fillTime();
  std::intptr_t call(std::int32_t opcode, std::intptr_t value = 0, void* ptr = nullptr,
                     float opt = 0.0F);
  AEffEditor* getEditor() const { return effect != nullptr ? effect->getEditor() : nullptr; }

  std::unique_ptr<KvUniClient> effect;
  AEffect* aeffect = nullptr;
  bool isStereo;
  float sampleRate;  // Hz
  VstTimeInfo timeInfo{};
  std::unique_ptr<TransportAccess> transport;
  CEffectMIDIDirectDeliveryNode* midiInNode = nullptr;  // owned by the base class
  EventBuffers events;
  std::atomic<bool> bypassed{false};
  std::int32_t chunkId;
  std::unique_ptr<ChildWindow> editorWindow;
};

}  // namespace zum
