// Event mode of the serial port object, and the byte switches that log what passes the line.
#include "CommPortOnLine.h"
#include "support/TestMain.h"

#include "core/DebugSwitches.h"
#include "core/EventLog.h"
#include "platform/TestHooks.h"

class TestCommPortEvents : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { on.reset(); }
    void receivedBytesGoToTheBufferAndAreTold();
    void ninetySevenBytesStillFit();
    void aLongReplyComesWholeInSeveralEvents();
    void moreThanNinetySevenBytesInOneEventAreAnError();
    void otherEventsAreIgnored();
    void aWaitInEventModeHearsTheReply();
    void theModeTakesEffectAtTheNextOpening();
    void bytesSentAreLoggedWhenAsked();
    void bytesReceivedAreLoggedAsTheyPassed();
    void aPortMadeLaterFollowsTheSwitches();

private:
    void openInEventMode();
    void sendAndExpect(const std::string &bytes);

    std::unique_ptr<CommPortOnLine> on;
    QList<QPair<QString, int>> told; // by GotData
};

void TestCommPortEvents::init()
{
    on = std::make_unique<CommPortOnLine>();
    told.clear();
    connect(on->port.get(), &clsCommPort::GotData, this, [this](const QString &text, int count) {
        told.append({text, count});
    });
}

void TestCommPortEvents::openInEventMode()
{
    on->port->setPortMode(1);
    on->openWithReply({});
}

void TestCommPortEvents::receivedBytesGoToTheBufferAndAreTold()
{
    openInEventMode();
    on->line.send("12.5\r");
    QTRY_COMPARE_WITH_TIMEOUT(on->port->Buffer(), QStringLiteral("12.5\r"), 2000);
    on->line.send("7\r");
    QTRY_COMPARE_WITH_TIMEOUT(on->port->Buffer(), QStringLiteral("12.5\r7\r"), 2000);
    QString text;
    int count = 0;
    for (const auto &event : std::as_const(told)) {
        text += event.first;
        count += event.second;
    }
    QCOMPARE(text, QStringLiteral("12.5\r7\r"));
    QCOMPARE(count, 7);
}

void TestCommPortEvents::ninetySevenBytesStillFit()
{
    openInEventMode();
    TestHooks::limitCommEvents(1000);
    for (int event = 0; event < 3; ++event) { // the count starts anew with each
        on->line.send(std::string(97, 'x'));
        QTRY_COMPARE_WITH_TIMEOUT(on->port->Buffer().size(), 97 * (event + 1), 2000);
    }
    for (const auto &event : std::as_const(told))
        QVERIFY(event.second <= 97);
}

void TestCommPortEvents::aLongReplyComesWholeInSeveralEvents()
{
    openInEventMode();
    std::string reply;
    for (int i = 0; i < 1000; ++i)
        reply.push_back(static_cast<char>('a' + i % 26));
    on->line.send(reply);
    QTRY_COMPARE_WITH_TIMEOUT(on->port->Buffer(), QString::fromStdString(reply), 2000);
    for (const auto &event : std::as_const(told))
        QVERIFY(event.second >= 1 && event.second <= 97);
}

void TestCommPortEvents::moreThanNinetySevenBytesInOneEventAreAnError()
{
    const QString box = QStringLiteral("Error 9 ('Subscript out of range')\r\n"
                                       "Subscript out of range\r\n"
                                       " from KELDO-X Control Program\r\n"
                                       " in clsCommPort.DoOnComm\r\n");
    openInEventMode();
    TestHooks::limitCommEvents(98);
    on->control().setRThreshold(98); // so that one event has them all
    on->fixture.boxes.expect(box, 48);
    on->line.send(std::string(98, 'x'));
    QTRY_VERIFY_WITH_TIMEOUT(on->fixture.boxes.allShown(), 2000);
    QCOMPARE(on->port->Buffer().size(), 98);
    QVERIFY(told.isEmpty());

    // The count was not reset: one byte more is too much again.
    on->control().setRThreshold(1);
    on->fixture.boxes.expect(box, 48);
    on->line.send("y");
    QTRY_VERIFY_WITH_TIMEOUT(on->fixture.boxes.allShown(), 2000);
    QVERIFY(told.isEmpty());

    on->port->ClearBuffer(); // resets it
    on->line.send("z");
    QTRY_COMPARE_WITH_TIMEOUT(told.size(), 1, 2000);
    QCOMPARE(told.at(0), qMakePair(QStringLiteral("z"), 1));
}

void TestCommPortEvents::otherEventsAreIgnored()
{
    on->openWithReply({}); // polling: the control raises no receive event
    on->line.send("abc");
    QTRY_COMPARE_WITH_TIMEOUT(on->control().inBufferCount(), 3, 2000);
    on->port->DoOnComm();
    QCOMPARE(on->port->Buffer(), QString());
    QCOMPARE(on->control().inBufferCount(), 3);
    QVERIFY(told.isEmpty());
}

void TestCommPortEvents::aWaitInEventModeHearsTheReply()
{
    on->port->setPortMode(1);
    on->openWithReply("KELDO-X");
    on->line.setFault(sim::Fault::LateReply); // so that it comes during the wait
    on->line.setLateBy(std::chrono::milliseconds(100));
    QVERIFY(on->port->WriteAndWaitForCr(QStringLiteral("*ID?\r")));
    QCOMPARE(on->port->Buffer(), QStringLiteral("KELDO-X\r"));
    on->line.setResponder([](const std::string &) { return "one\rtwo"; });
    QVERIFY(on->port->WriteAndWaitFor2Crs(QStringLiteral("*SAVE\r")));
    QCOMPARE(on->port->Buffer(), QStringLiteral("one\rtwo\r"));
}

void TestCommPortEvents::theModeTakesEffectAtTheNextOpening()
{
    on->openWithReply("OK");
    on->port->setPortMode(1);
    QVERIFY(on->port->WriteAndWaitForCr(QStringLiteral("*ID?\r"))); // still polling
    QVERIFY(told.isEmpty());
    QVERIFY(on->port->InitializePort());
    on->line.send("x");
    QTRY_COMPARE_WITH_TIMEOUT(told.size(), 1, 2000);
}

void TestCommPortEvents::bytesSentAreLoggedWhenAsked()
{
    const auto log = std::make_shared<FakeLog>();
    installEventLog(log);
    on->openWithReply("OK");
    QVERIFY(on->port->WriteAndWaitForCr(QStringLiteral("*ID?\r")));
    QVERIFY(log->events.isEmpty());
    debugSwitches().bytesSent = true;
    QVERIFY(on->port->WriteAndWaitForCr(QStringLiteral("*ID?\r")));
    QCOMPARE(log->events.size(), 1);
    QCOMPARE(log->events.at(0).first, QStringLiteral("clsCommPort"));
    QVERIFY(log->events.at(0).second.contains(QStringLiteral("2a 49 44 3f 0d")));
    QVERIFY(log->events.at(0).second.contains(QStringLiteral("COM3")));
    debugSwitches().bytesSent = false;
    QVERIFY(on->port->WriteAndWaitForCr(QStringLiteral("*ID?\r")));
    QCOMPARE(log->events.size(), 1);
}

void TestCommPortEvents::bytesReceivedAreLoggedAsTheyPassed()
{
    const auto log = std::make_shared<FakeLog>();
    installEventLog(log);
    on->openWithReply("OK");
    debugSwitches().bytesReceived = true;
    on->line.send("late"); // discarded before the command, and logged
    on->line.setTerminator("\r\n");
    QTRY_COMPARE_WITH_TIMEOUT(on->control().inBufferCount(), 4, 2000);
    QVERIFY(on->port->WriteAndWaitForCr(QStringLiteral("*ID?\r")));
    const auto logged = [&] { return log->lines().join(QLatin1Char('\n')); };
    QTRY_VERIFY_WITH_TIMEOUT(logged().contains(QStringLiteral("0a")), 2000); // the line feed too
    QVERIFY(logged().contains(QStringLiteral("6c 61 74 65")));
    QVERIFY(!logged().contains(QStringLiteral("2a 49 44"))); // what was sent is another switch
}

void TestCommPortEvents::aPortMadeLaterFollowsTheSwitches()
{
    debugSwitches().bytesSent = true;
    const auto log = std::make_shared<FakeLog>();
    installEventLog(log);
    clsCommPort port;
    port.setPortNumber(3);
    QVERIFY(port.InitializePort());
    port.SendString(QStringLiteral("x"));
    QCOMPARE(log->events.size(), 1);
}

KELDOX_TEST(TestCommPortEvents)
#include "TestCommPortEvents.moc"
