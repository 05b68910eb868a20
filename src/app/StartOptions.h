// The command line: what it asks for, and what it is told.
#pragma once

#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>

struct StartOptions
{
    enum class Action {
        None,
        Search,  // every port
        Connect, // one port, and one address on it unless that is 0
        Print,   // the text, and end with the exit code
    };

    Action action = Action::None;
    std::int16_t port = 0;
    std::int16_t address = 0;
    bool simulator = false; // simulated units beside the real ports
    QString text = {};
    int exitCode = 0; // 2 for wrong use
};

// The arguments without the program's name.
StartOptions startOptions(const QStringList &arguments);

// Does what was asked for as soon as the windows are ready for it.
void runWhenReady(const StartOptions &options);
