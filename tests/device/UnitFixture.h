// What the tests of the unit's object share: a simulated unit at the end of a line that is COM n,
// the object connected to it, and a record of the events that it raises, in their order.
#pragma once

#include "app/AppState.h"
#include "app/Units.h"
#include "device/clsKeldoX.h"
#include "sim/SimulatedLine.h"
#include "support/FakeViews.h"
#include "support/Fixture.h"
#include "support/TestMain.h"

#include <map>
#include <mutex>

// Values as the event record writes them.
inline QString text(bool value)
{
    return value ? QStringLiteral("True") : QStringLiteral("False");
}
inline QString text(double value)
{
    return QString::number(value, 'g', 12);
}
inline QString text(int value)
{
    return QString::number(value);
}

// "StatusChange 0", "FreqChange 2 100.05", in the order in which they were raised.
class EventRecord : public QObject
{
public:
    void follow(clsKeldoX &unit)
    {
        const auto note = [this](const char *event, const QString &arguments = {}) {
            lines.append((QString::fromLatin1(event) + QLatin1Char(' ') + arguments).trimmed());
        };
        using Unit = clsKeldoX;
        connect(&unit, &Unit::FreqChange, this, [note](qint32 step, double megahertz) {
            note("FreqChange", text(step) + QLatin1Char(' ') + text(megahertz));
        });
        connect(&unit, &Unit::QuickFreqChange, this, [note](qint32 step, double megahertz) {
            note("QuickFreqChange", text(step) + QLatin1Char(' ') + text(megahertz));
        });
        connect(&unit, &Unit::AGCChange, this, [note](bool on) { note("AGCChange", text(on)); });
        connect(&unit, &Unit::AGCOffsetChange, this,
                [note](double decibels) { note("AGCOffsetChange", text(decibels)); });
        connect(&unit, &Unit::AttenChange, this,
                [note](double decibels) { note("AttenChange", text(decibels)); });
        connect(&unit, &Unit::InputAttenChange, this,
                [note](double decibels) { note("InputAttenChange", text(decibels)); });
        connect(&unit, &Unit::DUTChange, this, [note] { note("DUTChange"); });
        connect(&unit, &Unit::StatusChange, this,
                [note](qint32 status) { note("StatusChange", text(status)); });
        connect(&unit, &Unit::DUTError, this,
                [note](bool error) { note("DUTError", text(error)); });
        connect(&unit, &Unit::ZNChange, this,
                [note](qint16 clicks) { note("ZNChange", text(clicks)); });
        connect(&unit, &Unit::BypassChange, this,
                [note](bool on) { note("BypassChange", text(on)); });
        connect(&unit, &Unit::ZNcalModeChange, this,
                [note](bool &on) { note("ZNcalModeChange", text(on)); });
        connect(&unit, &Unit::GetPassword, this, [note] { note("GetPassword"); });
        connect(&unit, &Unit::InputLimitingModeChange, this,
                [note](qint16 mode) { note("InputLimitingModeChange", text(mode)); });
    }

    QStringList take() { return std::exchange(lines, {}); }

    QStringList lines;
};

// Replies that a test puts in place of the unit's own.
class Script
{
public:
    void set(const std::string &command, const std::optional<std::string> &reply)
    {
        const std::lock_guard lock(m_mutex);
        m_replies[command] = reply;
    }
    void clear()
    {
        const std::lock_guard lock(m_mutex);
        m_replies.clear();
    }
    std::optional<std::string> answer(sim::SimulatedUnit &unit, const std::string &command)
    {
        const std::lock_guard lock(m_mutex);
        const auto scripted = m_replies.find(command);
        if (scripted != m_replies.end())
            return scripted->second;
        auto reply = unit.answer(command);
        return reply ? reply : sim::SimulatedUnit::answerForTheLine(command);
    }

private:
    std::mutex m_mutex;
    std::map<std::string, std::optional<std::string>> m_replies;
};

inline sim::UnitSettings unitWithFirmware(const std::string &firmware)
{
    sim::UnitSettings settings;
    settings.firmware = "KELDO-X REV " + firmware;
    settings.maxStep = 400; // 100 to 110 MHz in steps of 25 kHz
    return settings;
}

// Every command on the line since the last call. A mark sent last makes sure that nothing is still
// on its way.
inline QStringList commandsSent(clsKeldoX &unit, sim::SimulatedLine &line)
{
    static constexpr char mark[] = "MARK";
    if (unit.PortIsOpen())
        unit.deviceWrite(QString::fromLatin1(mark));
    QStringList all;
    for (const std::string &command : line.commands())
        if (command != mark)
            all.append(QString::fromStdString(command));
    line.clearCommands();
    return all;
}

class UnitFixture
{
public:
    static constexpr int port = 3;
    static constexpr int replyTimeMs = 3000; // far longer than any reply of the simulated unit

    explicit UnitFixture(const sim::UnitSettings &settings = unitWithFirmware("3.38"))
        : simulated(std::make_shared<sim::SimulatedUnit>(settings))
    {
        line.setResponder([units = simulated, scripted = script](const std::string &command) {
            return scripted->answer(*units, command);
        });
        fixture.plug(port, line.device());
        app().mainWindow = window;
        installEventLog(log);
        unit->setConnection(clsKeldoX::SerialPort);
        unit->commPort()->setPortNumber(port);
        events.follow(*unit);
    }

    // Opens the port and asks the unit nothing.
    void open(int timeOutMs = replyTimeMs)
    {
        unit->InitThePort();
        QVERIFY(unit->PortIsOpen());
        unit->commPort()->settimeOutMs(timeOutMs);
        forget();
    }
    // The first connection, whose commands and events are forgotten.
    void connectUnit(int timeOutMs = replyTimeMs)
    {
        QVERIFY(unit->Initialize());
        unit->commPort()->settimeOutMs(timeOutMs);
        forget();
    }
    // The unit answers this command so; nothing is silence.
    void reply(const std::string &command, const std::optional<std::string> &text)
    {
        script->set(command, text);
    }
    void forget()
    {
        line.clearCommands();
        events.take();
        log->events.clear();
        window->pollingStops = 0;
    }
    QStringList sent() { return commandsSent(*unit, line); }
    ExpectedBoxes &boxes() { return fixture.boxes; }

    Fixture fixture;
    sim::SimulatedLine line;
    std::shared_ptr<sim::SimulatedUnit> simulated;
    std::shared_ptr<Script> script = std::make_shared<Script>();
    std::shared_ptr<FakeMainWindow> window = std::make_shared<FakeMainWindow>();
    std::shared_ptr<FakeLog> log = std::make_shared<FakeLog>();
    std::shared_ptr<clsKeldoX> unit = makeUnit();
    EventRecord events;
};

// Columns of test tables.
using Read = std::function<QString(clsKeldoX &)>;
using Act = std::function<void(clsKeldoX &)>;

// "a|b|c" as a list; empty for an empty text.
inline QStringList listed(const char *joined)
{
    return QString::fromLatin1(joined).split(QLatin1Char('|'), Qt::SkipEmptyParts);
}
