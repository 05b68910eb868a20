// The channels window: its tabs, captions and status bar.
#include "ChannelsBench.h"

#include "platform/Application.h"
#include "support/Failures.h"
#include "support/LeaksAllowed.h"
#include "widgets/PanelStatusBar.h"

#include <QProgressBar>
#include <QTabBar>
#include <QTabWidget>

class TestChannelsWindow : public QObject
{
    Q_OBJECT

private slots:
    void tabs();
    void columnHeadersOnEveryTab();
    void showColumnLabelsMakesThemVisibleAgain();
    void startUpMakesNoRows();
    void rowsAreMadeByWhateverNeedsOne_data();
    void rowsAreMadeByWhateverNeedsOne();
    void captionsAfterLoading();
    void loadingSelectsTheFirstTab();
    void aFailureInLoadingIsReportedAndTheRestLoaded();
    void tabsWithoutRowsSaySo();
    void rowsStandOnTheirTabs();
    void activeChannel();
    void oneOptionAcrossTabs();
    void statusPanels();
    void clearStatusBar();
    void unitChangeFillsThePanels_data();
    void unitChangeFillsThePanels();
    void theUnitBeforeIsNoLongerHeard();
    void clearingARowsBoxesSparesTheInputAttenuation();
};

static QTabWidget *tabsOf(const ChannelsBench &b)
{
    return b.window->findChild<QTabWidget *>(QStringLiteral("tabsChannels"));
}

void TestChannelsWindow::tabs()
{
    const ChannelsBench b;
    QStringList captions;
    for (int tab = 0; tab < tabsOf(b)->count(); ++tab)
        captions.append(tabsOf(b)->tabText(tab));
    QCOMPARE(captions,
             QStringList({QStringLiteral("Channels 1 - 4"), QStringLiteral("Channels 5 - 8"),
                          QStringLiteral("Channels 9 - 12"), QStringLiteral(" Channels 13 - 16")}));
}

static const QList<QPair<const char *, QString>> headers{
    {"lblChannel", QStringLiteral("channel")},
    {"lblChanFreq", QStringLiteral("frequency")},
    {"lblChanAtten", QStringLiteral("attenuation")},
    {"lblChanInputAtten", QStringLiteral("input attn")},
    {"lblChanAGC", QStringLiteral("AGC")},
    {"lblChanAGCOffset", QStringLiteral("AGC offset")},
    {"lblChanBypass", QStringLiteral("bypass")}};

void TestChannelsWindow::columnHeadersOnEveryTab()
{
    const ChannelsBench b;
    for (int tab = 0; tab < 4; ++tab) {
        tabsOf(b)->setCurrentIndex(tab);
        for (const auto &[name, caption] : headers) {
            const auto *label = b.find<QLabel>(name, tab);
            QVERIFY(label);
            QVERIFY(label->isVisible());
            QCOMPARE(label->text(), caption);
            QVERIFY(tabsOf(b)->widget(tab)->isAncestorOf(label));
            // Columns stand in the same places on every tab.
            QCOMPARE(label->mapTo(b.window.get(), QPoint()),
                     b.find<QLabel>(name, 0)->mapTo(b.window.get(), QPoint()));
        }
    }
}

void TestChannelsWindow::showColumnLabelsMakesThemVisibleAgain()
{
    const ChannelsBench b;
    for (int tab = 0; tab < 4; ++tab)
        for (const auto &header : headers)
            b.find<QLabel>(header.first, tab)->hide();
    b.window->ShowColumnLabelsOnTabs();
    for (int tab = 0; tab < 4; ++tab)
        for (const auto &header : headers)
            QVERIFY(!b.find<QLabel>(header.first, tab)->isHidden());
}

// What start-up does with the window and its rows; making them took a tenth of the start.
void TestChannelsWindow::startUpMakesNoRows()
{
    const ChannelsBench b(false);
    QVERIFY(b.window->isLoaded());
    QCOMPARE(b.window->ChanIndex(), 0);
    for (int channel = 1; channel <= 4; ++channel)
        b.window->clearChannelBoxes(channel);
    b.window->showProgressLine(QString());
    QVERIFY(!tabsOf(b));
    QVERIFY(b.window->findChildren<QLineEdit *>().isEmpty());
}

void TestChannelsWindow::rowsAreMadeByWhateverNeedsOne_data()
{
    QTest::addColumn<std::function<void(ChannelsBench &)>>("need");
    QTest::addColumn<QString>("box");
    QTest::addColumn<bool>("isEnabled");
    using Need = std::function<void(ChannelsBench &)>;
    const auto row = [](const char *name, const QString &box, bool isEnabled, const Need &need) {
        QTest::addRow("%s", name) << need << box << isEnabled;
    };
    row("shown", {}, true, [](ChannelsBench &b) { b.window->show(); });
    row("searched", {}, false, [](ChannelsBench &b) { b.window->prepareForSearch(); });
    row("disabled", {}, false, [](ChannelsBench &b) { b.row(3).DisableControls(); });
    row("hidden", {}, false, [](ChannelsBench &b) { b.row(3).HideControls(); });
    row("arranged", {}, true, [](ChannelsBench &b) { b.window->arrangeForUnitsFound(); });
    row("an attenuation told", QStringLiteral("7"), true, [](ChannelsBench &b) {
        b.row(3).setDevice(std::make_shared<clsKeldoX>());
        b.row(3).m_Device_AttenChange(7);
    });
}

void TestChannelsWindow::rowsAreMadeByWhateverNeedsOne()
{
    QFETCH(const std::function<void(ChannelsBench &)>, need);
    QFETCH(const QString, box);
    QFETCH(const bool, isEnabled);
    ChannelsBench b(false);
    need(b);
    QVERIFY(tabsOf(b));
    QVERIFY(b.find<QLineEdit>("txtChanFreq", 8));
    QCOMPARE(b.box("txtChanAtten", 3)->text(), box);
    QCOMPARE(b.box("txtChanAtten", 3)->isEnabled(), isEnabled);
    QVERIFY(b.find<QRadioButton>("optPortNum", 3)->isHidden());
}

void TestChannelsWindow::captionsAfterLoading()
{
    const ChannelsBench b;
    QCOMPARE(b.window->windowTitle(), applicationTitle() + QStringLiteral(" - Channels"));
    for (int index = 1; index <= 8; ++index) {
        QCOMPARE(b.find<QRadioButton>("optPortNum", index)->text(),
                 QStringLiteral(" %1").arg(index));
        QCOMPARE(b.find<QLabel>("lblPortNum", index)->text(), QString());
    }
    QVERIFY(!b.find<QRadioButton>("optPortNum", 9));
}

void TestChannelsWindow::loadingSelectsTheFirstTab()
{
    const Fixture fixture;
    const auto window = std::make_shared<frmChannels>();
    QVERIFY(!window->isLoaded());
    window->controls();
    auto *tabs = window->findChild<QTabWidget *>(QStringLiteral("tabsChannels"));
    tabs->setCurrentIndex(2);
    window->load();
    QVERIFY(window->isLoaded());
    QCOMPARE(tabs->currentIndex(), 0);
}

void TestChannelsWindow::aFailureInLoadingIsReportedAndTheRestLoaded()
{
    const LeaksAllowed throughQt;
    Fixture fixture;
    const auto window = std::make_shared<frmChannels>();
    connect(window.get(), &QWidget::windowTitleChanged, this, fail, Qt::SingleShotConnection);
    fixture.boxes.expect(failureIn("frmMain.Form_Load"), MessageBox::Exclamation);
    window->load();
    QVERIFY(fixture.boxes.allShown());
    QVERIFY(window->isLoaded());
    window->controls();
    QCOMPARE(window->findChild<QRadioButton *>(QStringLiteral("optPortNum_8"))->text(),
             QStringLiteral(" 8"));
}

void TestChannelsWindow::tabsWithoutRowsSaySo()
{
    ChannelsBench b;
    for (int tab = 0; tab < 4; ++tab)
        QVERIFY(!b.find<QLabel>("lblNoUnit", tab)->isHidden());
    QCOMPARE(b.find<QLabel>("lblNoUnit", 2)->text(),
             QStringLiteral("No units are bound to channels 9 to 12."));
    b.bind(5);
    QVERIFY(!b.find<QLabel>("lblNoUnit", 0)->isHidden());
    QVERIFY(b.find<QLabel>("lblNoUnit", 1)->isHidden());
    b.row(5).HideControls();
    QVERIFY(!b.find<QLabel>("lblNoUnit", 1)->isHidden());
}

void TestChannelsWindow::rowsStandOnTheirTabs()
{
    const ChannelsBench b;
    for (int index = 1; index <= 8; ++index)
        QVERIFY(tabsOf(b)->widget(index <= 4 ? 0 : 1)->isAncestorOf(b.box("txtChanFreq", index)));
}

void TestChannelsWindow::activeChannel()
{
    const ChannelsBench b;
    QCOMPARE(b.window->ChanIndex(), 0);
    b.find<QRadioButton>("optPortNum", 6)->setChecked(true);
    QCOMPARE(b.window->ChanIndex(), 6);
    b.find<QRadioButton>("optPortNum", 2)->setChecked(true);
    QCOMPARE(b.window->ChanIndex(), 2); // the first
}

void TestChannelsWindow::oneOptionAcrossTabs()
{
    ChannelsBench b;
    b.bind(1);
    b.bind(5);
    b.select(1);
    tabsOf(b)->setCurrentIndex(1);
    b.select(5);
    QCOMPARE(b.window->ChanIndex(), 5);
    QVERIFY(!b.find<QRadioButton>("optPortNum", 1)->isChecked());
}

void TestChannelsWindow::statusPanels()
{
    const ChannelsBench b;
    for (int number = 1; number <= 5; ++number) {
        b.window->setStatusPanel(number, QStringLiteral("panel %1").arg(number));
        QCOMPARE(b.panel(number), QStringLiteral("panel %1").arg(number));
    }
}

void TestChannelsWindow::clearStatusBar()
{
    const ChannelsBench b;
    for (int number = 1; number <= 5; ++number)
        b.window->setStatusPanel(number, QStringLiteral("x"));
    b.window->clearStatusBar();
    for (int number = 1; number <= 5; ++number)
        QCOMPARE(b.panel(number), QString());
    QVERIFY(b.fixture.boxes.texts().isEmpty()); // the missing panels 6 to 10 are no news
}

void TestChannelsWindow::unitChangeFillsThePanels_data()
{
    QTest::addColumn<int>("bandwidth");
    QTest::addColumn<QString>("panel");
    QTest::newRow("25 kHz") << 25000 << " 25 KHZ BW";
    QTest::newRow("12.5 kHz") << 12500 << " 12.5 KHZ BW";
    QTest::newRow("1 Hz") << 1 << " 0.001 KHZ BW";
    QTest::newRow("none") << 0 << "";
}

void TestChannelsWindow::unitChangeFillsThePanels()
{
    QFETCH(int, bandwidth);
    QFETCH(QString, panel);
    ChannelsBench b;
    b.window->setStatusPanel(3, QStringLiteral("old"));
    b.window->setStatusPanel(5, QStringLiteral("old"));
    sim::UnitSettings settings;
    settings.bandwidthHz = bandwidth;
    b.connected(1, settings);
    QCOMPARE(b.panel(2), QStringLiteral("KELDO-X REV 3.38"));
    QCOMPARE(b.panel(3), panel);
    QCOMPARE(b.panel(5), QString());
}

void TestChannelsWindow::theUnitBeforeIsNoLongerHeard()
{
    ChannelsBench b;
    const auto before = b.connected(1);
    b.window->setDevice(std::make_shared<clsKeldoX>());
    b.window->setStatusPanel(5, QStringLiteral("kept"));
    b.row(1).setDevice(nullptr);
    emit before->DUTChange();
    QCOMPARE(b.panel(5), QStringLiteral("kept"));
}

void TestChannelsWindow::clearingARowsBoxesSparesTheInputAttenuation()
{
    const ChannelsBench b;
    const QStringList names{QStringLiteral("txtChanFreq"), QStringLiteral("txtChanAtten"),
                            QStringLiteral("txtChanAGCoffset"),
                            QStringLiteral("txtChanInputAtten")};
    for (int channel = 1; channel <= 8; ++channel)
        for (const QString &name : names)
            b.box(qPrintable(name), channel)->setText(QStringLiteral("full"));
    b.window->clearChannelBoxes(3);
    for (int channel = 1; channel <= 8; ++channel)
        for (const QString &name : names) {
            const bool cleared = channel == 3 && name != names.last();
            QCOMPARE(b.box(qPrintable(name), channel)->text(),
                     cleared ? QString() : QStringLiteral("full"));
        }
}

KELDOX_TEST(TestChannelsWindow)
#include "TestChannelsWindow.moc"
