// Revision, address and lock state of a unit.
#include "device/UnitFixture.h"

class TestUnitState : public QObject
{
    Q_OBJECT

private slots:
    void revision_data();
    void revision();
    void anErrorWordLeavesTheRevisionEmpty_data();
    void anErrorWordLeavesTheRevisionEmpty();
    void address_data();
    void address();
    void addressReading();
    void lockState_data();
    void lockState();
};

void TestUnitState::revision_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<double>("number");
    QTest::newRow("usual") << "KELDO-X REV 3.37" << 3.37;
    QTest::newRow("bare") << "2.25" << 2.25;
    QTest::newRow("short") << "3.3" << 3.3;
    QTest::newRow("blank before it") << "REV 1.6" << 1.6;
    QTest::newRow("four characters and no more") << "REV 13.37" << 3.37;
    QTest::newRow("no number") << "unknown" << 0.0;
    QTest::newRow("empty") << "" << 0.0;
    QTest::newRow("timed out in the unit") << "TIMED OUT" << 0.0;
    QTest::newRow("not understood") << "UNRECOGNIZED COMMAND" << 0.0;
}

// The reply is returned as it came; the error words leave the member empty.
void TestUnitState::revision()
{
    QFETCH(QString, reply);
    UnitFixture f;
    f.open();
    f.reply("*REVISION?", reply.toStdString());
    QCOMPARE(f.unit->FirmwareRevision(), reply);
    QTEST(f.unit->firmwareNumber(), "number");
    QCOMPARE(f.sent().first(), QStringLiteral("*REVISION?"));
    f.unit->commPort()->ClosePort();
    QCOMPARE(f.unit->FirmwareRevision(), QString());
}

void TestUnitState::anErrorWordLeavesTheRevisionEmpty_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<QString>("kept");
    QTest::newRow("timed out in the unit") << "TIMED OUT"
                                           << "";
    QTest::newRow("not understood") << "UNRECOGNIZED COMMAND"
                                    << "";
    QTest::newRow("not exactly that word") << "TIMED OUT 1"
                                           << "TIMED OUT 1";
    QTest::newRow("in small letters") << "timed out"
                                      << "timed out";
}

// A connected unit answers from its member.
void TestUnitState::anErrorWordLeavesTheRevisionEmpty()
{
    QFETCH(QString, reply);
    UnitFixture f;
    f.reply("*REVISION?", reply.toStdString());
    f.connectUnit();
    QTEST(f.unit->FirmwareRevision(), "kept");
    QCOMPARE(f.sent(), QStringList());
}

void TestUnitState::address_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<int>("kept");
    QTest::newRow("echo") << "5" << 5;
    QTest::newRow("another form of the number") << "5.0" << 5;
    QTest::newRow("another number") << "6" << 0;
    QTest::newRow("with a word") << "5 OK" << 0;
    QTest::newRow("refused") << "PERMISSION DENIED" << 0; // no password is asked for
    QTest::newRow("empty") << "" << 0;
}

void TestUnitState::address()
{
    QFETCH(QString, reply);
    QFETCH(int, kept);
    UnitFixture f;
    f.connectUnit();
    f.reply("!ADDR 5", reply.toStdString());
    if (kept == 0)
        f.boxes().expect(
            QStringLiteral("The device did not respond correctly to an address command."),
            MessageBox::Exclamation);
    f.unit->setAddr(5);
    QCOMPARE(static_cast<int>(f.unit->addr()), kept);
    QCOMPARE(f.unit->lastStatus(), kept == 0 ? 2 : 0);
    QCOMPARE(f.events.take(), QStringList());
    QCOMPARE(f.sent(), listed("!ADDR 5"));
    f.unit->setDisplayErrors(false);
    f.unit->setAddr(5);
}

void TestUnitState::addressReading()
{
    UnitFixture f;
    f.unit->setAddr(5); // the port is closed: kept for the connection
    QCOMPARE(f.unit->addr(), 0);
    f.simulated->change([](sim::UnitSettings &unit) { unit.address = 5; });
    f.connectUnit();
    QCOMPARE(f.unit->addr(), 5);
    QCOMPARE(f.sent(), QStringList());
    f.unit->commPort()->ClosePort();
    QCOMPARE(f.unit->addr(), 0);
    // Reading it on an open port before the connection sets it to 0.
    UnitFixture fresh;
    fresh.unit->setAddr(5);
    fresh.open();
    QCOMPARE(fresh.unit->addr(), 0);
    fresh.connectUnit();
    QCOMPARE(fresh.unit->addr(), 0);
}

void TestUnitState::lockState_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<bool>("locked");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("box");
    const char bad[] = "The device did not respond correctly to a 'locked?' query.";
    QTest::newRow("locked") << "LOCKED" << true << 4 << "";
    QTest::newRow("unlocked") << "UNLOCKED" << false << 3 << "The device oscillator is unlocked!";
    QTest::newRow("lower case") << "locked" << false << 2 << bad;
    QTest::newRow("with more") << "UNLOCKED 1" << false << 2 << bad;
    QTest::newRow("empty") << "" << false << 2 << bad;
}

void TestUnitState::lockState()
{
    QFETCH(QString, reply);
    QFETCH(int, status);
    QFETCH(QString, box);
    UnitFixture f;
    f.open();
    f.reply("*LOCK?", reply.toStdString());
    if (!box.isEmpty())
        f.boxes().expect(box, MessageBox::Exclamation);
    QTEST(f.unit->Locked(), "locked");
    QVERIFY(f.boxes().allShown());
    QCOMPARE(f.events.take(), QStringList{QStringLiteral("StatusChange %1").arg(status)});
    QCOMPARE(f.unit->lastStatus(), status);
    QCOMPARE(f.sent(), listed("*LOCK?"));
    f.unit->setDisplayErrors(false);
    f.unit->Locked();
    f.unit->commPort()->ClosePort();
    f.forget();
    QVERIFY(!f.unit->Locked());
    QCOMPARE(f.events.take(), QStringList());
}

KELDOX_TEST(TestUnitState)
#include "TestUnitState.moc"
