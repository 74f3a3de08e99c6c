// zum.ttl: the plug-in, its ports and its window.
#include <array>
#include <charconv>
#include <cstdint>
#include <span>
#include <vector>

#include "adaptor/lv2/ports.hpp"
#include "apps/lv2bundle/descriptions.hpp"
#include "apps/lv2bundle/turtle.hpp"
#include "core/parameter_text.hpp"
#include "core/value_names.hpp"
#include "platform/ascii_case.hpp"

namespace zum {
namespace {

constexpr const char* kHead = R"(
<urn:zelvane:zum>
	a lv2:Plugin , lv2:FilterPlugin , doap:Project ;
	doap:name "ZUM" ;
	doap:shortdesc "Stereo filter with follower, LFO, step sequencer and vowels" ;
	doap:license <http://opensource.org/licenses/MIT> ;
	doap:maintainer [ a foaf:Organization ; foaf:name "Zelvane" ] ;
	lv2:project <urn:zelvane:zum> ;
	lv2:requiredFeature urid:map ;
	lv2:optionalFeature lv2:hardRTCapable ;
	lv2:extensionData state:interface ;
	ui:ui <urn:zelvane:zum#ui> ;
	pg:mainInput <urn:zelvane:zum#in> ;
	pg:mainOutput <urn:zelvane:zum#out> ;
)";

constexpr const char* kTail = R"(
<urn:zelvane:zum#state>
	a rdf:Property , owl:DatatypeProperty ;
	rdfs:label "preset file" ;
	rdfs:comment "The bytes of a preset file." ;
	rdfs:range xsd:base64Binary .

<urn:zelvane:zum#ui>
	a ui:X11UI ;
	lv2:requiredFeature <http://lv2plug.in/ns/ext/instance-access> , ui:parent ;
	lv2:optionalFeature ui:idleInterface , ui:resize , ui:touch ,
		<http://lv2plug.in/ns/ext/options#options> ;
	<http://lv2plug.in/ns/ext/options#supportedOption> ui:scaleFactor ;
	lv2:extensionData ui:idleInterface , ui:resize .

<urn:zelvane:zum#in>
	a pg:StereoGroup , pg:InputGroup ;
	lv2:symbol "in" ;
	lv2:name "Input" .

<urn:zelvane:zum#out>
	a pg:StereoGroup , pg:OutputGroup ;
	pg:source <urn:zelvane:zum#in> ;
	lv2:symbol "out" ;
	lv2:name "Output" .

<urn:zelvane:zum#sidechain>
	a pg:StereoGroup , pg:InputGroup ;
	pg:sideChainOf <urn:zelvane:zum#in> ;
	lv2:symbol "sidechain" ;
	lv2:name "Side-chain" .
)";

constexpr const char* kEventPort = R"( ;
	lv2:port [
		a atom:AtomPort , lv2:InputPort ;
		lv2:index 6 ;
		lv2:symbol "events" ;
		lv2:name "Events" ;
		atom:bufferType atom:Sequence ;
		atom:supports midi:MidiEvent , time:Position ;
		lv2:designation lv2:control ;
		lv2:portProperty lv2:connectionOptional
	])";

struct AudioPort {
  const char* direction;
  const char* symbol;
  const char* name;
  const char* side;
  const char* group;
  bool isSideChain = false;
};

constexpr AudioPort kAudioPorts[] = {
    {"Input", "in_left", "In Left", "left", "in"},
    {"Input", "in_right", "In Right", "right", "in"},
    {"Output", "out_left", "Out Left", "left", "out"},
    {"Output", "out_right", "Out Right", "right", "out"},
    {"Input", "sidechain_left", "Side-chain Left", "left", "sidechain", true},
    {"Input", "sidechain_right", "Side-chain Right", "right", "sidechain", true},
};

std::string groupUri(const ParameterRow& row) {
  return turtle::uri(std::string(lv2::kPluginUri) + '#', lowerCase(row.path));
}

std::string line(const std::string& predicate, const std::string& object) {
  return " ;\n\t\t" + predicate + ' ' + object;
}

std::string audioPort(std::uint32_t index, const AudioPort& port) {
  std::string made = std::string(" ;\n\tlv2:port [\n\t\ta lv2:AudioPort , lv2:") + port.direction +
                     "Port" + line("lv2:index", std::to_string(index)) +
                     line("lv2:symbol", turtle::text(port.symbol)) +
                     line("lv2:name", turtle::text(port.name)) +
                     line("lv2:designation", std::string("pg:") + port.side) +
                     line("pg:group", turtle::uri("urn:zelvane:zum#", port.group));
  if (port.isSideChain)
    made += line("lv2:portProperty", "lv2:connectionOptional , lv2:isSideChain");
  return made + "\n\t]";
}

/// Values that a host can show as marks. Of what has no names: ends, middle and quarters.
std::vector<float> markedValues(const ParameterRow& row) {
  std::vector<float> values;
  const auto spread = [&](std::size_t count, float end) {
    for (std::size_t i = 0; i < count; ++i) {
      values.push_back(end * static_cast<float>(i) / static_cast<float>(count - 1));
    }
  };
  switch (row.unit) {
    case Unit::steps: spread(row.positions, plainEnd(row)); break;
    case Unit::names: spread(row.names.size(), 1.0F); break;
    case Unit::note:
    case Unit::release: spread(names::kNotes.size(), 1.0F); break;
    default: spread(5, 1.0F);
  }
  return values;
}

std::string marks(const ParameterRow& row) {
  std::string made;
  for (const float plain : markedValues(row)) {
    made += made.empty() ? "" : " , ";
    made += "[ rdfs:label " + turtle::text(parameterText(row, rawOfPlain(row, plain))) +
            " ; rdf:value " + turtle::number(plain) + " ]";
  }
  return made;
}

std::string properties(const ParameterRow& row) {
  if (!isStepped(row)) return row.unit == Unit::percent ? line("units:unit", "units:coef") : "";
  const bool isSwitch = row.names.data() == names::kSwitch.data();
  return line("lv2:portProperty",
              isSwitch ? "lv2:toggled , lv2:integer" : "lv2:enumeration , lv2:integer");
}

std::string controlPort(std::uint32_t position, float initial) {
  const lv2::ControlSymbol& port = lv2::kControlSymbols[position];
  const ParameterRow& row = *findRow(port.tag);
  const bool isOn = row.tag == tag::bypass;
  const std::string title = isOn ? "Enabled" : row.title.data();
  constexpr std::size_t kShortest = 16;  // letters that a short name may have
  std::string made = " ;\n\tlv2:port [\n\t\ta lv2:ControlPort , lv2:InputPort" +
                     line("lv2:index", std::to_string(lv2::Port::firstControl + position)) +
                     line("lv2:symbol", turtle::text(port.symbol)) +
                     line("lv2:name", turtle::text(std::string(row.path) + ": " + title));
  if (title.size() <= kShortest) made += line("lv2:shortName", turtle::text(title));
  made += line("lv2:default", turtle::number(initial)) + line("lv2:minimum", turtle::number(0.0F)) +
          line("lv2:maximum", turtle::number(plainEnd(row))) + line("pg:group", groupUri(row)) +
          properties(row);
  made += isOn ? line("lv2:designation", "lv2:enabled") : line("lv2:scalePoint", marks(row));
  return made + "\n\t]";
}

/// One for each module that has a control, in the order of the controls.
std::string moduleGroups() {
  std::string made;
  for (const std::int16_t tag : faceTags()) {
    const ParameterRow& row = *findRow(tag);
    const std::string start = '\n' + groupUri(row) + '\n';
    if (made.find(start) != std::string::npos) continue;
    made += start + "\ta pg:InputGroup ;\n\tlv2:symbol " + turtle::text(lowerCase(row.path)) +
            " ;\n\tlv2:name " + turtle::text(row.path) + " .\n";
  }
  return made;
}

/// Even numbers are releases.
std::string versionLines(const std::string& version) {
  std::array<int, 3> numbers{};
  const char* next = version.data();
  for (int& number : numbers) {
    next = std::from_chars(next, version.data() + version.size(), number).ptr;
    if (next != version.data() + version.size()) ++next;
  }
  constexpr int kRoom = 100;
  return "\tlv2:minorVersion " + std::to_string(2 * numbers[0]) + " ;\n\tlv2:microVersion " +
         std::to_string(2 * (kRoom * numbers[1] + numbers[2]));
}

}  // namespace

std::string pluginText(const std::string& version, const lv2::PortValues& defaults) {
  std::string made = std::string(turtle::kPrefixes) + kHead + versionLines(version);
  std::uint32_t index = 0;
  for (const AudioPort& port : kAudioPorts) made += audioPort(index++, port);
  made += kEventPort;
  for (std::uint32_t i = 0; i < kFaceParameters; ++i) made += controlPort(i, defaults[i]);
  return made + " .\n" + kTail + moduleGroups();
}

}  // namespace zum
