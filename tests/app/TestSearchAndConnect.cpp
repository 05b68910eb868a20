// A search whose rows connect for real: everything that passes the line, and which unit is the
// current one at the end.
#include "app/AppState.h"
#include "app/ConnectToDevice.h"
#include "app/modSearchPorts.h"
#include "support/SearchBench.h"
#include "support/TestMain.h"

class TestSearchAndConnect : public QObject
{
    Q_OBJECT

private slots:
    void everythingThatPassesTheLineOfOneUnit();
    void everyLogSourceOfOneUnitInOrder();
    void channelOneIsTheCurrentUnitAtTheEnd();
    void eachUnitFoundIsReadOnce();
    void messageBoxesOfTheCurrentUnitAreOnAfterwards();
    void addressedUnitsAreConnectedAtTheirAddresses();
    void aUnitThatFallsSilentDoesNotHoldTheSearchAfterEscape();
};

static void connectForReal(SearchBench &bench)
{
    for (int number = 1; number <= 8; ++number)
        bench.rows[number]->onClick = [](FakeChannelRow &row) {
            logEvent(QStringLiteral("row"), QStringLiteral("optPortNumClick %1").arg(row.number));
            auto device = row.Device();
            ConnectToDevice(device, static_cast<std::int16_t>(row.number));
        };
}

static const QStringList &firstReading()
{
    static const QStringList commands{
        QStringLiteral("*ID?"),       QStringLiteral("*LOCK?"),
        QStringLiteral("*REVISION?"), QStringLiteral("*START FREQ?"),
        QStringLiteral("*MAX STEP?"), QStringLiteral("*CHAN SPACE?"),
        QStringLiteral("*IFRQ?"),     QStringLiteral("*BNDW?"),
        QStringLiteral("*AOPT?"),     QStringLiteral("OPTC?"),
        QStringLiteral("*BYP_?"),     QStringLiteral("*AOPT?"),
        QStringLiteral("OPTC?"),      QStringLiteral("InputLimitMode?"),
        QStringLiteral("*ZNCA?"),     QStringLiteral("*ZNSE?"),
        QStringLiteral("*STEP?")};
    return commands;
}

static const QStringList &secondReading()
{
    static const QStringList commands{QStringLiteral("*ID?"), QStringLiteral("*LOCK?"),
                                      QStringLiteral("*ZNCA?"), QStringLiteral("*ZNSE?"),
                                      QStringLiteral("*STEP?")};
    return commands;
}

void TestSearchAndConnect::everythingThatPassesTheLineOfOneUnit()
{
    SearchBench bench;
    bench.unit(5);
    connectForReal(bench);
    SearchPorts(1);
    QCOMPARE(bench.sentTo(5),
             QStringList{QStringLiteral("*ID?")} + firstReading() + secondReading());
}

void TestSearchAndConnect::everyLogSourceOfOneUnitInOrder()
{
    SearchBench bench;
    bench.unit(5);
    connectForReal(bench);
    SearchPorts(3, QStringLiteral(" 5"));
    QStringList log = bench.log->lines();
    // The exchanges of the unit object are another test's.
    log.removeIf([](const QString &line) { return line.startsWith(QLatin1String("clsKeldoX|")); });
    QCOMPARE(
        log,
        (QStringList{
            QStringLiteral("SearchPorts|COM5 status = port_open"),
            QStringLiteral("clsSeeker| sending *ID?"),
            QStringLiteral("from serial device:| received KELDO-X"),
            QStringLiteral("SearchComPorts|FOUND AN KELDO-X ON COM5"),
            QStringLiteral("row|optPortNumClick 1"), QStringLiteral("Channel1 |connecting... "),
            QStringLiteral("Keldo-X | initializing "),
            QStringLiteral("Keldo-X | opened serial port "), QStringLiteral("Channel1 |connected"),
            QStringLiteral("SearchPorts|Back to COM5..."), QStringLiteral("row|optPortNumClick 1"),
            QStringLiteral("Channel1 |connecting... "), QStringLiteral("Keldo-X | initializing "),
            QStringLiteral("Keldo-X | opened serial port "),
            QStringLiteral("Channel1 |connected")}));
}

void TestSearchAndConnect::channelOneIsTheCurrentUnitAtTheEnd()
{
    SearchBench bench;
    bench.unit(3);
    bench.unit(7);
    connectForReal(bench);
    SearchPorts(1);
    QCOMPARE(app().currentDevice.get(), app().devices[1].get());
    QCOMPARE(bench.mainWindow->mDevice.get(), app().devices[1].get());
    QCOMPARE(bench.channels->mDevice.get(), app().devices[1].get());
    QVERIFY(app().devices[1]->PortIsOpen());
    QVERIFY(!app().devices[2]->PortIsOpen()); // the unit on COM7 was let go of
    QVERIFY(app().devices[2]->isInitialized());
    QCOMPARE(bench.mainWindow->panels.value(1), QStringLiteral("CONNECTED ON COM3"));
}

void TestSearchAndConnect::eachUnitFoundIsReadOnce()
{
    SearchBench bench;
    bench.unit(3);
    bench.unit(7);
    connectForReal(bench);
    SearchPorts(1);
    QCOMPARE(bench.sentTo(3),
             QStringList{QStringLiteral("*ID?")} + firstReading() + secondReading());
    QCOMPARE(bench.sentTo(7), QStringList{QStringLiteral("*ID?")} + firstReading());
}

void TestSearchAndConnect::messageBoxesOfTheCurrentUnitAreOnAfterwards()
{
    SearchBench bench;
    bench.unit(5);
    connectForReal(bench);
    const auto connectIt = bench.rows[1]->onClick;
    bench.rows[1]->onClick = [&](FakeChannelRow &row) {
        connectIt(row);
        row.mDevice->setDisplayErrors(false);
    };
    SearchPorts(3, QStringLiteral("5"));
    bench.line(5).setFault(sim::Fault::Garbage);
    bench.fixture.boxes.expect(
        QStringLiteral("The device did not respond correctly to a 'current step' query."),
        MessageBox::Exclamation);
    app().currentDevice->CurrentStep();
}

void TestSearchAndConnect::addressedUnitsAreConnectedAtTheirAddresses()
{
    SearchBench bench;
    for (const int address : {2, 5})
        bench.unit(4, addressedUnit(address, 100.0 * address));
    bench.waitOnly(250);
    connectForReal(bench);
    SearchPorts(2, QStringLiteral("4"));
    QCOMPARE(app().foundUnits, std::int16_t(2));
    QCOMPARE(app().devices[1]->StartFreq(), 200.0);
    QCOMPARE(app().devices[2]->StartFreq(), 500.0);

    const auto addressing = [](int address) {
        return QStringList{QStringLiteral(">UNLISTEN"), QStringLiteral(">LISTEN0%1").arg(address)};
    };
    QStringList expected;
    for (int address = 1; address <= 8; ++address) {
        expected << addressing(address) << QStringLiteral("*ID?");
        if (address == 2 || address == 5)
            expected << addressing(address) << firstReading();
    }
    expected << addressing(2) << secondReading();
    QCOMPARE(bench.sentTo(4), expected);
    QCOMPARE(bench.log->lines().last(), QStringLiteral("Channel1 |connected"));
}

void TestSearchAndConnect::aUnitThatFallsSilentDoesNotHoldTheSearchAfterEscape()
{
    SearchBench bench;
    bench.unit(3);
    bench.unit(7);
    connectForReal(bench);
    bench.line(7).setFault(sim::Fault::Silence, "*MAX STEP?"); // awaited for 10 s
    bench.line(7).setListener([this](bool fromUnit, const std::string &line) {
        if (!fromUnit && line == "*MAX STEP?")
            QMetaObject::invokeMethod(
                this, [] { app().search->cancel(); }, Qt::QueuedConnection);
    });
    bench.fixture.boxes.acceptAll();
    QElapsedTimer clock;
    clock.start();
    SearchPorts(1);
    QVERIFY2(clock.elapsed() < 3000, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(bench.mainWindow->panels.value(1), QStringLiteral("CONNECTED ON COM3"));
    QCOMPARE(app().currentDevice.get(), app().devices[1].get());
    QVERIFY(app().searchFinished);
}

KELDOX_TEST(TestSearchAndConnect)
#include "TestSearchAndConnect.moc"
