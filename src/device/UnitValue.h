// The values of a unit that are set and shown, by which it is told whether one is confirmed.
#pragma once

#include <QObject>

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
Q_DECLARE_METATYPE(UnitValue)
