// What an answer on a port is taken for.
#include "app/AppState.h"
#include "app/modSearchPorts.h"
#include "discovery/clsSeeker.h"
#include "support/SearchBench.h"
#include "support/TestMain.h"

class TestIdentify : public QObject
{
    Q_OBJECT

private slots:
    void theAnswerDecides_data();
    void theAnswerDecides();
    void theResultsHaveTheirNumbers();
    void silenceIsSilent();
    void aTimedOutIdentityCountsAllTheSame();
    void aPortThatIsNotOpenIsSilent_data();
    void aPortThatIsNotOpenIsSilent();
    void anAddressedUnitIsAddressedFirst();
    void aUnitOfAnotherAddressIsSilent();
};

// A shared seeker with COM3 open, as in the middle of a search.
static void openSeeker()
{
    app().search = makeSearch();
    QVERIFY(app().search->seeker()->Init(3));
}

void TestIdentify::theAnswerDecides_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<ProbeResult>("result");
    QTest::newRow("unit") << "KELDO-X" << ProbeResult::UnitFound;
    QTest::newRow("addressable unit") << "TOVIN-R" << ProbeResult::UnitFound;
    QTest::newRow("unit in lower case") << "keldo-x" << ProbeResult::UnitFound;
    QTest::newRow("addressable unit in lower case") << "tovin-r" << ProbeResult::UnitFound;
    QTest::newRow("mixed case") << "Tovin-r" << ProbeResult::UnitFound;
    QTest::newRow("a revision behind it") << "KELDO-X 3.38" << ProbeResult::Other;
    QTest::newRow("a blank behind it") << "KELDO-X " << ProbeResult::Other;
    QTest::newRow("a blank before it") << " TOVIN-R" << ProbeResult::Other;
    QTest::newRow("half of it") << "KELDO" << ProbeResult::Other;
    QTest::newRow("echo") << "*ID?" << ProbeResult::Loopback;
    QTest::newRow("echo in lower case") << "*id?" << ProbeResult::Loopback;
    QTest::newRow("echo with more") << "*ID??" << ProbeResult::Other;
    QTest::newRow("one") << "1" << ProbeResult::AnswersOne;
    QTest::newRow("eleven") << "11" << ProbeResult::Other;
    QTest::newRow("prompt") << "?>" << ProbeResult::Prompt;
    QTest::newRow("prompt with more") << "?>?" << ProbeResult::Other;
    QTest::newRow("empty") << "" << ProbeResult::Silent;
    QTest::newRow("receiver") << "ID 00" << ProbeResult::Other;
    QTest::newRow("error word") << "UNRECOGNIZED COMMAND" << ProbeResult::Other;
}

void TestIdentify::theAnswerDecides()
{
    QFETCH(QString, reply);
    QFETCH(ProbeResult, result);
    for (const char *terminator : {"\r", "\r\n"}) {
        SearchBench bench;
        bench.answerAlways(3, reply.toStdString());
        bench.line(3).setTerminator(terminator);
        openSeeker();
        QCOMPARE(IdentifyDeviceOnPort(0), result);
        QCOMPARE(bench.sentTo(3), QStringList{QStringLiteral("*ID?")});
    }
}

void TestIdentify::theResultsHaveTheirNumbers()
{
    QCOMPARE(static_cast<int>(ProbeResult::UnitFound), 0);
    QCOMPARE(static_cast<int>(ProbeResult::Loopback), 1);
    QCOMPARE(static_cast<int>(ProbeResult::AnswersOne), 2);
    QCOMPARE(static_cast<int>(ProbeResult::AORRadio), 3);
    QCOMPARE(static_cast<int>(ProbeResult::Prompt), 4);
    QCOMPARE(static_cast<int>(ProbeResult::Silent), 5);
    QCOMPARE(static_cast<int>(ProbeResult::Other), 6);
}

void TestIdentify::silenceIsSilent()
{
    SearchBench bench;
    bench.silence(3);
    openSeeker();
    app().search->seeker()->ComPort().settimeOutMs(50);
    QCOMPARE(IdentifyDeviceOnPort(0), ProbeResult::Silent);
}

void TestIdentify::aTimedOutIdentityCountsAllTheSame()
{
    SearchBench bench;
    bench.answerAlways(3, "KELDO-X");
    bench.line(3).setTerminator(""); // the end of the line is lost
    openSeeker();
    app().search->seeker()->ComPort().settimeOutMs(400);
    QCOMPARE(IdentifyDeviceOnPort(0), ProbeResult::UnitFound);
    QCOMPARE(bench.log->lines().last(), QStringLiteral("serial device | timed out "));
}

void TestIdentify::aPortThatIsNotOpenIsSilent_data()
{
    QTest::addColumn<int>("address");
    QTest::newRow("not addressed") << 0;
    QTest::newRow("addressed") << 4;
}

void TestIdentify::aPortThatIsNotOpenIsSilent()
{
    QFETCH(int, address);
    SearchBench bench;
    app().search = makeSearch();
    QCOMPARE(IdentifyDeviceOnPort(static_cast<std::int16_t>(address)), ProbeResult::Silent);
    QCOMPARE(bench.log->lines(), QStringList());
}

void TestIdentify::anAddressedUnitIsAddressedFirst()
{
    SearchBench bench;
    bench.unit(3, addressedUnit(4));
    openSeeker();
    QCOMPARE(IdentifyDeviceOnPort(4), ProbeResult::UnitFound);
    QCOMPARE(bench.sentTo(3), (QStringList{QStringLiteral(">UNLISTEN"), QStringLiteral(">LISTEN04"),
                                           QStringLiteral("*ID?")}));
}

void TestIdentify::aUnitOfAnotherAddressIsSilent()
{
    SearchBench bench;
    const auto unit = bench.unit(3, addressedUnit(4));
    openSeeker();
    app().search->seeker()->ComPort().settimeOutMs(250);
    QCOMPARE(IdentifyDeviceOnPort(4), ProbeResult::UnitFound);
    QCOMPARE(IdentifyDeviceOnPort(5), ProbeResult::Silent);
    QVERIFY(!unit->listening());
}

KELDOX_TEST(TestIdentify)
#include "TestIdentify.moc"
