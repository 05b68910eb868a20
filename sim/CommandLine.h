// The command line of keldo-x-sim: its options, and the lines that they describe.
#pragma once

#include "sim/LineSpec.h"

#include <QCommandLineParser>

namespace sim {

void addOptions(QCommandLineParser &parser);

// What follows throws std::invalid_argument with a text for the user.

/// The lines in the order of the list, with the COM numbers that were asked for.
std::vector<LineSpec> linesFrom(const QCommandLineParser &parser);
/// The number of an option, from 1 to the highest; otherwise when it is not given.
int numberOption(const QCommandLineParser &parser, const char *name, int otherwise, int highest);

} // namespace sim
