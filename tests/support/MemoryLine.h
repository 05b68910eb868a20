// A line that lies in memory: what the program writes is answered at once by a function, without a
// device, a thread or a clock. It stands where the system's port would.
#pragma once

#include "platform/SerialLine.h"
#include "platform/TestHooks.h"

#include <QTimer>

// What all lines of a test share: who answers, and what was sent.
struct MemoryUnit
{
    // Takes a command without its carriage return; the bytes come back as they are, in these
    // pieces. No piece is silence.
    std::function<QList<QByteArray>(const QByteArray &command)> answer;
    int commands = 0;
    // The next piece waits until the event loop has come round, as on a line that keeps pouring.
    bool pours = false;
    int poured = 0; // pieces
};

class MemoryLine : public SerialLine
{
public:
    explicit MemoryLine(std::shared_ptr<MemoryUnit> unit) : m_unit(std::move(unit)) {}

    // Until the test ends every port is a line to this unit, and COM1 to COM9 exist.
    static void install(const std::shared_ptr<MemoryUnit> &unit)
    {
        TestHooks::carryLines([unit] { return std::make_unique<MemoryLine>(unit); });
        TestHooks::listPorts([] {
            QList<PortDirectory::Device> ports;
            for (int number = 1; number <= 9; ++number)
                ports.append({QStringLiteral("/dev/null"), QStringLiteral("memory%1").arg(number),
                              QStringLiteral("line in memory"), QString::number(number)});
            return ports;
        });
    }

    void open(const QString & /*location*/, const Settings & /*settings*/) override
    {
        m_open = true;
    }
    void close() override
    {
        m_open = false;
        m_arrived.clear();
        m_command.clear();
        ++m_opening;
    }
    bool isOpen() const override { return m_open; }

    QByteArray readAll() override { return std::exchange(m_arrived, {}); }
    void write(const QByteArray &bytes) override
    {
        for (const char byte : bytes) {
            if (byte != '\r') {
                m_command.append(byte);
                continue;
            }
            ++m_unit->commands;
            deliver(m_unit->answer(std::exchange(m_command, {})));
        }
    }
    qint64 bytesToWrite() const override { return 0; }

    void clearInput() override { m_arrived.clear(); }
    void clearOutput() override { m_command.clear(); }
    bool holdsInput() const override { return false; }

    void setDataTerminalReady(bool /*on*/) override {}
    void setRequestToSend(bool /*on*/) override {}

private:
    // Each piece in a turn of the event loop of its own.
    void deliver(const QList<QByteArray> &pieces)
    {
        if (m_unit->pours) {
            pour(pieces, 0);
            return;
        }
        for (const QByteArray &piece : pieces)
            QMetaObject::invokeMethod(
                this,
                [this, piece, opening = m_opening] {
                    if (!m_open || opening != m_opening)
                        return;
                    m_arrived.append(piece);
                    emit Arrived();
                },
                Qt::QueuedConnection);
    }

    void pour(const QList<QByteArray> &pieces, qsizetype next)
    {
        if (next == pieces.size())
            return;
        QTimer::singleShot(0, this, [this, pieces, next, opening = m_opening] {
            if (!m_open || opening != m_opening)
                return;
            ++m_unit->poured;
            m_arrived.append(pieces.at(next));
            pour(pieces, next + 1);
            emit Arrived();
        });
    }

    std::shared_ptr<MemoryUnit> m_unit;
    QByteArray m_arrived;
    QByteArray m_command;
    int m_opening = 0;
    bool m_open = false;
};
