// The values of a unit that can be set, as its events name them.
#pragma once

enum class UnitValue {
    Frequency,
    Attenuation,
    InputAttenuation,
    AGC,
    AGCOffset,
    Bypass,
    InputLimiting,
    Pelltrim,
    CalMode,
};
