#include "adaptor/vst3/programs.hpp"

#include <algorithm>

#include "adaptor/vst3/factory_programs.hpp"
#include "platform/content_folder.hpp"
#include "platform/files.hpp"
#include "state/settings.hpp"

namespace zum::vst3 {
namespace {

static_assert(std::atomic<std::uint64_t>::is_always_lock_free);

std::string_view folderOf(std::string_view name) ZUM_REALTIME {
  name.remove_suffix(name.size() - std::min(name.find('/'), name.size()));
  return name;
}
std::string_view presetOf(std::string_view name) ZUM_REALTIME {
  name.remove_prefix(std::min(name.find('/'), name.size() - 1) + 1);
  return name;
}

std::string nameOf(std::string_view folder, std::string_view preset) {
  return std::string(folder).append(1, '/').append(preset);
}

}  // namespace

ProgramList::ProgramList(KvUniClient& played)
    : effect(played), names{"As it is"}, heard(Heard{played.presetCount(), kAsItIs}) {
  names.reserve(kPlaces);
  names.insert(names.end(), factoryPrograms().begin(), factoryPrograms().end());
  const auto bank = effect.programs();
  for (int folder = 0; folder < bank->folderCount(); ++folder) {
    for (int i = 0; i < bank->presetCount(folder) && names.size() < kPlaces; ++i) {
      std::string name = vst3::nameOf(bank->folderName(folder), bank->presetName(folder, i));
      if (!isFactoryProgram(name)) names.push_back(std::move(name));
    }
  }
  names.resize(kPlaces, "-");
}

std::string_view ProgramList::nameOf(int place) const ZUM_REALTIME {
  const auto at = static_cast<std::size_t>(place);
  return place >= 0 && at < names.size() ? std::string_view(names[at]) : std::string_view();
}

int ProgramList::find(std::string_view name) const {
  const auto found = std::ranges::find(names, name);
  return found != names.end() ? static_cast<int>(found - names.begin()) : -1;
}

int ProgramList::current() const ZUM_REALTIME {
  const Heard last = heard;
  return last.preset == effect.presetCount() ? last.place : kAsItIs;
}

void ProgramList::look() {
  const Heard last = heard;
  const std::uint32_t preset = effect.presetCount();  // what comes meanwhile is looked at again
  const bool isSame =
      last.preset == preset &&
      (last.place == kAsItIs || presetOf(nameOf(last.place)) == effect.slot().name.get());
  if (!isSame) heard = Heard{preset, placeOfSound()};
}

// A state holds the name of its preset, and where that stood in the bank of its time; the folder
// was searched for by the name.
int ProgramList::placeOfSound() const {
  const std::string preset = effect.slot().name.get();
  const auto bank = effect.programs();
  const int at = effect.currentFolder();
  const BankPreset* const inBank = bank->get(at, effect.currentProgram());
  const bool isThere = inBank != nullptr && inBank->name == preset;
  const std::string folder =
      isThere ? std::string(bank->folderName(at)) : effect.slot().folder.get();
  if (!folder.empty()) return std::max(find(vst3::nameOf(folder, preset)), kAsItIs);
  const auto factory = factoryPrograms();
  const auto found = std::ranges::find(factory, preset, presetOf);
  return found != factory.end() ? find(*found) : kAsItIs;
}

bool ProgramList::play(int place) {
  if (place != kAsItIs) {
    const std::string_view name = nameOf(place);
    if (name.empty()) return false;
    if (!effect.playProgram(folderOf(name), presetOf(name)) && !playInstalled(place)) return false;
  }
  hear(place);
  return true;
}

// The user's tree may lie elsewhere.
bool ProgramList::playInstalled(int place) {
  std::string file = installedContentFolder();
  if (file.empty() || !isFactoryProgram(nameOf(place))) return false;
  file.append(kContentTypes[0].name).append(1, '\\').append(toInternalPath(nameOf(place)));
  file.append(1, '.').append(preset::kExtension);
  const std::uint32_t before = effect.presetCount();
  effect.loadPresetFile(file.c_str(), 0, nullptr, false);
  return effect.presetCount() != before;
}

bool ProgramList::tryPlay(int place) ZUM_REALTIME {
  const std::string_view name = nameOf(place);
  if (place != kAsItIs && !effect.tryProgram(folderOf(name), presetOf(name))) return false;
  hear(place);
  return true;
}

}  // namespace zum::vst3
