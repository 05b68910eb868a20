// What handlers of the unit's events may do: ask the unit in the middle of a exchange, which
// still raises its own status in the end.
#include "device/UnitFixture.h"

class TestHandlers : public QObject
{
    Q_OBJECT

private slots:
    void aQueryInAHandlerKeepsTheOuterStatus_data();
    void aQueryInAHandlerKeepsTheOuterStatus();
    void aQueryBetweenLockedAndGood();
    void thePasswordIsSentInsideTheRefusal();
    void theModeMayBeChangedByItsHandler();
    void oneBoxForEachConnection();
    void oneBoxEachAfterTheConnection();
    void statusAndReplyAreKept();
};

void TestHandlers::aQueryInAHandlerKeepsTheOuterStatus_data()
{
    QTest::addColumn<Act>("act");
    QTest::addColumn<QString>("events");
    const auto row = [](const char *events, const Act &act) {
        QTest::newRow(events) << act << QString::fromLatin1(events);
    };
    row("AGCChange False|StatusChange 2|StatusChange 0", [](clsKeldoX &u) { u.AGC(); });
    row("AGCChange True|StatusChange 2|StatusChange 0", [](clsKeldoX &u) { u.setAGC(true); });
    row("AttenChange 5|StatusChange 2|StatusChange 0", [](clsKeldoX &u) { u.setAtten(5); });
    row("InputAttenChange 5|StatusChange 2|StatusChange 0",
        [](clsKeldoX &u) { u.setInputAtten(5); });
    row("BypassChange False|StatusChange 2|StatusChange 0", [](clsKeldoX &u) { u.Bypass(); });
    row("BypassChange True|StatusChange 2|StatusChange 0", [](clsKeldoX &u) { u.setBypass(true); });
    row("InputLimitingModeChange 1|StatusChange 2|StatusChange 0",
        [](clsKeldoX &u) { u.InputLimitingMode(); });
    row("InputLimitingModeChange 3|StatusChange 2|StatusChange 0",
        [](clsKeldoX &u) { u.setInputLimitingMode(3); });
    row("FreqChange 0 100|StatusChange 2|StatusChange 0", [](clsKeldoX &u) { u.CurrentStep(); });
    row("StatusChange 4|FreqChange 2 100.05|StatusChange 2|StatusChange 0",
        [](clsKeldoX &u) { u.setCurrentStep(2); });
    row("ZNcalModeChange False|StatusChange 2|StatusChange 0",
        [](clsKeldoX &u) { u.ZN_calMode(); });
    row("ZNcalModeChange True|StatusChange 2|StatusChange 0",
        [](clsKeldoX &u) { u.setZN_calMode(true); });
}

// Every handler of a change asks for something that the unit answers badly.
void TestHandlers::aQueryInAHandlerKeepsTheOuterStatus()
{
    QFETCH(Act, act);
    QFETCH(QString, events);
    UnitFixture f;
    f.connectUnit();
    f.unit->setDisplayErrors(false);
    f.reply("*PRSC?", "nonsense");
    clsKeldoX *const unit = f.unit.get();
    const auto ask = [unit] { unit->preScaler(); };
    connect(unit, &clsKeldoX::AGCChange, this, ask);
    connect(unit, &clsKeldoX::AttenChange, this, ask);
    connect(unit, &clsKeldoX::InputAttenChange, this, ask);
    connect(unit, &clsKeldoX::BypassChange, this, ask);
    connect(unit, &clsKeldoX::InputLimitingModeChange, this, ask);
    connect(unit, &clsKeldoX::FreqChange, this, ask);
    connect(unit, &clsKeldoX::ZNcalModeChange, this, ask);
    act(*unit);
    QCOMPARE(f.events.take().join(QLatin1Char('|')), events);
    QCOMPARE(unit->lastStatus(), 0);
}

void TestHandlers::aQueryBetweenLockedAndGood()
{
    UnitFixture f;
    f.connectUnit();
    f.unit->setDisplayErrors(false);
    f.reply("*PRSC?", "nonsense");
    connect(f.unit.get(), &clsKeldoX::StatusChange, this, [&](qint32 status) {
        if (status == clsKeldoX::LockedAfterStep)
            f.unit->preScaler();
    });
    f.unit->setCurrentStep(2);
    QCOMPARE(f.events.take(),
             listed("StatusChange 4|StatusChange 2|FreqChange 2 100.05|StatusChange 0"));
    QCOMPARE(f.unit->lastStatus(), 0);
}

// As the main window does it: the reply is not judged, and the setting is not repeated.
void TestHandlers::thePasswordIsSentInsideTheRefusal()
{
    sim::UnitSettings settings = unitWithFirmware("3.38");
    settings.password = "secret";
    UnitFixture f(settings);
    f.connectUnit();
    connect(f.unit.get(), &clsKeldoX::GetPassword, this, [&] {
        f.unit->deviceWrite(QStringLiteral("PASSWORD secret"));
        f.unit->Locked();
    });
    f.unit->setAtten(5);
    QCOMPARE(f.events.take(), listed("GetPassword|StatusChange 4|AttenChange 0|StatusChange 5"));
    QCOMPARE(f.sent(), listed("*ATTN 5|PASSWORD secret|*LOCK?"));
    f.unit->setAtten(5);
    QCOMPARE(f.events.take(), listed("AttenChange 5|StatusChange 0"));

    f.simulated->setPassword("other");
    f.unit->setCurrentStep(2);
    QCOMPARE(f.events.take(), listed("FreqChange 0 100|GetPassword|StatusChange 4|StatusChange 5"));
}

// The mode is handed to the handlers by reference.
void TestHandlers::theModeMayBeChangedByItsHandler()
{
    UnitFixture f;
    f.connectUnit();
    connect(f.unit.get(), &clsKeldoX::ZNcalModeChange, this, [](bool &on) { on = false; });
    f.simulated->change([](sim::UnitSettings &unit) { unit.calibratedMode = true; });
    QVERIFY(!f.unit->ZN_calMode());
}

void TestHandlers::oneBoxForEachConnection()
{
    UnitFixture f;
    f.reply("*IFRQ?", "x");
    f.reply("OPTC?", "x");
    for (int connection = 1; connection <= 2; ++connection) {
        f.boxes().expect(
            QStringLiteral("The device did not respond correctly to an 'IF frequency' query."));
        QVERIFY(f.unit->Initialize());
        QVERIFY(f.boxes().allShown());
        QCOMPARE(f.boxes().shown().size(), connection);
    }
}

void TestHandlers::oneBoxEachAfterTheConnection()
{
    UnitFixture f;
    f.connectUnit();
    f.reply("*CHAN SPACE?", "x");
    const QString box =
        QStringLiteral("The device did not respond correctly to a 'channel spacing' query.");
    f.boxes().expect(box);
    f.unit->ChannelSpacing();
    f.boxes().expect(box);
    f.unit->ChannelSpacing();
    QCOMPARE(f.boxes().shown().size(), 2);
}

void TestHandlers::statusAndReplyAreKept()
{
    UnitFixture f;
    f.connectUnit();
    f.unit->setDisplayErrors(false);
    f.reply("*CHAN SPACE?", "nonsense");
    f.unit->ChannelSpacing();
    QCOMPARE(f.unit->lastStatus(), 2);
    QCOMPARE(f.unit->lastReply(), QStringLiteral("nonsense"));
    // A reply that nobody judges leaves the status.
    f.unit->deviceWrite(QStringLiteral("*ID?"));
    f.unit->LISTEN(3);
    f.unit->setMaxStep(400);
    QCOMPARE(f.unit->lastStatus(), 2);
    QCOMPARE(f.unit->lastReply(), QStringLiteral("400"));
}

KELDOX_TEST(TestHandlers)
#include "TestHandlers.moc"
