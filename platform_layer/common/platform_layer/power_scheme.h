#pragma once

namespace platform_layer {

// The power schemes Windows ships, and one a user made: what the emulated
// notebook is set to, what this machine's power profile is named as, and
// what the layer maps to and from the schemes' GUIDs.
enum class PowerScheme { HighPerformance, Balanced, PowerSaver, Custom };

} // namespace platform_layer
