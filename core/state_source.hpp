// [main] The parameters as they stand, for a state that is written: word by word, while others may
// set them.
#pragma once

#include "core/controller_map.hpp"
#include "core/parameter_store.hpp"
#include "core/preset_slot.hpp"
#include "engine/shared_value.hpp"
#include "state/preset_format.hpp"

namespace zum {

class StateSource final : public PresetSource {
 public:
  StateSource(const ParameterStore& store, const ControllerMap& controllers,
              const PresetSlot& names, const ProgramPosition& at)
      : records(store.presetRecords()), map(controllers), slot(names), where(at) {}

  int recordCount() const override { return static_cast<int>(records.size()); }
  std::int32_t recordId(int record) const override { return at(record).id; }
  void writeRecord(int record, KvChunk& chunk) const override {
    const KvParameter& parameter = at(record);
    if (parameter.object != nullptr) {
      parameter.object->writeChunk(&chunk);
    } else {
      chunk.putFloat(loadShared(*parameter.value));
    }
  }
  std::vector<Binding> bindings(int controller) const override {
    return map.controllers[static_cast<std::size_t>(controller)].all();
  }
  std::string name() const override { return slot.name.get(); }
  PresetPosition position() const override {
    return {.program = loadShared(where.program), .folder = loadShared(where.folder)};
  }
  std::vector<Binding> aftertouchBindings() const override { return map.aftertouch.all(); }

 private:
  const KvParameter& at(int record) const { return *records[static_cast<std::size_t>(record)]; }

  const std::vector<const KvParameter*>& records;
  const ControllerMap& map;
  const PresetSlot& slot;
  const ProgramPosition& where;
};

}  // namespace zum
