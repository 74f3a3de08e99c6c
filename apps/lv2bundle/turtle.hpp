// Turtle, the language of an LV2 bundle's descriptions, as it is written here.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace zum::turtle {

/// Each word of the standard that any of the files uses.
inline constexpr std::string_view kPrefixes = R"(@prefix atom: <http://lv2plug.in/ns/ext/atom#> .
@prefix doap: <http://usefulinc.com/ns/doap#> .
@prefix foaf: <http://xmlns.com/foaf/0.1/> .
@prefix lv2: <http://lv2plug.in/ns/lv2core#> .
@prefix midi: <http://lv2plug.in/ns/ext/midi#> .
@prefix owl: <http://www.w3.org/2002/07/owl#> .
@prefix pg: <http://lv2plug.in/ns/ext/port-groups#> .
@prefix pset: <http://lv2plug.in/ns/ext/presets#> .
@prefix rdf: <http://www.w3.org/1999/02/22-rdf-syntax-ns#> .
@prefix rdfs: <http://www.w3.org/2000/01/rdf-schema#> .
@prefix state: <http://lv2plug.in/ns/ext/state#> .
@prefix time: <http://lv2plug.in/ns/ext/time#> .
@prefix ui: <http://lv2plug.in/ns/extensions/ui#> .
@prefix units: <http://lv2plug.in/ns/extensions/units#> .
@prefix urid: <http://lv2plug.in/ns/ext/urid#> .
@prefix xsd: <http://www.w3.org/2001/XMLSchema#> .
)";

/// In quotes.
std::string text(std::string_view any);
/// A decimal that reads as the same float.
std::string number(float value);
/// In angle brackets. Of `part` all but letters, digits, - and : is a _, as some hosts read no %XX.
std::string uri(std::string_view start, std::string_view part = {});
/// In quotes, with its type.
std::string base64(std::span<const std::byte> bytes);

}  // namespace zum::turtle
