// The controller: parameters, their texts and values, MIDI, the window. Hosts call what is about
// values from several threads.
#include <travesty/edit_controller.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#include "adaptor/vst3/effect.hpp"
#include "adaptor/vst3/parameters.hpp"
#include "adaptor/vst3/text16.hpp"
#include "adaptor/vst3/view.hpp"

namespace zum::vst3 {
namespace {

constexpr std::int16_t kMidiChannels = 16;

double unitOf(double value) { return std::isnan(value) ? 0.0 : std::clamp(value, 0.0, 1.0); }

v3_result showValue(Effect& effect, v3_param_id id, double value, std::int16_t* output) {
  const int position = positionOfId(id);
  if (position < 0 || output == nullptr || std::isnan(value)) return V3_INVALID_ARG;
  constexpr std::size_t kRoom = sizeof(v3_str_128) / sizeof(std::int16_t);
  putText(textOfValue(position, effect.programs, unitOf(value)), {output, kRoom});
  return V3_OK;
}

v3_result readValue(Effect& effect, v3_param_id id, const std::int16_t* input, double* output) {
  const int position = positionOfId(id);
  if (position < 0 || input == nullptr || output == nullptr) return V3_INVALID_ARG;
  const auto value = valueOfText(position, effect.programs, readText(input));
  if (value) *output = *value;
  return resultOf(value.has_value());
}

v3_result setValue(Effect& effect, v3_param_id id, double value) {
  const int position = positionOfId(id);
  if (position < 0 || std::isnan(value)) return V3_INVALID_ARG;
  effect.values.set(position, unitOf(value));
  if (effect.isOnMain()) effect.values.playWanted();
  return V3_OK;
}

}  // namespace

constexpr v3_edit_controller_cpp kController = {
    unknownOf<Effect>(),
    {
        .initialize = [](void* self, v3_funknown**) { return objectOf<Effect>(self).initialize(); },
        .terminate = [](void* self) -> v3_result {
          return tried([&] { return objectOf<Effect>(self).terminate(), V3_OK; });
        },
    },
    {
        // the component has taken it already
        .set_component_state = [](void*, v3_bstream**) -> v3_result { return V3_OK; },
        .set_state = [](void*, v3_bstream**) -> v3_result { return V3_OK; },
        .get_state = [](void*, v3_bstream**) -> v3_result { return V3_OK; },
        .get_parameter_count = [](void*) -> std::int32_t { return kParameters; },
        .get_parameter_info = [](void*, std::int32_t position, v3_param_info* info) -> v3_result {
          if (info == nullptr) return V3_INVALID_ARG;
          return tried([&] { return describeParameter(position, *info) ? V3_OK : V3_INVALID_ARG; });
        },
        .get_parameter_string_for_value = [](void* self, v3_param_id id, double value,
                                             std::int16_t* output) -> v3_result {
          return tried([&] { return showValue(objectOf<Effect>(self), id, value, output); });
        },
        .get_parameter_value_for_string = [](void* self, v3_param_id id, std::int16_t* input,
                                             double* output) -> v3_result {
          return tried([&] { return readValue(objectOf<Effect>(self), id, input, output); });
        },
        .normalised_parameter_to_plain = [](void*, v3_param_id id, double value) -> double {
          return unitOf(value) * plainEndOf(positionOfId(id));
        },
        .plain_parameter_to_normalised = [](void*, v3_param_id id, double plain) -> double {
          const double end = plainEndOf(positionOfId(id));
          return end > 0.0 ? unitOf(plain / end) : 0.0;
        },
        .get_parameter_normalised = [](void* self, v3_param_id id) -> double {
          return answered([&] { return objectOf<Effect>(self).values.read(positionOfId(id)); });
        },
        .set_parameter_normalised = [](void* self, v3_param_id id, double value) -> v3_result {
          return tried([&] { return setValue(objectOf<Effect>(self), id, value); });
        },
        .set_component_handler = [](void* self, v3_component_handler** handler) -> v3_result {
          return tried([&] { return objectOf<Effect>(self).handler.set(handler), V3_OK; });
        },
        .create_view = [](void* self, const char* name) -> v3_plugin_view** {
          if (name == nullptr || std::strcmp(name, "editor") != 0) return nullptr;
          return answered([&] {
            objectOf<Effect>(self).attend();
            return View::create(objectOf<Effect>(self));
          });
        },
    },
};

constexpr v3_midi_mapping_cpp kMidiMapping = {
    unknownOf<Effect>(),
    {.get_midi_controller_assignment = [](void*, std::int32_t bus, std::int16_t channel,
                                          std::int16_t number, v3_param_id* id) -> v3_result {
      const bool isThere = bus == 0 && channel >= 0 && channel < kMidiChannels && number >= 0 &&
                           number < kMidiParameters && id != nullptr;
      if (isThere) *id = kMidiId + static_cast<v3_param_id>(number);
      return resultOf(isThere);
    }},
};

}  // namespace zum::vst3
