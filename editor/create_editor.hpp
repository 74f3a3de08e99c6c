// What the plug-in file hands to the effect as its window.
#pragma once

namespace zum {

class EffectEditor;
class KvUniClient;

/// Goes with the effect, which outlives it.
EffectEditor* createEditor(KvUniClient& effect);

}  // namespace zum
