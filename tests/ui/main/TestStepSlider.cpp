// Tuning with the step slider by mouse and keyboard, and what may happen while the unit works.
#include "MainBench.h"

class TestStepSlider : public QObject
{
    Q_OBJECT

private slots:
    void draggingSendsNothingAndReleasingSendsOnce();
    void aDragThatEndsWhereItBeganShowsTheUnitsFrequencyAgain();
    void theHeldThumbIsNotMovedByAnAnswer();
    void arrowAndPageKeysMoveByStepsAndPages();
    void aClickInTheGroovePages();
    void theSliderIsDisabledWhileTheUnitWorksAndKeepsTheFocus();
    void aRefusedSliderMoveGoesBack();
    void aSliderMoveBehindALoweredFlagOrGuardSendsNothing();
    void aStepBeyondTheMaximumPutsSliderAndBoxBack();
    void theWheelTunesOnlyWithTheFocus();
    void windowClosedDuringAWait();
    void unitReplacedDuringAWait();
    void unitUnpluggedDuringAWait();
};

void TestStepSlider::draggingSendsNothingAndReleasingSendsOnce()
{
    ConnectedBench bench;
    StepSlider *slider = bench.slider();
    const QPoint thumb = thumbOf(*slider);
    QTest::mousePress(slider, Qt::LeftButton, {}, thumb);
    int last = 0;
    for (int i = 1; i <= 5; ++i) {
        dragTo(*slider, thumb + QPoint(20 * i, 0));
        QVERIFY(slider->sliderPosition() > last);
        last = slider->sliderPosition();
        QCOMPARE(slider->value(), 0);
        QCOMPARE(bench.frequency()->text(), QString::number(100 + last * 0.025, 'g', 15));
    }
    QVERIFY(bench.line.commands().empty());
    QTest::mouseRelease(slider, Qt::LeftButton, {}, thumb + QPoint(100, 0));
    QCOMPARE(bench.sent(), QStringList{QStringLiteral("*STEP %1").arg(last)});
    QCOMPARE(bench.simulated->step(), last);
    QCOMPARE(slider->value(), last);
}

void TestStepSlider::aDragThatEndsWhereItBeganShowsTheUnitsFrequencyAgain()
{
    ConnectedBench bench;
    StepSlider *slider = bench.slider();
    const QPoint thumb = thumbOf(*slider);
    QTest::mousePress(slider, Qt::LeftButton, {}, thumb);
    dragTo(*slider, thumb + QPoint(60, 0));
    bench.frequency()->setText(QStringLiteral("typed meanwhile"));
    slider->setSliderPosition(0);
    bench.frequency()->setText(QStringLiteral("not the unit's"));
    QTest::mouseRelease(slider, Qt::LeftButton, {}, thumb);
    QCOMPARE(bench.sent(), QStringList());
    QCOMPARE(bench.frequency()->text(), QStringLiteral("100"));
}

void TestStepSlider::theHeldThumbIsNotMovedByAnAnswer()
{
    ConnectedBench bench;
    StepSlider *slider = bench.slider();
    const QPoint thumb = thumbOf(*slider);
    QTest::mousePress(slider, Qt::LeftButton, {}, thumb);
    dragTo(*slider, thumb + QPoint(60, 0));
    const int held = slider->sliderPosition();
    QVERIFY(held > 0);
    emit bench.unit->FreqChange(300, 107.5);
    QCOMPARE(slider->sliderPosition(), held);
    QTest::mouseRelease(slider, Qt::LeftButton, {}, thumb + QPoint(60, 0));
    QCOMPARE(bench.sent(), QStringList{QStringLiteral("*STEP %1").arg(held)});
}

void TestStepSlider::arrowAndPageKeysMoveByStepsAndPages()
{
    ConnectedBench bench;
    const auto press = [&](Qt::Key key) {
        QTest::keyClick(bench.slider(), key);
        return bench.sent().join(QLatin1Char('|'));
    };
    bench.slider()->setFocus();
    QCOMPARE(press(Qt::Key_Right), QStringLiteral("*STEP 1"));
    QCOMPARE(press(Qt::Key_Up), QStringLiteral("*STEP 2"));
    QCOMPARE(press(Qt::Key_PageUp), QStringLiteral("*STEP 102")); // 2.5 MHz
    QCOMPARE(press(Qt::Key_Left), QStringLiteral("*STEP 101"));
    QCOMPARE(press(Qt::Key_Down), QStringLiteral("*STEP 100"));
    QCOMPARE(press(Qt::Key_PageDown), QStringLiteral("*STEP 0"));
    QCOMPARE(press(Qt::Key_Left), QString());
    QCOMPARE(press(Qt::Key_End), QStringLiteral("*STEP 400"));
    QCOMPARE(bench.frequency()->text(), QStringLiteral("110"));
}

void TestStepSlider::aClickInTheGroovePages()
{
    ConnectedBench bench;
    StepSlider *slider = bench.slider();
    const QPoint groove = thumbOf(*slider, QStyle::SC_ScrollBarAddPage);
    QTest::mouseClick(slider, Qt::LeftButton, {}, groove);
    QCOMPARE(bench.sent(), QStringList{QStringLiteral("*STEP 100")});
}

void TestStepSlider::theSliderIsDisabledWhileTheUnitWorksAndKeepsTheFocus()
{
    ConnectedBench bench;
    bench.slider()->setFocus();
    bool tried = false;
    bench.whileWaiting([&] {
        QVERIFY(!bench.slider()->isEnabled());
        QVERIFY(!app().guard().isUp());
        // A held arrow key reaches nobody else.
        QVERIFY(!bench.window->focusWidget());
        QTest::keyClick(bench.window.get(), Qt::Key_Right);
        tried = true;
    });
    QTest::keyClick(bench.slider(), Qt::Key_Right);
    QVERIFY(tried);
    QVERIFY(bench.slider()->isEnabled());
    QVERIFY(bench.slider()->hasFocus());
    QVERIFY(app().guard().isUp());
    QCOMPARE(bench.sent(), QStringList{QStringLiteral("*STEP 1")});
}

void TestStepSlider::aRefusedSliderMoveGoesBack()
{
    ConnectedBench bench;
    bench.reply("*STEP 1", "garbage");
    bench.boxes().expectStart(QStringLiteral("The device did not respond correctly"));
    QTest::keyClick(bench.slider(), Qt::Key_Right);
    QCOMPARE(bench.slider()->value(), 0);
    QCOMPARE(bench.slider()->sliderPosition(), 0);
    QCOMPARE(bench.frequency()->text(), QStringLiteral("100"));
    QCOMPARE(bench.sent(), QStringList{QStringLiteral("*STEP 1")}); // going back is not sent
}

void TestStepSlider::aSliderMoveBehindALoweredFlagOrGuardSendsNothing()
{
    ConnectedBench bench;
    // The window moves the slider itself: nothing goes back to the unit.
    emit bench.unit->FreqChange(123, 103.075);
    QCOMPARE(bench.slider()->value(), 123);
    QCOMPARE(bench.sent(), QStringList());
    bench.slider()->setEnabled(false);
    bench.slider()->setValue(50);
    QCOMPARE(bench.sent(), QStringList());
}

void TestStepSlider::aStepBeyondTheMaximumPutsSliderAndBoxBack()
{
    sim::UnitSettings settings = smallUnit();
    settings.maxStep = 32003; // 8000.75 slider units, rounded to 8001: step 32004
    settings.step = 20000;
    ConnectedBench bench(settings);
    QCOMPARE(bench.slider()->maximum(), 8001);
    QTest::keyClick(bench.slider(), Qt::Key_End);
    QCOMPARE(bench.sent(), QStringList());
    QCOMPARE(bench.slider()->value(), 5000);
    QCOMPARE(bench.frequency()->text(), QStringLiteral("600"));
    QVERIFY(bench.slider()->isEnabled());
}

void TestStepSlider::theWheelTunesOnlyWithTheFocus()
{
    ConnectedBench bench;
    StepSlider *slider = bench.slider();
    const auto turn = [&] {
        const QPointF at = slider->rect().center();
        QWheelEvent wheel(at, slider->mapToGlobal(at), {}, QPoint(0, 120), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(slider, &wheel);
        return bench.sent().size();
    };
    slider->setValue(200);
    bench.sent();
    bench.frequency()->setFocus();
    QCOMPARE(turn(), 0);
    slider->setFocus();
    QCOMPARE(turn(), 1);
}

void TestStepSlider::windowClosedDuringAWait()
{
    ConnectedBench bench;
    bench.reply("*STEP 200", std::nullopt);
    QElapsedTimer time;
    bench.whileWaiting([&] {
        time.start();
        bench.window->close();
    });
    bench.boxes().acceptAll();
    bench.enter(QStringLiteral("105"));
    QVERIFY(time.isValid());
    QVERIFY(time.elapsed() < 200);
    QVERIFY(EventQueue::ending());
    QVERIFY(bench.boxes().shown().isEmpty());
}

void TestStepSlider::unitReplacedDuringAWait()
{
    ConnectedBench bench;
    const auto other = std::make_shared<clsKeldoX>();
    bench.whileWaiting([&] { bench.window->setDevice(other); });
    bench.enter(QStringLiteral("105"));
    QCOMPARE(bench.window->device(), other);
    // The old unit's answer is no longer shown as the new one's frequency.
    QCOMPARE(bench.slider()->value(), 0);
    QCOMPARE(bench.sent(), QStringList{QStringLiteral("*STEP 200")});
    QVERIFY(app().guard().isUp());
}

void TestStepSlider::unitUnpluggedDuringAWait()
{
    ConnectedBench bench;
    bench.reply("*STEP 1", std::nullopt);
    bench.boxes().acceptAll();
    bench.slider()->setFocus();
    QTimer::singleShot(100, bench.window.get(), [&] { bench.line.unplug(); });
    QTest::keyClick(bench.slider(), Qt::Key_Right);
    QCOMPARE(bench.panel(1), QStringLiteral("NOT CONNECTED"));
    QCOMPARE(bench.light(), IndicatorLight::red);
    QVERIFY(!bench.slider()->isEnabled());
    QVERIFY(!bench.frequency()->isEnabled());
    QCOMPARE(bench.frequency()->text(), QString());
    QVERIFY(!bench.find<QWidget>("FramePelltrim")->isEnabled());
    QVERIFY(!bench.find<QWidget>("FrameInputLimiting")->isEnabled());
    QVERIFY(app().guard().isUp());
    QVERIFY(bench.boxes().shown().size() <= 1);
}

KELDOX_TEST(TestStepSlider)
#include "TestStepSlider.moc"
