// `zum settings`: reads and changes single values of the user's settings.
#include <strings.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <memory>
#include <string>

#include "apps/zum/commands.hpp"
#include "apps/zum/failure.hpp"
#include "apps/zum/option_checks.hpp"
#include "apps/zum/settings_failure.hpp"
#include "platform/files.hpp"
#include "platform/printable_text.hpp"
#include "platform/registry_store.hpp"
#include "state/library_record.hpp"
#include "state/path_text.hpp"
#include "state/registry_key.hpp"
#include "state/settings.hpp"

namespace zum {
namespace {

enum class Kind { text, number, folder, folderWithBackslash };

struct KnownSetting {
  const char* name;
  Kind kind;
};

constexpr KnownSetting kKnown[] = {
    {kInstallPath, Kind::folderWithBackslash},
    {kContentPath, Kind::folderWithBackslash},
    {kPresetPath, Kind::folderWithBackslash},
    {kOldPresetPath, Kind::folderWithBackslash},
    {kPresetSavePath, Kind::folderWithBackslash},
    {kAudioFilePath, Kind::folder},
    {kControllerMapPath, Kind::folder},
    {kInitialised, Kind::number},
    {kIgnoreProgramChange, Kind::number},
    {kIsolateMapRecall, Kind::number},
    {kWindowSize, Kind::number},
    {kFavourites, Kind::text},
};

struct SettingOptions {
  std::string name, value;
  bool isNumber = false;
};

KvRegistryKey openKey() { return KvRegistryKey(libraryRecord().product); }

std::string shown(const RegistryStore::Data& data) {
  const auto* text = std::get_if<std::string>(&data);
  return text != nullptr ? printable(*text) : std::to_string(std::get<std::int32_t>(data));
}

void listSettings() {
  auto key = openKey();
  const auto values = key.values();
  if (!key.problem().empty()) throw settingsFailure("cannot read", key);
  if (values.size() == RegistryStore::kMostValues) {
    warn("there may be more than these " + std::to_string(values.size()) +
         " settings; delete what is not ZUM's");
  }
  std::size_t width = std::strlen("name");
  for (const auto& value : values) width = std::max(width, printable(value.name).size());
  const auto line = [&](const std::string& name, const char* type, const std::string& value) {
    std::cout << std::left << std::setw(static_cast<int>(width)) << name << "  " << std::setw(6)
              << type << "  " << value << '\n';
  };
  line("name", "type", "value");
  for (const auto& value : values) {
    line(printable(value.name), value.data.index() == 0 ? "string" : "int", shown(value.data));
  }
}

RegistryStore::Data find(KvRegistryKey& key, const std::string& name) {
  if (auto data = key.value(name.c_str())) return *data;
  if (!key.problem().empty()) throw settingsFailure("cannot read", key);
  throw Failure("there is no setting " + name + "; run zum settings list to see them all");
}

std::int32_t numberIn(const std::string& text) {
  std::int32_t number = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error == std::errc() && stop == end) return number;
  throw Failure("\"" + text + "\" is not a whole number of 32 bits; give one, such as 0 or 1",
                kExitWrongUsage);
}

void refuseLong(const char* what, const std::string& text) {
  constexpr std::size_t kMost = KvRegistryKey::kTextBytes - 1;
  if (text.size() <= kMost) return;
  throw Failure(std::string("the ") + what + " has " + std::to_string(text.size()) +
                    " bytes; shorten it to at most " + std::to_string(kMost),
                kExitWrongUsage);
}

// Folders are given as they are typed in a shell, or in the form that list prints.
std::string textFor(Kind kind, const std::string& value) {
  std::string text = value;
  if (kind != Kind::text && !value.empty()) {
    if (value.find('\\') == std::string::npos) {
      std::error_code error;
      const auto whole = std::filesystem::absolute(value, error);
      if (error) throw Failure("the current folder is gone; give the path from / on");
      text = toInternalPath(whole.lexically_normal().string());
    }
    if (kind == Kind::folderWithBackslash) ensureTrailingBackslash(text);
  }
  refuseLong("value", text);
  return text;
}

void setSetting(const SettingOptions& options) {
  refuseLong("name", options.name);
  const auto* known = std::find_if(std::begin(kKnown), std::end(kKnown), [&](const auto& setting) {
    return strcasecmp(setting.name, options.name.c_str()) == 0;
  });
  const bool isKnown = known != std::end(kKnown);
  const Kind kind = isKnown ? known->kind : options.isNumber ? Kind::number : Kind::text;
  const char* name = isKnown ? known->name : options.name.c_str();
  if (options.isNumber && kind != Kind::number) {
    throw Failure(std::string(name) + " is a text; leave out --int", kExitWrongUsage);
  }
  RegistryStore::Data data;
  if (kind == Kind::number) {
    data = numberIn(options.value);
  } else {
    data = textFor(kind, options.value);
  }
  initSettings();  // or the first start would set the switches back
  auto key = openKey();
  const auto* text = std::get_if<std::string>(&data);
  const bool written =
      text != nullptr ? key.setString(name, *text) : key.setInt(name, std::get<std::int32_t>(data));
  if (!written) throw settingsFailure("cannot write", key);
}

void deleteSetting(const std::string& name) {
  auto key = openKey();
  find(key, name);
  if (!key.remove(name.c_str())) throw settingsFailure("cannot write", key);
}

}  // namespace

void addSettingsCommand(CLI::App& app) {
  auto options = std::make_shared<SettingOptions>();
  CLI::App* settings = app.add_subcommand("settings", "Show and change what ZUM keeps for you");
  settings->require_subcommand(1);
  settings->add_subcommand("list", "Print name, type and value of every setting")
      ->callback(listSettings);
  const auto add = [&](const char* verb, const char* what) {
    CLI::App* command = settings->add_subcommand(verb, what);
    command->add_option("NAME", options->name, "Name of the setting, as list prints it")
        ->required()
        ->check(notEmpty());
    return command;
  };
  add("get", "Print the value of a setting")->callback([options] {
    auto key = openKey();
    std::cout << shown(find(key, options->name)) << '\n';
  });
  CLI::App* set = add("set", "Give a setting a value");
  set->add_option("VALUE", options->value, "Text, folder or whole number")->required();
  set->add_flag("--int", options->isNumber,
                "Keep the value of a name that ZUM does not know as a number");
  set->callback([options] { setSetting(*options); });
  add("delete", "Forget a setting")->callback([options] { deleteSetting(options->name); });
}

}  // namespace zum
