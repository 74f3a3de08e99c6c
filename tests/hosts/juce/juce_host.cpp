// The effect in JUCE's hosting code: scan, instances, sound, editor, programs, MIDI and state. Run
// by juce.sh as `juce_host PLUGIN`; prints "ok …" and "WRONG …" lines, and "done" at the end.
#include <juce_audio_processors/juce_audio_processors.h>

#include <cstdio>

#include "core/tags.hpp"
#include "tests/support/own_display.hpp"

// Without X's headers, whose names do not agree with JUCE's.
extern "C" int (*XSetErrorHandler(int (*)(void*, void*)))(void*, void*);

using namespace juce;

static void check(bool holds, const String& claim) {
  std::printf("%s %s\n", holds ? "ok" : "WRONG", claim.toRawUTF8());
  std::fflush(stdout);
}

// A second of thumping saws in, the whole output back. A controller comes with every block.
static AudioBuffer<float> render(AudioPluginInstance& effect, int rate, int block,
                                 int controller = 1, int value = 64) {
  AudioBuffer<float> all(2, rate);
  for (int i = 0; i < rate; ++i) {
    const double t = (double)i / rate;
    for (int c = 0; c < 2; ++c)
      all.setSample(c, i, (float)(exp(-8 * fmod(t, 0.5)) * (fmod((110 + 55 * c) * t, 1.0) - 0.5)));
  }
  effect.setRateAndBufferSizeDetails(rate, block);
  effect.prepareToPlay(rate, block);
  for (int start = 0; start < rate; start += block) {
    AudioBuffer<float> part(all.getArrayOfWritePointers(), 2, start, jmin(block, rate - start));
    MidiBuffer midi;
    midi.addEvent(MidiMessage::controllerEvent(1, controller, value), 0);
    effect.processBlock(part, midi);
  }
  effect.releaseResources();
  return all;
}

static float levelOf(const AudioBuffer<float>& sound, int side = 0) {
  return sound.getRMSLevel(side, 0, sound.getNumSamples());
}

static bool sane(const AudioBuffer<float>& sound) {  // a level with no number in it is none
  return sound.getMagnitude(0, sound.getNumSamples()) <= 4.0f && levelOf(sound) > 0.001f &&
         levelOf(sound, 1) > 0.001f;
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
  editor->setTopLeftPosition(100, 80);
  editor->addToDesktop(0);
  editor->setVisible(true);
  idle(700);
  check(editor->getWidth() == 508 && editor->getHeight() == 470, "an editor of 508 x 470");
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
  check(std::abs(cutoff->getValue() - 0.7f) < 0.001f, "the mouse turns a knob in it");
}

// What is missing altogether ends the process: the script hears of that.
int main(int argc, char** argv) {
  if (argc != 2) return std::fprintf(stderr, "usage: juce_host PLUGIN\n"), 2;
  ScopedJuceInitialiser_GUI messages;
  VSTPluginFormat format;
  OwnedArray<PluginDescription> found;
  format.findAllTypesForFile(found, String(argv[1]));
  check(found.size() == 1 && found[0]->name == "ZUM" && found[0]->manufacturerName == "Zelvane" &&
            !found[0]->isInstrument,
        "the scan finds one effect, ZUM by Zelvane");
  String error;
  const auto make = [&] {
    return format.createInstanceFromDescription(*found[0], 48000, 256, error);
  };
  auto first = make(), second = make();
  check(first->getTotalNumInputChannels() == 2 && first->getTotalNumOutputChannels() == 2 &&
            first->getParameters().size() == 60 && first->getNumPrograms() == 128,
        "2 in, 2 out, 60 parameters, 128 programs");
  for (const auto& [rate, block] :
       {std::pair(44100, 64), std::pair(96000, 1024), std::pair(48000, 3)})
    check(sane(render(*first, rate, block)), "sound at " + String(rate) + " Hz");

  // Outside of an application JUCE leaves the handler that ends the process, and sets properties
  // that do not exist without a window manager.
  XSetErrorHandler([](void*, void*) { return 0; });
  zum::test::Robot user;
  for (auto* effect : {first.get(), second.get(), first.get()}) showEditor(*effect, user);

  first->setCurrentProgram(1);
  check(first->getProgramName(1) == "Second" && first->getCurrentProgram() == 1,
        "the second program of the bank is called and set");
  const auto shut = render(*first, 48000, 256, 74, 0);
  check(levelOf(render(*first, 48000, 256, 74, 127)) > 2 * levelOf(shut),
        "a controller that the program has learned opens the filter");
  for (auto* parameter : first->getParameters())
    parameter->setValue(std::fmod(parameter->getValue() + 0.35f, 1.0f));
  check(differing(*first, *second) >= 50, "parameters change in one instance alone");
  MemoryBlock state;
  first->getStateInformation(state);
  second->setStateInformation(state.getData(), (int)state.getSize());
  render(*second, 48000, 256);
  check(second->getCurrentProgram() == 1 && differing(*first, *second) == 0,
        "a state restores all in the other instance, with its place in the bank");
  second.reset();
  check(sane(render(*make(), 48000, 256)), "a new instance sounds after one has gone");
  first.reset();
  std::puts("done");
  return 0;
}
