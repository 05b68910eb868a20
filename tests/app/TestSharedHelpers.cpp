// The channel look-ups and the application-wide state.
#include "support/Fixture.h"
#include "support/TestMain.h"

#include "FakeStartUp.h"
#include "app/modMain_KeldoX2.h"

class TestSharedHelpers : public QObject
{
    Q_OBJECT

private slots:
    void init() { fixture = std::make_unique<Fixture>(); }
    void cleanup() { fixture.reset(); }
    void theActiveChannelIsTheOneTheChannelsWindowNames();
    void allChannelsButTheSparedOneAreDisabled();
    void aChannelThatFailsDoesNotStopTheOthers();
    void aFreshStateIsAsAtStartUp();

private:
    std::unique_ptr<Fixture> fixture;
};

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
