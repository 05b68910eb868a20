// The description of a simulated line in words, as keldo-x-sim takes it on its command line.
#pragma once

#include "sim/SimulatedLine.h"

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace sim {

struct LineSpec
{
    UnitSettings unit;          ///< of every unit on the line, but for its address
    std::vector<int> addresses; ///< none: one unit, which a TOVIN-R has at address 1
    std::string firmware;       ///< a number, or the whole text; empty = the default
    int com = 0;                ///< COM number; 0 = the next free one
    bool paced = false;
    std::string terminator = "\r";
    Fault fault = Fault::None;
    std::string faultPrefix;
    int faultTimes = -1;
    std::chrono::milliseconds lateBy{300};

    /// The line's addresses with the default filled in.
    std::vector<int> unitAddresses() const;
    std::string firmwareText() const; ///< the whole text
    std::string describe() const;     ///< "KELDO-X firmware 3.38"
};

/// Sets one thing by its name ("kind", "firmware", "without" ...). Throws std::invalid_argument
/// with a text for the user when the name or the value is wrong.
void setLineValue(LineSpec &spec, const std::string &key, const std::string &value);
/// "kind=tovin-r,addresses=2+5,paced": starts from the defaults. Throws like setLineValue.
LineSpec parseLineSpec(const std::string &text, const LineSpec &defaults);
/// The line with its units and its fault.
std::unique_ptr<SimulatedLine> makeLine(const LineSpec &spec, std::unique_ptr<Wire> wire);
std::unique_ptr<SimulatedLine> makeLine(const LineSpec &spec); ///< on a pseudo-terminal

} // namespace sim
