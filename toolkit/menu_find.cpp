#include "toolkit/menu_find.hpp"

#include <glib.h>

#include <algorithm>
#include <memory>
#include <sstream>
#include <utility>
#include <vector>

#include "platform/ascii_case.hpp"
#include "toolkit/dialogs/typed_text.hpp"

namespace zum {
namespace {

constexpr const char* kBetween = " / ";  // folder and name

/// Without the difference between capitals and small letters. Names of files may be any bytes.
std::string folded(const std::string& text) {
  const auto length = static_cast<gssize>(text.size());
  if (g_utf8_validate(text.data(), length, nullptr) == FALSE) return lowerCase(text);
  const std::unique_ptr<char, decltype(&g_free)> made(g_utf8_casefold(text.data(), length), g_free);
  return made.get();
}

struct Match {
  std::string label;
  MenuChoice at;
  int rank;           // 0 is best
  std::size_t place;  // among all, of which equal ones keep their order
};

/// What is looked for, and what was found of it.
struct Search {
  const MenuRows& root;
  std::string wanted;
  std::vector<std::string> words;
  std::vector<Match> matches;

  void addFrom(MenuRows& rows, int from) {
    for (int row = from; row < rows.size(); ++row) {
      const KvOptionMenuEntryInfo& info = rows[row];
      if (info.subMenu != nullptr && !info.subMenu->folder.empty()) addFrom(*info.subMenu, 0);
      if (info.isChoice()) addIfItMatches(rows, row);
    }
  }
  void addIfItMatches(MenuRows& rows, int row) {
    std::string label = menuLabel(root, rows, row);
    const std::string all = folded(label);
    const bool isMatch = std::ranges::all_of(
        words, [&all](const std::string& word) { return all.find(word) != std::string::npos; });
    if (!isMatch) return;
    const std::string name = folded(rows[row].text);
    const int rank = name.starts_with(wanted) ? 0 : name.find(wanted) != std::string::npos ? 1 : 2;
    matches.push_back({std::move(label), {&rows, row}, rank, matches.size()});
  }
};

void addHeader(MenuRows& rows, std::string text, bool isTyped) {
  KvOptionMenuEntryInfo header;
  header.text = std::move(text);
  header.isHeader = true;
  header.isTyped = isTyped;
  rows.tryInsert(std::move(header), -1);
}

}  // namespace

std::string menuLabel(const MenuRows& root, const MenuRows& rows, int row) {
  std::string label;
  if (rows.folder.starts_with(root.folder)) {
    for (const char letter : rows.folder.substr(root.folder.size())) {
      if (letter == '\\') {
        label += kBetween;
      } else {
        label += letter;
      }
    }
  }
  return label + rows[row].text;
}

bool MenuFinder::type(const WindowKey& key) {
  WindowKey written = key;  // hosts may name a key without the letter that it writes
  if (key.virt == keys::kSpace) written.character = ' ';
  constexpr std::size_t kMost = 100;  // bytes
  if (text.empty() && (key.virt == keys::kBack || written.character == ' ')) return false;
  if (text.size() >= kMost && key.virt != keys::kBack) return false;
  return typeInto(text, written);
}

void MenuFinder::clear() {
  text.clear();
  found.clear();
}

void MenuFinder::look(MenuRows& tree, int from, int most) {
  Search search{tree, folded(text), {}, {}};
  std::istringstream words(search.wanted);
  for (std::string word; words >> word;) search.words.push_back(word);
  search.addFrom(tree, from);
  std::ranges::sort(search.matches, {},
                    [](const Match& match) { return std::pair(match.rank, match.place); });
  found.clear();
  addHeader(found, text, true);
  const int count = static_cast<int>(search.matches.size());
  for (int i = 0; i < std::min(count, most); ++i) {
    Match& match = search.matches[static_cast<std::size_t>(i)];
    KvOptionMenuEntryInfo row;
    row.text = std::move(match.label);
    row.target = match.at;
    found.tryInsert(std::move(row), -1);
  }
  if (count == 0) addHeader(found, "nothing found", false);
  if (count > most) addHeader(found, "... and " + std::to_string(count - most) + " more", false);
}

}  // namespace zum
