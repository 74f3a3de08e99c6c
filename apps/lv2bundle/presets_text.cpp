// manifest.ttl and presets.ttl: what the bundle holds, and its factory presets.
#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>
#include <set>
#include <span>
#include <stdexcept>

#include "adaptor/lv2/ports.hpp"
#include "apps/lv2bundle/descriptions.hpp"
#include "apps/lv2bundle/turtle.hpp"
#include "core/parameter_text.hpp"
#include "preset_text/preset_document.hpp"

namespace zum {
namespace {

constexpr const char* kManifest = R"(
<urn:zelvane:zum>
	a lv2:Plugin ;
	lv2:binary <ZUM.so> ;
	rdfs:seeAlso <zum.ttl> .

<urn:zelvane:zum#ui>
	a ui:X11UI ;
	lv2:binary <ZUM.so> ;
	rdfs:seeAlso <zum.ttl> .
)";

std::string bankUri(const std::string& bank) { return turtle::uri("urn:zelvane:zum:bank:", bank); }

std::string bytesOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string presetText(const BundlePreset& preset) {
  const lv2::PortValues values = portValues(preset.file);
  const std::string bytes = bytesOf(preset.file);
  std::string made = '\n' + preset.uri() + "\n\ta pset:Preset ;\n\tlv2:appliesTo " +
                     turtle::uri(lv2::kPluginUri) + " ;\n\trdfs:label " +
                     turtle::text(preset.name) + " ;\n\tpset:bank " + bankUri(preset.bank) +
                     " ;\n\tstate:state [\n\t\t" + turtle::uri(lv2::kStateUri) + ' ' +
                     turtle::base64(std::as_bytes(std::span(bytes))) + "\n\t]";
  for (std::size_t i = 0; i < values.size(); ++i) {
    made += " ;\n\tlv2:port [ lv2:symbol " + turtle::text(lv2::kControlSymbols[i].symbol) +
            " ; pset:value " + turtle::number(values[i]) + " ]";
  }
  return made + " .\n";
}

}  // namespace

lv2::PortValues portValues(const std::filesystem::path& file) {
  const std::string bytes = bytesOf(file);
  KvChunk chunk;
  chunk.borrow(bytes.data(), static_cast<std::uint32_t>(bytes.size() / 4));
  PresetDocument document;
  if (const PresetFault fault = readPresetDocument(chunk, document)) {
    throw std::runtime_error(file.string() + ": " + describe(fault));
  }
  lv2::PortValues values{};
  std::ranges::transform(faceTags(), values.begin(), [&](std::int16_t tag) {
    const ParameterRow& row = *findRow(tag);
    const auto raw = document.values[static_cast<std::size_t>(rowOfTag(tag))];
    return lv2::portOfPlain(tag, plainOfRaw(row, raw.value_or(row.initial)));
  });
  return values;
}

std::string BundlePreset::uri() const {
  return turtle::uri("urn:zelvane:zum:preset:", bank + ':' + name);
}

std::string manifestText(const std::vector<BundlePreset>& presets) {
  std::string made = std::string(turtle::kPrefixes) + kManifest;
  std::set<std::string> uris;
  for (const BundlePreset& preset : presets) {
    if (!uris.insert(preset.uri()).second) {
      throw std::runtime_error(preset.uri() + " stands for two presets");
    }
    made += '\n' + preset.uri() + "\n\ta pset:Preset ;\n\tlv2:appliesTo " +
            turtle::uri(lv2::kPluginUri) + " ;\n\trdfs:seeAlso <presets.ttl> .\n";
  }
  return made;
}

std::string presetsText(const std::vector<BundlePreset>& presets) {
  std::string made(turtle::kPrefixes);
  std::set<std::string> banks;
  for (const BundlePreset& preset : presets) banks.insert(preset.bank);
  for (const std::string& bank : banks) {
    made += '\n' + bankUri(bank) + "\n\ta pset:Bank ;\n\trdfs:label " + turtle::text(bank) + " .\n";
  }
  for (const BundlePreset& preset : presets) made += presetText(preset);
  return made;
}

}  // namespace zum
