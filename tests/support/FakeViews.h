// Windows that write down what they are told, for tests of what stands below the windows.
#pragma once

#include "app/Views.h"

#include <QMap>
#include <QStringList>

// Every fake appends "operation" or "operation argument" to the calls of its record.
using CallRecord = std::shared_ptr<QStringList>;

class FakeMainWindow : public MainWindowView
{
public:
    explicit FakeMainWindow(CallRecord record = std::make_shared<QStringList>())
        : calls(std::move(record))
    {
    }

    void load() override { note("main.load"); }
    void show() override { note("main.show"); }
    void setDevice(std::shared_ptr<clsKeldoX> unit) override
    {
        mDevice = std::move(unit);
        note("main.setDevice");
    }
    std::shared_ptr<clsKeldoX> device() const override { return mDevice; }
    void stopPolling() override { ++pollingStops; }
    void restartPollingIfChecked() override { note("main.restartPolling"); }
    void setStatusPanel(int panel, const QString &text) override
    {
        panels[panel] = text;
        note(QStringLiteral("main.panel%1 %2").arg(panel).arg(text));
    }
    void setCurrentChannelCaption(const QString &text) override
    {
        caption = text;
        note(QStringLiteral("main.caption ") + text);
    }
    void EnablePresetsIfTheyreValid() override { note("main.enablePresets"); }
    void resetForSearch() override { note("main.resetForSearch"); }
    void bringUpToDate() override { note("main.bringUpToDate"); }
    void showCommunicationFailure(bool cancelled) override
    {
        note("main.red");
        wasCancelled = cancelled;
    }
    void showNotConnected() override { note("main.notConnected"); }
    void showInputAttenuation(std::optional<double> decibels) override
    {
        inputAttenuation = decibels;
    }
    void showProgressLine(const QString &text) override { progressLines.append(text); }
    void unload() override { note("main.unload"); }

    CallRecord calls;
    QStringList progressLines;
    QMap<int, QString> panels;
    QString caption;
    std::optional<double> inputAttenuation;
    std::optional<bool> wasCancelled; // when the light last turned red
    std::shared_ptr<clsKeldoX> mDevice;
    int pollingStops = 0;

private:
    void note(const QString &call) { calls->append(call); }
    void note(const char *call) { calls->append(QString::fromLatin1(call)); }
};

class FakeChannelsWindow : public ChannelsView
{
public:
    explicit FakeChannelsWindow(CallRecord record = std::make_shared<QStringList>())
        : calls(std::move(record))
    {
    }

    void load() override { note("channels.load"); }
    void show() override { note("channels.show"); }
    void setDevice(std::shared_ptr<clsKeldoX> unit) override
    {
        mDevice = std::move(unit);
        note("channels.setDevice");
    }
    void setStatusPanel(int panel, const QString &text) override
    {
        panels[panel] = text;
        note(QStringLiteral("channels.panel%1 <%2>").arg(panel).arg(text));
    }
    void showNotConnected() override { setStatusPanel(1, QStringLiteral("NOT CONNECTED")); }
    void setProgress(int value) override
    {
        progress = value;
        progressValues.append(value);
    }
    void setProgressMaximum(int maximum) override { maximumValue = maximum; }
    int progressMaximum() const override { return maximumValue; }
    void setProgressVisible(bool visible) override { progressVisible = visible; }
    void prepareForSearch() override
    {
        selected = 0;
        note("channels.prepareForSearch");
    }
    void arrangeForUnitsFound() override { note("channels.arrange"); }
    void refreshChannelDisplays() override { note("channels.refresh"); }
    int ChanIndex() const override { return selected; }
    void showProgressLine(const QString &text) override { progressLines.append(text); }
    bool escapePressed() const override { return escape; }
    void clearEscape() override { escape = false; }
    void clearChannelBoxes(int channel) override
    {
        note(QStringLiteral("channels.clearBoxes %1").arg(channel));
    }

    CallRecord calls;
    QStringList progressLines;
    QMap<int, QString> panels;
    std::shared_ptr<clsKeldoX> mDevice;
    QList<int> progressValues;
    int progress = 0;
    int maximumValue = 100;
    bool progressVisible = false;
    int selected = 0;
    bool escape = false;

private:
    void note(const QString &call) { calls->append(call); }
    void note(const char *call) { calls->append(QString::fromLatin1(call)); }
};

class FakeIOMonitor : public IOMonitorView
{
public:
    explicit FakeIOMonitor(CallRecord record = std::make_shared<QStringList>())
        : calls(std::move(record))
    {
    }

    // Source without its date and time is not known here: the whole label is kept.
    void Display(const QString &source, const QString &text) override
    {
        sources.append(source);
        texts.append(text);
    }
    bool isFileLoggingChecked() const override { return fileLogging; }
    void load() override { calls->append(QStringLiteral("monitor.load")); }
    void show() override { calls->append(QStringLiteral("monitor.show")); }
    void closeComPort() override { calls->append(QStringLiteral("monitor.closeComPort")); }

    CallRecord calls;
    QStringList sources;
    QStringList texts;
    bool fileLogging = false;
};

// A log that keeps (source, text) pairs as they were given.
class FakeLog : public EventLog
{
public:
    void LogEvent(const QString &source, const QString &text, bool toFile, bool toDisplay) override
    {
        events.append({source, text});
        flags.append({toFile, toDisplay});
    }
    bool hasDisplay() const override { return true; }

    QStringList lines() const
    {
        QStringList all;
        for (const auto &event : events)
            all.append(event.first + QLatin1Char('|') + event.second);
        return all;
    }

    QList<QPair<QString, QString>> events;
    QList<QPair<bool, bool>> flags;
};
