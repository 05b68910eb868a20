// Ports that another program serves, beside those of the system: it lists its lines, one in each
// line of text ("--list": "2  words for people"), and serves each of them on the standard input and
// output of a process of its own ("--stdio 2").
#pragma once

#include <QString>

class ServedPorts
{
public:
    ServedPorts() = default;
    ~ServedPorts(); // takes them away, and ends the processes of those that are not open any more
    ServedPorts(const ServedPorts &) = delete;
    ServedPorts &operator=(const ServedPorts &) = delete;

    // Adds the lines of a program that stands beside this one or in the PATH, as devices of this
    // name ("simulated line"). Handles events until they are known. Returns why there are none, in
    // words for the user, or nothing.
    QString add(const QString &program, const QString &name);
};
