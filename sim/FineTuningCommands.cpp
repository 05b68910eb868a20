// The fine offset, its calibration value and the calibrated mode of the simulated unit.
#include "sim/SimulatedUnit.h"
#include "sim/UnitCommands.h"
#include "sim/UnitText.h"

namespace sim {

namespace {

constexpr int mostClicks = 255;

bool fineTunes(const UnitSettings &unit)
{
    return (unit.optionC & OptionFineTuning) && firmwareNumber(unit.firmware) >= 2.0;
}

// Up to 2.27 the mode is the program's affair.
bool hasMode(const UnitSettings &unit)
{
    return fineTunes(unit) && firmwareNumber(unit.firmware) > 2.27;
}

std::string clicks(int value)
{
    return numberText(value) + " clicks";
}

std::string setClicks(int &target, double value)
{
    return setWhole(target, value, 0, mostClicks) == outOfRange ? outOfRange : clicks(target);
}

} // namespace

const CommandTable &fineTuningCommands()
{
    using Unit = UnitSettings;
    static const CommandTable table{
        {
            {"*ZNSE?", fineTunes, [](const Unit &u) { return clicks(u.fineTuning); }},
            {"*ZNCA?", fineTunes, [](const Unit &u) { return clicks(u.fineCalibration); }},
            {"*ZNCM?", hasMode, [](const Unit &u) { return numberText(u.calibratedMode); }},
        },
        {
            {"*ZNSE", fineTunes, [](Unit &u, double v) { return setClicks(u.fineTuning, v); }},
            {"!ZNCA", fineTunes, [](Unit &u, double v) { return setClicks(u.fineCalibration, v); }},
            {"*ZNCM", hasMode, [](Unit &u, double v) { return setSwitch(u.calibratedMode, v); }},
        }};
    return table;
}

} // namespace sim
