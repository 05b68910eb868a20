// A unit on a terminal of its own that can stop taking bytes, as a device with a full buffer does.
#pragma once

#include "sim/PseudoTerminal.h"
#include "sim/SimulatedUnit.h"

#include <QTimer>

#include <fcntl.h>
#include <unistd.h>

class StuckUnit : public QObject
{
public:
    StuckUnit() : m_nearEnd(::open(terminal.device().c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK))
    {
        connect(&m_timer, &QTimer::timeout, this, &StuckUnit::serve);
        m_timer.start(1);
    }
    ~StuckUnit() override { ::close(m_nearEnd); }

    // Fills what the system holds for it, so that what is written next stays in the program.
    void stick()
    {
        m_timer.stop();
        const std::string filler(4096, '\0');
        while (::write(m_nearEnd, filler.data(), filler.size()) > 0)
            ;
    }

    sim::PseudoTerminal terminal;
    std::string received;

private:
    void serve()
    {
        const std::string bytes = terminal.read();
        received += bytes;
        m_line += bytes;
        for (auto end = m_line.find('\r'); end != std::string::npos; end = m_line.find('\r')) {
            if (const auto reply = m_unit.answer(m_line.substr(0, end)))
                terminal.write(*reply + '\r');
            m_line.erase(0, end + 1);
        }
    }

    sim::SimulatedUnit m_unit;
    std::string m_line;
    QTimer m_timer;
    int m_nearEnd;
};
