// The routines of the library for the host, over the one group of the file.
#include <exception>
#include <utility>

#include "adaptor/dae/hostlib/effect_group.hpp"

namespace zum {

/// A process as the host holds it.
struct ProcessHandle {
  std::unique_ptr<CEffectProcess> process;
  CEffectProcessRTAS* renderer;
  CEffectProcessMIDI* midi;
  std::unique_ptr<CCustomView> view;
};

namespace {

std::unique_ptr<CEffectGroup> group;

/// No exception crosses the border: one that comes is an error.
template <class Answer, class Work>
Answer guarded(Answer otherwise, const Work& work) {
  try {
    return work();
  } catch (const std::exception&) {
    return otherwise;
  }
}

template <class Work>
void guarded(const Work& work) {
  guarded(0, [&] {
    work();
    return 0;
  });
}

void setSampleRate(float rate) {
  if (group != nullptr) group->setSampleRate(rate);
}

void describeGroup(GroupDescription* description) {
  *description = group != nullptr ? group->describe() : GroupDescription{"", 0, "", 0, 0, 0};
}

std::int32_t describeType(std::int32_t index, TypeDescription* description) {
  const CEffectTypeRTAS* const type = group != nullptr ? group->getType(index) : nullptr;
  if (type == nullptr) return kUnknownType;
  *description = type->describe();
  return kNoError;
}

ProcessHandle* createProcess(std::int32_t index, const HostRoutines* host) {
  const CEffectTypeRTAS* const type = group != nullptr ? group->getType(index) : nullptr;
  if (type == nullptr || host == nullptr) return nullptr;
  return guarded(static_cast<ProcessHandle*>(nullptr), [&]() -> ProcessHandle* {
    auto handle = std::make_unique<ProcessHandle>();
    handle->process = type->make(*host);
    handle->renderer = dynamic_cast<CEffectProcessRTAS*>(handle->process.get());
    handle->midi = dynamic_cast<CEffectProcessMIDI*>(handle->process.get());
    if (handle->renderer == nullptr || handle->midi == nullptr) return nullptr;
    if (handle->process->EffectInit() != kNoError) return nullptr;
    return handle.release();
  });
}

void destroyProcess(ProcessHandle* handle) {
  guarded([handle] { delete handle; });
}

std::int32_t controlCount(ProcessHandle* handle) {
  return static_cast<std::int32_t>(handle->process->getControls().size());
}

std::int32_t controlSteps(ProcessHandle* handle, std::int32_t index) {
  const CPluginControl* const control = handle->process->getControl(index);
  return control != nullptr ? control->getSteps() : 0;
}

void controlName(ProcessHandle* handle, std::int32_t index, char* text, std::int32_t room) {
  copyToRoom({}, text, room);
  if (const auto* const control = handle->process->getControl(index)) control->getName(text, room);
}

void valueToText(ProcessHandle* handle, std::int32_t index, std::int32_t value, char* text,
                 std::int32_t room) {
  copyToRoom({}, text, room);
  if (const auto* const control = handle->process->getControl(index)) {
    control->valueToText(value, text, room);
  }
}

std::int32_t textToValue(ProcessHandle* handle, std::int32_t index, const char* text) {
  const CPluginControl* const control = handle->process->getControl(index);
  return control != nullptr ? control->textToValue(text) : 0;
}

std::int32_t masterBypass(ProcessHandle* handle) { return handle->process->getMasterBypass(); }

std::int32_t getControl(ProcessHandle* handle, std::int32_t index) {
  return handle->process->GetControl(index);
}

void setControl(ProcessHandle* handle, std::int32_t index, std::int32_t value) {
  guarded([&] { handle->process->SetControl(index, value); });
}

std::int32_t describeChunkType(ProcessHandle* handle, std::int32_t index,
                               ChunkDescription* description) {
  const auto& types = handle->process->getChunkTypes();
  if (index < 0 || index >= static_cast<std::int32_t>(types.size())) return kUnknownChunk;
  const auto& type = types[static_cast<std::size_t>(index)];
  *description = {type.id, type.name.c_str(), type.size};
  return kNoError;
}

std::int32_t reportChunkSize(ProcessHandle* handle, std::int32_t id, std::int32_t* size) {
  return guarded(kBadChunk, [&] { return handle->process->ReportChunkSize(id, *size); });
}

std::int32_t readChunk(ProcessHandle* handle, std::int32_t id, SessionRecord* record,
                       std::int32_t room) {
  return guarded(kBadChunk, [&] { return handle->process->ReadChunk(id, *record, room); });
}

std::int32_t writeChunk(ProcessHandle* handle, std::int32_t id, const SessionRecord* record,
                        std::int32_t room) {
  return guarded(kBadChunk, [&] { return handle->process->WriteChunk(id, *record, room); });
}

void viewRect(ProcessHandle* handle, ViewRect* rect) {
  guarded([&] { handle->process->GetViewRect(*rect); });
}

void setViewPort(ProcessHandle* handle, const ViewPort* port) {
  guarded([&] {
    if (handle->view == nullptr) handle->view = handle->process->MakeCustomView();
    handle->process->SetViewPort(port);
    if (port != nullptr && handle->view != nullptr) handle->view->drawContents(nullptr);
  });
}

void viewIdle(ProcessHandle* handle) {
  guarded([&] { handle->process->ViewIdle(); });
}

const char* midiNodeName(ProcessHandle* handle) {
  const auto& nodes = handle->midi->getNodes();
  return nodes.empty() ? "" : nodes.front()->getName().c_str();
}

void deliverMidi(ProcessHandle* handle, std::int32_t timestampFlag, const unsigned char* message) {
  handle->midi->deliverMidi(timestampFlag, {message[0], message[1], message[2]});
}

void render(ProcessHandle* handle, float** inputs, float** outputs, std::int32_t samples) {
  handle->renderer->RenderAudio(inputs, outputs, samples);
}

}  // namespace

CEffectGroup* processGroup() { return group.get(); }
void setProcessGroup(std::unique_ptr<CEffectGroup> fresh) { group = std::move(fresh); }

const PlugInRoutines& routineTable() {
  static constexpr PlugInRoutines kTable = {
      kInterfaceVersion, setSampleRate, describeGroup, describeType, createProcess,
      destroyProcess,    controlCount,  controlSteps,  controlName,  valueToText,
      textToValue,       masterBypass,  getControl,    setControl,   describeChunkType,
      reportChunkSize,   readChunk,     writeChunk,    viewRect,     setViewPort,
      viewIdle,          midiNodeName,  deliverMidi,   render};
  return kTable;
}

}  // namespace zum
