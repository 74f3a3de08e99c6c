// `zum presets`: presets as text and back, whether files are whole, and what is in the bank.
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "apps/zum/commands.hpp"
#include "apps/zum/effect_host.hpp"
#include "apps/zum/effect_view.hpp"
#include "apps/zum/failure.hpp"
#include "apps/zum/folders.hpp"
#include "apps/zum/option_checks.hpp"
#include "apps/zum/preset_input.hpp"
#include "apps/zum/temporary_file.hpp"
#include "apps/zum/text_file.hpp"
#include "platform/printable_text.hpp"
#include "preset_text/preset_document.hpp"
#include "preset_text/preset_text.hpp"
#include "state/preset_files.hpp"

namespace zum {
namespace {

namespace fs = std::filesystem;

struct PresetsOptions {
  fs::path input;
  fs::path output;
  std::vector<fs::path> paths;
};

bool isFolder(const fs::path& path) {
  std::error_code none;
  return fs::is_directory(path, none);
}

std::string extension() { return '.' + std::string(preset::kExtension); }

std::vector<fs::path> filesBelow(const fs::path& folder, const std::string& ending) {
  std::vector<fs::path> files = zum::filesBelow(folder);
  std::erase_if(files, [&](const fs::path& path) { return path.extension() != ending; });
  return files;
}

void show(const fs::path& path) {
  PresetDocument document;
  if (const std::string why = readPresetFile(path, document); !why.empty()) {
    throw Failure(path.string() + ": " + why + "; run zum presets check to see which files load");
  }
  std::cout << presetText(document);
}

void makeOne(const fs::path& from, const fs::path& to) {
  PresetDocument document;
  TextLines lines = linesOf(from, kMostPresetText);
  document.name = from.stem().string();
  readPresetText(lines, document, warn);
  KvChunk chunk;
  writePresetDocument(document, chunk);
  if (!fitsChunkFile(chunk)) {
    throw Failure(
        from.string() +
        " makes a preset of more than a megabyte, which does not load; take out bindings, "
        "steps or letters of its names");
  }
  PresetDocument again;  // of what is written, only what loads
  if (const PresetFault fault = readPresetDocument(chunk, again)) {
    throw Failure(from.string() + " makes no preset that loads: " + describe(fault) +
                  "; look at its steps");
  }
  TemporaryFile file(to);
  file.write(chunk.data(), std::size_t{4} * chunk.dataWords());
  file.commit();
}

void makeAll(const fs::path& from, const fs::path& to) {
  const auto texts = filesBelow(from, ".toml");
  if (texts.empty())
    throw Failure("there is no .toml file below " + from.string() + "; name another folder");
  for (const fs::path& text : texts) {
    const fs::path target = (to / text.lexically_relative(from)).replace_extension(extension());
    makeFolder(target.parent_path());
    makeOne(text, target);
  }
  std::cout << texts.size() << " presets made in " << printable(to.string()) << '\n';
}

void make(const PresetsOptions& options) {
  if (isFolder(options.input)) return makeAll(options.input, options.output);
  if (options.output.extension() != extension()) {
    throw Failure(options.output.string() + " is no name of a preset; let it end in " + extension(),
                  kExitWrongUsage);
  }
  makeOne(options.input, options.output);
}

std::string summary(const PresetDocument& document) {
  std::string text = '"' + printable(document.name) + '"';
  for (const std::string& remark : document.remarks) text += ", " + remark;
  return text;
}

void check(const std::vector<fs::path>& paths) {
  std::vector<fs::path> files;
  for (const fs::path& path : paths) {
    if (!isFolder(path)) {
      files.push_back(path);
      continue;
    }
    const auto found = filesBelow(path, extension());
    files.insert(files.end(), found.begin(), found.end());
  }
  std::size_t damaged = 0;
  for (const fs::path& file : files) {
    PresetDocument document;
    const std::string why = readPresetFile(file, document);
    if (!why.empty()) ++damaged;
    std::cout << printable(file.string())
              << (why.empty() ? ": ok, " + summary(document) : ": BAD, " + why) << '\n';
  }
  if (damaged > 0) {
    throw Failure(std::to_string(damaged) + " of " + std::to_string(files.size()) +
                  " files are no presets; replace them or take them out of the folder");
  }
  if (files.empty()) throw Failure("there are no " + extension() + " files; name others");
}

void listPrograms() {
  EffectHost host(44100.0, 512, 120.0, false);
  const std::vector<BankEntry> entries = EffectView(host.client()).bank();
  if (entries.empty()) {
    throw Failure(
        "the bank is empty; run zum install-content, or name a folder of folders with "
        "zum settings set presetpath0 FOLDER");
  }
  std::cout << "folder  program  name\n";
  for (const auto& [folder, program, name] : entries) {
    std::cout << std::setw(6) << folder << std::setw(9) << program << "  " << printable(name)
              << '\n';
  }
}

}  // namespace

void addPresetsCommand(CLI::App& app) {
  auto options = std::make_shared<PresetsOptions>();
  CLI::App* presets = app.add_subcommand("presets", "Show, make, check and list presets");
  presets->require_subcommand(1);
  CLI::App* shown = presets->add_subcommand("show", "Print a preset as text (TOML)");
  shown->add_option("FILE", options->input, "Preset to read")->required()->check(notEmpty());
  shown->callback([options] { show(options->input); });
  CLI::App* made = presets->add_subcommand("make", "Make presets of texts, as show prints them");
  made->add_option("TEXT", options->input, "Text to read, or a folder of texts (.toml)")
      ->required()
      ->check(notEmpty());
  made->add_option("OUT", options->output, "Preset to write, or the folder for all of them")
      ->required()
      ->check(notEmpty());
  made->callback([options] { make(*options); });
  CLI::App* checked = presets->add_subcommand("check", "Report which files load, and why not");
  checked->add_option("PATH", options->paths, "Presets, or folders of presets")
      ->required()
      ->check(notEmpty());
  checked->callback([options] { check(options->paths); });
  presets->add_subcommand("list", "Print the programs of the bank as the effect finds them")
      ->callback(listPrograms);
}

}  // namespace zum
