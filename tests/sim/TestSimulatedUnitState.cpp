// What becomes of a simulated unit's registers, who may change them, and when it listens.
#include "UnitUnderTest.h"

#include "support/TestMain.h"

class TestSimulatedUnitState : public QObject
{
    Q_OBJECT

private slots:
    void settingsReachTheRegisters();
    void refusedNumberChangesNothing();
    void attenuationQueryLosesItsUnitWordWhileAgcRuns();
    void attenuatorTakesTheNearestOfItsSteps();
    void unitThatCannotTellItsStep();
    void stepCommandTellsTheLockState();
    void maximumStepBelowTheStepMovesTheStep();
    void calibratedModeKeepsTheSetting();
    void switchesOfOptionsThatAreNotFitted();
    void commandsOfOptionsThatAreNotFitted();
    void optionSettings();
    void agcTableMemory();
    void passwordGuardsAllSettings_data();
    void passwordGuardsAllSettings();
    void passwordIsComparedWhole();
    void queriesNeedNoPassword();
    void unknownTextComesBeforeTheRefusal();
    void unaddressedUnitAlwaysListens();
    void addressedUnitListensBetweenListenAndUnlisten();
    void addressIsTakenWithTwoDigits();
    void newAddressKeepsTheConversation();
    void someoneAnswersForTheLine();
};

void TestSimulatedUnitState::settingsReachTheRegisters()
{
    SimulatedUnit unit(withFirmware("3.17"));
    for (const char *const command :
         {"*STEP 250", "*ATTN 2.5", "INPUT ATTN 31.5", "!AOFF -1.5", "*AGC_ 1", "*ACT_ 1",
          "*ZNSE 40", "!ZNCA 60", "*ZNCM 1", "!SFRQ 70000000", "!IFRQ 45000000", "!BNDW 6000",
          "!CHSP 12500", "!MXST 900", "!PRSC 128", "!DBND 9", "!BOPT 255", "!ADDR 3"})
        QVERIFY2(reply(unit, command) != QLatin1String(unknown), command);
    const UnitSettings now = unit.state();
    QCOMPARE(unit.step(), 250);
    QCOMPARE(unit.currentMHz(), 73.125);
    QCOMPARE(unit.attenuation(), 2.5);
    QCOMPARE(unit.inputAttenuation(), 31.5);
    QCOMPARE(unit.agcOffset(), -1.5);
    QVERIFY(unit.agc());
    QVERIFY(unit.bypass());
    QCOMPARE(unit.fineTuning(), 40);
    QCOMPARE(unit.fineCalibration(), 60);
    QVERIFY(unit.calibratedMode());
    QCOMPARE(now.startMHz, 70.0);
    QCOMPARE(now.ifMHz, 45.0);
    QCOMPARE(now.bandwidthHz, 6000);
    QCOMPARE(now.channelSpacingHz, 12500);
    QCOMPARE(now.maxStep, 900);
    QCOMPARE(now.prescaler, 128);
    QCOMPARE(now.deadband, 9);
    QCOMPARE(unit.optionC(), 255);
    QCOMPARE(unit.address(), 3);
}

void TestSimulatedUnitState::refusedNumberChangesNothing()
{
    SimulatedUnit unit(distinct());
    for (const char *const command : {"*STEP 801", "*ATTN 46", "INPUT ATTN 40", "*ZNSE 256",
                                      "!ZNCA 256", "!PRSC 1", "InputLimitMode 9", "!ADDR 100"})
        QCOMPARE(reply(unit, command), QLatin1String(tooFar));
    QCOMPARE(unit.step(), 77);
    QCOMPARE(unit.attenuation(), 10.5);
    QCOMPARE(unit.inputAttenuation(), 3.0);
    QCOMPARE(unit.fineTuning(), 40);
    QCOMPARE(unit.fineCalibration(), 41);
    QCOMPARE(unit.state().prescaler, 128);
    QCOMPARE(unit.inputLimitingMode(), 2);
    QCOMPARE(unit.address(), 0);
}

void TestSimulatedUnitState::attenuationQueryLosesItsUnitWordWhileAgcRuns()
{
    SimulatedUnit unit(distinct());
    unit.setAgc(true);
    QCOMPARE(reply(unit, "*ATTN?"), QStringLiteral("10.5"));
    unit.setAgc(false);
    QCOMPARE(reply(unit, "*ATTN?"), QStringLiteral("10.5 dB"));
}

void TestSimulatedUnitState::attenuatorTakesTheNearestOfItsSteps()
{
    SimulatedUnit unit;
    QCOMPARE(reply(unit, "*ATTN 2.3"), QStringLiteral("2.5"));
    QCOMPARE(unit.attenuation(), 2.5);
    unit.change([](UnitSettings &settings) { settings.attenuationStep = 0.1; });
    QCOMPARE(reply(unit, "*ATTN .3"), QStringLiteral("0.3"));
    unit.change([](UnitSettings &settings) { settings.attenuationStep = 0; });
    QCOMPARE(reply(unit, "*ATTN 2.34"), QStringLiteral("2.34"));
}

void TestSimulatedUnitState::unitThatCannotTellItsStep()
{
    UnitSettings settings;
    settings.attenuationStep = 0;
    SimulatedUnit unit(settings);
    QCOMPARE(reply(unit, "*ATT STEP? "), QLatin1String(unknown));
}

void TestSimulatedUnitState::stepCommandTellsTheLockState()
{
    SimulatedUnit unit;
    unit.setUnlockedSteps(100, 200);
    QCOMPARE(reply(unit, "*STEP 99"), QStringLiteral("LOCKED"));
    QCOMPARE(reply(unit, "*STEP 100"), QStringLiteral("UNLOCKED"));
    QCOMPARE(unit.step(), 100);
    QVERIFY(!unit.locked());
    QCOMPARE(reply(unit, "*LOCK?"), QStringLiteral("UNLOCKED"));
    QCOMPARE(reply(unit, "*STEP 200"), QStringLiteral("UNLOCKED"));
    QCOMPARE(reply(unit, "*STEP 201"), QStringLiteral("LOCKED"));
    QCOMPARE(reply(unit, "*LOCK?"), QStringLiteral("LOCKED"));
}

void TestSimulatedUnitState::maximumStepBelowTheStepMovesTheStep()
{
    SimulatedUnit unit;
    unit.setStep(300);
    QCOMPARE(reply(unit, "!MXST 200"), QStringLiteral("200"));
    QCOMPARE(unit.step(), 200);
}

void TestSimulatedUnitState::calibratedModeKeepsTheSetting()
{
    SimulatedUnit unit(distinct());
    reply(unit, "*ZNCM 1");
    QCOMPARE(unit.effectiveFineTuning(), 41);
    QCOMPARE(reply(unit, "*ZNSE?"), QStringLiteral("40 clicks"));
    QCOMPARE(reply(unit, "*ZNCM?"), QStringLiteral("1"));
    reply(unit, "*ZNCM 0");
    QCOMPARE(unit.effectiveFineTuning(), 40);
}

void TestSimulatedUnitState::switchesOfOptionsThatAreNotFitted()
{
    UnitSettings bare;
    bare.optionA = 0;
    bare.hasBypass = false;
    SimulatedUnit unit(bare);
    for (const char *const command :
         {"*AGC_ 0", "*AGC_ 1", "*AGC_?", "*ACT_ 1", "*ACT_?", "*BYP_?"})
        QCOMPARE(reply(unit, command), QStringLiteral("0"));
    QCOMPARE(reply(unit, "*AGC_ 2"), QLatin1String(tooFar));
    QVERIFY(!unit.agc());
    QVERIFY(!unit.bypass());
}

void TestSimulatedUnitState::commandsOfOptionsThatAreNotFitted()
{
    UnitSettings bare = withFirmware("3.17");
    bare.optionA = 0;
    bare.optionC = 0;
    SimulatedUnit unit(bare);
    for (const char *const command : {"INPUT ATTN?", "INPUT ATTN 1", "*AOFF?", "!AOFF 1", "*ZNSE?",
                                      "*ZNSE 1", "*ZNCA?", "!ZNCA 1", "*ZNCM?", "*ZNCM 1"})
        QCOMPARE(reply(unit, command), QLatin1String(unknown));
}

void TestSimulatedUnitState::optionSettings()
{
    SimulatedUnit unit;
    unit.setAgc(true);
    reply(unit, "!AGC 0");
    QCOMPARE(unit.optionA(), 12);
    QVERIFY(!unit.agc());
    reply(unit, "!AGC 1");
    QCOMPARE(unit.optionA(), 14);
    reply(unit, "*ACT_ 1");
    reply(unit, "!BYP_ 0");
    QCOMPARE(reply(unit, "*BYP_?"), QStringLiteral("0"));
    QVERIFY(!unit.bypass());
}

void TestSimulatedUnitState::agcTableMemory()
{
    SimulatedUnit unit(withFirmware("2.32"));
    unit.setDetectors(123, 45);
    QCOMPARE(reply(unit, "!SRCE 86"), QStringLiteral("Address 86"));
    QCOMPARE(reply(unit, "!WDAT 12"), QStringLiteral("Address 86 Data 12"));
    QCOMPARE(reply(unit, "*DATA?"), QStringLiteral("12"));
    QCOMPARE(reply(unit, "!ATAB 86"), QStringLiteral("Added 123"));
    QCOMPARE(reply(unit, "*DATA?"), QStringLiteral("123"));
    reply(unit, "!SRCE 36");
    QCOMPARE(reply(unit, "*DATA?"), QStringLiteral("0"));
    unit.setDetectors(900, 45);
    QCOMPARE(reply(unit, "!ATAB 86"), QStringLiteral("Added 900"));
    QCOMPARE(int(unit.state().agcMemory[86]), 255);
    QCOMPARE(unit.state().agcAddress, 36);
}

void TestSimulatedUnitState::passwordGuardsAllSettings_data()
{
    QTest::addColumn<QByteArray>("command");
    for (const char *const command :
         {"*STEP 1", "*ATTN 1", "INPUT ATTN 1", "*AGC_ 1", "*ACT_ 1", "InputLimitMode 2", "*ZNSE 1",
          "*ZNCM 1", "!ZNCA 1", "!SFRQ 1", "!AOPT 1", "OPTC 1", "!BYP_ 0", "!ADDR 1", "!WDAT 1",
          "*STEP 99999"})
        QTest::newRow(command) << QByteArray(command);
}

void TestSimulatedUnitState::passwordGuardsAllSettings()
{
    QFETCH(QByteArray, command);
    UnitSettings settings;
    settings.password = "Secret 1";
    SimulatedUnit unit(settings);
    QVERIFY(!unit.permitted());
    QCOMPARE(reply(unit, command), QLatin1String(refused));
    QCOMPARE(reply(unit, "PASSWORD Secret 1"), QStringLiteral("OK"));
    QVERIFY(unit.permitted());
    QVERIFY(reply(unit, command) != QLatin1String(refused));
}

void TestSimulatedUnitState::passwordIsComparedWhole()
{
    SimulatedUnit unit;
    unit.setPassword("Secret 1");
    for (const char *const wrong : {"PASSWORD ", "PASSWORD", "PASSWORD secret 1", "PASSWORD Secret",
                                    "PASSWORD Secret 1 ", "PASSWORD  Secret 1"})
        QCOMPARE(reply(unit, wrong), QLatin1String(refused));
    QCOMPARE(reply(unit, "PASSWORD Secret 1"), QStringLiteral("OK"));
    reply(unit, "PASSWORD other");
    QVERIFY(!unit.permitted());
}

void TestSimulatedUnitState::queriesNeedNoPassword()
{
    UnitSettings settings;
    settings.password = "x";
    SimulatedUnit unit(settings);
    QCOMPARE(reply(unit, "*STEP?"), QStringLiteral("0"));
    QCOMPARE(reply(unit, "*ID?"), QStringLiteral("KELDO-X"));
}

void TestSimulatedUnitState::unknownTextComesBeforeTheRefusal()
{
    UnitSettings settings = withFirmware("3.36");
    settings.password = "x";
    SimulatedUnit unit(settings);
    QCOMPARE(reply(unit, "InputLimitMode 1"), QLatin1String(unknown));
}

void TestSimulatedUnitState::unaddressedUnitAlwaysListens()
{
    SimulatedUnit unit;
    QVERIFY(unit.listening());
    QCOMPARE(reply(unit, ">LISTEN05"), QLatin1String(unknown));
    QCOMPARE(reply(unit, ">UNLISTEN"), QLatin1String(unknown));
    QCOMPARE(reply(unit, "*STEP?"), QStringLiteral("0"));
}

void TestSimulatedUnitState::addressedUnitListensBetweenListenAndUnlisten()
{
    UnitSettings settings;
    settings.address = 5;
    SimulatedUnit unit(settings);
    QVERIFY(!unit.listening());
    for (const char *const command : {"*ID?", "*STEP 3", ">UNLISTEN", ">LISTEN02", "PASSWORD x"})
        QCOMPARE(reply(unit, command), QStringLiteral("(silence)"));
    QCOMPARE(reply(unit, ">LISTEN05"), QStringLiteral("LISTENING"));
    QCOMPARE(reply(unit, "*STEP 3"), QStringLiteral("LOCKED"));
    QCOMPARE(reply(unit, ">LISTEN02"), QStringLiteral("(silence)"));
    QVERIFY(unit.listening());
    QCOMPARE(reply(unit, ">UNLISTEN"), QStringLiteral("UNLISTENING"));
    QCOMPARE(reply(unit, ">UNLISTEN"), QStringLiteral("(silence)"));
    QCOMPARE(reply(unit, "*STEP?"), QStringLiteral("(silence)"));
    QCOMPARE(unit.step(), 3);
}

void TestSimulatedUnitState::addressIsTakenWithTwoDigits()
{
    UnitSettings settings;
    settings.address = 5;
    SimulatedUnit unit(settings);
    for (const char *const command :
         {">LISTEN5", ">LISTEN 5", ">LISTEN", ">LISTEN05x", ">listen05"})
        QCOMPARE(reply(unit, command), QStringLiteral("(silence)"));
    QVERIFY(!unit.listening());
}

void TestSimulatedUnitState::newAddressKeepsTheConversation()
{
    SimulatedUnit unit;
    QCOMPARE(reply(unit, "!ADDR 4"), QStringLiteral("4"));
    QCOMPARE(reply(unit, "*ID?"), QStringLiteral("KELDO-X"));
    QCOMPARE(reply(unit, ">UNLISTEN"), QStringLiteral("UNLISTENING"));
    QCOMPARE(reply(unit, "*ID?"), QStringLiteral("(silence)"));
    QCOMPARE(reply(unit, ">LISTEN04"), QStringLiteral("LISTENING"));
}

void TestSimulatedUnitState::someoneAnswersForTheLine()
{
    QVERIFY(SimulatedUnit::answerForTheLine(">UNLISTEN").has_value());
    QVERIFY(SimulatedUnit::answerForTheLine(">LISTEN07").has_value());
    QVERIFY(!SimulatedUnit::answerForTheLine("*ID?").has_value());
    QVERIFY(!SimulatedUnit::answerForTheLine(">LISTEN7").has_value());
}

KELDOX_TEST(TestSimulatedUnitState)
#include "TestSimulatedUnitState.moc"
