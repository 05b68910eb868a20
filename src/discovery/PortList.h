// The ports that can be opened.
#pragma once

#include <QString>

#include <cstdint>
#include <functional>

struct ListedPort
{
    std::int16_t number;
    bool opens;      // one that another program holds counts as one that opens
    QString failure; // why it is not to be had just now: cause and remedy; empty when it is
};

// Tries every port 1 to 255 of a fresh listing and hands over each one that opens, and each device
// that does not. The port is closed again by then, and events are handled in between. Ends early
// when the program ends.
void listOpenablePorts(const std::function<void(const ListedPort &port)> &found);
