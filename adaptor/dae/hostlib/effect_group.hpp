// What a plug-in file offers: who made it, its name, and its types.
#pragma once

#include <cmath>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "adaptor/dae/hostlib/effect_process.hpp"

namespace zum {

/// One type: what goes in, what comes out, and how a process of it is made.
class CEffectTypeRTAS {
 public:
  using Factory = std::unique_ptr<CEffectProcess> (*)(const HostRoutines& host);

  CEffectTypeRTAS(const TypeDescription& type, Factory made) : description(type), factory(made) {}

  const TypeDescription& describe() const { return description; }
  std::unique_ptr<CEffectProcess> make(const HostRoutines& host) const { return factory(host); }

 private:
  TypeDescription description;
  Factory factory;
};

/// [main] The one group of a file.
class CProcessGroup {
 public:
  CProcessGroup() = default;
  CProcessGroup(const CProcessGroup&) = delete;
  CProcessGroup& operator=(const CProcessGroup&) = delete;

  /// The first operation of a group: starts it. Not 0 for an error.
  virtual std::int32_t Initialize() = 0;
  virtual ~CProcessGroup() = default;
};

class CDSPProcessGroup : public CProcessGroup {
 public:
  /// The rate of the host, in Hz.
  float getSampleRate() const { return sampleRate; }
  /// A rate that is no positive number is ignored.
  void setSampleRate(float rate) {
    if (std::isfinite(rate) && rate > 0.0F) sampleRate = rate;
  }

 private:
  float sampleRate = 44100.0F;
};

class CEffectGroup : public CDSPProcessGroup {
 public:
  std::int32_t Initialize() override {
    if (types.empty()) CreateEffectTypes();
    return kNoError;
  }
  GroupDescription describe() const {
    return {manufacturer.c_str(),
            manufacturerId,
            product.c_str(),
            version,
            category,
            static_cast<std::int32_t>(types.size())};
  }
  /// Null for a type that there is not.
  const CEffectTypeRTAS* getType(std::int32_t index) const {
    if (index < 0 || index >= static_cast<std::int32_t>(types.size())) return nullptr;
    return types[static_cast<std::size_t>(index)].get();
  }

 protected:
  virtual void CreateEffectTypes() = 0;
  void addEffectType(std::unique_ptr<CEffectTypeRTAS> type) { types.push_back(std::move(type)); }
  void defineManufacturer(std::string name, std::int32_t id) {
    manufacturer = std::move(name);
    manufacturerId = id;
  }
  void defineProduct(std::string forms, std::int32_t productVersion, std::int32_t categoryValue) {
    product = std::move(forms);
    version = productVersion;
    category = categoryValue;
  }

 private:
  std::string manufacturer;
  std::int32_t manufacturerId = 0;
  std::string product;
  std::int32_t version = 0;
  std::int32_t category = 0;
  std::vector<std::unique_ptr<CEffectTypeRTAS>> types;
};

class CEffectGroupMIDI : public CEffectGroup {};

// [main] The group of the file, null before NewPlugIn and after the last close. Null lets it go.
CEffectGroup* processGroup();
void setProcessGroup(std::unique_ptr<CEffectGroup> group);
/// The routines that the host gets: all of them work on that group.
const PlugInRoutines& routineTable();

}  // namespace zum
