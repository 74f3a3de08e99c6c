#include "apps/gallery/gallery.hpp"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "apps/gallery/gallery_pictures.hpp"

namespace zum {

Gallery::Gallery(Report told, std::string presetFolder)
    : report(std::move(told)), folder(std::move(presetFolder)) {}

bool Gallery::open() {
  if (frame) return false;
  frame = Held<KvFrame>(new KvFrame(kWindow, nullptr));
  frame->setDefaultFont(font.get());
  frame->setBackground(pictures.background);
  addKnobs();
  addDisplays();
  addButtons();
  addTraces();
  addMenus();
  addMenuButton();
  addPanel();
  showPage();
  if (frame->open(0, "Toolkit gallery")) return true;
  close();
  return false;
}

// A report may close it: the frame outlives the call that it makes.
void Gallery::close() {
  if (frame) frame->shut();
  entries.clear();
  amounts = nullptr;
  frame = {};
}

void Gallery::idle() {
  const Held<KvFrame> shown = frame;
  if (!shown) return;
  variables.advance();
  shown->idle();
}

KvControl& Gallery::control(const std::string& name) const {
  const auto entry = std::ranges::find(entries, name, &Entry::name);
  if (entry == entries.end()) throw std::out_of_range("no control is called " + name);
  return *entry->control;
}

void Gallery::showPage() {
  const bool second = variables.page != 0.0F;
  mask.set(kFirstPage, !second);
  mask.set(kSecondPage, second);
  frame->requestRedraw();
}

// Controls that are opened for another one have its tag, but report nothing.
void Gallery::valueChanged(CControl& changed) {
  const auto entry = std::ranges::find(entries, &changed, &Entry::control);
  if (entry == entries.end() || entry->variable == nullptr) return;
  const float value = entry->min + changed.getValue() * (entry->max - entry->min);
  *entry->variable = value;
  if (entry->variable == &variables.page) showPage();
  if (entry->variable == &variables.close) amounts->closePopup();
  if (report) report(std::string(entry->name), value);
}

}  // namespace zum
