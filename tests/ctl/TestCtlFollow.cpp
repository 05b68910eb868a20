// The filter follows a receiver: where it may go, where it stays, and what a receiver does that is
// silent, slow, speaks nonsense, never ends its line, or hangs up.
#include "CtlBench.h"
#include "ReceiverPeer.h"

#include <QRegularExpression>

#include <csignal>
#include <set>

class TestCtlFollow : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void theFilterGoesWhereTheReceiverGoes();
    void linesAsJson();
    void onlyTheFrequencyIsAsked();
    void anOffsetIsAdded();
    void aReceiverThatStandsStillSendsNothing();
    void smallMovesAreNotFollowed();
    void outsideTheUnitsRange();
    void outsideTheLimits();
    void limitsOutsideTheRange();
    void aReceiverThatIsNotThereYet();
    void aReceiverThatHangsUp();
    void aReceiverThatGoesAwayAndComesBack();
    void aSilentReceiver();
    void aSlowReceiver();
    void nonsense_data();
    void nonsense();
    void aLineWithoutEnd();
    void anAnswerThatNobodyAskedFor();
    void theUnitIsUnplugged();
    void theUnitMissesOneAnswer();
    void theUnitRefusesAgainAndAgain();
    void itEndsPolitely();
    void theRealThing();

private:
    void follow(const char *options = "");
    QString nextLine(int milliseconds = 10'000);
    QString nextText(int milliseconds = 10'000); // without its time
    bool isQuiet(int milliseconds = 400);
    Outcome end();

    std::unique_ptr<CtlBench> bench;
    std::unique_ptr<ReceiverPeer> receiver;
    std::unique_ptr<QProcess> tool;
};

void TestCtlFollow::init()
{
    bench = std::make_unique<CtlBench>();
    receiver = std::make_unique<ReceiverPeer>();
    receiver->tune(146.5e6);
}

void TestCtlFollow::cleanup()
{
    if (tool)
        end();
    tool.reset();
    receiver.reset();
    bench.reset();
}

void TestCtlFollow::follow(const char *options)
{
    const QStringList arguments{QStringLiteral("follow"),
                                QStringLiteral("127.0.0.1:%1").arg(receiver->port())};
    tool = CtlBench::start(arguments + CtlBench::words("--port COM7 --interval 0.05 --timeout 1") +
                           CtlBench::words(options));
}

QString TestCtlFollow::nextLine(int milliseconds)
{
    QElapsedTimer clock;
    clock.start();
    while (!tool->canReadLine() && clock.elapsed() < milliseconds &&
           (tool->state() != QProcess::NotRunning || tool->bytesAvailable() > 0))
        tool->waitForReadyRead(20);
    return QString::fromUtf8(tool->readLine()).trimmed();
}

QString TestCtlFollow::nextText(int milliseconds)
{
    static const QRegularExpression stamp(QStringLiteral(R"(^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d  )"));
    QString line = nextLine(milliseconds);
    return stamp.match(line).hasMatch() ? line.remove(stamp) : QStringLiteral("?") + line;
}

// A while in which much is asked and nothing said.
bool TestCtlFollow::isQuiet(int milliseconds)
{
    return nextLine(milliseconds).isEmpty();
}

Outcome TestCtlFollow::end()
{
    if (tool->state() != QProcess::NotRunning)
        ::kill(static_cast<pid_t>(tool->processId()), SIGTERM);
    return CtlBench::outcomeOf(*tool);
}

static QString tuned(const char *megahertz)
{
    return QStringLiteral("filter tuned to %1 MHz").arg(QLatin1String(megahertz));
}

#define FOLLOWS(options)                                                                           \
    do {                                                                                           \
        follow(options);                                                                           \
        QVERIFY(nextText().startsWith(QStringLiteral("following 127.0.0.1:")));                    \
    } while (false)

void TestCtlFollow::theFilterGoesWhereTheReceiverGoes()
{
    follow();
    QCOMPARE(nextText(), QStringLiteral("following 127.0.0.1:%1; filter at 100 MHz, may go from "
                                        "100 to 200 MHz")
                             .arg(receiver->port()));
    QCOMPARE(nextText(), tuned("146.5"));
    QCOMPARE(bench->unit->step(), 1860);
    receiver->answer("120000000.000000\n");
    QCOMPARE(nextText(), tuned("120"));
    QCOMPARE(bench->unit->currentMHz(), 120.0);
    // To the nearest step.
    receiver->tune(120.036e6);
    QCOMPARE(nextText(), tuned("120.025"));
}

void TestCtlFollow::linesAsJson()
{
    follow("--json");
    const auto next = [this] { return QJsonDocument::fromJson(nextLine().toUtf8()).object(); };
    QCOMPARE(next()[QStringLiteral("event")], QJsonValue(QStringLiteral("following")));
    const QJsonObject line = next();
    QCOMPARE(line[QStringLiteral("event")], QJsonValue(QStringLiteral("tuned")));
    QCOMPARE(line[QStringLiteral("frequency")], QJsonValue(146.5));
    QVERIFY(line.contains(QStringLiteral("time")));
    receiver->tune(300e6);
    QCOMPARE(next()[QStringLiteral("event")], QJsonValue(QStringLiteral("outside")));
    receiver->goAway();
    QCOMPARE(next()[QStringLiteral("event")], QJsonValue(QStringLiteral("lost")));
}

void TestCtlFollow::onlyTheFrequencyIsAsked()
{
    std::mutex mutex;
    std::set<std::string> asked;
    receiver->setResponder([&](const std::string &line) {
        const std::lock_guard lock(mutex);
        asked.insert(line);
        return std::string("146500000\n");
    });
    FOLLOWS("");
    QTRY_VERIFY(receiver->questions() > 5);
    QCOMPARE(end().code, 0);
    QVERIFY(asked == std::set<std::string>{"f"});
}

void TestCtlFollow::anOffsetIsAdded()
{
    FOLLOWS("--offset -10.7MHz");
    QCOMPARE(nextText(), tuned("135.8"));
}

void TestCtlFollow::aReceiverThatStandsStillSendsNothing()
{
    FOLLOWS("");
    QCOMPARE(nextText(), tuned("146.5"));
    const auto before = bench->commands().size();
    const int questions = receiver->questions();
    receiver->tune(146.501e6); // the same step
    QTRY_VERIFY(receiver->questions() > questions + 3);
    QVERIFY(isQuiet(100));
    QCOMPARE(bench->commands().size(), before);
}

void TestCtlFollow::smallMovesAreNotFollowed()
{
    FOLLOWS("--tuning-step 100kHz");
    QCOMPARE(nextText(), tuned("146.5"));
    receiver->tune(146.6e6); // by that much, and not beyond
    QVERIFY(isQuiet());
    receiver->tune(146.4e6);
    QVERIFY(isQuiet());
    receiver->tune(146.625e6);
    QCOMPARE(nextText(), tuned("146.625"));
    receiver->tune(146.6e6);
    QVERIFY(isQuiet());
}

void TestCtlFollow::outsideTheUnitsRange()
{
    FOLLOWS("");
    QCOMPARE(nextText(), tuned("146.5"));
    receiver->tune(200.1e6);
    QCOMPARE(nextText(), QStringLiteral("receiver is outside: 200.1 MHz is not within 100 to 200 "
                                        "MHz; the filter stays"));
    receiver->tune(99e6);
    QVERIFY(isQuiet());
    QCOMPARE(bench->unit->step(), 1860);
    receiver->tune(200e6);
    QCOMPARE(nextText(), QStringLiteral("receiver is within reach again"));
    QCOMPARE(nextText(), tuned("200"));
}

void TestCtlFollow::outsideTheLimits()
{
    receiver->tune(151e6);
    FOLLOWS("--min 140MHz --max 150MHz");
    QCOMPARE(nextText(), QStringLiteral("receiver is outside: 151 MHz is not within 140 to 150 "
                                        "MHz; the filter stays"));
    QCOMPARE(bench->unit->step(), 0);
    receiver->tune(150e6);
    QCOMPARE(nextText(), QStringLiteral("receiver is within reach again"));
    QCOMPARE(nextText(), tuned("150"));
    receiver->tune(139e6);
    QVERIFY(nextText().startsWith(QStringLiteral("receiver is outside: 139 MHz")));
}

void TestCtlFollow::limitsOutsideTheRange()
{
    follow("--min 300MHz");
    const Outcome outcome = CtlBench::outcomeOf(*tool);
    CTL_COMPARE(outcome, 2, "");
    QCOMPARE(receiver->clients(), 0);
}

void TestCtlFollow::aReceiverThatIsNotThereYet()
{
    receiver->goAway();
    QTest::qWait(50);
    FOLLOWS("");
    QVERIFY(nextText().startsWith(QStringLiteral("receiver lost: Connection refused")));
    QVERIFY(isQuiet(1500)); // tried again and again, told once
    receiver->comeBack();
    QCOMPARE(nextText(), QStringLiteral("receiver is back at 146.5 MHz"));
    QCOMPARE(nextText(), tuned("146.5"));
}

void TestCtlFollow::aReceiverThatHangsUp()
{
    FOLLOWS("");
    QCOMPARE(nextText(), tuned("146.5"));
    receiver->tune(120e6);
    receiver->hangUp();
    QString line = nextText();
    if (line == tuned("120")) // the answer was under way
        line = nextText();
    QVERIFY2(line.startsWith(QStringLiteral("receiver lost: ")), qPrintable(line));
    QCOMPARE(nextText(), QStringLiteral("receiver is back at 120 MHz"));
    QTRY_COMPARE(bench->unit->currentMHz(), 120.0);
    QVERIFY(receiver->clients() >= 2);
}

void TestCtlFollow::aReceiverThatGoesAwayAndComesBack()
{
    FOLLOWS("");
    QCOMPARE(nextText(), tuned("146.5"));
    receiver->goAway();
    QVERIFY(nextText().startsWith(QStringLiteral("receiver lost: ")));
    // Refused is another trouble than hung up: it is told as well, and then no more.
    QVERIFY(nextText().startsWith(QStringLiteral("receiver lost: Connection refused")));
    QVERIFY(isQuiet(1000));
    QCOMPARE(bench->unit->step(), 1860);
    receiver->tune(150e6);
    receiver->comeBack();
    QCOMPARE(nextText(), QStringLiteral("receiver is back at 150 MHz"));
    QCOMPARE(nextText(), tuned("150"));
}

void TestCtlFollow::aSilentReceiver()
{
    FOLLOWS("");
    QCOMPARE(nextText(), tuned("146.5"));
    receiver->setResponder({});
    QCOMPARE(nextText(), QStringLiteral("receiver lost: it does not answer; the filter stays, "
                                        "trying again"));
    QVERIFY(isQuiet(2500));
    QCOMPARE(bench->unit->step(), 1860);
    receiver->tune(150e6);
    QCOMPARE(nextText(), QStringLiteral("receiver is back at 150 MHz"));
    QCOMPARE(nextText(), tuned("150"));
}

void TestCtlFollow::aSlowReceiver()
{
    receiver->setResponder([](const std::string &) {
        std::this_thread::sleep_for(std::chrono::milliseconds(600));
        return std::string("150000000\n");
    });
    FOLLOWS("");
    QCOMPARE(nextText(), tuned("150"));
    QVERIFY(isQuiet(1500));
    QCOMPARE(receiver->clients(), 1);
}

void TestCtlFollow::nonsense_data()
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

void TestCtlFollow::nonsense()
{
    QFETCH(QByteArray, answer);
    QFETCH(QString, text);
    FOLLOWS("");
    QCOMPARE(nextText(), tuned("146.5"));
    receiver->answer(answer.toStdString());
    QCOMPARE(nextText(), text);
    QVERIFY(isQuiet(200));
    QCOMPARE(bench->unit->step(), 1860);
    receiver->tune(150e6);
    QCOMPARE(nextText(), QStringLiteral("receiver is back at 150 MHz"));
    QCOMPARE(nextText(), tuned("150"));
    QCOMPARE(receiver->clients(), 1);
}

void TestCtlFollow::aLineWithoutEnd()
{
    receiver->answer(std::string(100'000, '1'));
    FOLLOWS("");
    QVERIFY(nextText().startsWith(QStringLiteral("receiver lost: it sends a line without end")));
    receiver->answer(std::string(300, '1') + '\n');
    QVERIFY(isQuiet(1000)); // the same trouble: a line that is too long
    receiver->tune(150e6);
    QCOMPARE(nextText(), QStringLiteral("receiver is back at 150 MHz"));
    QCOMPARE(nextText(), tuned("150"));
}

void TestCtlFollow::anAnswerThatNobodyAskedFor()
{
    receiver->answer("150000000\n120000000\n130000000\n");
    FOLLOWS("");
    QCOMPARE(nextText(), tuned("150"));
    QVERIFY(isQuiet());
}

void TestCtlFollow::theUnitIsUnplugged()
{
    FOLLOWS("");
    QCOMPARE(nextText(), tuned("146.5"));
    bench->line.unplug();
    const Outcome outcome = CtlBench::outcomeOf(*tool);
    QCOMPARE(outcome.code, 3);
    QVERIFY2(outcome.err.contains(QStringLiteral("is gone")), qPrintable(outcome.err));
}

void TestCtlFollow::theUnitMissesOneAnswer()
{
    bench->line.setFault(sim::Fault::Garbage, "*STEP ", 1);
    FOLLOWS("");
    QVERIFY(nextText().startsWith(QStringLiteral("filter not tuned to 146.5 MHz: The device did "
                                                 "not respond correctly")));
    QCOMPARE(nextText(), tuned("146.5"));
}

void TestCtlFollow::theUnitRefusesAgainAndAgain()
{
    bench->unit->setPassword("secret");
    FOLLOWS("");
    const Outcome outcome = CtlBench::outcomeOf(*tool);
    QCOMPARE(outcome.code, 1);
    QCOMPARE(outcome.lines().size(), 2); // the third is the tool's last word
    QVERIFY(outcome.err.contains(QStringLiteral("it wants its password")));
}

void TestCtlFollow::itEndsPolitely()
{
    for (const int signal : {SIGINT, SIGTERM}) {
        FOLLOWS("--interval 600");
        QCOMPARE(nextText(), tuned(signal == SIGINT ? "146.5" : "150"));
        ::kill(static_cast<pid_t>(tool->processId()), signal);
        const Outcome outcome = CtlBench::outcomeOf(*tool);
        QCOMPARE(outcome.code, 0);
        QCOMPARE(outcome.err, QString());
        receiver->tune(150e6);
    }
    QCOMPARE(CtlBench::onUnit("get lock").code, 0);
}

// Hamlib's own program with its receiver that exists in memory alone.
void TestCtlFollow::theRealThing()
{
    const QString server = QStandardPaths::findExecutable(QStringLiteral("rigctld"));
    const QString hand = QStandardPaths::findExecutable(QStringLiteral("rigctl"));
    if (server.isEmpty() || hand.isEmpty())
        QSKIP("rigctld is not installed (Debian: libhamlib-utils)");
    const QString port = QString::number(receiver->port());
    receiver->goAway(); // its port is free, and known
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
    QString line = nextText();
    while (line.startsWith(QStringLiteral("receiver")))
        line = nextText();
    QCOMPARE(line, tuned("146.5"));
    QCOMPARE(bench->unit->step(), 1860);
    QVERIFY(tune("120000000"));
    QCOMPARE(nextText(), tuned("120"));
    QVERIFY(tune("14074000"));
    QVERIFY(nextText().startsWith(QStringLiteral("receiver is outside: 14.074 MHz")));
    rig.kill();
    rig.waitForFinished();
    QVERIFY(nextText().startsWith(QStringLiteral("receiver lost: ")));
    QCOMPARE(bench->unit->currentMHz(), 120.0);
}

KELDOX_TEST(TestCtlFollow)
#include "TestCtlFollow.moc"
