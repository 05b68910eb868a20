// A line that misbehaves, seen through the object: the status and the one box of the property that
// met it, and nothing lost for the next one.
#include "device/UnitFixture.h"
#include "platform/TestHooks.h"

class TestBadLine : public QObject
{
    Q_OBJECT

private slots:
    void oneBadReply_data();
    void oneBadReply();
    void numbersOutOfRange_data();
    void numbersOutOfRange();
    void aReplyInPiecesIsAReply();
    void aLateReplyInTimeIsAReply();
    void aLateReplyDoesNotAnswerTheNextCommand();
    void aBadSetupIsReadAgain_data();
    void aBadSetupIsReadAgain();
    void garbageAllTheWay();
    void aBusyPort();
    void aBadBypassReplyIsNoBypass();
};

Q_DECLARE_METATYPE(sim::Fault)

static const char spacingBox[] =
    "The device did not respond correctly to a 'channel spacing' query.";
static const char stepBox[] = "The device did not respond correctly to a 'current step' command.";
static const char attenBox[] = "The device did not respond correctly to an attenuation command.";
static const char agcBox[] = "The device did not respond correctly to an AGC query.";

void TestBadLine::oneBadReply_data()
{
    QTest::addColumn<sim::Fault>("fault");
    QTest::addColumn<Act>("act");
    QTest::addColumn<QString>("box");
    QTest::addColumn<QString>("events");
    const Act spacing = [](clsKeldoX &u) { u.ChannelSpacing(); };
    const Act step = [](clsKeldoX &u) { u.setCurrentStep(5); };
    const Act atten = [](clsKeldoX &u) { u.setAtten(5); };
    const Act agc = [](clsKeldoX &u) { u.AGC(); };
    using sim::Fault;
    for (const Fault fault : {Fault::Silence, Fault::Garbage, Fault::Binary, Fault::Endless,
                              Fault::EmptyReply, Fault::Echo}) {
        const auto name = sim::faultName(fault);
        const char *text = name.c_str();
        QTest::addRow("%s, query", text) << fault << spacing << spacingBox << "StatusChange 2";
        QTest::addRow("%s, step", text)
            << fault << step << stepBox << "FreqChange 1 100.025|StatusChange 2";
        QTest::addRow("%s, switch", text)
            << fault << agc << agcBox << "AGCChange False|StatusChange 2";
        // A setting that comes back as it was sent carries the number that was asked for.
        if (fault != Fault::Echo)
            QTest::addRow("%s, setting", text)
                << fault << atten << attenBox << "AttenChange 0|StatusChange 2";
    }
    QTest::addRow("wrong unit word, query")
        << Fault::WrongUnitWord << spacing << spacingBox << "StatusChange 2";
}

void TestBadLine::oneBadReply()
{
    QFETCH(sim::Fault, fault);
    QFETCH(Act, act);
    QFETCH(QString, box);
    QFETCH(QString, events);
    UnitFixture f;
    TestHooks::settleWithin(30);
    f.simulated->setStep(1);
    f.connectUnit(60);
    f.line.setFault(fault, {}, 1);
    f.boxes().expect(box, MessageBox::Exclamation);
    act(*f.unit);
    QVERIFY(f.boxes().allShown());
    QCOMPARE(f.events.take().join(QLatin1Char('|')), events);
    QCOMPARE(f.unit->lastStatus(), 2);
    QVERIFY(f.unit->PortIsOpen());
    // The next command ends what is left of it; from then on all is as before.
    f.unit->commPort()->settimeOutMs(UnitFixture::replyTimeMs);
    f.sent();
    QCOMPARE(f.unit->MaxAtten(), 50);
    QVERIFY(f.unit->Locked());
    QCOMPARE(f.unit->StopFreq(), 110.0);
}

void TestBadLine::numbersOutOfRange_data()
{
    QTest::addColumn<Read>("read");
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("reply");
    QTest::addColumn<QString>("before");
    const auto row = [](const char *command, const char *reply, const char *before,
                        const Read &read) {
        QTest::newRow(command) << read << command << reply << before;
    };
    row("*CHAN SPACE?", "2147483648 Hz", "25000",
        [](clsKeldoX &u) { return text(u.ChannelSpacing()); });
    row("*STEP?", "-2147483649", "1", [](clsKeldoX &u) { return text(u.CurrentStep()); });
    row("*PRSC?", "32768", "0", [](clsKeldoX &u) { return text(u.preScaler()); });
    row("*MXAT?", "99999", "0", [](clsKeldoX &u) { return text(u.MaxAtten()); });
    row("InputLimitMode?", "-32769", "1", [](clsKeldoX &u) { return text(u.InputLimitingMode()); });
    row("*ZNSE?", "40000 clicks", "128", [](clsKeldoX &u) { return text(u.Pelltrim()); });
}

// A number that its member cannot hold is a bad reply: one box of the property, no run-time error.
void TestBadLine::numbersOutOfRange()
{
    QFETCH(Read, read);
    QFETCH(QString, command);
    QFETCH(QString, reply);
    UnitFixture f;
    f.simulated->setStep(1);
    f.connectUnit();
    f.reply(command.toStdString(), reply.toStdString());
    f.boxes().expectStart(QStringLiteral("The device did not respond correctly to a"),
                          MessageBox::Exclamation);
    QTEST(read(*f.unit), "before");
    QCOMPARE(f.unit->lastStatus(), 2);
    QCOMPARE(f.events.take().count(QStringLiteral("StatusChange 2")), 1);
}

void TestBadLine::aReplyInPiecesIsAReply()
{
    UnitFixture f;
    f.line.setFault(sim::Fault::SplitReply);
    f.connectUnit();
    QCOMPARE(f.unit->StartFreq(), 100.0);
    QCOMPARE(f.unit->FirmwareRevision(), QStringLiteral("KELDO-X REV 3.38"));
    f.unit->setAtten(12.5);
    QCOMPARE(f.events.take(), listed("AttenChange 12.5|StatusChange 0"));
}

void TestBadLine::aLateReplyInTimeIsAReply()
{
    UnitFixture f;
    f.connectUnit();
    f.line.setLateBy(std::chrono::milliseconds(150));
    f.line.setFault(sim::Fault::LateReply);
    f.unit->setCurrentStep(2);
    QCOMPARE(f.events.take(), listed("StatusChange 4|FreqChange 2 100.05|StatusChange 0"));
}

void TestBadLine::aLateReplyDoesNotAnswerTheNextCommand()
{
    UnitFixture f;
    f.connectUnit(60);
    f.unit->setDisplayErrors(false);
    f.line.setLateBy(std::chrono::milliseconds(200));
    f.line.setFault(sim::Fault::LateReply, {}, 1);
    f.reply("*MXAT?", "31");
    QCOMPARE(f.unit->CurrentStep(), 0);
    QCOMPARE(f.unit->lastStatus(), 2);
    QTRY_VERIFY(f.unit->commPort()->host().CommCtl->inBufferCount() > 0);
    f.unit->commPort()->settimeOutMs(UnitFixture::replyTimeMs);
    QCOMPARE(f.unit->MaxAtten(), 31);
    QCOMPARE(f.unit->CurrentStep(), 0);
    QCOMPARE(f.unit->lastStatus(), 0);
}

void TestBadLine::aBadSetupIsReadAgain_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("reply");
    QTest::newRow("revision") << "*REVISION?"
                              << "";
    QTest::newRow("start frequency") << "*START FREQ?"
                                     << "100 mhz";
    QTest::newRow("maximum step") << "*MAX STEP?"
                                  << "0";
    QTest::newRow("channel spacing") << "*CHAN SPACE?"
                                     << "25000";
    QTest::newRow("IF") << "*IFRQ?"
                        << "x";
    QTest::newRow("option word A") << "*AOPT?"
                                   << "x";
    QTest::newRow("option word C") << "OPTC?"
                                   << "";
    QTest::newRow("input limiting mode") << "InputLimitMode?"
                                         << "x";
}

void TestBadLine::aBadSetupIsReadAgain()
{
    QFETCH(QString, command);
    QFETCH(QString, reply);
    UnitFixture f;
    f.unit->setDisplayErrors(false);
    f.reply(command.toStdString(), reply.toStdString());
    f.connectUnit();
    f.script->clear();
    QVERIFY(f.unit->Initialize());
    QVERIFY(f.sent().contains(command));
    QCOMPARE(f.unit->firmwareNumber(), 3.38);
    QCOMPARE(f.unit->StartFreq(), 100.0);
    QCOMPARE(f.unit->MaxStep(), 400);
    QCOMPARE(f.unit->StopFreq(), 110.0);
    QCOMPARE(f.unit->IFfreq(), 21);
    QCOMPARE(f.unit->AOPT(), 14);
    QCOMPARE(f.unit->COPT(), 2);
    // And when all was good, not a third time.
    f.sent();
    QVERIFY(f.unit->Initialize());
    QCOMPARE(f.sent(), listed("*ID?|*LOCK?|*ZNCA?|*ZNSE?|*STEP?"));
}

void TestBadLine::garbageAllTheWay()
{
    UnitFixture f;
    f.line.setFault(sim::Fault::Binary);
    f.boxes().expect(QStringLiteral("The device did not respond correctly to an ID query."));
    QVERIFY(!f.unit->Initialize());
    QCOMPARE(f.sent().first(), QStringLiteral("*ID?"));
    QVERIFY(!f.unit->DeviceFound());
    f.line.setFault(sim::Fault::None);
    QVERIFY(f.unit->Initialize());
}

void TestBadLine::aBusyPort()
{
    UnitFixture f;
    clsCommPort other;
    other.setPortNumber(UnitFixture::port);
    QVERIFY(other.InitializePort());
    f.boxes().expect(
        QStringLiteral("The serial port (COM3:) is already in use. If there is another "
                       "program using the port, you need to close it and re-start "
                       "this one."));
    f.boxes().expect(QStringLiteral("The serial port is not open"), MessageBox::Exclamation);
    QVERIFY(!f.unit->Initialize());
    QCOMPARE(f.log->lines().last(), QStringLiteral("Keldo-X | could not open serial port "));
    other.ClosePort();
    QVERIFY(f.unit->Initialize());
}

void TestBadLine::aBadBypassReplyIsNoBypass()
{
    for (const char *reply : {"99999", "x", ""}) {
        UnitFixture f;
        f.reply("*BYP_?", reply);
        QVERIFY(f.unit->Initialize()); // never a box
        QVERIFY(!f.unit->HasBypass());
    }
}

KELDOX_TEST(TestBadLine)
#include "TestBadLine.moc"
