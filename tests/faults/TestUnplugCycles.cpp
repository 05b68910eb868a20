// A device that is pulled out and plugged in again and again leaves nothing behind: no memory, no
// open descriptor, no object. KELDOX_CYCLES asks for more of it.
#include "FaultBench.h"
#include "support/Footprint.h"

#include <atomic>

#include <unistd.h>

using namespace faults;

// Qt calls what stands here for each object that comes and goes.
extern "C" Q_DECL_IMPORT quintptr qtHookData[];

namespace {

constexpr int addHook = 3;
constexpr int removeHook = 4;

std::atomic<int> objects = 0;

void countUp(QObject * /*object*/)
{
    ++objects;
}

void countDown(QObject * /*object*/)
{
    --objects;
}

class ObjectCount
{
public:
    ObjectCount()
    {
        objects = 0;
        qtHookData[addHook] = reinterpret_cast<quintptr>(&countUp);
        qtHookData[removeHook] = reinterpret_cast<quintptr>(&countDown);
    }
    ~ObjectCount() { qtHookData[addHook] = qtHookData[removeHook] = 0; }
    ObjectCount(const ObjectCount &) = delete;
    ObjectCount &operator=(const ObjectCount &) = delete;
};

qint64 residentKiB()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toLongLong() * (sysconf(_SC_PAGESIZE) / 1024);
}

qsizetype openDescriptors()
{
    return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::AllEntries | QDir::System).size();
}

struct Holdings
{
    int objects = 0;
    qsizetype descriptors = 0;
    qint64 memory = 0; // KiB
};

Holdings holdings()
{
    // What was left for later is gone.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QTest::qWait(60);
    return {objects, openDescriptors(), residentKiB()};
}

} // namespace

class TestUnplugCycles : public QObject
{
    Q_OBJECT

private slots:
    void leaveNothingBehind();
};

void TestUnplugCycles::leaveNothingBehind()
{
    if (openDescriptors() == 0)
        QSKIP("this system does not tell what a program holds");
    const ObjectCount counting;
    const int wanted = std::max(qEnvironmentVariableIntValue("KELDOX_CYCLES"), 100);
    const int warmUp = wanted / 4;
    FaultBench bench;
    const auto unit = std::make_shared<sim::SimulatedUnit>();
    bench.plug(5, unit);
    search();
    Holdings before;
    for (int cycle = 0; cycle < wanted; ++cycle) {
        if (cycle == warmUp)
            before = holdings();
        tune(QString::number(100 + cycle % 50));
        QCOMPARE(unit->step(), cycle % 50 * 40);
        bench.boxes().expectStart(QStringLiteral("Error 8020"));
        bench.line(5).unplug();
        QVERIFY(turnUntil([&] { return bench.boxes().allShown(); }));
        QCOMPARE(mainText("StatusBar_1"), QStringLiteral("NOT CONNECTED"));
        QCOMPARE(frequency(), QString());
        bench.boxes().clear();
        bench.plug(5, unit);
        choose(1);
        QCOMPARE(mainText("StatusBar_1"), QStringLiteral("CONNECTED ON COM5"));
        QCOMPARE(frequency(), QString::number(100 + cycle % 50));
    }
    const Holdings after = holdings();
    qInfo("unplugged %d times: %d objects, %lld descriptors, %lld KiB more", wanted - warmUp,
          after.objects - before.objects, qlonglong(after.descriptors - before.descriptors),
          after.memory - before.memory);
    QCOMPARE(after.objects, before.objects);
    QCOMPARE(after.descriptors, before.descriptors);
    // The monitor's text grows to its bound, and the allocator keeps what it has.
    QVERIFY2(!memoryTells || after.memory - before.memory < 4096,
             qPrintable(QString::number(after.memory)));
}

KELDOX_TEST(TestUnplugCycles)
#include "TestUnplugCycles.moc"
