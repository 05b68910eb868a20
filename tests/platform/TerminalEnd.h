// The far end of a line in tests of the serial control: a pseudo-terminal that the test reads and
// writes byte by byte, and the number it is plugged in as.
#pragma once

#include "platform/CommControl.h"
#include "platform/RunTimeError.h"
#include "sim/PseudoTerminal.h"
#include "support/Fixture.h"

#include <QtTest>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

class TerminalEnd
{
public:
    TerminalEnd() : nearEnd(::open(terminal.device().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC)) {}
    ~TerminalEnd() { ::close(nearEnd); }
    TerminalEnd(const TerminalEnd &) = delete;
    TerminalEnd &operator=(const TerminalEnd &) = delete;

    QString device() const { return QString::fromStdString(terminal.device()); }

    void send(const QByteArray &text) { terminal.write(text.toStdString()); }

    // Sends and waits, without handling events, until the system holds it all for the program.
    bool sendAndHold(const QByteArray &text)
    {
        terminal.write(text.toStdString());
        QElapsedTimer clock;
        clock.start();
        int held = 0;
        while (held < text.size() && clock.elapsed() < 2000)
            ioctl(nearEnd, FIONREAD, &held);
        return held >= text.size();
    }

    // What came so far; waits until it is at least so many bytes, at most 2 s.
    QByteArray received(qsizetype atLeast)
    {
        [[maybe_unused]] const bool came = QTest::qWaitFor(
            [&] {
                bytes += QByteArray::fromStdString(terminal.read());
                return bytes.size() >= atLeast;
            },
            2000);
        return bytes;
    }

    sim::PseudoTerminal terminal;
    QByteArray bytes;
    int nearEnd; // a look at what the system holds
};

// The number of the error that a call raises; 0 when it raises none.
template <class Call> int raisedNumber(Call &&call)
{
    try {
        call();
    } catch (const RunTimeError &error) {
        return error.number();
    }
    return 0;
}
