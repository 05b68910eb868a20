// AGC, attenuation, bypass and input limiting of the simulated unit.
#include "sim/SimulatedUnit.h"
#include "sim/UnitCommands.h"
#include "sim/UnitText.h"

#include <cmath>

namespace sim {

namespace {

double firmware(const UnitSettings &unit)
{
    return firmwareNumber(unit.firmware);
}

bool setsAgc(const UnitSettings &unit)
{
    return firmware(unit) > 1.6;
}
bool tellsMaximum(const UnitSettings &unit)
{
    return firmware(unit) > 2.3;
}
bool tellsStep(const UnitSettings &unit)
{
    return unit.attenuationStep > 0;
}
bool attenuatesInput(const UnitSettings &unit)
{
    return unit.optionA & OptionInputAttenuator;
}
bool switchesBypass(const UnitSettings &unit)
{
    return firmware(unit) > 1.6;
}
bool limitsInput(const UnitSettings &unit)
{
    return firmware(unit) >= 3.37;
}

// Firmware after 3.17 sets the AGC's level by itself and has lost the command.
bool offsetsAgc(const UnitSettings &unit)
{
    return (unit.optionA & OptionAgc) && firmware(unit) >= 2.0 && firmware(unit) <= 3.17;
}

std::string dB(double value)
{
    return numberText(value) + " dB";
}

// An attenuator goes in its own steps: it takes the nearest one and echoes that.
std::string setLevel(const UnitSettings &unit, double &target, double value, double lowest,
                     double highest)
{
    if (value < lowest || value > highest)
        return outOfRange;
    const double step = unit.attenuationStep;
    target = step > 0 ? std::round(value / step) * step : value;
    return numberText(target);
}

// While AGC runs the number is what the AGC makes of it, and the unit word is missing.
std::string attenuationReply(const UnitSettings &unit)
{
    return unit.agc ? numberText(unit.attenuation) : dB(unit.attenuation);
}

// A unit without AGC takes the command and says that it is off.
std::string setAgc(UnitSettings &unit, double value)
{
    if (unit.optionA & OptionAgc)
        return setSwitch(unit.agc, value);
    bool ignored = false;
    return setSwitch(ignored, value) == outOfRange ? outOfRange : "0";
}

std::string setBypass(UnitSettings &unit, double value)
{
    if (unit.hasBypass)
        return setSwitch(unit.bypass, value);
    bool ignored = false;
    return setSwitch(ignored, value) == outOfRange ? outOfRange : "0";
}

} // namespace

const CommandTable &levelCommands()
{
    using Unit = UnitSettings;
    static const CommandTable table{
        {
            {"*AGC_?", always, [](const Unit &u) { return numberText(u.agc); }},
            {"*ATTN?", always, attenuationReply},
            {"*MXAT?", tellsMaximum, [](const Unit &u) { return numberText(u.maxAttenuation); }},
            {"*ATT STEP?", tellsStep,
             [](const Unit &u) { return numberText(u.attenuationStep) + " dB steps"; }},
            {"INPUT ATTN?", attenuatesInput, [](const Unit &u) { return dB(u.inputAttenuation); }},
            {"*AOFF?", offsetsAgc, [](const Unit &u) { return dB(u.agcOffset); }},
            {"*ACT_?", switchesBypass, [](const Unit &u) { return numberText(u.bypass); }},
            {"InputLimitMode?", limitsInput,
             [](const Unit &u) { return numberText(u.inputLimitingMode); }},
        },
        {
            {"*AGC_", setsAgc, setAgc},
            {"*ATTN", always,
             [](Unit &u, double v) { return setLevel(u, u.attenuation, v, 0, u.maxAttenuation); }},
            {"INPUT ATTN", attenuatesInput,
             [](Unit &u, double v) {
                 return setLevel(u, u.inputAttenuation, v, 0, u.maxInputAttenuation);
             }},
            {"!AOFF", offsetsAgc,
             [](Unit &u, double v) {
                 return setLevel(u, u.agcOffset, v, -u.maxAttenuation, u.maxAttenuation);
             }},
            {"*ACT_", switchesBypass, setBypass},
            {"InputLimitMode", limitsInput,
             [](Unit &u, double v) { return setWhole(u.inputLimitingMode, v, 0, 4); }},
        }};
    return table;
}

} // namespace sim
