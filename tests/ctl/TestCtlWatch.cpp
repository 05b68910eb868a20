// The console tool's other commands to one unit: the watch, a raw line, the presets, and the polite
// end of every wait.
#include "CtlBench.h"

#include "platform/Application.h"
#include "platform/SettingsStore.h"

#include <QDateTime>
#include <QRegularExpression>

#include <csignal>

class TestCtlWatch : public QObject
{
    Q_OBJECT

private slots:
    void aLineAnInterval();
    void linesAsJson();
    void eachLineLeavesAtOnce();
    void aBadMinuteIsALineOfTheLog();
    void aUnitThatIsUnplugged();
    void aRawLineAndItsReply();
    void aRawLineThatTheUnitDoesNotTake_data();
    void aRawLineThatTheUnitDoesNotTake();
    void aRawLineThatNobodyAnswers();
    void aRawLineThatIsNone();
    void aRawLineToAnAddress();
    void presetsAreListed();
    void aPresetIsRecalled();
    void aPresetOutsideTheRange();
    void aWaitForALineToSendEnds();
    void waitsEndPolitely_data();
    void waitsEndPolitely();

private:
    static void store(int preset, const QString &text);
};

void TestCtlWatch::store(int preset, const QString &text)
{
    SettingsStore::write(applicationTitle(), QStringLiteral("Settings"),
                         QStringLiteral("PresetFrequency %1").arg(preset + 3), text);
}

static const QRegularExpression &lineOfALog()
{
    static const QRegularExpression pattern(QStringLiteral(
        R"(^(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d)  (locked|unlocked)  (\d+(?:\.\d+)? MHz)$)"));
    return pattern;
}

void TestCtlWatch::aLineAnInterval()
{
    const CtlBench bench;
    bench.unit->setStep(1860);
    bench.unit->setUnlockedSteps(1860, 1860);
    QElapsedTimer clock;
    clock.start();
    const Outcome outcome = CtlBench::onUnit("watch --count 4 --interval 0.2");
    QCOMPARE(outcome.code, 0);
    QVERIFY(clock.elapsed() >= 600); // three intervals, and none behind the last line
    QCOMPARE(outcome.lines().size(), 4);
    for (const QString &line : outcome.lines()) {
        const auto match = lineOfALog().match(line);
        QVERIFY2(match.hasMatch(), qPrintable(line));
        QCOMPARE(match.captured(2), QStringLiteral("unlocked"));
        QCOMPARE(match.captured(3), QStringLiteral("146.5 MHz"));
        const auto time = QDateTime::fromString(match.captured(1), QStringLiteral("yyyy-MM-dd "
                                                                                  "HH:mm:ss"));
        QVERIFY(std::abs(time.secsTo(QDateTime::currentDateTime())) < 60);
    }
}

void TestCtlWatch::linesAsJson()
{
    const CtlBench bench;
    const Outcome outcome = CtlBench::onUnit("watch --count 2 --interval 0.05 --json");
    QCOMPARE(outcome.code, 0);
    QCOMPARE(outcome.lines().size(), 2);
    for (const QString &line : outcome.lines()) {
        const QJsonObject object = QJsonDocument::fromJson(line.toUtf8()).object();
        QCOMPARE(object[QStringLiteral("lock")], QJsonValue(true));
        QCOMPARE(object[QStringLiteral("frequency")], QJsonValue(100));
        const auto time =
            QDateTime::fromString(object[QStringLiteral("time")].toString(), Qt::ISODate);
        QVERIFY(time.isValid() && std::abs(time.secsTo(QDateTime::currentDateTime())) < 60);
    }
}

void TestCtlWatch::eachLineLeavesAtOnce()
{
    const CtlBench bench;
    const auto watch = CtlBench::start(CtlBench::words("watch --port COM7 --interval 30"));
    QVERIFY(watch->waitForReadyRead(10'000));
    QVERIFY(lineOfALog().match(QString::fromUtf8(watch->readLine()).trimmed()).hasMatch());
    ::kill(static_cast<pid_t>(watch->processId()), SIGTERM);
    QCOMPARE(CtlBench::outcomeOf(*watch).code, 0);
}

void TestCtlWatch::aBadMinuteIsALineOfTheLog()
{
    CtlBench bench;
    bench.line.setFault(sim::Fault::Silence, "*LOCK?", 1);
    const Outcome outcome = CtlBench::onUnit("watch --count 3 --interval 0.05");
    QCOMPARE(outcome.code, 4);
    QCOMPARE(outcome.lines().size(), 3);
    QVERIFY2(outcome.lines().first().contains(QStringLiteral("  No answer from COM7")),
             qPrintable(outcome.out));
    QVERIFY(outcome.lines().last().endsWith(QStringLiteral("  locked  100 MHz")));
    bench.line.setFault(sim::Fault::Garbage, "*STEP?", 1);
    const Outcome json = CtlBench::onUnit("watch --count 2 --interval 0.05 --json");
    QCOMPARE(json.code, 1);
    QVERIFY(QJsonDocument::fromJson(json.lines().first().toUtf8())
                .object()
                .contains(QStringLiteral("trouble")));
}

void TestCtlWatch::aUnitThatIsUnplugged()
{
    CtlBench bench;
    const auto watch = CtlBench::start(CtlBench::words("watch --port COM7 --interval 0.05"));
    QVERIFY(watch->waitForReadyRead(10'000));
    bench.line.unplug();
    const Outcome outcome = CtlBench::outcomeOf(*watch);
    QCOMPARE(outcome.code, 3);
    QVERIFY2(outcome.err.contains(QStringLiteral("is gone")), qPrintable(outcome.err));
}

void TestCtlWatch::aRawLineAndItsReply()
{
    const CtlBench bench;
    CTL_COMPARE(CtlBench::onUnit("raw *REVISION?"), 0, "KELDO-X REV 3.38\n");
    QCOMPARE(bench.commands(), QStringList{QStringLiteral("*REVISION?")});
    QCOMPARE(CtlBench::onUnit("raw *LOCK? --json").json().object(),
             (QJsonObject{{QStringLiteral("reply"), QStringLiteral("LOCKED")}}));
    CTL_COMPARE(CtlBench::run({QStringLiteral("raw"), QStringLiteral("*STEP 12"),
                               QStringLiteral("--port=7")}),
                0, "LOCKED\n");
    QCOMPARE(bench.unit->step(), 12);
    CTL_COMPARE(CtlBench::onUnit("raw -", "*ID?"), 0, "KELDO-X\n");
}

void TestCtlWatch::aRawLineThatTheUnitDoesNotTake_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QByteArray>("reply");
    QTest::newRow("unknown") << QStringLiteral("HELLO") << QByteArray("UNRECOGNIZED COMMAND\n");
    QTest::newRow("number") << QStringLiteral("*ZNSE 300") << QByteArray("NUMBER OUT OF RANGE\n");
    QTest::newRow("refused") << QStringLiteral("*AGC_ 1") << QByteArray("PERMISSION DENIED\n");
}

void TestCtlWatch::aRawLineThatTheUnitDoesNotTake()
{
    QFETCH(QString, line);
    QFETCH(QByteArray, reply);
    const CtlBench bench;
    if (reply.startsWith("PERMISSION"))
        bench.unit->setPassword("secret");
    CTL_COMPARE(CtlBench::run({QStringLiteral("raw"), line, QStringLiteral("--port=COM7")}), 1,
                reply);
}

void TestCtlWatch::aRawLineThatNobodyAnswers()
{
    CtlBench bench;
    bench.line.setFault(sim::Fault::Silence);
    const Outcome outcome = CtlBench::onUnit("raw *ID?");
    CTL_COMPARE(outcome, 4, "");
    QVERIFY(outcome.err.contains(QStringLiteral("No answer from COM7")));
    bench.line.setFault(sim::Fault::Unplug);
    CTL_COMPARE(CtlBench::onUnit("raw *ID?"), 3, "");
}

void TestCtlWatch::aRawLineThatIsNone()
{
    const CtlBench bench;
    for (const QString &line :
         {QString(), QStringLiteral("A\rB"), QStringLiteral("A\nB"), QStringLiteral("\u20ac")})
        QCOMPARE(CtlBench::run({QStringLiteral("raw"), line, QStringLiteral("--port=COM7")}).code,
                 2);
    QCOMPARE(CtlBench::onUnit("raw -").code, 2); // nothing on standard input
    QVERIFY(bench.commands().isEmpty());
}

void TestCtlWatch::aRawLineToAnAddress()
{
    CtlBench bench;
    sim::SimulatedLine shared;
    for (const int address : {2, 5}) {
        sim::UnitSettings settings;
        settings.identity = "TOVIN-R";
        settings.address = address;
        settings.step = address;
        shared.addUnit(std::make_shared<sim::SimulatedUnit>(settings));
    }
    bench.fixture.plug(9, shared.device());
    // Whoever was addressed before is released: two would answer at once.
    for (const char *address : {"2", "5", "2"}) {
        const QByteArray command = QByteArray("raw *STEP? --port COM9:") + address;
        CTL_COMPARE(CtlBench::run(command.constData()), 0, QByteArray(address) + '\n');
    }
}

void TestCtlWatch::presetsAreListed()
{
    store(1, QStringLiteral(" 146.5"));
    store(2, QString());
    store(3, QStringLiteral("nonsense"));
    store(4, QStringLiteral(" 300"));
    CTL_COMPARE(CtlBench::run("preset"), 0,
                "preset 1  146.5 MHz\npreset 2  not set\npreset 3  not set\npreset 4  300 MHz\n");
    QCOMPARE(CtlBench::run("preset --json").json().array(),
             (QJsonArray{146.5, QJsonValue(), QJsonValue(), 300}));
}

void TestCtlWatch::aPresetIsRecalled()
{
    const CtlBench bench;
    store(2, QStringLiteral(" 146.5"));
    CTL_COMPARE(CtlBench::onUnit("preset 2"), 0, "frequency 146.5 MHz\n");
    QCOMPARE(bench.unit->step(), 1860);
    store(2, QString());
    const Outcome unset = CtlBench::onUnit("preset 2");
    CTL_COMPARE(unset, 2, "");
    QVERIFY(unset.err.contains(QStringLiteral("Preset 2 is not set")));
}

void TestCtlWatch::aPresetOutsideTheRange()
{
    const CtlBench bench;
    store(3, QStringLiteral(" 300"));
    CTL_COMPARE(CtlBench::onUnit("preset 3"), 1, "");
    QCOMPARE(bench.unit->step(), 0);
}

void TestCtlWatch::aWaitForALineToSendEnds()
{
    const CtlBench bench;
    const auto process = CtlBench::start(CtlBench::words("raw - --port COM7"));
    QVERIFY(process->waitForStarted());
    QTest::qWait(200); // it has nothing to say, and is not to end by itself
    QCOMPARE(process->state(), QProcess::Running);
    ::kill(static_cast<pid_t>(process->processId()), SIGINT);
    QVERIFY(process->waitForFinished(10'000));
    QVERIFY(bench.commands().isEmpty());
}

void TestCtlWatch::waitsEndPolitely_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<int>("code"); // a watch is ended by hand, a reply that never came is missing
    QTest::newRow("watch") << QByteArray("watch --interval 600") << 0;
    QTest::newRow("get") << QByteArray("get lock") << 1;
    QTest::newRow("set") << QByteArray("set frequency 146.5") << 1;
    QTest::newRow("raw") << QByteArray("raw *LOCK?") << 1;
    QTest::newRow("search") << QByteArray("search --timeout 600") << 1;
}

void TestCtlWatch::waitsEndPolitely()
{
    QFETCH(QByteArray, command);
    QFETCH(int, code);
    for (const int signal : {SIGINT, SIGTERM}) {
        CtlBench bench;
        if (code != 0)
            bench.line.setFault(sim::Fault::Silence);
        const auto process = CtlBench::start(CtlBench::words(command + " --port COM7"));
        QVERIFY(bench.line.waitForCommands(code == 0 ? 5 : 1, std::chrono::seconds(10)));
        ::kill(static_cast<pid_t>(process->processId()), signal);
        const Outcome outcome = CtlBench::outcomeOf(*process);
        QVERIFY2(outcome.code == code, qPrintable(outcome.err));
        QCOMPARE(outcome.err,
                 code == 0 ? QString() : QStringLiteral("keldo-x-ctl: Interrupted.\n"));
        // The port is free: its lock is gone with it.
        bench.line.setFault(sim::Fault::None);
        QCOMPARE(CtlBench::onUnit("get lock").code, 0);
    }
}

KELDOX_TEST(TestCtlWatch)
#include "TestCtlWatch.moc"
