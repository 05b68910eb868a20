// What a receiver may do to whom follows it: it is not there, silent, slow, speaks nonsense, never
// ends its line, or hangs up. And the real thing.
#include "FollowBench.h"

class TestCtlReceivers : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void aReceiverThatIsNotThereYet();
    void aReceiverThatHangsUp();
    void aReceiverThatGoesAwayAndComesBack();
    void aSilentReceiver();
    void aSlowReceiver();
    void nonsense_data();
    void nonsense();
    void aLineWithoutEnd();
    void anAnswerThatNobodyAskedFor();
    void theRealThing();

private:
    std::unique_ptr<FollowBench> on;
};

void TestCtlReceivers::init()
{
    on = std::make_unique<FollowBench>();
}

void TestCtlReceivers::cleanup()
{
    on.reset();
}

void TestCtlReceivers::aReceiverThatIsNotThereYet()
{
    on->receiver.goAway();
    QTest::qWait(50);
    FOLLOWS("");
    QVERIFY(on->nextText().startsWith(QStringLiteral("receiver lost: Connection refused")));
    QVERIFY(on->isQuiet(1500)); // tried again and again, told once
    on->receiver.comeBack();
    QCOMPARE(on->nextText(), QStringLiteral("receiver is back at 146.5 MHz"));
    QCOMPARE(on->nextText(), FollowBench::tuned("146.5"));
}

void TestCtlReceivers::aReceiverThatHangsUp()
{
    FOLLOWS("");
    QCOMPARE(on->nextText(), FollowBench::tuned("146.5"));
    on->receiver.tune(120e6);
    on->receiver.hangUp();
    QString line = on->nextText();
    if (line == FollowBench::tuned("120")) // the answer was under way
        line = on->nextText();
    QVERIFY2(line.startsWith(QStringLiteral("receiver lost: ")), qPrintable(line));
    QCOMPARE(on->nextText(), QStringLiteral("receiver is back at 120 MHz"));
    QTRY_COMPARE(on->bench.unit->currentMHz(), 120.0);
    QVERIFY(on->receiver.clients() >= 2);
}

void TestCtlReceivers::aReceiverThatGoesAwayAndComesBack()
{
    FOLLOWS("");
    QCOMPARE(on->nextText(), FollowBench::tuned("146.5"));
    on->receiver.goAway();
    QVERIFY(on->nextText().startsWith(QStringLiteral("receiver lost: ")));
    // Refused is another trouble than hung up: it is told as well, and then no more.
    QVERIFY(on->nextText().startsWith(QStringLiteral("receiver lost: Connection refused")));
    QVERIFY(on->isQuiet(1000));
    QCOMPARE(on->bench.unit->step(), 1860);
    on->receiver.tune(150e6);
    on->receiver.comeBack();
    QCOMPARE(on->nextText(), QStringLiteral("receiver is back at 150 MHz"));
    QCOMPARE(on->nextText(), FollowBench::tuned("150"));
}

void TestCtlReceivers::aSilentReceiver()
{
    FOLLOWS("");
    QCOMPARE(on->nextText(), FollowBench::tuned("146.5"));
    on->receiver.setResponder({});
    QCOMPARE(on->nextText(), QStringLiteral("receiver lost: it does not answer; the filter stays, "
                                            "trying again"));
    QVERIFY(on->isQuiet(2500));
    QCOMPARE(on->bench.unit->step(), 1860);
    on->receiver.tune(150e6);
    QCOMPARE(on->nextText(), QStringLiteral("receiver is back at 150 MHz"));
    QCOMPARE(on->nextText(), FollowBench::tuned("150"));
}

void TestCtlReceivers::aSlowReceiver()
{
    on->receiver.setResponder([](const std::string &) {
        std::this_thread::sleep_for(std::chrono::milliseconds(600));
        return std::string("150000000\n");
    });
    FOLLOWS("--timeout 5");
    QCOMPARE(on->nextText(), FollowBench::tuned("150"));
    QVERIFY(on->isQuiet(1500));
    QCOMPARE(on->receiver.clients(), 1);
}

void TestCtlReceivers::nonsense_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QString>("text");
    const auto answers = [](const char *shown) {
        return QStringLiteral("receiver not understood: it answers \"%1\", which is no "
                              "frequency; the filter stays")
            .arg(QLatin1String(shown));
    };
    QTest::newRow("words") << QByteArray("hello\n") << answers("hello");
    QTest::newRow("nothing") << QByteArray("\n") << answers("");
    QTest::newRow("zero") << QByteArray("0\n") << answers("0");
    QTest::newRow("negative") << QByteArray("-5\n") << answers("-5");
    QTest::newRow("not a number") << QByteArray("nan\n") << answers("nan");
    QTest::newRow("huge") << QByteArray("1e99\n") << answers("1e99");
    QTest::newRow("trailing") << QByteArray("150000000 FM\n") << answers("150000000 FM");
    QTest::newRow("control") << QByteArray("\x1b[2J\n") << answers(".[2J");
    QTest::newRow("error") << QByteArray("RPRT -11\n")
                           << QStringLiteral("receiver not understood: it reports an error, RPRT "
                                             "-11; the filter stays");
}

void TestCtlReceivers::nonsense()
{
    QFETCH(QByteArray, answer);
    QFETCH(QString, text);
    FOLLOWS("");
    QCOMPARE(on->nextText(), FollowBench::tuned("146.5"));
    on->receiver.answer(answer.toStdString());
    QCOMPARE(on->nextText(), text);
    QVERIFY(on->isQuiet(200));
    QCOMPARE(on->bench.unit->step(), 1860);
    on->receiver.tune(150e6);
    QCOMPARE(on->nextText(), QStringLiteral("receiver is back at 150 MHz"));
    QCOMPARE(on->nextText(), FollowBench::tuned("150"));
    QCOMPARE(on->receiver.clients(), 1);
}

void TestCtlReceivers::aLineWithoutEnd()
{
    on->receiver.answer(std::string(100'000, '1'));
    FOLLOWS("");
    QVERIFY(
        on->nextText().startsWith(QStringLiteral("receiver lost: it sends a line without end")));
    on->receiver.answer(std::string(300, '1') + '\n');
    QVERIFY(on->isQuiet(1000)); // the same trouble: a line that is too long
    on->receiver.tune(150e6);
    QCOMPARE(on->nextText(), QStringLiteral("receiver is back at 150 MHz"));
    QCOMPARE(on->nextText(), FollowBench::tuned("150"));
}

void TestCtlReceivers::anAnswerThatNobodyAskedFor()
{
    on->receiver.answer("150000000\n120000000\n130000000\n");
    FOLLOWS("");
    QCOMPARE(on->nextText(), FollowBench::tuned("150"));
    QVERIFY(on->isQuiet());
    on->receiver.answer("110000000\n140000000\n");
    QCOMPARE(on->nextText(), FollowBench::tuned("110"));
    QVERIFY(on->isQuiet());
}

// Hamlib's own program with its receiver that exists in memory alone.
void TestCtlReceivers::theRealThing()
{
    const QString server = QStandardPaths::findExecutable(QStringLiteral("rigctld"));
    const QString hand = QStandardPaths::findExecutable(QStringLiteral("rigctl"));
    if (server.isEmpty() || hand.isEmpty())
        QSKIP("rigctld is not installed (Debian: libhamlib-utils)");
    const QString port = QString::number(on->receiver.port());
    on->receiver.goAway(); // its port is free, and known
    QTest::qWait(100);
    QProcess rig;
    rig.start(server, {QStringLiteral("-m"), QStringLiteral("1"), QStringLiteral("-T"),
                       QStringLiteral("127.0.0.1"), QStringLiteral("-t"), port});
    QVERIFY(rig.waitForStarted());
    const auto tune = [&](const char *hertz) {
        const QStringList arguments{QStringLiteral("-m"), QStringLiteral("2"),
                                    QStringLiteral("-r"), QStringLiteral("127.0.0.1:") + port,
                                    QStringLiteral("F"),  QString::fromLatin1(hertz)};
        QProcess rigctl;
        rigctl.start(hand, arguments);
        return rigctl.waitForFinished(20'000) && rigctl.exitCode() == 0;
    };
    QTRY_VERIFY_WITH_TIMEOUT(tune("146500000"), 20'000);
    FOLLOWS("");
    QString line = on->nextText();
    while (line.startsWith(QStringLiteral("receiver")))
        line = on->nextText();
    QCOMPARE(line, FollowBench::tuned("146.5"));
    QCOMPARE(on->bench.unit->step(), 1860);
    QVERIFY(tune("120000000"));
    QCOMPARE(on->nextText(), FollowBench::tuned("120"));
    QVERIFY(tune("14074000"));
    QVERIFY(on->nextText().startsWith(QStringLiteral("receiver is outside: 14.074 MHz")));
    rig.kill();
    rig.waitForFinished();
    QVERIFY(on->nextText().startsWith(QStringLiteral("receiver lost: ")));
    QCOMPARE(on->bench.unit->currentMHz(), 120.0);
}

KELDOX_TEST(TestCtlReceivers)
#include "TestCtlReceivers.moc"
