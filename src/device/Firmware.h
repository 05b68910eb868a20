// The firmware revisions at which the unit's commands changed. A unit whose revision is not known
// counts as 0, older than all of them.
#pragma once

namespace Firmware {

inline constexpr double lastWithoutAGC = 1.6;
inline constexpr double lastWithoutBandwidth = lastWithoutAGC;
inline constexpr double lastWithoutBypass = lastWithoutAGC;

inline constexpr double firstWithOptions = 2.0;
inline constexpr double firstWithAGCOffset = firstWithOptions;
inline constexpr double lastWithFittedAGCOffset = 3.17; // the option; the command stays

inline constexpr double lastWithoutCalMode = 2.2;
inline constexpr double lastWithEmulatedCalMode = 2.27;

inline constexpr double lastWithoutMaxAtten = 2.3;
inline constexpr double firstWithDetectorQuery = 2.33;

inline constexpr double firstWithInputLimiting = 3.37;
inline constexpr double lastWithOldOptionC = firstWithInputLimiting;

} // namespace Firmware
