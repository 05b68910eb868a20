// The fine-tuning controls at a unit change, the calibrated mode, and the text box.
#include "BinderFixture.h"

class TestPelltrimBinder : public QObject
{
    Q_OBJECT

private slots:
    void aUnitChangeShowsTheSetting();
    void aUnitChangeInCalibratedModeShowsTheCalibration();
    void aUnitWithoutTheOptionDisablesTheFrameAndIsNeverAsked();
    void disablingBlanksTheBoxAndDisablesTheFrame();
    void tickingCalibratedFollowsTheFirmware_data();
    void tickingCalibratedFollowsTheFirmware();
    void clearingCalibratedReadsTheSettingBack();
    void clearingAnEmulatedModeWritesTheRememberedSetting();
    void aRefusedModeUnticksTheBox();
    void theCheckBoxRespectsTheGuard();
    void enterAndDoubleClickSendTheText();
    void typedTextIsRoundedAndNotClamped_data();
    void typedTextIsRoundedAndNotClamped();
    void textThatIsNoNumberSendsNothing();
    void anEnterFromElsewhereSendsNothing();
    void aNumberBeyondSixteenBitsIsReported();
};

void TestPelltrimBinder::aUnitChangeShowsTheSetting()
{
    const BinderFixture bench(calibratedUnit());
    QVERIFY(bench.isEnabled(true, true, true));
    QVERIFY(!bench.panel.check->isChecked());
    QCOMPARE(bench.panel.box->text(), QStringLiteral("40"));
    QCOMPARE(bench.panel.bar->value(), 40);
    QCOMPARE(bench.panel.bar->minimum(), 0);
    QCOMPARE(bench.panel.bar->maximum(), 255);
}

void TestPelltrimBinder::aUnitChangeInCalibratedModeShowsTheCalibration()
{
    sim::UnitSettings settings = calibratedUnit();
    settings.calibratedMode = true;
    const BinderFixture bench(settings);
    QVERIFY(bench.isEnabled(true, false, true));
    QVERIFY(bench.panel.check->isChecked());
    QCOMPARE(bench.panel.box->text(), QStringLiteral("90"));
    QCOMPARE(bench.panel.bar->value(), 90);
}

void TestPelltrimBinder::aUnitWithoutTheOptionDisablesTheFrameAndIsNeverAsked()
{
    sim::UnitSettings settings = calibratedUnit();
    settings.optionC = 0;
    BinderFixture bench(settings);
    QVERIFY(bench.isEnabled(false, false, false));
    QCOMPARE(bench.panel.box->text(), QString());
    bench.unit->Initialize();
    for (const QString &command : bench.sent())
        QVERIFY2(!command.contains(QStringLiteral("ZN")), qPrintable(command));
}

void TestPelltrimBinder::disablingBlanksTheBoxAndDisablesTheFrame()
{
    BinderFixture bench(calibratedUnit());
    bench.binder.DisableControls();
    QVERIFY(bench.isEnabled(false, false, false));
    QCOMPARE(bench.panel.box->text(), QString());
    QCOMPARE(bench.sent(), QStringList());
}

void TestPelltrimBinder::tickingCalibratedFollowsTheFirmware_data()
{
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<QString>("commands");
    QTest::addColumn<bool>("ticked");
    QTest::addColumn<QString>("text");
    QTest::addRow("2.2") << "2.20"
                         << "" << false << "40";
    QTest::addRow("2.25") << "2.25"
                          << "*ZNSE 90" << true << "90";
    QTest::addRow("2.27") << "2.27"
                          << "*ZNSE 90" << true << "90";
    QTest::addRow("3.0") << "3.00"
                         << "*ZNCM 1" << true << "90";
}

void TestPelltrimBinder::tickingCalibratedFollowsTheFirmware()
{
    QFETCH(const QString, firmware);
    QFETCH(const QString, commands);
    QFETCH(const bool, ticked);
    QFETCH(const QString, text);
    BinderFixture bench(calibratedUnit(firmware.toStdString()));
    bench.clickCheck();
    QCOMPARE(bench.sent().join(QLatin1Char('|')), commands);
    QCOMPARE(bench.panel.check->isChecked(), ticked);
    QVERIFY(bench.isEnabled(true, !ticked, true));
    QCOMPARE(bench.panel.box->text(), text);
    QCOMPARE(bench.panel.bar->value(), text.toInt());
    QVERIFY(app().guard().isUp());
}

void TestPelltrimBinder::clearingCalibratedReadsTheSettingBack()
{
    sim::UnitSettings settings = calibratedUnit();
    settings.calibratedMode = true;
    BinderFixture bench(settings);
    bench.clickCheck();
    QCOMPARE(bench.sent(), QStringList({QStringLiteral("*ZNCM 0"), QStringLiteral("*ZNSE?")}));
    QVERIFY(bench.isEnabled(true, true, true));
    QCOMPARE(bench.panel.box->text(), QStringLiteral("40"));
    QCOMPARE(bench.panel.bar->value(), 40);
}

void TestPelltrimBinder::clearingAnEmulatedModeWritesTheRememberedSetting()
{
    BinderFixture bench(calibratedUnit("2.25"));
    bench.clickCheck();
    bench.sent();
    bench.clickCheck();
    QCOMPARE(bench.sent(), QStringList({QStringLiteral("*ZNSE 40"), QStringLiteral("*ZNSE?")}));
    QCOMPARE(bench.panel.box->text(), QStringLiteral("40"));
    QVERIFY(bench.isEnabled(true, true, true));
}

void TestPelltrimBinder::aRefusedModeUnticksTheBox()
{
    BinderFixture bench(calibratedUnit());
    bench.reply("*ZNCM 1", "PERMISSION DENIED");
    bench.clickCheck();
    QVERIFY(!bench.panel.check->isChecked());
    QVERIFY(bench.isEnabled(true, true, true));
    QCOMPARE(bench.panel.box->text(), QStringLiteral("40"));
}

void TestPelltrimBinder::theCheckBoxRespectsTheGuard()
{
    BinderFixture bench(calibratedUnit());
    app().guard().set(false);
    bench.clickCheck();
    QCOMPARE(bench.sent(), QStringList());
    QVERIFY(!bench.panel.check->isChecked());
    QVERIFY(bench.isEnabled(true, true, true));
    QVERIFY(!app().guard().isUp());
}

void TestPelltrimBinder::enterAndDoubleClickSendTheText()
{
    BinderFixture bench(calibratedUnit());
    bench.enter(QStringLiteral("55"));
    QCOMPARE(bench.sent(), QStringList{QStringLiteral("*ZNSE 55")});
    QCOMPARE(bench.panel.bar->value(), 55);
    QCOMPARE(bench.simulated->fineTuning(), 55);
    bench.panel.box->setText(QStringLiteral("0"));
    QTest::mouseDClick(bench.panel.box, Qt::LeftButton);
    QCOMPARE(bench.sent(), QStringList{QStringLiteral("*ZNSE 0")});
    QTest::keyClick(bench.panel.box, Qt::Key_Enter); // the keypad's
    QCOMPARE(bench.sent(), QStringList{QStringLiteral("*ZNSE 0")});
    QVERIFY(app().guard().isUp());
}

void TestPelltrimBinder::typedTextIsRoundedAndNotClamped_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("command");
    QTest::addRow("half to even below") << "40.5"
                                        << "*ZNSE 40";
    QTest::addRow("half to even above") << "41.5"
                                        << "*ZNSE 42";
    QTest::addRow("300") << "300"
                         << "*ZNSE 300";
    QTest::addRow("negative") << "-1"
                              << "*ZNSE -1";
}

void TestPelltrimBinder::typedTextIsRoundedAndNotClamped()
{
    QFETCH(const QString, text);
    QFETCH(const QString, command);
    BinderFixture bench(calibratedUnit());
    bench.boxes().acceptAll(); // the unit may refuse it
    bench.enter(text);
    QCOMPARE(bench.sent(), QStringList{command});
}

void TestPelltrimBinder::textThatIsNoNumberSendsNothing()
{
    BinderFixture bench(calibratedUnit());
    for (const char *text : {"", "forty", "40 clicks", "4,0"}) {
        bench.enter(QString::fromLatin1(text));
        QTest::mouseDClick(bench.panel.box, Qt::LeftButton);
        QCOMPARE(bench.sent(), QStringList());
    }
    bench.panel.box->setText(QStringLiteral("44"));
    QTest::keyClick(bench.panel.box, Qt::Key_Tab);
    QCOMPARE(bench.sent(), QStringList());
}

void TestPelltrimBinder::anEnterFromElsewhereSendsNothing()
{
    BinderFixture bench(calibratedUnit());
    QTest::keyRelease(bench.panel.box, Qt::Key_Return);
    QCOMPARE(bench.sent(), QStringList());
}

void TestPelltrimBinder::aNumberBeyondSixteenBitsIsReported()
{
    BinderFixture bench(calibratedUnit());
    bench.boxes().acceptAll();
    bench.enter(QStringLiteral("40000"));
    QCOMPARE(bench.boxes().shown().size(), 1);
    QVERIFY(
        bench.log->lines().join(QLatin1Char('\n')).contains(QStringLiteral("clsZN.mtxtZN_KeyUp")));
    QCOMPARE(bench.sent(), QStringList());
    QVERIFY(app().guard().isUp());
}

KELDOX_TEST(TestPelltrimBinder)
#include "TestPelltrimBinder.moc"
