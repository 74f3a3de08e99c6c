// [any] Takes over a preset that was checked, part by part in its own order. Parameters that it
// does not hold keep their values.
#pragma once

#include "core/controller_map.hpp"
#include "core/parameter_store.hpp"
#include "core/preset_slot.hpp"
#include "state/missing_files.hpp"
#include "state/preset_format.hpp"

namespace zum {

class PresetIntake final : public PresetVisitor {
 public:
  /// What becomes of the controller map. Where it is taken over, bindings that outlast presets
  /// stay; where it is replaced, none does.
  enum class MapRule : std::uint8_t { takes, replaces, keeps, empties };

  struct Into {
    ParameterStore& parameters;
    ControllerMap& map;
    PresetSlot& slot;
    ProgramPosition& position;
  };
  /// `restoresAll` as a host's session, parameters that presets leave alone and the program
  /// position too. `search` is null on the audio thread, where nobody can look for files.
  PresetIntake(const Into& destination, bool restoresAll, MapRule mapRule, MissingFiles* search)
      ZUM_REALTIME;

  const char* record(std::int32_t id, std::int32_t size, KvChunk& chunk) ZUM_REALTIME override;
  void mapBegins() ZUM_REALTIME override;
  void controller(int number, Binding binding) ZUM_REALTIME override;
  void mapEnds() ZUM_REALTIME override;
  void name(std::string_view text) ZUM_REALTIME override;
  void position(std::int32_t trailer, const PresetPosition& at) ZUM_REALTIME override;
  void aftertouchBegins() ZUM_REALTIME override;
  void aftertouch(Binding binding) ZUM_REALTIME override;
  void aftertouchEnds() ZUM_REALTIME override;

 private:
  void empty(BindingList& list) ZUM_REALTIME;
  void add(BindingList& list, Binding binding) ZUM_REALTIME;

  const Into into;
  const bool restoreAll;
  const MapRule map;
  MissingFiles* const missing;
};

}  // namespace zum
