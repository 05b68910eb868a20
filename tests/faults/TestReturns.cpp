// A device that comes back while "Reconnect" is on, and is not what it was.
#include "FaultBench.h"

#include "platform/CommControl.h"

using namespace faults;

class TestReturns : public QObject
{
    Q_OBJECT

private slots:
    void silentItIsAskedOnce();
    void heldByAnotherProgramItIsTriedOnce();
    void afterASearchNobodyWaitsForIt();
};

// The unit on COM5 was connected, and is awaited.
static void loseTheUnit(FaultBench &on)
{
    on.plug(5);
    search();
    trigger(mainName, "mnuReconnect");
    on.boxes().acceptAll();
    on.line(5).unplug();
    QTRY_COMPARE(panel(mainName, 1), QStringLiteral("NOT CONNECTED"));
}

// Whoever waits for a unit does not stop the operator's work again and again.
void TestReturns::silentItIsAskedOnce()
{
    FaultBench on;
    loseTheUnit(on);
    sim::SimulatedLine &line = on.plug(5);
    line.setFault(sim::Fault::Silence);
    TestHooks::shortenTimers(50);
    QTRY_VERIFY(!line.commands().empty());
    QTRY_VERIFY(!app().connecting);
    QTest::qWait(100); // what the attempt still has to send
    const QStringList asked = sent(line);
    QTest::qWait(500); // ten looks at the ports
    QCOMPARE(sent(line), asked);
    seesNotConnected();
    trigger(mainName, "mnuReconnect"); // kept otherwise
}

void TestReturns::heldByAnotherProgramItIsTriedOnce()
{
    FaultBench on;
    loseTheUnit(on);
    const sim::SimulatedLine &line = on.plug(5);
    CommControl other;
    other.setCommPort(5);
    other.setPortOpen(true);
    const auto told = on.boxes().texts().size();
    TestHooks::shortenTimers(50);
    QTRY_VERIFY(on.boxes().texts().size() > told);
    QTest::qWait(100); // what else the attempt has to say
    const QStringList all = on.boxes().texts();
    QTest::qWait(500); // ten looks at the ports
    QCOMPARE(on.boxes().texts(), all);
    QCOMPARE(sent(line), QStringList());
    seesNotConnected();
    trigger(mainName, "mnuReconnect");
}

// A search that found nothing there has let the unit go.
void TestReturns::afterASearchNobodyWaitsForIt()
{
    FaultBench on;
    loseTheUnit(on);
    on.fixture.unplug(5);
    on.plug(7);
    search();
    seesConnected(7);
    sim::SimulatedLine &line = on.plug(5);
    TestHooks::shortenTimers(50);
    QTest::qWait(500);
    QCOMPARE(sent(line), QStringList());
    seesConnected(7);
    trigger(mainName, "mnuReconnect");
}

KELDOX_TEST(TestReturns)
#include "TestReturns.moc"
