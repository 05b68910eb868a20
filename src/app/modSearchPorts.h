// The port search as the operator sees it: what the windows show while ports are looked at, how
// each unit found is bound to the next channel, and the port list.
#pragma once

#include "discovery/PortSearch.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <memory>

class QComboBox;

// Mode 0 or 1: every port 1 to 255; 2: addresses 1 to 8 on the named port; 3: the named port alone.
// The port is a number as text, a blank in front included; other text is reported as error 13
// and nothing is probed. Ends with channel 1 connected, or with a message that nothing was found.
// Does nothing while a search runs: that one has the ports.
void SearchPorts(std::int16_t mode, const QString &port = {});

// The same on one port at one address; 0 is a unit without an address.
void SearchOneAddress(std::int16_t port, std::int16_t address);

// A search whose progress and finds the windows follow. The running one is app().search.
std::shared_ptr<PortSearch> makeSearch();

// Closes all ports, empties the tables and prepares both windows.
void InitializeStuff();

// These ask the running search.
void SearchAllComPorts();
void SearchAddressesOnPort(std::int16_t port);
void SearchOnePort(std::int16_t port);
void SearchComPorts(std::int16_t port, std::int16_t address);
ProbeResult IdentifyDeviceOnPort(std::int16_t address);

// Binds a unit to slot n and connects it once. Slots end at 8: a ninth unit is reported as
// error 9 and not bound.
void FoundAnKeldoX(std::int16_t port, std::int16_t n, std::int16_t address);

// Closes the IO monitor's port and the port of every unit.
void closeAllComPorts();

// Lists the ports that can be opened, without the highest-numbered one, as " 1", " 3". With none
// at all an error is reported and the list stays disabled. Gives a line of cause and remedy for
// each device that is not to be had.
QStringList PopulateComboBox(QComboBox &combo);
// The same when a port came or went while the list is shown: that no port opens is no news.
QStringList PopulateComboBoxAgain(QComboBox &combo);
// The same for callers whose errors are reported under another source.
QStringList PopulateComboBoxFor(const char *source, QComboBox &combo);
