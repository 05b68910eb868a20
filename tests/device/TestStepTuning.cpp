// Tuning: the step query, the step command with every reply that a unit can give to it, and the
// frequency that is turned into a step.
#include "device/UnitFixture.h"

class TestStepTuning : public QObject
{
    Q_OBJECT

private slots:
    void readingTheStep_data();
    void readingTheStep();
    void stepReplies_data();
    void stepReplies();
    void whatARefusalTellsIsTheOldStep();
    void anUnlockedUnitHasMovedAllTheSame();
    void aRaisedErrorComesBeforeTheStatus();
    void stepsOutOfRangeAreIgnored();
    void nothingIsSentWithoutAUnit();
    void anUnknownMaximumIsFetched();
    void frequenciesBecomeSteps_data();
    void frequenciesBecomeSteps();
    void halfStepsGoToTheEvenOne();
    void frequenciesOutOfRange_data();
    void frequenciesOutOfRange();
    void theRangeBoxIgnoresTheSwitch();
    void missingLimitsAreFetched();
};

void TestStepTuning::readingTheStep_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<bool>("quick");
    QTest::addColumn<QString>("events");
    QTest::addColumn<int>("step");
    QTest::newRow("number") << "250" << false << "FreqChange 250 106.25|StatusChange 0" << 250;
    QTest::newRow("quick") << "250" << true << "QuickFreqChange 250 106.25|StatusChange 0" << 250;
    QTest::newRow("beyond the maximum")
        << "500" << false << "FreqChange 500 112.5|StatusChange 0" << 500;
    QTest::newRow("half to even") << "2.5" << false << "FreqChange 2 100.05|StatusChange 0" << 2;
    // The member from the connection stays.
    QTest::newRow("with a word") << "250 steps" << false << "StatusChange 2" << 1;
    QTest::newRow("empty") << "" << true << "StatusChange 2" << 1;
    QTest::newRow("lock word") << "LOCKED" << false << "StatusChange 2" << 1;
}

void TestStepTuning::readingTheStep()
{
    QFETCH(QString, reply);
    QFETCH(bool, quick);
    QFETCH(QString, events);
    UnitFixture f;
    f.simulated->setStep(1);
    f.connectUnit();
    f.unit->setQuickfreq(quick);
    f.reply("*STEP?", reply.toStdString());
    if (events == QLatin1String("StatusChange 2"))
        f.boxes().expect(
            QStringLiteral("The device did not respond correctly to a 'current step' query."),
            MessageBox::Exclamation);
    QTEST(f.unit->CurrentStep(), "step");
    QCOMPARE(f.events.take().join(QLatin1Char('|')), events);
    QCOMPARE(f.sent(), listed("*STEP?"));
}

void TestStepTuning::stepReplies_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<bool>("quick");
    QTest::addColumn<QString>("events");
    QTest::addColumn<QString>("box");
    const char bad[] = "The device did not respond correctly to a 'current step' command.";
    const char unlocked[] = "The device oscillator is unlocked!";
    QTest::newRow("locked") << "LOCKED" << false
                            << "StatusChange 4|FreqChange 2 100.05|StatusChange 0"
                            << "";
    QTest::newRow("locked, quick")
        << "LOCKED" << true << "StatusChange 4|QuickFreqChange 2 100.05|StatusChange 0"
        << "";
    QTest::newRow("unlocked") << "UNLOCKED" << false << "FreqChange 2 100.05|StatusChange 3"
                              << unlocked;
    QTest::newRow("unlocked, quick")
        << "UNLOCKED" << true << "QuickFreqChange 2 100.05|StatusChange 3" << unlocked;
    QTest::newRow("unlocked, with more around it")
        << "PLL UNLOCKED AT 2" << false << "FreqChange 2 100.05|StatusChange 3" << unlocked;
    QTest::newRow("refused") << "PERMISSION DENIED" << false
                             << "FreqChange 1 100.025|GetPassword|StatusChange 5"
                             << "";
    QTest::newRow("refused, quick, told as ever")
        << "PERMISSION DENIED" << true << "FreqChange 1 100.025|GetPassword|StatusChange 5"
        << "";
    QTest::newRow("refused, with more behind")
        << "PERMISSION DENIED 7" << false << "FreqChange 1 100.025|GetPassword|StatusChange 5"
        << "";
    const char refused[] = "FreqChange 1 100.025|StatusChange 2";
    QTest::newRow("lower case") << "locked" << false << refused << bad;
    QTest::newRow("lock word with more") << "LOCKED 2" << false << refused << bad;
    QTest::newRow("an echo of the number") << "2" << false << refused << bad;
    QTest::newRow("the command comes back") << "*STEP 2" << false << refused << bad;
    QTest::newRow("out of range") << "NUMBER OUT OF RANGE" << true << refused << bad;
    QTest::newRow("empty") << "" << false << refused << bad;
}

void TestStepTuning::stepReplies()
{
    QFETCH(QString, reply);
    QFETCH(bool, quick);
    QFETCH(QString, events);
    QFETCH(QString, box);
    UnitFixture f;
    f.simulated->setStep(1);
    f.connectUnit();
    f.unit->setQuickfreq(quick);
    f.reply("*STEP 2", reply.toStdString());
    if (!box.isEmpty())
        f.boxes().expect(box, MessageBox::Exclamation);
    f.unit->setCurrentStep(2);
    QVERIFY(f.boxes().allShown());
    QCOMPARE(f.events.take().join(QLatin1Char('|')), events);
    QCOMPARE(f.unit->lastStatus(), events.right(1).toInt());
    QCOMPARE(f.sent(), listed("*STEP 2"));
    // Nothing but the box changes when boxes are off.
    f.unit->setDisplayErrors(false);
    f.unit->setCurrentStep(2);
    QCOMPARE(f.unit->lastStatus(), events.right(1).toInt());
    QVERIFY(f.boxes().shown().size() <= 1);
}

void TestStepTuning::whatARefusalTellsIsTheOldStep()
{
    UnitFixture f;
    f.connectUnit();
    f.unit->setCurrentStep(7);
    f.events.take();
    f.reply("*STEP 9", "PERMISSION DENIED");
    f.unit->setCurrentStep(9);
    QCOMPARE(f.events.take(), listed("FreqChange 7 100.175|GetPassword|StatusChange 5"));
}

void TestStepTuning::anUnlockedUnitHasMovedAllTheSame()
{
    UnitFixture f;
    f.connectUnit();
    f.unit->setDisplayErrors(false);
    f.simulated->setUnlockedSteps(8, 8);
    f.unit->setCurrentStep(8);
    f.reply("*STEP 9", "nonsense");
    f.events.take();
    f.unit->setCurrentStep(9);
    QCOMPARE(f.events.take(), listed("FreqChange 8 100.2|StatusChange 2"));
}

void TestStepTuning::aRaisedErrorComesBeforeTheStatus()
{
    UnitFixture f;
    f.connectUnit();
    f.unit->setDisplayErrors(false);
    f.unit->setRaiseErrorEvents(true);
    f.simulated->setUnlockedSteps(8, 8);
    f.unit->setCurrentStep(8);
    QCOMPARE(f.events.take(), listed("FreqChange 8 100.2|DUTError True|StatusChange 3"));
    f.unit->setCurrentStep(7);
    f.unit->setRaiseErrorEvents(false);
    f.unit->setCurrentStep(8);
    QCOMPARE(f.events.take().filter(QStringLiteral("DUTError")), QStringList());
    QCOMPARE(f.simulated->step(), 8);
}

void TestStepTuning::stepsOutOfRangeAreIgnored()
{
    UnitFixture f;
    f.connectUnit();
    for (const std::int32_t step : {-1, 401, -2147483647, 2147483647})
        f.unit->setCurrentStep(step);
    QCOMPARE(f.sent(), QStringList());
    QCOMPARE(f.events.take(), QStringList());
    f.unit->setCurrentStep(400);
    f.unit->setCurrentStep(0);
    QCOMPARE(f.sent(), listed("*STEP 400|*STEP 0"));
}

void TestStepTuning::nothingIsSentWithoutAUnit()
{
    UnitFixture f;
    f.connectUnit();
    f.unit->setDeviceFound(false);
    f.unit->setCurrentStep(3);
    f.unit->setCurrentFreq(100.05);
    f.unit->setCurrentFreq(1); // no range box either
    QCOMPARE(f.sent(), QStringList());
    f.unit->setDeviceFound(true);
    f.unit->commPort()->ClosePort();
    f.unit->setCurrentStep(3);
    f.unit->setCurrentFreq(1);
    QCOMPARE(f.events.take(), QStringList());
    QVERIFY(f.line.commands().empty());
}

void TestStepTuning::anUnknownMaximumIsFetched()
{
    UnitFixture f;
    f.open();
    f.unit->setDeviceFound(true);
    f.unit->setCurrentStep(500);
    QCOMPARE(f.sent(), listed("*MAX STEP?"));
    f.unit->setCurrentStep(5);
    QCOMPARE(f.sent().first(), QStringLiteral("*STEP 5"));
    QCOMPARE(f.simulated->step(), 5);
}

void TestStepTuning::frequenciesBecomeSteps_data()
{
    QTest::addColumn<double>("megahertz");
    QTest::addColumn<QString>("command");
    QTest::newRow("start") << 100.0 << "*STEP 0";
    QTest::newRow("two steps, just below in binary") << 100.05 << "*STEP 2";
    QTest::newRow("down to the nearest") << 100.06 << "*STEP 2";
    QTest::newRow("up to the nearest") << 100.07 << "*STEP 3";
    QTest::newRow("stop") << 110.0 << "*STEP 400";
    QTest::newRow("just below stop") << 109.999 << "*STEP 400";
}

void TestStepTuning::frequenciesBecomeSteps()
{
    QFETCH(double, megahertz);
    QFETCH(QString, command);
    UnitFixture f;
    f.connectUnit();
    f.unit->setCurrentFreq(megahertz);
    QCOMPARE(f.sent(), QStringList{command});
    QCOMPARE(f.unit->lastStatus(), 0);
}

void TestStepTuning::halfStepsGoToTheEvenOne()
{
    sim::UnitSettings settings = unitWithFirmware("3.38");
    settings.startMHz = 128;
    settings.channelSpacingHz = 31250; // 1/32 MHz
    UnitFixture f(settings);
    f.connectUnit();
    f.unit->setCurrentFreq(128.015625);
    f.unit->setCurrentFreq(128.046875);
    f.unit->setCurrentFreq(128.078125);
    QCOMPARE(f.sent(), listed("*STEP 0|*STEP 2|*STEP 2"));
}

void TestStepTuning::frequenciesOutOfRange_data()
{
    QTest::addColumn<double>("megahertz");
    QTest::newRow("above") << 110.001;
    QTest::newRow("below") << 99.999;
    QTest::newRow("zero") << 0.0;
    QTest::newRow("negative") << -100.0;
    QTest::newRow("enormous") << 1e300;
    QTest::newRow("no number") << qQNaN();
    QTest::newRow("infinite") << qInf();
}

void TestStepTuning::frequenciesOutOfRange()
{
    QFETCH(double, megahertz);
    UnitFixture f;
    f.connectUnit();
    f.boxes().expect(QStringLiteral("Cannot set the device to a frequency outside its range."),
                     MessageBox::Exclamation);
    f.unit->setCurrentFreq(megahertz);
    QCOMPARE(f.sent(), QStringList());
    QCOMPARE(f.events.take(), QStringList());
}

void TestStepTuning::theRangeBoxIgnoresTheSwitch()
{
    UnitFixture f;
    f.connectUnit();
    f.unit->setDisplayErrors(false);
    f.boxes().expect(QStringLiteral("Cannot set the device to a frequency outside its range."),
                     MessageBox::Exclamation);
    f.unit->setCurrentFreq(50);
}

void TestStepTuning::missingLimitsAreFetched()
{
    UnitFixture f;
    f.open();
    f.unit->setDeviceFound(true);
    f.unit->setCurrentFreq(100.05);
    QCOMPARE(f.sent(), listed("*START FREQ?|*MAX STEP?|*CHAN SPACE?|*STEP 2"));
    QCOMPARE(f.events.take(), listed("StatusChange 0|StatusChange 0|StatusChange 0|StatusChange 4|"
                                     "FreqChange 2 100.05|StatusChange 0"));
}

KELDOX_TEST(TestStepTuning)
#include "TestStepTuning.moc"
