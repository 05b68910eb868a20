// The unit's device goes away, the port is closed or the object is dropped while a reply is
// awaited: what is told, that nothing hangs, and that a later connection starts clean.
#include "device/UnitFixture.h"

#include <QElapsedTimer>
#include <QTimer>

class TestUnplugged : public QObject
{
    Q_OBJECT

private slots:
    void whileAReplyIsAwaited_data();
    void whileAReplyIsAwaited();
    void afterwardsNothingIsSentAndAllIsQuiet();
    void duringTheFirstConnection_data();
    void duringTheFirstConnection();
    void aPortClosedDuringTheFirstConnection();
    void anObjectDroppedWhileItWaits_data();
    void anObjectDroppedWhileItWaits();
    void anObjectDroppedWhileItConnects();
};

void TestUnplugged::whileAReplyIsAwaited_data()
{
    QTest::addColumn<Act>("act");
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("box");
    QTest::addColumn<QString>("events");
    QTest::newRow("query") << Act([](clsKeldoX &u) { u.ChannelSpacing(); }) << "*CHAN SPACE?"
                           << "The device did not respond correctly to a 'channel spacing' query."
                           << "StatusChange 2|StatusChange 2";
    QTest::newRow("step") << Act([](clsKeldoX &u) { u.setCurrentStep(5); }) << "*STEP 5"
                          << "The device did not respond correctly to a 'current step' command."
                          << "StatusChange 2|FreqChange 0 100|StatusChange 2";
    QTest::newRow("setting") << Act([](clsKeldoX &u) { u.setAtten(5); }) << "*ATTN 5"
                             << "The device did not respond correctly to an attenuation command."
                             << "StatusChange 2|AttenChange 0|StatusChange 2";
}

// The reply time is ten seconds here; the wait ends at once. The first status is of the line.
void TestUnplugged::whileAReplyIsAwaited()
{
    QFETCH(Act, act);
    QFETCH(QString, command);
    QFETCH(QString, box);
    QFETCH(QString, events);
    UnitFixture f;
    f.connectUnit(10000);
    QSignalSpy lost(f.unit.get(), &clsKeldoX::LinkLost);
    f.line.setFault(sim::Fault::Unplug, command.toStdString());
    f.boxes().expect(box, MessageBox::Exclamation);
    QElapsedTimer time;
    time.start();
    act(*f.unit);
    QVERIFY(time.elapsed() < 2000);
    QCOMPARE(f.events.take().join(QLatin1Char('|')), events);
    QCOMPARE(lost.count(), 1);
    QVERIFY(!f.unit->PortIsOpen());
    QCOMPARE(f.unit->lastStatus(), 2);
    QCoreApplication::processEvents(); // no second box follows
    QCOMPARE(f.boxes().shown().size(), 1);
}

void TestUnplugged::afterwardsNothingIsSentAndAllIsQuiet()
{
    UnitFixture f;
    f.connectUnit();
    f.unit->setDisplayErrors(false);
    f.line.setFault(sim::Fault::Unplug);
    f.unit->Locked();
    f.forget();
    f.unit->setDisplayErrors(true);
    f.unit->setCurrentStep(1);
    f.unit->setCurrentFreq(1000);
    f.unit->setAtten(1);
    f.unit->setAGC(true);
    f.unit->setPelltrim(1);
    QVERIFY(!f.unit->Locked());
    QCOMPARE(f.unit->atten(), 0.0);
    QCOMPARE(f.unit->StartFreq(), 100.0); // what the connection has read is still known
    QCOMPARE(f.events.take(), QStringList());
    QCOMPARE(f.log->lines(), QStringList());

    // Plugged in again, as another device of the same number.
    sim::SimulatedLine again;
    again.addUnit(f.simulated);
    f.fixture.plug(UnitFixture::port, again.device());
    QVERIFY(f.unit->Initialize());
    f.unit->setCurrentStep(3);
    QCOMPARE(f.simulated->step(), 3);
}

void TestUnplugged::duringTheFirstConnection_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("identity") << "*ID?" << false;
    for (const char *command :
         {"*LOCK?", "*REVISION?", "*START FREQ?", "*MAX STEP?", "*CHAN SPACE?", "*IFRQ?", "*BNDW?",
          "*AOPT?", "OPTC?", "*BYP_?", "InputLimitMode?", "*ZNCA?", "*ZNSE?", "*STEP?"})
        QTest::newRow(command) << command << true;
}

// One box at most, at once; and the next connection knows everything.
void TestUnplugged::duringTheFirstConnection()
{
    QFETCH(QString, command);
    QFETCH(bool, accepted);
    UnitFixture f;
    f.simulated->setStep(2);
    f.boxes().acceptAll();
    f.line.setFault(sim::Fault::Unplug, command.toStdString());
    QElapsedTimer time;
    time.start();
    QCOMPARE(f.unit->Initialize(), accepted);
    QVERIFY(time.elapsed() < 2000);
    QVERIFY(!f.unit->PortIsOpen());
    QCoreApplication::processEvents();
    QVERIFY2(f.boxes().shown().size() <= 1, qPrintable(f.boxes().texts().join(QLatin1Char('|'))));

    sim::SimulatedLine again;
    again.addUnit(f.simulated);
    f.fixture.plug(UnitFixture::port, again.device());
    f.boxes().clear(); // a box fails from here on
    QVERIFY(f.unit->Initialize());
    QCOMPARE(f.unit->firmwareNumber(), 3.38);
    QCOMPARE(f.unit->StopFreq(), 110.0);
    QCOMPARE(f.unit->IFfreq(), 21);
    QCOMPARE(f.unit->ChanBW(), 25000);
    QCOMPARE(f.unit->AOPT(), 14);
    QVERIFY(f.unit->HasBypass());
    QVERIFY(f.unit->HasPelltrim());
    QCOMPARE(f.unit->currentFreq(), 100.05);
}

// Connecting another channel on the same port closes it under whoever reads there.
void TestUnplugged::aPortClosedDuringTheFirstConnection()
{
    UnitFixture f;
    int statusChanges = 0;
    connect(f.unit.get(), &clsKeldoX::StatusChange, this, [&] {
        if (++statusChanges == 2) // the start frequency is known
            f.unit->commPort()->ClosePort();
    });
    f.unit->Initialize(); // no box
    QVERIFY(!f.unit->PortIsOpen());
    statusChanges = 100;
    QVERIFY(f.unit->Initialize());
    QCOMPARE(f.unit->MaxStep(), 400);
    QCOMPARE(f.unit->StopFreq(), 110.0);
    QCOMPARE(f.unit->COPT(), 2);
}

void TestUnplugged::anObjectDroppedWhileItWaits_data()
{
    QTest::addColumn<Act>("act");
    QTest::addColumn<QString>("last");
    const auto row = [](const char *name, const char *last, const Act &act) {
        QTest::newRow(name) << act << last;
    };
    row("StartFreq", "StatusChange 0", [](clsKeldoX &u) { u.StartFreq(); });
    row("IFfreq", "StatusChange 0", [](clsKeldoX &u) { u.IFfreq(); });
    row("MaxStep", "StatusChange 0", [](clsKeldoX &u) { u.MaxStep(); });
    row("StopFreq", "StatusChange 0", [](clsKeldoX &u) { u.StopFreq(); });
    row("CenterFreq", "StatusChange 0", [](clsKeldoX &u) { u.CenterFreq(); });
    row("ChanBW", "StatusChange 0", [](clsKeldoX &u) { u.ChanBW(); });
    row("ChannelSpacing", "StatusChange 0", [](clsKeldoX &u) { u.ChannelSpacing(); });
    row("CurrentStep", "StatusChange 0", [](clsKeldoX &u) { u.CurrentStep(); });
    row("currentFreq", "StatusChange 0", [](clsKeldoX &u) { u.currentFreq(); });
    row("preScaler", "StatusChange 0", [](clsKeldoX &u) { u.preScaler(); });
    row("MHzToSteps", "StatusChange 0", [](clsKeldoX &u) { u.MHzToSteps(1); });
    row("StepsToMHz", "StatusChange 0", [](clsKeldoX &u) { u.StepsToMHz(1); });
    row("AGC", "StatusChange 0", [](clsKeldoX &u) { u.AGC(); });
    row("atten", "AttenChange 0", [](clsKeldoX &u) { u.atten(); });
    row("MaxAtten", "StatusChange 0", [](clsKeldoX &u) { u.MaxAtten(); });
    row("attenStep", "StatusChange 0", [](clsKeldoX &u) { u.attenStep(); });
    row("InputAtten", "", [](clsKeldoX &u) { u.InputAtten(); });
    row("attenOffset", "AGCOffsetChange 0", [](clsKeldoX &u) { u.attenOffset(); });
    row("Bypass", "StatusChange 0", [](clsKeldoX &u) { u.Bypass(); });
    row("InputLimitingMode", "StatusChange 0", [](clsKeldoX &u) { u.InputLimitingMode(); });
    row("FirmwareRevision", "", [](clsKeldoX &u) { u.FirmwareRevision(); });
    row("AOPT", "StatusChange 0", [](clsKeldoX &u) { u.AOPT(); });
    row("HasPelltrim", "StatusChange 0", [](clsKeldoX &u) { u.HasPelltrim(); });
    row("HasAGCOffset", "StatusChange 0", [](clsKeldoX &u) { u.HasAGCOffset(); });
    row("HasBypass", "StatusChange 0", [](clsKeldoX &u) { u.HasBypass(); });
    row("HasAGC, written", "StatusChange 0", [](clsKeldoX &u) { u.setHasAGC(true); });
    row("HasPelltrim, written", "StatusChange 0", [](clsKeldoX &u) { u.setHasPelltrim(true); });
    row("HasBypass, written", "StatusChange 0", [](clsKeldoX &u) { u.setHasBypass(true); });
    row("COPT, written", "", [](clsKeldoX &u) { u.setCOPT(2); });
    row("addr, written", "", [](clsKeldoX &u) { u.setAddr(0); });
    row("Locked", "StatusChange 4", [](clsKeldoX &u) { u.Locked(); });
    row("ID", "", [](clsKeldoX &u) { u.ID(); });
    row("Pelltrim", "ZNChange 128", [](clsKeldoX &u) { u.Pelltrim(); });
    row("PelltrimCal", "ZNChange 128", [](clsKeldoX &u) { u.PelltrimCal(); });
    row("ZN_calMode", "StatusChange 0", [](clsKeldoX &u) { u.ZN_calMode(); });
    row("InputDetectorReading", "StatusChange 0", [](clsKeldoX &u) { u.InputDetectorReading(); });
    row("deadBand", "StatusChange 0", [](clsKeldoX &u) { u.deadBand(); });
    row("StartOfAGCTable", "StatusChange 0", [](clsKeldoX &u) { u.StartOfAGCTable(); });
    row("AGCdata", "StatusChange 0", [](clsKeldoX &u) { u.AGCdata(); });
    row("StoreADCvalue", "StatusChange 0", [](clsKeldoX &u) { u.StoreADCvalue(40); });
    row("setAGC", "StatusChange 0", [](clsKeldoX &u) { u.setAGC(true); });
    row("setAtten", "StatusChange 0", [](clsKeldoX &u) { u.setAtten(1); });
    row("setCurrentFreq", "StatusChange 0", [](clsKeldoX &u) { u.setCurrentFreq(101); });
    row("setPelltrim", "ZNChange 3", [](clsKeldoX &u) { u.setPelltrim(3); });
    row("setZN_calMode", "StatusChange 0", [](clsKeldoX &u) { u.setZN_calMode(true); });
}

// A search clears the unit table under a waiting exchange: the object lives to its end.
void TestUnplugged::anObjectDroppedWhileItWaits()
{
    QFETCH(Act, act);
    QFETCH(QString, last);
    sim::UnitSettings settings = unitWithFirmware("3.38");
    UnitFixture f(settings);
    f.reply("*AOFF?", "0 dB");
    f.reply("!ADDR 0", "0");
    f.open();
    f.unit->setDeviceFound(true);
    QStringList &events = f.events.lines;
    connect(f.unit.get(), &QObject::destroyed, this,
            [&] { events.append(QStringLiteral("destroyed")); });
    clsKeldoX &unit = *f.unit;
    QTimer::singleShot(0, this, [&] { f.unit.reset(); });
    act(unit);
    QVERIFY(!f.unit);
    QCOMPARE(events.last(), QStringLiteral("destroyed"));
    QCOMPARE(events.size() > 1 ? events.at(events.size() - 2) : QString(), last);
    f.unit = std::make_shared<clsKeldoX>(); // for the fixture's end
}

void TestUnplugged::anObjectDroppedWhileItConnects()
{
    UnitFixture f;
    connect(f.unit.get(), &QObject::destroyed, this,
            [&] { f.events.lines.append(QStringLiteral("destroyed")); });
    clsKeldoX &unit = *f.unit;
    QTimer::singleShot(0, this, [&] { f.unit.reset(); });
    QVERIFY(unit.Initialize());
    QCOMPARE(f.events.lines.mid(f.events.lines.size() - 3),
             listed("FreqChange 0 100|StatusChange 0|destroyed"));
    f.unit = std::make_shared<clsKeldoX>();
}

KELDOX_TEST(TestUnplugged)
#include "TestUnplugged.moc"
