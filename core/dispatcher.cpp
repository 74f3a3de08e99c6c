// The way of an opcode to its operation, for both base classes. Pointers are checked here, once.

#include "core/audio_effect.hpp"

namespace zum {

std::intptr_t AudioEffect::dispatcher(std::int32_t opcode, std::int32_t index, std::intptr_t value,
                                      void* ptr, float opt) {
  char* const text = static_cast<char*>(ptr);
  const bool hasText = text != nullptr;
  switch (opcode) {
    case effOpen: open(); return 0;
    case effClose: close(); return 0;
    case effSetProgram:
      if (value >= 0 && value < numPrograms) setProgram(static_cast<std::int32_t>(value));
      return 0;
    case effGetProgram: return getProgram();
    case effSetProgramName:
      if (hasText) setProgramName(text);
      return 0;
    case effGetProgramName:
      if (hasText) getProgramName(text);
      return 0;
    case effGetParamLabel:
      if (hasText) getParameterLabel(index, text);
      return 0;
    case effGetParamDisplay:
      if (hasText) getParameterDisplay(index, text);
      return 0;
    case effGetParamName:
      if (hasText) getParameterName(index, text);
      return 0;
    case effSetSampleRate: setSampleRate(opt); return 0;
    case effSetBlockSize: setBlockSize(static_cast<std::int32_t>(value)); return 0;
    case effMainsChanged:
      if (value != 0) {
        resume();
      } else {
        suspend();
      }
      return 0;
    case effEditGetRect:
      return editor != nullptr && ptr != nullptr && editor->getRect(static_cast<ERect**>(ptr));
    case effEditOpen: return editor != nullptr && editor->open(ptr);
    case effEditClose:
      if (editor != nullptr) editor->close();
      return 0;
    // effEditMouse and effEditKey: the window hears of both itself.
    case effEditDraw:
      if (editor != nullptr && ptr != nullptr) editor->draw(static_cast<ERect*>(ptr));
      return 0;
    case effEditIdle:
      if (editor != nullptr) editor->idle();
      return 0;
    case effGetChunk: return ptr != nullptr ? getChunk(static_cast<void**>(ptr), index != 0) : 0;
    case effSetChunk:
      return ptr != nullptr && value >= 0 && value <= INT32_MAX
                 ? setChunk(ptr, static_cast<std::int32_t>(value), index != 0)
                 : 0;
    default: return 0;
  }
}

std::intptr_t AudioEffectX::dispatcher(std::int32_t opcode, std::int32_t index, std::intptr_t value,
                                       void* ptr, float opt) {
  char* const text = static_cast<char*>(ptr);
  const bool hasText = text != nullptr;
  const auto key = [&] {
    const auto bits = static_cast<std::uint32_t>(opt > 0.0F && opt < 256.0F ? opt : 0.0F);
    return VstKeyCode{index, static_cast<unsigned char>(value), static_cast<unsigned char>(bits)};
  };
  switch (opcode) {
    case effProcessEvents: return ptr != nullptr ? processEvents(static_cast<VstEvents*>(ptr)) : 0;
    case effCanBeAutomated: return canParameterBeAutomated(index);
    case effString2Parameter: return string2parameter(index, text);
    case effGetProgramNameIndexed:
      return hasText && getProgramNameIndexed(static_cast<std::int32_t>(value), index, text);
    case effGetInputProperties:
      return ptr != nullptr && getInputProperties(index, static_cast<VstPinProperties*>(ptr));
    case effGetOutputProperties:
      return ptr != nullptr && getOutputProperties(index, static_cast<VstPinProperties*>(ptr));
    case effGetPlugCategory: return getPlugCategory();
    case effGetEffectName: return hasText && getEffectName(text);
    case effGetVendorString: return hasText && getVendorString(text);
    case effGetProductString: return hasText && getProductString(text);
    case effGetVendorVersion: return getVendorVersion();
    case effCanDo: return hasText ? canDo(text) : 0;
    case effGetTailSize: return getGetTailSize();
    case effGetParameterProperties:
      return ptr != nullptr &&
             getParameterProperties(index, static_cast<VstParameterProperties*>(ptr));
    case effGetVstVersion: return getVstVersion();
    case effEditKeyDown:
      if (editor != nullptr) {
        VstKeyCode code = key();
        return editor->onKeyDown(code);
      }
      return 0;
    case effEditKeyUp:
      if (editor != nullptr) {
        VstKeyCode code = key();
        return editor->onKeyUp(code);
      }
      return 0;
    case effGetNumMidiInputChannels: return getNumMidiInputChannels();
    default: return AudioEffect::dispatcher(opcode, index, value, ptr, opt);
  }
}

}  // namespace zum
