// The queries of the frequency plan: replies, members, events and boxes.
#include "device/UnitFixture.h"

class TestFrequency : public QObject
{
    Q_OBJECT

private slots:
    void queries_data();
    void queries();
    void setupValuesComeFromMembersLater();
    void bandwidthIsNeverReported_data();
    void bandwidthIsNeverReported();
    void anOldUnitIsNotAskedForItsBandwidth();
    void theIFKeepsItsFractionInside();
    void theSpacingIsAskedAtEveryRead();
    void thePrescalerIsNotKept();
};

static const Read startFreq = [](clsKeldoX &u) { return text(u.StartFreq()); };
static const Read ifFreq = [](clsKeldoX &u) { return text(u.IFfreq()); };
static const Read spacing = [](clsKeldoX &u) { return text(u.ChannelSpacing()); };
static const Read maxStep = [](clsKeldoX &u) { return text(u.MaxStep()); };
static const Read prescaler = [](clsKeldoX &u) { return text(u.preScaler()); };

void TestFrequency::queries_data()
{
    QTest::addColumn<Read>("read");
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("reply");
    QTest::addColumn<QString>("value");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("box");
    const auto row = [](const char *name, const Read &read, const char *command, const char *reply,
                        const char *value, const char *badBox = nullptr) {
        QTest::newRow(name) << read << command << reply << value << (badBox ? 2 : 0)
                            << QString::fromLatin1(badBox);
    };
    const char start[] = "The device did not respond correctly to a 'start frequency' query.";
    row("start", startFreq, "*START FREQ?", "70.5 MHz", "70.5");
    row("start, word only", startFreq, "*START FREQ?", "MHz", "0");
    row("start in small letters", startFreq, "*START FREQ?", "70.5 mhz", "0", start);
    row("start without unit", startFreq, "*START FREQ?", "70.5", "0", start);
    row("start empty", startFreq, "*START FREQ?", "", "0", start);
    row("start with more behind", startFreq, "*START FREQ?", "70.5 MHz.", "0", start);

    const char ifBox[] = "The device did not respond correctly to an 'IF frequency' query.";
    row("IF", ifFreq, "*IFRQ?", "21.4 MHz", "21");
    row("IF, half to even below", ifFreq, "*IFRQ?", "22.5 MHz", "22");
    row("IF, half to even above", ifFreq, "*IFRQ?", "21.5 MHz", "22");
    row("IF beyond 32 bits", ifFreq, "*IFRQ?", "3000000000 MHz", "0", ifBox);
    row("IF in kHz", ifFreq, "*IFRQ?", "455 kHz", "0", ifBox);

    const char space[] = "The device did not respond correctly to a 'channel spacing' query.";
    row("spacing", spacing, "*CHAN SPACE?", "25000 Hz", "25000");
    row("spacing, half to even", spacing, "*CHAN SPACE?", "12.5 Hz", "12");
    row("spacing in small letters", spacing, "*CHAN SPACE?", "25000 hz", "0", space);
    row("spacing without unit", spacing, "*CHAN SPACE?", "25000", "0", space);

    const char steps[] = "The device did not respond correctly to a 'max step' query.";
    row("steps", maxStep, "*MAX STEP?", "400", "400");
    row("steps, half to even", maxStep, "*MAX STEP?", "400.5", "400");
    row("steps, exponent letter dropped", maxStep, "*MAX STEP?", "1E3", "13");
    row("one step", maxStep, "*MAX STEP?", "1", "1");
    row("no steps", maxStep, "*MAX STEP?", "0", "0", steps);
    row("negative steps", maxStep, "*MAX STEP?", "-4", "0", steps);
    row("steps with a word", maxStep, "*MAX STEP?", "400 steps", "0", steps);
    row("steps empty", maxStep, "*MAX STEP?", "", "0", steps);

    const char divisor[] = "The device did not respond correctly to a 'prescaler' query.";
    row("prescaler", prescaler, "*PRSC?", "128", "128");
    row("prescaler with a word", prescaler, "*PRSC?", "64 x", "0", divisor);
}

void TestFrequency::queries()
{
    QFETCH(Read, read);
    QFETCH(QString, command);
    QFETCH(QString, reply);
    QFETCH(int, status);
    QFETCH(QString, box);
    UnitFixture f;
    f.open();
    f.reply(command.toStdString(), reply.toStdString());
    if (status == 2)
        f.boxes().expect(box, MessageBox::Exclamation);
    QTEST(read(*f.unit), "value");
    QVERIFY(f.boxes().allShown());
    QCOMPARE(f.events.take(), QStringList{QStringLiteral("StatusChange %1").arg(status)});
    QCOMPARE(f.unit->lastStatus(), status);
    QCOMPARE(f.sent(), QStringList{command});
    // The same without its box.
    f.unit->setDisplayErrors(false);
    read(*f.unit);
    QCOMPARE(f.unit->lastStatus(), status);
    // And on a closed port, where nothing is told.
    f.events.take();
    f.unit->commPort()->ClosePort();
    QCOMPARE(read(*f.unit), QStringLiteral("0"));
    QCOMPARE(f.events.take(), QStringList());
}

void TestFrequency::setupValuesComeFromMembersLater()
{
    UnitFixture f;
    f.connectUnit();
    f.script->set("*MAX STEP?", "7");
    f.unit->commPort()->ClosePort(); // also then
    QCOMPARE(f.unit->StartFreq(), 100.0);
    QCOMPARE(f.unit->IFfreq(), 21);
    QCOMPARE(f.unit->ChanBW(), 25000);
    QCOMPARE(f.unit->MaxStep(), 400);
    QCOMPARE(f.unit->ChannelSpacing(), 25000);
    QCOMPARE(f.unit->CurrentStep(), 0);
    QCOMPARE(f.events.take(), QStringList());
}

void TestFrequency::bandwidthIsNeverReported_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<int>("bandwidth");
    QTest::newRow("number") << "12500" << 12500;
    QTest::newRow("half to even") << "12500.5" << 12500;
    QTest::newRow("with unit") << "12500 Hz" << 0;
    QTest::newRow("the largest") << "2147483647" << 2147483647;
    QTest::newRow("beyond 32 bits") << "2147483648" << 0;
    QTest::newRow("empty") << "" << 0;
    QTest::newRow("not understood") << "UNRECOGNIZED COMMAND" << 0;
}

void TestFrequency::bandwidthIsNeverReported()
{
    QFETCH(QString, reply);
    UnitFixture f;
    f.reply("*BNDW?", reply.toStdString());
    f.connectUnit(); // no box
    QTEST(f.unit->ChanBW(), "bandwidth");
    QVERIFY(f.unit->isInitialized());
    UnitFixture asked;
    asked.open();
    asked.unit->FirmwareRevision();
    asked.reply("*BNDW?", reply.toStdString());
    QTEST(asked.unit->ChanBW(), "bandwidth");
    QCOMPARE(asked.events.take(), listed("StatusChange 0"));
}

void TestFrequency::anOldUnitIsNotAskedForItsBandwidth()
{
    UnitFixture old(unitWithFirmware("1.6"));
    QVERIFY(old.unit->Initialize());
    QCOMPARE(old.unit->ChanBW(), 0);
    QVERIFY(!old.sent().contains(QStringLiteral("*BNDW?")));
}

void TestFrequency::theIFKeepsItsFractionInside()
{
    UnitFixture f;
    f.reply("*IFRQ?", "21.5 MHz");
    f.connectUnit();
    QCOMPARE(f.unit->IFfreq(), 22);
    f.reply("*IFRQ?", "garbage");
    QCOMPARE(f.unit->IFfreq(), 22);
    QCOMPARE(f.sent(), QStringList());
}

void TestFrequency::theSpacingIsAskedAtEveryRead()
{
    UnitFixture f;
    f.connectUnit();
    f.simulated->change([](sim::UnitSettings &unit) { unit.channelSpacingHz = 12500; });
    QCOMPARE(f.unit->ChannelSpacing(), 12500);
    QCOMPARE(f.unit->ChannelSpacing(), 12500);
    QCOMPARE(f.sent(), listed("*CHAN SPACE?|*CHAN SPACE?"));
    QCOMPARE(f.events.take(), listed("StatusChange 0|StatusChange 0"));
    // A bad reply leaves the member.
    f.reply("*CHAN SPACE?", "6250 hz");
    f.unit->setDisplayErrors(false);
    QCOMPARE(f.unit->ChannelSpacing(), 12500);
}

void TestFrequency::thePrescalerIsNotKept()
{
    UnitFixture f;
    f.connectUnit();
    QCOMPARE(f.unit->preScaler(), 64);
    f.unit->setDisplayErrors(false);
    f.reply("*PRSC?", "x");
    QCOMPARE(f.unit->preScaler(), 0);
    QCOMPARE(f.sent(), listed("*PRSC?|*PRSC?"));
    QCOMPARE(f.events.take(), listed("StatusChange 0|StatusChange 2"));
}

KELDOX_TEST(TestFrequency)
#include "TestFrequency.moc"
