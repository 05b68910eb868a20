// The port search: probes serial ports, tells units from everything else that answers, and binds
// each unit found to the next channel.
#pragma once

#include <QString>

#include <cstdint>

class QComboBox;

// What IdentifyDeviceOnPort finds.
enum class ProbeResult {
    UnitFound = 0,
    Loopback = 1,   // echoes the query
    AnswersOne = 2, // "1"
    AORRadio = 3,
    Prompt = 4, // "?>"
    Silent = 5,
    Other = 6,
};

// Mode 0 or 1: every port 1 to 255; 2: addresses 1 to 8 on the named port; 3: the named port alone.
// The port is a number as text, a blank in front included; other text is reported as error 13
// and nothing is probed. Ends with channel 1 connected, or with a message that nothing was found.
void SearchPorts(std::int16_t mode, const QString &port = {});

// Closes all ports, empties the tables and prepares both windows.
void InitializeStuff();

// Where no unit was found and the main window still says that ports are searched, it says
// "NOT CONNECTED". A loopback adaptor's line stays, and so does what connecting a unit has said.
void endSearchStatus();

void SearchAllComPorts();
void SearchAddressesOnPort(std::int16_t port);
void SearchOnePort(std::int16_t port);
// Probes one port at one address.
void SearchComPorts(std::int16_t port, std::int16_t address);

// On the port that the shared seeker has open.
ProbeResult IdentifyDeviceOnPort(std::int16_t address);

// Binds a unit to slot n and connects it once. Slots end at 8: a ninth unit is reported as
// error 9 and not bound.
void FoundAnKeldoX(std::int16_t port, std::int16_t n, std::int16_t address);

// Closes the IO monitor's port and the port of every unit.
void closeAllComPorts();

// Lists the ports that can be opened, without the highest-numbered one, as " 1", " 3". With none
// at all an error is reported and the list stays disabled.
void PopulateComboBox(QComboBox &combo);
// The same for callers whose errors are reported under another source.
void PopulateComboBoxFor(const char *source, QComboBox &combo);
