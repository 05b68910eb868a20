// A port that is closed, reopened or unplugged, and a program that ends, while a reply is awaited.
#include "CommPortOnLine.h"
#include "support/TestMain.h"

#include "app/AppState.h"
#include "platform/EventQueue.h"

#include <QElapsedTimer>
#include <QSignalSpy>

class TestCommPortHangUp : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { on.reset(); }
    void closingThePortEndsTheWait();
    void reopeningThePortEndsTheWait();
    void aHangUpEndsTheWaitWithoutABox();
    void aHangUpFoundWhileSendingEndsTheExchangeWithoutABox();
    void aHangUpDuringThePollDelayEndsTheExchangeWithoutABox();
    void aHangUpOfAnIdlePortIsReportedOnce();
    void withDisplayErrorsOffAnIdleHangUpIsOnlyTold();
    void aHangUpIsLogged();
    void aPortThatHungUpCanBeClosedAndOpenedAgain();
    void theEndOfTheProgramEndsTheWait_data();
    void theEndOfTheProgramEndsTheWait();

private:
    bool exchange() { return on->port->WriteAndWaitForCr(QStringLiteral("*ID?\r")); }
    void waitUntilGone()
    {
        QTRY_COMPARE_WITH_TIMEOUT(on->port->ComPortStatus(), 3, 2000);
        QTest::qWait(20); // a second report would come now
    }

    std::unique_ptr<CommPortOnLine> on;
    QElapsedTimer clock;
};

void TestCommPortHangUp::init()
{
    on.reset(); // nothing cleans up after an init that failed
    on = std::make_unique<CommPortOnLine>();
    on->port->settimeOutMs(20000);
    on->openWithReply({});
    clock.start();
}

void TestCommPortHangUp::closingThePortEndsTheWait()
{
    QTimer::singleShot(50, this, [&] { on->port->ClosePort(); });
    QVERIFY(!exchange());
    QVERIFY(clock.elapsed() < 2000);
    QCOMPARE(on->port->ComPortStatus(), 0);

    on->openWithReply({});
    QTimer::singleShot(50, this, [&] { on->port->ClosePort(); });
    QVERIFY(!on->port->WriteAndWaitFor2Crs(QStringLiteral("*SAVE\r")));
    QVERIFY(clock.elapsed() < 4000);
}

void TestCommPortHangUp::reopeningThePortEndsTheWait()
{
    QTimer::singleShot(50, this, [&] { on->port->InitializePort(); });
    QVERIFY(!exchange());
    QVERIFY(clock.elapsed() < 2000);
    QCOMPARE(on->port->ComPortStatus(), 1);
}

void TestCommPortHangUp::aHangUpEndsTheWaitWithoutABox()
{
    const QSignalSpy hangUps(on->port.get(), &clsCommPort::HungUp);
    QTimer::singleShot(50, this, [&] { on->line.unplug(); });
    QVERIFY(!exchange()); // its caller tells of the missing reply
    QVERIFY(clock.elapsed() < 2000);
    QCOMPARE(on->port->ComPortStatus(), 3);
    waitUntilGone();
    QCOMPARE(hangUps.size(), 1);
}

void TestCommPortHangUp::aHangUpFoundWhileSendingEndsTheExchangeWithoutABox()
{
    const QSignalSpy hangUps(on->port.get(), &clsCommPort::HungUp);
    on->line.unplug(); // and no event is handled before the command
    QVERIFY(!exchange());
    QVERIFY(clock.elapsed() < 2000);
    waitUntilGone();
    QCOMPARE(hangUps.size(), 1);
}

void TestCommPortHangUp::aHangUpDuringThePollDelayEndsTheExchangeWithoutABox()
{
    const QSignalSpy hangUps(on->port.get(), &clsCommPort::HungUp);
    on->port->setPollDelay(300);
    QTimer::singleShot(50, this, [&] { on->line.unplug(); });
    QVERIFY(!exchange());
    QVERIFY(clock.elapsed() < 2000);
    waitUntilGone();
    QCOMPARE(hangUps.size(), 1);
}

void TestCommPortHangUp::aHangUpOfAnIdlePortIsReportedOnce()
{
    const QSignalSpy hangUps(on->port.get(), &clsCommPort::HungUp);
    on->fixture.boxes.expect(
        QStringLiteral("Error 8020 (Error reading comm device)\r\n"
                       "COM3 (%1) was disconnected.\r\n"
                       " from KELDO-X Control Program\r\n in clsCommPort.DoOnComm\r\n")
            .arg(QString::fromStdString(on->line.device())),
        48);
    on->line.unplug();
    waitUntilGone();
    QVERIFY(on->fixture.boxes.allShown());
    QCOMPARE(hangUps.size(), 1);
    QCOMPARE(on->port->ComPortStatusString(), QStringLiteral("port_error"));
    QVERIFY(!on->port->IsOpen());
}

void TestCommPortHangUp::withDisplayErrorsOffAnIdleHangUpIsOnlyTold()
{
    const QSignalSpy hangUps(on->port.get(), &clsCommPort::HungUp);
    on->port->setDisplayErrors(false);
    on->line.unplug();
    waitUntilGone();
    QCOMPARE(hangUps.size(), 1);
}

void TestCommPortHangUp::aHangUpIsLogged()
{
    const auto log = std::make_shared<FakeLog>();
    installEventLog(log);
    on->port->setDisplayErrors(false);
    on->line.unplug();
    waitUntilGone();
    QCOMPARE(log->events.size(), 1);
    QVERIFY(log->events.at(0).second.contains(QStringLiteral("COM3")));
    QVERIFY(log->events.at(0).second.contains(QString::fromStdString(on->line.device())));
}

void TestCommPortHangUp::aPortThatHungUpCanBeClosedAndOpenedAgain()
{
    on->port->setDisplayErrors(false);
    on->line.unplug();
    waitUntilGone();
    on->port->ClosePort();
    QCOMPARE(on->port->ComPortStatus(), 0);
    on->fixture.unplug(3); // another program's terminal may have got the old name
    QVERIFY(!on->port->InitializePort());
    QCOMPARE(on->port->ComPortStatus(), 3);
    sim::SimulatedLine back;
    back.setResponder([](const std::string &) { return "OK"; });
    on->fixture.plug(3, back.device());
    QVERIFY(on->port->InitializePort());
    QVERIFY(exchange());
    on->port->ClosePort();
}

void TestCommPortHangUp::theEndOfTheProgramEndsTheWait_data()
{
    QTest::addColumn<int>("pollDelay");
    QTest::addColumn<int>("pollInterval");
    QTest::addRow("in the wait") << 0 << 0;
    QTest::addRow("in the delay") << 30000 << 0;
    QTest::addRow("between two reads") << 0 << 30000;
}

void TestCommPortHangUp::theEndOfTheProgramEndsTheWait()
{
    QFETCH(const int, pollDelay);
    QFETCH(const int, pollInterval);
    on->port->setPollDelay(static_cast<std::int16_t>(pollDelay));
    on->port->setPollInterval(static_cast<std::int16_t>(pollInterval));
    QTimer::singleShot(50, this, [] { EventQueue::endProgram(); });
    QVERIFY(!exchange());
    QVERIFY(clock.elapsed() < 1000);
}

KELDOX_TEST(TestCommPortHangUp)
#include "TestCommPortHangUp.moc"
