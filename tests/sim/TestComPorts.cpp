// The links that give simulated lines their COM numbers.
#include "sim/ComPorts.h"
#include "sim/SimulatedLine.h"

#include "support/TestMain.h"

#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>

namespace fs = std::filesystem;
using Numbers = std::vector<int>;

class TestComPorts : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void folderLiesInTheUsersData();
    void linkLeadsToTheDeviceAndGoes();
    void linkOfSomebodyElseStays();
    void movedLinkGoesOnce();
    void takenNumberIsRefused();
    void numberOutsideTheRangeIsRefused();
    void freeNumberPassesOverLinks();
    void foreignNamesAreNoNumbers();
    void danglingLinksAreStale();
    void reusedTerminalIsStale();
    void livingLinksAreNotStale();
    void noFolderMeansNoNumbers();

private:
    std::unique_ptr<QTemporaryDir> mHome;
    QByteArray mHomeBefore;
};

void TestComPorts::init()
{
    mHome = std::make_unique<QTemporaryDir>();
    mHomeBefore = qgetenv("XDG_DATA_HOME");
    qputenv("XDG_DATA_HOME", mHome->path().toLocal8Bit());
}

void TestComPorts::cleanup()
{
    qputenv("XDG_DATA_HOME", mHomeBefore);
}

void TestComPorts::folderLiesInTheUsersData()
{
    const std::string home = mHome->path().toStdString();
    QCOMPARE(sim::portsFolder(), home + "/keldo-x/ports");
    QCOMPARE(sim::portLinkPath(12), home + "/keldo-x/ports/com12");
}

void TestComPorts::linkLeadsToTheDeviceAndGoes()
{
    const fs::path path = sim::portLinkPath(4);
    {
        const sim::ComPortLink link(4, "/dev/null");
        QCOMPARE(link.number(), 4);
        QCOMPARE(fs::path(link.path()), path);
        QCOMPARE(fs::read_symlink(path), fs::path("/dev/null"));
        QCOMPARE(sim::linkedNumbers(), Numbers{4});
    }
    QVERIFY(!fs::exists(fs::symlink_status(path)));
}

void TestComPorts::linkOfSomebodyElseStays()
{
    const fs::path path = sim::portLinkPath(4);
    {
        const sim::ComPortLink link(4, "/dev/null");
        fs::remove(path);
        fs::create_symlink("/dev/zero", path);
    }
    QCOMPARE(fs::read_symlink(path), fs::path("/dev/zero"));
}

void TestComPorts::movedLinkGoesOnce()
{
    std::vector<sim::ComPortLink> links;
    for (int number = 1; number <= 5; ++number) // grows, and so moves what it holds
        links.emplace_back(number, "/dev/null");
    QCOMPARE(sim::linkedNumbers(), (Numbers{1, 2, 3, 4, 5}));
    links.clear();
    QCOMPARE(sim::linkedNumbers(), Numbers{});
}

void TestComPorts::takenNumberIsRefused()
{
    const sim::ComPortLink link(4, "/dev/null");
    try {
        const sim::ComPortLink second(4, "/dev/zero");
        QFAIL("a second link under the same number");
    } catch (const std::system_error &error) {
        QVERIFY(error.code() == std::errc::file_exists);
    }
    QCOMPARE(fs::read_symlink(sim::portLinkPath(4)), fs::path("/dev/null"));
}

void TestComPorts::numberOutsideTheRangeIsRefused()
{
    QVERIFY_THROWS_EXCEPTION(std::system_error, sim::ComPortLink(0, "/dev/null"));
    QVERIFY_THROWS_EXCEPTION(std::system_error, sim::ComPortLink(256, "/dev/null"));
    QCOMPARE(sim::linkedNumbers(), Numbers{});
}

void TestComPorts::freeNumberPassesOverLinks()
{
    const sim::ComPortLink third(3, "/dev/null");
    const sim::ComPortLink fifth(5, "/dev/null");
    QCOMPARE(sim::freeNumber(1), 1);
    QCOMPARE(sim::freeNumber(3), 4);
    QCOMPARE(sim::freeNumber(3, {4, 6}), 7);
    QCOMPARE(sim::freeNumber(0), 1);
    QCOMPARE(sim::freeNumber(255), 255);
    QCOMPARE(sim::freeNumber(255, {255}), 0);
}

void TestComPorts::foreignNamesAreNoNumbers()
{
    const sim::ComPortLink link(10, "/dev/null");
    for (const char *const name : {"com", "comx", "com3x", "com-1", "com0", "COM7", "acom8"})
        fs::create_symlink("/dev/null", fs::path(sim::portsFolder()) / name);
    QCOMPARE(sim::linkedNumbers(), Numbers{10});
}

void TestComPorts::danglingLinksAreStale()
{
    fs::create_directories(sim::portsFolder());
    fs::create_symlink("/dev/pts/no-such-terminal", sim::portLinkPath(3));
    fs::create_symlink("/nowhere/at/all", sim::portLinkPath(9));
    QCOMPARE(sim::linkedNumbers(), (Numbers{3, 9}));
    QCOMPARE(sim::removeStaleLinks(), (Numbers{3, 9}));
    QCOMPARE(sim::linkedNumbers(), Numbers{});
}

// A killed simulator's terminal name goes to the next terminal that is opened, whosever it is.
void TestComPorts::reusedTerminalIsStale()
{
    const sim::SimulatedLine line;
    const std::string path = sim::portLinkPath(3);
    fs::create_directories(sim::portsFolder());
    fs::create_symlink(line.device(), path);
    const timespec longAgo[2] = {{1000, 0}, {1000, 0}};
    QCOMPARE(utimensat(AT_FDCWD, path.c_str(), longAgo, AT_SYMLINK_NOFOLLOW), 0);
    QCOMPARE(sim::removeStaleLinks(), Numbers{3});
}

void TestComPorts::livingLinksAreNotStale()
{
    const sim::SimulatedLine line;
    const sim::ComPortLink link(3, line.device());
    const sim::ComPortLink other(4, "/dev/null"); // as for a real port, older than its link or not
    const timespec longAgo[2] = {{1000, 0}, {1000, 0}};
    QCOMPARE(utimensat(AT_FDCWD, other.path().c_str(), longAgo, AT_SYMLINK_NOFOLLOW), 0);
    fs::create_symlink("/nowhere", fs::path(sim::portsFolder()) / "readme");
    QCOMPARE(sim::removeStaleLinks(), Numbers{});
    QCOMPARE(sim::linkedNumbers(), (Numbers{3, 4}));
    QVERIFY(fs::is_symlink(fs::path(sim::portsFolder()) / "readme"));
}

void TestComPorts::noFolderMeansNoNumbers()
{
    QCOMPARE(sim::linkedNumbers(), Numbers{});
    QCOMPARE(sim::removeStaleLinks(), Numbers{});
    QCOMPARE(sim::freeNumber(3), 3);
    QVERIFY(!fs::exists(sim::portsFolder()));
}

KELDOX_TEST(TestComPorts)
#include "TestComPorts.moc"
