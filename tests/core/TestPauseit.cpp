// The co-operative pause: how long it lasts, what happens meanwhile, and what ends it.
#include "core/pauseit.h"

#include "platform/EventQueue.h"
#include "platform/TestHooks.h"
#include "platform/TimerControl.h"
#include "support/Fixture.h"
#include "support/TestMain.h"

#include <QElapsedTimer>

#include <ctime>

class TestPauseit : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void aPauseOfZeroReturnsAtOnceAndTouchesNothing();
    void aNegativePauseOnlySetsTheInterval();
    void aPauseLastsItsTimeWhileEventsAreHandled();
    void aPauseDoesNotSpin();
    void aPauseEndsWhenItsTagIsChanged();
    void aPauseEndsWithTheProgram();
    void aPauseEndsWithItsTimer();
    void aPauseWithoutATimerIsReported();

private:
    std::unique_ptr<Fixture> fixture;
    std::unique_ptr<TimerControl> timer;
};

void TestPauseit::init()
{
    fixture = std::make_unique<Fixture>();
    timer = std::make_unique<TimerControl>();
    elapseOnTimer(timer.get());
}

void TestPauseit::cleanup()
{
    timer.reset();
    fixture.reset();
}

void TestPauseit::aPauseOfZeroReturnsAtOnceAndTouchesNothing()
{
    timer->setTag(QStringLiteral("mine"));
    timer->setInterval(77);
    QElapsedTimer clock;
    clock.start();
    pauseit(timer.get(), 0);
    QVERIFY(clock.elapsed() < 50);
    QCOMPARE(TestHooks::virtualMs(), 0);
    QCOMPARE(timer->tag(), QStringLiteral("mine"));
    QCOMPARE(timer->interval(), 77);
    QVERIFY(!timer->isEnabled());
}

void TestPauseit::aNegativePauseOnlySetsTheInterval()
{
    QElapsedTimer clock;
    clock.start();
    pauseit(timer.get(), -5);
    QVERIFY(clock.elapsed() < 50);
    QCOMPARE(TestHooks::virtualMs(), 0);
    QCOMPARE(timer->interval(), -5);
    QCOMPARE(timer->tag(), QStringLiteral("FALSE"));
    QVERIFY(!timer->isEnabled());
}

void TestPauseit::aPauseLastsItsTimeWhileEventsAreHandled()
{
    int beats = 0;
    QTimer heart;
    connect(&heart, &QTimer::timeout, this, [&] { ++beats; });
    heart.start(10);
    QElapsedTimer clock;
    clock.start();
    pauseit(timer.get(), 200);
    const qint64 took = clock.elapsed();
    QVERIFY2(took >= 199 && took < 1000, qPrintable(QString::number(took)));
    QCOMPARE(TestHooks::virtualMs(), 200);
    QVERIFY2(beats >= 5, qPrintable(QString::number(beats)));
    QCOMPARE(timer->tag(), QStringLiteral("TRUE"));
    QVERIFY(!timer->isEnabled());
}

void TestPauseit::aPauseDoesNotSpin()
{
    QElapsedTimer clock;
    clock.start();
    const std::clock_t before = std::clock();
    pauseit(timer.get(), 300);
    const double usedMs = 1000.0 * static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
    const double share = usedMs / static_cast<double>(clock.elapsed());
    QVERIFY2(share < 0.03, qPrintable(QString::number(share)));
}

void TestPauseit::aPauseEndsWhenItsTagIsChanged()
{
    QTimer::singleShot(20, this, [this] { timer->setTag(QStringLiteral("TRUE")); });
    QElapsedTimer clock;
    clock.start();
    pauseit(timer.get(), 20000);
    QVERIFY(clock.elapsed() < 5000);
}

void TestPauseit::aPauseEndsWithTheProgram()
{
    QTimer::singleShot(20, this, [] { EventQueue::endProgram(); });
    QElapsedTimer clock;
    clock.start();
    pauseit(timer.get(), 20000);
    QVERIFY(clock.elapsed() < 5000);
    QVERIFY(EventQueue::ending());
}

void TestPauseit::aPauseEndsWithItsTimer()
{
    QTimer::singleShot(20, this, [this] { timer.reset(); });
    QElapsedTimer clock;
    clock.start();
    pauseit(timer.get(), 20000);
    QVERIFY(clock.elapsed() < 5000);
}

void TestPauseit::aPauseWithoutATimerIsReported()
{
    fixture->boxes.expect(QStringLiteral("Error 91 ('Object variable not set')\r\n"
                                         "Object variable not set\r\n"
                                         " from KELDO-X Control Program\r\n"
                                         " in modMain_KeldoX2.pauseit\r\n"),
                          48);
    pauseit(nullptr, 10);
}

KELDOX_TEST(TestPauseit)
#include "TestPauseit.moc"
