// One CLAP instance and its host, known by the entry that made it alone: of the tests' host, and of
// the fuzz target.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstring>
#include <set>
#include <stdexcept>
#include <string>

#include "adaptor/clap/interface.hpp"

namespace zum::test {

inline constexpr char kClapId[] = "com.zelvane.zum";

/// A state in pieces.
struct ClapStream {
  static std::int64_t write(const clap_ostream_t* to, const void* from, std::uint64_t count) {
    auto& all = *static_cast<ClapStream*>(to->ctx);
    const auto taken = std::min<std::size_t>(count, all.piece);
    all.bytes.append(static_cast<const char*>(from), taken);
    return static_cast<std::int64_t>(taken);
  }
  static std::int64_t read(const clap_istream_t* from, void* to, std::uint64_t count) {
    auto& all = *static_cast<ClapStream*>(from->ctx);
    const auto given = std::min({std::size_t{count}, all.piece, all.bytes.size()});
    std::memcpy(to, all.bytes.data(), given);
    all.bytes.erase(0, given);
    return static_cast<std::int64_t>(given);
  }
  std::string bytes;
  std::size_t piece;  // at most
  clap_ostream_t out{this, write};
  clap_istream_t in{this, read};
};

struct ClapHost {
  using Host = clap_host_t;
  static ClapHost& of(const Host* host) { return *static_cast<ClapHost*>(host->host_data); }
  static void ignore(const Host* /*host*/) {}
  static void callback(const Host* host) { ++of(host).callbacks; }
  static const void* extension(const Host* host, const char* wanted) {
    static const clap_host_params_t params{[](const Host* asked, std::uint32_t flags) {
                                             if (flags == CLAP_PARAM_RESCAN_VALUES)
                                               ++of(asked).rescans;
                                           },
                                           [](const Host*, clap_id, std::uint32_t) {},
                                           [](const Host* asked) { ++of(asked).flushes; }};
    static const clap_host_state_t state{[](const Host* asked) { ++of(asked).dirty; }};
    static const clap_host_timer_support_t timers{
        [](const Host* asked, std::uint32_t, clap_id* id) {
          return of(asked).timers.insert(*id = of(asked).nextTimer++).second;
        },
        [](const Host* asked, clap_id id) { return of(asked).timers.erase(id) == 1; }};
    static const clap_host_preset_load_t presets{
        [](const Host* asked, std::uint32_t, const char*, const char*, std::int32_t, const char*) {
          ++of(asked).failed;
        },
        [](const Host* asked, std::uint32_t, const char*, const char*) { ++of(asked).loaded; }};
    const std::string name = wanted;
    if (name == CLAP_EXT_PARAMS) return &params;
    if (name == CLAP_EXT_STATE) return &state;
    if (name == CLAP_EXT_TIMER_SUPPORT && of(host).hasTimers) return &timers;
    return name == CLAP_EXT_PRESET_LOAD ? &presets : nullptr;
  }
  Host record{CLAP_VERSION, this,      "Test Host", "Test", "",
              "1",          extension, ignore,      ignore, callback};
  bool hasTimers = true;
  std::atomic<int> flushes{0}, callbacks{0};  // from any thread
  int rescans = 0, dirty = 0, loaded = 0, failed = 0;
  std::set<clap_id> timers;
  clap_id nextTimer = 7;
};

class ClapInstance {
 public:
  explicit ClapInstance(const clap_plugin_entry_t& entry, bool hasTimers = false) {
    const void* const found = entry.get_factory(CLAP_PLUGIN_FACTORY_ID);
    const auto& factory = *static_cast<const clap_plugin_factory_t*>(found);
    host.hasTimers = hasTimers;
    plugin = factory.create_plugin(&factory, &host.record, kClapId);
    if (plugin == nullptr || !plugin->init(plugin)) throw std::runtime_error("no plug-in");
  }
  ~ClapInstance() { plugin->destroy(plugin); }
  ClapInstance(const ClapInstance&) = delete;
  ClapInstance& operator=(const ClapInstance&) = delete;

  template <class Extension>
  const Extension& get(const char* id) const {
    const void* const found = plugin->get_extension(plugin, id);
    if (found == nullptr) throw std::runtime_error(id);
    return *static_cast<const Extension*>(found);
  }
  const clap_plugin_params_t& params() const { return get<clap_plugin_params_t>(CLAP_EXT_PARAMS); }
  std::string save(std::size_t piece = 4096) const {
    ClapStream stream{.bytes = {}, .piece = piece};
    const auto& states = get<clap_plugin_state_t>(CLAP_EXT_STATE);
    if (!states.save(plugin, &stream.out)) throw std::runtime_error("no state");
    return stream.bytes;
  }
  bool load(const std::string& bytes, std::size_t piece = 4096) const {
    ClapStream stream{.bytes = bytes, .piece = piece};
    return get<clap_plugin_state_t>(CLAP_EXT_STATE).load(plugin, &stream.in);
  }

  ClapHost host;
  const clap_plugin_t* plugin;
};

}  // namespace zum::test
