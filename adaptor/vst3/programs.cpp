#include "adaptor/vst3/programs.hpp"

#include "adaptor/vst3/ids.hpp"

namespace zum::vst3 {

ProgramList::ProgramList(KvUniClient& played) : effect(played) {
  const auto bank = effect.programs();
  for (int folder = 0; folder < bank->folderCount(); ++folder) {
    firstOfFolder.push_back(count());
    for (int i = 0; i < bank->presetCount(folder); ++i) {
      entries.push_back(
          {std::string(bank->folderName(folder)), std::string(bank->presetName(folder, i))});
    }
  }
  firstOfFolder.push_back(count());
}

std::string ProgramList::nameOf(int index) const {
  return has(index) ? at(index).folder + '/' + at(index).name : std::string();
}

int ProgramList::find(std::string_view name) const {
  for (int i = 0; i < count(); ++i) {
    if (nameOf(i) == name) return i;
  }
  return -1;
}

int ProgramList::indexOf(double value) const ZUM_REALTIME { return nearest(value * stepCount()); }

double ProgramList::valueOf(int index) const ZUM_REALTIME {
  return stepCount() > 0 ? static_cast<double>(index) / stepCount() : 0.0;
}

int ProgramList::current() const ZUM_REALTIME {
  const auto folder = static_cast<std::size_t>(effect.currentFolder());
  if (folder + 1 >= firstOfFolder.size()) return 0;
  const int index = firstOfFolder[folder] + effect.currentProgram();
  return has(index) && index < firstOfFolder[folder + 1] ? index : 0;
}

bool ProgramList::play(int index) {
  return has(index) && effect.playProgram(at(index).folder, at(index).name);
}

bool ProgramList::tryPlay(int index) ZUM_REALTIME {
  return has(index) && effect.tryProgram(at(index).folder, at(index).name);
}

}  // namespace zum::vst3
