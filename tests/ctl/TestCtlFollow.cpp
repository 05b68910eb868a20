// The filter follows a receiver: where it may go, where it stays, and what the unit may do to it.
#include "FollowBench.h"

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
    void theUnitIsUnplugged();
    void theUnitMissesOneAnswer();
    void theUnitRefusesAgainAndAgain();
    void itEndsPolitely();
    void itEndsPolitelyWhileTheUnitIsAwaited();

private:
    std::unique_ptr<FollowBench> on;
};

void TestCtlFollow::init()
{
    on = std::make_unique<FollowBench>();
}

void TestCtlFollow::cleanup()
{
    on.reset();
}

void TestCtlFollow::theFilterGoesWhereTheReceiverGoes()
{
    on->follow();
    QCOMPARE(on->nextText(),
             QStringLiteral("following 127.0.0.1:%1; filter at 100 MHz, may go from "
                            "100 to 200 MHz")
                 .arg(on->receiver.port()));
    QCOMPARE(on->nextText(), FollowBench::tuned("146.5"));
    QCOMPARE(on->bench.unit->step(), 1860);
    on->receiver.answer("120000000.000000\n");
    QCOMPARE(on->nextText(), FollowBench::tuned("120"));
    QCOMPARE(on->bench.unit->currentMHz(), 120.0);
    // To the nearest step.
    on->receiver.tune(120.036e6);
    QCOMPARE(on->nextText(), FollowBench::tuned("120.025"));
}

void TestCtlFollow::linesAsJson()
{
    on->follow("--json");
    const auto next = [this] { return QJsonDocument::fromJson(on->nextLine().toUtf8()).object(); };
    QCOMPARE(next()[QStringLiteral("event")], QJsonValue(QStringLiteral("following")));
    const QJsonObject line = next();
    QCOMPARE(line[QStringLiteral("event")], QJsonValue(QStringLiteral("tuned")));
    QCOMPARE(line[QStringLiteral("frequency")], QJsonValue(146.5));
    QVERIFY(line.contains(QStringLiteral("time")));
    on->receiver.tune(300e6);
    QCOMPARE(next()[QStringLiteral("event")], QJsonValue(QStringLiteral("outside")));
    on->receiver.goAway();
    QCOMPARE(next()[QStringLiteral("event")], QJsonValue(QStringLiteral("lost")));
}

void TestCtlFollow::onlyTheFrequencyIsAsked()
{
    std::mutex mutex;
    std::set<std::string> asked;
    on->receiver.setResponder([&](const std::string &line) {
        const std::lock_guard lock(mutex);
        asked.insert(line);
        return std::string("146500000\n");
    });
    FOLLOWS("");
    QTRY_VERIFY(on->receiver.questions() > 5);
    QCOMPARE(on->end().code, 0);
    QVERIFY(asked == std::set<std::string>{"f"});
}

void TestCtlFollow::anOffsetIsAdded()
{
    FOLLOWS("--offset -10.7MHz");
    QCOMPARE(on->nextText(), FollowBench::tuned("135.8"));
}

void TestCtlFollow::aReceiverThatStandsStillSendsNothing()
{
    FOLLOWS("");
    QCOMPARE(on->nextText(), FollowBench::tuned("146.5"));
    const auto before = on->bench.commands().size();
    const int questions = on->receiver.questions();
    on->receiver.tune(146.501e6); // the same step
    QTRY_VERIFY(on->receiver.questions() > questions + 3);
    QVERIFY(on->isQuiet(100));
    QCOMPARE(on->bench.commands().size(), before);
}

void TestCtlFollow::smallMovesAreNotFollowed()
{
    FOLLOWS("--tuning-step 100kHz");
    QCOMPARE(on->nextText(), FollowBench::tuned("146.5"));
    on->receiver.tune(146.6e6); // by that much, and not beyond
    QVERIFY(on->isQuiet());
    on->receiver.tune(146.4e6);
    QVERIFY(on->isQuiet());
    on->receiver.tune(146.625e6);
    QCOMPARE(on->nextText(), FollowBench::tuned("146.625"));
    on->receiver.tune(146.6e6);
    QVERIFY(on->isQuiet());
}

void TestCtlFollow::outsideTheUnitsRange()
{
    FOLLOWS("");
    QCOMPARE(on->nextText(), FollowBench::tuned("146.5"));
    on->receiver.tune(200.1e6);
    QCOMPARE(on->nextText(),
             QStringLiteral("receiver is outside: 200.1 MHz is not within 100 to 200 "
                            "MHz; the filter stays"));
    on->receiver.tune(99e6);
    QVERIFY(on->isQuiet());
    QCOMPARE(on->bench.unit->step(), 1860);
    on->receiver.tune(200e6);
    QCOMPARE(on->nextText(), QStringLiteral("receiver is within reach again"));
    QCOMPARE(on->nextText(), FollowBench::tuned("200"));
}

void TestCtlFollow::outsideTheLimits()
{
    on->receiver.tune(151e6);
    FOLLOWS("--min 140MHz --max 150MHz");
    QCOMPARE(on->nextText(), QStringLiteral("receiver is outside: 151 MHz is not within 140 to 150 "
                                            "MHz; the filter stays"));
    QCOMPARE(on->bench.unit->step(), 0);
    on->receiver.tune(150e6);
    QCOMPARE(on->nextText(), QStringLiteral("receiver is within reach again"));
    QCOMPARE(on->nextText(), FollowBench::tuned("150"));
    on->receiver.tune(139e6);
    QVERIFY(on->nextText().startsWith(QStringLiteral("receiver is outside: 139 MHz")));
}

void TestCtlFollow::limitsOutsideTheRange()
{
    on->follow("--min 300MHz");
    const Outcome outcome = CtlBench::outcomeOf(*on->tool);
    CTL_COMPARE(outcome, 2, "");
    QCOMPARE(on->receiver.clients(), 0);
}

void TestCtlFollow::theUnitIsUnplugged()
{
    FOLLOWS("");
    QCOMPARE(on->nextText(), FollowBench::tuned("146.5"));
    on->bench.line.unplug();
    const Outcome outcome = CtlBench::outcomeOf(*on->tool);
    QCOMPARE(outcome.code, 3);
    QVERIFY2(outcome.err.contains(QStringLiteral("is gone")), qPrintable(outcome.err));
}

void TestCtlFollow::theUnitMissesOneAnswer()
{
    on->bench.line.setFault(sim::Fault::Garbage, "*STEP ", 1);
    FOLLOWS("");
    QVERIFY(
        on->nextText().startsWith(QStringLiteral("filter not tuned to 146.5 MHz: The device did "
                                                 "not respond correctly")));
    QCOMPARE(on->nextText(), FollowBench::tuned("146.5"));
}

void TestCtlFollow::theUnitRefusesAgainAndAgain()
{
    on->bench.unit->setPassword("secret");
    FOLLOWS("");
    const Outcome outcome = CtlBench::outcomeOf(*on->tool);
    QCOMPARE(outcome.code, 1);
    QCOMPARE(outcome.lines().size(), 2); // the third is the tool's last word
    QVERIFY(outcome.err.contains(QStringLiteral("it wants its password")));
}

void TestCtlFollow::itEndsPolitely()
{
    for (const int signal : {SIGINT, SIGTERM}) {
        FOLLOWS("--interval 600");
        QCOMPARE(on->nextText(), FollowBench::tuned(signal == SIGINT ? "146.5" : "150"));
        ::kill(static_cast<pid_t>(on->tool->processId()), signal);
        const Outcome outcome = CtlBench::outcomeOf(*on->tool);
        QCOMPARE(outcome.code, 0);
        QCOMPARE(outcome.err, QString());
        on->receiver.tune(150e6);
    }
    QCOMPARE(CtlBench::onUnit("get lock").code, 0);
}

void TestCtlFollow::itEndsPolitelyWhileTheUnitIsAwaited()
{
    on->bench.line.setFault(sim::Fault::Silence, "*STEP ");
    FOLLOWS("--timeout 60");
    QTRY_COMPARE(on->bench.commands().last(), QStringLiteral("*STEP 1860"));
    const Outcome outcome = on->end();
    CTL_COMPARE(outcome, 0, "");
    QCOMPARE(outcome.err, QString());
}

KELDOX_TEST(TestCtlFollow)
#include "TestCtlFollow.moc"
