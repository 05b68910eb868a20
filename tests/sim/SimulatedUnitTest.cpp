// What a simulated unit answers to each command, and what becomes of its registers.
#include "sim/SimulatedUnit.h"

#include "support/TestMain.h"

using sim::SimulatedUnit;
using sim::UnitSettings;

namespace {

const char *const unknown = "UNRECOGNIZED COMMAND";
const char *const tooFar = "NUMBER OUT OF RANGE";
const char *const refused = "PERMISSION DENIED";

// The reply, or "(silence)".
QString reply(SimulatedUnit &unit, const char *command)
{
    const auto answer = unit.answer(command);
    return answer ? QString::fromStdString(*answer) : QStringLiteral("(silence)");
}

UnitSettings withFirmware(const char *firmware)
{
    UnitSettings settings;
    settings.firmware = std::string("KELDO-X REV ") + firmware;
    return settings;
}

// A unit of which every command shows a value of its own.
UnitSettings distinct()
{
    UnitSettings settings;
    settings.startMHz = 145.5;
    settings.ifMHz = 21.4;
    settings.bandwidthHz = 12500;
    settings.maxStep = 800;
    settings.prescaler = 128;
    settings.step = 77;
    settings.attenuation = 10.5;
    settings.maxAttenuation = 45;
    settings.inputAttenuation = 3;
    settings.agcOffset = -1.5;
    settings.bypass = true;
    settings.inputLimitingMode = 2;
    settings.fineTuning = 40;
    settings.fineCalibration = 41;
    settings.detectorA = 700;
    settings.detectorB = 300;
    settings.deadband = 5;
    settings.agcMemory[36] = 99;
    return settings;
}

} // namespace

class SimulatedUnitTest : public QObject
{
    Q_OBJECT

private slots:
    void queries_data();
    void queries();
    void settings_data();
    void settings();
    void firmwareBands_data();
    void firmwareBands();
    void firmwareNumber_data();
    void firmwareNumber();
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

void SimulatedUnitTest::queries_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QString>("answer");
    const auto row = [](const char *command, const char *answer) {
        QTest::newRow(command) << QByteArray(command) << QString::fromLatin1(answer);
    };
    row("*ID?", "KELDO-X");
    row("*REVISION?", "KELDO-X REV 3.38");
    row("*START FREQ?", "145.5 MHz");
    row("*IFRQ?", "21.4 MHz");
    row("*BNDW?", "12500");
    row("*CHAN SPACE?", "25000 Hz");
    row("*MAX STEP?", "800");
    row("*STEP?", "77");
    row("*PRSC?", "128");
    row("*AGC_?", "0");
    row("*ATTN?", "10.5 dB");
    row("*MXAT?", "45");
    row("*ATT STEP?", "0.5 dB steps");
    row("*ATT STEP? ", "0.5 dB steps");
    row("INPUT ATTN?", "3 dB");
    row("*ACT_?", "1");
    row("InputLimitMode?", "2");
    row("*AOPT?", "14");
    row("OPTC?", "2");
    row("*BYP_?", "1");
    row("*LOCK?", "LOCKED");
    row("*ZNSE?", "40 clicks");
    row("*ZNCA?", "41 clicks");
    row("*ZNCM?", "0");
    row("DETA?", "700");
    row("DETB?", "300");
    row("*DBND?", "5");
    row("*ATAB?", "36");
    row("*DATA?", "99");
    row("", "(silence)");
    row("ID", unknown);
    row("*NONSENSE?", unknown);
    row("*id?", unknown);
    row("*STEP", unknown);
    row("*STEP x", unknown);
}

void SimulatedUnitTest::queries()
{
    QFETCH(QByteArray, command);
    SimulatedUnit unit(distinct());
    QTEST(reply(unit, command), "answer");
}

void SimulatedUnitTest::settings_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QString>("answer");
    const auto row = [](const char *command, const char *answer) {
        QTest::newRow(command) << QByteArray(command) << QString::fromLatin1(answer);
    };
    row("*STEP 250", "LOCKED");
    row("*STEP 0", "LOCKED");
    row("*STEP 4000", "LOCKED");
    row("*STEP 4001", tooFar);
    row("*STEP-1", tooFar);
    row("*STEP 2.5", tooFar);
    row("!SFRQ 70000000", "70000000");
    row("!SFRQ 0", tooFar);
    row("!IFRQ 45000000", "45000000");
    row("!BNDW 15000", "15000");
    row("!CHSP 12500", "12500");
    row("!CHSP 0", tooFar);
    row("!MXST 100", "100");
    row("!MXST 0", tooFar);
    row("!PRSC 64", "64");
    row("!PRSC 128", "128");
    row("!PRSC 65", tooFar);
    row("*AGC_ 1", "1");
    row("*AGC_ 0", "0");
    row("*AGC_ 2", tooFar);
    row("*ATTN 10", "10");
    row("*ATTN 2.5", "2.5");
    row("*ATTN 50", "50");
    row("*ATTN 50.5", tooFar);
    row("*ATTN-0.5", tooFar);
    row("INPUT ATTN 31.5", "31.5");
    row("INPUT ATTN 32", tooFar);
    row("*ACT_ 1", "1");
    row("*ACT_ 3", tooFar);
    row("InputLimitMode 4", "4");
    row("InputLimitMode 5", tooFar);
    row("*ZNSE 40", "40 clicks");
    row("*ZNSE 255", "255 clicks");
    row("*ZNSE 300", tooFar);
    row("!ZNCA 0", "0 clicks");
    row("!ZNCA-1", tooFar);
    row("*ZNCM 1", "1");
    row("!DBND 7", "7");
    row("!SRCE 86", "Address 86");
    row("!SRCE 256", tooFar);
    row("!WDAT 12", "Address 36 Data 12");
    row("!WDAT 256", tooFar);
    row("!ATAB 86", "Added 512");
    row("!AOPT 3", "3");
    row("OPTC 0", "0");
    row("!AGC 0", "0");
    row("!BYP_ 1", "1");
    row("!ADDR 7", "7");
    row("!ADDR 100", tooFar);
    row("PASSWORD anything", "OK");
    row("PASSWORD ", "OK");
    row("PASSWORDS", unknown);
}

void SimulatedUnitTest::settings()
{
    QFETCH(QByteArray, command);
    SimulatedUnit unit;
    QTEST(reply(unit, command), "answer");
}

void SimulatedUnitTest::firmwareBands_data()
{
    QTest::addColumn<QByteArray>("firmware");
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<bool>("known");
    const auto edge = [](const char *command, const char *firmware, bool known) {
        QTest::addRow("%s on %s", command, firmware)
            << QByteArray(firmware) << QByteArray(command) << known;
    };
    for (const char *const above16 :
         {"*BNDW?", "!BNDW 1", "*AGC_ 0", "*BYP_?", "!BYP_ 1", "*ACT_?", "*ACT_ 0"}) {
        edge(above16, " 1.6", false);
        edge(above16, "1.61", true);
    }
    for (const char *const from20 :
         {"*AOPT?", "!AOPT 2", "!AGC 1", "*AOFF?", "!AOFF 3", "*ZNSE?", "*BOPT?", "!BOPT 2"}) {
        edge(from20, "1.99", false);
        edge(from20, " 2.0", true);
    }
    for (const char *const offset : {"*AOFF?", "!AOFF -3", "!AOFF  1.5"}) {
        edge(offset, "3.17", true);
        edge(offset, "3.18", false);
    }
    edge("*ZNCM?", "2.27", false);
    edge("*ZNCM?", "2.28", true);
    edge("*ZNCM 1", "2.27", false);
    edge("*ZNCM 1", "2.28", true);
    edge("*MXAT?", " 2.3", false);
    edge("*MXAT?", "2.31", true);
    edge("DETA?", "2.32", false);
    edge("DETA?", "2.33", true);
    edge("DETB?", " 1.0", true);
    edge("InputLimitMode?", "3.36", false);
    edge("InputLimitMode?", "3.37", true);
    edge("InputLimitMode 1", "3.36", false);
    edge("InputLimitMode 1", "3.37", true);
    for (const char *const wordB : {"*BOPT?", "!BOPT 2"}) {
        edge(wordB, "3.37", true);
        edge(wordB, "3.38", false);
    }
    for (const char *const wordC : {"OPTC?", "OPTC 2"}) {
        edge(wordC, "3.37", false);
        edge(wordC, "3.38", true);
    }
    for (const char *const anyFirmware : {"*ID?", "*REVISION?", "*AGC_?", "*ATTN?", "*ATTN 1",
                                          "*ATT STEP?", "*STEP 1", "*LOCK?", "*IFRQ?", "!ADDR 1"})
        edge(anyFirmware, " 1.0", true);
}

void SimulatedUnitTest::firmwareBands()
{
    QFETCH(QByteArray, firmware);
    QFETCH(QByteArray, command);
    SimulatedUnit unit(withFirmware(firmware));
    QFETCH(bool, known);
    QCOMPARE(reply(unit, command) != QLatin1String(unknown), known);
}

void SimulatedUnitTest::firmwareNumber_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<double>("number");
    QTest::newRow("last four characters") << QByteArray("KELDO-X REV 3.38") << 3.38;
    QTest::newRow("blank before it") << QByteArray("REV 1.6") << 1.6;
    QTest::newRow("fewer than four characters") << QByteArray("2.0") << 2.0;
    QTest::newRow("no number") << QByteArray("KELDO-X") << 0.0;
    QTest::newRow("empty") << QByteArray() << 0.0;
}

void SimulatedUnitTest::firmwareNumber()
{
    QFETCH(QByteArray, text);
    QTEST(sim::firmwareNumber(text.toStdString()), "number");
}

void SimulatedUnitTest::settingsReachTheRegisters()
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

void SimulatedUnitTest::refusedNumberChangesNothing()
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

void SimulatedUnitTest::attenuationQueryLosesItsUnitWordWhileAgcRuns()
{
    SimulatedUnit unit(distinct());
    unit.setAgc(true);
    QCOMPARE(reply(unit, "*ATTN?"), QStringLiteral("10.5"));
    unit.setAgc(false);
    QCOMPARE(reply(unit, "*ATTN?"), QStringLiteral("10.5 dB"));
}

void SimulatedUnitTest::attenuatorTakesTheNearestOfItsSteps()
{
    SimulatedUnit unit;
    QCOMPARE(reply(unit, "*ATTN 2.3"), QStringLiteral("2.5"));
    QCOMPARE(unit.attenuation(), 2.5);
    unit.change([](UnitSettings &settings) { settings.attenuationStep = 0.1; });
    QCOMPARE(reply(unit, "*ATTN .3"), QStringLiteral("0.3"));
    unit.change([](UnitSettings &settings) { settings.attenuationStep = 0; });
    QCOMPARE(reply(unit, "*ATTN 2.34"), QStringLiteral("2.34"));
}

void SimulatedUnitTest::unitThatCannotTellItsStep()
{
    UnitSettings settings;
    settings.attenuationStep = 0;
    SimulatedUnit unit(settings);
    QCOMPARE(reply(unit, "*ATT STEP? "), QLatin1String(unknown));
}

void SimulatedUnitTest::stepCommandTellsTheLockState()
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

void SimulatedUnitTest::maximumStepBelowTheStepMovesTheStep()
{
    SimulatedUnit unit;
    unit.setStep(300);
    QCOMPARE(reply(unit, "!MXST 200"), QStringLiteral("200"));
    QCOMPARE(unit.step(), 200);
}

void SimulatedUnitTest::calibratedModeKeepsTheSetting()
{
    SimulatedUnit unit(distinct());
    reply(unit, "*ZNCM 1");
    QCOMPARE(unit.effectiveFineTuning(), 41);
    QCOMPARE(reply(unit, "*ZNSE?"), QStringLiteral("40 clicks"));
    QCOMPARE(reply(unit, "*ZNCM?"), QStringLiteral("1"));
    reply(unit, "*ZNCM 0");
    QCOMPARE(unit.effectiveFineTuning(), 40);
}

void SimulatedUnitTest::switchesOfOptionsThatAreNotFitted()
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

void SimulatedUnitTest::commandsOfOptionsThatAreNotFitted()
{
    UnitSettings bare = withFirmware("3.17");
    bare.optionA = 0;
    bare.optionC = 0;
    SimulatedUnit unit(bare);
    for (const char *const command : {"INPUT ATTN?", "INPUT ATTN 1", "*AOFF?", "!AOFF 1", "*ZNSE?",
                                      "*ZNSE 1", "*ZNCA?", "!ZNCA 1", "*ZNCM?", "*ZNCM 1"})
        QCOMPARE(reply(unit, command), QLatin1String(unknown));
}

void SimulatedUnitTest::optionSettings()
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

void SimulatedUnitTest::agcTableMemory()
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

void SimulatedUnitTest::passwordGuardsAllSettings_data()
{
    QTest::addColumn<QByteArray>("command");
    for (const char *const command :
         {"*STEP 1", "*ATTN 1", "INPUT ATTN 1", "*AGC_ 1", "*ACT_ 1", "InputLimitMode 2", "*ZNSE 1",
          "*ZNCM 1", "!ZNCA 1", "!SFRQ 1", "!AOPT 1", "OPTC 1", "!BYP_ 0", "!ADDR 1", "!WDAT 1",
          "*STEP 99999"})
        QTest::newRow(command) << QByteArray(command);
}

void SimulatedUnitTest::passwordGuardsAllSettings()
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

void SimulatedUnitTest::passwordIsComparedWhole()
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

void SimulatedUnitTest::queriesNeedNoPassword()
{
    UnitSettings settings;
    settings.password = "x";
    SimulatedUnit unit(settings);
    QCOMPARE(reply(unit, "*STEP?"), QStringLiteral("0"));
    QCOMPARE(reply(unit, "*ID?"), QStringLiteral("KELDO-X"));
}

void SimulatedUnitTest::unknownTextComesBeforeTheRefusal()
{
    UnitSettings settings = withFirmware("3.36");
    settings.password = "x";
    SimulatedUnit unit(settings);
    QCOMPARE(reply(unit, "InputLimitMode 1"), QLatin1String(unknown));
}

void SimulatedUnitTest::unaddressedUnitAlwaysListens()
{
    SimulatedUnit unit;
    QVERIFY(unit.listening());
    QCOMPARE(reply(unit, ">LISTEN05"), QLatin1String(unknown));
    QCOMPARE(reply(unit, ">UNLISTEN"), QLatin1String(unknown));
    QCOMPARE(reply(unit, "*STEP?"), QStringLiteral("0"));
}

void SimulatedUnitTest::addressedUnitListensBetweenListenAndUnlisten()
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

void SimulatedUnitTest::addressIsTakenWithTwoDigits()
{
    UnitSettings settings;
    settings.address = 5;
    SimulatedUnit unit(settings);
    for (const char *const command :
         {">LISTEN5", ">LISTEN 5", ">LISTEN", ">LISTEN05x", ">listen05"})
        QCOMPARE(reply(unit, command), QStringLiteral("(silence)"));
    QVERIFY(!unit.listening());
}

void SimulatedUnitTest::newAddressKeepsTheConversation()
{
    SimulatedUnit unit;
    QCOMPARE(reply(unit, "!ADDR 4"), QStringLiteral("4"));
    QCOMPARE(reply(unit, "*ID?"), QStringLiteral("KELDO-X"));
    QCOMPARE(reply(unit, ">UNLISTEN"), QStringLiteral("UNLISTENING"));
    QCOMPARE(reply(unit, "*ID?"), QStringLiteral("(silence)"));
    QCOMPARE(reply(unit, ">LISTEN04"), QStringLiteral("LISTENING"));
}

void SimulatedUnitTest::someoneAnswersForTheLine()
{
    QVERIFY(SimulatedUnit::answerForTheLine(">UNLISTEN").has_value());
    QVERIFY(SimulatedUnit::answerForTheLine(">LISTEN07").has_value());
    QVERIFY(!SimulatedUnit::answerForTheLine("*ID?").has_value());
    QVERIFY(!SimulatedUnit::answerForTheLine(">LISTEN7").has_value());
}

KELDOX_TEST(SimulatedUnitTest)
#include "SimulatedUnitTest.moc"
