// The first connection to a unit: the order of its events, its log, and what the object knows
// afterwards.
#include "device/UnitFixture.h"

class TestFirstConnection : public QObject
{
    Q_OBJECT

private slots:
    void aUnitIsFoundThenReadThenTold();
    void eventsOfAFullUnit();
    void eventsOfAnOldUnit();
    void eventsOfAUnitWithoutAGC();
    void theFineSettingIsKeptAndRemembered();
    void whatTheObjectKnowsAfterwards();
    void theLogOfAConnection();
    void unlockedAtConnection();
    void aForeignIdentityEndsIt();
    void inLowerCaseItIsAccepted();
};

static sim::UnitSettings unitOf(const QString &firmware, bool agc, bool fineTuning)
{
    sim::UnitSettings settings = unitWithFirmware(firmware.toStdString());
    settings.optionA = agc ? sim::OptionAgc : sim::OptionAttenuatorA;
    settings.optionC = fineTuning ? sim::OptionFineTuning : 0;
    return settings;
}

// DeviceFound comes before the lock state, Initialized before DUTChange.
void TestFirstConnection::aUnitIsFoundThenReadThenTold()
{
    UnitFixture f;
    QStringList states; // "event found initialized"
    const auto note = [&](const char *event) {
        states.append(QString::fromLatin1(event) + QLatin1Char(' ') + text(f.unit->DeviceFound()) +
                      QLatin1Char(' ') + text(f.unit->isInitialized()));
    };
    connect(f.unit.get(), &clsKeldoX::StatusChange, this, [&] { note("StatusChange"); });
    connect(f.unit.get(), &clsKeldoX::DUTChange, this, [&] { note("DUTChange"); });
    connect(f.unit.get(), &clsKeldoX::FreqChange, this, [&] { note("FreqChange"); });
    QVERIFY(f.unit->Initialize());
    const int told = states.indexOf(QStringLiteral("DUTChange True True"));
    QVERIFY(told > 0);
    QCOMPARE(states.mid(0, told), QStringList(told, QStringLiteral("StatusChange True False")));
    QCOMPARE(states.mid(told), listed("DUTChange True True|FreqChange True True|"
                                      "StatusChange True True"));
}

void TestFirstConnection::eventsOfAFullUnit()
{
    sim::UnitSettings settings = unitOf(QStringLiteral("3.38"), true, true);
    settings.step = 2;
    settings.fineTuning = 40;
    settings.fineCalibration = 90;
    settings.inputLimitingMode = 3;
    UnitFixture f(settings);
    QVERIFY(f.unit->Initialize());
    QCOMPARE(
        f.events.take(),
        listed("StatusChange 4|"                // oscillator
               "StatusChange 0|StatusChange 0|" // start frequency, maximum step
               "StatusChange 0|StatusChange 0|" // channel spacing, IF
               "StatusChange 0|"                // bandwidth
               "StatusChange 0|StatusChange 0|" // option words
               "StatusChange 0|"                // bypass
               "StatusChange 0|StatusChange 0|" // AGC and fine tuning fitted
               "InputLimitingModeChange 3|StatusChange 0|"
               "StatusChange 0|ZNChange 128|" // calibration value; the setting is not known yet
               "StatusChange 0|ZNChange 40|"
               "DUTChange|FreqChange 2 100.05|StatusChange 0"));
    QCOMPARE(f.unit->lastStatus(), 0);
}

void TestFirstConnection::eventsOfAnOldUnit()
{
    UnitFixture f(unitOf(QStringLiteral("1.6"), true, true));
    QVERIFY(f.unit->Initialize());
    QCOMPARE(f.events.take(),
             listed("StatusChange 4|"                // oscillator
                    "StatusChange 0|StatusChange 0|" // start frequency, maximum step
                    "StatusChange 0|StatusChange 0|" // channel spacing, IF
                    "StatusChange 0|"                // no bypass, which needs no asking
                    "DUTChange|FreqChange 0 100|StatusChange 0"));
}

void TestFirstConnection::eventsOfAUnitWithoutAGC()
{
    UnitFixture f(unitOf(QStringLiteral("2.3"), false, false));
    QVERIFY(f.unit->Initialize());
    QCOMPARE(f.events.take(),
             listed("StatusChange 4|StatusChange 0|StatusChange 0|StatusChange 0|StatusChange 0|"
                    "StatusChange 0|StatusChange 0|StatusChange 0|StatusChange 0|StatusChange 0|"
                    "AGCChange False|StatusChange 0|StatusChange 0|"
                    "DUTChange|FreqChange 0 100|StatusChange 0"));
}

// The setting read at connection is also the one that leaving the emulated mode returns to.
void TestFirstConnection::theFineSettingIsKeptAndRemembered()
{
    sim::UnitSettings settings = unitOf(QStringLiteral("2.25"), false, true);
    settings.fineTuning = 40;
    settings.fineCalibration = 90;
    UnitFixture f(settings);
    f.connectUnit();
    QCOMPARE(f.unit->PelltrimCal(), 90);
    f.unit->setZN_calMode(true);
    f.unit->setZN_calMode(false);
    QCOMPARE(f.sent(), listed("*ZNSE 90|*ZNSE 40"));
}

void TestFirstConnection::whatTheObjectKnowsAfterwards()
{
    sim::UnitSettings settings = unitOf(QStringLiteral("3.38"), true, true);
    settings.inputLimitingMode = 4;
    UnitFixture f(settings);
    QVERIFY(!f.unit->DeviceFound());
    QVERIFY(!f.unit->isInitialized());
    f.connectUnit();
    QVERIFY(f.unit->DeviceFound());
    QVERIFY(f.unit->isInitialized());
    // All from members: nothing is asked.
    QCOMPARE(f.unit->FirmwareRevision(), QStringLiteral("KELDO-X REV 3.38"));
    QCOMPARE(f.unit->firmwareNumber(), 3.38);
    QCOMPARE(f.unit->StartFreq(), 100.0);
    QCOMPARE(f.unit->MaxStep(), 400);
    QCOMPARE(f.unit->StopFreq(), 110.0);
    QCOMPARE(f.unit->CenterFreq(), 105.0);
    QCOMPARE(f.unit->IFfreq(), 21);
    QCOMPARE(f.unit->ChanBW(), 25000);
    QCOMPARE(f.unit->AOPT(), 2);
    QCOMPARE(f.unit->COPT(), 2);
    QVERIFY(f.unit->HasBypass());
    QVERIFY(f.unit->HasAGC());
    QVERIFY(f.unit->HasAtten() && !f.unit->HasInputAtten());
    QVERIFY(f.unit->HasPelltrim());
    QCOMPARE(f.unit->PelltrimCal(), 128);
    QCOMPARE(f.sent(), QStringList());
    QCOMPARE(f.events.take(), QStringList());
}

void TestFirstConnection::theLogOfAConnection()
{
    UnitFixture f(unitOf(QStringLiteral("1.6"), false, false));
    f.unit->setAddr(5);
    f.simulated->change([](sim::UnitSettings &unit) { unit.address = 5; });
    f.unit->Initialize();
    QCOMPARE(f.log->lines().mid(0, 12),
             QStringList({QStringLiteral("Keldo-X | initializing "),
                          QStringLiteral("Keldo-X | opened serial port "),
                          QStringLiteral("Keldo-X | sending UNLISTEN "),
                          QStringLiteral("clsKeldoX| sending >UNLISTEN to com port 3"),
                          QStringLiteral("clsKeldoX| received OK"),
                          QStringLiteral("Keldo-X | sending LISTEN 05"),
                          QStringLiteral("clsKeldoX| sending >LISTEN05 to com port 3"),
                          QStringLiteral("clsKeldoX| received LISTENING"),
                          QStringLiteral("clsKeldoX| sending *ID? to com port 3"),
                          QStringLiteral("clsKeldoX| received KELDO-X"),
                          QStringLiteral("clsKeldoX| sending *LOCK? to com port 3"),
                          QStringLiteral("clsKeldoX| received LOCKED")}));
}

void TestFirstConnection::unlockedAtConnection()
{
    UnitFixture f;
    f.simulated->setUnlockedSteps(0, 0);
    f.boxes().expect(QStringLiteral("The device oscillator is unlocked!"), MessageBox::Exclamation);
    QVERIFY(f.unit->Initialize());
    QCOMPARE(f.events.lines.first(), QStringLiteral("StatusChange 3"));
    QVERIFY(f.unit->isInitialized());
}

void TestFirstConnection::aForeignIdentityEndsIt()
{
    UnitFixture f;
    f.simulated->change([](sim::UnitSettings &unit) { unit.identity = "KELDO-X 2"; });
    f.boxes().expect(QStringLiteral("The device did not respond correctly to an ID query."),
                     MessageBox::Exclamation);
    QVERIFY(!f.unit->Initialize());
    QCOMPARE(f.events.take(), QStringList());
    QCOMPARE(f.sent(), listed("*ID?"));
    QVERIFY(!f.unit->DeviceFound());
    QVERIFY(!f.unit->isInitialized());
}

void TestFirstConnection::inLowerCaseItIsAccepted()
{
    for (const char *identity : {"keldo-x", "tovin-r", "TOVIN-R"}) {
        UnitFixture f;
        f.simulated->change([&](sim::UnitSettings &unit) { unit.identity = identity; });
        QVERIFY(f.unit->Initialize());
        QCOMPARE(f.unit->ID(), QString::fromLatin1(identity));
    }
}

KELDOX_TEST(TestFirstConnection)
#include "TestFirstConnection.moc"
