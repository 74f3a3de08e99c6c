// Programs: the bank, the walk of a host's program arrows through it, chance, and the settings that
// the construction starts from.

#include <chrono>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "core/host_text.hpp"
#include "core/uni_client.hpp"
#include "platform/content_folder.hpp"
#include "platform/files.hpp"
#include "platform/message_box.hpp"
#include "platform/random_source.hpp"
#include "state/file_chooser.hpp"
#include "state/library_record.hpp"
#include "state/path_text.hpp"
#include "state/settings.hpp"

namespace zum {
namespace {

constexpr const char* kNowhere = ":-(";  // folder of a program whose file is not found

}  // namespace

void KvUniClient::readSettings() {
  initSettings([this](int index, float value) {
    storeShared(options[static_cast<std::size_t>(index)], value);
  });
}

// Up to here there are no programs; none of what a user keeps can make the construction fail.
void KvUniClient::loadDefaults() {
  setNumPrograms(0);
  const std::string root = presetRoot();
  if (!root.empty()) {
    makeFolders(root);
    loadPresetFile((root + "default." + preset::kExtension).c_str(), 0, nullptr, false);
  }
  storeShared(curFolder, 0);
  scanBank();
}

void KvUniClient::scanBank() {
  readBank([](KvProgramBank& scanned, const KvProgramBank::Check& check) {
    scanned.scan(presetRoot(), check);
  });
}

void KvUniClient::readBankBehind(const std::string& file) {
  const auto old = programs();
  readBank([&](KvProgramBank& scanned, const KvProgramBank::Check& check) {
    scanned.scanBehind(*old, file, check);
  });
  const std::lock_guard turn(loadTurn);
  takePosition();
}

void KvUniClient::readBank(
    const std::function<void(KvProgramBank&, const KvProgramBank::Check&)>& scan) {
  try {
    const auto scanned = std::make_shared<KvProgramBank>(preset::kExtension);
    scan(*scanned, [this](const KvChunk& preset) {
      PresetNeeds needs;
      return checkPreset(preset, 0, needs);
    });
    setBank(scanned);
  } catch (const std::bad_alloc&) {
  }
}

void KvUniClient::setBank(const SharedBank::Held& newBank) {
  const std::string& left = newBank->firstLeftOut();
  if (!left.empty() && fullRoot != newBank->root()) {
    const std::string text = "The presets in " + newBank->root() +
                             " take more than 32 MB.\nThe programs end ahead of " + left +
                             "; the preset menu still loads what follows.";
    showMessage(libraryRecord().product, text.c_str());
  }
  fullRoot = left.empty() ? std::string() : newBank->root();
  const std::lock_guard turn(loadTurn);
  // The audio thread plays these without asking for memory.
  for (int i = 0; i < KvProgramBank::kPresets; ++i) {
    PresetNeeds needs;
    const BankPreset* program = newBank->getMidiProgram(i);
    if (program != nullptr && !checkProgram(*program, needs)) makeRoom(needs);
  }
  bank.set(newBank);
}

// The bank is read anew in any case: presets may have come or gone.
void KvUniClient::choosePresetRoot(const std::function<void()>& done) {
  KvFileChooser(this).folder(presetRoot(), [this, done](const std::string& chosen) {
    if (chosen == KvFileChooser::kNothing) {
      scanBank();
    } else {
      setPresetRoot(chosen);
    }
    done();
  });
}

void KvUniClient::resetPresetRoot() {
  const std::string content = readSettingString(kContentPath).value_or("");
  if (content.empty() || !holdsContent(content)) {
    return showMessage(libraryRecord().product,
                       "There are no factory presets to go back to. Run zum install-content.");
  }
  setPresetRoot(content + kContentTypes[0].name);
}

void KvUniClient::setPresetRoot(std::string root) {
  ensureTrailingBackslash(root);
  writeSettingString(kPresetPath, root);
  storeShared(curFolder, 0);
  scanBank();
}

void KvUniClient::setOption(int index, int value, bool persist) {
  if (index < 0 || index >= static_cast<int>(options.size())) return;
  if (persist) writeSettingInt(kSwitches[static_cast<std::size_t>(index)].valueName, value);
  storeShared(options[static_cast<std::size_t>(index)], static_cast<float>(value));
}

const BankPreset* KvUniClient::moveTo(const KvProgramBank& all, std::int32_t index) {
  int folder = loadShared(curFolder);
  if (all.get(folder, index) == nullptr) {
    if (index < 0) {
      folder = folder > 0 ? folder - 1 : std::max(all.folderCount() - 1, 0);
      index = std::max(all.presetCount(folder) - 1, 0);
    } else {
      folder = all.get(folder + 1, 0) != nullptr ? folder + 1 : 0;
      index = 0;
    }
  }
  storeShared(curProgram, index);
  storeShared(curFolder, folder);
  return all.get(folder, index);
}

// Position and state change in one turn, so that they go together whoever else loads.
void KvUniClient::setProgram(std::int32_t index) {
  PresetFault fault;
  {
    const std::lock_guard turn(loadTurn);
    if (index == loadShared(curProgram)) return;
    const auto all = programs();
    const BankPreset* program = moveTo(*all, index);
    if (program == nullptr) return;
    PresetNeeds needs;
    fault = checkProgram(*program, needs);
    if (!fault) {
      if (!replaceState(program->chunk, 0, needs, false, false, program->name)) return;
      findOrigin(0);
      if (slots[0].folder.get().empty() && !presetRoot().empty()) slots[0].folder.set(kNowhere);
    }
  }
  if (fault) return tellFault(fault);
  updateEditor();
}

void KvUniClient::takePosition() {
  const auto all = programs();
  const int folder = all->findFolder(slots[0].folder.get());
  const int program = all->findPreset(folder, slots[0].name.get());
  if (folder >= 0) storeShared(curFolder, folder);
  if (program >= 0) storeShared(curProgram, program);
}

void KvUniClient::getProgramName(char* name) {
  const std::int32_t program = loadShared(curProgram);
  if (program == 0 || program == -1) {
    slots[0].name.copyTo(name, kVstMaxProgNameLen);
  } else {
    getProgramNameIndexed(0, program, name);
  }
}

bool KvUniClient::getProgramNameIndexed(std::int32_t /*category*/, std::int32_t index, char* text) {
  if (index == -1) {
    slots[0].name.copyTo(text, kVstMaxProgNameLen);
  } else {
    const auto all = programs();
    const std::string name(all->presetName(loadShared(curFolder), index));
    copyText(text, name.c_str(), kVstMaxProgNameLen);
  }
  return true;
}

void KvUniClient::randomPreset() {
  const auto all = programs();
  std::vector<int> choice;
  for (int folder = 0; folder < all->folderCount(); ++folder) {
    if (all->presetCount(folder) > 1) choice.push_back(folder);
  }
  if (choice.empty()) return;
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  SystemRandom random(static_cast<std::uint32_t>(now / std::chrono::milliseconds(1)));
  const int folder = choice[static_cast<std::size_t>(random.next()) % choice.size()];
  const int index = random.next() % all->presetCount(folder);
  const BankPreset& program = *all->get(folder, index);
  if (program.fault) return tellFault(program.fault);
  loadPreset(program.chunk, 0, {.findPath = true});
}

}  // namespace zum
