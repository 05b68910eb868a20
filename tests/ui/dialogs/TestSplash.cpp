// The splash window: its timer, its progress, and that it stays until it is unloaded.
#include "support/Fixture.h"
#include "support/TestMain.h"

#include "ui/dialogs/frmSplash.h"

#include <QtWidgets>

class TestSplash : public QObject
{
    Q_OBJECT

private slots:
    void itShowsTheTitleAtOnce();
    void theTimerIsSetToFourSecondsAndRuns();
    void readyToCloseComesWithTheTimerAndTheWindowStays();
    void aClickDoesNothing();
    void eachChannelAdvancesTheDisplay();
    void unloadingClosesIt();
};

void TestSplash::itShowsTheTitleAtOnce()
{
    const Fixture fixture;
    frmSplash splash;
    splash.show();
    QVERIFY(splash.isVisible());
    QCOMPARE(splash.objectName(), QStringLiteral("frmSplash"));
    QCOMPARE(splash.findChild<QLabel *>(QStringLiteral("lblSplashTitle"))->text(),
             QStringLiteral("KELDO-X Control Program"));
    QVERIFY(!splash.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    QVERIFY(!splash.ReadyToClose());
}

void TestSplash::theTimerIsSetToFourSecondsAndRuns()
{
    const Fixture fixture;
    const frmSplash splash;
    const auto *timer = splash.findChild<TimerControl *>(QStringLiteral("tmrSplash"));
    QCOMPARE(timer->interval(), 4000);
    QVERIFY(timer->isEnabled());
}

void TestSplash::readyToCloseComesWithTheTimerAndTheWindowStays()
{
    const Fixture fixture;
    frmSplash splash;
    splash.show();
    auto *timer = splash.findChild<TimerControl *>(QStringLiteral("tmrSplash"));
    timer->setInterval(1);
    QTRY_VERIFY(splash.ReadyToClose());
    QVERIFY(!timer->isEnabled());
    QVERIFY(splash.isVisible());
    splash.setReadyToClose(false);
    QVERIFY(!splash.ReadyToClose());
}

void TestSplash::aClickDoesNothing()
{
    const Fixture fixture;
    frmSplash splash;
    splash.show();
    QTest::mouseClick(&splash, Qt::LeftButton);
    QTest::mouseClick(splash.findChild<QLabel *>(QStringLiteral("lblSplashTitle")), Qt::LeftButton);
    QVERIFY(splash.isVisible());
    QVERIFY(!splash.ReadyToClose());
}

void TestSplash::eachChannelAdvancesTheDisplay()
{
    const Fixture fixture;
    frmSplash splash;
    const auto *progress = splash.findChild<QProgressBar *>(QStringLiteral("prgSplash"));
    for (int channel = 1; channel <= 8; ++channel) {
        splash.advance();
        QCOMPARE(progress->value(), channel);
    }
    QCOMPARE(progress->maximum(), 8);
}

void TestSplash::unloadingClosesIt()
{
    const Fixture fixture;
    frmSplash splash;
    splash.show();
    splash.unload();
    QVERIFY(!splash.isVisible());
    QVERIFY(!splash.findChild<TimerControl *>(QStringLiteral("tmrSplash"))->isEnabled());
}

KELDOX_TEST(TestSplash)
#include "TestSplash.moc"
