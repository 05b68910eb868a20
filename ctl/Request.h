// The command line of the console tool: what is asked for, checked as far as it can be without a
// unit.
#pragma once

#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>

struct Request
{
    QString command; // "get", "set", ...; empty when there is only text to print
    QStringList words;
    QString text; // of --help and --version

    std::optional<QString> port;     // "COM5" or a device's path
    std::int16_t portNumber() const; // of a port that is named; takes the listing of ports
    std::int16_t address = 0;        // 1 to 8; 0 is a unit without one
    bool json = false;
    bool verbose = false;
    bool simulator = false;     // simulated units beside the real ports
    std::optional<int> timeout; // ms

    std::optional<int> interval;           // ms
    int count = 0;                         // lines; 0 is without end
    double offset = 0;                     // MHz, added to the receiver's frequency
    double tuningStep = 0;                 // MHz
    std::optional<double> lowest, highest; // MHz
};

// The arguments without the program's name. Fails for wrong use. A line to send that is to come
// from standard input is read here.
Request requestOf(const QStringList &arguments);

// The text of --help.
QString usage();
