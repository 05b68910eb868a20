// Commands and replies of simulated lines as text.
#pragma once

#include "sim/SimulatedLine.h"

#include <iostream>
#include <string>

namespace sim {

/// Whole lines at once, from the threads of all lines.
void printLine(std::ostream &stream, const std::string &text);
/// Prints what passes a line: "COM3 -> *ID?", "COM3    <- KELDO-X" after the name "COM3 ".
SimulatedLine::Listener exchangeLog(std::ostream &stream, const std::string &name);

} // namespace sim
