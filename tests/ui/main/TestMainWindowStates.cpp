// The main window's lights, panels and frames, which of its controls are enabled, and how it
// closes.
#include "MainBench.h"

#include "platform/TestHooks.h"
#include "ui/dialogs/frmPasswordBox.h"

class TestMainWindowStates : public QObject
{
    Q_OBJECT

private slots:
    void statusTurnsTheLightAndKnowsTwoTexts_data();
    void statusTurnsTheLightAndKnowsTwoTexts();
    void inputLimitingModeSelectsItsOptionOrDisablesTheFrame_data();
    void inputLimitingModeSelectsItsOptionOrDisablesTheFrame();
    void enableMostControlsLeavesFramesAndWhatIsInThemAlone();
    void theDelayTimerMarksItselfAndStops();
    void inputAttenuationLightSpeaksTheValue();
    void theRedLightSaysWhetherItWasCancelled();
    void aControlWithoutAUnitSendsNothingAndFailsNothing();
    void resetForSearchEmptiesAndDisables();
    void closingEndsTheProgramAndClosesTheOtherWindows();
    void exitFromTheMenuDoesTheSame();
    void closingLeavesAnOpenMessageBox();
    void closingLeavesAnOpenPasswordBoxAndSendsNothing();
};

void TestMainWindowStates::statusTurnsTheLightAndKnowsTwoTexts_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<bool>("green");
    QTest::addColumn<QString>("text");
    const QString before = QStringLiteral("as before");
    QTest::addRow("good") << 0 << true << before;
    QTest::addRow("one") << 1 << false << before;
    QTest::addRow("bad reply") << 2 << false << before;
    QTest::addRow("unlocked") << 3 << false << QStringLiteral("VCO UNLOCKED");
    QTest::addRow("locked after a step") << 4 << true << QStringLiteral("OK");
    QTest::addRow("refused") << 5 << false << before;
}

void TestMainWindowStates::statusTurnsTheLightAndKnowsTwoTexts()
{
    QFETCH(const int, status);
    QFETCH(const bool, green);
    QFETCH(const QString, text);
    const MainBench bench;
    bench.window->setStatusPanel(2, QStringLiteral("as before"));
    emit bench.window->device()->StatusChange(status);
    QCOMPARE(bench.light(), QColor(green ? Qt::green : Qt::red));
    QCOMPARE(bench.panel(2), text);
    // Colour is never the only sign.
    const auto *light = bench.find<IndicatorLight>("ShapeStatusLight");
    QCOMPARE(light->toolTip().startsWith(QStringLiteral("OK")), green);
    QCOMPARE(light->accessibleDescription(), light->toolTip());
}

void TestMainWindowStates::inputLimitingModeSelectsItsOptionOrDisablesTheFrame_data()
{
    QTest::addColumn<int>("mode");
    for (const int mode : {-1, 0, 1, 2, 3, 4})
        QTest::addRow("%d", mode) << mode;
}

void TestMainWindowStates::inputLimitingModeSelectsItsOptionOrDisablesTheFrame()
{
    QFETCH(const int, mode);
    const MainBench bench;
    emit bench.window->device()->InputLimitingModeChange(mode == 2 ? 3 : 2);
    emit bench.window->device()->InputLimitingModeChange(static_cast<qint16>(mode));
    const bool offered = mode >= 1 && mode <= 3;
    QCOMPARE(bench.find<QWidget>("FrameInputLimiting")->isEnabled(), offered);
    for (int i = 1; i <= 3; ++i) {
        const auto *option =
            bench.find<QRadioButton>(qPrintable(QStringLiteral("optInputLimit_%1").arg(i)));
        QCOMPARE(option->isEnabled(), offered);
        QCOMPARE(option->isChecked(), offered && i == mode);
    }
}

void TestMainWindowStates::enableMostControlsLeavesFramesAndWhatIsInThemAlone()
{
    MainBench bench;
    bench.show();
    const QStringList all{QStringLiteral("txtCurrentFreq"), QStringLiteral("HScroll1"),
                          QStringLiteral("txtFreq_1"),      QStringLiteral("cmdSetDUTFreq_4"),
                          QStringLiteral("cmdSetPresets"),  QStringLiteral("lblPressEnter"),
                          QStringLiteral("lblCurrentFreq"), QStringLiteral("ShapeStatusLight")};
    for (const bool frames : {true, false}) {
        for (const char *frame : {"FramePelltrim", "FrameInputLimiting"})
            bench.find<QWidget>(frame)->setEnabled(frames);
        for (const char *inside :
             {"chkPelltrimCalMode", "txtPelltrim", "HScroll_Pelltrim", "optInputLimit_1"})
            bench.find<QWidget>(inside)->setEnabled(frames);
        for (const bool enabled : {false, true, false}) {
            bench.window->EnableMostControls(enabled);
            for (const QString &name : all)
                QCOMPARE(bench.find<QWidget>(qPrintable(name))->isEnabled(), enabled);
            for (const char *kept : {"FramePelltrim", "FrameInputLimiting", "chkPelltrimCalMode",
                                     "txtPelltrim", "HScroll_Pelltrim", "optInputLimit_1"})
                QCOMPARE(bench.find<QWidget>(kept)->isEnabled(), frames);
            for (const char *never :
                 {"menuBar", "StatusBar", "centralWidget", "paneTuning", "paneEntry"})
                QVERIFY2(bench.find<QWidget>(never)->isEnabled(), never);
        }
    }
}

void TestMainWindowStates::theDelayTimerMarksItselfAndStops()
{
    const MainBench bench;
    auto *timer = bench.find<TimerControl>("tmr1");
    timer->setTag(QStringLiteral("FALSE"));
    timer->setInterval(1);
    timer->setEnabled(true);
    QTRY_COMPARE(timer->tag(), QStringLiteral("TRUE"));
    QVERIFY(!timer->isEnabled());
}

void TestMainWindowStates::inputAttenuationLightSpeaksTheValue()
{
    const MainBench bench;
    const auto *light = bench.find<IndicatorLight>("ShapeOneBitLight");
    emit bench.window->device()->InputAttenChange(3.5);
    QVERIFY(light->fillColor() != IndicatorLight::buttonFace);
    QCOMPARE(light->accessibleDescription(), QStringLiteral("3.5 dB"));
    emit bench.window->device()->InputAttenChange(0);
    QCOMPARE(light->fillColor(), IndicatorLight::buttonFace);
}

void TestMainWindowStates::theRedLightSaysWhetherItWasCancelled()
{
    const MainBench bench;
    const auto *light = bench.find<IndicatorLight>("ShapeStatusLight");
    bench.window->showCommunicationFailure(true);
    QCOMPARE(bench.light(), IndicatorLight::red);
    QCOMPARE(light->toolTip(), QStringLiteral("connecting was cancelled"));
    bench.window->showCommunicationFailure(false);
    QCOMPARE(bench.light(), IndicatorLight::red);
    QCOMPARE(light->toolTip(), QStringLiteral("no unit answers"));
}

void TestMainWindowStates::aControlWithoutAUnitSendsNothingAndFailsNothing()
{
    MainBench bench;
    bench.show();
    bench.window->EnableMostControls(true);
    bench.frequency()->setText(QStringLiteral("146.5"));
    QTest::keyClick(bench.frequency(), Qt::Key_Return);
    QTest::mouseDClick(bench.frequency(), Qt::LeftButton);
    QTest::keyClick(bench.slider(), Qt::Key_Right);
    app().presets[5]->setValue(146);
    QTest::mouseClick(bench.find<QPushButton>("cmdSetDUTFreq_5"), Qt::LeftButton);
    QVERIFY(bench.log->events.isEmpty());
    QVERIFY(app().guard().isUp());
}

void TestMainWindowStates::resetForSearchEmptiesAndDisables()
{
    ConnectedBench bench;
    QVERIFY(!bench.frequency()->text().isEmpty());
    bench.window->setStatusPanel(2, QStringLiteral("OK"));
    app().presets[4]->setValue(101);
    emit bench.unit->InputAttenChange(2);
    bench.window->resetForSearch();
    for (const char *name :
         {"txtCurrentFreq", "txtFreq_1", "txtFreq_2", "txtFreq_3", "txtPelltrim"})
        QCOMPARE(bench.find<QLineEdit>(name)->text(), QString());
    for (const char *name :
         {"txtCurrentFreq", "HScroll1", "cmdSetDUTFreq_4", "cmdSetPresets", "FramePelltrim",
          "chkPelltrimCalMode", "HScroll_Pelltrim", "txtPelltrim", "FrameInputLimiting"})
        QVERIFY2(!bench.find<QWidget>(name)->isEnabled(), name);
    QCOMPARE(bench.find<QPushButton>("cmdSetDUTFreq_4")->text(), QString());
    QCOMPARE(bench.light(), IndicatorLight::buttonFace);
    QCOMPARE(bench.find<IndicatorLight>("ShapeOneBitLight")->fillColor(),
             IndicatorLight::buttonFace);

    // The unit is still there: all comes back, the preset's stored value included.
    bench.window->bringUpToDate();
    QVERIFY(bench.frequency()->isEnabled());
    QVERIFY(!bench.slider()->isEnabled()); // until the unit has told its place
    bench.unit->currentFreq();
    QCOMPARE(bench.find<QPushButton>("cmdSetDUTFreq_4")->text(), QStringLiteral(" 101"));

    // Without one only what needs none.
    bench.unit->commPort()->ClosePort();
    bench.window->resetForSearch();
    bench.window->bringUpToDate();
    QVERIFY(!bench.frequency()->isEnabled());
    QVERIFY(!bench.slider()->isEnabled());
    QVERIFY(bench.find<QWidget>("cmdSetPresets")->isEnabled());
    QVERIFY(bench.find<QWidget>("cmdSetDUTFreq_7")->isEnabled());
}

void TestMainWindowStates::closingEndsTheProgramAndClosesTheOtherWindows()
{
    MainBench bench;
    bench.show();
    QWidget other;
    QWidget another;
    other.show();
    another.show();
    QEventLoop loop;
    bool waited = false;
    QTimer::singleShot(5000, &loop, [&] {
        waited = true;
        loop.quit();
    });
    QTimer::singleShot(0, bench.window.get(), [&] { bench.window->close(); });
    loop.exec();
    QVERIFY(!waited); // the end of the program has left the loop
    QVERIFY(EventQueue::ending());
    QVERIFY(!bench.window->isVisible());
    QVERIFY(!other.isVisible());
    QVERIFY(!another.isVisible());
}

void TestMainWindowStates::exitFromTheMenuDoesTheSame()
{
    MainBench bench;
    bench.show();
    bench.entry("mnuFileExit")->trigger();
    QVERIFY(EventQueue::ending());
    QVERIFY(!bench.window->isVisible());
}

void TestMainWindowStates::closingLeavesAnOpenMessageBox()
{
    MainBench bench;
    bench.show();
    TestHooks::answerBoxes({}); // the real box
    QElapsedTimer time;
    QTimer::singleShot(50, bench.window.get(), [&] {
        QVERIFY(QApplication::activeModalWidget());
        time.start();
        bench.window->close();
    });
    bench.find<QPushButton>("cmdSetDUTFreq_4")->click(); // tells that it is not set
    QVERIFY(time.isValid());
    QVERIFY(time.elapsed() < 200);
    QVERIFY(EventQueue::ending());
}

void TestMainWindowStates::closingLeavesAnOpenPasswordBoxAndSendsNothing()
{
    ConnectedBench bench;
    bench.reply("InputLimitMode 2", "PERMISSION DENIED");
    QTimer::singleShot(300, bench.window.get(), [&] {
        QVERIFY(QApplication::activeModalWidget());
        bench.window->close();
    });
    QTest::mouseClick(bench.find<QRadioButton>("optInputLimit_2"), Qt::LeftButton);
    QVERIFY(EventQueue::ending());
    TestHooks::takeBackEnding();
    QCOMPARE(bench.sent(), QStringList{QStringLiteral("InputLimitMode 2")});
}

KELDOX_TEST(TestMainWindowStates)
#include "TestMainWindowStates.moc"
