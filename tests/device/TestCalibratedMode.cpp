// The calibrated mode of fine tuning: nothing on the oldest units, emulated on the next, the
// unit's own on the rest.
#include "device/UnitFixture.h"

class TestCalibratedMode : public QObject
{
    Q_OBJECT

private slots:
    void calibratedModeBands_data();
    void calibratedModeBands();
    void theEmulatedModeReturnsToTheLastSetting();
    void modeReplies_data();
    void modeReplies();
    void modeReading_data();
    void modeReading();
    void theEmulatedModeSurvivesAChangeOfChannel();
    void aRefusedReadingAsksForThePasswordOnce();
};

static sim::UnitSettings fineTuningUnit(const std::string &firmware = "3.38")
{
    sim::UnitSettings settings = unitWithFirmware(firmware);
    settings.fineTuning = 40;
    settings.fineCalibration = 90;
    return settings;
}

void TestCalibratedMode::calibratedModeBands_data()
{
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<QString>("commands");
    QTest::addColumn<QString>("events");
    const char emulated[] = "StatusChange 0|ZNChange 90|ZNcalModeChange True|StatusChange 0|"
                            "StatusChange 0|ZNChange 40|ZNcalModeChange False|StatusChange 0";
    const char nothing[] = "ZNcalModeChange False|StatusChange 0|"
                           "ZNcalModeChange False|StatusChange 0";
    const char sent[] = "ZNcalModeChange True|StatusChange 0|"
                        "ZNcalModeChange False|StatusChange 0";
    QTest::newRow("2.0") << "2.0"
                         << "" << nothing;
    QTest::newRow("2.2") << "2.2"
                         << "" << nothing;
    QTest::newRow("2.21") << "2.21"
                          << "*ZNSE 90|*ZNSE 40" << emulated;
    QTest::newRow("2.25") << "2.25"
                          << "*ZNSE 90|*ZNSE 40" << emulated;
    QTest::newRow("2.27") << "2.27"
                          << "*ZNSE 90|*ZNSE 40" << emulated;
    QTest::newRow("2.28") << "2.28"
                          << "*ZNCM 1|*ZNCM 0" << sent;
    QTest::newRow("3.0") << "3.0"
                         << "*ZNCM 1|*ZNCM 0" << sent;
}

// On and off again.
void TestCalibratedMode::calibratedModeBands()
{
    QFETCH(QString, firmware);
    QFETCH(QString, commands);
    QFETCH(QString, events);
    UnitFixture f(fineTuningUnit(firmware.toStdString()));
    f.connectUnit();
    f.unit->setZN_calMode(true);
    f.unit->setZN_calMode(false);
    QCOMPARE(f.events.take().join(QLatin1Char('|')), events);
    QCOMPARE(f.sent().join(QLatin1Char('|')), commands);
}

void TestCalibratedMode::theEmulatedModeReturnsToTheLastSetting()
{
    UnitFixture f(fineTuningUnit("2.25"));
    f.connectUnit();
    f.unit->setPelltrim(60);
    f.unit->setZN_calMode(true);
    QVERIFY(f.unit->ZN_calMode());
    QCOMPARE(f.simulated->fineTuning(), 90);
    f.unit->setZN_calMode(false);
    QVERIFY(!f.unit->ZN_calMode());
    QCOMPARE(f.simulated->fineTuning(), 60);
    QCOMPARE(f.sent(), listed("*ZNSE 60|*ZNSE 90|*ZNSE 60"));
}

void TestCalibratedMode::modeReplies_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<QString>("events");
    QTest::newRow("the character") << "1"
                                   << "ZNcalModeChange True|StatusChange 0";
    QTest::newRow("the first character") << "1 ON"
                                         << "ZNcalModeChange True|StatusChange 0";
    QTest::newRow("the other one") << "0"
                                   << "ZNcalModeChange False|StatusChange 2";
    QTest::newRow("empty") << ""
                           << "ZNcalModeChange False|StatusChange 2";
    QTest::newRow("not understood") << "UNRECOGNIZED COMMAND"
                                    << "ZNcalModeChange False|StatusChange 2";
    QTest::newRow("refused") << "PERMISSION DENIED"
                             << "GetPassword|ZNcalModeChange False|StatusChange 5";
}

// A bad reply has no box here.
void TestCalibratedMode::modeReplies()
{
    QFETCH(QString, reply);
    QFETCH(QString, events);
    UnitFixture f(fineTuningUnit());
    f.connectUnit();
    f.reply("*ZNCM 1", reply.toStdString());
    f.unit->setZN_calMode(true);
    QCOMPARE(f.events.take().join(QLatin1Char('|')), events);
}

void TestCalibratedMode::modeReading_data()
{
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<QString>("reply");
    QTest::addColumn<bool>("on");
    QTest::addColumn<QString>("commands");
    QTest::newRow("on") << "3.0"
                        << "1" << true << "*ZNCM?";
    QTest::newRow("off") << "3.0"
                         << "0" << false << "*ZNCM?";
    QTest::newRow("first character") << "2.28"
                                     << "1 ON" << true << "*ZNCM?";
    QTest::newRow("neither") << "2.28"
                             << "ON" << false << "*ZNCM?";
    QTest::newRow("emulated") << "2.27"
                              << "1" << false << "";
    QTest::newRow("none") << "2.2"
                          << "1" << false << "";
}

void TestCalibratedMode::modeReading()
{
    QFETCH(QString, firmware);
    QFETCH(QString, reply);
    QFETCH(QString, commands);
    UnitFixture f(fineTuningUnit(firmware.toStdString()));
    f.connectUnit();
    f.reply("*ZNCM?", reply.toStdString());
    QTEST(f.unit->ZN_calMode(), "on"); // never a box
    QCOMPARE(f.sent().join(QLatin1Char('|')), commands);
    QCOMPARE(f.events.take().isEmpty(), commands.isEmpty());
}

// Another channel was connected meanwhile, and this one is connected again.
void TestCalibratedMode::theEmulatedModeSurvivesAChangeOfChannel()
{
    UnitFixture f(fineTuningUnit("2.25"));
    f.connectUnit();
    f.unit->setZN_calMode(true);
    f.unit->commPort()->ClosePort();
    f.connectUnit();
    QVERIFY(f.unit->ZN_calMode());
    f.unit->setZN_calMode(false);
    QCOMPARE(f.sent(), listed("*ZNSE 40"));
}

void TestCalibratedMode::aRefusedReadingAsksForThePasswordOnce()
{
    UnitFixture f(fineTuningUnit());
    f.connectUnit();
    f.reply("*ZNCM?", "PERMISSION DENIED");
    f.unit->ZN_calMode();
    const QStringList events = f.events.take();
    QCOMPARE(events.count(QStringLiteral("GetPassword")), 1);
    QVERIFY(events.contains(QStringLiteral("StatusChange 5")));
}

KELDOX_TEST(TestCalibratedMode)
#include "TestCalibratedMode.moc"
