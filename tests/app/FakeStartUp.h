// What start-up and the log are handed in tests: a splash, channel bindings and a log file that
// write down what happens to them.
#pragma once

#include "app/AppState.h"
#include "platform/RunTimeError.h"
#include "support/FakeViews.h"

class FakeSplash : public SplashView
{
public:
    explicit FakeSplash(CallRecord record) : calls(std::move(record)) {}

    void show() override { calls->append(QStringLiteral("splash.show")); }
    void advance() override { calls->append(QStringLiteral("splash.advance")); }
    bool ReadyToClose() const override
    {
        calls->append(QStringLiteral("splash.ReadyToClose"));
        return false;
    }
    void unload() override { calls->append(QStringLiteral("splash.unload")); }

    CallRecord calls;
};

// Answers what start-up and the shared helpers ask of a binding.
class FakeChannel : public ChannelRow
{
public:
    explicit FakeChannel(CallRecord record) : calls(std::move(record)) {}

    void setIndex(std::int16_t index) override
    {
        number = index;
        calls->append(QStringLiteral("channel.Index %1").arg(index));
    }
    void DisableControls() override
    {
        if (failing)
            throw RunTimeError(ErrorNumber::ObjectNotSet);
        calls->append(QStringLiteral("channel%1.DisableControls").arg(number));
    }
    void InitChannel() override {}
    void setChannelNumber(std::int16_t) override {}
    std::shared_ptr<clsKeldoX> Device() const override { return nullptr; }
    void setDevice(std::shared_ptr<clsKeldoX>) override {}
    int ComPortNumber() const override { return 0; }
    void setComPortNumber(int) override {}
    void setExists(bool) override {}
    void showPort(const QString &, const QString &, const QString &) override {}
    void setStatus(int) override {}
    void optPortNumClick() override {}
    void ShowControls() override {}
    void readAgain() override {}
    void HideControls() override {}

    CallRecord calls;
    int number = 0;
    bool failing = false;
};

// The log file of a test: its contents outlive it.
struct LogFileRecord
{
    QString pathname;
    QString contents;
    int opened = 0;
    int closed = 0;
    bool openFails = false;
    bool writeFails = false;
    bool writeThrows = false;
};

class FakeLogFile : public LogFile
{
public:
    explicit FakeLogFile(std::shared_ptr<LogFileRecord> file) : record(std::move(file)) {}

    void setPathname(const QString &name) override { record->pathname = name; }
    void OpenForOutput() override
    {
        ++record->opened;
        ok = !record->openFails;
        if (ok)
            record->contents.clear();
    }
    void OpenForAppend() override
    {
        ++record->opened;
        ok = !record->openFails;
    }
    void Line_Output(const QString &text) override
    {
        if (record->writeThrows)
            throw RunTimeError(61);
        ok = !record->writeFails;
        if (ok)
            record->contents += text + QStringLiteral("\r\n");
    }
    void closeFile() override { ++record->closed; }
    bool success() const override { return ok; }
    QString failure() const override { return QStringLiteral("no reason"); }
    qint64 size() const override { return record->contents.size(); }

    std::shared_ptr<LogFileRecord> record;
    bool ok = false;
};
