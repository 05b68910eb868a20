// The co-operative pause, the channel look-ups and the application-wide state.
#include "support/Fixture.h"
#include "support/TestMain.h"

#include "FakeStartUp.h"
#include "app/modMain_KeldoX2.h"
#include "core/pauseit.h"
#include "platform/EventQueue.h"
#include "platform/TestHooks.h"
#include "platform/TimerControl.h"

#include <QElapsedTimer>

#include <ctime>

class TestSharedHelpers : public QObject
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
    void theActiveChannelIsTheOneTheChannelsWindowNames();
    void allChannelsButTheSparedOneAreDisabled();
    void aChannelThatFailsDoesNotStopTheOthers();
    void aFreshStateIsAsAtStartUp();

private:
    std::unique_ptr<Fixture> fixture;
    std::unique_ptr<TimerControl> timer;
};

void TestSharedHelpers::init()
{
    fixture = std::make_unique<Fixture>();
    timer = std::make_unique<TimerControl>();
    elapseOnTimer(timer.get());
}

void TestSharedHelpers::cleanup()
{
    timer.reset();
    fixture.reset();
}

void TestSharedHelpers::aPauseOfZeroReturnsAtOnceAndTouchesNothing()
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

void TestSharedHelpers::aNegativePauseOnlySetsTheInterval()
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

void TestSharedHelpers::aPauseLastsItsTimeWhileEventsAreHandled()
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

void TestSharedHelpers::aPauseDoesNotSpin()
{
    QElapsedTimer clock;
    clock.start();
    const std::clock_t before = std::clock();
    pauseit(timer.get(), 300);
    const double usedMs = 1000.0 * static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
    const double share = usedMs / static_cast<double>(clock.elapsed());
    QVERIFY2(share < 0.03, qPrintable(QString::number(share)));
}

void TestSharedHelpers::aPauseEndsWhenItsTagIsChanged()
{
    QTimer::singleShot(20, this, [this] { timer->setTag(QStringLiteral("TRUE")); });
    QElapsedTimer clock;
    clock.start();
    pauseit(timer.get(), 20000);
    QVERIFY(clock.elapsed() < 5000);
}

void TestSharedHelpers::aPauseEndsWithTheProgram()
{
    QTimer::singleShot(20, this, [] { EventQueue::endProgram(); });
    QElapsedTimer clock;
    clock.start();
    pauseit(timer.get(), 20000);
    QVERIFY(clock.elapsed() < 5000);
    QVERIFY(EventQueue::ending());
}

void TestSharedHelpers::aPauseEndsWithItsTimer()
{
    QTimer::singleShot(20, this, [this] { timer.reset(); });
    QElapsedTimer clock;
    clock.start();
    pauseit(timer.get(), 20000);
    QVERIFY(clock.elapsed() < 5000);
}

void TestSharedHelpers::aPauseWithoutATimerIsReported()
{
    fixture->boxes.expect(QStringLiteral("Error 91 ('Object variable not set')\r\n"
                                         "Object variable not set\r\n"
                                         " from KELDO-X Control Program\r\n"
                                         " in modMain_KeldoX2.pauseit\r\n"),
                          48);
    pauseit(nullptr, 10);
}

void TestSharedHelpers::theActiveChannelIsTheOneTheChannelsWindowNames()
{
    QCOMPARE(activeChannel(), 0);
    const auto window = std::make_shared<FakeChannelsWindow>();
    app().makers.channelsWindow = [&] { return window; };
    QCOMPARE(activeChannel(), 0);
    window->selected = 5;
    QCOMPARE(activeChannel(), 5);
    QCOMPARE(*window->calls, QStringList{QStringLiteral("channels.load")}); // made once
}

void TestSharedHelpers::allChannelsButTheSparedOneAreDisabled()
{
    const auto calls = std::make_shared<QStringList>();
    disableAllChannels(); // before there are any
    for (int number = 1; number <= 8; ++number) {
        app().channels[number] = std::make_shared<FakeChannel>(calls);
        app().channels[number]->setIndex(static_cast<std::int16_t>(number));
    }
    calls->clear();
    QStringList all;
    for (int number = 1; number <= 8; ++number)
        all.append(QStringLiteral("channel%1.DisableControls").arg(number));
    disableAllChannels();
    QCOMPARE(*calls, all);
    calls->clear();
    disableAllChannels(3);
    all.removeAt(2);
    QCOMPARE(*calls, all);
}

void TestSharedHelpers::aChannelThatFailsDoesNotStopTheOthers()
{
    const auto calls = std::make_shared<QStringList>();
    for (int number = 1; number <= 8; ++number) {
        const auto channel = std::make_shared<FakeChannel>(calls);
        channel->failing = number == 2;
        app().channels[number] = channel;
    }
    fixture->boxes.expectStart(QStringLiteral("Error 91"));
    disableAllChannels();
    QCOMPARE(calls->size(), 7);
}

void TestSharedHelpers::aFreshStateIsAsAtStartUp()
{
    app().guard().set(true);
    app().searchFinished = false;
    app().sliderScale = 4;
    app().foundUnits = 3;
    resetAppState();
    QVERIFY(!app().guard().isUp());
    QVERIFY(app().searchFinished);
    QCOMPARE(app().sliderScale, std::int16_t(1));
    QCOMPARE(app().foundUnits, std::int16_t(0));
    QVERIFY(!app().mainWindow && !eventLog() && !app().currentDevice);
}

KELDOX_TEST(TestSharedHelpers)
#include "TestSharedHelpers.moc"
