// One command line and one reply line: what is sent, logged and kept, how replies are trimmed and
// reduced to numbers, and that a unit without transport or port does nothing at all.
#include "device/UnitFixture.h"

class TestExchange : public QObject
{
    Q_OBJECT

private slots:
    void aNewObject();
    void withoutTransport_data();
    void withoutTransport();
    void aClosedPortSendsNothing();
    void openingThePort();
    void openingSetsTheReplyTime_data();
    void openingSetsTheReplyTime();
    void openingTakesThePausesOut();
    void aPortThatCannotBeOpened();
    void theThreeLogSources();
    void trailingBlanksAreTrimmed_data();
    void trailingBlanksAreTrimmed();
    void theReplyIsTheWholeBuffer();
    void replyWithLineFeedIsReadAsNumber();
    void parseData_data();
    void parseData();
    void pollingStopsBeforeEveryExchange();
};

void TestExchange::aNewObject()
{
    const Fixture fixture;
    clsKeldoX unit;
    QCOMPARE(unit.Connection(), 0);
    QVERIFY(!unit.DeviceFound() && !unit.isInitialized() && !unit.PortIsOpen());
    QCOMPARE(unit.lastReply(), QString());
    QCOMPARE(unit.lastStatus(), 0);
    QCOMPARE(unit.addr(), 0);
    // Every option reads as present until the unit has been asked.
    QVERIFY(unit.HasAGC() && unit.HasAtten() && unit.HasInputAtten() && unit.HasPelltrim());
    QVERIFY(!unit.HasBypass());
    // The port object comes into being when it is touched, and stays.
    const auto port = unit.commPort();
    QVERIFY(port);
    QCOMPARE(unit.commPort(), port);
    unit.setDeviceFound(true);
    QVERIFY(unit.DeviceFound());
}

void TestExchange::withoutTransport_data()
{
    QTest::addColumn<int>("connection");
    QTest::newRow("none") << 0;
    QTest::newRow("network") << 2;
    QTest::newRow("unknown") << -1;
}

void TestExchange::withoutTransport()
{
    QFETCH(int, connection);
    UnitFixture f;
    f.unit->setConnection(connection);
    f.unit->InitThePort(); // neither a box nor a log line
    QCOMPARE(f.log->lines(), QStringList());
    QVERIFY(!f.unit->commPort()->IsOpen());
    QVERIFY(!f.unit->Initialize());
    QCOMPARE(f.log->lines(), QStringList{QStringLiteral("Keldo-X | initializing ")});
    // An open port does not help without the transport.
    QVERIFY(f.unit->commPort()->InitializePort());
    QVERIFY(!f.unit->PortIsOpen());
    f.unit->setDeviceFound(true);
    QCOMPARE(f.unit->deviceWrite(QStringLiteral("*ID?")), QString());
    QCOMPARE(f.unit->StartFreq(), 0.0);
    QCOMPARE(f.unit->CurrentStep(), 0);
    QCOMPARE(f.unit->atten(), 0.0);
    QVERIFY(!f.unit->AGC() && !f.unit->Locked());
    QCOMPARE(f.unit->ID(), QString());
    QCOMPARE(f.unit->Pelltrim(), 128);
    f.unit->setCurrentStep(1);
    f.unit->setAtten(10);
    f.unit->setMaxStep(5);
    f.unit->commPort()->WriteAndWaitForCr(QStringLiteral("MARK\r"));
    QCOMPARE(f.line.commands(), std::vector<std::string>{"MARK"});
    QCOMPARE(f.events.take(), QStringList());
}

void TestExchange::aClosedPortSendsNothing()
{
    UnitFixture f;
    QCOMPARE(f.unit->deviceWrite(QStringLiteral("*ID?")), QString());
    f.unit->LISTEN(5);
    f.unit->UNLISTEN();
    QCOMPARE(f.unit->ID(), QString());
    QCOMPARE(f.log->lines(), QStringList());
    QCOMPARE(f.events.take(), QStringList());
    f.open();
    QCOMPARE(f.sent(), QStringList());
}

void TestExchange::openingThePort()
{
    UnitFixture f;
    f.unit->InitThePort();
    QVERIFY(f.unit->PortIsOpen());
    QCOMPARE(f.log->lines(), QStringList{QStringLiteral("Keldo-X | opened serial port ")});
    QCOMPARE(f.log->flags.first(), qMakePair(true, true));
    QCOMPARE(f.sent(), QStringList());
}

void TestExchange::openingSetsTheReplyTime_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("waitMs");
    QTest::newRow("polling") << 0 << 10000;
    QTest::newRow("by event, as it was") << 1 << 1234;
}

void TestExchange::openingSetsTheReplyTime()
{
    QFETCH(int, mode);
    QFETCH(int, waitMs);
    UnitFixture f;
    const auto port = f.unit->commPort();
    port->setPortMode(mode);
    port->settimeOutMs(1234);
    f.unit->InitThePort();
    f.unit->deviceWrite(QStringLiteral("*ID?"));
    QCOMPARE(port->host().tmrCommTimer2->interval(), waitMs);
}

void TestExchange::openingTakesThePausesOut()
{
    for (const bool between : {true, false}) { // reads, else command and waiting
        UnitFixture f;
        const auto port = f.unit->commPort();
        port->setPollInterval(between ? 150 : 0);
        port->setPollDelay(between ? 0 : 150);
        f.unit->InitThePort();
        QCOMPARE(f.unit->deviceWrite(QStringLiteral("*ID?")), QStringLiteral("KELDO-X"));
        QCOMPARE(port->host().tmrCommTimer->interval(), 0); // the pauses' timer never ran
    }
}

void TestExchange::aPortThatCannotBeOpened()
{
    UnitFixture f;
    f.fixture.unplug(UnitFixture::port);
    f.boxes().expect(QStringLiteral("Check data and power connections to KELDO-X filter then "
                                    "select the 'connect' from the menu."));
    f.boxes().expect(QStringLiteral("The serial port is not open"), MessageBox::Exclamation);
    QVERIFY(!f.unit->Initialize());
    QCOMPARE(f.log->lines(),
             QStringList({QStringLiteral("Keldo-X | initializing "),
                          QStringLiteral("Keldo-X | could not open serial port ")}));
    QCOMPARE(f.events.take(), QStringList());
}

void TestExchange::theThreeLogSources()
{
    UnitFixture f;
    f.open();
    f.unit->deviceWrite(QStringLiteral("*MAX STEP?"));
    QCOMPARE(f.log->lines(),
             QStringList({QStringLiteral("clsKeldoX| sending *MAX STEP? to com port 3"),
                          QStringLiteral("clsKeldoX| received 400")}));
    f.log->events.clear();
    f.reply("*IFRQ?", std::nullopt);
    f.unit->commPort()->settimeOutMs(60);
    QCOMPARE(f.unit->deviceWrite(QStringLiteral("*IFRQ?")), QString());
    QCOMPARE(f.log->lines(), QStringList({QStringLiteral("clsKeldoX| sending *IFRQ? to com port 3"),
                                          QStringLiteral("Keldo-X| timed out ")}));
    f.log->events.clear();
    f.line.setTerminator({});
    QCOMPARE(f.unit->deviceWrite(QStringLiteral("*ID?")), QStringLiteral("KELDO-X"));
    QCOMPARE(f.log->lines().last(), QStringLiteral("Keldo-X| timed out KELDO-X"));
    f.line.setTerminator("\r");
}

void TestExchange::trailingBlanksAreTrimmed_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<QString>("trimmed");
    QTest::newRow("blanks") << QByteArray("12.5 MHz   ") << "12.5 MHz";
    QTest::newRow("line feed and blanks") << QByteArray("12.5 MHz \n \n") << "12.5 MHz";
    QTest::newRow("leading blanks stay") << QByteArray("  12.5 MHz") << "  12.5 MHz";
    QTest::newRow("a leading line feed stays") << QByteArray("\n12.5 MHz") << "\n12.5 MHz";
    QTest::newRow("a tabulator stays") << QByteArray("12.5 MHz\t") << "12.5 MHz\t";
    QTest::newRow("blanks alone") << QByteArray("  \n ") << "";
}

void TestExchange::trailingBlanksAreTrimmed()
{
    QFETCH(QByteArray, reply);
    QFETCH(QString, trimmed);
    UnitFixture f;
    f.open();
    f.reply("*START FREQ?", reply.toStdString());
    QCOMPARE(f.unit->deviceWrite(QStringLiteral("*START FREQ?")), trimmed);
    QCOMPARE(f.unit->lastReply(), trimmed);
}

// Two lines that come in one piece are one reply.
void TestExchange::theReplyIsTheWholeBuffer()
{
    UnitFixture f;
    f.open();
    f.reply("*ID?", "KELDO-X\rAND MORE");
    QCOMPARE(f.unit->deviceWrite(QStringLiteral("*ID?")), QStringLiteral("KELDO-X\rAND MORE"));
    QCOMPARE(f.unit->commPort()->Buffer(), QString());
}

void TestExchange::replyWithLineFeedIsReadAsNumber()
{
    UnitFixture f;
    f.open();
    f.line.setTerminator("\r\n  ");
    f.reply("*START FREQ?", "12.5 MHz");
    QCOMPARE(f.unit->StartFreq(), 12.5);
    QCOMPARE(f.unit->lastReply(), QStringLiteral("12.5 MHz"));
    QCOMPARE(f.unit->StartFreq(), 12.5); // the line feed did not become part of the next reply
    QCOMPARE(f.unit->lastReply(), QStringLiteral("12.5 MHz"));
}

void TestExchange::parseData_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<QString>("number");
    QTest::newRow("unit word") << "12.5 MHz"
                               << "12.5";
    QTest::newRow("negative") << "-3 dB"
                              << "-3";
    QTest::newRow("no number") << "ERROR"
                               << "";
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("plus sign") << "+7"
                               << "+7";
    QTest::newRow("the exponent letter goes") << "1.5e+3"
                                              << "1.5+3";
    QTest::newRow("comma") << "1,234.5"
                           << "1234.5";
    QTest::newRow("in their order") << "a1b-2.c3"
                                    << "1-2.3";
    QTest::newRow("digits of other scripts") << QStringLiteral("\u0663\u00b2") << "";
}

void TestExchange::parseData()
{
    QFETCH(QString, reply);
    QTEST(clsKeldoX::ParseData(reply), "number");
}

void TestExchange::pollingStopsBeforeEveryExchange()
{
    UnitFixture f;
    f.connectUnit();
    const std::vector<Act> exchanges = {
        [](clsKeldoX &u) { u.deviceWrite(QStringLiteral("*ID?")); },
        [](clsKeldoX &u) { u.LISTEN(1); },
        [](clsKeldoX &u) { u.UNLISTEN(); },
        [](clsKeldoX &u) { u.ID(); },
        [](clsKeldoX &u) { u.ChannelSpacing(); },
        [](clsKeldoX &u) { u.CurrentStep(); },
        [](clsKeldoX &u) { u.setCurrentStep(1); },
        [](clsKeldoX &u) { u.setCurrentFreq(100); },
        [](clsKeldoX &u) { u.preScaler(); },
        [](clsKeldoX &u) { u.setMaxStep(400); },
        [](clsKeldoX &u) { u.AGC(); },
        [](clsKeldoX &u) { u.setAGC(false); },
        [](clsKeldoX &u) { u.atten(); },
        [](clsKeldoX &u) { u.setAtten(1); },
        [](clsKeldoX &u) { u.MaxAtten(); },
        [](clsKeldoX &u) { u.attenStep(); },
        [](clsKeldoX &u) { u.InputAtten(); },
        [](clsKeldoX &u) { u.setInputAtten(1); },
        [](clsKeldoX &u) { u.setAttenOffset(1); },
        [](clsKeldoX &u) { u.Bypass(); },
        [](clsKeldoX &u) { u.setBypass(true); },
        [](clsKeldoX &u) { u.InputLimitingMode(); },
        [](clsKeldoX &u) { u.setInputLimitingMode(1); },
        [](clsKeldoX &u) { u.Locked(); },
        [](clsKeldoX &u) { u.Pelltrim(); },
        [](clsKeldoX &u) { u.setPelltrim(1); },
        [](clsKeldoX &u) { u.setZN_calMode(true); },
    };
    for (std::size_t i = 0; i < exchanges.size(); ++i) {
        f.window->pollingStops = 0;
        exchanges[i](*f.unit);
        QVERIFY2(f.window->pollingStops > 0, qPrintable(QString::number(i)));
        QVERIFY2(!f.line.commands().empty(), qPrintable(QString::number(i)));
        f.line.clearCommands();
    }
    // Nobody here switches it on again.
    QVERIFY(!f.window->calls->contains(QStringLiteral("main.restartPolling")));
}

KELDOX_TEST(TestExchange)
#include "TestExchange.moc"
