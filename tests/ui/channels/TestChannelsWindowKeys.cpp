// The channels window: progress, keys, and what searching tells it.
#include "ChannelsBench.h"

#include "discovery/PortSearch.h"
#include "platform/Application.h"
#include "widgets/PanelStatusBar.h"

#include <QProgressBar>
#include <QTabBar>
#include <QTabWidget>

class TestChannelsWindowKeys : public QObject
{
    Q_OBJECT

private slots:
    void progress();
    void escapeIsNoted();
    void otherKeysAreNot();
    void escapeEndsARunningSearch();
    void prepareForSearchEmptiesEverything();
    void arrangeShowsTheTabOfTheFirstUnit();
    void refreshShowsTheConnectedChannel();
    void closingHides();
    void showBringsItBack();
    void tabKeyFollowsTheRow();
    void arrowKeysDoNotConnect();
    void everyControlHasAnAccessibleName();
    void unitsOfMeasureFollowTheirBoxes();
};

static QTabWidget *tabsOf(const ChannelsBench &b)
{
    return b.window->findChild<QTabWidget *>(QStringLiteral("tabsChannels"));
}

void TestChannelsWindowKeys::progress()
{
    const ChannelsBench b;
    auto *bar = b.window->findChild<QProgressBar *>(QStringLiteral("ProgressBar1"));
    QVERIFY(bar->isHidden());
    QVERIFY(b.window->findChild<PanelStatusBar *>(QStringLiteral("StatusBar"))->isAncestorOf(bar));
    b.window->setProgressMaximum(516);
    QCOMPARE(b.window->progressMaximum(), 516);
    b.window->setProgressVisible(true);
    QVERIFY(bar->isVisible());
    b.window->setProgress(511);
    QCOMPARE(bar->value(), 511);
    b.window->setProgressVisible(false);
    QVERIFY(!bar->isVisible());
}

void TestChannelsWindowKeys::escapeIsNoted()
{
    ChannelsBench b;
    b.connected(1, ChannelsBench::fullUnit());
    for (QWidget *focused :
         {static_cast<QWidget *>(b.box("txtChanFreq")), static_cast<QWidget *>(b.arrows("udAtten")),
          static_cast<QWidget *>(b.check("chkChanAGC")),
          static_cast<QWidget *>(b.find<QRadioButton>("optPortNum", 1)),
          static_cast<QWidget *>(tabsOf(b)->tabBar())}) {
        b.window->clearEscape();
        QVERIFY(!b.window->escapePressed());
        focused->setFocus();
        QTest::keyClick(focused, Qt::Key_Escape);
        QVERIFY2(b.window->escapePressed(), qPrintable(focused->objectName()));
    }
    QVERIFY(b.window->isVisible());
}

void TestChannelsWindowKeys::otherKeysAreNot()
{
    const ChannelsBench b;
    QTest::keyClick(b.window.get(), Qt::Key_Return);
    b.window->Form_KeyPress(13);
    QVERIFY(!b.window->escapePressed());
    b.window->Form_KeyPress(27);
    QVERIFY(b.window->escapePressed());
}

void TestChannelsWindowKeys::escapeEndsARunningSearch()
{
    const ChannelsBench b;
    app().search = std::make_shared<PortSearch>();
    QTest::keyClick(b.window.get(), Qt::Key_Escape);
    QVERIFY(app().search->isCancelled());
}

void TestChannelsWindowKeys::prepareForSearchEmptiesEverything()
{
    ChannelsBench b;
    sim::UnitSettings settings = ChannelsBench::fullUnit();
    settings.bypass = true;
    settings.agc = true;
    b.connected(1, settings);
    QVERIFY(b.check("chkChanBYP")->isChecked());
    b.window->prepareForSearch();
    QCOMPARE(b.window->ChanIndex(), 0);
    for (int index = 1; index <= 8; ++index)
        for (const char *name : {"optPortNum", "lblPortNum", "txtChanFreq", "txtChanAtten",
                                 "chkChanAGC", "chkChanBYP", "udAGCOffset"})
            QVERIFY(b.find<QWidget>(name, index)->isHidden());
    for (const char *name :
         {"txtChanFreq", "txtChanAtten", "txtChanInputAtten", "txtChanAGCoffset"})
        QCOMPARE(b.box(name)->text(), QString());
    QVERIFY(!b.check("chkChanBYP")->isChecked());
    QVERIFY(!b.check("chkChanAGC")->isChecked());
    QCOMPARE(b.panel(2), QString());
}

void TestChannelsWindowKeys::arrangeShowsTheTabOfTheFirstUnit()
{
    ChannelsBench b;
    tabsOf(b)->setCurrentIndex(3);
    b.window->arrangeForUnitsFound(); // nobody there: the operator's tab stays
    QCOMPARE(tabsOf(b)->currentIndex(), 3);
    b.bind(6);
    b.window->arrangeForUnitsFound();
    QCOMPARE(tabsOf(b)->currentIndex(), 1);
    b.bind(1);
    b.window->arrangeForUnitsFound();
    QCOMPARE(tabsOf(b)->currentIndex(), 0);
}

void TestChannelsWindowKeys::refreshShowsTheConnectedChannel()
{
    ChannelsBench b;
    b.connected(1, ChannelsBench::fullUnit());
    b.box("txtChanAtten")->hide();
    b.window->refreshChannelDisplays();
    QVERIFY(b.box("txtChanAtten")->isVisible());
    QCOMPARE(b.sent(), QStringList());
    b.row(1).setStatus(0);
    b.window->refreshChannelDisplays(); // no channel is connected: nothing to do
}

void TestChannelsWindowKeys::closingHides()
{
    ChannelsBench b;
    b.connected(1);
    b.window->close();
    QVERIFY(!b.window->isVisible());
    QVERIFY(!b.window->testAttribute(Qt::WA_DeleteOnClose));
    QCOMPARE(b.window->ChanIndex(), 1);
}

void TestChannelsWindowKeys::showBringsItBack()
{
    const ChannelsBench b;
    b.window->showMinimized();
    b.window->show();
    QVERIFY(b.window->isVisible());
    QVERIFY(!b.window->isMinimized());
}

void TestChannelsWindowKeys::tabKeyFollowsTheRow()
{
    ChannelsBench b;
    b.connected(1, ChannelsBench::fullUnit());
    b.find<QRadioButton>("optPortNum", 1)->setFocus();
    QStringList order;
    for (int step = 0; step < 8; ++step) {
        order.append(QApplication::focusWidget()->objectName());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    // The offset's controls are disabled while AGC is off.
    QCOMPARE(order.join(QLatin1Char(' ')),
             QStringLiteral("optPortNum_1 txtChanFreq_1 txtChanAtten_1 udAtten_1 "
                            "txtChanInputAtten_1 udInputAtten_1 chkChanAGC_1 chkChanBYP_1"));
}

void TestChannelsWindowKeys::arrowKeysDoNotConnect()
{
    ChannelsBench b;
    b.bind(1);
    b.bind(2);
    auto *option = b.find<QRadioButton>("optPortNum", 1);
    option->setFocus();
    QTest::keyClick(option, Qt::Key_Down);
    QCOMPARE(b.sent(1) + b.sent(2), QStringList());
    QCOMPARE(b.window->ChanIndex(), 0);
    QTest::keyClick(option, Qt::Key_Space);
    QCOMPARE(b.window->ChanIndex(), 1);
    QVERIFY(b.sent(1).contains(QStringLiteral("*ID?")));
}

void TestChannelsWindowKeys::everyControlHasAnAccessibleName()
{
    const ChannelsBench b;
    for (int index = 1; index <= 8; ++index) {
        QSet<QString> names;
        for (const char *name :
             {"optPortNum", "txtChanFreq", "txtChanAtten", "udAtten", "txtChanInputAtten",
              "udInputAtten", "chkChanAGC", "txtChanAGCoffset", "udAGCOffset", "chkChanBYP"}) {
            const QString spoken = b.find<QWidget>(name, index)->accessibleName();
            QVERIFY2(spoken.startsWith(QStringLiteral("channel %1 ").arg(index)), name);
            names.insert(spoken);
        }
        QCOMPARE(names.size(), 10);
    }
    QCOMPARE(b.box("txtChanAtten", 3)->accessibleName(),
             QStringLiteral("channel 3 attenuation, dB"));
}

void TestChannelsWindowKeys::unitsOfMeasureFollowTheirBoxes()
{
    ChannelsBench b;
    b.bind(1);
    const auto unitsShown = [&] {
        int shown = 0;
        for (const auto *label : b.window->findChildren<QLabel *>())
            shown += label->isVisible() && label->text() == QStringLiteral("MHz");
        return shown;
    };
    QCOMPARE(unitsShown(), 0);
    b.select(1);
    QCOMPARE(unitsShown(), 1);
    b.row(1).HideControls();
    QCOMPARE(unitsShown(), 0);
}

KELDOX_TEST(TestChannelsWindowKeys)
#include "TestChannelsWindowKeys.moc"
