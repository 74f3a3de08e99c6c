// The published C interface of CLAP: the installed headers, and what is younger than them. Numbers,
// names and the order of fields are the published ones.
#pragma once

#include <clap/entry.h>
#include <clap/ext/audio-ports.h>
#include <clap/ext/gui.h>
#include <clap/ext/latency.h>
#include <clap/ext/note-ports.h>
#include <clap/ext/params.h>
#include <clap/ext/state.h>
#include <clap/ext/timer-support.h>
#include <clap/plugin-factory.h>
#include <clap/plugin.h>

extern "C" {

// ---- clap/ext/params.h: stepped, and each step has a name

inline constexpr clap_param_info_flags CLAP_PARAM_IS_ENUM = 1U << 16U;

// ---- clap/ext/tail.h

inline constexpr char CLAP_EXT_TAIL[] = "clap.tail";

struct clap_plugin_tail_t {
  // frames; INT32_MAX and more for an endless one
  std::uint32_t(CLAP_ABI* get)(const clap_plugin_t* plugin);
};

// ---- clap/ext/state-context.h

inline constexpr char CLAP_EXT_STATE_CONTEXT[] = "clap.state-context/2";

enum clap_plugin_state_context_type : std::uint32_t {
  CLAP_STATE_CONTEXT_FOR_PRESET = 1,
  CLAP_STATE_CONTEXT_FOR_DUPLICATE = 2,
  CLAP_STATE_CONTEXT_FOR_PROJECT = 3,
};

struct clap_plugin_state_context_t {
  bool(CLAP_ABI* save)(const clap_plugin_t* plugin, const clap_ostream_t* stream,
                       std::uint32_t context_type);
  bool(CLAP_ABI* load)(const clap_plugin_t* plugin, const clap_istream_t* stream,
                       std::uint32_t context_type);
};

// ---- clap/ext/preset-load.h

inline constexpr char CLAP_EXT_PRESET_LOAD[] = "clap.preset-load/2";
inline constexpr char CLAP_EXT_PRESET_LOAD_COMPAT[] = "clap.preset-load.draft/2";

struct clap_plugin_preset_load_t {
  bool(CLAP_ABI* from_location)(const clap_plugin_t* plugin, std::uint32_t location_kind,
                                const char* location, const char* load_key);
};

struct clap_host_preset_load_t {
  void(CLAP_ABI* on_error)(const clap_host_t* host, std::uint32_t location_kind,
                           const char* location, const char* load_key, std::int32_t os_error,
                           const char* msg);
  void(CLAP_ABI* loaded)(const clap_host_t* host, std::uint32_t location_kind, const char* location,
                         const char* load_key);
};

// ---- clap/ext/remote-controls.h

inline constexpr char CLAP_EXT_REMOTE_CONTROLS[] = "clap.remote-controls/2";
inline constexpr char CLAP_EXT_REMOTE_CONTROLS_COMPAT[] = "clap.remote-controls.draft/2";
inline constexpr std::size_t CLAP_REMOTE_CONTROLS_COUNT = 8;

struct clap_remote_controls_page_t {
  char section_name[CLAP_NAME_SIZE];
  clap_id page_id;
  char page_name[CLAP_NAME_SIZE];
  clap_id param_ids[CLAP_REMOTE_CONTROLS_COUNT];
  bool is_for_preset;
};

struct clap_plugin_remote_controls_t {
  std::uint32_t(CLAP_ABI* count)(const clap_plugin_t* plugin);
  bool(CLAP_ABI* get)(const clap_plugin_t* plugin, std::uint32_t page_index,
                      clap_remote_controls_page_t* page);
};

// ---- clap/factory/preset-discovery.h, clap/universal-plugin-id.h, clap/timestamp.h

inline constexpr char CLAP_PRESET_DISCOVERY_FACTORY_ID[] = "clap.preset-discovery-factory/2";
inline constexpr char CLAP_PRESET_DISCOVERY_FACTORY_ID_COMPAT[] =
    "clap.preset-discovery-factory/draft-2";

using clap_timestamp = std::uint64_t;  // seconds since 1970

struct clap_universal_plugin_id_t {
  const char* abi;
  const char* id;
};

enum clap_preset_discovery_location_kind : std::uint32_t {
  CLAP_PRESET_DISCOVERY_LOCATION_FILE = 0,
  CLAP_PRESET_DISCOVERY_LOCATION_PLUGIN = 1,
};

enum clap_preset_discovery_flags : std::uint32_t {
  CLAP_PRESET_DISCOVERY_IS_FACTORY_CONTENT = 1U << 0U,
  CLAP_PRESET_DISCOVERY_IS_USER_CONTENT = 1U << 1U,
};

struct clap_preset_discovery_metadata_receiver_t {
  void* receiver_data;
  void(CLAP_ABI* on_error)(const clap_preset_discovery_metadata_receiver_t* receiver,
                           std::int32_t os_error, const char* error_message);
  bool(CLAP_ABI* begin_preset)(const clap_preset_discovery_metadata_receiver_t* receiver,
                               const char* name, const char* load_key);
  void(CLAP_ABI* add_plugin_id)(const clap_preset_discovery_metadata_receiver_t* receiver,
                                const clap_universal_plugin_id_t* plugin_id);
  void(CLAP_ABI* set_soundpack_id)(const clap_preset_discovery_metadata_receiver_t* receiver,
                                   const char* soundpack_id);
  void(CLAP_ABI* set_flags)(const clap_preset_discovery_metadata_receiver_t* receiver,
                            std::uint32_t flags);
  void(CLAP_ABI* add_creator)(const clap_preset_discovery_metadata_receiver_t* receiver,
                              const char* creator);
  void(CLAP_ABI* set_description)(const clap_preset_discovery_metadata_receiver_t* receiver,
                                  const char* description);
  void(CLAP_ABI* set_timestamps)(const clap_preset_discovery_metadata_receiver_t* receiver,
                                 clap_timestamp creation_time, clap_timestamp modification_time);
  void(CLAP_ABI* add_feature)(const clap_preset_discovery_metadata_receiver_t* receiver,
                              const char* feature);
  void(CLAP_ABI* add_extra_info)(const clap_preset_discovery_metadata_receiver_t* receiver,
                                 const char* key, const char* value);
};

struct clap_preset_discovery_filetype_t {
  const char* name;
  const char* description;
  const char* file_extension;  // without a dot
};

struct clap_preset_discovery_location_t {
  std::uint32_t flags;
  const char* name;
  std::uint32_t kind;
  const char* location;
};

struct clap_preset_discovery_soundpack_t;

struct clap_preset_discovery_provider_descriptor_t {
  clap_version_t clap_version;
  const char* id;
  const char* name;
  const char* vendor;
};

struct clap_preset_discovery_provider_t {
  const clap_preset_discovery_provider_descriptor_t* desc;
  void* provider_data;
  bool(CLAP_ABI* init)(const clap_preset_discovery_provider_t* provider);
  void(CLAP_ABI* destroy)(const clap_preset_discovery_provider_t* provider);
  bool(CLAP_ABI* get_metadata)(const clap_preset_discovery_provider_t* provider,
                               std::uint32_t location_kind, const char* location,
                               const clap_preset_discovery_metadata_receiver_t* receiver);
  const void*(CLAP_ABI* get_extension)(const clap_preset_discovery_provider_t* provider,
                                       const char* extension_id);
};

struct clap_preset_discovery_indexer_t {
  clap_version_t clap_version;
  const char* name;
  const char* vendor;
  const char* url;
  const char* version;
  void* indexer_data;
  bool(CLAP_ABI* declare_filetype)(const clap_preset_discovery_indexer_t* indexer,
                                   const clap_preset_discovery_filetype_t* filetype);
  bool(CLAP_ABI* declare_location)(const clap_preset_discovery_indexer_t* indexer,
                                   const clap_preset_discovery_location_t* location);
  bool(CLAP_ABI* declare_soundpack)(const clap_preset_discovery_indexer_t* indexer,
                                    const clap_preset_discovery_soundpack_t* soundpack);
  const void*(CLAP_ABI* get_extension)(const clap_preset_discovery_indexer_t* indexer,
                                       const char* extension_id);
};

struct clap_preset_discovery_factory_t {
  std::uint32_t(CLAP_ABI* count)(const clap_preset_discovery_factory_t* factory);
  const clap_preset_discovery_provider_descriptor_t*(CLAP_ABI* get_descriptor)(
      const clap_preset_discovery_factory_t* factory, std::uint32_t index);
  const clap_preset_discovery_provider_t*(CLAP_ABI* create)(
      const clap_preset_discovery_factory_t* factory,
      const clap_preset_discovery_indexer_t* indexer, const char* provider_id);
};

}  // extern "C"
