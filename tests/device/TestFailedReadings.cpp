// What could not be read of a unit is not shown as if it were known: a plan with a gap, switches
// without a good reading, a unit whose identity was not accepted.
#include "device/UnitFixture.h"

class TestFailedReadings : public QObject
{
    Q_OBJECT

private slots:
    void aPlanWithAGapHasNoEnd_data();
    void aPlanWithAGapHasNoEnd();
    void aStartThatIsReadLaterCanBeTunedFrom();
    void afterARefusedIdentityTheNextUnitIsReadAnew();
    void aSwitchThatCouldNotBeReadIsUnconfirmed_data();
    void aSwitchThatCouldNotBeReadIsUnconfirmed();
    void aRefusedEmulatedModeIsNotKept();
    void doubtsOfBeforeAreForgottenWithTheConnection();
    void silencesAreCounted();
};

void TestFailedReadings::aPlanWithAGapHasNoEnd_data()
{
    QTest::addColumn<QString>("command");
    for (const char *command : {"*START FREQ?", "*MAX STEP?", "*CHAN SPACE?"})
        QTest::newRow(command) << QString::fromLatin1(command);
}

void TestFailedReadings::aPlanWithAGapHasNoEnd()
{
    QFETCH(const QString, command);
    UnitFixture f;
    f.reply(command.toStdString(), "?");
    f.unit->setDisplayErrors(false);
    f.connectUnit();
    QCOMPARE(f.unit->StopFreq(), 0.0);
    QCOMPARE(f.unit->CenterFreq(), 0.0);
    // 6.5 MHz would lie between a start of 0 and an end of 10.
    f.sent();
    f.line.clearCommands();
    f.boxes().expectStart(QStringLiteral("Cannot set the device to a frequency outside"));
    f.unit->setCurrentFreq(6.5);
    QVERIFY(f.sent().filter(QStringLiteral("*STEP ")).isEmpty());
}

void TestFailedReadings::aStartThatIsReadLaterCanBeTunedFrom()
{
    UnitFixture f;
    f.reply("*START FREQ?", "?");
    f.unit->setDisplayErrors(false);
    f.connectUnit();
    f.reply("*START FREQ?", "100 MHz");
    f.unit->currentFreq(); // what reading the unit again does
    f.unit->setCurrentFreq(105);
    QCOMPARE(f.sent().filter(QStringLiteral("*STEP ")), QStringList{QStringLiteral("*STEP 200")});
}

void TestFailedReadings::afterARefusedIdentityTheNextUnitIsReadAnew()
{
    UnitFixture f;
    f.connectUnit();
    QCOMPARE(f.unit->StartFreq(), 100.0);
    f.reply("*ID?", "SOMETHING ELSE");
    f.boxes().expect(QStringLiteral("The device did not respond correctly to an ID query."), 48);
    QVERIFY(!f.unit->Initialize());
    QVERIFY(!f.unit->isInitialized());
    QVERIFY(!f.unit->DeviceFound());
    f.reply("*ID?", "KELDO-X");
    f.reply("*START FREQ?", "140 MHz");
    f.forget();
    QVERIFY(f.unit->Initialize());
    QCOMPARE(f.unit->StartFreq(), 140.0);
}

void TestFailedReadings::aSwitchThatCouldNotBeReadIsUnconfirmed_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<UnitValue>("value");
    QTest::addColumn<Act>("read");
    QTest::newRow("AGC") << QStringLiteral("*AGC_?") << UnitValue::AGC
                         << Act([](clsKeldoX &unit) { unit.AGC(); });
    QTest::newRow("bypass") << QStringLiteral("*ACT_?") << UnitValue::Bypass
                            << Act([](clsKeldoX &unit) { unit.Bypass(); });
    QTest::newRow("calibrated mode") << QStringLiteral("*ZNCM?") << UnitValue::CalMode
                                     << Act([](clsKeldoX &unit) { unit.ZN_calMode(); });
}

void TestFailedReadings::aSwitchThatCouldNotBeReadIsUnconfirmed()
{
    QFETCH(const QString, command);
    QFETCH(const UnitValue, value);
    QFETCH(const Act, read);
    UnitFixture f;
    f.connectUnit();
    f.unit->setDisplayErrors(false);
    const QSignalSpy told(f.unit.get(), &clsKeldoX::ConfirmationChange);
    f.reply(command.toStdString(), "garbled");
    read(*f.unit);
    read(*f.unit);
    QCOMPARE(told.size(), 1);
    QCOMPARE(told.at(0), (QVariantList{QVariant::fromValue(value), false}));
    QVERIFY(f.unit->isUnconfirmed(value));
    f.reply(command.toStdString(), "0");
    read(*f.unit);
    QCOMPARE(told.size(), 2);
    QVERIFY(!f.unit->isUnconfirmed(value));
}

void TestFailedReadings::aRefusedEmulatedModeIsNotKept()
{
    sim::UnitSettings settings = unitWithFirmware("2.25");
    settings.fineTuning = 40;
    settings.fineCalibration = 90;
    UnitFixture f(settings);
    f.connectUnit();
    f.reply("*ZNSE 90", "PERMISSION DENIED");
    f.unit->setZN_calMode(true);
    QVERIFY(f.events.take().contains(QStringLiteral("ZNcalModeChange False")));
    QCOMPARE(int(f.unit->Pelltrim()), 40);
}

void TestFailedReadings::doubtsOfBeforeAreForgottenWithTheConnection()
{
    UnitFixture f;
    f.connectUnit();
    f.unit->setDisplayErrors(false);
    f.reply("*ATTN 5", "garbled");
    f.unit->setAtten(5);
    QVERIFY(f.unit->isUnconfirmed(UnitValue::Attenuation));
    f.unit->commPort()->ClosePort();
    f.reply("*ATTN?", "garbled");
    f.connectUnit();
    const QSignalSpy told(f.unit.get(), &clsKeldoX::ConfirmationChange);
    f.unit->setAtten(5);
    QCOMPARE(told.size(), 1); // a new doubt is told of
}

void TestFailedReadings::silencesAreCounted()
{
    UnitFixture f;
    f.connectUnit(40);
    f.unit->setDisplayErrors(false);
    const int before = f.unit->silences();
    f.unit->AGC();
    QCOMPARE(f.unit->silences(), before);
    QVERIFY(!f.unit->fellSilent());
    f.line.setFault(sim::Fault::Silence, {}, 1);
    f.unit->AGC();
    QCOMPARE(f.unit->silences(), before + 1);
    QVERIFY(f.unit->fellSilent());
    f.unit->AGC();
    QVERIFY(!f.unit->fellSilent());
    // A bad reply that came is none, and a silence is one where it is no error.
    f.reply("*AGC_?", "");
    f.unit->AGC();
    QCOMPARE(f.unit->lastStatus(), std::int32_t(clsKeldoX::BadReply));
    QVERIFY(!f.unit->fellSilent());
    f.line.setFault(sim::Fault::Silence, {}, 1);
    QCOMPARE(f.unit->attenStep(), 0.0);
    QVERIFY(f.unit->fellSilent());
    QCOMPARE(f.unit->silences(), before + 2);
}

KELDOX_TEST(TestFailedReadings)
#include "TestFailedReadings.moc"
