// AGC and bypass: replies of one character, and the firmware that may be asked.
#include "device/UnitFixture.h"

class TestLevelSwitches : public QObject
{
    Q_OBJECT

private slots:
    void switching_data();
    void switching();
    void switchingOff();
    void AGCReading_data();
    void AGCReading();
    void AGCOfOldUnits_data();
    void AGCOfOldUnits();
    void whatHasNoFirmwareGate_data();
    void whatHasNoFirmwareGate();
    void bypassReading_data();
    void bypassReading();
    void aClosedPortAnswersNothing();
};

struct Switch
{
    const char *command; // for on
    const char *event;
    const char *message;
    Act switchOn;
    Act switchOff;
};
Q_DECLARE_METATYPE(Switch)

static const Switch agc = {
    "*AGC_ 1", "AGCChange", "The device did not respond correctly to an AGC command.",
    [](clsKeldoX &u) { u.setAGC(true); }, [](clsKeldoX &u) { u.setAGC(false); }};
static const Switch bypass = {
    "*ACT_ 1", "BypassChange", "device did not respond correctly to BYP command !",
    [](clsKeldoX &u) { u.setBypass(true); }, [](clsKeldoX &u) { u.setBypass(false); }};

void TestLevelSwitches::switching_data()
{
    QTest::addColumn<Switch>("what");
    QTest::addColumn<QString>("reply");
    QTest::addColumn<QString>("state");
    QTest::addColumn<int>("status");
    for (const Switch &what : {agc, bypass}) {
        const auto row = [&](const char *name, const char *reply, const char *state, int status) {
            QTest::addRow("%s: %s", what.event, name) << what << reply << state << status;
        };
        row("the character", "1", "True", 0);
        row("the first character", "1 ON", "True", 0);
        row("the other one", "0", "False", 2);
        row("empty", "", "False", 2);
        row("a blank before it", " 1", "False", 2);
        row("refused", "PERMISSION DENIED", "False", 5);
        row("not understood", "UNRECOGNIZED COMMAND", "False", 2);
    }
}

void TestLevelSwitches::switching()
{
    QFETCH(Switch, what);
    QFETCH(QString, reply);
    QFETCH(QString, state);
    QFETCH(int, status);
    UnitFixture f;
    f.connectUnit();
    f.reply(what.command, reply.toStdString());
    if (status == 2)
        f.boxes().expect(QString::fromLatin1(what.message), MessageBox::Exclamation);
    what.switchOn(*f.unit);
    QVERIFY(f.boxes().allShown());
    QStringList events = {QString::fromLatin1(what.event) + QLatin1Char(' ') + state,
                          QStringLiteral("StatusChange %1").arg(status)};
    if (status == 5)
        events.prepend(QStringLiteral("GetPassword"));
    QCOMPARE(f.events.take(), events);
    QCOMPARE(f.unit->lastStatus(), status);
    QCOMPARE(f.sent(), QStringList{QString::fromLatin1(what.command)});
    f.unit->setDisplayErrors(false); // no box from here on
    what.switchOn(*f.unit);
    QCOMPARE(f.events.take(), events);
}

// A refusal tells the windows what the unit really has.
void TestLevelSwitches::switchingOff()
{
    for (const Switch &what : {agc, bypass}) {
        UnitFixture f;
        f.connectUnit();
        const QString off = QString::fromLatin1(what.command).chopped(1) + QLatin1Char('0');
        const QString event = QString::fromLatin1(what.event);
        what.switchOn(*f.unit);
        f.forget();
        f.reply(off.toStdString(), "PERMISSION DENIED");
        what.switchOff(*f.unit);
        QCOMPARE(f.events.take(),
                 QStringList({QStringLiteral("GetPassword"), event + QStringLiteral(" True"),
                              QStringLiteral("StatusChange 5")}));
        f.script->clear();
        what.switchOff(*f.unit);
        QCOMPARE(f.events.take(),
                 QStringList({event + QStringLiteral(" False"), QStringLiteral("StatusChange 0")}));
        QCOMPARE(f.sent(), QStringList({off, off}));
    }
}

void TestLevelSwitches::AGCReading_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<bool>("before");
    QTest::addColumn<bool>("on");
    QTest::addColumn<int>("status");
    QTest::newRow("on") << "1" << false << true << 0;
    QTest::newRow("off") << "0" << true << false << 0;
    QTest::newRow("first character") << "1 ON" << false << true << 0;
    QTest::newRow("another number") << "2" << true << true << 2;
    QTest::newRow("a word") << "ON" << false << false << 2;
    QTest::newRow("empty") << "" << true << true << 2;
}

void TestLevelSwitches::AGCReading()
{
    QFETCH(QString, reply);
    QFETCH(bool, before);
    QFETCH(bool, on);
    QFETCH(int, status);
    UnitFixture f;
    f.connectUnit();
    f.unit->setAGC(before);
    f.forget();
    f.reply("*AGC_?", reply.toStdString());
    if (status == 2)
        f.boxes().expect(QStringLiteral("The device did not respond correctly to an AGC query."),
                         MessageBox::Exclamation);
    QCOMPARE(f.unit->AGC(), on);
    QCOMPARE(f.events.take(), QStringList({QStringLiteral("AGCChange ") + text(on),
                                           QStringLiteral("StatusChange %1").arg(status)}));
    QCOMPARE(f.sent(), listed("*AGC_?"));
    f.unit->setDisplayErrors(false);
    f.unit->AGC();
}

void TestLevelSwitches::AGCOfOldUnits_data()
{
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<QString>("sent");
    QTest::newRow("1.5") << "1.5"
                         << "";
    QTest::newRow("1.6") << "1.6"
                         << "";
    QTest::newRow("1.61") << "1.61"
                          << "*AGC_ 1|*AGC_ 0";
}

void TestLevelSwitches::AGCOfOldUnits()
{
    QFETCH(QString, firmware);
    QFETCH(QString, sent);
    UnitFixture f(unitWithFirmware(firmware.toStdString()));
    f.connectUnit();
    f.unit->setDisplayErrors(false);
    f.unit->setAGC(true);
    f.unit->setAGC(false);
    QCOMPARE(f.sent().join(QLatin1Char('|')), sent);
    QCOMPARE(f.events.take().isEmpty(), sent.isEmpty());
}

void TestLevelSwitches::whatHasNoFirmwareGate_data()
{
    QTest::addColumn<Act>("act");
    QTest::addColumn<QString>("command");
    const auto row = [](const char *command, const Act &act) {
        QTest::newRow(command) << act << QString::fromLatin1(command);
    };
    row("*AGC_?", [](clsKeldoX &u) { u.AGC(); });
    row("*ATTN?", [](clsKeldoX &u) { u.atten(); });
    row("*ATTN 3", [](clsKeldoX &u) { u.setAtten(3); });
    row("*ATT STEP? ", [](clsKeldoX &u) { u.attenStep(); });
    row("INPUT ATTN?", [](clsKeldoX &u) { u.InputAtten(); });
    row("INPUT ATTN 3", [](clsKeldoX &u) { u.setInputAtten(3); });
    row("*ACT_?", [](clsKeldoX &u) { u.Bypass(); });
    row("*ACT_ 1", [](clsKeldoX &u) { u.setBypass(true); });
}

void TestLevelSwitches::whatHasNoFirmwareGate()
{
    QFETCH(Act, act);
    QFETCH(QString, command);
    for (const char *firmware : {"0.1", "1.6", "none"}) {
        UnitFixture f(unitWithFirmware(firmware));
        f.connectUnit();
        f.unit->setDisplayErrors(false);
        act(*f.unit);
        QCOMPARE(f.sent(), QStringList{command});
    }
}

void TestLevelSwitches::bypassReading_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<bool>("on");
    QTest::addColumn<int>("status");
    QTest::newRow("on") << "1" << true << 0;
    QTest::newRow("off") << "0" << false << 0;
    QTest::newRow("the whole reply counts") << "1 ON" << false << 2;
    QTest::newRow("another number") << "01" << false << 2;
    QTest::newRow("empty") << "" << false << 2;
}

// Never a box.
void TestLevelSwitches::bypassReading()
{
    QFETCH(QString, reply);
    QFETCH(bool, on);
    QFETCH(int, status);
    UnitFixture f;
    f.connectUnit();
    f.reply("*ACT_?", reply.toStdString());
    QCOMPARE(f.unit->Bypass(), on);
    QCOMPARE(f.events.take(), QStringList({QStringLiteral("BypassChange ") + text(on),
                                           QStringLiteral("StatusChange %1").arg(status)}));
    QCOMPARE(f.unit->lastStatus(), status);
    QCOMPARE(f.sent(), listed("*ACT_?"));
}

void TestLevelSwitches::aClosedPortAnswersNothing()
{
    UnitFixture f;
    f.connectUnit();
    f.unit->setAGC(true);
    f.unit->setBypass(true);
    f.unit->commPort()->ClosePort();
    f.forget();
    QVERIFY(!f.unit->AGC());
    QVERIFY(!f.unit->Bypass());
    QVERIFY(!f.unit->HasAdjustableInputLimiting());
    QCOMPARE(f.unit->InputLimitingMode(), 0);
    f.unit->setAGC(false);
    f.unit->setBypass(false);
    f.unit->setInputLimitingMode(2);
    QCOMPARE(f.events.take(), QStringList());
    QVERIFY(f.line.commands().empty());
}

KELDOX_TEST(TestLevelSwitches)
#include "TestLevelSwitches.moc"
