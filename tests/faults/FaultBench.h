// What the tests of faults start from: the program's real windows, units on simulated lines under
// COM numbers or on a line in memory, the operator's hand, and what the operator sees.
#pragma once

#include "road/Road.h"

#include "device/clsKeldoX.h"
#include "platform/TestHooks.h"
#include "sim/SimulatedLine.h"
#include "support/MemoryLine.h"
#include "widgets/IndicatorLight.h"
#include "widgets/PanelStatusBar.h"

#include <map>

namespace faults {

using namespace road;

class FaultBench
{
    std::map<int, std::unique_ptr<sim::SimulatedLine>> m_lines; // outlive the windows

public:
    FaultBench() { startProgram(); }

    // A fresh line under this number with a unit of these settings.
    sim::SimulatedLine &plug(int number, const sim::UnitSettings &settings = {})
    {
        return plug(number, std::make_shared<sim::SimulatedUnit>(settings));
    }
    sim::SimulatedLine &plug(int number, const std::shared_ptr<sim::SimulatedUnit> &unit)
    {
        auto &slot = m_lines[number];
        slot = std::make_unique<sim::SimulatedLine>();
        slot->addUnit(unit);
        fixture.plug(number, slot->device());
        return *slot;
    }
    sim::SimulatedLine &line(int number) { return *m_lines.at(number); }
    ExpectedBoxes &boxes() { return fixture.boxes; }

    Fixture fixture;
};

// A unit on a line in memory: what it answers goes through the test's hands, as pieces of bytes.
class MemoryBench
{
public:
    using Change = std::function<QList<QByteArray>(const QByteArray &command, QByteArray reply)>;

    explicit MemoryBench(const sim::UnitSettings &settings = {}) : unit(settings)
    {
        line->answer = [this](const QByteArray &command) {
            commands.append(QString::fromLatin1(command));
            const auto said = unit.answer(command.toStdString());
            const QByteArray reply = said ? QByteArray::fromStdString(*said) + '\r' : QByteArray();
            return change ? change(command, reply) : QList<QByteArray>{reply};
        };
        TestHooks::carryLines([shared = line] { return std::make_unique<MemoryLine>(shared); });
        fixture.plug(5, QStringLiteral("/dev/null"));
        startProgram();
    }

    sim::SimulatedUnit unit;
    Change change;
    QStringList commands;
    std::shared_ptr<MemoryUnit> line = std::make_shared<MemoryUnit>();
    Fixture fixture; // ends first: the windows let go of the line
};

inline void search()
{
    trigger(mainName, "mnuConnectComport");
}

inline QLineEdit *box(const char *windowName, const char *name)
{
    return control<QLineEdit>(windowName, name);
}

inline QString frequency()
{
    return box(mainName, "txtCurrentFreq")->text();
}

inline void tune(const QString &text)
{
    typeInto(box(mainName, "txtCurrentFreq"), text);
}

inline void readAgain()
{
    trigger(mainName, "mnuOptionsReadAgain");
}

// Connects the unit of this channel.
inline void choose(int channel)
{
    auto *option = control<QAbstractButton>(
        channelsName, qPrintable(QStringLiteral("optPortNum_%1").arg(channel)));
    QTest::mouseClick(option, Qt::LeftButton, {}, QPoint(8, option->height() / 2));
}

inline QString panel(const char *windowName, int number)
{
    return control<PanelStatusBar>(windowName, "StatusBar")->panelText(number);
}

inline QColor light()
{
    return control<IndicatorLight>(mainName, "ShapeStatusLight")->fillColor();
}

// What the box says beside its text.
inline QString description(const char *windowName, const char *name)
{
    return box(windowName, name)->accessibleDescription();
}

inline QStringList sent(const sim::SimulatedLine &line)
{
    QStringList all;
    for (const std::string &command : line.commands())
        all.append(QString::fromStdString(command));
    return all;
}

// Both windows show a unit that is connected.
inline void seesConnected(int port)
{
    for (const char *name : {mainName, channelsName})
        QCOMPARE(panel(name, 1), QStringLiteral("CONNECTED ON COM%1").arg(port));
    QVERIFY(box(mainName, "txtCurrentFreq")->isEnabled());
    QVERIFY(app().guard().isUp());
}

// Both windows show that no unit is there, and nothing of the last one.
inline void seesNotConnected()
{
    for (const char *name : {mainName, channelsName})
        QCOMPARE(panel(name, 1), QStringLiteral("NOT CONNECTED"));
    QCOMPARE(frequency(), QString());
    QVERIFY(!box(mainName, "txtCurrentFreq")->isEnabled());
    QVERIFY(!control<QWidget>(mainName, "HScroll1")->isEnabled());
    QCOMPARE(box(channelsName, "txtChanFreq_1")->text(), QString());
    QCOMPARE(box(channelsName, "txtChanAtten_1")->text(), QString());
    QCOMPARE(light(), QColor(IndicatorLight::red));
    QVERIFY(!control<QAction>(mainName, "mnuOptionsReadAgain")->isEnabled());
    QVERIFY(app().guard().isUp());
    QVERIFY(app().searchFinished);
}

// Turns the event loop, without the pauses of a wait of Qt Test, until the condition holds.
inline bool turnUntil(const std::function<bool()> &done, int longestMs = 20'000)
{
    QElapsedTimer clock;
    clock.start();
    QTimer wake; // nothing else may
    wake.start(5);
    while (!done() && clock.elapsed() < longestMs)
        EventQueue::sleepUntilEvent();
    return done();
}

// A heart that beats every millisecond while the event loop turns. Its longest pause is told at
// the end, for the table of figures.
class StallMeter : public QObject
{
public:
    explicit StallMeter(const char *name) : m_name(name)
    {
        m_beat.setTimerType(Qt::PreciseTimer);
        connect(&m_beat, &QTimer::timeout, this, &StallMeter::beat);
        m_beat.start(1);
        m_since.start();
    }
    ~StallMeter() override
    {
        beat();
        qInfo("stall %s %.1f", m_name, m_longest / 1e6);
    }

private:
    void beat()
    {
        const qint64 now = m_since.nsecsElapsed();
        m_longest = std::max(m_longest, now - std::exchange(m_last, now));
    }

    const char *m_name;
    QTimer m_beat;
    QElapsedTimer m_since;
    qint64 m_last = 0;
    qint64 m_longest = 0; // ns
};

} // namespace faults
