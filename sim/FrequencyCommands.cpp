// The frequency plan and the step commands of the simulated unit.
#include "sim/SimulatedUnit.h"
#include "sim/UnitCommands.h"
#include "sim/UnitText.h"

#include <algorithm>

namespace sim {

namespace {

constexpr double hzPerMHz = 1'000'000.0;
constexpr double highestHz = 20e9;
constexpr int largestNumber = 2'000'000'000;

bool tellsBandwidth(const UnitSettings &unit)
{
    return firmwareNumber(unit.firmware) > 1.6;
}

std::string setMHz(double &targetMHz, double hz)
{
    if (hz <= 0 || hz > highestHz)
        return outOfRange;
    targetMHz = hz / hzPerMHz;
    return numberText(hz);
}

std::string tune(UnitSettings &unit, double value)
{
    std::string reply = setWhole(unit.step, value, 0, unit.maxStep);
    if (reply == outOfRange)
        return reply;
    return isLocked(unit) ? "LOCKED" : "UNLOCKED";
}

std::string setMaxStep(UnitSettings &unit, double value)
{
    std::string reply = setWhole(unit.maxStep, value, 1, largestNumber);
    unit.step = std::min(unit.step, unit.maxStep);
    return reply;
}

std::string setPrescaler(UnitSettings &unit, double value)
{
    if (value != 64 && value != 128)
        return outOfRange;
    return setWhole(unit.prescaler, value, 64, 128);
}

} // namespace

const CommandTable &frequencyCommands()
{
    using Unit = UnitSettings;
    static const CommandTable table{
        {
            {"*START FREQ?", always, [](const Unit &u) { return numberText(u.startMHz) + " MHz"; }},
            {"*IFRQ?", always, [](const Unit &u) { return numberText(u.ifMHz) + " MHz"; }},
            {"*BNDW?", tellsBandwidth, [](const Unit &u) { return numberText(u.bandwidthHz); }},
            {"*CHAN SPACE?", always,
             [](const Unit &u) { return numberText(u.channelSpacingHz) + " Hz"; }},
            {"*MAX STEP?", always, [](const Unit &u) { return numberText(u.maxStep); }},
            {"*STEP?", always, [](const Unit &u) { return numberText(u.step); }},
            {"*PRSC?", always, [](const Unit &u) { return numberText(u.prescaler); }},
        },
        {
            {"*STEP", always, tune},
            {"!SFRQ", always, [](Unit &u, double v) { return setMHz(u.startMHz, v); }},
            {"!IFRQ", always, [](Unit &u, double v) { return setMHz(u.ifMHz, v); }},
            {"!BNDW", tellsBandwidth,
             [](Unit &u, double v) { return setWhole(u.bandwidthHz, v, 0, largestNumber); }},
            {"!CHSP", always,
             [](Unit &u, double v) { return setWhole(u.channelSpacingHz, v, 1, largestNumber); }},
            {"!MXST", always, setMaxStep},
            {"!PRSC", always, setPrescaler},
        }};
    return table;
}

} // namespace sim
