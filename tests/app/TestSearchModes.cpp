// Which ports and addresses a search asks, how far it tells to be, and the bound of eight units.
#include "app/AppState.h"
#include "app/modSearchPorts.h"
#include "support/SearchBench.h"
#include "support/TestMain.h"

class TestSearchModes : public QObject
{
    Q_OBJECT

private slots:
    void everyPortIsProbedThoughUnitsWereFound();
    void progressFollowsThePort_data();
    void progressFollowsThePort();
    void progressEndsOneBelowItsMaximumThenAtZero();
    void theLineSaysWhichPortAndHowManyUnits();
    void theLineSaysWhichAddress();
    void theLineOfOnePortCountsNothing();
    void modeTwoProbesEightAddressesOfOnePort();
    void unitsAtTwoAddressesFillTwoSlots();
    void anotherModeSearchesNothing_data();
    void anotherModeSearchesNothing();
    void thePortMayBeTheTextOfAListEntry_data();
    void thePortMayBeTheTextOfAListEntry();
    void aPortThatIsNoNumberIsReportedAndNothingProbed_data();
    void aPortThatIsNoNumberIsReportedAndNothingProbed();
    void searchingAllPortsNeedsNoPort();
    void theNinthUnitIsReportedAndTheSearchGoesOn();
};

void TestSearchModes::everyPortIsProbedThoughUnitsWereFound()
{
    SearchBench bench;
    for (const int port : {1, 128, 255})
        bench.unit(port);
    SearchPorts(0); // mode 0 is mode 1
    for (const int port : {1, 128, 255})
        QCOMPARE(bench.sentTo(port), QStringList{QStringLiteral("*ID?")});
    QCOMPARE(bench.channels->progressValues.size(), 255 + 2);
}

void TestSearchModes::progressFollowsThePort_data()
{
    QTest::addColumn<int>("port");
    QTest::addColumn<int>("value");
    QTest::newRow("first") << 1 << 3;
    QTest::newRow("fifth") << 5 << 11;
    QTest::newRow("last") << 255 << 511;
}

void TestSearchModes::progressFollowsThePort()
{
    QFETCH(int, port);
    QFETCH(int, value);
    SearchBench bench;
    app().search = makeSearch();
    SearchComPorts(static_cast<std::int16_t>(port), 0);
    QCOMPARE(bench.channels->progressValues, QList<int>{value});
}

void TestSearchModes::progressEndsOneBelowItsMaximumThenAtZero()
{
    SearchBench bench;
    bench.unit(5);
    SearchPorts(3, QStringLiteral("5"));
    QCOMPARE(bench.channels->progressValues, (QList<int>{11, 515, 0}));

    bench.channels->progressValues.clear();
    bench.fixture.boxes.expect(checkConnections);
    SearchPorts(3, QStringLiteral("6"));
    QCOMPARE(bench.channels->progressValues, (QList<int>{13, 515, 0}));
}

// The device's name is not the same on every run.
static QStringList withoutDevices(const QStringList &lines)
{
    static const QRegularExpression device(QStringLiteral(" \\([^)]*\\)"));
    QStringList all = lines;
    return all.replaceInStrings(device, QStringLiteral(" (device)"));
}

void TestSearchModes::theLineSaysWhichPortAndHowManyUnits()
{
    SearchBench bench;
    bench.unit(5);
    bench.unit(9);
    SearchPorts(1);
    const QStringList lines = withoutDevices(bench.mainWindow->progressLines);
    QCOMPARE(lines,
             (QStringList{QStringLiteral("Looking for serial ports."),
                          QStringLiteral("Looking at COM5 (device), port 1 of 2. Units found: 0."),
                          QStringLiteral("Looking at COM9 (device), port 2 of 2. Units found: 1."),
                          QString()}));
    QCOMPARE(withoutDevices(bench.channels->progressLines), lines);
}

void TestSearchModes::theLineSaysWhichAddress()
{
    SearchBench bench;
    bench.answerAlways(4, "x");
    bench.fixture.boxes.expect(checkConnections);
    SearchPorts(2, QStringLiteral("4"));
    QStringList expected{QStringLiteral("Looking for serial ports.")};
    for (int address = 1; address <= 8; ++address)
        expected.append(QStringLiteral("Looking at COM4 (device), address %1 of 8. Units found: 0.")
                            .arg(address));
    QCOMPARE(withoutDevices(bench.mainWindow->progressLines), expected << QString());
}

void TestSearchModes::theLineOfOnePortCountsNothing()
{
    SearchBench bench;
    bench.unit(5);
    SearchPorts(3, QStringLiteral("5"));
    QCOMPARE(withoutDevices(bench.mainWindow->progressLines).at(1),
             QStringLiteral("Looking at COM5 (device). Units found: 0."));
}

void TestSearchModes::modeTwoProbesEightAddressesOfOnePort()
{
    SearchBench bench;
    bench.answerAlways(4, "x");
    bench.fixture.boxes.expect(checkConnections);
    SearchPorts(2, QStringLiteral(" 4"));
    QStringList expected;
    for (int address = 1; address <= 8; ++address)
        expected << QStringLiteral(">UNLISTEN") << QStringLiteral(">LISTEN0%1").arg(address)
                 << QStringLiteral("*ID?");
    QCOMPARE(bench.sentTo(4), expected);
    QCOMPARE(bench.channels->progressValues, (QList<int>{9, 9, 9, 9, 9, 9, 9, 9, 515, 0}));
    QCOMPARE(bench.logOf(QStringLiteral("SearchComPorts")),
             QStringList(
                 8, QStringLiteral(" COM4 CAN BE OPENED, BUT DOES NOT RESPOND LIKE AN KELDO-X")));
}

void TestSearchModes::unitsAtTwoAddressesFillTwoSlots()
{
    SearchBench bench;
    const auto second = bench.unit(4, addressedUnit(2));
    const auto fifth = bench.unit(4, addressedUnit(5));
    bench.waitOnly(250);
    QStringList addressedTo;
    for (const int slot : {1, 2})
        bench.rows[slot]->onClick = [&](FakeChannelRow &row) {
            if (row.mDevice->Initialize())
                addressedTo.append(second->listening() ? QStringLiteral("2") : QStringLiteral("5"));
        };
    SearchPorts(2, QStringLiteral("4"));
    QCOMPARE(addressedTo,
             (QStringList{QStringLiteral("2"), QStringLiteral("5"), QStringLiteral("2")}));
    QCOMPARE(app().foundUnits, std::int16_t(2));
    QCOMPARE(app().devices[1]->commPort()->PortNumber(), std::int16_t(4));
    QCOMPARE(app().devices[2]->commPort()->PortNumber(), std::int16_t(4));
    QVERIFY(!fifth->listening());
    QCOMPARE(bench.logOf(QStringLiteral("SearchPorts")).last(), QStringLiteral("Back to COM4..."));
}

void TestSearchModes::anotherModeSearchesNothing_data()
{
    QTest::addColumn<int>("mode");
    QTest::newRow("four") << 4;
    QTest::newRow("negative") << -1;
}

void TestSearchModes::anotherModeSearchesNothing()
{
    QFETCH(int, mode);
    SearchBench bench;
    bench.unit(1);
    bench.unit(5);
    bench.fixture.boxes.expect(checkConnections, MessageBox::Exclamation);
    SearchPorts(static_cast<std::int16_t>(mode), QStringLiteral("5"));
    QCOMPARE(bench.sentTo(1), QStringList());
    QCOMPARE(bench.sentTo(5), QStringList());
    QCOMPARE(bench.channels->progressValues, (QList<int>{515, 0}));
    QVERIFY(app().searchFinished);
}

void TestSearchModes::thePortMayBeTheTextOfAListEntry_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("list entry") << " 5";
    QTest::newRow("digits") << "5";
    QTest::newRow("rounded") << "4.6";
    QTest::newRow("half to even") << "4.5";
}

void TestSearchModes::thePortMayBeTheTextOfAListEntry()
{
    QFETCH(QString, text);
    const int port = text == QLatin1String("4.5") ? 4 : 5;
    SearchBench bench;
    bench.unit(port);
    SearchPorts(3, text);
    QCOMPARE(bench.sentTo(port), QStringList{QStringLiteral("*ID?")});
    QCOMPARE(app().foundUnits, std::int16_t(1));
}

void TestSearchModes::aPortThatIsNoNumberIsReportedAndNothingProbed_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("start");
    QTest::newRow("word") << 3 << "abc"
                          << "Error 13 ('Type mismatch')\r\n";
    QTest::newRow("word, addresses") << 2 << "abc"
                                     << "Error 13 ('Type mismatch')\r\n";
    QTest::newRow("empty") << 3 << ""
                           << "Error 13 ('Type mismatch')\r\n";
    QTest::newRow("empty, addresses") << 2 << ""
                                      << "Error 13 ('Type mismatch')\r\n";
    QTest::newRow("beyond 16 bits") << 3 << "40000"
                                    << "Error 6 ('Overflow')\r\n";
}

void TestSearchModes::aPortThatIsNoNumberIsReportedAndNothingProbed()
{
    QFETCH(int, mode);
    QFETCH(QString, text);
    QFETCH(QString, start);
    SearchBench bench;
    bench.fixture.boxes.expectStart(start, MessageBox::Exclamation);
    bench.fixture.boxes.expect(checkConnections, MessageBox::Exclamation);
    SearchPorts(static_cast<std::int16_t>(mode), text);
    QVERIFY(bench.fixture.boxes.texts().first().endsWith(QLatin1String(" in SearchPorts\r\n")));
    QCOMPARE(bench.channels->progressValues, (QList<int>{515, 0}));
    QVERIFY(app().searchFinished);
}

void TestSearchModes::searchingAllPortsNeedsNoPort()
{
    SearchBench bench;
    bench.unit(2);
    SearchPorts(1, QStringLiteral("abc"));
    QCOMPARE(app().foundUnits, std::int16_t(1));
}

void TestSearchModes::theNinthUnitIsReportedAndTheSearchGoesOn()
{
    SearchBench bench;
    for (int port = 1; port <= 9; ++port)
        bench.unit(port);
    bench.answerAlways(10, "1");
    bench.fixture.boxes.expect(QStringLiteral("Error 9 ('Subscript out of range')\r\n"
                                              "Subscript out of range\r\n"
                                              " from KELDO-X Control Program\r\n"
                                              " in SearchPorts.FoundAnKeldoX\r\n"),
                               MessageBox::Exclamation);
    SearchPorts(1);
    for (int slot = 1; slot <= 8; ++slot)
        QCOMPARE(app().devices[slot]->commPort()->PortNumber(), std::int16_t(slot));
    const QStringList log = bench.log->lines();
    QVERIFY(log.contains(QStringLiteral("SearchComPorts|FOUND AN KELDO-X ON COM9")));
    QVERIFY(log.contains(QStringLiteral(
        "SearchComPorts| COM10 CAN BE OPENED, BUT DOES NOT RESPOND LIKE AN KELDO-X")));
    QCOMPARE(log.last(), QStringLiteral("SearchPorts|Back to COM1..."));
    QCOMPARE(app().foundUnits, std::int16_t(9));
    QCOMPARE(bench.calls->filter(QStringLiteral("optPortNumClick")).size(), 9);
    QCOMPARE(bench.calls->filter(QStringLiteral("FOUND AN KELDO-X ON COM")).size(), 9);
}

KELDOX_TEST(TestSearchModes)
#include "TestSearchModes.moc"
