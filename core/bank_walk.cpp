#include "core/bank_walk.hpp"

#include <algorithm>
#include <array>
#include <chrono>
#include <memory>
#include <new>
#include <string_view>
#include <utility>
#include <vector>

#include "engine/shared_value.hpp"
#include "platform/content_folder.hpp"
#include "platform/random_source.hpp"
#include "state/bank_shelf.hpp"
#include "state/path_text.hpp"
#include "state/settings.hpp"

namespace zum {
namespace {

constexpr const char* kNowhere = ":-(";  // folder of a program whose file is not found

}  // namespace

void BankWalk::readLater(std::string root) {
  unreadRoot = std::move(root);
  isUnread.store(true);
}

void BankWalk::fetch() {
  if (!isUnread.load()) return;
  const StateGate::Turn turn(gate);
  if (!isUnread.load()) return;
  read([this](const auto& check) { return BankShelf::read(unreadRoot, check); });
}

void BankWalk::scan() {
  read([](const auto& check) {
    auto scanned = std::make_shared<KvProgramBank>(preset::kExtension);
    scanned->scan(PresetDesk::root(), check);
    return scanned;
  });
}

// What is still to be read is read with the file in it.
void BankWalk::scanBehind(const std::string& file) {
  const auto old = programs();
  read([&](const auto& check) {
    auto scanned = std::make_shared<KvProgramBank>(preset::kExtension);
    scanned->scanBehind(*old, file, check);
    return scanned;
  });
  const StateGate::Turn turn(gate);
  takePosition();
}

void BankWalk::read(const Scan& make) {
  try {
    setBank(make([this](const KvChunk& preset, PresetNeeds& needs) {
      return desk.check(preset, 0, needs);
    }));
  } catch (const std::bad_alloc&) {
  }
}

void BankWalk::setBank(const SharedBank::Held& newBank) {
  const std::string& left = newBank->firstLeftOut();
  if (!left.empty() && fullRoot != newBank->root()) {
    PresetDialogs::tell("The presets in " + newBank->root() +
                        " take more than 32 MB.\nThe programs end ahead of " + left +
                        "; the preset menu still loads what follows.");
  }
  fullRoot = left.empty() ? std::string() : newBank->root();
  const StateGate::Turn turn(gate);
  desk.makeRoom(newBank->needs());  // the audio thread plays any of these without asking for memory
  bank.set(newBank);
  isUnread.store(false);
  BankShelf::put(newBank);
}

void BankWalk::setRoot(std::string root) {
  ensureTrailingBackslash(root);
  writeSettingString(kPresetPath, root);
  storeShared(position.folder, 0);
  scan();
}

void BankWalk::resetRoot() {
  const std::string content = readSettingString(kContentPath).value_or("");
  if (content.empty() || !holdsContent(content)) {
    return PresetDialogs::tell(
        "There are no factory presets to go back to. Run zum install-content.");
  }
  setRoot(content + kContentTypes[0].name);
}

BankWalk::Place BankWalk::placeOf(const KvProgramBank& all, std::int32_t index) const ZUM_REALTIME {
  const int folder = loadShared(position.folder);
  if (all.get(folder, index) != nullptr) return {folder, index};
  if (index >= 0) return {all.get(folder + 1, 0) != nullptr ? folder + 1 : 0, 0};
  const int before = folder > 0 ? folder - 1 : std::max(all.folderCount() - 1, 0);
  return {before, std::max(all.presetCount(before) - 1, 0)};
}

void BankWalk::moveTo(const Place& place) ZUM_REALTIME {
  storeShared(position.program, place.program);
  storeShared(position.folder, place.folder);
}

// Position and state change in one turn, so that they go together whoever else loads. The walk goes
// on from a program that is refused, but not where there is no memory to play one.
void BankWalk::setProgram(std::int32_t index) {
  PresetFault fault;
  {
    const StateGate::Turn turn(gate);
    if (index == loadShared(position.program)) return;
    const auto all = programs();
    const Place place = placeOf(*all, index);
    const BankPreset* program = all->get(place.folder, place.program);
    if (program == nullptr) return moveTo(place);
    PresetNeeds needs;
    fault = desk.check(*program, needs);
    if (!fault && !desk.replace(program->chunk, 0, needs, {.title = program->name})) return;
    moveTo(place);
    if (!fault) desk.findOrigin(0, kNowhere);
  }
  if (fault) return PresetDialogs::tellFault(fault);
  window.update();
}

void BankWalk::playAny() {
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
  if (program.fault) return PresetDialogs::tellFault(program.fault);
  desk.load(program.chunk, 0, {.findPath = true});
}

bool BankWalk::play(std::string_view folder, std::string_view name) {
  {
    const StateGate::Turn turn(gate);
    const auto all = programs();
    const int inFolder = all->findFolder(folder);
    const int index = all->findPreset(inFolder, name);
    const BankPreset* const program = all->get(inFolder, index);
    if (program == nullptr) return false;
    if (!desk.load(program->chunk, 0, {.quiet = true, .title = program->name})) return false;
    moveTo({inFolder, index});
    desk.findOrigin(0, kNowhere);
  }
  window.update();
  return true;
}

bool BankWalk::tryPlay(std::string_view folder, std::string_view name) ZUM_REALTIME {
  const SharedBank::InBlock all(bank);
  const int inFolder = all->findFolder(folder);
  const int index = all->findPreset(inFolder, name);
  const BankPreset* const program = all->get(inFolder, index);
  if (program == nullptr || !desk.tryPlay(*program)) return false;
  moveTo({inFolder, index});
  return true;
}

void BankWalk::playMidiProgram(int index) ZUM_REALTIME {
  const SharedBank::InBlock programsNow(bank);
  const BankPreset* program = programsNow->getMidiProgram(index);
  if (program != nullptr) desk.tryPlay(*program);
}

void BankWalk::stepMidiProgram(int direction) ZUM_REALTIME {
  const SharedBank::InBlock all(bank);
  const Place place = placeOf(*all, loadShared(position.program) + direction);
  const BankPreset* const program = all->get(place.folder, place.program);
  if (program == nullptr) return;
  if (program->fault || desk.tryPlay(*program)) moveTo(place);
}

// It follows a load that took effect, and must not fail half way: it uses no heap but for a bank
// that is still to be read, which stays unread without memory. Each text is used before the next
// one takes its room.
void BankWalk::takePosition() {
  std::array<char, std::max(SharedName::kRoom, PresetSlot::kFolderRoom)> text{};
  const auto all = programs();
  const PresetSlot& slot = desk.slot();
  const auto read = [&](const auto& shared) {
    return std::string_view(text.data(), shared.copyTo(text.data(), text.size()));
  };
  const int folder = all->findFolder(read(slot.folder));
  const int program = all->findPreset(folder, read(slot.name));
  if (folder >= 0) storeShared(position.folder, folder);
  if (program >= 0) storeShared(position.program, program);
}

std::string BankWalk::programName(std::int32_t index) {
  return std::string(programs()->presetName(loadShared(position.folder), index));
}

}  // namespace zum
