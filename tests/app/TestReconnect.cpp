// Waiting for a device to return: when it is tried, how often, and what ends the waiting.
#include "app/Reconnect.h"
#include "app/modSearchPorts.h"
#include "platform/Application.h"
#include "platform/SettingsStore.h"
#include "platform/TestHooks.h"
#include "support/SearchBench.h"
#include "support/TestMain.h"

class TestReconnect : public QObject
{
    Q_OBJECT

private slots:
    void itIsOffAtFirstAndTheChoiceIsKept();
    void whileItIsOffNothingIsTried();
    void switchedOnLaterItWaitsForTheUnitThatWasLost();
    void withoutALostUnitThereIsNothingToWaitFor();
    void aDeviceThatReturnsIsConnectedWhenItWasSeenTwice();
    void aGlimpseOfADeviceDoesNotCount();
    void aUnitThatDoesNotAnswerIsTriedOnceAReturnAndNotTold();
    void anOpenPortOfASilentUnitIsNotTold();
    void aUnitThatWasReplacedMeanwhileIsNotTold();
    void somethingElseConnectedEndsTheWaiting();
    void aUnitThatWasLetGoEndsTheWaiting();
    void aSearchIsNotDisturbed();
    void whatIsGoingOnIsNotDisturbed();
};

namespace {

constexpr int port = 5;

// A unit in row 2 that was connected, and whose device is gone.
struct Lost
{
    Lost()
    {
        TestHooks::shortenTimers(60);
        bench.unit(port);
        unit = bench.bind(2, port);
        unit->setDisplayErrors(false);
        unit->commPort()->setDisplayErrors(false);
        app().currentDevice = unit;
        app().guard().set(true);
        bench.rows[2]->onClick = [this](FakeChannelRow &) {
            ++clicks;
            if (answers)
                unit->Initialize();
        };
        bench.fixture.unplug(port);
        reconnect.setOn(true);
        reconnect.waitFor(unit);
        bench.calls->clear();
    }
    ~Lost()
    {
        reconnect.setOn(false);
        app().currentDevice.reset();
        TestHooks::shortenTimers(0);
    }

    void plugIn() { bench.fixture.plug(port, bench.line(port).device()); }

    // So many looks at the ports pass.
    static void looks(int count)
    {
        const qint64 until = TestHooks::virtualMs() + count * 1000LL;
        const QDeadlineTimer deadline(5000);
        while (TestHooks::virtualMs() < until && !deadline.hasExpired())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QVERIFY(!deadline.hasExpired());
    }

    SearchBench bench;
    std::shared_ptr<clsKeldoX> unit;
    Reconnect reconnect;
    bool answers = true;
    int clicks = 0;
};

} // namespace

void TestReconnect::itIsOffAtFirstAndTheChoiceIsKept()
{
    const SearchBench bench;
    SettingsStore::write(applicationTitle(), QStringLiteral("Settings"),
                         QStringLiteral("Reconnect"), QString());
    QVERIFY(!Reconnect().isOn());
    Reconnect().setOn(true);
    QVERIFY(Reconnect().isOn());
    QCOMPARE(SettingsStore::read(applicationTitle(), QStringLiteral("Settings"),
                                 QStringLiteral("Reconnect")),
             QStringLiteral("1"));
    Reconnect().setOn(false);
    QVERIFY(!Reconnect().isOn());
    QCOMPARE(SettingsStore::read(applicationTitle(), QStringLiteral("Settings"),
                                 QStringLiteral("Reconnect")),
             QStringLiteral("0"));
}

void TestReconnect::whileItIsOffNothingIsTried()
{
    Lost lost;
    QVERIFY(lost.reconnect.isWaiting());
    lost.reconnect.setOn(false);
    QVERIFY(!lost.reconnect.isWaiting());
    lost.reconnect.waitFor(lost.unit);
    QVERIFY(!lost.reconnect.isWaiting());
}

void TestReconnect::switchedOnLaterItWaitsForTheUnitThatWasLost()
{
    Lost lost;
    lost.reconnect.setOn(false);
    lost.reconnect.waitFor(lost.unit);
    lost.plugIn();
    lost.reconnect.setOn(true);
    QTRY_COMPARE(lost.clicks, 1);
}

void TestReconnect::withoutALostUnitThereIsNothingToWaitFor()
{
    const SearchBench bench;
    Reconnect reconnect;
    reconnect.setOn(true);
    QVERIFY(!reconnect.isWaiting());
    reconnect.setOn(false);
}

// The system makes the device first and gives the rights on it a moment later.
void TestReconnect::aDeviceThatReturnsIsConnectedWhenItWasSeenTwice()
{
    Lost lost;
    Lost::looks(3);
    QCOMPARE(lost.clicks, 0);
    lost.plugIn();
    Lost::looks(1);
    QCOMPARE(lost.clicks, 0);
    Lost::looks(1);
    QCOMPARE(lost.clicks, 1);
    QVERIFY(lost.unit->PortIsOpen());
    QCOMPARE(lost.bench.logOf(QStringLiteral("Reconnect")),
             QStringList{QStringLiteral("COM5 is back, connecting channel 2 again")});
    const QString told = QStringLiteral("CONNECTED AGAIN ON COM5");
    QCOMPARE(*lost.bench.calls, (QStringList{QStringLiteral("row2.setStatus 1"),
                                             QStringLiteral("row2.optPortNumClick"),
                                             QStringLiteral("main.panel1 ") + told,
                                             QStringLiteral("channels.panel1 <%1>").arg(told)}));
    QTRY_VERIFY(!lost.reconnect.isWaiting());
    QCOMPARE(lost.clicks, 1);
}

void TestReconnect::aGlimpseOfADeviceDoesNotCount()
{
    Lost lost;
    for (int i = 0; i < 3; ++i) {
        lost.plugIn();
        Lost::looks(1);
        lost.bench.fixture.unplug(port);
        Lost::looks(1);
    }
    QCOMPARE(lost.clicks, 0);
}

void TestReconnect::aUnitThatDoesNotAnswerIsTriedOnceAReturnAndNotTold()
{
    Lost lost;
    lost.answers = false;
    lost.plugIn();
    Lost::looks(6);
    QCOMPARE(lost.clicks, 1);
    QCOMPARE(*lost.bench.calls, (QStringList{QStringLiteral("row2.setStatus 1"),
                                             QStringLiteral("row2.optPortNumClick")}));
    lost.bench.fixture.unplug(port);
    Lost::looks(1);
    lost.plugIn();
    Lost::looks(6);
    QCOMPARE(lost.clicks, 2);
}

// The device returns and its port opens, and yet nothing is told.
static void returnsUntold(Lost &lost)
{
    lost.plugIn();
    QTRY_COMPARE(lost.clicks, 1);
    QVERIFY(lost.unit->PortIsOpen());
    QVERIFY(lost.bench.calls->filter(QStringLiteral("CONNECTED AGAIN")).isEmpty());
}

void TestReconnect::anOpenPortOfASilentUnitIsNotTold()
{
    Lost lost;
    lost.bench.silence(port);
    returnsUntold(lost);
}

void TestReconnect::aUnitThatWasReplacedMeanwhileIsNotTold()
{
    Lost lost;
    lost.bench.rows[2]->onClick = [&lost](FakeChannelRow &) {
        ++lost.clicks;
        lost.unit->Initialize();
        app().currentDevice = lost.bench.bind(3, 6);
    };
    returnsUntold(lost);
}

void TestReconnect::somethingElseConnectedEndsTheWaiting()
{
    Lost lost;
    app().currentDevice = lost.bench.bind(3, 6);
    QTRY_VERIFY(!lost.reconnect.isWaiting());
    lost.plugIn();
    QTest::qWait(150);
    QCOMPARE(lost.clicks, 0);
}

void TestReconnect::aUnitThatWasLetGoEndsTheWaiting()
{
    Lost lost;
    app().currentDevice.reset();
    app().devices.clear();
    lost.bench.rows[2]->mDevice.reset();
    lost.unit.reset();
    QTRY_VERIFY(!lost.reconnect.isWaiting());
}

void TestReconnect::aSearchIsNotDisturbed()
{
    Lost lost;
    app().search = std::make_shared<PortSearch>();
    lost.plugIn();
    Lost::looks(5);
    QCOMPARE(lost.clicks, 0);
    QVERIFY(lost.reconnect.isWaiting());
    app().search.reset();
    QTRY_COMPARE(lost.clicks, 1);
}

void TestReconnect::whatIsGoingOnIsNotDisturbed()
{
    Lost lost;
    app().guard().set(false);
    lost.plugIn();
    Lost::looks(5);
    QCOMPARE(lost.clicks, 0);
    app().guard().set(true);
    QTRY_COMPARE(lost.clicks, 1);
}

KELDOX_TEST(TestReconnect)
#include "TestReconnect.moc"
