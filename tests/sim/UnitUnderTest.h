// What the tests of a simulated unit share.
#pragma once

#include "sim/SimulatedUnit.h"

#include <QString>

using sim::SimulatedUnit;
using sim::UnitSettings;

inline constexpr char unknown[] = "UNRECOGNIZED COMMAND";
inline constexpr char tooFar[] = "NUMBER OUT OF RANGE";
inline constexpr char refused[] = "PERMISSION DENIED";

// The reply, or "(silence)".
inline QString reply(SimulatedUnit &unit, const char *command)
{
    const auto answer = unit.answer(command);
    return answer ? QString::fromStdString(*answer) : QStringLiteral("(silence)");
}

inline UnitSettings withFirmware(const char *firmware)
{
    UnitSettings settings;
    settings.firmware = std::string("KELDO-X REV ") + firmware;
    return settings;
}

// A unit of which every command shows a value of its own.
inline UnitSettings distinct()
{
    UnitSettings settings;
    settings.startMHz = 145.5;
    settings.ifMHz = 21.4;
    settings.bandwidthHz = 12500;
    settings.maxStep = 800;
    settings.prescaler = 128;
    settings.step = 77;
    settings.attenuation = 10.5;
    settings.maxAttenuation = 45;
    settings.inputAttenuation = 3;
    settings.agcOffset = -1.5;
    settings.bypass = true;
    settings.inputLimitingMode = 2;
    settings.fineTuning = 40;
    settings.fineCalibration = 41;
    settings.detectorA = 700;
    settings.detectorB = 300;
    settings.deadband = 5;
    settings.agcMemory[36] = 99;
    return settings;
}
