#include "adaptor/vst3/units.hpp"

#include <travesty/unit.h>

#include <algorithm>
#include <vector>

#include "adaptor/vst3/effect.hpp"
#include "adaptor/vst3/ids.hpp"
#include "adaptor/vst3/text16.hpp"

namespace zum::vst3 {
namespace {

constexpr std::int32_t kNone = -1;  // no parent, no list

/// In the order of their first parameters, the root ahead of them.
const std::vector<std::string_view>& allUnits() {
  static const std::vector<std::string_view> units = [] {
    std::vector<std::string_view> found = {"ZUM"};
    for (const std::int16_t tag : faceTags()) {
      const std::string_view path = findRow(tag)->path;
      if (std::ranges::find(found, path) == found.end()) found.push_back(path);
    }
    return found;
  }();
  return units;
}

v3_result describeUnit(std::int32_t unit, v3_unit_info* info) {
  if (unit < 0 || unit >= unitCount() || info == nullptr) return V3_INVALID_ARG;
  const bool isRoot = unit == kRootUnit;
  *info = {unit, isRoot ? kNone : kRootUnit, {}, isRoot ? kProgramList : kNone};
  putText(unitName(unit), info->name);
  return V3_OK;
}

v3_result describeList(std::int32_t index, v3_program_list_info* info) {
  if (index != 0 || info == nullptr) return V3_INVALID_ARG;
  *info = {kProgramList, {}, ProgramList::kPlaces};
  putText("Presets", info->name);
  return V3_OK;
}

v3_result nameProgram(const Effect& effect, std::int32_t list, std::int32_t index,
                      std::int16_t* name) {
  const bool isThere = list == kProgramList && index >= 0 && index < ProgramList::kPlaces;
  if (!isThere || name == nullptr) return V3_INVALID_ARG;
  constexpr std::size_t kRoom = sizeof(v3_str_128) / sizeof(std::int16_t);
  putText(effect.programs.nameOf(index), {name, kRoom});
  return V3_OK;
}

}  // namespace

int unitCount() { return static_cast<int>(allUnits().size()); }

std::string_view unitName(int unit) { return allUnits()[static_cast<std::size_t>(unit)]; }

int unitOfPath(std::string_view path) {
  const auto found = std::ranges::find(allUnits(), path);
  return found != allUnits().end() ? static_cast<int>(found - allUnits().begin()) : kRootUnit;
}

constexpr v3_unit_information_cpp kUnitInformation = {
    unknownOf<Effect>(),
    {
        .get_unit_count = [](void*) -> std::int32_t {
          return answered([] { return unitCount(); });
        },
        .get_unit_info = [](void*, std::int32_t index, v3_unit_info* info) -> v3_result {
          return tried([&] { return describeUnit(index, info); });
        },
        .get_program_list_count = [](void*) -> std::int32_t { return 1; },
        .get_program_list_info = [](void*, std::int32_t index, v3_program_list_info* info)
            -> v3_result { return tried([&] { return describeList(index, info); }); },
        .get_program_name = [](void* self, std::int32_t list, std::int32_t index,
                               std::int16_t* name) -> v3_result {
          return tried([&] { return nameProgram(objectOf<Effect>(self), list, index, name); });
        },
        .get_program_info = [](void*, std::int32_t, std::int32_t, const char*,
                               std::int16_t*) -> v3_result { return V3_FALSE; },
        .has_program_pitch_names = [](void*, std::int32_t, std::int32_t) -> v3_result {
          return V3_FALSE;
        },
        .get_program_pitch_name = [](void*, std::int32_t, std::int32_t, std::int16_t,
                                     std::int16_t*) -> v3_result { return V3_FALSE; },
        .get_selected_unit = [](void*) -> std::int32_t { return kRootUnit; },
        .select_unit = [](void*, std::int32_t unit) -> v3_result {
          return resultOf(unit == kRootUnit);
        },
        .get_unit_by_bus = [](void*, std::int32_t, std::int32_t, std::int32_t, std::int32_t,
                              std::int32_t*) -> v3_result { return V3_FALSE; },
        .set_unit_program_data = [](void*, std::int32_t, std::int32_t, v3_bstream**) -> v3_result {
          return V3_NOT_IMPLEMENTED;
        },
    },
};

}  // namespace zum::vst3
