// The timer control and co-operative waiting on the event queue.
#include "support/Fixture.h"
#include "support/TestMain.h"

#include "platform/EventQueue.h"
#include "platform/TestHooks.h"
#include "platform/TimerControl.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QSignalSpy>

class TestTimersAndEvents : public QObject
{
    Q_OBJECT

private slots:
    void init() { fixture = std::make_unique<Fixture>(); }
    void cleanup() { fixture.reset(); }
    void aTimerTicksWhileItIsEnabled();
    void anIntervalOfZeroOrLessStopsTheTimer_data();
    void anIntervalOfZeroOrLessStopsTheTimer();
    void aNewIntervalStartsARunningTimerAfresh();
    void anElapsedOneShotTimerIsMarkedAndDisabled();
    void yieldingHandlesWhatIsPendingAndReturns();
    void sleepingWaitsForTheNextEvent();
    void endingTheProgramLeavesEveryLoop();

private:
    std::unique_ptr<Fixture> fixture;
};

void TestTimersAndEvents::aTimerTicksWhileItIsEnabled()
{
    TimerControl timer;
    QSignalSpy ticks(&timer, &TimerControl::Timer);
    timer.setInterval(5);
    QTest::qWait(40);
    QCOMPARE(ticks.size(), 0);
    timer.setEnabled(true);
    QVERIFY(timer.isEnabled());
    QTRY_VERIFY_WITH_TIMEOUT(ticks.size() >= 2, 2000);
    timer.setEnabled(false);
    ticks.clear();
    QTest::qWait(40);
    QCOMPARE(ticks.size(), 0);
}

void TestTimersAndEvents::anIntervalOfZeroOrLessStopsTheTimer_data()
{
    QTest::addColumn<int>("interval");
    QTest::addRow("0") << 0;
    QTest::addRow("-5") << -5;
}

void TestTimersAndEvents::anIntervalOfZeroOrLessStopsTheTimer()
{
    QFETCH(const int, interval);
    TimerControl timer;
    QSignalSpy ticks(&timer, &TimerControl::Timer);
    timer.setInterval(5);
    timer.setEnabled(true);
    QTRY_VERIFY_WITH_TIMEOUT(!ticks.isEmpty(), 2000);
    timer.setInterval(interval);
    ticks.clear();
    QTest::qWait(40);
    QCOMPARE(ticks.size(), 0);
    QCOMPARE(timer.interval(), interval);
    QVERIFY(timer.isEnabled());
    timer.setEnabled(true);
    QTest::qWait(40);
    QCOMPARE(ticks.size(), 0);
    timer.setInterval(5);
    QTRY_VERIFY_WITH_TIMEOUT(!ticks.isEmpty(), 2000);
}

void TestTimersAndEvents::aNewIntervalStartsARunningTimerAfresh()
{
    TimerControl timer;
    QSignalSpy ticks(&timer, &TimerControl::Timer);
    timer.setInterval(60000);
    timer.setEnabled(true);
    timer.setInterval(5);
    QTRY_VERIFY_WITH_TIMEOUT(!ticks.isEmpty(), 2000);
}

void TestTimersAndEvents::anElapsedOneShotTimerIsMarkedAndDisabled()
{
    TimerControl timer;
    elapseOnTimer(&timer);
    timer.setTag(QStringLiteral("FALSE"));
    timer.setInterval(5);
    timer.setEnabled(true);
    QTRY_COMPARE_WITH_TIMEOUT(timer.tag(), QStringLiteral("TRUE"), 2000);
    QVERIFY(!timer.isEnabled());
    timer.setTag(QStringLiteral("FALSE"));
    QTest::qWait(40);
    QCOMPARE(timer.tag(), QStringLiteral("FALSE"));
}

void TestTimersAndEvents::yieldingHandlesWhatIsPendingAndReturns()
{
    bool handled = false;
    QMetaObject::invokeMethod(
        this, [&] { handled = true; }, Qt::QueuedConnection);
    EventQueue::yield();
    QVERIFY(handled);
    QElapsedTimer clock;
    clock.start();
    EventQueue::yield();
    QVERIFY(clock.elapsed() < 100);
}

void TestTimersAndEvents::sleepingWaitsForTheNextEvent()
{
    EventQueue::yield();
    bool handled = false;
    QTimer::singleShot(100, this, [&] { handled = true; });
    QElapsedTimer clock;
    clock.start();
    int rounds = 0;
    while (!handled && clock.elapsed() < 5000) {
        EventQueue::sleepUntilEvent();
        ++rounds;
    }
    QVERIFY(handled);
    QVERIFY2(rounds < 20, qPrintable(QString::number(rounds)));
}

void TestTimersAndEvents::endingTheProgramLeavesEveryLoop()
{
    QVERIFY(!EventQueue::ending());
    QEventLoop outer;
    bool innerLeft = false;
    QTimer::singleShot(0, this, [&] {
        QEventLoop inner;
        QTimer::singleShot(10, this, [] { EventQueue::endProgram(); });
        inner.exec();
        innerLeft = true;
    });
    QTimer::singleShot(5000, &outer, [&] { outer.exit(1); });
    QCOMPARE(outer.exec(), 0);
    QVERIFY(innerLeft);
    QVERIFY(EventQueue::ending());
    TestHooks::takeBackEnding();
    QVERIFY(!EventQueue::ending());
}

KELDOX_TEST(TestTimersAndEvents)
#include "TestTimersAndEvents.moc"
