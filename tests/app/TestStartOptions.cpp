// The command line: what it asks for, what it is told, and what the program then does.
#include "support/SearchBench.h"
#include "support/TestMain.h"

#include "app/StartOptions.h"
#include "platform/Application.h"

#include <QProcess>

using Action = StartOptions::Action;

class TestStartOptions : public QObject
{
    Q_OBJECT

private slots:
    void placesAreRead_data();
    void placesAreRead();
    void wrongUseIsToldWithExitCode2_data();
    void wrongUseIsToldWithExitCode2();
    void helpAndVersionArePrinted();
    void withoutOptionsNothingIsAskedFor();
    void simulatedUnitsGoWithAnyStart();
    void theSearchBeginsWhenTheGuardComesUp();
    void theConnectionProbesItsAddressAlone();
    void theProgramItselfAnswersWithoutADisplay_data();
    void theProgramItselfAnswersWithoutADisplay();
};

void TestStartOptions::placesAreRead_data()
{
    QTest::addColumn<QString>("place");
    QTest::addColumn<int>("port");
    QTest::addColumn<int>("address");
    QTest::addRow("COM1:1") << QStringLiteral("COM1:1") << 1 << 1;
    QTest::addRow("COM5") << QStringLiteral("COM5") << 5 << 0;
    QTest::addRow("com255") << QStringLiteral("com255") << 255 << 0;
    QTest::addRow("5") << QStringLiteral("5") << 5 << 0;
    QTest::addRow("COM5:3") << QStringLiteral("COM5:3") << 5 << 3;
    QTest::addRow("7:8") << QStringLiteral("7:8") << 7 << 8;
}

void TestStartOptions::placesAreRead()
{
    QFETCH(const QString, place);
    const StartOptions options = startOptions({QStringLiteral("--connect"), place});
    QCOMPARE(options.action, Action::Connect);
    QTEST(int(options.port), "port");
    QTEST(int(options.address), "address");
}

void TestStartOptions::wrongUseIsToldWithExitCode2_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QString>("told");
    const auto row = [](const char *words, const QString &told) {
        QTest::addRow("%s", words) << QString::fromLatin1(words).split(QLatin1Char(' ')) << told;
    };
    const auto noPort = [](const char *place) {
        return QStringLiteral("\"%1\" is no port: COM1 to COM255, and :1 to :8 for an address")
            .arg(QLatin1String(place));
    };
    row("--bogus", QStringLiteral("Unknown option 'bogus'."));
    row("--connect", QStringLiteral("Missing value after '--connect'."));
    row("--connect COM0", noPort("COM0"));
    row("--connect COM256", noPort("COM256"));
    row("--connect COM5:0", noPort("COM5:0"));
    row("--connect COM5:9", noPort("COM5:9"));
    row("--connect COM5:", noPort("COM5:"));
    row("--connect LPT1", noPort("LPT1"));
    row("--search --connect COM5", QStringLiteral("--search and --connect exclude each other"));
    row("--search now", QStringLiteral("unexpected \"now\""));
}

void TestStartOptions::wrongUseIsToldWithExitCode2()
{
    QFETCH(const QStringList, words);
    QFETCH(const QString, told);
    const StartOptions options = startOptions(words);
    QCOMPARE(options.action, Action::Print);
    QCOMPARE(options.exitCode, 2);
    QCOMPARE(options.text,
             QStringLiteral("keldo-x: ") + told + QStringLiteral(" (see keldo-x --help)\n"));
}

void TestStartOptions::helpAndVersionArePrinted()
{
    for (const char *word : {"--help", "-h"}) {
        const StartOptions help = startOptions({QString::fromLatin1(word)});
        QCOMPARE(help.action, Action::Print);
        QCOMPARE(help.exitCode, 0);
        for (const char *option :
             {"--search", "--connect COM[:ADDRESS]", "--simulator", "--help", "--version"})
            QVERIFY2(help.text.contains(QString::fromLatin1(option)), option);
    }
    for (const char *word : {"--version", "-v"}) {
        const StartOptions version = startOptions({QString::fromLatin1(word)});
        QCOMPARE(version.text,
                 QStringLiteral("keldo-x ") + applicationVersion() + QLatin1Char('\n'));
        QCOMPARE(version.exitCode, 0);
    }
}

void TestStartOptions::withoutOptionsNothingIsAskedFor()
{
    QCOMPARE(startOptions({}).action, Action::None);
    QCOMPARE(startOptions({QStringLiteral("--search")}).action, Action::Search);
    QVERIFY(!startOptions({QStringLiteral("--search")}).simulator);
}

void TestStartOptions::simulatedUnitsGoWithAnyStart()
{
    const QString simulator = QStringLiteral("--simulator");
    const StartOptions alone = startOptions({simulator});
    QCOMPARE(alone.action, Action::None);
    QVERIFY(alone.simulator);
    const StartOptions search = startOptions({simulator, QStringLiteral("--search")});
    QCOMPARE(search.action, Action::Search);
    QVERIFY(search.simulator);
    const StartOptions connect =
        startOptions({QStringLiteral("--connect"), QStringLiteral("COM5:3"), simulator});
    QCOMPARE(connect.action, Action::Connect);
    QCOMPARE(int(connect.port), 5);
    QVERIFY(connect.simulator);
    QCOMPARE(startOptions({simulator, QStringLiteral("--connect"), QStringLiteral("x")}).exitCode,
             2);
}

void TestStartOptions::theSearchBeginsWhenTheGuardComesUp()
{
    SearchBench bench;
    bench.unit(3);
    runWhenReady(startOptions({QStringLiteral("--search")}));
    QTest::qWait(30);
    QCOMPARE(bench.sentTo(3), QStringList());
    app().guard().set(true);
    QTRY_COMPARE(int(app().foundUnits), 1);
    QTRY_VERIFY(app().guard().isUp());
    QVERIFY(bench.calls->contains(QStringLiteral("main.restartPolling")));
    // Once: the guard goes up and down with every handler.
    app().foundUnits = 0;
    app().guard().set(false);
    app().guard().set(true);
    QTest::qWait(30);
    QCOMPARE(int(app().foundUnits), 0);
}

void TestStartOptions::theConnectionProbesItsAddressAlone()
{
    SearchBench bench;
    bench.unit(4, addressedUnit(2));
    bench.unit(4, addressedUnit(5));
    app().guard().set(true);
    runWhenReady(startOptions({QStringLiteral("--connect"), QStringLiteral("COM4:5")}));
    QTRY_COMPARE(int(app().foundUnits), 1);
    QVERIFY(bench.sentTo(4).contains(QStringLiteral(">LISTEN05")));
    QVERIFY(!bench.sentTo(4).contains(QStringLiteral(">LISTEN02")));
}

void TestStartOptions::theProgramItselfAnswersWithoutADisplay_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<int>("exitCode");
    QTest::addRow("--help") << QStringLiteral("--help") << 0;
    QTest::addRow("--version") << QStringLiteral("--version") << 0;
    QTest::addRow("--bogus") << QStringLiteral("--bogus") << 2;
}

void TestStartOptions::theProgramItselfAnswersWithoutADisplay()
{
    QFETCH(const QString, word);
    QFETCH(const int, exitCode);
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *display : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        environment.remove(QString::fromLatin1(display));
    program.setProcessEnvironment(environment);
    program.start(qEnvironmentVariable("KELDOX_BIN_DIR") + QStringLiteral("/keldo-x"), {word});
    QVERIFY(program.waitForFinished(20000));
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), exitCode);
    QVERIFY(exitCode == 0 ? !program.readAllStandardOutput().isEmpty()
                          : !program.readAllStandardError().isEmpty());
}

KELDOX_TEST(TestStartOptions)
#include "TestStartOptions.moc"
