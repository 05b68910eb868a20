// The terminal under a simulated line: opened again, locked, hung up, idle and not read.
#include "TerminalPeer.h"

#include "sim/SimulatedLine.h"

#include "support/TestMain.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <unistd.h>

using namespace std::chrono_literals;
using sim::SimulatedLine;
using sim::SimulatedUnit;

class TestPseudoTerminal : public QObject
{
    Q_OBJECT

private slots:
    void programCanCloseAndOpenAgain();
    void lockOfAProgramGoesWithIt();
    void terminalThatIsStillLockedIsPassedOver();
    void unplugHangsUp();
    void nameOfAnUnpluggedOneStaysItsOwn();
    void unplugFromTheResponderHangsUp();
    void destructionHangsUp();
    void idleLineTakesNoTime();
    void programThatDoesNotReadDoesNotStopTheLine();
};

void TestPseudoTerminal::programCanCloseAndOpenAgain()
{
    SimulatedLine line;
    line.addUnit(std::make_shared<SimulatedUnit>());
    for (int round = 0; round < 3; ++round) {
        TerminalPeer peer(line.device());
        QCOMPARE(peer.exchange("*ID?"), std::string("KELDO-X\r"));
    }
}

void TestPseudoTerminal::lockOfAProgramGoesWithIt()
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
void TestPseudoTerminal::terminalThatIsStillLockedIsPassedOver()
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

void TestPseudoTerminal::unplugHangsUp()
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

// A program that waits for the device's return would open whatever got its name.
void TestPseudoTerminal::nameOfAnUnpluggedOneStaysItsOwn()
{
    std::vector<std::unique_ptr<SimulatedLine>> unplugged;
    QStringList names;
    for (int i = 0; i < 3; ++i) { // others take and leave numbers meanwhile
        unplugged.push_back(std::make_unique<SimulatedLine>());
        names.append(QString::fromStdString(unplugged.back()->device()));
        unplugged.back()->unplug();
    }
    names.removeDuplicates();
    QCOMPARE(names.size(), 3);
    std::vector<std::unique_ptr<SimulatedLine>> others;
    for (int i = 0; i < 3; ++i) {
        others.push_back(std::make_unique<SimulatedLine>());
        QVERIFY2(!names.contains(QString::fromStdString(others.back()->device())),
                 others.back()->device().c_str());
    }
}

void TestPseudoTerminal::unplugFromTheResponderHangsUp()
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

void TestPseudoTerminal::destructionHangsUp()
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

void TestPseudoTerminal::idleLineTakesNoTime()
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

void TestPseudoTerminal::programThatDoesNotReadDoesNotStopTheLine()
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

KELDOX_TEST(TestPseudoTerminal)
#include "TestPseudoTerminal.moc"
