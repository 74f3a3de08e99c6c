// [main] The state of an effect that has loaded nothing.
#pragma once

#include "core/parameter_table.hpp"
#include "state/preset_format.hpp"
#include "state/table_xy.hpp"

namespace zum {

class FreshSource final : public PresetSource {
 public:
  int recordCount() const override { return kPresetRows; }
  std::int32_t recordId(int record) const override { return rowAt(record).id; }
  void writeRecord(int record, KvChunk& chunk) const override {
    if (rowAt(record).rule == Rule::table) {
      steps.writeChunk(&chunk);
    } else {
      chunk.putFloat(rowAt(record).initial);
    }
  }
  std::vector<Binding> bindings(int /*controller*/) const override { return {}; }
  std::string name() const override { return "default"; }
  PresetPosition position() const override { return {}; }
  std::vector<Binding> aftertouchBindings() const override { return {}; }

 private:
  static const ParameterRow& rowAt(int row) {
    return parameterRows()[static_cast<std::size_t>(row)];
  }

  KvTableXY steps;
};

}  // namespace zum
