// Ports as the console tool sees them: their list, what keeps one from being used, and the search.
#include "CtlBench.h"

#include <QSerialPort>

#include <unistd.h>

class TestCtlPorts : public QObject
{
    Q_OBJECT

private slots:
    void portsAreListed();
    void portsAreListedAsJson();
    void aPortInUseNamesItsHolder();
    void aPortInUseIsNotTakenForASearchOrACommand_data();
    void aPortInUseIsNotTakenForASearchOrACommand();
    void aPortWithoutAccessRight();
    void aPortThatIsNotThere_data();
    void aPortThatIsNotThere();
    void aDeviceIsNamedByItsPath();
    void aDeviceThatIsNotLinkedIsNamedByItsPath();
    void theSearchFindsTheUnit();
    void theSearchFindsAddressedUnits();
    void theSearchFindsOneAddress();
    void aSearchThatFindsNothing();
    void aSearchOfAPortThatIsHeld();
    void anAddressedUnitIsTuned();
    void theSearchShowsTheWire();
    void simulatedUnitsAreThereForTheAsking();

private:
    // Held as another program would hold it.
    static bool hold(QSerialPort &port, const CtlBench &bench);
};

bool TestCtlPorts::hold(QSerialPort &port, const CtlBench &bench)
{
    port.setPortName(QString::fromStdString(bench.line.device()));
    return port.open(QIODevice::ReadWrite);
}

void TestCtlPorts::portsAreListed()
{
    const CtlBench bench;
    const Outcome outcome = CtlBench::run("ports");
    QCOMPARE(outcome.code, 0);
    QVERIFY2(outcome.lines().contains(QStringLiteral("COM7  %1, linked as com7")
                                          .arg(QString::fromStdString(bench.line.device()))),
             qPrintable(outcome.out));
    QVERIFY(bench.commands().isEmpty());
}

static QJsonObject entryOf(const Outcome &outcome, const char *port)
{
    for (const QJsonValue &entry : outcome.json().array())
        if (entry[QStringLiteral("port")] == QLatin1String(port))
            return entry.toObject();
    return {};
}

void TestCtlPorts::portsAreListedAsJson()
{
    const CtlBench bench;
    const QString device = QString::fromStdString(bench.line.device());
    const Outcome outcome = CtlBench::run("ports --json");
    QCOMPARE(outcome.code, 0);
    QCOMPARE(entryOf(outcome, "COM7"),
             (QJsonObject{{QStringLiteral("port"), QStringLiteral("COM7")},
                          {QStringLiteral("device"), device},
                          {QStringLiteral("description"), QStringLiteral("linked as com7")},
                          {QStringLiteral("usable"), true}}));
}

void TestCtlPorts::aPortInUseNamesItsHolder()
{
    const CtlBench bench;
    QSerialPort other;
    QVERIFY(hold(other, bench));
    const QString reason = QStringLiteral("%1 is in use by tests_ctl (process %2). Close that "
                                          "program, then try again.")
                               .arg(QString::fromStdString(bench.line.device()))
                               .arg(QCoreApplication::applicationPid());
    const Outcome text = CtlBench::run("ports");
    QCOMPARE(text.code, 0);
    QVERIFY2(text.out.contains(reason), qPrintable(text.out));
    const QJsonObject entry = entryOf(CtlBench::run("ports --json"), "COM7");
    QCOMPARE(entry[QStringLiteral("usable")], QJsonValue(false));
    QCOMPARE(entry[QStringLiteral("reason")].toString(), reason);
    const Outcome refused = CtlBench::onUnit("set frequency 146.5MHz");
    QCOMPARE(refused.code, 3);
    QCOMPARE(refused.err, QStringLiteral("keldo-x-ctl: %1\n").arg(reason));
}

void TestCtlPorts::aPortInUseIsNotTakenForASearchOrACommand_data()
{
    QTest::addColumn<QByteArray>("command");
    for (const char *command :
         {"search", "get lock", "set agc on", "watch --count 1", "raw *ID?", "follow localhost"})
        QTest::newRow(command) << QByteArray(command);
}

void TestCtlPorts::aPortInUseIsNotTakenForASearchOrACommand()
{
    QFETCH(QByteArray, command);
    const CtlBench bench;
    QSerialPort other;
    QVERIFY(hold(other, bench));
    const Outcome outcome = CtlBench::onUnit(command.constData());
    CTL_COMPARE(outcome, 3, "");
    QVERIFY2(outcome.err.contains(QStringLiteral("is in use by tests_ctl")),
             qPrintable(outcome.err));
    QVERIFY(bench.commands().isEmpty());
}

// Root may open everything: as root the tool is run as somebody who may not.
void TestCtlPorts::aPortWithoutAccessRight()
{
    const CtlBench bench;
    const QString device = QString::fromStdString(bench.line.device());
    QVERIFY(QFile::setPermissions(device, QFile::Permissions()));
    QStringList command{CtlBench::program(), QStringLiteral("get"), QStringLiteral("lock"),
                        QStringLiteral("--port"), device};
    if (geteuid() == 0)
        command = CtlBench::words("setpriv --reuid=65534 --regid=65534 --clear-groups") + command;
    QProcess process;
    process.start(command.takeFirst(), command);
    if (!process.waitForStarted())
        QSKIP("setpriv is not installed");
    const Outcome outcome = CtlBench::outcomeOf(process);
    if (outcome.err.startsWith(QStringLiteral("setpriv:")))
        QSKIP("this root may not become somebody else, or that one may not run the tool");
    CTL_COMPARE(outcome, 3, "");
    QVERIFY2(outcome.err.startsWith(
                 QStringLiteral("keldo-x-ctl: No permission to open %1.").arg(device)),
             qPrintable(outcome.err));
}

void TestCtlPorts::aPortThatIsNotThere_data()
{
    QTest::addColumn<QByteArray>("port");
    QTest::addColumn<QString>("message");
    QTest::newRow("number") << QByteArray("COM99") << QStringLiteral("There is no COM99.");
    QTest::newRow("device") << QByteArray("/dev/no-such-port")
                            << QStringLiteral("/dev/no-such-port is not there.");
    QTest::newRow("link") << QByteArray("COM8") << QStringLiteral("/dev/unplugged is not there.");
}

void TestCtlPorts::aPortThatIsNotThere()
{
    QFETCH(QByteArray, port);
    QFETCH(QString, message);
    CtlBench bench;
    bench.fixture.plug(8, QStringLiteral("/dev/unplugged"));
    for (const QByteArray command :
         {"get lock --port ", "set agc on --port ", "raw *ID? --port "}) {
        const Outcome outcome = CtlBench::run((command + port).constData());
        CTL_COMPARE(outcome, 3, "");
        QVERIFY2(outcome.err.startsWith(QStringLiteral("keldo-x-ctl: ") + message),
                 qPrintable(outcome.err));
    }
    QCOMPARE(CtlBench::run((QByteArray("search --port ") + port).constData()).code, 3);
}

void TestCtlPorts::aDeviceIsNamedByItsPath()
{
    const CtlBench bench;
    const QByteArray command = "get lock --port " + QByteArray::fromStdString(bench.line.device());
    CTL_COMPARE(CtlBench::run(command.constData()), 0, "lock locked\n");
}

void TestCtlPorts::aDeviceThatIsNotLinkedIsNamedByItsPath()
{
    CtlBench bench;
    bench.fixture.unplug(CtlBench::port);
    const QString link = QDir::temp().filePath(
        QStringLiteral("keldo-x-test-%1").arg(QCoreApplication::applicationPid()));
    QVERIFY(QFile::link(QString::fromStdString(bench.line.device()), link));
    const Outcome outcome = CtlBench::run(
        {QStringLiteral("get"), QStringLiteral("lock"), QStringLiteral("--port"), link});
    QFile::remove(link);
    CTL_COMPARE(outcome, 0, "lock locked\n");
}

void TestCtlPorts::theSearchFindsTheUnit()
{
    const CtlBench bench;
    const QString device = QString::fromStdString(bench.line.device());
    const Outcome text = CtlBench::run("search --timeout 0.3");
    QCOMPARE(text.code, 0);
    QVERIFY2(text.lines().contains(QStringLiteral("COM7  ") + device), qPrintable(text.out));
    const QJsonObject found{{QStringLiteral("port"), QStringLiteral("COM7")},
                            {QStringLiteral("address"), 0},
                            {QStringLiteral("device"), device}};
    QVERIFY(CtlBench::run("search --timeout 0.3 --json").json().array().contains(found));
    QCOMPARE(CtlBench::run("search --port COM7 --json").json().array(), QJsonArray{found});
}

static void addAddressedUnit(sim::SimulatedLine &line, int address)
{
    sim::UnitSettings settings;
    settings.identity = "TOVIN-R";
    settings.address = address;
    line.addUnit(std::make_shared<sim::SimulatedUnit>(settings));
}

void TestCtlPorts::theSearchFindsAddressedUnits()
{
    CtlBench bench;
    sim::SimulatedLine shared;
    addAddressedUnit(shared, 2);
    addAddressedUnit(shared, 5);
    bench.fixture.plug(9, shared.device());
    const QString device = QString::fromStdString(shared.device());
    const Outcome outcome = CtlBench::run("search --port COM9 --timeout 0.3");
    CTL_COMPARE(outcome, 0,
                QStringLiteral("COM9 address 2  %1\nCOM9 address 5  %1\n").arg(device).toUtf8());
}

void TestCtlPorts::theSearchFindsOneAddress()
{
    CtlBench bench;
    sim::SimulatedLine shared;
    addAddressedUnit(shared, 2);
    bench.fixture.plug(9, shared.device());
    QCOMPARE(CtlBench::run("search --port COM9:2 --timeout 0.3").code, 0);
    QCOMPARE(CtlBench::run("search --port COM9:3 --timeout 0.3").code, 4);
}

void TestCtlPorts::aSearchThatFindsNothing()
{
    CtlBench bench;
    bench.line.setFault(sim::Fault::Silence);
    const Outcome outcome = CtlBench::run("search --json --timeout 0.2");
    CTL_COMPARE(outcome, 4, "[]\n");
    QVERIFY(outcome.err.contains(QStringLiteral("No unit was found. Units with addresses")));
    // Nine looks at one port, of which eight wait for three replies.
    QElapsedTimer clock;
    clock.start();
    QCOMPARE(CtlBench::run("search --port COM7 --timeout 0.05").code, 4);
    QVERIFY(clock.elapsed() < 15'000);
}

void TestCtlPorts::aSearchOfAPortThatIsHeld()
{
    CtlBench bench;
    sim::SimulatedLine free;
    free.addUnit(std::make_shared<sim::SimulatedUnit>());
    bench.fixture.plug(9, free.device());
    QSerialPort other;
    QVERIFY(hold(other, bench));
    const Outcome outcome = CtlBench::run("search --timeout 0.3");
    QCOMPARE(outcome.code, 0);
    QVERIFY(outcome.out.contains(QStringLiteral("COM9")));
    QVERIFY2(outcome.err.contains(QStringLiteral("COM7: ")), qPrintable(outcome.err));
}

void TestCtlPorts::anAddressedUnitIsTuned()
{
    CtlBench bench;
    sim::SimulatedLine shared;
    addAddressedUnit(shared, 2);
    addAddressedUnit(shared, 5);
    bench.fixture.plug(9, shared.device());
    CTL_COMPARE(CtlBench::run("set frequency 120MHz --port COM9 --address 5"), 0,
                "frequency 120 MHz\n");
    CTL_COMPARE(CtlBench::run("get frequency --port COM9:5"), 0, "frequency 120 MHz\n");
    CTL_COMPARE(CtlBench::run("get frequency --port COM9:2"), 0, "frequency 100 MHz\n");
    const Outcome nobody = CtlBench::run("get frequency --port COM9:3 --timeout 0.3");
    CTL_COMPARE(nobody, 4, "");
    QVERIFY(nobody.err.startsWith(QStringLiteral("keldo-x-ctl: No answer from address 3 on COM9")));
}

void TestCtlPorts::theSearchShowsTheWire()
{
    const CtlBench bench;
    const Outcome outcome = CtlBench::run("search --port COM7 --verbose");
    QCOMPARE(outcome.code, 0);
    QCOMPARE(outcome.err, QStringLiteral("COM7 > *ID?\nCOM7 < KELDO-X\n"));
}

void TestCtlPorts::simulatedUnitsAreThereForTheAsking()
{
    const CtlBench bench;
    const QStringList ports =
        CtlBench::run("ports --simulator").lines().filter(QStringLiteral("simulated line"));
    QCOMPARE(ports.size(), 3);
    const QString shared = ports.at(2).section(QLatin1Char(' '), 0, 0);
    QCOMPARE(ports.at(2), shared + QStringLiteral("  simulated line 3, TOVIN-R firmware 3.38 "
                                                  "addresses 2 5"));
    const Outcome found = CtlBench::run({QStringLiteral("search"), QStringLiteral("--simulator"),
                                         QStringLiteral("--port"), shared,
                                         QStringLiteral("--timeout"), QStringLiteral("0.3")});
    QVERIFY2(found.out.startsWith(shared + QStringLiteral(" address 2  ")), qPrintable(found.out));
    QCOMPARE(found.lines().size(), 2);
    const QStringList words = CtlBench::words("--simulator set frequency 146.5 --port") +
                              QStringList{shared + QStringLiteral(":5")};
    CTL_COMPARE(CtlBench::run(words), 0, "frequency 146.5 MHz\n");
    QVERIFY(CtlBench::run("ports").lines().filter(QStringLiteral("simulated")).isEmpty());
}

KELDOX_TEST(TestCtlPorts)
#include "TestCtlPorts.moc"
