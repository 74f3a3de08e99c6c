#include "core/preset_intake.hpp"

#include "engine/shared_value.hpp"
#include "state/program_bank.hpp"

namespace zum {

PresetIntake::PresetIntake(const Into& destination, bool restoresAll, MapRule mapRule,
                           MissingFiles* search) ZUM_REALTIME : into(destination),
                                                                restoreAll(restoresAll),
                                                                map(mapRule),
                                                                missing(search) {}

const char* PresetIntake::record(std::int32_t id, std::int32_t size, KvChunk& chunk) ZUM_REALTIME {
  const auto words = static_cast<std::uint32_t>(size);
  const KvParameter* parameter = into.parameters.recordOfId(id);
  if (parameter == nullptr) {
    chunk.skip(words);
    return nullptr;
  }
  const bool keeps = parameter->excluded && !restoreAll;
  if (KvChunkableClass* const object = parameter->object; object != nullptr) {
    const bool taken = object->readChunk(&chunk, keeps) != 0;
    const bool lacksFile = !taken && !keeps && object->getType() == KvChunkableClass::kFile;
    if (lacksFile && missing != nullptr) {
      // there is no search on the audio thread
      trusted([&] { missing->search(static_cast<KvFileObject&>(*object)); });
    }
    return nullptr;
  }
  const float value = chunk.getFloat();
  if (!keeps) into.parameters.setParameter(parameter->tag, value);
  chunk.skip(words - 1);
  return nullptr;
}

void PresetIntake::empty(BindingList& list) ZUM_REALTIME {
  if (map == MapRule::keeps) return;
  if (map != MapRule::takes) return list.clear();
  list.keepIf([](Binding binding) ZUM_REALTIME { return outlastsPresets(binding); });
}

void PresetIntake::add(BindingList& list, Binding binding) ZUM_REALTIME {
  if (map == MapRule::keeps || map == MapRule::empties) return;
  list.tryAdd(binding);
}

void PresetIntake::mapBegins() ZUM_REALTIME {
  for (BindingList& list : into.map.controllers) empty(list);
  into.map.learning.store(true);
}

void PresetIntake::controller(int number, Binding binding) ZUM_REALTIME {
  add(into.map.controllers[static_cast<std::size_t>(number)], binding);
}

void PresetIntake::mapEnds() ZUM_REALTIME { into.map.learning.store(false); }

void PresetIntake::name(std::string_view text) ZUM_REALTIME {
  if (missing == nullptr) return into.slot.name.setInBlock(text);
  into.slot.name.set(text);
}

void PresetIntake::position(std::int32_t trailer, const PresetPosition& at) ZUM_REALTIME {
  if (!restoreAll || trailer < preset::kFirstAppliedTrailer) return;
  if (at.hasProgram && at.program >= 0 && at.program < KvProgramBank::kPresets) {
    storeShared(into.position.program, at.program);
  }
  if (at.hasFolder && at.folder >= 0 && at.folder < KvProgramBank::kFolders) {
    storeShared(into.position.folder, at.folder);
  }
}

void PresetIntake::aftertouchBegins() ZUM_REALTIME {
  empty(into.map.aftertouch);
  into.map.learning.store(true);
}

void PresetIntake::aftertouch(Binding binding) ZUM_REALTIME { add(into.map.aftertouch, binding); }

void PresetIntake::aftertouchEnds() ZUM_REALTIME { into.map.learning.store(false); }

}  // namespace zum
