// Every way in which connecting a channel fails.
#include "app/AppState.h"
#include "app/ConnectToDevice.h"
#include "platform/EventQueue.h"
#include "support/SearchBench.h"
#include "support/TestMain.h"

#include <QTimer>

static std::int16_t connectChannel(std::int16_t channel)
{
    std::shared_ptr<clsKeldoX> device;
    return ConnectToDevice(device, channel);
}

static QStringList shownPanels(const SearchBench &bench)
{
    return bench.calls->filter(QStringLiteral("main.panel"));
}

class TestConnectFailures : public QObject
{
    Q_OBJECT

private slots:
    void anEmptySlotGetsAUnitThatCannotBeConnected();
    void aNetworkUnitEndsWithItsMessage();
    void aPortWithoutADeviceIsNotConnected();
    void aStrangerOnThePortIsNotConnected();
    void aUnitUnpluggedWhileItIsReadIsNotConnected();
    void aFailedConnectionEmptiesTheDisplays();
    void aSecondTryConnects();
    void aChannelOutsideTheTablesIsReported_data();
    void aChannelOutsideTheTablesIsReported();
    void aFailureIsReportedAndConnectingGoesOn();
    void theProgramsEndLeavesWithoutAWord();
};

void TestConnectFailures::anEmptySlotGetsAUnitThatCannotBeConnected()
{
    SearchBench bench;
    std::shared_ptr<clsKeldoX> device;
    QCOMPARE(ConnectToDevice(device, 4), std::int16_t(0));
    QVERIFY(device);
    QCOMPARE(app().devices[4].get(), device.get());
    QCOMPARE(bench.mainWindow->mDevice.get(), device.get());
    QCOMPARE(bench.mainWindow->wasCancelled, std::optional(false));
    QCOMPARE(shownPanels(bench), (QStringList{QStringLiteral("main.panel1 CONNECTING..."),
                                              QStringLiteral("main.panel1 NOT CONNECTED")}));
    QCOMPARE(bench.log->lines(), (QStringList{QStringLiteral("Channel4 |connecting... "),
                                              QStringLiteral("Keldo-X | initializing ")}));
}

void TestConnectFailures::aNetworkUnitEndsWithItsMessage()
{
    SearchBench bench;
    const auto device = bench.bind(2, 5);
    device->setConnection(clsKeldoX::Network);
    bench.fixture.boxes.expect(QStringLiteral("Network (TCP/IP) connection could not be opened."),
                               MessageBox::Exclamation);
    QCOMPARE(connectChannel(2), std::int16_t(0));
    QCOMPARE(bench.fixture.boxes.shown().first().title, QStringLiteral("KELDO-X Control Program"));
    QCOMPARE(bench.mainWindow->panels.value(1), QStringLiteral("NOT CONNECTED"));
    QCOMPARE(bench.channels->panels.value(1), QStringLiteral("NOT CONNECTED"));
    QVERIFY(!bench.log->lines().contains(QStringLiteral("Channel2 |connected")));
}

void TestConnectFailures::aPortWithoutADeviceIsNotConnected()
{
    SearchBench bench;
    bench.bind(1, 5);
    bench.fixture.boxes.expect(checkConnections, MessageBox::Exclamation);
    bench.fixture.boxes.expect(QStringLiteral("The serial port is not open"),
                               MessageBox::Exclamation);
    QCOMPARE(connectChannel(1), std::int16_t(0));
    QCOMPARE(bench.mainWindow->panels.value(1), QStringLiteral("NOT CONNECTED"));
    QCOMPARE(bench.log->lines(),
             (QStringList{QStringLiteral("Channel1 |connecting... "),
                          QStringLiteral("Keldo-X | initializing "),
                          QStringLiteral("Keldo-X | could not open serial port ")}));
}

void TestConnectFailures::aStrangerOnThePortIsNotConnected()
{
    SearchBench bench;
    bench.answerAlways(5, "HELLO");
    bench.bind(1, 5);
    bench.fixture.boxes.expect(
        QStringLiteral("The device did not respond correctly to an ID query."),
        MessageBox::Exclamation);
    QCOMPARE(connectChannel(1), std::int16_t(0));
    QCOMPARE(bench.mainWindow->panels.value(1), QStringLiteral("NOT CONNECTED"));
    QCOMPARE(bench.sentTo(5), QStringList{QStringLiteral("*ID?")});
    QVERIFY(!bench.calls->contains(QStringLiteral("main.enablePresets")));
    QVERIFY(!bench.calls->contains(QStringLiteral("channels.refresh")));
}

void TestConnectFailures::aUnitUnpluggedWhileItIsReadIsNotConnected()
{
    SearchBench bench;
    bench.unit(5);
    bench.line(5).setFault(sim::Fault::Unplug, "*MAX STEP?");
    bench.bind(1, 5);
    bench.fixture.boxes.acceptAll();
    QElapsedTimer clock;
    clock.start();
    connectChannel(1);
    QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(bench.mainWindow->panels.value(1), QStringLiteral("NOT CONNECTED"));
    QVERIFY(!bench.log->lines().contains(QStringLiteral("Channel1 |connected")));
    QVERIFY2(bench.fixture.boxes.shown().size() <= 1,
             qPrintable(bench.fixture.boxes.texts().join(QLatin1Char('|'))));
}

void TestConnectFailures::aFailedConnectionEmptiesTheDisplays()
{
    SearchBench bench;
    connectChannel(4);
    QVERIFY(bench.calls->contains(QStringLiteral("main.notConnected")));
    bench.calls->clear();
    bench.unit(5);
    bench.bind(1, 5);
    connectChannel(1);
    QVERIFY(!bench.calls->contains(QStringLiteral("main.notConnected")));
}

void TestConnectFailures::aSecondTryConnects()
{
    SearchBench bench;
    bench.bind(1, 5);
    bench.fixture.boxes.expect(checkConnections);
    bench.fixture.boxes.expect(QStringLiteral("The serial port is not open"));
    connectChannel(1);
    bench.unit(5); // plugged in meanwhile
    connectChannel(1);
    QCOMPARE(bench.log->lines().last(), QStringLiteral("Channel1 |connected"));
    QCOMPARE(bench.mainWindow->panels.value(1), QStringLiteral("CONNECTED ON COM5"));
}

void TestConnectFailures::aChannelOutsideTheTablesIsReported_data()
{
    QTest::addColumn<int>("channel");
    QTest::newRow("nine") << 9;
    QTest::newRow("negative") << -1;
}

void TestConnectFailures::aChannelOutsideTheTablesIsReported()
{
    QFETCH(int, channel);
    SearchBench bench;
    bench.fixture.boxes.expect(QStringLiteral("Error 9 ('Subscript out of range')\r\n"
                                              "Subscript out of range\r\n"
                                              " from KELDO-X Control Program\r\n"
                                              " in frmMain.ConnectToDevice\r\n"),
                               MessageBox::Exclamation);
    QCOMPARE(connectChannel(static_cast<std::int16_t>(channel)), std::int16_t(0));
    QCOMPARE(bench.mainWindow->panels.value(1), QStringLiteral("NOT CONNECTED"));
}

void TestConnectFailures::aFailureIsReportedAndConnectingGoesOn()
{
    SearchBench bench;
    bench.unit(5);
    bench.bind(1, 5);
    bench.log->failsOn = {QStringLiteral("connecting... "), QStringLiteral("connected")};
    for (int i = 0; i < 2; ++i)
        bench.fixture.boxes.expect(QStringLiteral("Error 5 ('Invalid procedure call or argument')"
                                                  "\r\nInvalid procedure call or argument\r\n"
                                                  " from KELDO-X Control Program\r\n"
                                                  " in frmMain.ConnectToDevice\r\n"),
                                   MessageBox::Exclamation);
    QCOMPARE(connectChannel(1), std::int16_t(0));
    QCOMPARE(bench.mainWindow->panels.value(1), QStringLiteral("CONNECTED ON COM5"));
}

void TestConnectFailures::theProgramsEndLeavesWithoutAWord()
{
    SearchBench bench;
    bench.silence(5);
    bench.bind(1, 5);
    QTimer::singleShot(50, this, [] { EventQueue::endProgram(); });
    QElapsedTimer clock;
    clock.start();
    QCOMPARE(connectChannel(1), std::int16_t(0));
    QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(bench.fixture.boxes.texts(), QStringList());
    QCOMPARE(shownPanels(bench).last(), QStringLiteral("main.panel1 CONNECTING..."));
}

KELDOX_TEST(TestConnectFailures)
#include "TestConnectFailures.moc"
