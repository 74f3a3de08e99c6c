#include "platform/uri_list.hpp"

#include <glib.h>
#include <unistd.h>

#include <array>
#include <memory>

namespace zum {
namespace {

struct Free {
  void operator()(char* text) const { g_free(text); }
  void operator()(char** texts) const { g_strfreev(texts); }
};
using Text = std::unique_ptr<char, Free>;

/// An address may name the machine that it is of.
bool isThisHost(const char* name) {
  std::array<char, 256> own{};
  const bool known = gethostname(own.data(), own.size() - 1) == 0;
  return g_ascii_strcasecmp(name, "localhost") == 0 ||
         (known && g_ascii_strcasecmp(name, own.data()) == 0);
}

}  // namespace

std::vector<std::string> filesOfUriList(const std::string& list) {
  std::vector<std::string> files;
  const std::unique_ptr<char*[], Free> addresses(g_uri_list_extract_uris(list.c_str()));
  for (char** address = addresses.get(); *address != nullptr; ++address) {
    char* host = nullptr;
    const Text path(g_filename_from_uri(*address, &host, nullptr));
    const Text named(host);
    if (path && (!named || isThisHost(named.get()))) files.emplace_back(path.get());
  }
  return files;
}

}  // namespace zum
