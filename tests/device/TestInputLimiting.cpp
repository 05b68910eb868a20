// The input limiting mode: its two messages, its reading, and the firmware that has it.
#include "device/UnitFixture.h"

class TestInputLimiting : public QObject
{
    Q_OBJECT

private slots:
    void limitingModeReplies_data();
    void limitingModeReplies();
    void limitingModeReading_data();
    void limitingModeReading();
    void limitingModeNeedsNewFirmware();
};

void TestInputLimiting::limitingModeReplies_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<QString>("events");
    QTest::addColumn<QString>("box");
    const char good[] = "InputLimitingModeChange 3|StatusChange 0";
    const char bad[] = "InputLimitingModeChange 1|StatusChange 2";
    const char refused[] = "GetPassword|InputLimitingModeChange 1|StatusChange 5";
    const char otherNumber[] =
        "The device did not respond correctly to an input limiting mode command.";
    // Two messages that differ by the full stop alone, on purpose.
    const char noNumber[] =
        "The device did not respond correctly to an input limiting mode command";
    QTest::newRow("echo") << "3" << good << "";
    QTest::newRow("another form of the number") << "3.0" << good << "";
    QTest::newRow("another number") << "2" << bad << otherNumber;
    QTest::newRow("not even a whole one") << "3.4" << bad << otherNumber;
    QTest::newRow("with a word") << "3 OK" << bad << noNumber;
    QTest::newRow("empty") << "" << bad << noNumber;
    QTest::newRow("refused") << "PERMISSION DENIED" << refused << "";
}

void TestInputLimiting::limitingModeReplies()
{
    QFETCH(QString, reply);
    QFETCH(QString, events);
    QFETCH(QString, box);
    UnitFixture f;
    f.connectUnit();
    f.reply("InputLimitMode 3", reply.toStdString());
    if (!box.isEmpty())
        f.boxes().expect(box, MessageBox::Exclamation);
    f.unit->setInputLimitingMode(3);
    QVERIFY(f.boxes().allShown());
    QCOMPARE(f.events.take().join(QLatin1Char('|')), events);
    QCOMPARE(f.sent(), listed("InputLimitMode 3"));
    f.unit->setDisplayErrors(false);
    f.unit->setInputLimitingMode(3);
}

void TestInputLimiting::limitingModeReading_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<QString>("events");
    QTest::addColumn<int>("mode");
    QTest::newRow("number") << "3"
                            << "InputLimitingModeChange 3|StatusChange 0" << 3;
    QTest::newRow("half to even") << "2.5"
                                  << "InputLimitingModeChange 2|StatusChange 0" << 2;
    // A bad reply tells no mode.
    QTest::newRow("with a word") << "3 OK"
                                 << "StatusChange 2" << 1;
    QTest::newRow("empty") << ""
                           << "StatusChange 2" << 1;
}

void TestInputLimiting::limitingModeReading()
{
    QFETCH(QString, reply);
    QFETCH(QString, events);
    UnitFixture f;
    f.connectUnit();
    f.reply("InputLimitMode?", reply.toStdString());
    if (events.endsWith(QLatin1Char('2')))
        f.boxes().expect(QStringLiteral("The device did not respond correctly to an input limiting "
                                        "mode command query."),
                         MessageBox::Exclamation);
    QTEST(static_cast<int>(f.unit->InputLimitingMode()), "mode");
    QCOMPARE(f.events.take().join(QLatin1Char('|')), events);
    QCOMPARE(f.sent(), listed("InputLimitMode?"));
    f.unit->setDisplayErrors(false);
    f.unit->InputLimitingMode();
}

void TestInputLimiting::limitingModeNeedsNewFirmware()
{
    UnitFixture f(unitWithFirmware("3.36"));
    f.connectUnit();
    QVERIFY(!f.unit->HasAdjustableInputLimiting());
    QCOMPARE(f.unit->InputLimitingMode(), 0);
    f.unit->setInputLimitingMode(3);
    QCOMPARE(f.sent(), QStringList());
    QCOMPARE(f.events.take(), QStringList());

    UnitFixture newer(unitWithFirmware("3.37"));
    newer.connectUnit();
    QVERIFY(newer.unit->HasAdjustableInputLimiting());
    newer.unit->setInputLimitingMode(3);
    QCOMPARE(newer.unit->InputLimitingMode(), 3);
    QCOMPARE(newer.sent(), listed("InputLimitMode 3|InputLimitMode?"));
}

KELDOX_TEST(TestInputLimiting)
#include "TestInputLimiting.moc"
