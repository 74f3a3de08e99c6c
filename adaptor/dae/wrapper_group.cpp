#include "adaptor/dae/wrapper_group.hpp"

#include "adaptor/dae/wrapper_process.hpp"

namespace zum {
namespace {

constexpr const char* kProduct = "ZUM\nZUM\nZUM";  // in full, short, in four characters
constexpr std::int32_t kVersion = 0x10200;
constexpr std::int32_t kCategory = 14;

template <bool stereo>
std::unique_ptr<CEffectProcess> makeProcess(const HostRoutines& host) {
  const auto& group = static_cast<const CEffectGroup&>(*processGroup());
  return std::make_unique<KvRTASWrapperProcess>(host, group.getSampleRate(), stereo);
}

std::unique_ptr<CEffectTypeRTAS> typeOf(std::int32_t id, std::int32_t stem,
                                        CEffectTypeRTAS::Factory factory) {
  const TypeDescription type{.typeId = id,
                             .productId = identifier("kvzm"),
                             .name = kProduct,
                             .sizes = {8192, 1},
                             .inputStem = stem,
                             .outputStem = stem,
                             .thirdStem = 0,
                             .option = 6,
                             .features = {8, 48}};
  return std::make_unique<CEffectTypeRTAS>(type, factory);
}

}  // namespace

KvRTASWrapperGroup::KvRTASWrapperGroup() {
  defineManufacturer("Zelvane", identifier("Zlvn"));
  defineProduct(kProduct, kVersion, kCategory);
}

void KvRTASWrapperGroup::CreateEffectTypes() {
  addEffectType(typeOf(identifier("KvSt"), kStereoStem, makeProcess<true>));
  addEffectType(typeOf(identifier("KvMo"), kMonoStem, makeProcess<false>));
}

}  // namespace zum
