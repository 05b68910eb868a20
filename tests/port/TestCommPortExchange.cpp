// Sending and the two waits of the serial port object, in polling mode.
#include "CommPortOnLine.h"
#include "support/TestMain.h"

#include "core/DebugSwitches.h"
#include "core/EventLog.h"
#include "platform/RunTimeError.h"
#include "sim/PseudoTerminal.h"

#include <QElapsedTimer>

class TestCommPortExchange : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { on.reset(); }
    void anEmptyCommandSendsNothingAndIsTrue();
    void theTextIsSentUnchanged();
    void bytesAreLoggedWhenTheOperatorWantsThem();
    void sendingOnAClosedPortShowsABox();
    void sendingOnAClosedPortWithoutDisplayErrorsDoesNothing();
    void aReplyWithOneCarriageReturnIsEnough();
    void theReplyStaysWholeInTheBuffer();
    void theTwoReplyWaitNeedsTheSecondCarriageReturn();
    void theTwoReplyWaitAllowsItself65535MsAndPutsTheTimeOutBack();
    void theTimeOutIsPutBackAfterAFailedSend();
    void theTwoReplyWaitDoesNotClearFirst();
    void thePollDelayComesBetweenCommandAndWait();
    void theTwoReplyWaitHasNoDelay();
    void otherWaitModesWaitOutTheWholeTime_data();
    void otherWaitModesWaitOutTheWholeTime();
    void everyWaitEmptiesTheBufferFirst();
    void theTimerIsDisabledAndElapsedAfterAWait();
    void thePollIntervalThrottlesTheWait();
    void bufferStartIsTheTextBeforeTheFirstCarriageReturn();
    void theBufferSizeHasSixteenBits();
    void clearingEmptiesTheBuffer();

private:
    bool exchange(const char *command)
    {
        return on->port->WriteAndWaitForCr(QString::fromLatin1(command));
    }

    std::unique_ptr<CommPortOnLine> on;
    QElapsedTimer clock;
};

void TestCommPortExchange::init()
{
    on = std::make_unique<CommPortOnLine>();
    clock.start();
}

void TestCommPortExchange::anEmptyCommandSendsNothingAndIsTrue()
{
    on->openWithReply({});
    on->port->setBuffer(QStringLiteral("kept"));
    QVERIFY(on->port->WriteAndWaitForCr(QString()));
    QVERIFY(on->port->WriteAndWaitFor2Crs(QString()));
    QCOMPARE(on->port->Buffer(), QStringLiteral("kept"));
    on->port->ClosePort();
    QVERIFY(on->port->WriteAndWaitForCr(QString())); // not even a box
    QCOMPARE(on->line.bytesReceived(), std::size_t(0));
}

void TestCommPortExchange::theTextIsSentUnchanged()
{
    on->openWithReply({});
    on->port->SendString(QStringLiteral("*STEP 5"));
    QTRY_COMPARE_WITH_TIMEOUT(on->line.bytesReceived(), std::size_t(7), 2000);
    QVERIFY(on->line.commands().empty()); // no carriage return was added
    on->port->SendString(QStringLiteral("00\r*ID?\r"));
    QCOMPARE(on->commands(2), (QStringList{QStringLiteral("*STEP 500"), QStringLiteral("*ID?")}));
}

void TestCommPortExchange::bytesAreLoggedWhenTheOperatorWantsThem()
{
    const auto log = std::make_shared<FakeLog>();
    installEventLog(log);
    const DebugSwitches before = debugSwitches();
    const auto back = qScopeGuard([&] { debugSwitches() = before; });
    on->openWithReply(std::string("A ~") + '\x7f' + '\xe9');
    log->events.clear();
    QVERIFY(on->port->WriteAndWaitForCr(QStringLiteral("*ID?\r")));
    QCOMPARE(log->lines(), QStringList());

    debugSwitches().bytesSent = true;
    debugSwitches().bytesReceived = true;
    QVERIFY(on->port->WriteAndWaitForCr(QStringLiteral("*ID?\r")));
    QCOMPARE(log->lines(),
             (QStringList{QStringLiteral("clsCommPort| COM3 sent 5 bytes: 2a 49 44 3f 0d <*ID?.>"),
                          QStringLiteral(
                              "clsCommPort| COM3 received 6 bytes: 41 20 7e 7f e9 0d <A ~...>")}));
}

void TestCommPortExchange::sendingOnAClosedPortShowsABox()
{
    on->fixture.boxes.expect(
        QStringLiteral("The port is not open.\r\nIf you are trying to control a USB device, make "
                       "sure it is connected."),
        48);
    on->port->SendString(QStringLiteral("*ID?\r"));
    QCOMPARE(on->fixture.boxes.shown().at(0).title, QStringLiteral("KELDO-X Control Program"));
    QCOMPARE(on->line.bytesReceived(), std::size_t(0));
}

void TestCommPortExchange::sendingOnAClosedPortWithoutDisplayErrorsDoesNothing()
{
    on->port->setDisplayErrors(false);
    on->port->SendString(QStringLiteral("*ID?\r"));
    QVERIFY(!exchange("*ID?\r"));
    QVERIFY2(clock.elapsed() < 1000, "a closed port has nothing to wait for");
    QCOMPARE(on->line.bytesReceived(), std::size_t(0));
}

void TestCommPortExchange::aReplyWithOneCarriageReturnIsEnough()
{
    on->openWithReply("OK");
    QVERIFY(exchange("*ID?\r"));
    QCOMPARE(on->port->Buffer(), QStringLiteral("OK\r"));
    QVERIFY(clock.elapsed() < 1000);
    QCOMPARE(on->commands(1), QStringList{QStringLiteral("*ID?")});
}

void TestCommPortExchange::theReplyStaysWholeInTheBuffer()
{
    on->openWithReply("xx OK\rand more");
    QVERIFY(exchange("*ID?\r"));
    QVERIFY(on->port->Buffer().startsWith(QStringLiteral("xx OK\r")));
    QCOMPARE(on->port->BufferStart(), QStringLiteral("xx OK"));
    QCOMPARE(on->port->Buffer(), QStringLiteral("xx OK\rand more\r"));
}

void TestCommPortExchange::theTwoReplyWaitNeedsTheSecondCarriageReturn()
{
    on->openWithReply("OK");
    bool secondSent = false;
    QTimer::singleShot(150, this, [&] {
        secondSent = true;
        on->line.send("DONE\r");
    });
    QVERIFY(on->port->WriteAndWaitFor2Crs(QStringLiteral("*SAVE\r")));
    QVERIFY(secondSent);
    QCOMPARE(on->port->Buffer(), QStringLiteral("OK\rDONE\r"));
}

void TestCommPortExchange::theTwoReplyWaitAllowsItself65535MsAndPutsTheTimeOutBack()
{
    on->port->settimeOutMs(50);
    on->openWithReply("OK");
    int interval = 0;
    QTimer::singleShot(200, this, [&] {
        interval = on->port->host().tmrCommTimer2->interval();
        on->line.send("DONE\r");
    });
    QVERIFY(on->port->WriteAndWaitFor2Crs(QStringLiteral("*SAVE\r")));
    QCOMPARE(interval, 65535);

    on->line.setResponder([](const std::string &) { return std::nullopt; });
    clock.restart();
    QVERIFY(!exchange("*ID?\r"));
    QVERIFY(clock.elapsed() < 1000);
    QCOMPARE(on->port->host().tmrCommTimer2->interval(), 50);
}

void TestCommPortExchange::theTimeOutIsPutBackAfterAFailedSend()
{
    const sim::PseudoTerminal deaf; // nobody reads it
    on->fixture.plug(4, deaf.device());
    on->port->setPortNumber(4);
    on->port->settimeOutMs(50);
    QVERIFY(on->port->InitializePort());
    const QString piece(1024, QLatin1Char('x'));
    int number = 0;
    for (int pieces = 0; pieces < 1000 && number == 0; ++pieces) {
        try {
            on->port->SendString(piece);
        } catch (const RunTimeError &error) {
            number = error.number();
        }
    }
    QCOMPARE(number, 8019);
    QVERIFY_THROWS_EXCEPTION(RunTimeError, on->port->WriteAndWaitFor2Crs(piece));
    clock.restart();
    QVERIFY(on->port->WaitForReply(1).timedOut);
    QVERIFY(clock.elapsed() < 1000);
}

void TestCommPortExchange::theTwoReplyWaitDoesNotClearFirst()
{
    on->openWithReply("OK\rDONE");
    QStringList buffers; // as they stand while the command is written
    connect(&on->control(), &CommControl::BytesSent, this,
            [&] { buffers.append(on->port->Buffer()); });
    on->port->setBuffer(QStringLiteral("old"));
    QVERIFY(on->port->WriteAndWaitForCr(QStringLiteral("*A\r")));
    on->port->setBuffer(QStringLiteral("old"));
    QVERIFY(on->port->WriteAndWaitFor2Crs(QStringLiteral("*B\r")));
    QCOMPARE(buffers, (QStringList{QString(), QStringLiteral("old")}));
    QCOMPARE(on->port->Buffer(), QStringLiteral("OK\rDONE\r")); // the wait emptied it
}

void TestCommPortExchange::thePollDelayComesBetweenCommandAndWait()
{
    on->openWithReply("OK");
    on->port->setPollDelay(200);
    QVERIFY(exchange("*ID?\r"));
    QVERIFY(clock.elapsed() >= 199);
    QCOMPARE(on->port->Buffer(), QStringLiteral("OK\r"));
}

void TestCommPortExchange::theTwoReplyWaitHasNoDelay()
{
    on->openWithReply("OK\rDONE");
    on->port->setPollDelay(30000);
    QVERIFY(on->port->WriteAndWaitFor2Crs(QStringLiteral("*SAVE\r")));
    QVERIFY(clock.elapsed() < 5000);
}

void TestCommPortExchange::otherWaitModesWaitOutTheWholeTime_data()
{
    QTest::addColumn<int>("mode");
    QTest::addRow("0") << 0;
    QTest::addRow("3") << 3;
    QTest::addRow("-1") << -1;
}

void TestCommPortExchange::otherWaitModesWaitOutTheWholeTime()
{
    QFETCH(const int, mode);
    on->openWithReply("OK\rDONE");
    on->port->settimeOutMs(200);
    on->port->SendString(QStringLiteral("*ID?\r"));
    clock.restart();
    const auto result = on->port->WaitForReply(mode);
    QVERIFY(clock.elapsed() >= 199);
    QVERIFY(result.timedOut);
    QVERIFY(result.rounds >= 1);
    QCOMPARE(on->port->Buffer(), QStringLiteral("OK\rDONE\r"));
}

void TestCommPortExchange::everyWaitEmptiesTheBufferFirst()
{
    on->openWithReply({});
    on->port->settimeOutMs(50);
    on->port->setBuffer(QStringLiteral("old\r"));
    QVERIFY(on->port->WaitForReply(1).timedOut);
    QCOMPARE(on->port->Buffer(), QString());
}

void TestCommPortExchange::theTimerIsDisabledAndElapsedAfterAWait()
{
    on->openWithReply("OK");
    const TimerControl *timer = on->port->host().tmrCommTimer2;
    QString tagInside;
    QTimer::singleShot(0, this, [&] { tagInside = timer->tag(); });
    on->line.setFault(sim::Fault::LateReply);
    on->line.setLateBy(std::chrono::milliseconds(50));
    QVERIFY(exchange("*ID?\r"));
    QCOMPARE(tagInside, QString()); // the yield before the wait came first
    QVERIFY(!timer->isEnabled());
    QCOMPARE(timer->tag(), QStringLiteral("TRUE"));
    QTimer::singleShot(20, this, [&] { tagInside = timer->tag(); });
    QVERIFY(exchange("*ID?\r"));
    QCOMPARE(tagInside, QStringLiteral("FALSE"));
}

void TestCommPortExchange::thePollIntervalThrottlesTheWait()
{
    on->openWithReply({});
    on->port->settimeOutMs(300);
    on->port->setPollInterval(50);
    const auto result = on->port->WaitForReply(1);
    QVERIFY(result.timedOut);
    QVERIFY2(result.rounds >= 2 && result.rounds <= 7, qPrintable(QString::number(result.rounds)));
}

void TestCommPortExchange::bufferStartIsTheTextBeforeTheFirstCarriageReturn()
{
    clsCommPort &port = *on->port;
    port.setBuffer(QStringLiteral("12.5\r7\r"));
    QCOMPARE(port.BufferStart(), QStringLiteral("12.5"));
    QCOMPARE(port.BufferSize(), std::int16_t(7));
    port.CleanUpBuffer();
    QCOMPARE(port.Buffer(), QStringLiteral("7\r"));
    port.CleanUpBuffer();
    QCOMPARE(port.Buffer(), QString());
    port.setBuffer(QStringLiteral("no end"));
    QCOMPARE(port.BufferStart(), QString());
    port.CleanUpBuffer();
    QCOMPARE(port.Buffer(), QStringLiteral("no end"));
}

void TestCommPortExchange::theBufferSizeHasSixteenBits()
{
    on->port->setBuffer(QString(32767, QLatin1Char('x')));
    QCOMPARE(on->port->BufferSize(), std::int16_t(32767));
    on->port->setBuffer(QString(32768, QLatin1Char('x')));
    QVERIFY_THROWS_EXCEPTION(RunTimeError, on->port->BufferSize());
}

void TestCommPortExchange::clearingEmptiesTheBuffer()
{
    on->port->setBuffer(QStringLiteral("12.5\r"));
    on->port->ClearBuffer();
    QCOMPARE(on->port->Buffer(), QString());
}

KELDOX_TEST(TestCommPortExchange)
#include "TestCommPortExchange.moc"
