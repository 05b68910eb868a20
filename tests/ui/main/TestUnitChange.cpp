// The main window when another unit becomes current, and its frequency events.
#include "MainBench.h"

class TestUnitChange : public QObject
{
    Q_OBJECT

private slots:
    void aUnitChangeRebuildsTheDisplays();
    void sliderScaleFollowsTheMaximumStep_data();
    void sliderScaleFollowsTheMaximumStep();
    void aPageIsTwoAndAHalfMegahertzInStepsAndNotDivided_data();
    void aPageIsTwoAndAHalfMegahertzInStepsAndNotDivided();
    void spacingAndBandwidthAreShownInKilohertz_data();
    void spacingAndBandwidthAreShownInKilohertz();
    void withoutASelectedChannelTheActiveChannelIsZero();
    void aSmallerUnitDoesNotSendThePlaceThatItsSliderLost();
    void frequencyEventsMoveSliderAndBox();
    void withScaleFourThePlaceIsRoundedHalfToEven();
    void aStepBeyondTheSlidersEndLeavesTheSlider();
    void aUnitReplacedWhileItIsShownIsNotShownFurther();
};

void TestUnitChange::aUnitChangeRebuildsTheDisplays()
{
    sim::UnitSettings settings = smallUnit();
    settings.step = 260;
    settings.bandwidthHz = 15000;
    ConnectedBench bench(settings);
    QCOMPARE(bench.slider()->minimum(), 0);
    QCOMPARE(bench.slider()->maximum(), 400);
    QCOMPARE(bench.slider()->value(), 260);
    QCOMPARE(bench.frequency()->text(), QStringLiteral("106.5"));
    QCOMPARE(bench.caption("lblChannelSpacing"), QStringLiteral(" 25 kHz frequency spacing"));
    QCOMPARE(bench.caption("lblbandwidth"), QStringLiteral(" 15 kHz channel bandwidth"));
    QCOMPARE(bench.find<QLineEdit>("txtFreq_1")->text(), QStringLiteral("100 MHz"));
    QCOMPARE(bench.find<QLineEdit>("txtFreq_2")->text(), QStringLiteral("105 MHz"));
    QCOMPARE(bench.find<QLineEdit>("txtFreq_3")->text(), QStringLiteral("110 MHz"));
    QCOMPARE(app().presets[3]->value(), 110.0);
    QCOMPARE(bench.caption("lblCurrentChannel"), QStringLiteral("Active Channel 2"));
    QVERIFY(bench.find<QRadioButton>("optInputLimit_1")->isChecked());
    QVERIFY(bench.frequency()->isEnabled());
    QVERIFY(bench.slider()->isEnabled());
    QVERIFY(bench.find<QWidget>("FramePelltrim")->isEnabled());
}

void TestUnitChange::sliderScaleFollowsTheMaximumStep_data()
{
    QTest::addColumn<int>("maxStep");
    QTest::addColumn<int>("scale");
    QTest::addColumn<int>("maximum");
    QTest::addRow("32000") << 32000 << 1 << 32000;
    QTest::addRow("32001") << 32001 << 4 << 8000;
    QTest::addRow("32002 rounds to even") << 32002 << 4 << 8000;
    QTest::addRow("32003") << 32003 << 4 << 8001;
    QTest::addRow("32006 rounds to even") << 32006 << 4 << 8002;
}

void TestUnitChange::sliderScaleFollowsTheMaximumStep()
{
    QFETCH(const int, maxStep);
    sim::UnitSettings settings = smallUnit();
    settings.maxStep = maxStep;
    const ConnectedBench bench(settings);
    QTEST(static_cast<int>(app().sliderScale), "scale");
    QTEST(bench.slider()->maximum(), "maximum");
}

void TestUnitChange::aPageIsTwoAndAHalfMegahertzInStepsAndNotDivided_data()
{
    QTest::addColumn<int>("maxStep");
    QTest::addColumn<int>("page");
    QTest::addRow("inside") << 400 << 100;
    QTest::addRow("scale 4") << 40000 << 100;
    QTest::addRow("one below the maximum") << 101 << 100;
    QTest::addRow("at the maximum: as it was") << 100 << 10;
    QTest::addRow("beyond the maximum: as it was") << 50 << 10;
}

void TestUnitChange::aPageIsTwoAndAHalfMegahertzInStepsAndNotDivided()
{
    QFETCH(const int, maxStep);
    sim::UnitSettings settings = smallUnit();
    settings.maxStep = maxStep;
    const ConnectedBench bench(settings);
    QTEST(bench.slider()->pageStep(), "page");
}

void TestUnitChange::spacingAndBandwidthAreShownInKilohertz_data()
{
    QTest::addColumn<int>("spacing");
    QTest::addColumn<int>("bandwidth");
    QTest::addColumn<QString>("spacingText");
    QTest::addColumn<QString>("bandwidthText");
    QTest::addRow("fractions") << 12500 << 7500 << QStringLiteral(" 12.5 kHz frequency spacing")
                               << QStringLiteral(" 7.5 kHz channel bandwidth");
    QTest::addRow("below one") << 500 << 250 << QStringLiteral(" 0.5 kHz frequency spacing")
                               << QStringLiteral(" 0.25 kHz channel bandwidth");
    QTest::addRow("no bandwidth") << 25000 << 0 << QStringLiteral(" 25 kHz frequency spacing")
                                  << QString();
    QTest::addRow("one hertz") << 1 << 1 << QStringLiteral(" 0.001 kHz frequency spacing")
                               << QStringLiteral(" 0.001 kHz channel bandwidth");
    QTest::addRow("no spacing") << 0 << 25000 << QStringLiteral(" 0 kHz frequency spacing")
                                << QStringLiteral(" 25 kHz channel bandwidth");
}

void TestUnitChange::spacingAndBandwidthAreShownInKilohertz()
{
    QFETCH(const int, spacing);
    QFETCH(const int, bandwidth);
    sim::UnitSettings settings = smallUnit();
    settings.channelSpacingHz = spacing;
    settings.bandwidthHz = bandwidth;
    const ConnectedBench bench(settings);
    QTEST(bench.caption("lblChannelSpacing"), "spacingText");
    QTEST(bench.caption("lblbandwidth"), "bandwidthText");
}

void TestUnitChange::withoutASelectedChannelTheActiveChannelIsZero()
{
    ConnectedBench bench;
    bench.channels->selected = 0;
    emit bench.unit->DUTChange();
    QCOMPARE(bench.caption("lblCurrentChannel"), QStringLiteral("Active Channel 0"));
}

void TestUnitChange::aSmallerUnitDoesNotSendThePlaceThatItsSliderLost()
{
    ConnectedBench bench;
    bench.slider()->setValue(400);
    QCOMPARE(bench.sent(), QStringList{QStringLiteral("*STEP 400")});

    sim::SimulatedLine smallLine;
    sim::UnitSettings settings = smallUnit();
    settings.maxStep = 50;
    smallLine.addUnit(std::make_shared<sim::SimulatedUnit>(settings));
    bench.fixture.plug(6, smallLine.device());
    const auto other = std::make_shared<clsKeldoX>();
    other->setConnection(clsKeldoX::SerialPort);
    other->commPort()->setPortNumber(6);
    bench.window->setDevice(other);
    QVERIFY(other->Initialize()); // with the guard up: only the slider's own flag protects it
    QCOMPARE(bench.slider()->maximum(), 50);
    for (const std::string &command : smallLine.commands())
        QVERIFY2(!QString::fromStdString(command).startsWith(QStringLiteral("*STEP ")),
                 command.c_str());
    other->commPort()->ClosePort();
}

void TestUnitChange::frequencyEventsMoveSliderAndBox()
{
    ConnectedBench bench;
    emit bench.unit->FreqChange(123, 103.075);
    QCOMPARE(bench.slider()->value(), 123);
    QCOMPARE(bench.frequency()->text(), QStringLiteral("103.075"));
    emit bench.unit->FreqChange(400, 110);
    QCOMPARE(bench.slider()->value(), 400);
    QCOMPARE(bench.frequency()->text(), QStringLiteral("110"));
    QCOMPARE(bench.sent(), QStringList());
}

void TestUnitChange::withScaleFourThePlaceIsRoundedHalfToEven()
{
    sim::UnitSettings settings = smallUnit();
    settings.maxStep = 40000;
    ConnectedBench bench(settings);
    emit bench.unit->FreqChange(10, 100.25);
    QCOMPARE(bench.slider()->value(), 2);
    QTest::keyClick(bench.slider(), Qt::Key_Right);
    QTest::keyClick(bench.slider(), Qt::Key_Left);
    QCOMPARE(bench.sent(), QStringList({QStringLiteral("*STEP 12"), QStringLiteral("*STEP 8")}));
    emit bench.unit->FreqChange(14, 100.35);
    QCOMPARE(bench.slider()->value(), 4); // 3.5
}

void TestUnitChange::aStepBeyondTheSlidersEndLeavesTheSlider()
{
    ConnectedBench bench;
    emit bench.unit->FreqChange(100, 102.5);
    emit bench.unit->FreqChange(401, 110.025);
    QCOMPARE(bench.slider()->value(), 100);
    QCOMPARE(bench.frequency()->text(), QStringLiteral("110.025"));
}

void TestUnitChange::aUnitReplacedWhileItIsShownIsNotShownFurther()
{
    ConnectedBench bench;
    const auto other = std::make_shared<clsKeldoX>();
    bench.window->setCurrentChannelCaption(QStringLiteral("the other"));
    bench.find<QLabel>("lblChannelSpacing")->clear();
    bench.whileWaiting([&] { bench.window->setDevice(other); });
    emit bench.unit->DUTChange(); // waits for the spacing
    QCOMPARE(bench.caption("lblCurrentChannel"), QStringLiteral("the other"));
    QCOMPARE(bench.caption("lblChannelSpacing"), QString());
}

KELDOX_TEST(TestUnitChange)
#include "TestUnitChange.moc"
