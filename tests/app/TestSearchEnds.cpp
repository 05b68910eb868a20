// Searches that find something else, or nothing at all.
#include "app/AppState.h"
#include "app/modSearchPorts.h"
#include "platform/TestHooks.h"
#include "support/SearchBench.h"
#include "support/TestMain.h"

#include <QSerialPort>

class TestSearchEnds : public QObject
{
    Q_OBJECT

private slots:
    void withoutAnyUnitEverythingSaysSo();
    void aWholeSearchWithoutDevicesIsQuick();
    void aLoopbackIsToldAndSkipped();
    void aLoopbackOnTheOnlyPortStaysTold();
    void aForeignDeviceIsLoggedAndSkipped_data();
    void aForeignDeviceIsLoggedAndSkipped();
    void aSilentPortCostsOneTimeOut();
    void aSilentAddressIsLoggedOnceEach();
    void aSilentAddressCostsOneTimeOut();
    void onASilentLineEachCommandOfAnAddressIsWaitedForOnce();
    void aBusyPortStillLogsThatItCanBeOpened();
    void aPortThatCannotBeOpenedIsSkippedSilently();
    void aPortThatHangsUpDuringTheProbeIsSkipped();
};

static QString cannotRespond(int port)
{
    return QStringLiteral(" COM%1 CAN BE OPENED, BUT DOES NOT RESPOND LIKE AN KELDO-X").arg(port);
}

void TestSearchEnds::withoutAnyUnitEverythingSaysSo()
{
    SearchBench bench;
    bench.fixture.boxes.expect(checkConnections, MessageBox::Exclamation);
    bool redBeforeBox = false;
    bench.fixture.boxes.whileOpen(
        [&] { redBeforeBox = bench.calls->contains(QStringLiteral("main.red")); });
    SearchPorts(3, QStringLiteral("5"));
    QVERIFY(redBeforeBox);
    QCOMPARE(bench.mainWindow->wasCancelled, std::optional(false));
    QCOMPARE(bench.fixture.boxes.shown().first().title, QStringLiteral("KELDO-X Control Program"));
    QCOMPARE(bench.log->lines(),
             QStringList{QStringLiteral("SearchPorts|Could not find any KELDO-X's")});
    QVERIFY(!bench.calls->contains(QStringLiteral("channels.arrange")));
    QVERIFY(bench.calls->filter(QStringLiteral("optPortNumClick")).isEmpty());
    QCOMPARE(bench.calls->last(), QStringLiteral("main.bringUpToDate"));
    QCOMPARE(bench.mainWindow->panels.value(1), QStringLiteral("NOT CONNECTED"));
    QVERIFY(!bench.channels->progressVisible);
    QVERIFY(app().searchFinished);
    QCOMPARE(app().foundUnits, std::int16_t(0));
    for (int slot = 0; slot <= 8; ++slot)
        QVERIFY(!app().devices[slot]);
}

void TestSearchEnds::aWholeSearchWithoutDevicesIsQuick()
{
    SearchBench bench;
    bench.fixture.boxes.expect(checkConnections);
    QElapsedTimer clock;
    clock.start();
    SearchPorts(1);
    qInfo("255 ports without a device: %lld ms", static_cast<long long>(clock.elapsed()));
    QVERIFY(clock.elapsed() < 2000);
    QCOMPARE(bench.channels->progressValues.size(), 255 + 2);
    QCOMPARE(bench.channels->progressValues.at(254), 511);
    QCOMPARE(bench.log->lines(),
             QStringList{QStringLiteral("SearchPorts|Could not find any KELDO-X's")});
}

void TestSearchEnds::aLoopbackIsToldAndSkipped()
{
    SearchBench bench;
    bench.line(2).setFault(sim::Fault::Echo);
    bench.fixture.boxes.expect(checkConnections);
    SearchPorts(1);
    QCOMPARE(bench.log->lines(),
             (QStringList{QStringLiteral("SearchPorts|COM2 status = port_open"),
                          QStringLiteral("clsSeeker| sending *ID?"),
                          QStringLiteral("from serial device:| received *ID?"),
                          QStringLiteral("SearchComPorts|FOUND A LOOPBACK ADAPTOR (SOMETHING THAT "
                                         "ECHOS WHAT IT'S SENT) ON COM2"),
                          QStringLiteral("SearchPorts|Could not find any KELDO-X's")}));
    QCOMPARE(bench.calls->filter(QStringLiteral("LOOPBACK")),
             QStringList{QStringLiteral("main.panel1 FOUND A LOOPBACK ADAPTOR ON COM2")});
    QVERIFY(!app().devices[1]);
}

void TestSearchEnds::aLoopbackOnTheOnlyPortStaysTold()
{
    SearchBench bench;
    bench.line(2).setFault(sim::Fault::Echo);
    bench.fixture.boxes.expect(checkConnections);
    SearchPorts(3, QStringLiteral(" 2"));
    QCOMPARE(bench.mainWindow->panels.value(1), QStringLiteral("FOUND A LOOPBACK ADAPTOR ON COM2"));
}

void TestSearchEnds::aForeignDeviceIsLoggedAndSkipped_data()
{
    QTest::addColumn<QString>("reply");
    QTest::newRow("one") << "1";
    QTest::newRow("prompt") << "?>";
    QTest::newRow("empty") << "";
    QTest::newRow("other") << "HELLO";
    QTest::newRow("a unit's name with more") << "KELDO-X 3.38";
    QTest::newRow("a unit's name and a blank") << "KELDO-X ";
}

void TestSearchEnds::aForeignDeviceIsLoggedAndSkipped()
{
    QFETCH(QString, reply);
    SearchBench bench;
    bench.answerAlways(2, reply.toStdString());
    bench.fixture.boxes.expect(checkConnections);
    SearchPorts(3, QStringLiteral("2"));
    QCOMPARE(bench.log->lines(),
             (QStringList{QStringLiteral("SearchPorts|COM2 status = port_open"),
                          QStringLiteral("clsSeeker| sending *ID?"),
                          QStringLiteral("from serial device:| received ") + reply,
                          QStringLiteral("SearchComPorts|") + cannotRespond(2),
                          QStringLiteral("SearchPorts|Could not find any KELDO-X's")}));
    QCOMPARE(bench.sentTo(2), QStringList{QStringLiteral("*ID?")}); // no receiver is asked for
}

void TestSearchEnds::aSilentPortCostsOneTimeOut()
{
    SearchBench bench;
    bench.silence(2);
    bench.fixture.boxes.expect(checkConnections);
    TestHooks::shortenTimers(50);
    SearchPorts(1);
    QCOMPARE(TestHooks::virtualMs(), 1900);
    QCOMPARE(bench.log->lines(),
             (QStringList{QStringLiteral("SearchPorts|COM2 status = port_open"),
                          QStringLiteral("clsSeeker| sending *ID?"),
                          QStringLiteral("serial device | timed out "),
                          QStringLiteral("SearchComPorts|") + cannotRespond(2),
                          QStringLiteral("SearchPorts|Could not find any KELDO-X's")}));
}

void TestSearchEnds::aSilentAddressIsLoggedOnceEach()
{
    SearchBench bench;
    bench.line(4).setResponder([](const std::string &command) -> std::optional<std::string> {
        if (command == "*ID?")
            return std::nullopt;
        return "OK";
    });
    bench.waitOnly(40);
    bench.fixture.boxes.expect(checkConnections);
    SearchPorts(2, QStringLiteral("4"));
    QCOMPARE(bench.logOf(QStringLiteral("SearchComPorts")), QStringList(8, cannotRespond(4)));
    QCOMPARE(bench.logOf(QStringLiteral("serial device ")),
             QStringList(8, QStringLiteral(" timed out ")));
}

// On a line whose units confirm that they are called.
void TestSearchEnds::aSilentAddressCostsOneTimeOut()
{
    SearchBench bench;
    bench.line(4).setResponder([](const std::string &command) -> std::optional<std::string> {
        if (command == "*ID?")
            return std::nullopt;
        return "OK";
    });
    bench.fixture.boxes.expect(checkConnections);
    QElapsedTimer clock;
    clock.start();
    SearchOneAddress(4, 5);
    QVERIFY2(clock.elapsed() >= 1890, qPrintable(QString::number(clock.elapsed())));
    QVERIFY2(clock.elapsed() < 2 * 1900, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(bench.logOf(QStringLiteral("serial device ")),
             QStringList{QStringLiteral(" timed out ")});
}

// Nobody there: each address is still released, called and asked, and nothing is asked twice.
void TestSearchEnds::onASilentLineEachCommandOfAnAddressIsWaitedForOnce()
{
    SearchBench bench;
    bench.silence(4);
    bench.waitOnly(40);
    bench.fixture.boxes.expect(checkConnections);
    SearchPorts(2, QStringLiteral("4"));
    QStringList commands;
    for (int address = 1; address <= 8; ++address)
        commands << QStringLiteral(">UNLISTEN") << QStringLiteral(">LISTEN0%1").arg(address)
                 << QStringLiteral("*ID?");
    // The program does not wait for the line to have read its last one.
    QVERIFY(bench.line(4).waitForCommands(static_cast<std::size_t>(commands.size()),
                                          std::chrono::seconds(5)));
    QCOMPARE(bench.sentTo(4), commands);
    QCOMPARE(bench.logOf(QStringLiteral("serial device ")),
             QStringList(commands.size(), QStringLiteral(" timed out ")));
    QCOMPARE(bench.logOf(QStringLiteral("SearchComPorts")), QStringList(8, cannotRespond(4)));
}

void TestSearchEnds::aBusyPortStillLogsThatItCanBeOpened()
{
    SearchBench bench;
    bench.unit(2);
    QSerialPort other(QString::fromStdString(bench.line(2).device()));
    QVERIFY(other.open(QIODevice::ReadWrite));
    bench.fixture.boxes.expect(checkConnections);
    SearchPorts(1);
    QCOMPARE(bench.log->lines(),
             (QStringList{QStringLiteral("SearchPorts|COM2 status = is already open"),
                          QStringLiteral("SearchComPorts|") + cannotRespond(2),
                          QStringLiteral("SearchPorts|Could not find any KELDO-X's")}));
    QCOMPARE(bench.line(2).bytesReceived(), std::size_t(0));
}

void TestSearchEnds::aPortThatCannotBeOpenedIsSkippedSilently()
{
    SearchBench bench;
    bench.unit(3);
    bench.fixture.plug(2, QStringLiteral("/dev/null"));
    SearchPorts(1);
    QCOMPARE(bench.log->lines().first(), QStringLiteral("SearchPorts|COM3 status = port_open"));
    QVERIFY(bench.log->lines().filter(QStringLiteral("COM2")).isEmpty());
    QCOMPARE(app().foundUnits, std::int16_t(1));
}

void TestSearchEnds::aPortThatHangsUpDuringTheProbeIsSkipped()
{
    SearchBench bench;
    bench.line(2).setFault(sim::Fault::Unplug);
    bench.unit(3);
    QElapsedTimer clock;
    clock.start();
    SearchPorts(1);
    QVERIFY2(clock.elapsed() < 1500, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(app().foundUnits, std::int16_t(1));
    QVERIFY(bench.log->lines().contains(QStringLiteral("SearchComPorts|") + cannotRespond(2)));
}

KELDOX_TEST(TestSearchEnds)
#include "TestSearchEnds.moc"
