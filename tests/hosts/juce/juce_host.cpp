// The effect in JUCE's hosting code: scan, instances, sound, editor, programs, MIDI and state. Run
// by juce.sh as `juce_host PLUGIN`; prints "ok …" and "WRONG …" lines, and "done" at the
// end.
#include <juce_audio_processors/juce_audio_processors.h>

#include <cstdio>
#include <memory>

#include "core/tags.hpp"
#include "tests/support/own_display.hpp"

// Without X's headers, whose names do not agree with JUCE's.
extern "C" int (*XSetErrorHandler(int (*)(void*, void*)))(void*, void*);

using namespace juce;
using Instance = std::unique_ptr<AudioPluginInstance>;

static void check(bool holds, const String& claim) {
  std::printf("%s %s\n", holds ? "ok" : "WRONG", claim.toRawUTF8());
  std::fflush(stdout);
}

// Thumping saws in, the whole output back. A controller comes with every block.
static AudioBuffer<float> render(AudioPluginInstance& effect, double rate, int block,
                                 double seconds, int controller = 1, int value = -1) {
  const int frames = roundToInt(rate * seconds);
  AudioBuffer<float> all(2, frames);
  for (int i = 0; i < frames; ++i) {
    const double t = i / rate;
    for (int c = 0; c < 2; ++c)
      all.setSample(c, i, (float)(exp(-8 * fmod(t, 0.5)) * (fmod((110 + 55 * c) * t, 1.0) - 0.5)));
  }
  effect.setRateAndBufferSizeDetails(rate, block);
  effect.prepareToPlay(rate, block);
  for (int start = 0; start < frames; start += block) {
    AudioBuffer<float> part(all.getArrayOfWritePointers(), 2, start, jmin(block, frames - start));
    MidiBuffer midi;
    midi.addEvent(MidiMessage::controllerEvent(1, controller, value < 0 ? start % 128 : value), 0);
    effect.processBlock(part, midi);
  }
  effect.releaseResources();
  return all;
}

static bool sane(const AudioBuffer<float>& sound) {
  for (int c = 0; c < 2; ++c)
    for (int i = 0; i < sound.getNumSamples(); ++i)
      if (!(std::abs(sound.getSample(c, i)) <= 4.0f)) return false;
  return sound.getRMSLevel(0, 0, sound.getNumSamples()) > 0.001f;
}

static int differing(AudioPluginInstance& a, AudioPluginInstance& b) {
  int count = 0;
  for (int i = 0; i < a.getParameters().size(); ++i)
    count += std::abs(a.getParameters()[i]->getValue() - b.getParameters()[i]->getValue()) > 1e-6f;
  return count;
}

// The editor in a window of its own; its largest knob is dragged by the mouse. One pixel of the
// screen is one of the component: no scale without a desktop.
static void showEditor(AudioPluginInstance& effect, zum::test::Robot& user) {
  const auto idle = [](int ms) { MessageManager::getInstance()->runDispatchLoopUntil(ms); };
  auto* const cutoff = effect.getParameters()[zum::tag::cutoff];
  cutoff->setValue(0.5f);
  std::unique_ptr<AudioProcessorEditor> editor(effect.createEditorIfNeeded());
  if (!editor) return check(false, "it has an editor");
  editor->setTopLeftPosition(100, 80);
  editor->addToDesktop(0);
  editor->setVisible(true);
  idle(700);
  check(editor->getWidth() == 508 && editor->getHeight() == 470,
        "an editor of " + String(editor->getWidth()) + " x " + String(editor->getHeight()));
  const Point<int> corner = editor->getScreenPosition();
  const auto at = [&](int x, int y) {
    user.moveTo(0, corner.x + x, corner.y + y);
    idle(150);
  };
  at(252, 180);
  user.press();
  at(252, 160);
  at(252, 130);
  user.release();
  idle(300);
  check(std::abs(cutoff->getValue() - 0.7f) < 0.001f,
        "the mouse turns a knob in it: " + String(cutoff->getValue()));
}

int main(int argc, char** argv) {
  if (argc != 2) return std::fprintf(stderr, "usage: juce_host PLUGIN\n"), 2;
  ScopedJuceInitialiser_GUI messages;
  VSTPluginFormat format;
  OwnedArray<PluginDescription> found;
  format.findAllTypesForFile(found, String(argv[1]));
  check(found.size() == 1, "the scan finds one effect");
  if (found.isEmpty()) return 1;
  check(
      found[0]->name == "ZUM" && found[0]->manufacturerName == "Zelvane" && !found[0]->isInstrument,
      "it is " + found[0]->name + " by " + found[0]->manufacturerName);

  const auto make = [&] {
    String error;
    Instance made = format.createInstanceFromDescription(*found[0], 48000, 256, error);
    if (!made) check(false, "instance: " + error);
    return made;
  };
  Instance first = make(), second = make();
  if (!first || !second) return 1;
  check(first->getTotalNumInputChannels() == 2 && first->getTotalNumOutputChannels() == 2 &&
            first->getParameters().size() == 60 && first->getNumPrograms() == 128,
        "2 in, 2 out, 60 parameters, 128 programs");

  for (const auto& [rate, block] : {std::pair(48000.0, 256), std::pair(44100.0, 64),
                                    std::pair(96000.0, 1024), std::pair(48000.0, 3)}) {
    check(sane(render(*first, rate, block, 1.0)),
          "sound at " + String(rate) + " Hz in blocks of " + String(block));
  }

  {
    // Outside of an application JUCE leaves the handler that ends the process, and sets properties
    // that do not exist without a window manager.
    XSetErrorHandler([](void*, void*) { return 0; });
    zum::test::Robot user;
    for (auto* effect : {first.get(), second.get(), first.get()}) showEditor(*effect, user);
  }

  first->setCurrentProgram(1);
  check(first->getProgramName(1) == "Second" && first->getCurrentProgram() == 1,
        "the second program of the bank is called and set");
  const auto shut = render(*first, 48000, 256, 1.0, 74, 0),
             open = render(*first, 48000, 256, 1.0, 74, 127);
  check(open.getRMSLevel(0, 0, 48000) > 2 * shut.getRMSLevel(0, 0, 48000),
        "a controller that the program has learned opens the filter: " +
            String(shut.getRMSLevel(0, 0, 48000)) + " to " + String(open.getRMSLevel(0, 0, 48000)));
  for (auto* parameter : first->getParameters())
    parameter->setValue(std::fmod(parameter->getValue() + 0.35f, 1.0f));
  const int changed = differing(*first, *second);
  check(changed >= 50, String(changed) + " parameters changed in one instance alone");
  MemoryBlock state;
  first->getStateInformation(state);
  second->setStateInformation(state.getData(), (int)state.getSize());
  render(*second, 48000, 256, 0.2);
  check(second->getCurrentProgram() == 1, "a state brings its place in the bank");
  check(differing(*first, *second) == 0,
        "a state of " + String(state.getSize()) + " bytes restores all in the other instance");

  second.reset();
  check(sane(render(*make(), 48000, 256, 0.5)), "a new instance sounds after one has gone");
  first.reset();
  std::puts("done");
  return 0;
}
