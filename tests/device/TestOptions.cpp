// Option words, how they are asked and written, and the availability flags read from them.
#include "device/UnitFixture.h"

class TestOptions : public QObject
{
    Q_OBJECT

private slots:
    void optionReplies_data();
    void optionReplies();
    void oldUnitsAreNotAskedForOptions();
    void optionCHasTwoNames();
    void optionWordsAreWritten();
    void flags_data();
    void flags();
    void offsetNeedsTheRightFirmware_data();
    void offsetNeedsTheRightFirmware();
    void flagsOfAClosedPort();
    void fittingAGC();
    void fittingFineTuning();
    void fittingFineTuningChangesOneBit_data();
    void fittingFineTuningChangesOneBit();
    void fittingFineTuningOverwritesTheWordThatIsKept();
    void bypassFlag_data();
    void bypassFlag();
    void fittingABypass();
};

void TestOptions::optionReplies_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<int>("word");
    QTest::addColumn<bool>("bad");
    QTest::newRow("number") << "31" << 31 << false;
    QTest::newRow("half to even") << "6.5" << 6 << false;
    QTest::newRow("not understood") << "UNRECOGNIZED COMMAND" << 0 << false;
    QTest::newRow("not understood, with more") << "UNRECOGNIZED COMMAND: X" << 0 << false;
    QTest::newRow("with a word") << "3 OPTIONS" << -1 << true;
    QTest::newRow("empty") << "" << -1 << true;
    QTest::newRow("timed out in the unit") << "TIMED OUT" << -1 << true;
    QTest::newRow("beyond 32 bits") << "3000000000" << -1 << true;
}

// Each word alone is bad; the first connection asks it twice and shows one box.
void TestOptions::optionReplies()
{
    QFETCH(QString, reply);
    QFETCH(int, word);
    QFETCH(bool, bad);
    for (const char *command : {"*AOPT?", "OPTC?"}) {
        UnitFixture f;
        f.reply(command, reply.toStdString());
        if (bad)
            f.boxes().expect(
                QStringLiteral("The device did not respond correctly to an 'options' query.\r\n"
                               "This is normal for some units with old firmware."),
                MessageBox::Exclamation);
        QVERIFY(f.unit->Initialize());
        QVERIFY(f.boxes().allShown());
        QCOMPARE(f.events.take().contains(QStringLiteral("StatusChange 2")), bad);
        f.sent();
        f.unit->setDisplayErrors(false);
        const bool isA = std::string(command) == "*AOPT?";
        QCOMPARE(isA ? f.unit->AOPT() : f.unit->COPT(), word);
    }
}

void TestOptions::oldUnitsAreNotAskedForOptions()
{
    UnitFixture f(unitWithFirmware("1.9"));
    QVERIFY(f.unit->Initialize());
    QVERIFY(f.sent().filter(QStringLiteral("OPT")).isEmpty());
    QCOMPARE(f.unit->AOPT(), 0);
    QCOMPARE(f.unit->COPT(), 0);
    QVERIFY(!f.unit->HasAGC() && !f.unit->HasAtten() && !f.unit->HasInputAtten());
    QVERIFY(!f.unit->HasPelltrim() && !f.unit->HasAGCOffset());
}

void TestOptions::optionCHasTwoNames()
{
    UnitFixture b(unitWithFirmware("3.37"));
    b.open();
    b.unit->FirmwareRevision();
    b.sent();
    b.unit->COPT();
    QVERIFY(b.sent().contains(QStringLiteral("*BOPT?")));
    UnitFixture c(unitWithFirmware("3.38"));
    c.open();
    c.unit->FirmwareRevision();
    c.sent();
    c.unit->COPT();
    QVERIFY(c.sent().contains(QStringLiteral("OPTC?")));
}

void TestOptions::optionWordsAreWritten()
{
    UnitFixture b(unitWithFirmware("3.37"));
    b.connectUnit();
    b.unit->setAOPT(31);
    b.unit->setCOPT(2);
    QCOMPARE(b.sent(), listed("!AOPT 31|!BOPT 2"));
    UnitFixture c(unitWithFirmware("3.38"));
    c.connectUnit();
    c.reply("OPTC 0", "PERMISSION DENIED"); // not judged
    c.unit->setAOPT(-1);
    c.unit->setCOPT(0);
    QCOMPARE(c.sent(), listed("!AOPT-1|OPTC 0"));
    QCOMPARE(c.events.take(), QStringList());
    QCOMPARE(c.unit->COPT(), 2); // the member stays
}

void TestOptions::flags_data()
{
    QTest::addColumn<int>("word");
    QTest::addColumn<QString>("present");
    QTest::newRow("none") << 0 << "";
    QTest::newRow("1") << 1 << "attenuator";
    QTest::newRow("2") << 2 << "AGC, attenuator";
    QTest::newRow("4") << 4 << "attenuator";
    QTest::newRow("8") << 8 << "input attenuator";
    QTest::newRow("16") << 16 << "attenuator";
    QTest::newRow("32") << 32 << "";
    QTest::newRow("not told") << -1 << "AGC, attenuator, input attenuator";
}

void TestOptions::flags()
{
    QFETCH(int, word);
    UnitFixture f;
    f.reply("*AOPT?", std::to_string(word));
    f.connectUnit();
    QStringList present;
    if (f.unit->HasAGC())
        present.append(QStringLiteral("AGC"));
    if (f.unit->HasAtten())
        present.append(QStringLiteral("attenuator"));
    if (f.unit->HasInputAtten())
        present.append(QStringLiteral("input attenuator"));
    QTEST(present.join(QStringLiteral(", ")), "present");
    QCOMPARE(f.sent(), QStringList());
}

void TestOptions::offsetNeedsTheRightFirmware_data()
{
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<bool>("agc");
    QTest::addColumn<bool>("offset");
    QTest::newRow("1.99") << "1.99" << true << false;
    QTest::newRow("2.0") << "2.0" << true << true;
    QTest::newRow("3.17") << "3.17" << true << true;
    QTest::newRow("3.18") << "3.18" << true << false;
    QTest::newRow("3.17 without AGC") << "3.17" << false << false;
}

void TestOptions::offsetNeedsTheRightFirmware()
{
    QFETCH(QString, firmware);
    QFETCH(bool, agc);
    sim::UnitSettings settings = unitWithFirmware(firmware.toStdString());
    settings.optionA = agc ? 3 : 1;
    UnitFixture f(settings);
    f.connectUnit();
    QTEST(f.unit->HasAGCOffset(), "offset");
}

// Before anybody asked the unit, every option is taken as present.
void TestOptions::flagsOfAClosedPort()
{
    UnitFixture f;
    QVERIFY(f.unit->HasAGC() && f.unit->HasAtten() && f.unit->HasInputAtten());
    QVERIFY(f.unit->HasPelltrim());
    QVERIFY(!f.unit->HasBypass());
    QCOMPARE(f.unit->AOPT(), 0);
    QCOMPARE(f.unit->COPT(), 0);
    QCOMPARE(f.events.take(), QStringList());
}

void TestOptions::fittingAGC()
{
    UnitFixture f;
    f.connectUnit();
    QVERIFY(f.unit->HasAGC());
    f.unit->setHasAGC(false);
    QCOMPARE(f.sent(), listed("!AGC 0|*AOPT?"));
    QVERIFY(!f.unit->HasAGC());
    f.unit->setHasAGC(true);
    QCOMPARE(f.sent(), listed("!AGC 1|*AOPT?"));
    QVERIFY(f.unit->HasAGC());
}

// The word's other bits are kept on the wire; the member keeps the answer alone.
void TestOptions::fittingFineTuning()
{
    UnitFixture f;
    f.simulated->change([](sim::UnitSettings &unit) { unit.optionC = 5; });
    f.open();
    f.unit->setHasPelltrim(true);
    QCOMPARE(f.simulated->optionC(), 7);
    QVERIFY(f.sent().contains(QStringLiteral("OPTC 7")));
    QVERIFY(f.unit->HasPelltrim());
    f.unit->setHasPelltrim(false);
    QCOMPARE(f.simulated->optionC(), 5);
    QVERIFY(f.sent().contains(QStringLiteral("OPTC 5")));
}

void TestOptions::fittingFineTuningChangesOneBit_data()
{
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<int>("word");
    QTest::addColumn<bool>("fitted");
    QTest::addColumn<QString>("commands");
    QTest::newRow("on") << "3.38" << 508 << true << "OPTC 510|OPTC?";
    QTest::newRow("off, of eight bits") << "3.38" << 511 << false << "OPTC 253|OPTC?";
    QTest::newRow("on, already") << "3.37" << 7 << true << "!BOPT 7|*BOPT?";
    QTest::newRow("off, older") << "3.37" << 7 << false << "!BOPT 5|*BOPT?";
}

// A unit that is not connected yet is asked for its word first.
void TestOptions::fittingFineTuningChangesOneBit()
{
    QFETCH(QString, firmware);
    QFETCH(int, word);
    QFETCH(bool, fitted);
    QFETCH(QString, commands);
    sim::UnitSettings settings = unitWithFirmware(firmware.toStdString());
    settings.optionC = word;
    UnitFixture fresh(settings);
    fresh.open();
    fresh.unit->FirmwareRevision();
    fresh.sent();
    fresh.unit->setHasPelltrim(fitted);
    QCOMPARE(fresh.sent().join(QLatin1Char('|')),
             commands.section(QLatin1Char('|'), 1) + QLatin1Char('|') + commands);
    fresh.unit->commPort()->ClosePort();
    fresh.unit->setHasPelltrim(fitted);
    QVERIFY(fresh.line.commands().empty());

    UnitFixture known(settings);
    known.connectUnit();
    known.unit->setHasPelltrim(fitted);
    QCOMPARE(known.sent().join(QLatin1Char('|')), commands);
}

void TestOptions::fittingFineTuningOverwritesTheWordThatIsKept()
{
    UnitFixture f;
    f.simulated->change([](sim::UnitSettings &unit) { unit.optionC = 5; });
    f.connectUnit();
    QCOMPARE(f.unit->COPT(), 5);
    f.unit->setHasPelltrim(true);
    QCOMPARE(f.unit->COPT(), -1);
    f.unit->setHasPelltrim(false);
    QCOMPARE(f.unit->COPT(), 0);
}

void TestOptions::bypassFlag_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<bool>("fitted");
    QTest::newRow("fitted") << "1" << true;
    QTest::newRow("among other bits") << "3" << true;
    QTest::newRow("other bits") << "6" << false;
    QTest::newRow("none") << "0" << false;
    QTest::newRow("no number") << "UNRECOGNIZED COMMAND" << false;
    QTest::newRow("empty") << "" << false;
}

void TestOptions::bypassFlag()
{
    QFETCH(QString, reply);
    UnitFixture f;
    f.reply("*BYP_?", reply.toStdString());
    f.connectUnit(); // never a box
    QTEST(f.unit->HasBypass(), "fitted");
    QCOMPARE(f.sent(), QStringList());
}

void TestOptions::fittingABypass()
{
    UnitFixture f;
    f.connectUnit();
    f.unit->setHasBypass(false);
    QCOMPARE(f.sent(), listed("!BYP_ 0|*BYP_?"));
    QVERIFY(!f.unit->HasBypass());
    f.unit->setHasBypass(true);
    QCOMPARE(f.sent(), listed("!BYP_ 1|*BYP_?"));
    QVERIFY(f.unit->HasBypass());
}

KELDOX_TEST(TestOptions)
#include "TestOptions.moc"
