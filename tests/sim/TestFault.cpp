// Each fault of a simulated line as a program sees it, and how long and on what a fault acts.
#include "TerminalPeer.h"

#include "sim/SimulatedLine.h"

#include "support/TestMain.h"

using namespace std::chrono_literals;
using sim::Fault;
using sim::SimulatedLine;
using sim::SimulatedUnit;

namespace {

using Clock = std::chrono::steady_clock;

struct Bench
{
    Bench() : unit(std::make_shared<SimulatedUnit>()), peer(line.device()) { line.addUnit(unit); }
    SimulatedLine line;
    std::shared_ptr<SimulatedUnit> unit;
    TerminalPeer peer;
};

} // namespace

class TestFault : public QObject
{
    Q_OBJECT

private slots:
    void names();
    void silenceLosesTheReplyOnly();
    void lateReplyComesLate();
    void lateReplyCanComeIntoTheNextExchange();
    void splitReplyComesInGroups();
    void garbageIsPrintableNonsense();
    void binaryHoldsZeroAndHighBytes();
    void endlessEndsWithTheNextCommand();
    void endlessStopsAtOnce();
    void endlessIsBounded();
    void endlessDoesNotWaitForTheProgram();
    void emptyReply();
    void wrongUnitWord_data();
    void wrongUnitWord();
    void echoReachesNoUnit();
    void unlockedReplacesLocked();
    void permissionDeniedRefusesSettingsOnly();
    void unplugHangsUp();
    void prefixLimitsTheFault();
    void timesLimitTheFault();
    void unusedFaultIsNotUsedUp();
    void faultsMeetTheResponderToo();
    void noneEndsAFault();
};

void TestFault::names()
{
    QCOMPARE(sim::faultNames().size(), std::size_t(13));
    for (const std::string &name : sim::faultNames()) {
        const auto fault = sim::faultByName(name);
        QVERIFY2(fault.has_value(), name.c_str());
        QCOMPARE(sim::faultName(*fault), name);
    }
    QVERIFY(sim::faultByName("LateReply") == Fault::LateReply);
    QVERIFY(sim::faultByName("late-reply") == Fault::LateReply);
    QVERIFY(!sim::faultByName("late").has_value());
    QVERIFY(!sim::faultByName("").has_value());
}

void TestFault::silenceLosesTheReplyOnly()
{
    Bench bench;
    bench.line.setFault(Fault::Silence);
    bench.peer.write("*STEP 5\r");
    QVERIFY(bench.line.waitForCommands(1, 5s));
    QCOMPARE(bench.peer.read(1, 100ms), std::string());
    QCOMPARE(bench.unit->step(), 5);
}

void TestFault::lateReplyComesLate()
{
    Bench bench;
    bench.line.setFault(Fault::LateReply);
    auto start = Clock::now();
    QCOMPARE(bench.peer.exchange("*ID?"), std::string("KELDO-X\r"));
    QVERIFY(Clock::now() - start >= 300ms);
    bench.line.setLateBy(80ms);
    start = Clock::now();
    QCOMPARE(bench.peer.exchange("*ID?"), std::string("KELDO-X\r"));
    QVERIFY(Clock::now() - start >= 80ms);
    QVERIFY(Clock::now() - start < 300ms);
}

void TestFault::lateReplyCanComeIntoTheNextExchange()
{
    Bench bench;
    bench.line.setFault(Fault::LateReply, "*ID?");
    bench.peer.write("*ID?\r");
    QCOMPARE(bench.peer.exchange("*STEP?"), std::string("0\r"));
    QCOMPARE(bench.peer.readLine(), std::string("KELDO-X\r"));
}

void TestFault::splitReplyComesInGroups()
{
    Bench bench;
    bench.line.setFault(Fault::SplitReply);
    const auto start = Clock::now();
    bench.peer.write("*ID?\r");
    QCOMPARE(bench.peer.read(1, 5s), std::string("K"));
    QCOMPARE(bench.peer.readLine(), std::string("ELDO-X\r"));
    QVERIFY(Clock::now() - start >= 40ms); // three groups of at most three bytes
}

void TestFault::garbageIsPrintableNonsense()
{
    Bench bench;
    bench.line.setFault(Fault::Garbage);
    const QString reply = QString::fromStdString(bench.peer.exchange("*STEP?"));
    QVERIFY(QRegularExpression(QStringLiteral("^[ -~]{3,}\r$")).match(reply).hasMatch());
    QVERIFY(!reply.contains(QRegularExpression(QStringLiteral("[0-9]"))));
}

void TestFault::binaryHoldsZeroAndHighBytes()
{
    Bench bench;
    bench.line.setFault(Fault::Binary);
    const std::string reply = bench.peer.exchange("*STEP?");
    QVERIFY(reply.ends_with('\r'));
    for (const char byte : {'\0', '\x80', '\xff'})
        QVERIFY(reply.find(byte) != std::string::npos);
}

void TestFault::endlessEndsWithTheNextCommand()
{
    Bench bench;
    bench.line.setFault(Fault::Endless, "", 1);
    bench.peer.write("*STEP 5\r");
    const std::string babble = bench.peer.read(200, 5s);
    QCOMPARE(babble.size(), std::size_t(200));
    QCOMPARE(babble.find('\r'), std::string::npos);
    QCOMPARE(bench.unit->step(), 5);
    const std::string last = bench.peer.exchange("*STEP?");
    QVERIFY(last.ends_with("5\r"));
    QCOMPARE(bench.peer.read(1, 100ms), std::string());
}

// At the line's pace a piece of the babble takes long enough to be cut short.
void TestFault::endlessStopsAtOnce()
{
    Bench bench;
    bench.line.setPaced(true);
    bench.line.setFault(Fault::Endless, "", 1);
    bench.peer.write("*ID?\r");
    QCOMPARE(bench.peer.read(1, 5s), std::string("*"));
    const std::string rest = bench.peer.exchange("*STEP?");
    QVERIFY(rest.ends_with("0\r"));
    QVERIFY2(rest.size() < 200, qPrintable(QString::number(rest.size())));
}

void TestFault::endlessIsBounded()
{
    Bench bench;
    bench.line.setFault(Fault::Endless);
    bench.peer.write("*ID?\r");
    QCOMPARE(bench.peer.read(65536, 9s).size(), std::size_t(65536));
    QCOMPARE(bench.peer.read(1, 200ms), std::string());
}

void TestFault::endlessDoesNotWaitForTheProgram()
{
    Bench bench;
    bench.line.setFault(Fault::Endless, "*ID?");
    bench.peer.write("*ID?\r");
    QTRY_VERIFY(bench.line.bitsOnWire() > 60'000); // more than a reader that sleeps is given
    bench.peer.write("*STEP 5\r");
    QVERIFY(bench.line.waitForCommands(2, 5s));
    QCOMPARE(bench.unit->step(), 5);
}

void TestFault::emptyReply()
{
    Bench bench;
    bench.line.setTerminator("\r\n");
    bench.line.setFault(Fault::EmptyReply);
    bench.peer.write("*ID?\r");
    QCOMPARE(bench.peer.read(3, 100ms), std::string("\r\n"));
}

void TestFault::wrongUnitWord_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QByteArray>("answer");
    QTest::newRow("MHz") << QByteArray("*START FREQ?") << QByteArray("100 mhz\r");
    QTest::newRow("Hz") << QByteArray("*CHAN SPACE?") << QByteArray("25000 hz\r");
    QTest::newRow("dB") << QByteArray("*ATTN?") << QByteArray("0 DB\r");
    QTest::newRow("dB steps") << QByteArray("*ATT STEP? ") << QByteArray("0.5 DB steps\r");
    QTest::newRow("clicks") << QByteArray("*ZNSE?") << QByteArray("128 click\r");
    QTest::newRow("no unit word") << QByteArray("*MAX STEP?") << QByteArray("4000\r");
}

void TestFault::wrongUnitWord()
{
    QFETCH(QByteArray, command);
    Bench bench;
    bench.line.setFault(Fault::WrongUnitWord);
    QTEST(QByteArray::fromStdString(bench.peer.exchange(command.toStdString())), "answer");
}

void TestFault::echoReachesNoUnit()
{
    Bench bench;
    bench.line.setFault(Fault::Echo);
    QCOMPARE(bench.peer.exchange("*STEP 5"), std::string("*STEP 5\r"));
    QCOMPARE(bench.peer.exchange("*ID?"), std::string("*ID?\r"));
    QCOMPARE(bench.unit->step(), 0);
}

void TestFault::unlockedReplacesLocked()
{
    Bench bench;
    bench.line.setFault(Fault::Unlocked);
    QCOMPARE(bench.peer.exchange("*STEP 5"), std::string("UNLOCKED\r"));
    QCOMPARE(bench.peer.exchange("*LOCK?"), std::string("UNLOCKED\r"));
    QCOMPARE(bench.peer.exchange("*STEP?"), std::string("5\r"));
}

void TestFault::permissionDeniedRefusesSettingsOnly()
{
    Bench bench;
    bench.line.setFault(Fault::PermissionDenied);
    for (const char *const setting : {"*STEP 5", "!AOFF 1", "INPUT ATTN 2", "InputLimitMode 2"})
        QCOMPARE(bench.peer.exchange(setting), std::string("PERMISSION DENIED\r"));
    QCOMPARE(bench.peer.exchange("*STEP?"), std::string("0\r"));
    QCOMPARE(bench.peer.exchange("PASSWORD x"), std::string("OK\r"));
    QCOMPARE(bench.peer.exchange(">UNLISTEN"), std::string("UNRECOGNIZED COMMAND\r"));
}

void TestFault::unplugHangsUp()
{
    Bench bench;
    bench.line.setFault(Fault::Unplug, "*STEP");
    QCOMPARE(bench.peer.exchange("*ID?"), std::string("KELDO-X\r"));
    bench.peer.write("*STEP 5\r");
    QVERIFY(bench.peer.waitForHangUp());
    QCOMPARE(bench.unit->step(), 0);
}

void TestFault::prefixLimitsTheFault()
{
    Bench bench;
    bench.line.setFault(Fault::Garbage, "*STEP");
    QCOMPARE(bench.peer.exchange("*ID?"), std::string("KELDO-X\r"));
    QVERIFY(bench.peer.exchange("*STEP?") != "0\r");
    QVERIFY(bench.peer.exchange("*STEP 1") != "LOCKED\r");
}

void TestFault::timesLimitTheFault()
{
    Bench bench;
    bench.line.setFault(Fault::EmptyReply, "", 2);
    QCOMPARE(bench.peer.exchange("*ID?"), std::string("\r"));
    QCOMPARE(bench.peer.exchange("*ID?"), std::string("\r"));
    QCOMPARE(bench.peer.exchange("*ID?"), std::string("KELDO-X\r"));
    bench.line.setFault(Fault::Silence, "*STEP", 1);
    bench.peer.write("*STEP 1\r");
    QCOMPARE(bench.peer.exchange("*STEP 2"), std::string("LOCKED\r"));
}

void TestFault::unusedFaultIsNotUsedUp()
{
    Bench bench;
    bench.line.setFault(Fault::Unlocked, "", 1);
    QCOMPARE(bench.peer.exchange("*STEP?"), std::string("0\r"));
    QCOMPARE(bench.peer.exchange("*STEP 1"), std::string("UNLOCKED\r"));
    QCOMPARE(bench.peer.exchange("*STEP 2"), std::string("LOCKED\r"));
}

void TestFault::faultsMeetTheResponderToo()
{
    Bench bench;
    bench.line.setResponder([](const std::string &) { return std::string("7 dB"); });
    bench.line.setFault(Fault::WrongUnitWord);
    QCOMPARE(bench.peer.exchange("*ATTN?"), std::string("7 DB\r"));
}

void TestFault::noneEndsAFault()
{
    Bench bench;
    bench.line.setFault(Fault::Garbage);
    bench.peer.exchange("*ID?");
    bench.line.setFault(Fault::None);
    QCOMPARE(bench.peer.exchange("*ID?"), std::string("KELDO-X\r"));
}

KELDOX_TEST(TestFault)
#include "TestFault.moc"
