// A serial port object on a simulated line that is plugged in as COM 3.
#pragma once

#include "port/clsCommPort.h"
#include "sim/SimulatedLine.h"
#include "support/FakeViews.h"
#include "support/Fixture.h"

#include <QtTest>

#include <optional>
#include <string>

class CommPortOnLine
{
public:
    CommPortOnLine()
    {
        fixture.plug(3, line.device());
        port->setPortNumber(3);
        port->settimeOutMs(2000);
    }

    // Opens the port; every command is answered with this from now on.
    void openWithReply(const std::optional<std::string> &reply)
    {
        line.setResponder([reply](const std::string &) { return reply; });
        QVERIFY(port->InitializePort());
    }

    CommControl &control() { return *port->host().CommCtl; }

    // The commands that the line heard, once it heard so many.
    QStringList commands(std::size_t count)
    {
        using namespace std::chrono_literals;
        line.waitForCommands(count, 2000ms);
        QStringList all;
        for (const std::string &command : line.commands())
            all.append(QString::fromStdString(command));
        return all;
    }

    Fixture fixture;
    sim::SimulatedLine line;
    std::unique_ptr<clsCommPort> port = std::make_unique<clsCommPort>();
};
