// The simulated line as a program sees it: framing, shared lines and transcript.
#include "TerminalPeer.h"

#include "sim/SimulatedLine.h"

#include "support/TestMain.h"

#include <atomic>
#include <stdexcept>

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
    void transcriptCanBeClearedAndAwaited();
    void waitingForCommandsEnds();
    void commandIsCarriedOutWhenTheWaitEnds();
    void unsolicitedBytesComeAsTheyAre();
    void bitsAndBytesAreCounted();
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

KELDOX_TEST(TestSimulatedLine)
#include "TestSimulatedLine.moc"
