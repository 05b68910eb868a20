// The simulated line as a program sees it: framing, shared lines, transcript and hanging up.
#include "TerminalPeer.h"

#include "sim/SimulatedLine.h"

#include "support/TestMain.h"

#include <atomic>
#include <stdexcept>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <termios.h>
#include <unistd.h>

using namespace std::chrono_literals;
using sim::SimulatedLine;
using sim::SimulatedUnit;
using sim::UnitSettings;

namespace {

std::shared_ptr<SimulatedUnit> unitAt(int address)
{
    UnitSettings settings;
    settings.identity = "TOVIN-R";
    settings.address = address;
    return std::make_shared<SimulatedUnit>(settings);
}

using Lines = std::vector<std::string>;

} // namespace

class TestSimulatedLine : public QObject
{
    Q_OBJECT

private slots:
    void unitAnswersOverTheTerminal();
    void terminalIsRawBothWays();
    void commandInPiecesIsOneCommand();
    void twoCommandsInOnePieceAreTwo();
    void lineFeedBelongsToTheCarriageReturnBefore();
    void terminatorCanHaveALineFeed();
    void responderReplacesTheUnits();
    void responderMayCallTheLine();
    void lineWithoutUnitsIsSilent();
    void sharedLineHandsCommandsToTheAddressedUnit();
    void sharedLineAnswersReleaseAndAbsentAddressOnce();
    void unitThatWasNotReleasedHearsOnToo();
    void ninthUnitFindsNoRoom();
    void programCanCloseAndOpenAgain();
    void lockOfAProgramGoesWithIt();
    void terminalThatIsStillLockedIsPassedOver();
    void transcriptCanBeClearedAndAwaited();
    void waitingForCommandsEnds();
    void commandIsCarriedOutWhenTheWaitEnds();
    void unsolicitedBytesComeAsTheyAre();
    void bitsAndBytesAreCounted();
    void unplugHangsUp();
    void unplugFromTheResponderHangsUp();
    void destructionHangsUp();
    void idleLineTakesNoTime();
    void programThatDoesNotReadDoesNotStopTheLine();
};

void TestSimulatedLine::unitAnswersOverTheTerminal()
{
    SimulatedLine line;
    const auto unit = std::make_shared<SimulatedUnit>();
    line.addUnit(unit);
    TerminalPeer peer(line.device());
    QVERIFY(peer.isOpen());
    QCOMPARE(peer.exchange("*ID?"), std::string("KELDO-X\r"));
    QCOMPARE(peer.exchange("*STEP 12"), std::string("LOCKED\r"));
    QCOMPARE(unit->step(), 12);
    QCOMPARE(line.commands(), (Lines{"*ID?", "*STEP 12"}));
}

void TestSimulatedLine::terminalIsRawBothWays()
{
    std::string all;
    for (int c = 0; c < 256; ++c)
        if (c != '\r')
            all += static_cast<char>(c);
    SimulatedLine line;
    line.setResponder([](const std::string &command) { return command; });
    TerminalPeer peer(line.device());
    QCOMPARE(peer.exchange(all), all + '\r');
    QCOMPARE(line.commands(), Lines{all});
    QCOMPARE(peer.read(1, 50ms), std::string()); // nothing was echoed by the terminal
}

void TestSimulatedLine::commandInPiecesIsOneCommand()
{
    SimulatedLine line;
    line.addUnit(std::make_shared<SimulatedUnit>());
    TerminalPeer peer(line.device());
    peer.write("*ST");
    QTRY_COMPARE(line.bytesReceived(), std::size_t(3));
    QCOMPARE(line.commands(), Lines{});
    peer.write("EP?\r");
    QCOMPARE(peer.readLine(), std::string("0\r"));
    QCOMPARE(line.commands(), Lines{"*STEP?"});
}

void TestSimulatedLine::twoCommandsInOnePieceAreTwo()
{
    SimulatedLine line;
    line.addUnit(std::make_shared<SimulatedUnit>());
    TerminalPeer peer(line.device());
    peer.write("*ID?\r*MAX STEP?\r");
    QCOMPARE(peer.readLine(), std::string("KELDO-X\r"));
    QCOMPARE(peer.readLine(), std::string("4000\r"));
}

void TestSimulatedLine::lineFeedBelongsToTheCarriageReturnBefore()
{
    SimulatedLine line;
    line.addUnit(std::make_shared<SimulatedUnit>());
    TerminalPeer peer(line.device());
    peer.write("*ID?\r\n*STEP?\r\n");
    QCOMPARE(peer.readLine(), std::string("KELDO-X\r"));
    QCOMPARE(peer.readLine(), std::string("0\r"));
    QCOMPARE(line.commands(), (Lines{"*ID?", "*STEP?"}));
}

void TestSimulatedLine::terminatorCanHaveALineFeed()
{
    SimulatedLine line;
    line.addUnit(std::make_shared<SimulatedUnit>());
    line.setTerminator("\r\n");
    TerminalPeer peer(line.device());
    peer.write("*ID?\r");
    QCOMPARE(peer.read(9, 5s), std::string("KELDO-X\r\n"));
}

void TestSimulatedLine::responderReplacesTheUnits()
{
    SimulatedLine line;
    const auto unit = std::make_shared<SimulatedUnit>();
    line.addUnit(unit);
    line.setResponder([](const std::string &command) -> std::optional<std::string> {
        if (command == "*STEP 7")
            return std::nullopt;
        return "you said " + command;
    });
    TerminalPeer peer(line.device());
    peer.write("*STEP 7\r");
    QCOMPARE(peer.exchange("*ID?"), std::string("you said *ID?\r"));
    QCOMPARE(unit->step(), 0);
    line.setResponder({});
    QCOMPARE(peer.exchange("*ID?"), std::string("KELDO-X\r"));
}

void TestSimulatedLine::responderMayCallTheLine()
{
    SimulatedLine line;
    line.setResponder([&](const std::string &) {
        line.send("first\r");
        return std::to_string(line.commands().size());
    });
    TerminalPeer peer(line.device());
    peer.write("*ID?\r");
    const QStringList both{QString::fromStdString(peer.readLine()),
                           QString::fromStdString(peer.readLine())};
    QVERIFY(both.contains(QStringLiteral("first\r")));
    QVERIFY(both.contains(QStringLiteral("1\r")));
}

void TestSimulatedLine::lineWithoutUnitsIsSilent()
{
    SimulatedLine line;
    TerminalPeer peer(line.device());
    peer.write("*ID?\r>UNLISTEN\r");
    QVERIFY(line.waitForCommands(2, 5s));
    QCOMPARE(peer.read(1, 50ms), std::string());
}

void TestSimulatedLine::sharedLineHandsCommandsToTheAddressedUnit()
{
    SimulatedLine line;
    const auto second = unitAt(2);
    const auto fifth = unitAt(5);
    line.addUnit(second);
    line.addUnit(fifth);
    TerminalPeer peer(line.device());
    QCOMPARE(peer.exchange(">LISTEN05"), std::string("LISTENING\r"));
    QCOMPARE(peer.exchange("*STEP 9"), std::string("LOCKED\r"));
    QCOMPARE(peer.exchange(">UNLISTEN"), std::string("UNLISTENING\r"));
    QCOMPARE(peer.exchange(">LISTEN02"), std::string("LISTENING\r"));
    QCOMPARE(peer.exchange("*STEP?"), std::string("0\r"));
    QCOMPARE(fifth->step(), 9);
    QCOMPARE(second->step(), 0);
}

void TestSimulatedLine::sharedLineAnswersReleaseAndAbsentAddressOnce()
{
    SimulatedLine line;
    for (int address = 1; address <= 8; ++address)
        line.addUnit(unitAt(address));
    TerminalPeer peer(line.device());
    QCOMPARE(peer.exchange(">UNLISTEN"), std::string("OK\r"));
    QCOMPARE(peer.exchange(">LISTEN33"), std::string("OK\r"));
    peer.write("*ID?\r");
    QVERIFY(line.waitForCommands(3, 5s));
    QCOMPARE(peer.read(1, 50ms), std::string());
    QCOMPARE(peer.exchange(">LISTEN08"), std::string("LISTENING\r"));
    QCOMPARE(peer.exchange("*ID?"), std::string("TOVIN-R\r"));
}

void TestSimulatedLine::unitThatWasNotReleasedHearsOnToo()
{
    SimulatedLine line;
    const auto first = unitAt(1);
    const auto second = unitAt(2);
    line.addUnit(first);
    line.addUnit(second);
    TerminalPeer peer(line.device());
    peer.exchange(">LISTEN01");
    peer.exchange(">LISTEN02");
    QCOMPARE(peer.exchange("*STEP 9"), std::string("LOCKED\r"));
    QCOMPARE(peer.read(1, 50ms), std::string());
    QCOMPARE(first->step(), 9);
    QCOMPARE(second->step(), 9);
}

void TestSimulatedLine::ninthUnitFindsNoRoom()
{
    SimulatedLine line;
    for (int address = 1; address <= 8; ++address)
        line.addUnit(unitAt(address));
    QVERIFY_THROWS_EXCEPTION(std::length_error, line.addUnit(unitAt(9)));
}

void TestSimulatedLine::programCanCloseAndOpenAgain()
{
    SimulatedLine line;
    line.addUnit(std::make_shared<SimulatedUnit>());
    for (int round = 0; round < 3; ++round) {
        TerminalPeer peer(line.device());
        QCOMPARE(peer.exchange("*ID?"), std::string("KELDO-X\r"));
    }
}

void TestSimulatedLine::lockOfAProgramGoesWithIt()
{
    SimulatedLine line;
    {
        TerminalPeer killed(line.device());
        QCOMPARE(ioctl(killed.descriptor(), TIOCEXCL), 0);
    }
    TerminalPeer next(line.device()); // root may open it, locked or not
    const auto isLocked = [&] {
        int exclusive = 0;
        return next.isOpen() && ioctl(next.descriptor(), TIOCGEXCL, &exclusive) == 0 && exclusive;
    };
    QTRY_VERIFY(!isLocked());
}

// A program removes its lock file after it has closed the port, when the number is free already.
void TestSimulatedLine::terminalThatIsStillLockedIsPassedOver()
{
    std::vector<int> masters(3); // what others leave or take meanwhile is not in these
    for (int &master : masters)
        master = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    const auto nameOf = [](int master) { return QString::fromLocal8Bit(ptsname(master)); };
    QStringList locked;
    std::vector<std::unique_ptr<QFile>> locks;
    for (const int master : masters) {
        locked.append(nameOf(master));
        auto lock = std::make_unique<QFile>(QStringLiteral("/tmp/LCK..pts_") +
                                            locked.last().section(QLatin1Char('/'), -1));
        QVERIFY(lock->open(QIODevice::WriteOnly));
        locks.push_back(std::move(lock));
    }
    const auto unlock = qScopeGuard([&] {
        for (const auto &lock : locks)
            lock->remove();
    });
    for (const int master : masters)
        ::close(master);
    std::vector<std::unique_ptr<SimulatedLine>> lines;
    for (int i = 0; i < 3; ++i) {
        lines.push_back(std::make_unique<SimulatedLine>());
        QVERIFY2(!locked.contains(QString::fromStdString(lines.back()->device())),
                 lines.back()->device().c_str());
    }
}

void TestSimulatedLine::transcriptCanBeClearedAndAwaited()
{
    SimulatedLine line;
    TerminalPeer peer(line.device());
    peer.write("A\rB\r");
    QVERIFY(line.waitForCommands(2, 5s));
    line.clearCommands();
    QCOMPARE(line.commands(), Lines{});
    QVERIFY(!line.waitForCommands(1, 0ms));
    peer.write("\rC\r");
    QVERIFY(line.waitForCommands(2, 5s));
    QCOMPARE(line.commands(), (Lines{"", "C"}));
}

void TestSimulatedLine::waitingForCommandsEnds()
{
    SimulatedLine line;
    QElapsedTimer clock;
    clock.start();
    QVERIFY(!line.waitForCommands(1, 60ms));
    QVERIFY(clock.elapsed() >= 60);
    QVERIFY(line.waitForCommands(0, 0ms));
}

void TestSimulatedLine::commandIsCarriedOutWhenTheWaitEnds()
{
    SimulatedLine line;
    std::atomic<bool> done = false;
    line.setResponder([&](const std::string &) {
        std::this_thread::sleep_for(60ms); // the unit is slow
        done = true;
        return std::string("x");
    });
    TerminalPeer peer(line.device());
    peer.write("*STEP 1\r");
    QVERIFY(line.waitForCommands(1, 5s));
    QVERIFY(done);
}

void TestSimulatedLine::unsolicitedBytesComeAsTheyAre()
{
    SimulatedLine line;
    TerminalPeer peer(line.device());
    const std::string bytes("\0a\n\xff", 4);
    line.send(bytes);
    QCOMPARE(peer.read(4, 5s), bytes);
    QCOMPARE(peer.read(1, 50ms), std::string());
}

void TestSimulatedLine::bitsAndBytesAreCounted()
{
    SimulatedLine line;
    line.addUnit(std::make_shared<SimulatedUnit>());
    TerminalPeer peer(line.device());
    QCOMPARE(line.bitsOnWire(), std::uint64_t(0));
    peer.exchange("*ID?");
    QCOMPARE(line.bytesReceived(), std::size_t(5));
    QTRY_COMPARE(line.bitsOnWire(), std::uint64_t((5 + 8) * 10));
}

void TestSimulatedLine::unplugHangsUp()
{
    SimulatedLine line;
    line.addUnit(std::make_shared<SimulatedUnit>());
    const std::string device = line.device();
    TerminalPeer peer(device);
    line.unplug();
    QVERIFY(peer.waitForHangUp());
    QCOMPARE(line.device(), device);
    peer.close();
    QVERIFY(!TerminalPeer(device).isOpen());
    line.unplug();
    line.send("x");
}

void TestSimulatedLine::unplugFromTheResponderHangsUp()
{
    SimulatedLine line;
    line.setResponder([&](const std::string &) {
        line.unplug();
        return std::string("gone");
    });
    TerminalPeer peer(line.device());
    peer.write("*ID?\r");
    QVERIFY(peer.waitForHangUp());
    QCOMPARE(peer.readLine(50ms), std::string());
}

void TestSimulatedLine::destructionHangsUp()
{
    auto line = std::make_unique<SimulatedLine>();
    TerminalPeer peer(line->device());
    line.reset();
    QVERIFY(peer.waitForHangUp());
}

// Of this process, in milliseconds.
static double processorTime()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto ms = [](const timeval &time) {
        return double(time.tv_sec) * 1000 + double(time.tv_usec) / 1000;
    };
    return ms(usage.ru_utime) + ms(usage.ru_stime);
}

void TestSimulatedLine::idleLineTakesNoTime()
{
    SimulatedLine line;
    line.addUnit(std::make_shared<SimulatedUnit>());
    line.setPaced(true);
    {
        TerminalPeer peer(line.device());
        peer.exchange("*ID?");
    }
    SimulatedLine unplugged;
    unplugged.unplug();
    const double before = processorTime();
    QVERIFY(!line.waitForCommands(99, 500ms));
    QVERIFY(processorTime() - before < 50);
}

void TestSimulatedLine::programThatDoesNotReadDoesNotStopTheLine()
{
    SimulatedLine line;
    line.addUnit(std::make_shared<SimulatedUnit>());
    TerminalPeer peer(line.device());
    for (int i = 0; i < 40; ++i)
        line.send(std::string(8192, 'x')); // far more than the terminal holds
    const double before = processorTime();
    peer.write("*STEP 5\r");
    QVERIFY(line.waitForCommands(1, 5s));
    QVERIFY(!line.waitForCommands(2, 300ms));
    QVERIFY(processorTime() - before < 100);
    QCOMPARE(peer.read(200'000, 5s), std::string(200'000, 'x'));
}

KELDOX_TEST(TestSimulatedLine)
#include "TestSimulatedLine.moc"
