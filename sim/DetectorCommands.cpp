// The power detectors, the deadband and the memory of the AGC table of the simulated unit.
#include "sim/SimulatedUnit.h"
#include "sim/UnitCommands.h"
#include "sim/UnitText.h"

#include <algorithm>

namespace sim {

namespace {

constexpr int firstTableAddress = 36;
constexpr int largestByte = 255;

bool tellsDetectorA(const UnitSettings &unit)
{
    return firmwareNumber(unit.firmware) >= 2.33;
}

std::string setAddress(UnitSettings &unit, double value)
{
    const std::string reply = setWhole(unit.agcAddress, value, 0, largestByte);
    return reply == outOfRange ? reply : "Address " + reply;
}

std::string writeByte(UnitSettings &unit, double value)
{
    int byte = 0;
    std::string reply = setWhole(byte, value, 0, largestByte);
    if (reply == outOfRange)
        return reply;
    unit.agcMemory[static_cast<std::size_t>(unit.agcAddress)] = static_cast<std::uint8_t>(byte);
    return "Address " + numberText(unit.agcAddress) + " Data " + reply;
}

// Stores what the output detector reads now at the address given, in the one byte there is, and
// tells the full reading.
std::string storeDetector(UnitSettings &unit, double value)
{
    int address = 0;
    if (setWhole(address, value, 0, largestByte) == outOfRange)
        return outOfRange;
    unit.agcMemory[static_cast<std::size_t>(address)] =
        static_cast<std::uint8_t>(std::clamp(unit.detectorA, 0, largestByte));
    return "Added " + numberText(unit.detectorA);
}

std::string byteReply(const UnitSettings &unit)
{
    return numberText(unit.agcMemory[static_cast<std::size_t>(unit.agcAddress)]);
}

} // namespace

const CommandTable &detectorCommands()
{
    using Unit = UnitSettings;
    static const CommandTable table{
        {
            {"DETA?", tellsDetectorA, [](const Unit &u) { return numberText(u.detectorA); }},
            {"DETB?", always, [](const Unit &u) { return numberText(u.detectorB); }},
            {"*DBND?", always, [](const Unit &u) { return numberText(u.deadband); }},
            {"*ATAB?", always, [](const Unit &) { return numberText(firstTableAddress); }},
            {"*DATA?", always, byteReply},
        },
        {
            {"!DBND", always,
             [](Unit &u, double v) { return setWhole(u.deadband, v, 0, largestByte); }},
            {"!SRCE", always, setAddress},
            {"!WDAT", always, writeByte},
            {"!ATAB", always, storeDetector},
        }};
    return table;
}

} // namespace sim
