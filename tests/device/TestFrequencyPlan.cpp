// Factory settings of the frequency plan, computed frequencies, and the conversions between
// megahertz, steps and the addresses of the preset memory.
#include "device/UnitFixture.h"

class TestFrequencyPlan : public QObject
{
    Q_OBJECT

private slots:
    void factorySettings_data();
    void factorySettings();
    void anIFBeyondTheRangeIsReported();
    void otherPrescalersAreIgnored();
    void computedFrequencies();
    void computedFrequenciesFetchWhatIsMissing();
    void aComputedValueAsksAlsoLater();
    void conversions();
    void conversionsFetchTheSpacing();
    void aSpacingOfOneHertzIsNoMissingOne();
    void presetMemory();
    void theLocaleDoesNotMatter();
};

void TestFrequencyPlan::factorySettings_data()
{
    QTest::addColumn<Act>("write");
    QTest::addColumn<QString>("command");
    const auto row = [](const char *command, const Act &write) {
        QTest::newRow(command) << write << QString::fromLatin1(command);
    };
    row("!SFRQ 70000000", [](clsKeldoX &u) { u.setStartFreq(70); });
    row("!SFRQ 145012500", [](clsKeldoX &u) { u.setStartFreq(145.0125); });
    row("!IFRQ 21000000", [](clsKeldoX &u) { u.setIFfreq(21); });
    row("!IFRQ 2147000000", [](clsKeldoX &u) { u.setIFfreq(2147); });
    row("!IFRQ-5000000", [](clsKeldoX &u) { u.setIFfreq(-5); });
    row("!BNDW 25000", [](clsKeldoX &u) { u.setChanBW(25000); });
    row("!CHSP 12500", [](clsKeldoX &u) { u.setChannelSpacing(12500); });
    row("!MXST 1000000", [](clsKeldoX &u) { u.setMaxStep(1000000); });
    row("!PRSC 64", [](clsKeldoX &u) { u.setPreScaler(64); });
    row("!PRSC 128", [](clsKeldoX &u) { u.setPreScaler(128); });
}

// Whatever the unit answers: no event, no box, and the members stay.
void TestFrequencyPlan::factorySettings()
{
    QFETCH(Act, write);
    QFETCH(QString, command);
    UnitFixture f;
    f.connectUnit();
    for (const char *answer : {"", "PERMISSION DENIED", "99"}) {
        f.reply(command.toStdString(), answer);
        write(*f.unit);
        QCOMPARE(f.sent(), QStringList{command});
    }
    QCOMPARE(f.events.take(), QStringList());
    QCOMPARE(f.unit->lastStatus(), 0);
    QCOMPARE(f.unit->StartFreq(), 100.0);
    QCOMPARE(f.unit->IFfreq(), 21);
    QCOMPARE(f.unit->ChanBW(), 25000);
    QCOMPARE(f.unit->MaxStep(), 400);
    QCOMPARE(f.unit->MHzToSteps(0.1), 4.0);
    QCOMPARE(f.sent(), QStringList());
    f.unit->commPort()->ClosePort();
    write(*f.unit);
    QVERIFY(f.line.commands().empty());
}

void TestFrequencyPlan::anIFBeyondTheRangeIsReported()
{
    UnitFixture f;
    f.connectUnit();
    f.boxes().expectStart(QStringLiteral("Error 6 ("), MessageBox::Exclamation);
    f.unit->setIFfreq(2148);
    QVERIFY(f.boxes().texts().first().contains(QLatin1String(" in clsKeldoX.Let IFfreq\r\n")));
    QCOMPARE(f.sent(), QStringList());
}

void TestFrequencyPlan::otherPrescalersAreIgnored()
{
    UnitFixture f;
    f.connectUnit();
    for (const std::int16_t divisor : {0, 1, 63, 65, 127, 256, -64})
        f.unit->setPreScaler(divisor);
    QCOMPARE(f.sent(), QStringList());
}

void TestFrequencyPlan::computedFrequencies()
{
    UnitFixture f;
    f.connectUnit();
    f.simulated->setStep(4);
    QCOMPARE(f.unit->StopFreq(), 110.0);
    QCOMPARE(f.unit->CenterFreq(), 105.0);
    QCOMPARE(f.sent(), QStringList());
    QCOMPARE(f.unit->currentFreq(), 100.1);
    QCOMPARE(f.sent(), listed("*STEP?"));
    QCOMPARE(f.events.take(), listed("FreqChange 4 100.1|StatusChange 0"));
}

void TestFrequencyPlan::computedFrequenciesFetchWhatIsMissing()
{
    UnitFixture stop;
    stop.open();
    QCOMPARE(stop.unit->StopFreq(), 110.0);
    QCOMPARE(stop.sent(), listed("*START FREQ?|*MAX STEP?|*CHAN SPACE?"));
    QCOMPARE(stop.events.take(), listed("StatusChange 0|StatusChange 0|StatusChange 0"));

    UnitFixture center;
    center.open();
    QCOMPARE(center.unit->CenterFreq(), 105.0);
    QCOMPARE(center.sent(), listed("*START FREQ?|*MAX STEP?|*CHAN SPACE?"));

    UnitFixture current;
    current.simulated->setStep(2);
    current.open();
    QCOMPARE(current.unit->currentFreq(), 100.05);
    QCOMPARE(current.sent(), listed("*START FREQ?|*STEP?|*CHAN SPACE?"));
    QVERIFY(current.events.lines.contains(QStringLiteral("FreqChange 2 100.05")));
}

// A start frequency that was bad at connection does not spoil the rest of the session.
void TestFrequencyPlan::aComputedValueAsksAlsoLater()
{
    UnitFixture f;
    f.reply("*START FREQ?", "100 mhz");
    f.boxes().expect(
        QStringLiteral("The device did not respond correctly to a 'start frequency' query."));
    f.connectUnit();
    f.script->clear();
    QCOMPARE(f.unit->currentFreq(), 100.0);
    QCOMPARE(f.sent(), listed("*START FREQ?|*STEP?"));
}

void TestFrequencyPlan::conversions()
{
    UnitFixture f;
    f.connectUnit();
    QCOMPARE(f.unit->MHzToSteps(0.06), 2.4); // not rounded
    QCOMPARE(f.unit->MHzToSteps(-0.05), -2.0);
    QCOMPARE(f.unit->StepsToMHz(400), 10.0);
    QCOMPARE(f.unit->StepsToMHz(-2), -0.05);
    QCOMPARE(f.unit->StepsToMHz(2147483647), 53687091.175);
    QCOMPARE(f.sent(), QStringList());
}

void TestFrequencyPlan::conversionsFetchTheSpacing()
{
    UnitFixture f;
    f.open();
    f.unit->setDisplayErrors(false);
    f.reply("*CHAN SPACE?", "25000 hz");
    QCOMPARE(f.unit->MHzToSteps(1), 0.0);
    QCOMPARE(f.unit->StepsToMHz(10), 0.0);
    QCOMPARE(f.unit->MHzToSteps(1), 0.0);
    QCOMPARE(f.sent(), listed("*CHAN SPACE?|*CHAN SPACE?|*CHAN SPACE?"));
    f.script->clear();
    QCOMPARE(f.unit->StepsToMHz(10), 0.25);
    QCOMPARE(f.unit->MHzToSteps(1), 40.0);
    QCOMPARE(f.sent(), listed("*CHAN SPACE?"));
}

void TestFrequencyPlan::aSpacingOfOneHertzIsNoMissingOne()
{
    UnitFixture f;
    f.reply("*CHAN SPACE?", "1 Hz");
    f.connectUnit();
    QCOMPARE(f.unit->StepsToMHz(5'000'000), 5.0);
    QCOMPARE(f.unit->MHzToSteps(5), 5e6);
    QCOMPARE(f.sent(), QStringList());
}

void TestFrequencyPlan::presetMemory()
{
    QCOMPARE(clsKeldoX::OneBasedIndexToRomAddr(-7), 94208);
    QCOMPARE(clsKeldoX::OneBasedIndexToRomAddr(0), 94208);
    QCOMPARE(clsKeldoX::OneBasedIndexToRomAddr(1), 94208);
    QCOMPARE(clsKeldoX::OneBasedIndexToRomAddr(2), 94210);
    QCOMPARE(clsKeldoX::OneBasedIndexToRomAddr(500), 95206);
    QCOMPARE(clsKeldoX::OneBasedIndexToRomAddr(501), 95206);
    QCOMPARE(clsKeldoX::RomAdddrToStep(94208), 0);
    QCOMPARE(clsKeldoX::RomAdddrToStep(94209), 0);
    QCOMPARE(clsKeldoX::RomAdddrToStep(94211), 2);
    QCOMPARE(clsKeldoX::RomAdddrToStep(95206), 499);
    QCOMPARE(clsKeldoX::RomAdddrToStep(94206), -1); // not clamped
}

void TestFrequencyPlan::theLocaleDoesNotMatter()
{
    QLocale::setDefault(QLocale(QLocale::German));
    UnitFixture f;
    f.connectUnit();
    f.unit->setAtten(2.5);
    f.unit->setAttenOffset(-1.5);
    f.unit->setStartFreq(1145.0125);
    f.unit->setMaxStep(1234567);
    const QStringList sent = f.sent();
    const double start = f.unit->StartFreq();
    QLocale::setDefault(QLocale::c());
    QCOMPARE(sent, listed("*ATTN 2.5|!AOFF -1.5|!SFRQ 1145012500|!MXST 1234567"));
    QCOMPARE(start, 100.0);
}

KELDOX_TEST(TestFrequencyPlan)
#include "TestFrequencyPlan.moc"
