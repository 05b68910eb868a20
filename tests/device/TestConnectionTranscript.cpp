// What a connection sends: complete transcripts for every generation of firmware, with and without
// each option, of a unit alone on its line and of an addressed one.
#include "device/UnitFixture.h"

class TestConnectionTranscript : public QObject
{
    Q_OBJECT

private slots:
    void theWholeTranscript_data();
    void theWholeTranscript();
    void aBypassSwitchChangesNothingInTheTranscript();
    void aSecondConnectionKeepsTheSetup();
    void anAddressOfZeroOrLessIsNotSent();
};

// The transcript of a unit without an address.
void TestConnectionTranscript::theWholeTranscript_data()
{
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<bool>("agc");
    QTest::addColumn<bool>("fineTuning");
    QTest::addColumn<QString>("transcript");

    const char old[] = "*ID?|*LOCK?|*REVISION?|*START FREQ?|*MAX STEP?|*CHAN SPACE?|*IFRQ?|*STEP?";
    QTest::newRow("1.6, no options") << "1.6" << false << false << old;
    QTest::newRow("1.6, AGC") << "1.6" << true << false << old;
    QTest::newRow("1.6, AGC and fine tuning") << "1.6" << true << true << old;

    const char without[] = "*ID?|*LOCK?|*REVISION?|*START FREQ?|*MAX STEP?|*CHAN SPACE?|*IFRQ?|"
                           "*BNDW?|*AOPT?|*BOPT?|*BYP_?|*AOPT?|*AGC_ 0|*BOPT?|*STEP?";
    const char withAGC[] = "*ID?|*LOCK?|*REVISION?|*START FREQ?|*MAX STEP?|*CHAN SPACE?|*IFRQ?|"
                           "*BNDW?|*AOPT?|*BOPT?|*BYP_?|*AOPT?|*BOPT?|*STEP?";
    const char withTuning[] = "*ID?|*LOCK?|*REVISION?|*START FREQ?|*MAX STEP?|*CHAN SPACE?|*IFRQ?|"
                              "*BNDW?|*AOPT?|*BOPT?|*BYP_?|*AOPT?|*AGC_ 0|*BOPT?|*ZNCA?|*ZNSE?|"
                              "*STEP?";
    const char withBoth[] = "*ID?|*LOCK?|*REVISION?|*START FREQ?|*MAX STEP?|*CHAN SPACE?|*IFRQ?|"
                            "*BNDW?|*AOPT?|*BOPT?|*BYP_?|*AOPT?|*BOPT?|*ZNCA?|*ZNSE?|*STEP?";
    for (const char *firmware : {"2.0", "2.25", "2.3", "3.17"}) {
        QTest::addRow("%s, no options", firmware) << firmware << false << false << without;
        QTest::addRow("%s, AGC", firmware) << firmware << true << false << withAGC;
        QTest::addRow("%s, fine tuning", firmware) << firmware << false << true << withTuning;
        QTest::addRow("%s, AGC and fine tuning", firmware) << firmware << true << true << withBoth;
    }

    // From here on the unit has an input limiting mode.
    QTest::newRow("3.37, no options")
        << "3.37" << false << false
        << "*ID?|*LOCK?|*REVISION?|*START FREQ?|*MAX STEP?|*CHAN SPACE?|*IFRQ?|*BNDW?|*AOPT?|"
           "*BOPT?|*BYP_?|*AOPT?|*AGC_ 0|*BOPT?|InputLimitMode?|*STEP?";
    QTest::newRow("3.37, AGC")
        << "3.37" << true << false
        << "*ID?|*LOCK?|*REVISION?|*START FREQ?|*MAX STEP?|*CHAN SPACE?|*IFRQ?|*BNDW?|*AOPT?|"
           "*BOPT?|*BYP_?|*AOPT?|*BOPT?|InputLimitMode?|*STEP?";
    QTest::newRow("3.37, fine tuning")
        << "3.37" << false << true
        << "*ID?|*LOCK?|*REVISION?|*START FREQ?|*MAX STEP?|*CHAN SPACE?|*IFRQ?|*BNDW?|*AOPT?|"
           "*BOPT?|*BYP_?|*AOPT?|*AGC_ 0|*BOPT?|InputLimitMode?|*ZNCA?|*ZNSE?|*STEP?";
    QTest::newRow("3.37, AGC and fine tuning")
        << "3.37" << true << true
        << "*ID?|*LOCK?|*REVISION?|*START FREQ?|*MAX STEP?|*CHAN SPACE?|*IFRQ?|*BNDW?|*AOPT?|"
           "*BOPT?|*BYP_?|*AOPT?|*BOPT?|InputLimitMode?|*ZNCA?|*ZNSE?|*STEP?";

    // And here option word C has its new name.
    QTest::newRow("3.38, no options")
        << "3.38" << false << false
        << "*ID?|*LOCK?|*REVISION?|*START FREQ?|*MAX STEP?|*CHAN SPACE?|*IFRQ?|*BNDW?|*AOPT?|"
           "OPTC?|*BYP_?|*AOPT?|*AGC_ 0|OPTC?|InputLimitMode?|*STEP?";
    QTest::newRow("3.38, AGC")
        << "3.38" << true << false
        << "*ID?|*LOCK?|*REVISION?|*START FREQ?|*MAX STEP?|*CHAN SPACE?|*IFRQ?|*BNDW?|*AOPT?|"
           "OPTC?|*BYP_?|*AOPT?|OPTC?|InputLimitMode?|*STEP?";
    QTest::newRow("3.38, fine tuning")
        << "3.38" << false << true
        << "*ID?|*LOCK?|*REVISION?|*START FREQ?|*MAX STEP?|*CHAN SPACE?|*IFRQ?|*BNDW?|*AOPT?|"
           "OPTC?|*BYP_?|*AOPT?|*AGC_ 0|OPTC?|InputLimitMode?|*ZNCA?|*ZNSE?|*STEP?";
    QTest::newRow("3.38, AGC and fine tuning")
        << "3.38" << true << true
        << "*ID?|*LOCK?|*REVISION?|*START FREQ?|*MAX STEP?|*CHAN SPACE?|*IFRQ?|*BNDW?|*AOPT?|"
           "OPTC?|*BYP_?|*AOPT?|OPTC?|InputLimitMode?|*ZNCA?|*ZNSE?|*STEP?";
}

static sim::UnitSettings unitOf(const QString &firmware, bool agc, bool fineTuning)
{
    sim::UnitSettings settings = unitWithFirmware(firmware.toStdString());
    settings.optionA = agc ? sim::OptionAgc : sim::OptionAttenuatorA;
    settings.optionC = fineTuning ? sim::OptionFineTuning : 0;
    return settings;
}

// Each row twice: a unit alone on its line, and unit 5 of a shared one.
void TestConnectionTranscript::theWholeTranscript()
{
    QFETCH(QString, firmware);
    QFETCH(bool, agc);
    QFETCH(bool, fineTuning);
    QFETCH(QString, transcript);
    sim::UnitSettings settings = unitOf(firmware, agc, fineTuning);
    {
        UnitFixture f(settings);
        QVERIFY(f.unit->Initialize());
        QCOMPARE(f.sent().join(QLatin1Char('|')), transcript);
    }
    settings.address = 5;
    UnitFixture f(settings);
    f.unit->setAddr(5);
    QVERIFY(f.unit->Initialize());
    QCOMPARE(f.sent().join(QLatin1Char('|')), QStringLiteral(">UNLISTEN|>LISTEN05|") + transcript);
}

void TestConnectionTranscript::aBypassSwitchChangesNothingInTheTranscript()
{
    for (const bool fitted : {true, false}) {
        sim::UnitSettings settings = unitOf(QStringLiteral("3.17"), true, true);
        settings.hasBypass = fitted;
        UnitFixture f(settings);
        QVERIFY(f.unit->Initialize());
        QCOMPARE(f.sent(), listed("*ID?|*LOCK?|*REVISION?|*START FREQ?|*MAX STEP?|*CHAN SPACE?|"
                                  "*IFRQ?|*BNDW?|*AOPT?|*BOPT?|*BYP_?|*AOPT?|*BOPT?|*ZNCA?|*ZNSE?|"
                                  "*STEP?"));
        QCOMPARE(f.unit->HasBypass(), fitted);
    }
}

void TestConnectionTranscript::aSecondConnectionKeepsTheSetup()
{
    sim::UnitSettings settings = unitOf(QStringLiteral("3.38"), true, true);
    settings.address = 12;
    UnitFixture f(settings);
    f.unit->setAddr(12);
    f.connectUnit();
    f.simulated->change([](sim::UnitSettings &unit) {
        unit.startMHz = 200;
        unit.maxStep = 10;
        unit.fineTuning = 77;
    });
    QVERIFY(f.unit->Initialize());
    QCOMPARE(f.events.take(), listed("StatusChange 4|StatusChange 0|ZNChange 128|"
                                     "StatusChange 0|ZNChange 77|DUTChange|FreqChange 0 100|"
                                     "StatusChange 0"));
    QCOMPARE(f.sent(), listed(">UNLISTEN|>LISTEN12|*ID?|*LOCK?|*ZNCA?|*ZNSE?|*STEP?"));
    QCOMPARE(f.unit->StartFreq(), 100.0);
    QCOMPARE(f.unit->MaxStep(), 400);
}

void TestConnectionTranscript::anAddressOfZeroOrLessIsNotSent()
{
    for (const std::int16_t address : {0, -1}) {
        UnitFixture f(unitOf(QStringLiteral("1.6"), false, false));
        f.unit->setAddr(address);
        f.connectUnit();
        QVERIFY(f.unit->Initialize());
        QCOMPARE(f.sent(), listed("*ID?|*LOCK?|*STEP?"));
    }
}

KELDOX_TEST(TestConnectionTranscript)
#include "TestConnectionTranscript.moc"
