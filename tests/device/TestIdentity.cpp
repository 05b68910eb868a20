// Addressing, the identity query and its test, and how the object lives with run-time errors.
#include "device/UnitFixture.h"

class TestIdentity : public QObject
{
    Q_OBJECT

private slots:
    void listening_data();
    void listening();
    void unlistening();
    void acceptedIdentities_data();
    void acceptedIdentities();
    void identityQuery_data();
    void identityQuery();
    void identityRaisesNoEvent();
    void identityAnswersNothingOnAClosedPort();
    void aRunTimeErrorIsReportedAndTheObjectGoesOn();
};

void TestIdentity::listening_data()
{
    QTest::addColumn<int>("address");
    QTest::addColumn<QString>("command");
    QTest::newRow("one digit") << 7 << ">LISTEN07";
    QTest::newRow("two digits") << 10 << ">LISTEN10";
    QTest::newRow("five") << 5 << ">LISTEN05";
    QTest::newRow("twelve") << 12 << ">LISTEN12";
    QTest::newRow("three digits") << 123 << ">LISTEN123";
    QTest::newRow("zero") << 0 << ">LISTEN00";
}

void TestIdentity::listening()
{
    QFETCH(int, address);
    QFETCH(QString, command);
    UnitFixture f;
    f.open();
    f.unit->LISTEN(static_cast<std::int16_t>(address));
    QCOMPARE(f.log->lines().mid(0, 2),
             QStringList({QStringLiteral("Keldo-X | sending LISTEN ") + command.mid(7),
                          QStringLiteral("clsKeldoX| sending ") + command +
                              QStringLiteral(" to com port 3")}));
    QCOMPARE(f.sent(), QStringList{command});
    // The reply is not judged.
    f.reply(command.toStdString(), "UNRECOGNIZED COMMAND");
    f.unit->LISTEN(static_cast<std::int16_t>(address));
    QCOMPARE(f.events.take(), QStringList());
}

void TestIdentity::unlistening()
{
    UnitFixture f;
    f.open();
    f.reply(">UNLISTEN", "UNRECOGNIZED COMMAND");
    f.unit->UNLISTEN();
    QCOMPARE(f.log->lines().first(), QStringLiteral("Keldo-X | sending UNLISTEN "));
    QCOMPARE(f.sent(), listed(">UNLISTEN"));
    QCOMPARE(f.events.take(), QStringList());
}

void TestIdentity::acceptedIdentities_data()
{
    QTest::addColumn<QString>("identity");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("KELDO-X") << "KELDO-X" << true;
    QTest::newRow("lower case") << "keldo-x" << true;
    QTest::newRow("TOVIN-R") << "TOVIN-R" << true;
    QTest::newRow("mixed case") << "Tovin-r" << true;
    QTest::newRow("with a version") << "KELDO-X 2" << false;
    QTest::newRow("with a prefix") << "A KELDO-X" << false;
    QTest::newRow("leading blank") << " KELDO-X" << false;
    QTest::newRow("empty") << "" << false;
    QTest::newRow("without its hyphen") << "KELDOX" << false;
}

void TestIdentity::acceptedIdentities()
{
    QFETCH(QString, identity);
    QTEST(clsKeldoX::IsAnKeldoXID(identity), "accepted");
}

void TestIdentity::identityQuery_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<QString>("identity");
    QTest::addColumn<bool>("box");
    QTest::newRow("a unit") << "KELDO-X"
                            << "KELDO-X" << false;
    QTest::newRow("in its own case") << "tovin-r"
                                     << "tovin-r" << false;
    QTest::newRow("something else") << "OTHER 1"
                                    << "OTHER 1" << true;
    QTest::newRow("not understood") << "UNRECOGNIZED COMMAND"
                                    << "???" << true;
    QTest::newRow("timed out in the unit") << "TIMED OUT"
                                           << "???" << true;
    QTest::newRow("not exactly that word") << "TIMED OUT 1"
                                           << "TIMED OUT 1" << true;
    QTest::newRow("empty") << ""
                           << "" << true;
}

void TestIdentity::identityQuery()
{
    QFETCH(QString, reply);
    QFETCH(QString, identity);
    QFETCH(bool, box);
    UnitFixture f;
    f.open();
    f.reply("*ID?", reply.toStdString());
    if (box)
        f.boxes().expect(QStringLiteral("The device did not respond correctly to an ID query."),
                         MessageBox::Exclamation);
    QCOMPARE(f.unit->ID(), identity);
    QVERIFY(f.boxes().allShown());
    QCOMPARE(f.sent(), listed("*ID?"));
    f.unit->setDisplayErrors(false); // no box from here on
    QCOMPARE(f.unit->ID(), identity);
}

void TestIdentity::identityRaisesNoEvent()
{
    UnitFixture f;
    f.open();
    f.unit->ID();
    f.unit->setDisplayErrors(false);
    f.reply("*ID?", "OTHER");
    f.unit->ID();
    QCOMPARE(f.events.take(), QStringList());
    QVERIFY(!f.unit->DeviceFound());
}

void TestIdentity::identityAnswersNothingOnAClosedPort()
{
    UnitFixture f;
    f.connectUnit();
    f.unit->commPort()->ClosePort();
    QCOMPARE(f.unit->ID(), QString());
    QCOMPARE(f.line.commands().size(), std::size_t(0));
}

// A window that fails while polling is stopped: the exchange is reported under its own name and
// still goes on.
void TestIdentity::aRunTimeErrorIsReportedAndTheObjectGoesOn()
{
    class FailingWindow : public FakeMainWindow
    {
    public:
        void stopPolling() override { throw std::runtime_error("no window"); }
    };
    UnitFixture f;
    f.open();
    app().mainWindow = std::make_shared<FailingWindow>();
    f.boxes().expectStart(QStringLiteral("Error 51 ("), MessageBox::Exclamation);
    QCOMPARE(f.unit->deviceWrite(QStringLiteral("*ID?")), QStringLiteral("KELDO-X"));
    QVERIFY(f.boxes().texts().first().contains(QLatin1String(" in clsKeldoX.deviceWrite\r\n")));
    QVERIFY(f.log->lines().first().contains(QLatin1String("from <clsKeldoX.deviceWrite>\r\n")));
    app().mainWindow = f.window;
    QCOMPARE(f.unit->MaxStep(), 400);
}

KELDOX_TEST(TestIdentity)
#include "TestIdentity.moc"
