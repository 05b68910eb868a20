// The main window's menus: their order and captions, the entries without a window yet, the search,
// and the polling timer's switch.
#include "MainBench.h"
#include "support/Heard.h"

#include "platform/PortDirectory.h"

class TestMenus : public QObject
{
    Q_OBJECT

private slots:
    void entriesAreInTheirOrderUnderTheirCaptions();
    void everyEntryHasAMnemonicOfItsOwn();
    void thePollingEntrySaysWhatItDoes();
    void entriesWithoutAnActionAreDisabledAndSayWhy_data();
    void entriesWithoutAnActionAreDisabledAndSayWhy();
    void anEntryOnTheBarItselfShowsItsToolTip();
    void showChannelsShowsTheChannelsWindow();
    void displayIOMonitorShowsTheMonitor();
    void shortcutsReachControlsAndWindows();
    void searchEntryFollowsGuardAndSearch();
    void aSearchWithoutUnitsStopsPollingAndStartsItAgain();
    void aSearchLeavesPollingOffWhenItIsNotChecked();
    void duringASearchNothingElseCanBeUsed();
    void closingDuringASearchEndsTheProgram();
    void pollingIsSwitchedByItsEntry();
    void pollingEntryDoesNothingWhileTheGuardIsDown();
    void everyExchangeStopsPolling();
};

static void collect(const QWidget &menu, const QString &indent, QStringList &all)
{
    for (const QAction *entry : menu.actions()) {
        if (entry->isSeparator())
            continue;
        const QString name = entry->menu() ? entry->menu()->objectName() : entry->objectName();
        all.append(indent + name + QLatin1Char('|') + entry->text().remove(QLatin1Char('&')));
        if (entry->menu())
            collect(*entry->menu(), indent + QLatin1Char('-'), all);
    }
}

void TestMenus::entriesAreInTheirOrderUnderTheirCaptions()
{
    const MainBench bench;
    QStringList all;
    collect(*bench.window->menuBar(), QString(), all);
    const QStringList expected{
        QStringLiteral("mnuFile|File"),
        QStringLiteral("-mnuFileExit|Exit"),
        QStringLiteral("mnuShowChannels|Show Channels"),
        QStringLiteral("mnuConnectMenu|Connect"),
        QStringLiteral("-mnuConnectTCP|Connect via TCP/IP  (ethernet or Wifi)"),
        QStringLiteral("-mnuConnectKnownComport|Connect to KeldoX (on a specific port)"),
        QStringLiteral("-mnuConnectComport|Connect to KeldoX (search com ports)"),
        QStringLiteral("-mnuCloseTCP|close TCP connection"),
        QStringLiteral("-mnuReconnect|Reconnect when the device returns"),
        QStringLiteral("mnuPolling|Polling"),
        QStringLiteral("-mnuEnablePolling| Enable Input Attenuation Polling"),
        QStringLiteral("-mnuPollingInterval|Polling Interval"),
        QStringLiteral("mnuSweepora|Sweepora"),
        QStringLiteral("mnuHelp|Help"),
        QStringLiteral("-mnuHelpContents|Operation"),
        QStringLiteral("-mnuHelpManual|Manual"),
        QStringLiteral("-mnuHelpProtocol|Protocol reference"),
        QStringLiteral("-mnuHelpAbout|About"),
        QStringLiteral("-mnuHelpContact|Contact"),
        QStringLiteral("mnuOptionsIOdaemon|display IO monitor"),
        QStringLiteral("mnuOptions|Options"),
        QStringLiteral("-mnuOptionsReadAgain|Read the unit again"),
    };
    QCOMPARE(all, expected);
}

// Those on the bar also differ from the labels of the window, which share the Alt key.
void TestMenus::everyEntryHasAMnemonicOfItsOwn()
{
    const MainBench bench;
    QStringList labels;
    for (const QLabel *label : bench.window->centralWidget()->findChildren<QLabel *>())
        if (label->buddy() && label->text().contains(QLatin1Char('&')))
            labels.append(QKeySequence::mnemonic(label->text()).toString());
    QCOMPARE(labels.size(), 3);
    QCOMPARE(mnemonicFaults(*bench.window->menuBar(), labels), QStringList());
    for (const auto &[name, text] :
         {std::pair("mnuFile", "&File"), {"mnuConnectMenu", "&Connect"}, {"mnuHelp", "&Help"}})
        QCOMPARE(bench.find<QMenu>(name)->title(), QString::fromLatin1(text));
    QCOMPARE(bench.entry("mnuFileExit")->text(), QStringLiteral("E&xit"));
    QCOMPARE(bench.entry("mnuSweepora")->text(), QStringLiteral("Sweep&ora"));
}

void TestMenus::thePollingEntrySaysWhatItDoes()
{
    const MainBench bench;
    const QString tip = bench.entry("mnuEnablePolling")->toolTip();
    QVERIFY(tip.contains(QStringLiteral("timer")));
    QVERIFY(tip.contains(QStringLiteral("asks the unit nothing")));
}

void TestMenus::entriesWithoutAnActionAreDisabledAndSayWhy_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"mnuConnectTCP", "mnuCloseTCP", "mnuSweepora"})
        QTest::addRow("%s", name) << QString::fromLatin1(name);
}

void TestMenus::entriesWithoutAnActionAreDisabledAndSayWhy()
{
    QFETCH(const QString, name);
    MainBench bench;
    bench.show();
    const QAction *entry = bench.entry(qPrintable(name));
    QVERIFY(!entry->isEnabled());
    QVERIFY(entry->toolTip().startsWith(QStringLiteral("Not available")));
    for (const QObject *owner : entry->associatedObjects())
        if (const auto *menu = qobject_cast<const QMenu *>(owner);
            menu && menu->objectName().startsWith(QStringLiteral("mnu")))
            QVERIFY(menu->toolTipsVisible());
}

void TestMenus::anEntryOnTheBarItselfShowsItsToolTip()
{
    MainBench bench;
    bench.show();
    QMenuBar *bar = bench.window->menuBar();
    const QPoint place = bar->actionGeometry(bench.entry("mnuSweepora")).center();
    QHelpEvent help(QEvent::ToolTip, place, bar->mapToGlobal(place));
    QCoreApplication::sendEvent(bar, &help);
    QCOMPARE(QToolTip::text(), bench.entry("mnuSweepora")->toolTip());
    QToolTip::hideText();
}

void TestMenus::showChannelsShowsTheChannelsWindow()
{
    const MainBench bench;
    bench.entry("mnuShowChannels")->trigger();
    QCOMPARE(bench.channels->calls->last(), QStringLiteral("channels.show"));
}

void TestMenus::displayIOMonitorShowsTheMonitor()
{
    const MainBench bench;
    bench.entry("mnuOptionsIOdaemon")->trigger();
    QCOMPARE(bench.monitor->calls->last(), QStringLiteral("monitor.show"));
}

void TestMenus::shortcutsReachControlsAndWindows()
{
    ConnectedBench bench;
    const auto press = [&](Qt::Key key, Qt::KeyboardModifiers with = Qt::NoModifier) {
        QTest::keyClick(bench.window.get(), key, with);
    };
    press(Qt::Key_T, Qt::ControlModifier);
    QVERIFY(bench.slider()->hasFocus());
    press(Qt::Key_F, Qt::ControlModifier);
    QVERIFY(bench.frequency()->hasFocus());
    QCOMPARE(bench.frequency()->selectedText(), bench.frequency()->text());
    bench.frequency()->deselect(); // also where the focus is already
    press(Qt::Key_F, Qt::ControlModifier);
    QCOMPARE(bench.frequency()->selectedText(), bench.frequency()->text());
    press(Qt::Key_P, Qt::AltModifier);
    QVERIFY(bench.find<QLineEdit>("txtFreq_3")->hasFocus());
    press(Qt::Key_F6);
    QCOMPARE(bench.channels->calls->last(), QStringLiteral("channels.show"));
    press(Qt::Key_F12);
    QCOMPARE(bench.monitor->calls->last(), QStringLiteral("monitor.show"));
    app().presets[5]->setValue(101);
    press(Qt::Key_2, Qt::ControlModifier);
    QTRY_COMPARE(bench.simulated->step(), 40);
}

void TestMenus::searchEntryFollowsGuardAndSearch()
{
    MainBench bench;
    const QAction *entry = bench.entry("mnuConnectComport");
    QVERIFY(!entry->isEnabled()); // before the first activation
    bench.show();
    QVERIFY(entry->isEnabled());
    app().guard().set(false);
    QVERIFY(!entry->isEnabled());
    app().searchFinished = false;
    app().guard().set(true);
    QVERIFY(!entry->isEnabled());
    app().searchFinished = true;
    app().guard().set(false);
    app().guard().set(true);
    QVERIFY(entry->isEnabled());
}

static void expectNothingFound(MainBench &bench)
{
    bench.boxes().expect(
        QStringLiteral("Check data and power connections to KELDO-X filter then select the "
                       "'connect' from the menu."),
        MessageBox::Exclamation);
}

void TestMenus::aSearchWithoutUnitsStopsPollingAndStartsItAgain()
{
    MainBench bench;
    bench.show();
    bench.entry("mnuEnablePolling")->trigger();
    QVERIFY(bench.polling()->isEnabled());
    expectNothingFound(bench);
    bool polledInBetween = true;
    bool guardInBetween = true;
    bench.boxes().whileOpen([&] {
        polledInBetween = bench.polling()->isEnabled();
        guardInBetween = app().guard().isUp();
    });
    bench.entry("mnuConnectComport")->trigger();
    QVERIFY(!polledInBetween);
    QVERIFY(!guardInBetween);
    QVERIFY(bench.polling()->isEnabled());
    QVERIFY(app().guard().isUp());
    QVERIFY(app().searchFinished);
    QVERIFY(bench.entry("mnuConnectComport")->isEnabled());
    QCOMPARE(bench.light(), IndicatorLight::red);
    QCOMPARE(bench.panel(1), QStringLiteral("NOT CONNECTED"));
    QCOMPARE(bench.caption("lblCurrentChannel"), QStringLiteral("No active channel"));
    QVERIFY(bench.find<QWidget>("cmdSetPresets")->isEnabled());
    QVERIFY(!bench.frequency()->isEnabled());
}

void TestMenus::aSearchLeavesPollingOffWhenItIsNotChecked()
{
    MainBench bench;
    bench.show();
    bench.polling()->setEnabled(true); // by whatever
    expectNothingFound(bench);
    bench.entry("mnuConnectComport")->trigger();
    QVERIFY(!bench.polling()->isEnabled());
}

void TestMenus::duringASearchNothingElseCanBeUsed()
{
    sim::SimulatedLine silent;
    silent.setResponder([](const std::string &) { return std::nullopt; });
    MainBench bench;
    bench.show();
    bench.fixture.plug(9, silent.device());
    expectNothingFound(bench);
    bool looked = false;
    QTimer::singleShot(200, bench.window.get(), [&] {
        looked = true;
        QCOMPARE(bench.panel(1), QStringLiteral("SEARCHING PORTS, THIS MAY TAKE SOME TIME...."));
        QVERIFY(!bench.entry("mnuConnectComport")->isEnabled());
        for (const char *name : {"txtCurrentFreq", "HScroll1", "cmdSetPresets", "cmdSetDUTFreq_4",
                                 "FramePelltrim", "FrameInputLimiting"})
            QVERIFY2(!bench.find<QWidget>(name)->isEnabled(), name);
        bench.entry("mnuConnectComport")->trigger(); // a second search does not begin
    });
    bench.entry("mnuConnectComport")->trigger();
    QVERIFY(looked);
    QCOMPARE(silent.commands().size(), std::size_t{1});
}

void TestMenus::closingDuringASearchEndsTheProgram()
{
    sim::SimulatedLine silent;
    silent.setResponder([](const std::string &) { return std::nullopt; });
    MainBench bench;
    bench.show();
    bench.entry("mnuEnablePolling")->trigger();
    bench.fixture.plug(9, silent.device());
    QElapsedTimer time;
    QTimer::singleShot(100, bench.window.get(), [&] {
        time.start();
        bench.window->close();
    });
    bench.entry("mnuConnectComport")->trigger();
    QVERIFY(time.isValid());
    QVERIFY(time.elapsed() < 200);
    QVERIFY(EventQueue::ending());
    QVERIFY(!bench.polling()->isEnabled());
}

void TestMenus::pollingIsSwitchedByItsEntry()
{
    MainBench bench;
    bench.show();
    QAction *entry = bench.entry("mnuEnablePolling");
    entry->trigger();
    QVERIFY(entry->isChecked());
    QVERIFY(bench.polling()->isEnabled());
    entry->trigger();
    QVERIFY(!entry->isChecked());
    QVERIFY(!bench.polling()->isEnabled());
    QVERIFY(app().guard().isUp());
}

void TestMenus::pollingEntryDoesNothingWhileTheGuardIsDown()
{
    MainBench bench;
    bench.show();
    QAction *entry = bench.entry("mnuEnablePolling");
    app().guard().set(false);
    entry->trigger();
    QVERIFY(!entry->isChecked());
    QVERIFY(!bench.polling()->isEnabled());
    app().guard().set(true);
    entry->trigger();
    app().guard().set(false);
    entry->trigger();
    QVERIFY(entry->isChecked());
    QVERIFY(bench.polling()->isEnabled());
}

void TestMenus::everyExchangeStopsPolling()
{
    ConnectedBench bench;
    bench.entry("mnuEnablePolling")->trigger();
    QVERIFY(bench.polling()->isEnabled());
    bench.enter(QStringLiteral("101"));
    QVERIFY(!bench.polling()->isEnabled());
    QVERIFY(bench.entry("mnuEnablePolling")->isChecked());
    bench.window->restartPollingIfChecked();
    QVERIFY(bench.polling()->isEnabled());
    bench.window->stopPolling();
    QVERIFY(!bench.polling()->isEnabled());
}

KELDOX_TEST(TestMenus)
#include "TestMenus.moc"
