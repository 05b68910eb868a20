// What passes the serial control, byte by byte: input, output, line feeds, discarding, hang-up.
#include "TerminalEnd.h"
#include "support/TestMain.h"

class TestCommControlBytes : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void textGoesOutUnchangedBeforeOutputReturns();
    void everyByteValuePassesBothWays();
    void theInputTakesAllOrAsManyAsAsked();
    void bytesFromBeforeTheOpeningAreDiscarded();
    void aLineFeedAfterACarriageReturnIsSwallowed_data();
    void aLineFeedAfterACarriageReturnIsSwallowed();
    void aLineFeedOfADiscardedReplyIsSwallowed();
    void discardingTakesWhatTheSystemStillHolds();
    void moreThanTheBufferHoldsIsLost();
    void theLineIsShownAsItIs();
    void discardedBytesAreGone();
    void aClosedPortGivesNothing();
    void aHangUpIsRaisedOnceAndClosesThePort();
    void nothingIsLeftToReadAfterAHangUp();
    void aHangUpFoundWhileSendingIsRaisedOnce();
    void aPortThatHungUpCanBeOpenedAgain();

private:
    // Sends the pieces one after the other, each after the one before was read.
    void sendInPieces(const QList<QByteArray> &pieces);
    // What the control gives until so many characters came.
    QString taken(qsizetype count);

    std::unique_ptr<Fixture> fixture;
    std::unique_ptr<TerminalEnd> end;
    std::unique_ptr<CommControl> control;
};

void TestCommControlBytes::init()
{
    fixture = std::make_unique<Fixture>();
    end = std::make_unique<TerminalEnd>();
    control = std::make_unique<CommControl>();
    fixture->plug(3, end->device());
    control->setCommPort(3);
    control->setSettings(QStringLiteral("19200,N,8,1"));
    control->setPortOpen(true);
}

void TestCommControlBytes::cleanup()
{
    control.reset();
    end.reset();
    fixture.reset();
}

void TestCommControlBytes::sendInPieces(const QList<QByteArray> &pieces)
{
    QSignalSpy received(control.get(), &CommControl::BytesReceived);
    qsizetype sent = 0;
    for (const QByteArray &piece : pieces) {
        end->send(piece);
        sent += piece.size();
        QTRY_VERIFY_WITH_TIMEOUT(
            [&] {
                qsizetype came = 0;
                for (const auto &call : std::as_const(received))
                    came += call.at(0).toByteArray().size();
                return came == sent;
            }(),
            2000);
    }
}

QString TestCommControlBytes::taken(qsizetype count)
{
    QString text;
    [[maybe_unused]] const bool came = QTest::qWaitFor(
        [&] {
            text += control->input();
            return text.size() >= count;
        },
        2000);
    return text;
}

void TestCommControlBytes::textGoesOutUnchangedBeforeOutputReturns()
{
    control->output(QStringLiteral("*STEP 5\r"));
    // No event is handled in between.
    QElapsedTimer clock;
    clock.start();
    std::string got;
    while (got.size() < 8 && clock.elapsed() < 2000)
        got += end->terminal.read();
    QCOMPARE(QByteArray::fromStdString(got), QByteArray("*STEP 5\r"));
    control->output(QStringLiteral("no terminator"));
    QCOMPARE(end->received(13), QByteArray("no terminator"));
}

void TestCommControlBytes::everyByteValuePassesBothWays()
{
    QByteArray bytes;
    for (int value = 255; value >= 0; --value)
        if (value != '\r' && value != '\n')
            bytes.append(static_cast<char>(value));
    end->send(bytes);
    QCOMPARE(taken(bytes.size()), QString::fromLatin1(bytes));
    control->output(QString::fromLatin1(bytes));
    QCOMPARE(end->received(bytes.size()), bytes);
}

void TestCommControlBytes::theInputTakesAllOrAsManyAsAsked()
{
    sendInPieces({"abcdef"});
    QCOMPARE(control->inBufferCount(), 6);
    control->setInputLen(1);
    QCOMPARE(control->input(), QStringLiteral("a"));
    control->setInputLen(2);
    QCOMPARE(control->input(), QStringLiteral("bc"));
    control->setInputLen(0);
    QCOMPARE(control->input(), QStringLiteral("def"));
    QCOMPARE(control->input(), QString());
    QCOMPARE(control->inBufferCount(), 0);
}

void TestCommControlBytes::bytesFromBeforeTheOpeningAreDiscarded()
{
    sendInPieces({"unread"});
    control->setPortOpen(false);
    end->send("stale\r");
    control->setPortOpen(true);
    QCOMPARE(control->inBufferCount(), 0);
    end->send("fresh\r");
    QCOMPARE(taken(6), QStringLiteral("fresh\r"));
}

void TestCommControlBytes::aLineFeedAfterACarriageReturnIsSwallowed_data()
{
    QTest::addColumn<QList<QByteArray>>("pieces");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const QList<QByteArray> &pieces, const char *text) {
        QTest::addRow("%s", name) << pieces << QString::fromLatin1(text);
    };
    row("in one piece", {"OK\r\n12\r\n"}, "OK\r12\r");
    row("between two reads", {"OK\r", "\n12\r", "\n"}, "OK\r12\r");
    row("byte by byte", {"O", "K", "\r", "\n", "1"}, "OK\r1");
    row("alone it stays", {"a\nb", "\n", "c"}, "a\nb\nc");
    row("only the first one", {"a\r\n\nb"}, "a\r\nb");
    row("after the second of two", {"a\r\r\nb"}, "a\r\rb");
    row("before the carriage return", {"a\n\rb"}, "a\n\rb");
}

void TestCommControlBytes::aLineFeedAfterACarriageReturnIsSwallowed()
{
    QFETCH(const QList<QByteArray>, pieces);
    QFETCH(const QString, text);
    sendInPieces(pieces);
    QCOMPARE(control->input(), text);
}

void TestCommControlBytes::aLineFeedOfADiscardedReplyIsSwallowed()
{
    // The late reply was read already ...
    sendInPieces({"LATE\r"});
    control->discardInput();
    sendInPieces({"\nOK\r"});
    QCOMPARE(control->input(), QStringLiteral("OK\r"));
    // ... or the system still holds it.
    sendInPieces({"x"});
    QVERIFY(end->sendAndHold("LATE\r"));
    control->discardInput();
    sendInPieces({"\nOK\r"});
    QCOMPARE(control->input(), QStringLiteral("OK\r"));
}

void TestCommControlBytes::discardingTakesWhatTheSystemStillHolds()
{
    sendInPieces({"read already"});
    QVERIFY(end->sendAndHold("not read yet\r"));
    control->discardInput();
    QCOMPARE(control->inBufferCount(), 0);
    end->send("OK\r");
    QCOMPARE(taken(3), QStringLiteral("OK\r"));
}

void TestCommControlBytes::moreThanTheBufferHoldsIsLost()
{
    control->setInBufferSize(10);
    sendInPieces({"0123456789abcdef"});
    QCOMPARE(control->input(), QStringLiteral("0123456789"));
}

void TestCommControlBytes::theLineIsShownAsItIs()
{
    QSignalSpy sent(control.get(), &CommControl::BytesSent);
    QSignalSpy received(control.get(), &CommControl::BytesReceived);
    control->output(QStringLiteral("*ID?\r"));
    QCOMPARE(sent.size(), 1);
    QCOMPARE(sent.at(0).at(0).toByteArray(), QByteArray("*ID?\r"));
    end->send("OK\r\n");
    QTRY_COMPARE_WITH_TIMEOUT(received.size(), 1, 2000);
    QCOMPARE(received.at(0).at(0).toByteArray(), QByteArray("OK\r\n"));
}

// What the port has taken over has been shown; what the system still holds goes too.
void TestCommControlBytes::discardedBytesAreGone()
{
    QSignalSpy received(control.get(), &CommControl::BytesReceived);
    end->send("late\r");
    QTRY_COMPARE_WITH_TIMEOUT(received.size(), 1, 2000);
    QVERIFY(end->sendAndHold("later\r"));
    control->discardInput();
    QTest::qWait(50);
    QCOMPARE(received.size(), 1);
    QCOMPARE(control->inBufferCount(), 0);
}

void TestCommControlBytes::aClosedPortGivesNothing()
{
    sendInPieces({"unread"});
    control->setPortOpen(false);
    QCOMPARE(control->inBufferCount(), 0);
    QCOMPARE(control->input(), QString());
    control->discardInput();
}

void TestCommControlBytes::aHangUpIsRaisedOnceAndClosesThePort()
{
    QSignalSpy hangUps(control.get(), &CommControl::HungUp);
    bool openInside = true;
    connect(control.get(), &CommControl::HungUp, this, [&] { openInside = control->portOpen(); });
    end->terminal.hangUp();
    QTRY_COMPARE_WITH_TIMEOUT(hangUps.size(), 1, 2000);
    QVERIFY(!openInside);
    QTest::qWait(50);
    QCOMPARE(hangUps.size(), 1);
    QCOMPARE(raisedNumber([&] { control->output(QStringLiteral("x")); }), 8018);
}

void TestCommControlBytes::nothingIsLeftToReadAfterAHangUp()
{
    QSignalSpy hangUps(control.get(), &CommControl::HungUp);
    sendInPieces({"unread\r"});
    end->terminal.hangUp();
    QTRY_COMPARE_WITH_TIMEOUT(hangUps.size(), 1, 2000);
    QCOMPARE(control->inBufferCount(), 0);
    QCOMPARE(control->input(), QString());
}

void TestCommControlBytes::aHangUpFoundWhileSendingIsRaisedOnce()
{
    QSignalSpy hangUps(control.get(), &CommControl::HungUp);
    QSignalSpy sent(control.get(), &CommControl::BytesSent);
    end->terminal.hangUp();
    control->output(QStringLiteral("*ID?\r")); // before any event told of it
    QTRY_COMPARE_WITH_TIMEOUT(hangUps.size(), 1, 2000);
    QVERIFY(!control->portOpen());
    QCOMPARE(sent.size(), 0);
    QTest::qWait(50);
    QCOMPARE(hangUps.size(), 1);
}

void TestCommControlBytes::aPortThatHungUpCanBeOpenedAgain()
{
    QSignalSpy hangUps(control.get(), &CommControl::HungUp);
    end->terminal.hangUp();
    QTRY_COMPARE_WITH_TIMEOUT(hangUps.size(), 1, 2000);
    end = std::make_unique<TerminalEnd>();
    fixture->plug(3, end->device());
    control->setPortOpen(true);
    end->send("back\r");
    QCOMPARE(taken(5), QStringLiteral("back\r"));
}

KELDOX_TEST(TestCommControlBytes)
#include "TestCommControlBytes.moc"
