// The serial port object on a bad line: one exchange at a time, and what a missing reply leaves
// behind.
#include "CommPortOnLine.h"
#include "support/TestMain.h"

#include "core/EventLog.h"
#include "platform/RunTimeError.h"
#include "platform/TestHooks.h"
#include "sim/PseudoTerminal.h"

#include <QElapsedTimer>
#include <QThread>

class TestCommPortBadLine : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { on.reset(); }
    void anExchangeInTheMiddleOfAnotherIsRefused();
    void theTwoReplyExchangeAndABareWaitAreRefusedToo();
    void thePortIsFreeAgainAfterTheExchange();
    void anExchangeMayBeginOnAPortThatWasOpenedAnewUnderAWait();
    void theNextCommandWaitsUntilTheLineIsQuiet();
    void itWaitsOnceOnly();
    void aLineThatIsNeverQuietIsWaitedForAReplysTimeOnly();
    void theLateReplyIsNotTheNextOnesAnswer();
    void aPortOpenedAnewHasNothingToWaitFor();
    void whatHasNotLeftThePortIsNotSentLater();
    void aReplyThatLiesThereAtTheDeadlineCounts_data();
    void aReplyThatLiesThereAtTheDeadlineCounts();
    void aReplyWithoutEndEndsTheWait();
    void aReplyOfTheLongestLengthIsTaken();
    void theLineFeedOfADiscardedReplyIsSwallowed();

private:
    bool exchange(const char *command)
    {
        return on->port->WriteAndWaitForCr(QString::fromLatin1(command));
    }

    std::unique_ptr<CommPortOnLine> on;
    QElapsedTimer clock;
};

void TestCommPortBadLine::init()
{
    on = std::make_unique<CommPortOnLine>();
    clock.start();
}

void TestCommPortBadLine::anExchangeInTheMiddleOfAnotherIsRefused()
{
    const auto log = std::make_shared<FakeLog>();
    installEventLog(log);
    on->openWithReply("first");
    on->line.setFault(sim::Fault::LateReply);
    on->line.setLateBy(std::chrono::milliseconds(150));
    std::optional<bool> inner;
    QTimer::singleShot(30, this, [&] { inner = exchange("*SECOND?\r"); });
    QVERIFY(exchange("*FIRST?\r")); // goes on undisturbed
    QCOMPARE(inner, std::optional(false));
    QCOMPARE(on->port->BufferStart(), QStringLiteral("first"));
    QCOMPARE(on->commands(1), QStringList{QStringLiteral("*FIRST?")});
    QCOMPARE(log->lines(),
             QStringList{QStringLiteral("clsCommPort|COM3 waits for a reply: not sent: *SECOND?")});
}

void TestCommPortBadLine::theTwoReplyExchangeAndABareWaitAreRefusedToo()
{
    on->openWithReply("first");
    on->line.setFault(sim::Fault::LateReply);
    on->line.setLateBy(std::chrono::milliseconds(150));
    bool ran = false;
    QTimer::singleShot(30, this, [&] {
        ran = true;
        QVERIFY(on->port->isBusy());
        QVERIFY(!on->port->WriteAndWaitFor2Crs(QStringLiteral("*SECOND?\r")));
        QVERIFY(on->port->WaitForReply(1).timedOut);
    });
    QVERIFY(exchange("*FIRST?\r"));
    QVERIFY(ran);
    QCOMPARE(on->port->BufferStart(), QStringLiteral("first"));
    QCOMPARE(on->commands(1), QStringList{QStringLiteral("*FIRST?")});
}

void TestCommPortBadLine::thePortIsFreeAgainAfterTheExchange()
{
    on->openWithReply("OK");
    QVERIFY(!on->port->isBusy());
    QVERIFY(exchange("*A?\r"));
    QVERIFY(!on->port->isBusy());
    on->openWithReply(std::nullopt);
    on->port->settimeOutMs(30);
    QVERIFY(!exchange("*B?\r"));
    QVERIFY(!on->port->isBusy());
}

void TestCommPortBadLine::anExchangeMayBeginOnAPortThatWasOpenedAnewUnderAWait()
{
    on->openWithReply(std::nullopt);
    bool inner = false;
    QTimer::singleShot(30, this, [&] {
        on->openWithReply("fresh"); // ends the wait
        inner = exchange("*SECOND?\r");
    });
    QVERIFY(!exchange("*FIRST?\r"));
    QVERIFY(inner);
}

void TestCommPortBadLine::theNextCommandWaitsUntilTheLineIsQuiet()
{
    on->openWithReply(std::nullopt);
    on->port->settimeOutMs(50);
    QVERIFY(!exchange("*FIRST?\r"));
    on->port->settimeOutMs(2000);
    QTimer::singleShot(150, this, [&] { on->line.send("LATE\r"); });
    on->line.setResponder([](const std::string &) { return "second"; });
    clock.restart();
    QVERIFY(exchange("*SECOND?\r"));
    QCOMPARE(on->port->Buffer(), QStringLiteral("second\r"));
    QVERIFY2(clock.elapsed() >= 390, qPrintable(QString::number(clock.elapsed()))); // 150 + 250
}

void TestCommPortBadLine::itWaitsOnceOnly()
{
    on->openWithReply(std::nullopt);
    on->port->settimeOutMs(50);
    QVERIFY(!exchange("*FIRST?\r"));
    QCOMPARE(TestHooks::virtualMs(), 50);
    on->port->settimeOutMs(2000);
    on->line.setResponder([](const std::string &) { return "OK"; });
    QVERIFY(exchange("*SECOND?\r"));
    QCOMPARE(TestHooks::virtualMs(), 50 + 250);
    QVERIFY(exchange("*THIRD?\r"));
    QCOMPARE(TestHooks::virtualMs(), 50 + 250);
}

void TestCommPortBadLine::aLineThatIsNeverQuietIsWaitedForAReplysTimeOnly()
{
    on->openWithReply(std::nullopt);
    on->port->settimeOutMs(400);
    QVERIFY(!exchange("*FIRST?\r"));
    QTimer babble;
    connect(&babble, &QTimer::timeout, this, [&] { on->line.send("x"); });
    babble.start(20);
    clock.restart();
    QVERIFY(!exchange("*SECOND?\r")); // 400 ms for the quiet, 400 ms for the reply
    QVERIFY(clock.elapsed() >= 700);
    QVERIFY(clock.elapsed() < 3000);
    QCOMPARE(on->commands(2).size(), 2);
}

void TestCommPortBadLine::theLateReplyIsNotTheNextOnesAnswer()
{
    on->line.setResponder([](const std::string &command) { return "to " + command; });
    on->line.setFault(sim::Fault::LateReply);
    on->line.setLateBy(std::chrono::milliseconds(120));
    QVERIFY(on->port->InitializePort());
    on->port->settimeOutMs(60);
    QVERIFY(!exchange("*FIRST?\r"));
    on->port->settimeOutMs(2000);
    QVERIFY(exchange("*SECOND?\r"));
    QCOMPARE(on->port->Buffer(), QStringLiteral("to *SECOND?\r"));
}

void TestCommPortBadLine::aPortOpenedAnewHasNothingToWaitFor()
{
    on->openWithReply(std::nullopt);
    on->port->settimeOutMs(50);
    QVERIFY(!exchange("*FIRST?\r"));
    on->openWithReply("OK");
    QVERIFY(exchange("*SECOND?\r"));
    QCOMPARE(TestHooks::virtualMs(), 50);
}

void TestCommPortBadLine::whatHasNotLeftThePortIsNotSentLater()
{
    sim::PseudoTerminal deaf; // nobody reads it
    on->fixture.plug(4, deaf.device());
    on->port->setPortNumber(4);
    on->port->settimeOutMs(50);
    QVERIFY(on->port->InitializePort());
    // Whole lines until the system takes no more; Qt keeps the rest.
    const QString line = QString(63, QLatin1Char('x')) + QLatin1Char('\r');
    int number = 0;
    while (number == 0) {
        try {
            on->port->SendString(line);
        } catch (const RunTimeError &error) {
            number = error.number();
        }
    }
    QCOMPARE(number, 8019);
    QVERIFY(on->port->WaitForReply(1).timedOut);
    on->port->SendString(line); // room again: nothing was kept
}

void TestCommPortBadLine::aReplyThatLiesThereAtTheDeadlineCounts_data()
{
    QTest::addColumn<int>("mode");
    QTest::addRow("polling") << int(clsCommPort::Polling);
    QTest::addRow("event") << int(clsCommPort::Event);
}

// As after a sleep of the computer: the time is over when the loop gets its next turn, and the
// reply has been there for long.
void TestCommPortBadLine::aReplyThatLiesThereAtTheDeadlineCounts()
{
    QFETCH(const int, mode);
    on->port->setPortMode(mode);
    on->line.setResponder([](const std::string &) { return "there"; });
    on->line.setFault(sim::Fault::LateReply);
    on->line.setLateBy(std::chrono::milliseconds(60));
    QVERIFY(on->port->InitializePort());
    on->port->settimeOutMs(100);
    QTimer::singleShot(20, this, [] { QThread::msleep(300); });
    QVERIFY(exchange("*ID?\r"));
    QCOMPARE(on->port->Buffer(), QStringLiteral("there\r"));
}

void TestCommPortBadLine::aReplyWithoutEndEndsTheWait()
{
    on->openWithReply(std::nullopt);
    on->port->settimeOutMs(60000);
    QTimer flood;
    const std::string piece(2000, 'x');
    connect(&flood, &QTimer::timeout, this, [&] { on->line.send(piece); });
    flood.start(1);
    QVERIFY(!exchange("*ID?\r"));
    QVERIFY(on->port->Buffer().size() > clsCommPort::longestReply);
    QVERIFY(on->port->Buffer().size() < 2 * clsCommPort::longestReply);
    QVERIFY(clock.elapsed() < 30000);
}

void TestCommPortBadLine::aReplyOfTheLongestLengthIsTaken()
{
    on->openWithReply(std::nullopt);
    on->port->settimeOutMs(60000);
    QTimer slow;
    constexpr int pieces = 32;
    const std::string piece(clsCommPort::longestReply / pieces, 'x');
    int sent = 0;
    connect(&slow, &QTimer::timeout, this, [&] {
        const bool isWhole = on->port->Buffer().size() == clsCommPort::longestReply;
        if (sent < pieces || (sent == pieces && isWhole))
            on->line.send(sent++ < pieces ? piece : "\r");
    });
    slow.start(1);
    QVERIFY(exchange("*ID?\r"));
    QCOMPARE(on->port->Buffer().size(), clsCommPort::longestReply + 1);
}

void TestCommPortBadLine::theLineFeedOfADiscardedReplyIsSwallowed()
{
    on->openWithReply("OK");
    on->line.send("LATE\r");
    QTRY_VERIFY_WITH_TIMEOUT(on->control().inBufferCount() == 5, 2000);
    on->control().discardInput();
    on->line.send("\nOK\r");
    QTRY_COMPARE_WITH_TIMEOUT(on->control().inBufferCount(), 3, 2000);
}

KELDOX_TEST(TestCommPortBadLine)
#include "TestCommPortBadLine.moc"
