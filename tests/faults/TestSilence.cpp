// A unit that does not answer, answers late, or had to wait for a sleeping computer.
#include "FaultBench.h"

#include <thread>

#include <csignal>
#include <pthread.h>

using namespace faults;

namespace {

const auto noStepReply =
    QStringLiteral("The device did not respond correctly to a 'current step' command.");

// The program's thread stands still in the middle of a wait, where it sleeps for events.
void sleepWhenTuned(sim::SimulatedLine &line)
{
    std::signal(SIGUSR1, [](int) {
        timespec left{0, 300'000'000};
        while (nanosleep(&left, &left) != 0)
            ;
    });
    line.setListener([program = pthread_self()](bool fromUnit, const std::string &text) {
        if (fromUnit || text.rfind("*STEP ", 0) != 0)
            return;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        pthread_kill(program, SIGUSR1);
    });
}

QString stepMark()
{
    return description(mainName, "txtCurrentFreq");
}

} // namespace

class TestSilence : public QObject
{
    Q_OBJECT

private slots:
    void silent();
    void silentAfterItsName();
    void lateBeforeTheNextCommand();
    void lateDuringTheNextCommand();
    void theComputerSleepsInMidCommand();
};

void TestSilence::silent()
{
    FaultBench bench;
    auto &line = bench.plug(5);
    line.setFault(sim::Fault::Silence);
    TestHooks::shortenTimers(300);
    bench.boxes().expectStart(QStringLiteral("Check data and power connections"));
    search();
    seesNotConnected();
    QVERIFY(bench.boxes().shown().first().informative.contains(QStringLiteral("Tovin-R")));
    QCOMPARE(sent(line), QStringList{QStringLiteral("*ID?")}); // asked once
    // It is found as soon as it answers.
    TestHooks::shortenTimers(0);
    line.setFault(sim::Fault::None);
    search();
    seesConnected(5);
    QCOMPARE(frequency(), QStringLiteral("100"));
}

void TestSilence::silentAfterItsName()
{
    FaultBench bench;
    auto &line = bench.plug(5);
    search();
    line.clearCommands();
    line.setResponder([](const std::string &command) {
        return command == "*ID?" ? std::optional<std::string>("KELDO-X") : std::nullopt;
    });
    TestHooks::shortenTimers(200);
    bench.boxes().expect(QStringLiteral("The unit on COM5 has stopped answering. Check its power "
                                        "and data connections, then connect it again."));
    choose(1);
    seesNotConnected();
    QCOMPARE(bench.boxes().shown().size(), 1);
    // Two questions that nobody answered, not dozens.
    QCOMPARE(sent(line).first(), QStringLiteral("*ID?"));
    QCOMPARE(sent(line).size(), 3);
}

// The answer comes before the operator does anything else.
void TestSilence::lateBeforeTheNextCommand()
{
    FaultBench bench;
    const auto unit = std::make_shared<sim::SimulatedUnit>();
    auto &line = bench.plug(5, unit);
    search();
    line.setLateBy(std::chrono::milliseconds(600));
    line.setFault(sim::Fault::LateReply, "*STEP ", 1);
    TestHooks::shortenTimers(400);
    bench.boxes().expect(noStepReply);
    tune(QStringLiteral("130"));
    QCOMPARE(frequency(), QStringLiteral("100")); // what was last known, and marked so
    QCOMPARE(stepMark(), QStringLiteral("unconfirmed"));
    QTest::qWait(500); // the late LOCKED has come
    QCOMPARE(frequency(), QStringLiteral("100"));
    QCOMPARE(stepMark(), QStringLiteral("unconfirmed"));
    line.clearCommands();
    TestHooks::shortenTimers(0);
    readAgain();
    QCOMPARE(sent(line).first(), QStringLiteral("*STEP?"));
    QCOMPARE(unit->step(), 1200);
    QCOMPARE(frequency(), QStringLiteral("130"));
    QCOMPARE(stepMark(), QString());
    seesConnected(5);
}

// The next command waits for the line to be quiet, and the late answer is not taken for its own.
void TestSilence::lateDuringTheNextCommand()
{
    FaultBench bench;
    const auto unit = std::make_shared<sim::SimulatedUnit>();
    auto &line = bench.plug(5, unit);
    search();
    tune(QStringLiteral("110"));
    line.setLateBy(std::chrono::milliseconds(500));
    line.setFault(sim::Fault::LateReply, "*STEP ", 1);
    TestHooks::shortenTimers(400);
    bench.boxes().expect(noStepReply);
    tune(QStringLiteral("130"));
    // Out of range: what is refused by the unit must not be confirmed by the answer before.
    unit->change([](sim::UnitSettings &settings) { settings.maxStep = 1300; });
    bench.boxes().expect(noStepReply);
    tune(QStringLiteral("150"));
    QCOMPARE(unit->step(), 1200);
    QCOMPARE(stepMark(), QStringLiteral("unconfirmed"));
    QCOMPARE(control<QScrollBar>(mainName, "HScroll1")->value(), 400);
    QCOMPARE(box(channelsName, "txtChanFreq_1")->text(), QStringLiteral("110"));
    TestHooks::shortenTimers(0);
    readAgain();
    QCOMPARE(frequency(), QStringLiteral("130"));
    QCOMPARE(box(channelsName, "txtChanFreq_1")->text(), QStringLiteral("130"));
    seesConnected(5);
}

// The answer came while nobody was there to take it, and so did the deadline.
void TestSilence::theComputerSleepsInMidCommand()
{
    FaultBench bench;
    const auto unit = std::make_shared<sim::SimulatedUnit>();
    auto &line = bench.plug(5, unit);
    search();
    line.setLateBy(std::chrono::milliseconds(100));
    line.setFault(sim::Fault::LateReply, "*STEP ", 1);
    TestHooks::shortenTimers(60);
    line.clearCommands();
    sleepWhenTuned(line);
    tune(QStringLiteral("130")); // and no box follows
    QCOMPARE(sent(line), QStringList{QStringLiteral("*STEP 1200")});
    QCOMPARE(unit->step(), 1200);
    QCOMPARE(frequency(), QStringLiteral("130"));
    QCOMPARE(stepMark(), QString());
    QCOMPARE(panel(mainName, 2), QStringLiteral("OK"));
    seesConnected(5);
}

KELDOX_TEST(TestSilence)
#include "TestSilence.moc"
