// The pace of a line at 19200 baud: the timetable by itself, and the line against the clock.
#include "TerminalPeer.h"

#include "sim/Outbox.h"
#include "sim/SimulatedLine.h"
#include "sim/WireClock.h"

#include "support/TestMain.h"

#include <algorithm>
#include <numeric>

using namespace std::chrono_literals;
using sim::Outbox;
using sim::SimulatedLine;
using sim::SimulatedUnit;
using sim::WireClock;

namespace {

using Clock = WireClock::Clock;
using Seconds = std::chrono::duration<double>;

double lineTime(std::size_t bytes)
{
    return double(bytes) * 10 / 19200;
}

} // namespace

class TestPacing : public QObject
{
    Q_OBJECT

private slots:
    void byteTakesTenBits();
    void replyFollowsTheCommandsLastByte();
    void promptCommandsAddUpToTheLinesOwnTime();
    void thinkingTimeIsNotForgiven();
    void commandDuringAReplyRunsBesideIt();
    void secondReplyWaitsForTheFirst();
    void outboxKeepsItsOrder();
    void replyIsNeverEarly();
    void manyExchangesTakeTheLinesOwnTime();
    void lateReplyAndPaceAddUp();
    void unpacedLineIsFaster();
};

void TestPacing::byteTakesTenBits()
{
    QCOMPARE(WireClock::bytesTime(1920).count(), 1'000'000'000);
    QCOMPARE(WireClock::bytesTime(1).count(), 520'833);
}

void TestPacing::replyFollowsTheCommandsLastByte()
{
    WireClock clock;
    const auto start = Clock::now();
    const auto commandEnd = clock.received(start, 7);
    QCOMPARE((commandEnd - start).count(), WireClock::bytesTime(7).count());
    const auto begin = clock.book(commandEnd, 4);
    QCOMPARE((begin - commandEnd).count(), 0);
}

void TestPacing::promptCommandsAddUpToTheLinesOwnTime()
{
    WireClock clock;
    const auto start = Clock::now();
    auto now = start;
    for (int i = 0; i < 1000; ++i) {
        const auto end = clock.received(now, 7);
        now = clock.book(end, 4) + WireClock::bytesTime(4);
        now += i % 2 ? 50us : 500us; // what the hand-over between two processes takes
    }
    const auto total = Seconds(now - start).count();
    QVERIFY2(std::abs(total - lineTime(11000)) < 0.001, qPrintable(QString::number(total)));
}

void TestPacing::thinkingTimeIsNotForgiven()
{
    WireClock clock;
    const auto start = Clock::now();
    const auto replyEnd = clock.book(clock.received(start, 7), 4) + WireClock::bytesTime(4);
    const auto next = replyEnd + 600us; // more than a byte
    QCOMPARE((clock.received(next, 7) - next).count(), WireClock::bytesTime(7).count());
}

void TestPacing::commandDuringAReplyRunsBesideIt()
{
    WireClock clock;
    const auto start = Clock::now();
    const auto first = clock.received(start, 5);
    clock.book(first, 100);
    const auto during = first + 10ms;
    QCOMPARE((clock.received(during, 5) - during).count(), WireClock::bytesTime(5).count());
}

void TestPacing::secondReplyWaitsForTheFirst()
{
    WireClock clock;
    const auto start = Clock::now();
    clock.book(start, 10);
    QCOMPARE((clock.book(start, 5) - start).count(), WireClock::bytesTime(10).count());
}

void TestPacing::outboxKeepsItsOrder()
{
    Outbox outbox;
    const auto start = Clock::now();
    outbox.post(start + 2ms, "late");
    outbox.post(start + 1ms, "a");
    outbox.post(start + 1ms, "b");
    QVERIFY(outbox.nextDue() == start + 1ms);
    outbox.collect(start);
    QCOMPARE(outbox.ready(), std::string());
    outbox.collect(start + 1ms);
    QCOMPARE(outbox.ready(), std::string("ab"));
    outbox.collect(start + 2ms);
    QCOMPARE(outbox.ready(), std::string("ablate"));
    QVERIFY(!outbox.nextDue().has_value());
}

void TestPacing::replyIsNeverEarly()
{
    SimulatedLine line;
    line.addUnit(std::make_shared<SimulatedUnit>());
    line.setPaced(true);
    TerminalPeer peer(line.device());
    for (int i = 0; i < 20; ++i) {
        const auto start = Clock::now();
        QCOMPARE(peer.exchange("*START FREQ?"), std::string("100 MHz\r"));
        // A byte's time is allowed for the hand-over, but not on an idle line.
        const std::size_t bytes = 13 + 8 - (i == 0 ? 0 : 1);
        QVERIFY(Seconds(Clock::now() - start).count() >= lineTime(bytes));
    }
}

// How long the exchanges took, in seconds and in rising order; answered at once, they follow each
// other without a gap.
static std::vector<double> exchangeTimes(TerminalPeer &peer, std::size_t exchanges)
{
    std::vector<double> times;
    times.reserve(exchanges);
    auto before = Clock::now();
    while (times.size() < exchanges) {
        peer.exchange("*STEP?");
        const auto now = Clock::now();
        times.push_back(Seconds(now - before).count());
        before = now;
    }
    std::sort(times.begin(), times.end());
    return times;
}

// What one exchange costs this machine beside the line: in quiet some 0.1 ms.
static double handOverTime(SimulatedLine &line, TerminalPeer &peer)
{
    line.setPaced(false);
    const auto start = Clock::now();
    for (int i = 0; i < 500; ++i)
        peer.exchange("*STEP?");
    line.setPaced(true);
    return Seconds(Clock::now() - start).count() / 500;
}

// A machine that is busy with other things delays some exchanges, and that is not the line's doing:
// the one in the middle counts, and one run of twenty will do. The sum is never less than the
// line's.
void TestPacing::manyExchangesTakeTheLinesOwnTime()
{
    SimulatedLine line;
    line.addUnit(std::make_shared<SimulatedUnit>());
    line.setPaced(true);
    TerminalPeer peer(line.device());
    constexpr std::size_t exchanges = 200;
    const double own = lineTime(9);
    double best = 1;
    double slowestHandOver = 0;
    for (int run = 0; run < 20 && best > 0.003; ++run) {
        slowestHandOver = std::max(slowestHandOver, handOverTime(line, peer));
        QTest::qWait(5); // the first command of a run is not to count as an answer
        const auto bitsBefore = line.bitsOnWire();
        const auto times = exchangeTimes(peer, exchanges);
        QVERIFY(std::accumulate(times.begin(), times.end(), 0.0) >= own * double(exchanges));
        QTRY_COMPARE(line.bitsOnWire() - bitsBefore, std::uint64_t(exchanges * 9 * 10));
        best = std::min(best, std::abs(times[exchanges / 2] / own - 1));
    }
    if (best > 0.003 && slowestHandOver > 0.0002)
        QSKIP("this machine is too busy to measure the pace");
    QVERIFY2(best <= 0.003, qPrintable(QString::number(best)));
}

void TestPacing::lateReplyAndPaceAddUp()
{
    SimulatedLine line;
    line.addUnit(std::make_shared<SimulatedUnit>());
    line.setPaced(true);
    line.setLateBy(50ms);
    line.setFault(sim::Fault::LateReply);
    TerminalPeer peer(line.device());
    const auto start = Clock::now();
    QCOMPARE(peer.exchange("*ID?"), std::string("KELDO-X\r"));
    QVERIFY(Seconds(Clock::now() - start).count() >= 0.05 + lineTime(13));
}

void TestPacing::unpacedLineIsFaster()
{
    SimulatedLine line;
    line.addUnit(std::make_shared<SimulatedUnit>());
    TerminalPeer peer(line.device());
    const auto start = Clock::now();
    for (int i = 0; i < 200; ++i)
        QCOMPARE(peer.exchange("*STEP?"), std::string("0\r"));
    QVERIFY(Seconds(Clock::now() - start).count() < lineTime(std::size_t(200) * 9) / 2);
}

KELDOX_TEST(TestPacing)
#include "TestPacing.moc"
