// Identity, firmware revision, option words, address and lock state of the simulated unit.
#include "sim/SimulatedUnit.h"
#include "sim/UnitCommands.h"
#include "sim/UnitText.h"

namespace sim {

namespace {

constexpr int largestWord = 255;

double firmware(const UnitSettings &unit)
{
    return firmwareNumber(unit.firmware);
}

bool hasOptionWords(const UnitSettings &unit)
{
    return firmware(unit) >= 2.0;
}
bool knowsBypass(const UnitSettings &unit)
{
    return firmware(unit) > 1.6;
}

// Option word C was called B up to 3.37.
bool callsItB(const UnitSettings &unit)
{
    return hasOptionWords(unit) && firmware(unit) <= 3.37;
}
bool callsItC(const UnitSettings &unit)
{
    return firmware(unit) > 3.37;
}

std::string setOptionA(UnitSettings &unit, double value)
{
    std::string reply = setWhole(unit.optionA, value, 0, largestWord);
    unit.agc = unit.agc && (unit.optionA & OptionAgc);
    return reply;
}

std::string setOptionC(UnitSettings &unit, double value)
{
    return setWhole(unit.optionC, value, 0, largestWord);
}

std::string fitAgc(UnitSettings &unit, double value)
{
    bool fitted = false;
    std::string reply = setSwitch(fitted, value);
    if (reply != outOfRange)
        setOptionA(unit, fitted ? unit.optionA | OptionAgc : unit.optionA & ~OptionAgc);
    return reply;
}

std::string fitBypass(UnitSettings &unit, double value)
{
    std::string reply = setSwitch(unit.hasBypass, value);
    unit.bypass = unit.bypass && unit.hasBypass;
    return reply;
}

} // namespace

const CommandTable &optionCommands()
{
    using Unit = UnitSettings;
    static const CommandTable table{
        {
            {"*ID?", always, [](const Unit &u) { return u.identity; }},
            {"*REVISION?", always, [](const Unit &u) { return u.firmware; }},
            {"*AOPT?", hasOptionWords, [](const Unit &u) { return numberText(u.optionA); }},
            {"*BOPT?", callsItB, [](const Unit &u) { return numberText(u.optionC); }},
            {"OPTC?", callsItC, [](const Unit &u) { return numberText(u.optionC); }},
            {"*BYP_?", knowsBypass, [](const Unit &u) { return numberText(u.hasBypass); }},
            {"*LOCK?", always,
             [](const Unit &u) { return std::string(isLocked(u) ? "LOCKED" : "UNLOCKED"); }},
        },
        {
            {"!AOPT", hasOptionWords, setOptionA},
            {"!BOPT", callsItB, setOptionC},
            {"OPTC", callsItC, setOptionC},
            {"!AGC", hasOptionWords, fitAgc},
            {"!BYP_", knowsBypass, fitBypass},
            {"!ADDR", always, [](Unit &u, double v) { return setWhole(u.address, v, 0, 99); }},
        }};
    return table;
}

} // namespace sim
