// Fine tuning in clicks and its calibration value.
#include "device/UnitFixture.h"

class TestFineTuning : public QObject
{
    Q_OBJECT

private slots:
    void settingReplies_data();
    void settingReplies();
    void readingReplies_data();
    void readingReplies();
    void valuesAreSentAsTheyStand();
    void theUnitJudgesTheValue();
    void calibrationIsAskedOnceOnly();
    void writingTheCalibration();
    void withoutTheOptionNothingIsSent();
    void aClosedPortAnswersTheMembers();
    void bounds();
};

static sim::UnitSettings fineTuningUnit(const std::string &firmware = "3.38")
{
    sim::UnitSettings settings = unitWithFirmware(firmware);
    settings.fineTuning = 40;
    settings.fineCalibration = 90;
    return settings;
}

void TestFineTuning::settingReplies_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<QString>("events");
    QTest::newRow("echo") << "60 clicks"
                          << "StatusChange 0|ZNChange 60";
    QTest::newRow("the unit took another one") << "59 clicks"
                                               << "StatusChange 0|ZNChange 59";
    QTest::newRow("half to even") << "59.5 clicks"
                                  << "StatusChange 0|ZNChange 60";
    QTest::newRow("without the unit word") << "60"
                                           << "StatusChange 2|ZNChange 40";
    QTest::newRow("one click") << "60 click"
                               << "StatusChange 2|ZNChange 40";
    QTest::newRow("in capitals") << "60 CLICKS"
                                 << "StatusChange 2|ZNChange 40";
    QTest::newRow("out of range") << "NUMBER OUT OF RANGE"
                                  << "StatusChange 2|ZNChange 40";
    QTest::newRow("empty") << ""
                           << "StatusChange 2|ZNChange 40";
    QTest::newRow("refused") << "PERMISSION DENIED"
                             << "GetPassword|StatusChange 5|ZNChange 40";
}

void TestFineTuning::settingReplies()
{
    QFETCH(QString, reply);
    QFETCH(QString, events);
    UnitFixture f(fineTuningUnit());
    f.connectUnit();
    f.reply("*ZNSE 60", reply.toStdString());
    if (events.startsWith(QLatin1String("StatusChange 2")))
        f.boxes().expect(
            QStringLiteral(
                "The device did not respond correctly to an 'Pelltrim setting' command."),
            MessageBox::Exclamation);
    f.unit->setPelltrim(60);
    QVERIFY(f.boxes().allShown());
    QCOMPARE(f.events.take().join(QLatin1Char('|')), events);
    QCOMPARE(f.sent(), listed("*ZNSE 60"));
    f.unit->setDisplayErrors(false);
    f.unit->setPelltrim(60);
}

void TestFineTuning::readingReplies_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<QString>("events");
    QTest::addColumn<int>("setting");
    QTest::newRow("clicks") << "41 clicks"
                            << "StatusChange 0|ZNChange 41" << 41;
    QTest::newRow("close together") << "41clicks"
                                    << "StatusChange 0|ZNChange 41" << 41;
    QTest::newRow("bare number") << "41"
                                 << "StatusChange 2|ZNChange 40" << 40;
    QTest::newRow("more behind") << "41 clicks."
                                 << "StatusChange 2|ZNChange 40" << 40;
    QTest::newRow("empty") << ""
                           << "StatusChange 2|ZNChange 40" << 40;
    QTest::newRow("refused") << "PERMISSION DENIED"
                             << "GetPassword|StatusChange 5|ZNChange 40" << 40;
}

void TestFineTuning::readingReplies()
{
    QFETCH(QString, reply);
    QFETCH(QString, events);
    UnitFixture f(fineTuningUnit());
    f.connectUnit();
    f.reply("*ZNSE?", reply.toStdString());
    if (events.startsWith(QLatin1String("StatusChange 2")))
        f.boxes().expect(
            QStringLiteral("The device did not respond correctly to an 'Pelltrim setting' query."),
            MessageBox::Exclamation);
    QTEST(static_cast<int>(f.unit->Pelltrim()), "setting");
    QCOMPARE(f.events.take().join(QLatin1Char('|')), events);
    QCOMPARE(f.sent(), listed("*ZNSE?"));
}

void TestFineTuning::valuesAreSentAsTheyStand()
{
    UnitFixture f(fineTuningUnit());
    f.connectUnit();
    f.unit->setDisplayErrors(false);
    for (const std::int16_t clicks : {40, 0, 255, 300, -5, 32767})
        f.unit->setPelltrim(clicks);
    f.unit->setPelltrimCal(-7);
    QCOMPARE(f.sent(),
             listed("*ZNSE 40|*ZNSE 0|*ZNSE 255|*ZNSE 300|*ZNSE -5|*ZNSE 32767|!ZNCA -7"));
}

void TestFineTuning::theUnitJudgesTheValue()
{
    UnitFixture f(fineTuningUnit());
    f.connectUnit();
    f.boxes().expect(
        QStringLiteral("The device did not respond correctly to an 'Pelltrim setting' command."));
    f.unit->setPelltrim(300);
    QCOMPARE(f.unit->lastReply(), QStringLiteral("NUMBER OUT OF RANGE"));
    QCOMPARE(f.events.take(), listed("StatusChange 2|ZNChange 40"));
}

void TestFineTuning::calibrationIsAskedOnceOnly()
{
    UnitFixture f(fineTuningUnit());
    f.open();
    f.unit->FirmwareRevision();
    f.sent();
    QCOMPARE(f.unit->PelltrimCal(), 90);
    QCOMPARE(f.sent().filter(QStringLiteral("ZNCA")), listed("*ZNCA?"));
    f.connectUnit();
    QCOMPARE(f.unit->PelltrimCal(), 90);
    QCOMPARE(f.sent(), QStringList());
    QCOMPARE(f.events.take(), QStringList());

    UnitFixture bad(fineTuningUnit());
    bad.reply("*ZNCA?", "90");
    bad.boxes().expect(QStringLiteral(
        "The device did not respond correctly to an 'Pelltrim calibration setting' query."));
    bad.connectUnit();
    QCOMPARE(bad.unit->PelltrimCal(), 128);
}

// The event tells the setting, also when the calibration value was written.
void TestFineTuning::writingTheCalibration()
{
    UnitFixture f(fineTuningUnit());
    f.connectUnit();
    f.unit->setPelltrimCal(95);
    QCOMPARE(f.events.take(), listed("StatusChange 0|ZNChange 40"));
    QCOMPARE(f.sent(), listed("!ZNCA 95"));
    QCOMPARE(f.unit->PelltrimCal(), 95);
    f.reply("!ZNCA 96", "96");
    f.boxes().expect(
        QStringLiteral("The device did not respond correctly to an 'Pelltrim cal' command."),
        MessageBox::Exclamation);
    f.unit->setPelltrimCal(96);
    QCOMPARE(f.unit->PelltrimCal(), 95);
    f.reply("!ZNCA 97", "PERMISSION DENIED");
    f.events.take();
    f.unit->setPelltrimCal(97);
    QCOMPARE(f.events.take(), listed("GetPassword|StatusChange 5|ZNChange 40"));
}

void TestFineTuning::withoutTheOptionNothingIsSent()
{
    sim::UnitSettings settings = fineTuningUnit();
    settings.optionC = 253;
    UnitFixture f(settings);
    QVERIFY(f.unit->Initialize());
    f.unit->Pelltrim();
    f.unit->setPelltrim(60);
    f.unit->setPelltrimCal(60);
    f.unit->PelltrimCal();
    f.unit->ZN_calMode();
    f.unit->setZN_calMode(true);
    QCOMPARE(f.unit->Pelltrim(), 128);
    QCOMPARE(f.unit->PelltrimCal(), 128);
    QVERIFY(!f.unit->ZN_calMode());
    QVERIFY(f.sent().filter(QStringLiteral("ZN")).isEmpty());
    QVERIFY(f.events.take().filter(QStringLiteral("ZN")).isEmpty());
}

void TestFineTuning::aClosedPortAnswersTheMembers()
{
    UnitFixture f(fineTuningUnit());
    f.connectUnit();
    f.unit->setZN_calMode(true);
    f.unit->commPort()->ClosePort();
    f.forget();
    QCOMPARE(f.unit->Pelltrim(), 40);
    QCOMPARE(f.unit->PelltrimCal(), 90);
    QVERIFY(f.unit->ZN_calMode());
    f.unit->setPelltrim(60);
    f.unit->setZN_calMode(false);
    QCOMPARE(f.unit->Pelltrim(), 40);
    QVERIFY(f.unit->ZN_calMode());
    QVERIFY(f.line.commands().empty());
    QCOMPARE(f.events.take(), QStringList());
}

void TestFineTuning::bounds()
{
    QCOMPARE(clsKeldoX::MinPelltrimAbsoluteSetting, 0);
    QCOMPARE(clsKeldoX::MaxPelltrimAbsoluteSetting, 255);
}

KELDOX_TEST(TestFineTuning)
#include "TestFineTuning.moc"
