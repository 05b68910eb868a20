// More than can be done at once: sliders that move faster than the unit answers, replies
// without an end, and a search over ports that block, babble or are dead.
#include "FaultBench.h"
#include "StuckUnit.h"

#include "ui/monitor/frmIODaemon.h"

using namespace faults;

class TestStorms : public QObject
{
    Q_OBJECT

private slots:
    void sliderOverASlowUnit();
    void fineTuningOverASlowUnit();
    void tenMegabytesWithoutAnEnd_data();
    void tenMegabytesWithoutAnEnd();
    void searchOverBlockingBabblingAndDeadPorts();
};

void TestStorms::sliderOverASlowUnit()
{
    FaultBench bench;
    const auto unit = std::make_shared<sim::SimulatedUnit>();
    auto &line = bench.plug(5, unit);
    search();
    line.setLateBy(std::chrono::milliseconds(15));
    line.setFault(sim::Fault::LateReply);
    auto *slider = control<QScrollBar>(mainName, "HScroll1");
    line.clearCommands();
    const StallMeter stall("slider storm");
    slider->setSliderDown(true);
    for (int place = 1; place <= 200; ++place) {
        slider->setSliderPosition(place * 10);
        QCoreApplication::processEvents();
        QCOMPARE(frequency(), QString::number(100 + place * 0.25)); // the box follows the hand
    }
    QVERIFY(line.commands().empty()); // the unit tunes when it is let go
    slider->setSliderDown(false);
    QVERIFY(turnUntil([&] { return app().guard().isUp(); }));
    QCOMPARE(sent(line), QStringList{QStringLiteral("*STEP 2000")});
    slider->setFocus();
    for (int i = 0; i < 60; ++i) {
        QCoreApplication::postEvent(slider,
                                    new QKeyEvent(QEvent::KeyPress, Qt::Key_Right, Qt::NoModifier));
        QCoreApplication::postEvent(
            slider, new QKeyEvent(QEvent::KeyRelease, Qt::Key_Right, Qt::NoModifier));
    }
    QTest::qWait(200);
    QVERIFY(turnUntil([&] { return app().guard().isUp() && slider->isEnabled(); }));
    // What is shown is where the unit is, and where it was last sent.
    QVERIFY(unit->step() > 2000 && unit->step() <= 2060);
    QCOMPARE(slider->value(), unit->step());
    QCOMPARE(frequency(), QString::number(unit->currentMHz(), 'g', 10));
    QCOMPARE(sent(line).last(), QStringLiteral("*STEP %1").arg(unit->step()));
    QCOMPARE(description(mainName, "txtCurrentFreq"), QString());
    seesConnected(5);
}

// The newest value is sent when the unit has answered; what came in between is left out.
void TestStorms::fineTuningOverASlowUnit()
{
    FaultBench bench;
    const auto unit = std::make_shared<sim::SimulatedUnit>();
    auto &line = bench.plug(5, unit);
    search();
    line.setLateBy(std::chrono::milliseconds(15));
    line.setFault(sim::Fault::LateReply);
    auto *slider = control<QScrollBar>(mainName, "HScroll_Pelltrim");
    line.clearCommands();
    slider->setSliderDown(true);
    for (int place = 1; place <= 200; ++place) {
        QTimer::singleShot(place, slider, [slider, place] { slider->setSliderPosition(place); });
    }
    QVERIFY(turnUntil([&] { return slider->sliderPosition() == 200; }));
    slider->setSliderDown(false);
    QVERIFY(turnUntil([&] { return unit->fineTuning() == 200 && app().guard().isUp(); }));
    QTest::qWait(50);
    QCOMPARE(unit->fineTuning(), 200);
    QCOMPARE(slider->value(), 200);
    QCOMPARE(box(mainName, "txtPelltrim")->text(), QStringLiteral("200"));
    QVERIFY2(sent(line).size() < 60, qPrintable(QString::number(sent(line).size())));
    seesConnected(5);
}

void TestStorms::tenMegabytesWithoutAnEnd_data()
{
    QTest::addColumn<bool>("shown");
    QTest::addRow("monitor shown") << true;
    QTest::addRow("monitor hidden") << false;
}

void TestStorms::tenMegabytesWithoutAnEnd()
{
    QFETCH(const bool, shown);
    constexpr int pieces = 2560;
    MemoryBench bench;
    search();
    tune(QStringLiteral("145.5"));
    trigger(mainName, "mnuOptionsIOdaemon");
    const auto *monitor = qobject_cast<frmIODaemon *>(window(monitorName));
    trigger(monitorName, "mnuDebugSerialBytesReceived");
    if (!shown)
        window(monitorName)->close();
    bench.change = [&](const QByteArray &command, const QByteArray &reply) {
        bench.line->pours = command.startsWith("*STEP ");
        return bench.line->pours ? QList<QByteArray>(pieces, QByteArray(4096, 'x'))
                                 : QList<QByteArray>{reply};
    };
    bench.fixture.boxes.expect(
        QStringLiteral("The device did not respond correctly to a 'current step' command."));
    {
        const StallMeter stall(shown ? "ten megabytes, monitor shown"
                                     : "ten megabytes, monitor hidden");
        tune(QStringLiteral("130"));
        QVERIFY(bench.line->poured <
                100); // given up early; the most of it comes when nobody waits any more
        QVERIFY(turnUntil([&] { return bench.line->poured == pieces; }));
    }
    const qsizetype kept = app().currentDevice->commPort()->Buffer().size();
    QVERIFY2(kept <= clsCommPort::longestReply, qPrintable(QString::number(kept)));
    QVERIFY(monitor->displayText().size() < 5 * frmIODaemon::longestText);
    QVERIFY(monitor->displayText().contains(QStringLiteral(" bytes: 78 78 78")));
    QCOMPARE(description(mainName, "txtCurrentFreq"), QStringLiteral("unconfirmed"));
    QCOMPARE(box(channelsName, "txtChanFreq_1")->text(), QStringLiteral("145.5"));
    QCOMPARE(light(), QColor(IndicatorLight::red));
    trigger(monitorName, "mnuDebugSerialBytesReceived");
    bench.change = {};
    tune(QStringLiteral("145.5"));
    readAgain();
    seesConnected(5);
    QCOMPARE(frequency(), QStringLiteral("145.5"));
    QCOMPARE(description(mainName, "txtCurrentFreq"), QString());
}

void TestStorms::searchOverBlockingBabblingAndDeadPorts()
{
    FaultBench bench;
    StuckUnit blocking;
    blocking.stick();
    bench.fixture.plug(2, blocking.terminal.device());
    bench.plug(3).setFault(sim::Fault::Endless);
    bench.fixture.plug(4, QStringLiteral("/dev/no-such-device"));
    bench.fixture.plug(6, QStringLiteral("/dev/null"));
    bench.plug(9);
    TestHooks::shortenTimers(300);
    {
        const StallMeter stall("search over bad ports");
        search(); // and no box follows: a unit was found
    }
    seesConnected(9);
    QCOMPARE(int(app().foundUnits), 1);
    QCOMPARE(frequency(), QStringLiteral("100"));
    QCOMPARE(sent(bench.line(3)), QStringList{QStringLiteral("*ID?")});
    // Without it, what could not be opened is told; what did not answer is no fault.
    bench.fixture.unplug(9);
    bench.boxes().expectStart(QStringLiteral("Check data and power connections"));
    search();
    seesNotConnected();
    const QString told = bench.boxes().shown().first().informative;
    for (const char *named : {"COM4: /dev/no-such-device is not there.", "COM6: "})
        QVERIFY2(told.contains(QLatin1String(named)), qPrintable(told));
    for (const char *silent : {"COM2: ", "COM3: "})
        QVERIFY2(!told.contains(QLatin1String(silent)), qPrintable(told));
}

KELDOX_TEST(TestStorms)
#include "TestStorms.moc"
