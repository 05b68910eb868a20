// The preset buttons of the main window: setting them and tuning with them.
#include "PresetBench.h"

class TestPresetButtons : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void storedPresetsShowAtStart();
    void aFreshInstallationTellsHowToSetAPreset();
    void setPresetsEntersAndLeavesSetMode();
    void setPresetsDoesNothingWhileTheGuardIsDown();
    void setModeStoresTheShownFrequency();
    void setModeStoresAFrequencyWithItsUnit();
    void setModeWithoutANumberReportsOnceAndKeepsTheValue();
    void aPresetTunesTheUnit();
    void aPresetOutsideTheRangeIsRefused();
    void aPresetWhileTheGuardIsDownSendsNothing();
    void withoutAUnitAPresetSaysSoAndSendsNothing();
    void thePresetsSayTheirFrequencyAndWhatAClickDoes();
    void enablePresetsEnablesSetAndUnset();
};

static const QString notSetInWindow =
    QStringLiteral("That preset button has not been set.\r\nTo set a preset button to the "
                   "current frequency, click 'set presets' then click the preset button, then "
                   "click 'set presets' again.");

void TestPresetButtons::init()
{
    for (int index = 4; index <= 7; ++index)
        store(index, QString());
}

void TestPresetButtons::storedPresetsShowAtStart()
{
    store(4, QStringLiteral(" 145.5"));
    store(7, QStringLiteral("101"));
    const MainBench bench;
    QCOMPARE(bench.find<QPushButton>("cmdSetDUTFreq_4")->text(), QStringLiteral(" 145.5"));
    QCOMPARE(bench.find<QPushButton>("cmdSetDUTFreq_5")->text(), QString());
    QCOMPARE(bench.find<QPushButton>("cmdSetDUTFreq_7")->text(), QStringLiteral(" 101"));
}

void TestPresetButtons::aFreshInstallationTellsHowToSetAPreset()
{
    MainBench bench;
    bench.show();
    for (const char *name :
         {"cmdSetDUTFreq_4", "cmdSetDUTFreq_5", "cmdSetDUTFreq_6", "cmdSetDUTFreq_7"}) {
        auto *button = bench.find<QPushButton>(name);
        QCOMPARE(button->text(), QString());
        bench.boxes().expect(notSetInWindow, MessageBox::Information);
        QTest::mouseClick(button, Qt::LeftButton);
        QVERIFY(bench.boxes().allShown());
        QVERIFY(app().guard().isUp());
    }
}

void TestPresetButtons::setPresetsEntersAndLeavesSetMode()
{
    MainBench bench;
    bench.show();
    auto *setPresets = bench.find<QPushButton>("cmdSetPresets");
    for (const bool entered : {true, false, true}) {
        app().presets[5]->setEnabled(false);
        QTest::mouseClick(setPresets, Qt::LeftButton);
        QCOMPARE(isLightGreen(*setPresets), entered);
        for (int i = 4; i <= 7; ++i) {
            QCOMPARE(app().presets[i]->SetMode(), entered);
            QVERIFY(app().presets[i]->Enabled());
            QCOMPARE(isLightGreen(*app().presets[i]->Button()), entered);
        }
        QVERIFY(app().guard().isUp());
    }
}

void TestPresetButtons::setPresetsDoesNothingWhileTheGuardIsDown()
{
    MainBench bench;
    bench.show();
    app().guard().set(false);
    QTest::mouseClick(bench.find<QPushButton>("cmdSetPresets"), Qt::LeftButton);
    QVERIFY(!app().presets[4]->SetMode());
    QVERIFY(!isLightGreen(*bench.find<QPushButton>("cmdSetPresets")));
}

void TestPresetButtons::setModeStoresTheShownFrequency()
{
    ConnectedBench bench;
    bench.enter(QStringLiteral("106.5"));
    bench.sent();
    QTest::mouseClick(bench.find<QPushButton>("cmdSetPresets"), Qt::LeftButton);
    QTest::mouseClick(bench.find<QPushButton>("cmdSetDUTFreq_6"), Qt::LeftButton);
    QCOMPARE(app().presets[6]->value(), 106.5);
    QCOMPARE(bench.find<QPushButton>("cmdSetDUTFreq_6")->text(), QStringLiteral(" 106.5"));
    QCOMPARE(stored(6), QStringLiteral(" 106.5"));
    // It stays in set mode: the next click stores again and nothing is sent.
    QTest::mouseClick(bench.find<QPushButton>("cmdSetDUTFreq_6"), Qt::LeftButton);
    QVERIFY(app().presets[6]->SetMode());
    QCOMPARE(bench.sent(), QStringList());
}

void TestPresetButtons::setModeStoresAFrequencyWithItsUnit()
{
    MainBench bench;
    bench.show();
    bench.frequency()->setText(QStringLiteral("104.25 MHz"));
    bench.find<QPushButton>("cmdSetPresets")->click();
    bench.find<QPushButton>("cmdSetDUTFreq_4")->click();
    QCOMPARE(app().presets[4]->value(), 104.25);
}

void TestPresetButtons::setModeWithoutANumberReportsOnceAndKeepsTheValue()
{
    MainBench bench;
    bench.show();
    app().presets[4]->setValue(101);
    bench.find<QPushButton>("cmdSetPresets")->click();
    bench.boxes().acceptAll();
    bench.find<QPushButton>("cmdSetDUTFreq_4")->click();
    QCOMPARE(bench.boxes().shown().size(), 1);
    QVERIFY(bench.boxes().texts().constFirst().contains(QStringLiteral("no frequency in the box")));
    QCOMPARE(app().presets[4]->value(), 101.0);
    QCOMPARE(stored(4), QString());
    QVERIFY(app().guard().isUp());
    QVERIFY(bench.log->lines()
                .join(QLatin1Char('\n'))
                .contains(QStringLiteral("frmMain.cmdSetDUTFreq_Click")));
}

void TestPresetButtons::aPresetTunesTheUnit()
{
    ConnectedBench bench;
    app().presets[4]->setValue(106.5);
    QTest::mouseClick(bench.find<QPushButton>("cmdSetDUTFreq_4"), Qt::LeftButton);
    QCOMPARE(bench.sent(), QStringList{QStringLiteral("*STEP 260")});
    QCOMPARE(bench.frequency()->text(), QStringLiteral("106.5"));
}

void TestPresetButtons::aPresetOutsideTheRangeIsRefused()
{
    ConnectedBench bench;
    app().presets[4]->setValue(99);
    bench.boxes().expect(QStringLiteral("Cannot set the device to a frequency outside its range."));
    QTest::mouseClick(bench.find<QPushButton>("cmdSetDUTFreq_4"), Qt::LeftButton);
    QCOMPARE(bench.sent(), QStringList());
    QVERIFY(app().guard().isUp());
}

void TestPresetButtons::aPresetWhileTheGuardIsDownSendsNothing()
{
    ConnectedBench bench;
    app().presets[4]->setValue(106.5);
    app().guard().set(false);
    QTest::mouseClick(bench.find<QPushButton>("cmdSetDUTFreq_4"), Qt::LeftButton);
    QTest::mouseClick(bench.find<QPushButton>("cmdSetDUTFreq_5"), Qt::LeftButton);
    QCOMPARE(bench.sent(), QStringList());
    QVERIFY(!app().guard().isUp());
}

void TestPresetButtons::withoutAUnitAPresetSaysSoAndSendsNothing()
{
    ConnectedBench bench;
    bench.window->setStatusPanel(1, QStringLiteral("CONNECTED"));
    app().presets[4]->setValue(106.5);
    bench.unit->commPort()->ClosePort();
    QTest::mouseClick(bench.find<QPushButton>("cmdSetDUTFreq_4"), Qt::LeftButton);
    QCOMPARE(bench.panel(1), QStringLiteral("NOT CONNECTED"));
    QCOMPARE(bench.sent(), QStringList());
    QVERIFY(app().guard().isUp());
}

void TestPresetButtons::thePresetsSayTheirFrequencyAndWhatAClickDoes()
{
    store(4, QStringLiteral(" 106.5"));
    MainBench bench;
    bench.show();
    const auto *set = bench.find<QPushButton>("cmdSetDUTFreq_4");
    const auto *unset = bench.find<QPushButton>("cmdSetDUTFreq_5");
    QCOMPARE(set->toolTip(), QStringLiteral("Preset 1, 106.5 MHz: a click tunes to it (Ctrl+1)"));
    QCOMPARE(unset->toolTip(),
             QStringLiteral("Preset 2, not set: a click tells how to set it (Ctrl+2)"));
    bench.find<QPushButton>("cmdSetPresets")->click();
    QCOMPARE(set->toolTip(), QStringLiteral("Preset 1, 106.5 MHz: a click stores the current "
                                            "frequency in its place (Ctrl+1)"));
    QCOMPARE(unset->toolTip(),
             QStringLiteral("Preset 2, not set: a click stores the current frequency here "
                            "(Ctrl+2)"));
    bench.frequency()->setText(QStringLiteral("104.25"));
    bench.find<QPushButton>("cmdSetDUTFreq_5")->click();
    QVERIFY(unset->toolTip().startsWith(QStringLiteral("Preset 2, 104.25 MHz: a click stores")));
    QCOMPARE(unset->accessibleName(), QStringLiteral("Preset 2: 104.25 MHz"));
    QCOMPARE(unset->accessibleDescription(), unset->toolTip());
}

void TestPresetButtons::enablePresetsEnablesSetAndUnset()
{
    MainBench bench;
    bench.show();
    app().presets[4]->setValue(101);
    for (int i = 4; i <= 7; ++i)
        app().presets[i]->Disable();
    bench.window->EnablePresetsIfTheyreValid();
    for (int i = 4; i <= 7; ++i)
        QVERIFY(app().presets[i]->Enabled());
}

KELDOX_TEST(TestPresetButtons)
#include "TestPresetButtons.moc"
