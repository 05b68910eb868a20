// Reading attenuation, its limits and step, input attenuation and the AGC offset.
#include "device/UnitFixture.h"

class TestLevelReadings : public QObject
{
    Q_OBJECT

private slots:
    void attenuationReading_data();
    void attenuationReading();
    void maximumOfOldUnits_data();
    void maximumOfOldUnits();
    void maximumOfNewUnits_data();
    void maximumOfNewUnits();
    void stepSize_data();
    void stepSize();
    void inputAttenuationReading();
    void offsetReading();
    void offsetOfOldUnits();
};

void TestLevelReadings::attenuationReading_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<double>("value");
    QTest::addColumn<int>("status");
    QTest::newRow("number and unit") << "12.5 dB" << 12.5 << 0;
    QTest::newRow("close together") << "7dB" << 7.0 << 0;
    QTest::newRow("upper case") << "12.5 DB" << 3.0 << 2;
    QTest::newRow("AGC is on") << "12.5" << 3.0 << 2;
    QTest::newRow("empty") << "" << 3.0 << 2;
}

// This reading tells no status.
void TestLevelReadings::attenuationReading()
{
    QFETCH(QString, reply);
    QFETCH(double, value);
    QFETCH(int, status);
    UnitFixture f;
    f.connectUnit();
    f.unit->setAtten(3);
    f.forget();
    f.reply("*ATTN?", reply.toStdString());
    if (status == 2)
        f.boxes().expect(
            QStringLiteral("The device did not respond correctly to an 'attenuation' query.\r\n"
                           "NOTE - This is normal if AGC is on."),
            MessageBox::Exclamation);
    QCOMPARE(f.unit->atten(), value);
    QCOMPARE(f.events.take(), QStringList{QStringLiteral("AttenChange ") + text(value)});
    QCOMPARE(f.unit->lastStatus(), status);
    QCOMPARE(f.sent(), listed("*ATTN?"));
    f.unit->setDisplayErrors(false);
    f.unit->atten();
}

void TestLevelReadings::maximumOfOldUnits_data()
{
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<int>("word");
    QTest::addColumn<int>("maximum");
    QTest::newRow("both bits") << "2.3" << 3 << 50;
    QTest::newRow("50 dB") << "2.3" << 2 << 50;
    QTest::newRow("15 dB") << "2.3" << 1 << 15;
    QTest::newRow("15 dB and others") << "2.0" << 29 << 15;
    QTest::newRow("none") << "2.3" << 4 << 0;
    QTest::newRow("no option words") << "1.9" << 3 << 0;
}

void TestLevelReadings::maximumOfOldUnits()
{
    QFETCH(QString, firmware);
    QFETCH(int, word);
    sim::UnitSettings settings = unitWithFirmware(firmware.toStdString());
    settings.optionA = word;
    UnitFixture f(settings);
    f.connectUnit();
    QTEST(static_cast<int>(f.unit->MaxAtten()), "maximum");
    QCOMPARE(f.sent(), QStringList());
}

void TestLevelReadings::maximumOfNewUnits_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<int>("maximum");
    QTest::addColumn<int>("status");
    QTest::newRow("number") << "31" << 31 << 0;
    QTest::newRow("half to even") << "31.5" << 32 << 0;
    QTest::newRow("with unit") << "31 dB" << 31 << 0;
    QTest::newRow("no number is 0") << "x" << 0 << 0;
    QTest::newRow("only at the start") << "max 31" << 0 << 0;
    QTest::newRow("with its exponent") << "1e1" << 10 << 0;
    QTest::newRow("not understood") << "UNRECOGNIZED COMMAND" << 50 << 2;
    QTest::newRow("not understood, with more") << "UNRECOGNIZED COMMAND 1" << 50 << 2;
}

void TestLevelReadings::maximumOfNewUnits()
{
    QFETCH(QString, reply);
    QFETCH(int, maximum);
    QFETCH(int, status);
    UnitFixture f(unitWithFirmware("2.31"));
    f.connectUnit();
    QCOMPARE(f.unit->MaxAtten(), 50);
    f.forget();
    f.reply("*MXAT?", reply.toStdString());
    if (status == 2)
        f.boxes().expect(
            QStringLiteral("The device did not respond correctly to a 'max attenuation' query."),
            MessageBox::Exclamation);
    QCOMPARE(f.unit->MaxAtten(), maximum);
    QCOMPARE(f.events.take(), QStringList{QStringLiteral("StatusChange %1").arg(status)});
    QCOMPARE(f.sent(), listed("*MXAT?"));
    f.unit->setDisplayErrors(false);
    QCOMPARE(f.unit->MaxAtten(), maximum); // asked again
    QCOMPARE(f.sent(), listed("*MXAT?"));
}

void TestLevelReadings::stepSize_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<double>("step");
    QTest::newRow("number") << "0.5 dB steps" << 0.5;
    QTest::newRow("another case") << "0.5 DB steps" << 0.0;
    QTest::newRow("without its word") << "0.5 dB" << 0.0;
    QTest::newRow("not understood") << "UNRECOGNIZED COMMAND" << 0.0;
    QTest::newRow("empty") << "" << 0.0;
}

void TestLevelReadings::stepSize()
{
    QFETCH(QString, reply);
    UnitFixture f;
    f.connectUnit();
    QCOMPARE(f.unit->attenStep(), 0.5);
    f.forget();
    f.reply("*ATT STEP? ", reply.toStdString());
    QTEST(f.unit->attenStep(), "step"); // never a box
    QCOMPARE(f.events.take(), listed("StatusChange 0"));
    QCOMPARE(f.sent(), QStringList{QStringLiteral("*ATT STEP? ")});
}

void TestLevelReadings::inputAttenuationReading()
{
    UnitFixture f;
    f.connectUnit();
    f.reply("INPUT ATTN?", "4.5 dB");
    QCOMPARE(f.unit->InputAtten(), 4.5);
    f.reply("INPUT ATTN?", "9 DB");
    f.boxes().expect(
        QStringLiteral("The device did not respond correctly to an 'input attenuation' query."),
        MessageBox::Exclamation);
    QCOMPARE(f.unit->InputAtten(), 4.5);
    QCOMPARE(f.unit->lastStatus(), 2);
    QCOMPARE(f.events.take(), QStringList());
    QCOMPARE(f.sent(), listed("INPUT ATTN?|INPUT ATTN?"));
}

// The status first, the offset second.
void TestLevelReadings::offsetReading()
{
    UnitFixture f(unitWithFirmware("2.0"));
    f.connectUnit();
    f.reply("*AOFF?", "-4.5 dB");
    QCOMPARE(f.unit->attenOffset(), -4.5);
    QCOMPARE(f.events.take(), listed("StatusChange 0|AGCOffsetChange -4.5"));
    f.reply("*AOFF?", "2");
    f.boxes().expect(
        QStringLiteral("The device did not respond correctly to an 'attenuation offset' query."),
        MessageBox::Exclamation);
    QCOMPARE(f.unit->attenOffset(), -4.5);
    QCOMPARE(f.events.take(), listed("StatusChange 2|AGCOffsetChange -4.5"));
    QCOMPARE(f.sent(), listed("*AOFF?|*AOFF?"));
    // The echo is not compared.
    for (const char *reply : {"7", "", "UNRECOGNIZED COMMAND"}) {
        f.reply("!AOFF 2", reply);
        f.unit->setAttenOffset(2);
        QCOMPARE(f.events.take(), listed("StatusChange 0|AGCOffsetChange 2"));
    }
    f.reply("!AOFF 6", "PERMISSION DENIED");
    f.unit->setAttenOffset(6);
    QCOMPARE(f.events.take(), listed("GetPassword|StatusChange 5|AGCOffsetChange 2"));
    QCOMPARE(f.unit->lastStatus(), 5);
}

void TestLevelReadings::offsetOfOldUnits()
{
    UnitFixture f(unitWithFirmware("1.99"));
    f.connectUnit();
    QCOMPARE(f.unit->attenOffset(), 0.0);
    f.unit->setAttenOffset(3);
    QCOMPARE(f.sent(), QStringList());
    QCOMPARE(f.events.take(), QStringList());
}

KELDOX_TEST(TestLevelReadings)
#include "TestLevelReadings.moc"
