// What tests of searching and connecting start from: recording windows, eight recording rows, a
// recording log, and simulated lines under COM numbers.
#pragma once

#include "app/AppState.h"
#include "app/SlotTable.h"
#include "app/modSearchPorts.h"
#include "sim/SimulatedLine.h"
#include "support/FakeChannelRow.h"
#include "support/Fixture.h"

#include <map>
#include <set>
#include <vector>

// The box of a search without a result, and of a port object whose number has no device.
inline const QString checkConnections = QStringLiteral(
    "Check data and power connections to KELDO-X filter then select the 'connect' from the menu.");

// An addressable unit on a shared line.
inline sim::UnitSettings addressedUnit(int address, double startMHz = 100)
{
    sim::UnitSettings settings;
    settings.identity = "TOVIN-R";
    settings.address = address;
    settings.startMHz = startMHz;
    return settings;
}

// A channels window that lets the test step in whenever a port's turn comes.
class ProbedChannelsWindow : public FakeChannelsWindow
{
public:
    using FakeChannelsWindow::FakeChannelsWindow;

    void setProgress(int value) override
    {
        FakeChannelsWindow::setProgress(value);
        if (onProgress)
            onProgress(value);
    }

    std::function<void(int)> onProgress;
};

// A log that fails on chosen texts, as one whose display is broken would.
class FailingLog : public FakeLog
{
public:
    void LogEvent(const QString &source, const QString &text, bool toFile, bool toDisplay) override
    {
        FakeLog::LogEvent(source, text, toFile, toDisplay);
        if (failsOn.count(text) > 0)
            throw RunTimeError(5);
    }

    std::set<QString> failsOn;
};

class SearchBench
{
    std::map<int, std::unique_ptr<sim::SimulatedLine>> m_lines; // outlive the state

public:
    SearchBench()
    {
        AppState &state = app();
        state.mainWindow = mainWindow;
        state.makers.channelsWindow = [this] { return channels; };
        state.makers.ioMonitor = [this] { return monitor; };
        installEventLog(log);
        state.channelsWindow(); // loads it
        for (int number = 1; number <= 8; ++number) {
            rows[number] = std::make_shared<FakeChannelRow>(number, calls);
            state.channels[number] = rows[number];
        }
        calls->clear();
    }

    // The line under this COM number, plugged in when first asked for.
    sim::SimulatedLine &line(int number)
    {
        auto &slot = m_lines[number];
        if (!slot) {
            slot = std::make_unique<sim::SimulatedLine>();
            fixture.plug(number, slot->device());
        }
        return *slot;
    }

    // A unit on that line.
    std::shared_ptr<sim::SimulatedUnit> unit(int number, sim::UnitSettings settings = {})
    {
        auto made = std::make_shared<sim::SimulatedUnit>(std::move(settings));
        line(number).addUnit(made);
        return made;
    }

    // Something on that line that answers every command with the same text.
    void answerAlways(int number, const std::string &reply)
    {
        line(number).setResponder([reply](const std::string &) { return reply; });
    }

    // Something that takes every command and answers nothing.
    void silence(int number)
    {
        line(number).setResponder([](const std::string &) { return std::nullopt; });
    }

    // The search waits so long for a reply, not 1900 ms.
    void waitOnly(int ms)
    {
        channels->onProgress = [ms](int) {
            if (const auto search = app().search; search && search->seeker())
                search->seeker()->ComPort().settimeOutMs(ms);
        };
    }

    QStringList sentTo(int number)
    {
        QStringList all;
        for (const std::string &command : line(number).commands())
            all.append(QString::fromStdString(command));
        return all;
    }

    // The log without the lines of one source.
    QStringList logOf(const QString &source) const
    {
        QStringList all;
        for (const auto &event : log->events)
            if (event.first == source)
                all.append(event.second);
        return all;
    }

    // Puts a unit object for this COM number into a slot, as an earlier search did.
    std::shared_ptr<clsKeldoX> bind(int slot, int port)
    {
        auto device = std::make_shared<clsKeldoX>();
        device->setConnection(clsKeldoX::SerialPort);
        device->commPort()->setPortNumber(static_cast<std::int16_t>(port));
        app().devices[slot] = device;
        rows[slot]->mDevice = device;
        return device;
    }

    Fixture fixture;
    CallRecord calls = std::make_shared<QStringList>();
    std::shared_ptr<FakeMainWindow> mainWindow = std::make_shared<FakeMainWindow>(calls);
    std::shared_ptr<ProbedChannelsWindow> channels = std::make_shared<ProbedChannelsWindow>(calls);
    std::shared_ptr<FakeIOMonitor> monitor = std::make_shared<FakeIOMonitor>(calls);
    std::shared_ptr<FailingLog> log = std::make_shared<FailingLog>();
    std::array<std::shared_ptr<FakeChannelRow>, 9> rows;
};
