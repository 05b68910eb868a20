// While one exchange waits for its reply, whatever else the operator or a timer does is kept out:
// nothing more goes on the line, nothing nests, and the controls show afterwards what is true.
#include "MainBench.h"

#include "support/Hand.h"

class TestOneExchange : public QObject
{
    Q_OBJECT

private slots:
    void nothingElseIsSentWhileAnExchangeWaits_data();
    void nothingElseIsSentWhileAnExchangeWaits();
    void nothingElseIsSentWhileTheUnitIsReadAgain();
    void nothingElseIsSentBehindThePasswordBox();
    void readingAgainAsksWhatTheUnitHas();
    void readingAgainIsOfferedWithAUnitAlone();
    void readingAgainStopsWhenTheUnitGoes();
    void readingAgainAsksARowForItsLevels();
};

using Deed = std::function<void(ConnectedBench &)>;
Q_DECLARE_METATYPE(Deed)

namespace {

void typeAndEnter(QLineEdit *box, const QString &text)
{
    box->setFocus();
    box->selectAll();
    QTest::keyClicks(box, text);
    QTest::keyClick(box, Qt::Key_Return);
}

void drag(ConnectedBench &bench, const char *name)
{
    auto *bar = bench.find<QScrollBar>(name);
    const QPoint thumb = thumbOf(*bar);
    QTest::mousePress(bar, Qt::LeftButton, {}, thumb);
    dragTo(*bar, thumb + QPoint(60, 0));
    QTest::mouseRelease(bar, Qt::LeftButton, {}, thumb + QPoint(60, 0));
}

void addActs()
{
    QTest::addColumn<Deed>("act");
    const auto row = [](const char *name, Deed act) { QTest::addRow("%s", name) << act; };
    row("slider drag", [](ConnectedBench &b) { drag(b, "HScroll1"); });
    row("slider key", [](ConnectedBench &b) { QTest::keyClick(b.slider(), Qt::Key_Right); });
    row("frequency", [](ConnectedBench &b) { typeAndEnter(b.frequency(), QStringLiteral("107")); });
    row("frequency again",
        [](ConnectedBench &b) { QTest::mouseDClick(b.frequency(), Qt::LeftButton); });
    row("fine tuning", [](ConnectedBench &b) {
        typeAndEnter(b.find<QLineEdit>("txtPelltrim"), QStringLiteral("9"));
    });
    row("fine tuning again", [](ConnectedBench &b) {
        QTest::mouseDClick(b.find<QLineEdit>("txtPelltrim"), Qt::LeftButton);
    });
    row("fine tuning drag", [](ConnectedBench &b) { drag(b, "HScroll_Pelltrim"); });
    row("calibrated", [](ConnectedBench &b) { b.find<QCheckBox>("chkPelltrimCalMode")->click(); });
    row("input limiting",
        [](ConnectedBench &b) { b.find<QRadioButton>("optInputLimit_3")->click(); });
    row("preset", [](ConnectedBench &b) { b.find<QPushButton>("cmdSetDUTFreq_4")->click(); });
    row("set presets", [](ConnectedBench &b) { b.find<QPushButton>("cmdSetPresets")->click(); });
    row("polling tick", [](ConnectedBench &b) { emit b.polling()->Timer(); });
    row("polling", [](ConnectedBench &b) { b.entry("mnuEnablePolling")->trigger(); });
    row("interval", [](ConnectedBench &b) { b.entry("mnuPollingInterval")->trigger(); });
    row("F5", [](ConnectedBench &b) { QTest::keyClick(b.window.get(), Qt::Key_F5); });
    row("read again", [](ConnectedBench &b) { b.entry("mnuOptionsReadAgain")->trigger(); });
    row("search", [](ConnectedBench &b) { b.entry("mnuConnectComport")->trigger(); });
    row("known port", [](ConnectedBench &b) { b.entry("mnuConnectKnownComport")->trigger(); });
    row("Escape", [](ConnectedBench &b) { QTest::keyClick(b.frequency(), Qt::Key_Escape); });
}

} // namespace

void TestOneExchange::nothingElseIsSentWhileAnExchangeWaits_data()
{
    addActs();
}

void TestOneExchange::nothingElseIsSentWhileAnExchangeWaits()
{
    QFETCH(const Deed, act);
    ConnectedBench bench;
    app().presets[4]->setValue(102);
    bench.line.setLateBy(std::chrono::milliseconds(300));
    bench.line.setFault(sim::Fault::LateReply, "*STEP", 1);
    bool acted = false;
    bool waitedOn = false;
    bench.whileWaiting([&] {
        act(bench);
        acted = true;
        waitedOn = !app().guard().isUp();
    });
    bench.enter(QStringLiteral("105"));
    QVERIFY(acted);
    QVERIFY(waitedOn); // it came and went inside the wait
    QCOMPARE(bench.sent(), QStringList{QStringLiteral("*STEP 200")});
    QCOMPARE(bench.frequency()->text(), QStringLiteral("105"));
    QCOMPARE(bench.slider()->value(), 200);
    QCOMPARE(bench.slider()->sliderPosition(), 200);
    QVERIFY(bench.slider()->isEnabled());
    QVERIFY(bench.find<QRadioButton>("optInputLimit_1")->isChecked());
    QVERIFY(!bench.find<QCheckBox>("chkPelltrimCalMode")->isChecked());
    QCOMPARE(bench.find<QScrollBar>("HScroll_Pelltrim")->value(), 128);
    QVERIFY(!bench.entry("mnuEnablePolling")->isChecked());
    QVERIFY(app().guard().isUp());
}

void TestOneExchange::nothingElseIsSentWhileTheUnitIsReadAgain()
{
    ConnectedBench bench;
    bench.line.setLateBy(std::chrono::milliseconds(200));
    bench.line.setFault(sim::Fault::LateReply, "*STEP?", 1);
    bench.whileWaiting([&] {
        QVERIFY(!bench.entry("mnuOptionsReadAgain")->isEnabled());
        bench.entry("mnuOptionsReadAgain")->trigger();
        typeAndEnter(bench.frequency(), QStringLiteral("107"));
        drag(bench, "HScroll1");
    });
    bench.entry("mnuOptionsReadAgain")->trigger();
    QCOMPARE(bench.sent(), QStringList({QStringLiteral("*STEP?"), QStringLiteral("InputLimitMode?"),
                                        QStringLiteral("*ZNCM?"), QStringLiteral("*ZNSE?")}));
    QCOMPARE(bench.frequency()->text(), QStringLiteral("100"));
    QCOMPARE(bench.slider()->value(), 0);
}

void TestOneExchange::nothingElseIsSentBehindThePasswordBox()
{
    ConnectedBench bench;
    bench.reply("*STEP 200", "PERMISSION DENIED");
    bool acted = false;
    const Hand hand([&](QWidget *box) {
        emit bench.polling()->Timer();
        bench.entry("mnuOptionsReadAgain")->trigger();
        bench.entry("mnuConnectComport")->trigger();
        emit bench.unit->GetPassword(); // one box is enough
        bench.slider()->setValue(7);
        acted = true;
        QTest::keyClick(box, Qt::Key_Escape);
    });
    bench.enter(QStringLiteral("105"));
    QVERIFY(acted);
    QVERIFY(!QApplication::activeModalWidget());
    QCOMPARE(bench.sent(), QStringList({QStringLiteral("*STEP 200"), QStringLiteral("PASSWORD ")}));
    QCOMPARE(bench.frequency()->text(), QStringLiteral("100"));
    QCOMPARE(bench.slider()->value(), 0);
    QVERIFY(app().guard().isUp());
}

void TestOneExchange::readingAgainAsksWhatTheUnitHas()
{
    sim::UnitSettings settings = unitWithFirmware("3.17"); // no input limiting
    settings.optionC = 0;                                  // no fine tuning
    ConnectedBench bench(settings);
    bench.simulated->answer("*STEP 40");
    QTest::keyClick(bench.window.get(), Qt::Key_F5);
    QCOMPARE(bench.sent(), QStringList{QStringLiteral("*STEP?")});
    QCOMPARE(bench.frequency()->text(), QStringLiteral("101"));
    QCOMPARE(bench.slider()->value(), 40);
    QVERIFY(app().guard().isUp());
}

void TestOneExchange::readingAgainIsOfferedWithAUnitAlone()
{
    {
        MainBench bench;
        bench.show();
        QVERIFY(!bench.entry("mnuOptionsReadAgain")->isEnabled());
    }
    ConnectedBench bench;
    const QAction *entry = bench.entry("mnuOptionsReadAgain");
    QCOMPARE(entry->shortcut(), QKeySequence(Qt::Key_F5));
    QVERIFY(entry->isEnabled());
    app().guard().set(false);
    QVERIFY(!entry->isEnabled());
    app().guard().set(true);
    QVERIFY(entry->isEnabled());
    bench.boxes().acceptAll();
    bench.line.setFault(sim::Fault::Unplug);
    bench.enter(QStringLiteral("105"));
    QVERIFY(!entry->isEnabled());
    QCOMPARE(bench.panel(1), QStringLiteral("NOT CONNECTED"));
    QCOMPARE(bench.channels->panels.value(1), QStringLiteral("NOT CONNECTED"));
}

void TestOneExchange::readingAgainStopsWhenTheUnitGoes()
{
    ConnectedBench bench;
    bench.boxes().acceptAll();
    bench.line.setFault(sim::Fault::Unplug, "*STEP?");
    bench.entry("mnuOptionsReadAgain")->trigger();
    QCOMPARE(bench.line.commands(), std::vector<std::string>{"*STEP?"});
    QCOMPARE(bench.frequency()->text(), QString());
    QVERIFY(!bench.slider()->isEnabled());
    QVERIFY(app().guard().isUp());
}

void TestOneExchange::readingAgainAsksARowForItsLevels()
{
    ConnectedBench bench;
    const auto row = std::dynamic_pointer_cast<FakeChannelRow>(app().channels[2]);
    row->setDevice(bench.unit);
    row->calls->clear();
    bench.entry("mnuOptionsReadAgain")->trigger();
    QCOMPARE(*row->calls, QStringList{QStringLiteral("row2.readAgain")});
}

KELDOX_TEST(TestOneExchange)
#include "TestOneExchange.moc"
