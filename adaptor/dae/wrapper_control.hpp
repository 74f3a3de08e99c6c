// One of the effect's parameters as a control of the host, and its value in both forms: the
// control's 32 bits and the parameter's 0 to 1.
#pragma once

#include "adaptor/dae/hostlib/plugin_control.hpp"

namespace zum {

class KvRTASWrapperProcess;

float normalisedOf(std::int32_t controlValue);
/// What is outside of 0 to 1 counts as the nearer end, and what is no number as 0.
std::int32_t controlValueOf(float normalised);

/// [main] The process owns it.
class KvRTASWrapperPluginControl final : public CPluginControl {
 public:
  KvRTASWrapperPluginControl(KvRTASWrapperProcess& owner, std::int32_t parameter);

  std::int32_t getIndex() const override;
  std::int32_t getSteps() const override { return isSwitch ? 2 : -1; }
  /// Takes a decimal number of 0 to 1.
  std::int32_t textToValue(const char* text) const override;
  void getName(char* text, std::int32_t room) const override;
  /// Gives On or Off, or a percentage, without its digits where the room is short.
  void valueToText(std::int32_t controlValue, char* text, std::int32_t room) const override;

 private:
  KvRTASWrapperProcess& process;
  std::int32_t parameterIndex;
  bool isSwitch;
};

}  // namespace zum
