// A control as the host knows it: an index, a 32-bit value, and the texts for it.
#pragma once

#include <cstdint>
#include <string>

namespace zum {

/// [main] The order of the operations is that of their slots in the host's table.
class CPluginControl {
 public:
  CPluginControl() = default;
  CPluginControl(const CPluginControl&) = delete;
  CPluginControl& operator=(const CPluginControl&) = delete;

  virtual std::int32_t getIndex() const = 0;
  virtual std::int32_t getId() const { return 0; }
  virtual void setDefaults() {}
  /// -1 for a continuous one.
  virtual std::int32_t getSteps() const = 0;
  virtual std::int32_t textToValue(const char* text) const = 0;
  virtual bool isAutomatable() const { return true; }
  /// At most `room` bytes, terminator included.
  virtual void getName(char* text, std::int32_t room) const = 0;
  virtual std::int32_t getPriority() const { return 0; }
  virtual std::int32_t getOrientation() const { return 0; }
  virtual std::int32_t getMeterType() const { return 1; }
  virtual void valueToText(std::int32_t controlValue, char* text, std::int32_t room) const = 0;
  virtual bool isVisible() const { return true; }
  virtual ~CPluginControl() = default;

  std::int32_t value = INT32_MIN;  // as the host knows it
};

/// Off at the lower half of the range, on above.
class CPluginControl_OnOff final : public CPluginControl {
 public:
  /// `forms` are names of falling length, by line feeds.
  CPluginControl_OnOff(std::int32_t controlIndex, std::int32_t fourCharacters, std::string forms)
      : index(controlIndex), id(fourCharacters), names(std::move(forms)) {}

  std::int32_t getIndex() const override { return index; }
  std::int32_t getId() const override { return id; }
  std::int32_t getSteps() const override { return 2; }
  std::int32_t textToValue(const char* text) const override;
  /// The longest form that fits.
  void getName(char* text, std::int32_t room) const override;
  void valueToText(std::int32_t controlValue, char* text, std::int32_t room) const override;

 private:
  std::int32_t index;
  std::int32_t id;
  std::string names;
};

/// The decimal number that a text begins with, 0 for none.
float decimalNumber(const char* text);

/// Cuts a text to `room` bytes, terminator included.
void copyToRoom(std::string_view from, char* text, std::int32_t room);

}  // namespace zum
