// The power detectors, the AGC deadband and the AGC table in the unit's memory.
#include "device/UnitFixture.h"

class TestDetectors : public QObject
{
    Q_OBJECT

private slots:
    void theScratchByteIsPutBackWhenTheNumberOverflows();
    void writingTheDeadbandRaisesTheStatus();
    void theTableEndsOneBeforeTheScratchAddress();
    void readings_data();
    void readings();
    void badReadings_data();
    void badReadings();
    void aSilentUnitKeepsTheReadingBefore();
    void badReadingsAreQuietWithoutDisplayErrors();
    void settings_data();
    void settings();
    void badSettings_data();
    void badSettings();
    void detectorQueryNeedsItsFirmware_data();
    void detectorQueryNeedsItsFirmware();
    void inputDetectorOnEveryFirmware();
    void theReadingThroughTheTablePutsTheByteBack();
    void nothingIsStoredWhenTheByteIsUnknown();
    void nothingIsStoredWhenTheAddressIsRefused();
    void aFailedStoreStillPutsTheByteBack();
    void nothingIsSentToAClosedPort();
    void theErrorSourceKeepsItsTwoBlanks();
};

static QString message(const char *text)
{
    return QString::fromLatin1(text);
}

void TestDetectors::theTableEndsOneBeforeTheScratchAddress()
{
    QCOMPARE(int(clsKeldoX::FirstAddr), 36);
    QCOMPARE(int(clsKeldoX::SizeOfAGCTable), 50);
    QCOMPARE(int(clsKeldoX::LastAddr), 86);
}

static const Read readDetector = [](clsKeldoX &unit) { return text(int(unit.DetectorReading())); };
static const Read readInput = [](clsKeldoX &unit) {
    return text(int(unit.InputDetectorReading()));
};
static const Read readDeadBand = [](clsKeldoX &unit) { return text(int(unit.deadBand())); };
static const Read readStart = [](clsKeldoX &unit) { return text(int(unit.StartOfAGCTable())); };
static const Read readData = [](clsKeldoX &unit) { return text(int(unit.AGCdata())); };
static const Read storeValue = [](clsKeldoX &unit) { return text(int(unit.StoreADCvalue(40))); };

void TestDetectors::readings_data()
{
    QTest::addColumn<Read>("read");
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("reply");
    QTest::addColumn<QString>("value");
    QTest::newRow("detector") << readDetector << "DETA?"
                              << "512"
                              << "512";
    QTest::newRow("detector, words") << readDetector << "DETA?"
                                     << "A = 70000"
                                     << "70000";
    QTest::newRow("detector, half to even") << readDetector << "DETA?"
                                            << "2.5"
                                            << "2";
    QTest::newRow("input detector") << readInput << "DETB?"
                                    << "-7"
                                    << "-7";
    QTest::newRow("deadband") << readDeadBand << "*DBND?"
                              << "3.5"
                              << "4";
    QTest::newRow("start of table") << readStart << "*ATAB?"
                                    << "36"
                                    << "36";
    QTest::newRow("data, least") << readData << "*DATA?"
                                 << "0"
                                 << "0";
    QTest::newRow("data, most") << readData << "*DATA?"
                                << "255"
                                << "255";
    QTest::newRow("store") << storeValue << "!ATAB 40"
                           << "Added 512"
                           << "512";
}

void TestDetectors::readings()
{
    QFETCH(Read, read);
    QFETCH(QString, command);
    QFETCH(QString, reply);
    UnitFixture f;
    f.connectUnit();
    f.reply(command.toStdString(), reply.toStdString());
    QTEST(read(*f.unit), "value");
    QCOMPARE(f.unit->lastStatus(), 0);
    QCOMPARE(f.window->pollingStops, 1);
    QCOMPARE(f.events.take(), listed("StatusChange 0"));
    QCOMPARE(f.sent(), QStringList{command});
}

void TestDetectors::badReadings_data()
{
    QTest::addColumn<Read>("read");
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("good");
    QTest::addColumn<QString>("bad");
    QTest::addColumn<QString>("box");
    const QString none;
    const QString timedOut = QStringLiteral("TIMED OUT");
    const QString unknown = QStringLiteral("UNRECOGNIZED COMMAND");
    for (const QString &bad : {timedOut, unknown}) {
        const QByteArray tag = bad.toLatin1();
        QTest::addRow("detector %s", tag.data()) << readDetector << "DETA?"
                                                 << "5" << bad << none;
        QTest::addRow("input %s", tag.data()) << readInput << "DETB?"
                                              << "5" << bad << none;
        QTest::addRow("start %s", tag.data()) << readStart << "*ATAB?"
                                              << "5" << bad << none;
    }
    const QString deadBand = message("The device did not respond correctly to a 'deadband' query.");
    QTest::newRow("deadband word") << readDeadBand << "*DBND?"
                                   << "5"
                                   << "x" << deadBand;
    QTest::newRow("deadband empty") << readDeadBand << "*DBND?"
                                    << "5"
                                    << "" << deadBand;
    const QString data = message("The device did not respond correctly to an AGC DATA query.");
    for (const char *bad : {"TIMED OUT", "UNRECOGNIZED COMMAND", "x", "256", "-1"})
        QTest::addRow("data %s", bad) << readData << "*DATA?"
                                      << "5" << bad << data;
}

// The value before stays.
void TestDetectors::badReadings()
{
    QFETCH(Read, read);
    QFETCH(QString, command);
    QFETCH(QString, good);
    QFETCH(QString, bad);
    QFETCH(QString, box);
    UnitFixture f;
    f.connectUnit();
    f.reply(command.toStdString(), good.toStdString());
    QCOMPARE(read(*f.unit), good);
    f.forget();
    f.reply(command.toStdString(), bad.toStdString());
    if (!box.isEmpty())
        f.boxes().expect(box, MessageBox::Exclamation);
    QCOMPARE(read(*f.unit), good);
    QCOMPARE(f.unit->lastStatus(), 2);
    QCOMPARE(f.events.take(), listed("StatusChange 2"));
}

void TestDetectors::aSilentUnitKeepsTheReadingBefore()
{
    UnitFixture f;
    f.connectUnit();
    QCOMPARE(f.unit->DetectorReading(), 512);
    f.forget();
    f.unit->commPort()->settimeOutMs(100);
    f.reply("DETA?", std::nullopt);
    QCOMPARE(f.unit->DetectorReading(), 512);
    QCOMPARE(f.events.take(), listed("StatusChange 2"));
}

void TestDetectors::badReadingsAreQuietWithoutDisplayErrors()
{
    UnitFixture f;
    f.connectUnit();
    f.unit->setDisplayErrors(false);
    f.reply("*DBND?", "x");
    f.reply("*DATA?", "x");
    f.reply("!WDAT 5", "x");
    f.unit->deadBand();
    f.unit->AGCdata();
    f.unit->setAGCdata(5);
    QCOMPARE(f.events.take(), QStringList(3, QStringLiteral("StatusChange 2")));
}

static const Act writeDeadBand = [](clsKeldoX &unit) { unit.setDeadBand(7); };
static const Act writeAddress = [](clsKeldoX &unit) { unit.setAGCaddr(36); };
static const Act writeData = [](clsKeldoX &unit) { unit.setAGCdata(9); };
static const Act callStore = [](clsKeldoX &unit) { unit.StoreADCvalue(40); };

void TestDetectors::settings_data()
{
    QTest::addColumn<Act>("act");
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("reply");
    QTest::newRow("address") << writeAddress << "!SRCE 36"
                             << "Address 36";
    QTest::newRow("address echoed") << writeAddress << "!SRCE 36"
                                    << "!SRCE 36";
    QTest::newRow("data") << writeData << "!WDAT 9"
                          << "Address 36 Data 9";
    QTest::newRow("store") << callStore << "!ATAB 40"
                           << "Add";
}

void TestDetectors::settings()
{
    QFETCH(Act, act);
    QFETCH(QString, command);
    QFETCH(QString, reply);
    UnitFixture f;
    f.connectUnit();
    f.reply(command.toStdString(), reply.toStdString());
    act(*f.unit);
    QCOMPARE(f.sent(), QStringList{command});
    QCOMPARE(f.events.take(), listed("StatusChange 0"));
    QCOMPARE(f.unit->lastStatus(), 0);
}

void TestDetectors::badSettings_data()
{
    QTest::addColumn<Act>("act");
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("reply");
    QTest::addColumn<QString>("box");
    const QString address = message("The device did not respond correctly to a 'SRCE' command.");
    QTest::newRow("address word") << writeAddress << "!SRCE 36"
                                  << "OK" << address;
    QTest::newRow("another address") << writeAddress << "!SRCE 36"
                                     << "Address 136" << address;
    const QString data = message("The device did not respond correctly to a 'WDAT' command.");
    QTest::newRow("data") << writeData << "!WDAT 9"
                          << "9" << data;
    QTest::newRow("data, case") << writeData << "!WDAT 9"
                                << "add 9" << data;
    const QString store = message("The device did not respond correctly to ATAB command.");
    QTest::newRow("store") << callStore << "!ATAB 40"
                           << "512" << store;
}

void TestDetectors::badSettings()
{
    QFETCH(Act, act);
    QFETCH(QString, command);
    QFETCH(QString, reply);
    QFETCH(QString, box);
    UnitFixture f;
    f.connectUnit();
    f.reply(command.toStdString(), reply.toStdString());
    f.boxes().expect(box, MessageBox::Exclamation);
    act(*f.unit);
    QCOMPARE(f.events.take(), listed("StatusChange 2"));
    QCOMPARE(f.unit->lastStatus(), 2);
}

void TestDetectors::detectorQueryNeedsItsFirmware_data()
{
    QTest::addColumn<QString>("first");
    QTest::newRow("1.9") << "!SRCE 86";
    QTest::newRow("2.32") << "!SRCE 86";
    QTest::newRow("2.33") << "DETA?";
    QTest::newRow("3.38") << "DETA?";
}

void TestDetectors::detectorQueryNeedsItsFirmware()
{
    UnitFixture f(unitWithFirmware(QTest::currentDataTag()));
    f.connectUnit();
    QCOMPARE(f.unit->DetectorReading(), 512);
    QTEST(f.sent().value(0), "first");
}

void TestDetectors::inputDetectorOnEveryFirmware()
{
    for (const char *firmware : {"1.9", "2.32", "3.38"}) {
        UnitFixture f(unitWithFirmware(firmware));
        f.connectUnit();
        QCOMPARE(f.unit->InputDetectorReading(), 256);
        QCOMPARE(f.sent(), listed("DETB?"));
    }
}

void TestDetectors::theReadingThroughTheTablePutsTheByteBack()
{
    UnitFixture f(unitWithFirmware("2.32"));
    f.connectUnit();
    f.simulated->change([](sim::UnitSettings &unit) {
        unit.detectorA = 201;
        for (std::size_t i = 0; i < unit.agcMemory.size(); ++i)
            unit.agcMemory[i] = static_cast<std::uint8_t>(i ^ 0x5a);
    });
    const auto before = f.simulated->state().agcMemory;
    QCOMPARE(f.unit->DetectorReading(), 201);
    QCOMPARE(f.sent(), listed("!SRCE 86|*DATA?|!ATAB 86|!SRCE 86|!WDAT 12"));
    QVERIFY(f.simulated->state().agcMemory == before);
    QCOMPARE(f.events.take(), QStringList(5, QStringLiteral("StatusChange 0")));
}

void TestDetectors::nothingIsStoredWhenTheByteIsUnknown()
{
    UnitFixture f(unitWithFirmware("2.32"));
    f.connectUnit();
    f.reply("*DATA?", "TIMED OUT");
    f.boxes().expect(message("The device did not respond correctly to an AGC DATA query."));
    QCOMPARE(f.unit->DetectorReading(), 0);
    QCOMPARE(f.sent(), listed("!SRCE 86|*DATA?"));
    QCOMPARE(f.events.take().last(), QStringLiteral("StatusChange 2"));
}

void TestDetectors::nothingIsStoredWhenTheAddressIsRefused()
{
    UnitFixture f(unitWithFirmware("2.32"));
    f.connectUnit();
    f.reply("!SRCE 86", "OUT OF RANGE");
    f.boxes().expect(message("The device did not respond correctly to a 'SRCE' command."));
    QCOMPARE(f.unit->DetectorReading(), 0);
    QCOMPARE(f.sent(), listed("!SRCE 86"));
    QCOMPARE(f.events.take(), listed("StatusChange 2"));
}

void TestDetectors::aFailedStoreStillPutsTheByteBack()
{
    UnitFixture f(unitWithFirmware("2.32"));
    f.connectUnit();
    f.unit->DetectorReading();
    f.forget();
    f.reply("!ATAB 86", "TIMED OUT");
    f.boxes().expect(message("The device did not respond correctly to ATAB command."));
    QCOMPARE(f.unit->DetectorReading(), 512); // the reading before
    QCOMPARE(f.sent(), listed("!SRCE 86|*DATA?|!ATAB 86|!SRCE 86|!WDAT 0"));
    QCOMPARE(f.events.take().last(), QStringLiteral("StatusChange 2"));
}

void TestDetectors::nothingIsSentToAClosedPort()
{
    UnitFixture f;
    for (const Read &read :
         {readDetector, readInput, readDeadBand, readStart, readData, storeValue})
        QCOMPARE(read(*f.unit), QStringLiteral("0"));
    for (const Act &act : {writeDeadBand, writeAddress, writeData})
        act(*f.unit);
    QCOMPARE(f.sent(), QStringList());
    QVERIFY(!f.unit->PortIsOpen());
}

void TestDetectors::theErrorSourceKeepsItsTwoBlanks()
{
    UnitFixture f;
    f.connectUnit();
    f.boxes().expectStart(QStringLiteral("Error 5 ("), MessageBox::Exclamation);
    connect(f.unit.get(), &clsKeldoX::StatusChange, this,
            [] { throw RunTimeError(ErrorNumber::InvalidProcedureCall); });
    f.unit->setAGCaddr(36);
    QVERIFY(f.boxes().texts().value(0).endsWith(QStringLiteral(" in clsKeldoX.Let  AGCaddr\r\n")));
}

void TestDetectors::theScratchByteIsPutBackWhenTheNumberOverflows()
{
    UnitFixture f(unitWithFirmware("2.32"));
    f.connectUnit();
    f.unit->setDisplayErrors(false);
    f.reply("*DATA?", "17");
    f.reply("!ATAB 86", "Add 86 99999999999");
    f.unit->DetectorReading();
    QCOMPARE(f.sent(), listed("!SRCE 86|*DATA?|!ATAB 86|!SRCE 86|!WDAT 17"));
    QCOMPARE(f.unit->DetectorReading(), 0);
}

void TestDetectors::writingTheDeadbandRaisesTheStatus()
{
    UnitFixture f;
    f.connectUnit();
    f.unit->setDeadBand(5);
    QCOMPARE(f.events.take(), listed("StatusChange 0"));
    QCOMPARE(f.sent(), listed("!DBND 5"));
}

KELDOX_TEST(TestDetectors)
#include "TestDetectors.moc"
