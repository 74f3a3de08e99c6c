// The base classes of an effect: the published record, the virtual operations behind it and the
// dispatcher that maps opcodes to them. Every way to the host tolerates a host without a callback.
#pragma once

#include "core/aeffect.hpp"
#include "engine/realtime.hpp"
#include "engine/shared_value.hpp"

namespace zum {

/// The editor as the effect knows it.
class AEffEditor {
 public:
  AEffEditor() = default;
  AEffEditor(const AEffEditor&) = delete;
  AEffEditor& operator=(const AEffEditor&) = delete;
  virtual ~AEffEditor() = default;

  virtual bool getRect(ERect** rect) = 0;
  virtual bool open(void* parent) = 0;
  virtual void close() = 0;
  virtual bool isOpen() = 0;
  virtual void idle() = 0;
  /// A part of the window, which was lost, is shown again.
  virtual void draw(ERect* /*rect*/) {}
  virtual bool onKeyDown(VstKeyCode& key) = 0;
  virtual bool onKeyUp(VstKeyCode& key) = 0;
};

/// Parameters, programs, chunks and audio.
class AudioEffect {
 public:
  AudioEffect(audioMasterCallback audioMaster, std::int32_t programs, std::int32_t parameters);
  AudioEffect(const AudioEffect&) = delete;
  AudioEffect& operator=(const AudioEffect&) = delete;
  virtual ~AudioEffect();

  /// Every opcode a host can send; what nothing overrides answers 0.
  virtual std::intptr_t dispatcher(std::int32_t opcode, std::int32_t index, std::intptr_t value,
                                   void* ptr, float opt);

  virtual void open() {}
  virtual void close() {}
  virtual void suspend() {}
  virtual void resume() {}
  virtual void setSampleRate(float rate) { storeShared(sampleRate, rate); }  // Hz
  virtual void setBlockSize(std::int32_t frames) { blockSize = frames; }
  virtual void processReplacing(float** inputs, float** outputs, std::int32_t frames) ZUM_REALTIME;
  virtual void processDoubleReplacing(double** inputs, double** outputs, std::int32_t frames)
      ZUM_REALTIME;

  virtual void setParameter(std::int32_t index, float value) ZUM_REALTIME;  // [any]
  virtual float getParameter(std::int32_t index) ZUM_REALTIME;              // [any]
  /// setParameter, then tells the host.
  virtual void setParameterAutomated(std::int32_t index, float value);

  virtual std::int32_t getProgram() { return loadShared(curProgram); }
  virtual void setProgram(std::int32_t program) { storeShared(curProgram, program); }
  virtual void setProgramName(const char* name);
  virtual void getProgramName(char* name);
  virtual void getParameterLabel(std::int32_t index, char* text);
  virtual void getParameterDisplay(std::int32_t index, char* text);
  virtual void getParameterName(std::int32_t index, char* text);
  /// Bytes at `*data`, which stay with the effect; 0 for none.
  virtual std::int32_t getChunk(void** data, bool isPreset);
  virtual std::int32_t setChunk(const void* data, std::int32_t byteSize, bool isPreset);

  AEffect* getAeffect() { return &cEffect; }
  AEffEditor* getEditor() const { return editor; }

 protected:
  /// The editor goes with the effect from now on.
  void setEditor(AEffEditor* newEditor);
  void setUniqueID(std::int32_t id) { cEffect.uniqueID = id; }
  void setNumInputs(std::int32_t n) { cEffect.numInputs = n; }
  void setNumOutputs(std::int32_t n) { cEffect.numOutputs = n; }
  void setNumPrograms(std::int32_t n);
  void canProcessReplacing() { cEffect.flags |= effFlagsCanReplacing; }
  void programsAreChunks() { cEffect.flags |= effFlagsProgramChunks; }
  /// The callback's answer, 0 without a callback.
  std::intptr_t callHost(std::int32_t opcode, std::int32_t index = 0, std::intptr_t value = 0,
                         void* ptr = nullptr, float opt = 0.0F);

  audioMasterCallback audioMaster;
  AEffEditor* editor = nullptr;
  float sampleRate = 44100.0F;  // Hz
  std::int32_t blockSize = 1024;
  std::int32_t numPrograms;
  std::int32_t numParams;
  std::int32_t curProgram = 0;
  AEffect cEffect{};
};

/// Events, names, properties and what the host offers.
class AudioEffectX : public AudioEffect {
 public:
  using AudioEffect::AudioEffect;

  std::intptr_t dispatcher(std::int32_t opcode, std::int32_t index, std::intptr_t value, void* ptr,
                           float opt) override;

  virtual std::int32_t processEvents(VstEvents* events);
  virtual bool canParameterBeAutomated(std::int32_t index);
  virtual bool string2parameter(std::int32_t index, const char* text);
  virtual bool getProgramNameIndexed(std::int32_t category, std::int32_t index, char* text);
  virtual bool getInputProperties(std::int32_t index, VstPinProperties* properties);
  virtual bool getOutputProperties(std::int32_t index, VstPinProperties* properties);
  virtual std::int32_t getPlugCategory() { return kPlugCategUnknown; }
  virtual bool getEffectName(char* name);
  virtual bool getVendorString(char* text);
  virtual bool getProductString(char* text);
  virtual std::int32_t getVendorVersion() { return 0; }
  virtual std::int32_t canDo(const char* text);
  virtual std::int32_t getGetTailSize() { return 0; }
  virtual bool getParameterProperties(std::int32_t index, VstParameterProperties* properties);
  virtual std::int32_t getVstVersion() { return 2400; }
  virtual std::int32_t getNumMidiInputChannels() { return 0; }
  /// Asks the host to show names and values anew.
  void updateDisplay() { callHost(audioMasterUpdateDisplay); }
  /// Asks the host to make room for a window of another size, in pixels. False when it does not.
  bool sizeWindow(std::int32_t width, std::int32_t height) {
    return callHost(audioMasterSizeWindow, width, height) != 0;
  }
  /// False where the host says that it never does.
  bool maySizeWindow() {
    char ability[] = "sizeWindow";
    return callHost(audioMasterCanDo, 0, 0, ability) >= 0;
  }
  virtual bool beginEdit(std::int32_t index);
  virtual bool endEdit(std::int32_t index);

 protected:
  /// Asks the host to send MIDI.
  void wantEvents();
  void noTail(bool state);
  /// The host's texts; false and empty without a callback.
  bool getHostVendorString(char (&text)[256]);
  bool getHostProductString(char (&text)[256]);
  /// [audio] Null without a callback, or when the host has nothing to say.
  VstTimeInfo* getTimeInfo(std::int32_t filter) ZUM_REALTIME;
  /// [audio] 0 without a callback.
  std::int32_t getCurrentProcessLevel() ZUM_REALTIME;
  /// [audio] For hosts of our own.
  void callHostInBlock(std::int32_t opcode, float opt) ZUM_REALTIME;
};

}  // namespace zum
