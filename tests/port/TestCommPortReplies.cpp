// Replies as bad lines send them, and what a wait costs: silent, late, split, endless, binary.
#include "CommPortOnLine.h"
#include "support/TestMain.h"

#include "platform/TestHooks.h"

#include <QElapsedTimer>

#include <ctime>

class TestCommPortReplies : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { on.reset(); }
    void aSilentUnitTimesOut();
    void aLateReplyDoesNotAnswerTheNextCommand();
    void aLateReplyDoesNotAnswerTheNextTwoReplyCommand();
    void aReplyInPiecesIsPutTogether();
    void aReplyAtTheLinesPaceArrivesWhole();
    void aReplyWithLineFeedsLeavesNoneForTheNext();
    void anEmptyReplyIsAReply();
    void aBinaryReplyKeepsItsBytes();
    void noReplyIsSleptThrough_data();
    void noReplyIsSleptThrough();
    void anEndlessReplyTimesOutAndTheNextExchangeWorks();
    void theWindowLivesWhileAReplyIsAwaited();
    void waitingDoesNotSpin_data();
    void waitingDoesNotSpin();
    void aBabblingLineDoesNotStallTheWindow();

private:
    bool exchange(const char *command)
    {
        return on->port->WriteAndWaitForCr(QString::fromLatin1(command));
    }
    // The longest time between two beats of a 5 ms timer while a reply is awaited, in ms.
    qint64 longestStall();

    std::unique_ptr<CommPortOnLine> on;
    QElapsedTimer clock;
};

void TestCommPortReplies::init()
{
    on = std::make_unique<CommPortOnLine>();
    on->openWithReply("OK");
    clock.start();
}

qint64 TestCommPortReplies::longestStall()
{
    QElapsedTimer sinceBeat;
    qint64 longest = 0;
    QTimer heart;
    heart.setTimerType(Qt::PreciseTimer);
    connect(&heart, &QTimer::timeout, this,
            [&] { longest = std::max(longest, sinceBeat.restart()); });
    heart.start(5);
    sinceBeat.start();
    exchange("*ID?\r");
    return std::max(longest, sinceBeat.elapsed());
}

void TestCommPortReplies::aSilentUnitTimesOut()
{
    on->line.setFault(sim::Fault::Silence);
    on->port->settimeOutMs(200);
    QVERIFY(!exchange("*ID?\r"));
    const qint64 took = clock.elapsed();
    QVERIFY2(took >= 199 && took < 1000, qPrintable(QString::number(took)));
    QCOMPARE(TestHooks::virtualMs(), 200);
    QCOMPARE(on->port->Buffer(), QString());
    QVERIFY(on->port->IsOpen()); // a time-out is no error
}

void TestCommPortReplies::aLateReplyDoesNotAnswerTheNextCommand()
{
    on->line.setResponder([](const std::string &command) { return "reply to " + command; });
    on->line.setFault(sim::Fault::LateReply, {}, 1);
    on->line.setLateBy(std::chrono::milliseconds(200));
    on->port->settimeOutMs(50);
    QVERIFY(!exchange("first\r"));
    QTRY_VERIFY_WITH_TIMEOUT(on->control().inBufferCount() > 0, 2000); // there it is
    on->port->settimeOutMs(2000);
    QVERIFY(exchange("second\r"));
    QCOMPARE(on->port->Buffer(), QStringLiteral("reply to second\r"));
}

void TestCommPortReplies::aLateReplyDoesNotAnswerTheNextTwoReplyCommand()
{
    on->line.send("late\r");
    QTRY_VERIFY_WITH_TIMEOUT(on->control().inBufferCount() > 0, 2000);
    on->line.setResponder([](const std::string &) { return "one\rtwo"; });
    QVERIFY(on->port->WriteAndWaitFor2Crs(QStringLiteral("*SAVE\r")));
    QCOMPARE(on->port->Buffer(), QStringLiteral("one\rtwo\r"));
}

void TestCommPortReplies::aReplyInPiecesIsPutTogether()
{
    on->line.setResponder([](const std::string &) { return "KELDO-X REV 3.38"; });
    on->line.setFault(sim::Fault::SplitReply);
    QVERIFY(exchange("*ID?\r"));
    QCOMPARE(on->port->Buffer(), QStringLiteral("KELDO-X REV 3.38\r"));
}

void TestCommPortReplies::aReplyAtTheLinesPaceArrivesWhole()
{
    const std::string text(200, 'x'); // 105 ms at 19200 baud
    on->line.setResponder([text](const std::string &) { return text; });
    on->line.setPaced(true);
    QVERIFY(exchange("*ID?\r"));
    QVERIFY(clock.elapsed() >= 100);
    QCOMPARE(on->port->BufferStart(), QString::fromStdString(text));
}

void TestCommPortReplies::aReplyWithLineFeedsLeavesNoneForTheNext()
{
    on->line.setTerminator("\r\n");
    for (int round = 0; round < 20; ++round) {
        QVERIFY(exchange("*ID?\r"));
        QCOMPARE(on->port->Buffer(), QStringLiteral("OK\r"));
    }
}

void TestCommPortReplies::anEmptyReplyIsAReply()
{
    on->line.setFault(sim::Fault::EmptyReply);
    QVERIFY(exchange("*ID?\r"));
    QCOMPARE(on->port->Buffer(), QStringLiteral("\r"));
    QCOMPARE(on->port->BufferStart(), QString());
}

void TestCommPortReplies::aBinaryReplyKeepsItsBytes()
{
    std::string text;
    for (int value = 0; value < 256; ++value)
        if (value != '\r')
            text.push_back(static_cast<char>(value));
    on->line.setResponder([text](const std::string &) { return text; });
    QVERIFY(exchange("*ID?\r"));
    QCOMPARE(on->port->BufferStart(), QString::fromLatin1(text.data(), 255));
}

void TestCommPortReplies::noReplyIsSleptThrough_data()
{
    QTest::addColumn<int>("turn");
    for (int turn = 1; turn <= 4; ++turn)
        QTest::addRow("turn %d", turn) << turn;
}

// Bytes may come in any turn of a wait's round, also between the last look and the sleep.
void TestCommPortReplies::noReplyIsSleptThrough()
{
    QFETCH(const int, turn);
    int turns = 0;
    QTimer everyTurn;
    connect(&everyTurn, &QTimer::timeout, this, [&] {
        if (++turns < turn)
            return;
        everyTurn.stop();
        on->line.send("OK\r");
        while (on->control().inBufferCount() == 0 && clock.elapsed() < 1000)
            QCoreApplication::processEvents();
    });
    everyTurn.start(0);
    QVERIFY(!on->port->WaitForReply(1).timedOut);
    QCOMPARE(turns, turn);
}

void TestCommPortReplies::anEndlessReplyTimesOutAndTheNextExchangeWorks()
{
    on->line.setFault(sim::Fault::Endless, {}, 1);
    on->port->settimeOutMs(300);
    QVERIFY(!exchange("*ID?\r"));
    QVERIFY(clock.elapsed() < 1500);
    QVERIFY(on->port->Buffer().size() > 1000);
    on->port->settimeOutMs(2000);
    // What is on the way may still come before the answer, but the answer comes.
    QVERIFY(exchange("*ID?\r"));
    QVERIFY(on->port->BufferStart().endsWith(QStringLiteral("OK")));
    QVERIFY(exchange("*ID?\r"));
    QCOMPARE(on->port->Buffer(), QStringLiteral("OK\r"));
}

void TestCommPortReplies::theWindowLivesWhileAReplyIsAwaited()
{
    on->line.setFault(sim::Fault::Silence);
    on->port->settimeOutMs(500);
    // A machine under load may stall a process by itself: the best of three counts.
    qint64 best = longestStall();
    for (int again = 0; again < 2 && best >= 50; ++again)
        best = std::min(best, longestStall());
    QVERIFY2(best < 50, qPrintable(QString::number(best)));
}

void TestCommPortReplies::waitingDoesNotSpin_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("pollInterval");
    QTest::addRow("polling") << 0 << 0;
    QTest::addRow("polling with an interval") << 0 << 20;
    QTest::addRow("event") << 1 << 0;
}

void TestCommPortReplies::waitingDoesNotSpin()
{
    QFETCH(const int, mode);
    QFETCH(const int, pollInterval);
    on->line.setFault(sim::Fault::Silence);
    on->port->setPortMode(mode);
    QVERIFY(on->port->InitializePort());
    on->port->setPollInterval(static_cast<std::int16_t>(pollInterval));
    on->port->settimeOutMs(1000);
    const std::clock_t before = std::clock();
    QVERIFY(!exchange("*ID?\r"));
    const double used = 1000.0 * static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
    QVERIFY2(used < 30, qPrintable(QString::number(used))); // ms
}

void TestCommPortReplies::aBabblingLineDoesNotStallTheWindow()
{
    on->line.setFault(sim::Fault::Endless);
    on->port->settimeOutMs(500);
    qint64 best = longestStall();
    for (int again = 0; again < 2 && best >= 50; ++again)
        best = std::min(best, longestStall());
    QVERIFY2(best < 50, qPrintable(QString::number(best)));
}

KELDOX_TEST(TestCommPortReplies)
#include "TestCommPortReplies.moc"
