// Parameters: what they are, and their values and texts. Ids are the tags.

#include <algorithm>
#include <cmath>
#include <cstring>
#include <optional>
#include <string>

#include "adaptor/clap/plugin.hpp"
#include "core/host_text.hpp"
#include "core/parameter_text.hpp"
#include "core/tags.hpp"

namespace zum::clap {
namespace {

/// Null for an id that no host was told.
const ParameterRow* rowOf(clap_id id) {
  const int tag = id <= clap_id{kLastTag} ? static_cast<int>(id) : -1;
  return facePosition(tag) >= 0 ? findRow(tag) : nullptr;
}

clap_param_info_flags flagsOf(const ParameterRow& row) {
  clap_param_info_flags flags = CLAP_PARAM_IS_AUTOMATABLE;
  if (isStepped(row)) flags |= CLAP_PARAM_IS_STEPPED;
  if (row.tag == tag::bypass) return flags | CLAP_PARAM_IS_BYPASS;
  if (isStepped(row)) flags |= CLAP_PARAM_IS_ENUM;
  return flags;
}

std::uint32_t countParams(const clap_plugin_t* /*plugin*/) { return kFaceParameters; }

bool getInfo(const clap_plugin_t* /*plugin*/, std::uint32_t index, clap_param_info_t* info) {
  if (index >= kFaceParameters || info == nullptr) return false;
  const ParameterRow& row = *findRow(faceTags()[index]);
  *info = {};
  info->id = static_cast<clap_id>(row.tag);
  info->flags = flagsOf(row);
  copyText(info->name, row.title.data(), sizeof info->name);
  copyText(info->module, row.path, sizeof info->module);
  info->max_value = static_cast<double>(plainEnd(row));
  info->default_value = static_cast<double>(plainOfRaw(row, row.home));
  return true;
}

bool getValue(const clap_plugin_t* plugin, clap_id id, double* value) {
  const ParameterRow* const row = rowOf(id);
  if (row == nullptr || value == nullptr) return false;
  return ask(plugin, false, [&](Face& face) {
    *value = static_cast<double>(face.side().plainValue(row->tag));
    return true;
  });
}

bool valueToText(const clap_plugin_t* plugin, clap_id id, double value, char* text,
                 std::uint32_t room) {
  const ParameterRow* const row = rowOf(id);
  if (row == nullptr || text == nullptr || room == 0 || std::isnan(value)) return false;
  return ask(plugin, false, [&](Face&) {
    const double plain = std::clamp(value, 0.0, static_cast<double>(plainEnd(*row)));
    std::string shown = parameterText(*row, rawOfPlain(*row, static_cast<float>(plain)));
    while (shown.size() >= room) {  // whole letters alone
      while ((shown.back() & 0xC0) == 0x80) shown.pop_back();
      shown.pop_back();
    }
    copyText(text, shown.c_str(), room);
    return true;
  });
}

bool textToValue(const clap_plugin_t* plugin, clap_id id, const char* text, double* value) {
  const ParameterRow* const row = rowOf(id);
  if (row == nullptr || text == nullptr || value == nullptr) return false;
  return ask(plugin, false, [&](Face&) {
    const std::optional<float> raw = parameterValue(*row, text);
    if (raw) *value = static_cast<double>(plainOfRaw(*row, *raw));
    return raw.has_value();
  });
}

void flushParams(const clap_plugin_t* plugin, const clap_input_events_t* in,
                 const clap_output_events_t* out) {
  tell(plugin, [&](Face& face) { face.flush(in, out); });
}

}  // namespace

const clap_plugin_params_t kParams{countParams, getInfo,     getValue,
                                   valueToText, textToValue, flushParams};

}  // namespace zum::clap
