// The factory: what a host asks first, and what it makes effects by.
#include "adaptor/vst3/factory.hpp"

#include <travesty/factory.h>

#include <cstring>

#include "adaptor/vst3/effect.hpp"
#include "adaptor/vst3/ids.hpp"
#include "adaptor/vst3/text16.hpp"

namespace zum::vst3 {
namespace {

constexpr const char* kName = "ZUM";
constexpr const char* kVendor = "Zelvane";
constexpr const char* kCategory = "Audio Module Class";
constexpr const char* kSubCategories = "Fx|Filter";
constexpr const char* kInterfaceVersion = "VST 3.7.4";
constexpr std::int32_t kUnicode = 0x10;
constexpr std::int32_t kManyInstances = 0x7FFFFFFF;

/// What all three descriptions of a class begin with.
template <class Info>
void putClass(Info& info) {
  info = {};
  std::memcpy(info.class_id, kClassId, sizeof(v3_tuid));
  info.cardinality = kManyInstances;
  putBytes(kCategory, info.category);
}

/// Of the process: nobody counts it.
class Factory {
 public:
  explicit Factory(const v3_plugin_factory_cpp& table) : face{&table, this} {}

  void* query(const v3_tuid iid) {
    const bool isKnown =
        v3_tuid_match(iid, v3_funknown_iid) || v3_tuid_match(iid, v3_plugin_factory_iid) ||
        v3_tuid_match(iid, v3_plugin_factory_2_iid) || v3_tuid_match(iid, v3_plugin_factory_3_iid);
    return isKnown ? &face : nullptr;
  }
  std::uint32_t addReference() { return 1; }
  std::uint32_t dropReference() { return 1; }

  Interface<Factory> face;  // the host may hold the address of it
};

v3_result create(const v3_tuid classId, const v3_tuid iid, void** instance) {
  if (instance == nullptr) return V3_INVALID_ARG;
  *instance = nullptr;
  if (classId == nullptr || iid == nullptr || !v3_tuid_match(classId, kClassId)) {
    return V3_NO_INTERFACE;
  }
  auto* const effect = new Effect();
  *instance = effect->query(iid);
  if (*instance != nullptr) return V3_OK;
  effect->dropReference();
  return V3_NO_INTERFACE;
}

constexpr v3_plugin_factory_cpp kFactory = {
    unknownOf<Factory>(),
    {
        .get_factory_info = [](void*, v3_factory_info* info) -> v3_result {
          if (info == nullptr) return V3_INVALID_ARG;
          *info = {};
          putBytes(kVendor, info->vendor);
          info->flags = kUnicode;
          return V3_OK;
        },
        .num_classes = [](void*) -> std::int32_t { return 1; },
        .get_class_info = [](void*, std::int32_t index, v3_class_info* info) -> v3_result {
          if (index != 0 || info == nullptr) return V3_INVALID_ARG;
          putClass(*info);
          putBytes(kName, info->name);
          return V3_OK;
        },
        .create_instance = [](void*, const v3_tuid classId, const v3_tuid iid,
                              void** instance) -> v3_result {
          return answered([&] { return create(classId, iid, instance); }, v3_result{V3_NOMEM});
        },
    },
    {.get_class_info_2 = [](void*, std::int32_t index, v3_class_info_2* info) -> v3_result {
      if (index != 0 || info == nullptr) return V3_INVALID_ARG;
      putClass(*info);
      putBytes(kName, info->name);
      putBytes(kSubCategories, info->sub_categories);
      putBytes(kVendor, info->vendor);
      putBytes(ZUM_VERSION, info->version);
      putBytes(kInterfaceVersion, info->sdk_version);
      return V3_OK;
    }},
    {
        .get_class_info_utf16 = [](void*, std::int32_t index, v3_class_info_3* info) -> v3_result {
          if (index != 0 || info == nullptr) return V3_INVALID_ARG;
          putClass(*info);
          putText(kName, info->name);
          putBytes(kSubCategories, info->sub_categories);
          putText(kVendor, info->vendor);
          putText(ZUM_VERSION, info->version);
          putText(kInterfaceVersion, info->sdk_version);
          return V3_OK;
        },
        .set_host_context = [](void*, v3_funknown**) -> v3_result { return V3_OK; },
    },
};

}  // namespace

void* factory() {
  static Factory only(kFactory);
  return &only.face;
}

}  // namespace zum::vst3
