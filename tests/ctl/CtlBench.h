// The console tool as it is run from a shell, with a simulated unit on COM7.
#pragma once

#include "support/Fixture.h"
#include "support/TestMain.h"

#include "sim/SimulatedLine.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

struct Outcome
{
    int code = -1; // -1: it crashed, or did not end
    QString out;
    QString err;

    QStringList lines() const { return out.split(QLatin1Char('\n'), Qt::SkipEmptyParts); }
    QJsonDocument json() const { return QJsonDocument::fromJson(out.toUtf8()); }
};

class CtlBench
{
public:
    static constexpr int port = 7;

    explicit CtlBench(const sim::UnitSettings &settings = {})
        : unit(std::make_shared<sim::SimulatedUnit>(settings))
    {
        line.addUnit(unit);
        fixture.plug(port, line.device());
    }

    static QString program()
    {
        return qEnvironmentVariable("KELDOX_BIN_DIR") + QStringLiteral("/keldo-x-ctl");
    }

    // "get frequency": the words of a command line without quotes.
    static QStringList words(const char *commandLine)
    {
        return QString::fromUtf8(commandLine).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    }

    static Outcome run(const QStringList &arguments, const QByteArray &input = {})
    {
        QProcess process;
        process.start(program(), arguments);
        process.write(input);
        process.closeWriteChannel();
        return outcomeOf(process);
    }

    static Outcome run(const char *commandLine) { return run(words(commandLine)); }

    // On COM7, with a time-out that a test can wait for.
    static Outcome onUnit(const char *commandLine, const QByteArray &input = {})
    {
        return run(words(commandLine) + words("--port COM7 --timeout 0.5"), input);
    }

    static std::unique_ptr<QProcess> start(const QStringList &arguments)
    {
        auto process = std::make_unique<QProcess>();
        process->start(program(), arguments);
        return process;
    }

    static Outcome outcomeOf(QProcess &process)
    {
        constexpr int longest = 60'000;
        const bool ended =
            process.state() == QProcess::NotRunning || process.waitForFinished(longest);
        Outcome outcome;
        if (ended && process.exitStatus() == QProcess::NormalExit)
            outcome.code = process.exitCode();
        outcome.out = QString::fromUtf8(process.readAllStandardOutput());
        outcome.err = QString::fromUtf8(process.readAllStandardError());
        return outcome;
    }

    QStringList commands() const
    {
        QStringList all;
        for (const std::string &command : line.commands())
            all.append(QString::fromStdString(command));
        return all;
    }

    Fixture fixture;
    sim::SimulatedLine line;
    std::shared_ptr<sim::SimulatedUnit> unit;
};

// Tells what came instead.
#define CTL_COMPARE(outcome, expectedCode, expectedOut)                                            \
    do {                                                                                           \
        const Outcome &came = (outcome);                                                           \
        QVERIFY2(came.code == (expectedCode),                                                      \
                 qPrintable(QStringLiteral("code %1: ").arg(came.code) + came.out + came.err));    \
        QCOMPARE(came.out, QString::fromUtf8(expectedOut));                                        \
    } while (false)
