#include "adaptor/hostlib/routine_table.hpp"

#include <exception>

#include <utility>

#include "engine/shared_value.hpp"

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

// No exception crosses the border.
ProcessHandle* createProcess(std::int32_t index, const HostRoutines* host) {
  const CEffectTypeRTAS* const type = group != nullptr ? group->getType(index) : nullptr;
  if (type == nullptr || host == nullptr) return nullptr;
  try {
    auto handle = std::make_unique<ProcessHandle>();
    handle->process = type->make(*host);
    handle->renderer = dynamic_cast<CEffectProcessRTAS*>(handle->process.get());
    handle->midi = dynamic_cast<CEffectProcessMIDI*>(handle->process.get());
    if (handle->renderer == nullptr || handle->midi == nullptr) return nullptr;
    if (handle->process->EffectInit() != kNoError) return nullptr;
    return handle.release();
  } catch (const std::exception&) {
    return nullptr;
  }
}

void destroyProcess(ProcessHandle* handle) { delete handle; }

std::int32_t controlCount(ProcessHandle* handle) {
  return static_cast<std::int32_t>(handle->process->getControls().size());
}

/// `otherwise` for an index without a control.
template <class Answer, class Ask>
Answer ofControl(ProcessHandle* handle, std::int32_t index, Answer otherwise, const Ask& ask) {
  CPluginControl* const control = handle->process->getControl(index);
  return control != nullptr ? ask(*control) : otherwise;
}

std::int32_t controlSteps(ProcessHandle* handle, std::int32_t index) {
  return ofControl(handle, index, 0, [](const CPluginControl& c) { return c.getSteps(); });
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
  return ofControl(handle, index, 0, [&](const CPluginControl& c) { return c.textToValue(text); });
}

std::int32_t getControl(ProcessHandle* handle, std::int32_t index) {
  return ofControl(handle, index, 0, [](const CPluginControl& c) { return loadShared(c.value); });
}

void setControl(ProcessHandle* handle, std::int32_t index, std::int32_t value) {
  handle->process->SetControl(index, value);
}

std::int32_t reportChunkSize(ProcessHandle* handle, std::int32_t id, std::int32_t* size) {
  return handle->process->ReportChunkSize(id, *size);
}

std::int32_t readChunk(ProcessHandle* handle, std::int32_t id, SessionRecord* record,
                       std::int32_t room) {
  return handle->process->ReadChunk(id, *record, room);
}

std::int32_t writeChunk(ProcessHandle* handle, std::int32_t id, const SessionRecord* record,
                        std::int32_t room) {
  return handle->process->WriteChunk(id, *record, room);
}

void viewRect(ProcessHandle* handle, ViewRect* rect) { handle->process->GetViewRect(*rect); }

void setViewPort(ProcessHandle* handle, const ViewPort* port) {
  if (handle->view == nullptr) handle->view = handle->process->MakeCustomView();
  handle->process->SetViewPort(port);
  if (port != nullptr && handle->view != nullptr) handle->view->drawContents(nullptr);
}

void viewIdle(ProcessHandle* handle) { handle->process->ViewIdle(); }

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
  static constexpr PlugInRoutines kTable = {kInterfaceVersion, setSampleRate,   describeGroup,
                                            describeType,      createProcess,   destroyProcess,
                                            controlCount,      controlSteps,    controlName,
                                            valueToText,       textToValue,     getControl,
                                            setControl,        reportChunkSize, readChunk,
                                            writeChunk,        viewRect,        setViewPort,
                                            viewIdle,          deliverMidi,     render};
  return kTable;
}

}  // namespace zum
