// The search by itself: which ports and addresses it looks at, in which order, what it makes of
// each answer, and how it ends.
#include "discovery/PortSearch.h"
#include "support/SearchBench.h"
#include "support/TestMain.h"

#include <QSignalSpy>

class TestPortSearch : public QObject
{
    Q_OBJECT

private slots:
    void portsThatExistAreCounted();
    void addressesAreCountedOnOnePort();
    void everyAnswerIsToldApart_data();
    void everyAnswerIsToldApart();
    void anAddressThatIsSilentIsNoAddressedLine();
    void aPortThatCannotBeOpenedIsNoAddressedLine();
    void aSilenceThatWasBrokenOffIsNoAddressedLine();
    void aPortThatCannotBeOpenedIsKeptWithItsReason();
    void aLoopbackIsThatOfTheLastPortAlone();
    void theOutcomeIsWhatWasFound();
    void cancellingEndsTheWaitAndLooksNoFurther();
    void thePortIsFreeWhenAUnitIsTold();
};

namespace {

// "5.3 4/8" for address 3 on COM 5, the fourth of eight; numbers without a device are left out.
QStringList lookedAt(const QSignalSpy &spy, const QList<int> &ports)
{
    QStringList all;
    for (const QList<QVariant> &look : spy)
        if (ports.contains(look.at(0).toInt()))
            all.append(QStringLiteral("%1.%2 %3/%4")
                           .arg(look.at(0).toInt())
                           .arg(look.at(1).toInt())
                           .arg(look.at(2).toInt())
                           .arg(look.at(3).toInt()));
    return all;
}

void waitOnly(PortSearch &search, int ms)
{
    QObject::connect(&search, &PortSearch::LookingAt, &search,
                     [&search, ms] { search.seeker()->ComPort().settimeOutMs(ms); });
}

} // namespace

void TestPortSearch::portsThatExistAreCounted()
{
    SearchBench bench;
    bench.unit(3);
    bench.answerAlways(9, "modem");
    PortSearch search;
    const QSignalSpy looking(&search, &PortSearch::LookingAt);
    const QSignalSpy done(&search, &PortSearch::LookedAt);
    search.searchAllPorts();
    QCOMPARE(looking.count(), 255);
    QCOMPARE(done.count(), 255);
    QCOMPARE(lookedAt(looking, {1, 3, 4, 9, 255}),
             (QStringList{QStringLiteral("1.0 0/2"), QStringLiteral("3.0 1/2"),
                          QStringLiteral("4.0 1/2"), QStringLiteral("9.0 2/2"),
                          QStringLiteral("255.0 2/2")}));
    QCOMPARE(bench.sentTo(3), QStringList{QStringLiteral("*ID?")});
}

void TestPortSearch::addressesAreCountedOnOnePort()
{
    SearchBench bench;
    bench.line(5).addUnit(std::make_shared<sim::SimulatedUnit>(addressedUnit(4)));
    bench.line(5).addUnit(std::make_shared<sim::SimulatedUnit>(addressedUnit(8)));
    PortSearch search;
    waitOnly(search, 100);
    const QSignalSpy looking(&search, &PortSearch::LookingAt);
    const QSignalSpy found(&search, &PortSearch::UnitFound);
    search.searchAddressesOn(5);
    QStringList expected;
    for (int address = 1; address <= 8; ++address)
        expected.append(QStringLiteral("5.%1 %1/8").arg(address));
    QCOMPARE(lookedAt(looking, {5}), expected);
    QCOMPARE(found.count(), 2);
    QCOMPARE(found.at(0), (QList<QVariant>{qint16(5), qint16(4)}));
    QCOMPARE(found.at(1), (QList<QVariant>{qint16(5), qint16(8)}));
}

void TestPortSearch::everyAnswerIsToldApart_data()
{
    QTest::addColumn<QString>("answer"); // empty: none; "echo": what was asked
    QTest::addColumn<int>("result");
    QTest::addColumn<bool>("mayHaveAddressed");
    QTest::addRow("unit") << "KELDO-X" << int(ProbeResult::UnitFound) << false;
    QTest::addRow("addressable unit") << "tovin-r" << int(ProbeResult::UnitFound) << false;
    QTest::addRow("echo") << "echo" << int(ProbeResult::Loopback) << true;
    QTest::addRow("one") << "1" << int(ProbeResult::AnswersOne) << false;
    QTest::addRow("prompt") << "?>" << int(ProbeResult::Prompt) << false;
    QTest::addRow("silence") << "" << int(ProbeResult::Silent) << true;
    QTest::addRow("anything else") << "modem" << int(ProbeResult::Other) << false;
}

void TestPortSearch::everyAnswerIsToldApart()
{
    QFETCH(const QString, answer);
    QFETCH(const int, result);
    QFETCH(const bool, mayHaveAddressed);
    SearchBench bench;
    bench.line(4).setResponder([answer](const std::string &command) -> std::optional<std::string> {
        if (answer == QLatin1String("echo"))
            return command;
        return answer.isEmpty() ? std::nullopt : std::optional(answer.toStdString());
    });
    PortSearch search;
    waitOnly(search, 150);
    const QSignalSpy found(&search, &PortSearch::UnitFound);
    const QSignalSpy loopback(&search, &PortSearch::LoopbackFound);
    search.probe(4, 0);
    QCOMPARE(found.count(), result == int(ProbeResult::UnitFound) ? 1 : 0);
    QCOMPARE(loopback.count(), result == int(ProbeResult::Loopback) ? 1 : 0);
    QCOMPARE(search.endedAtLoopback(), result == int(ProbeResult::Loopback));
    QCOMPARE(search.mayHaveAddressedUnits(), mayHaveAddressed);
    const bool isOther =
        result != int(ProbeResult::UnitFound) && result != int(ProbeResult::Loopback);
    QCOMPARE(
        bench.logOf(QStringLiteral("SearchComPorts"))
            .contains(QStringLiteral(" COM4 CAN BE OPENED, BUT DOES NOT RESPOND LIKE AN KELDO-X")),
        isOther);
    QVERIFY(search.seeker()->Init(4));
    QCOMPARE(int(search.identify(0)), result);
}

void TestPortSearch::anAddressThatIsSilentIsNoAddressedLine()
{
    SearchBench bench;
    bench.silence(4);
    PortSearch search;
    waitOnly(search, 100);
    search.probe(4, 1);
    QVERIFY(!search.mayHaveAddressedUnits());
    search.probe(4, 0);
    QVERIFY(search.mayHaveAddressedUnits());
}

void TestPortSearch::aPortThatCannotBeOpenedIsNoAddressedLine()
{
    SearchBench bench;
    bench.fixture.plug(4, QStringLiteral("/nowhere/ttyUSB7"));
    PortSearch search;
    search.probe(4, 0);
    QVERIFY(!search.mayHaveAddressedUnits());
}

void TestPortSearch::aSilenceThatWasBrokenOffIsNoAddressedLine()
{
    SearchBench bench;
    bench.silence(4);
    PortSearch search;
    QTimer::singleShot(30, &search, [&] { search.cancel(); });
    search.probe(4, 0);
    QVERIFY(!search.mayHaveAddressedUnits());
}

void TestPortSearch::aPortThatCannotBeOpenedIsKeptWithItsReason()
{
    SearchBench bench;
    bench.unit(3);
    bench.fixture.plug(6, QStringLiteral("/nowhere/ttyUSB7"));
    PortSearch search;
    search.searchAllPorts();
    QCOMPARE(search.refused().size(), 1);
    QCOMPARE(search.refused().at(0).port, std::int16_t(6));
    QCOMPARE(search.refused().at(0).reason,
             QStringLiteral("/nowhere/ttyUSB7 is not there. Check that it is plugged in."));
}

void TestPortSearch::aLoopbackIsThatOfTheLastPortAlone()
{
    SearchBench bench;
    bench.line(4).setResponder([](const std::string &command) { return command; });
    bench.fixture.plug(6, QStringLiteral("/nowhere/ttyUSB7"));
    PortSearch search;
    search.probe(4, 0);
    QVERIFY(search.endedAtLoopback());
    search.probe(6, 0);
    QVERIFY(!search.endedAtLoopback());
}

void TestPortSearch::theOutcomeIsWhatWasFound()
{
    SearchBench bench;
    bench.unit(3);
    bench.answerAlways(4, "modem");
    PortSearch nothing;
    QCOMPARE(nothing.outcome(), PortSearch::Outcome::Nothing);
    nothing.probe(4, 0);
    QCOMPARE(nothing.outcome(), PortSearch::Outcome::Nothing);
    nothing.cancel();
    QCOMPARE(nothing.outcome(), PortSearch::Outcome::Cancelled);
    PortSearch some;
    some.probe(3, 0);
    QCOMPARE(some.outcome(), PortSearch::Outcome::Found);
    some.cancel();
    QCOMPARE(some.outcome(), PortSearch::Outcome::Found);
}

void TestPortSearch::cancellingEndsTheWaitAndLooksNoFurther()
{
    SearchBench bench;
    bench.silence(2);
    bench.unit(7);
    PortSearch search;
    const QSignalSpy cancelled(&search, &PortSearch::Cancelled);
    const QSignalSpy looking(&search, &PortSearch::LookingAt);
    QTimer::singleShot(50, &search, [&] { search.cancel(); });
    QElapsedTimer clock;
    clock.start();
    search.searchAllPorts();
    QVERIFY2(clock.elapsed() < 1500, qPrintable(QString::number(clock.elapsed()))); // of 1,900
    QVERIFY(search.isCancelled());
    QCOMPARE(cancelled.count(), 1);
    QCOMPARE(looking.count(), 2);
    QCOMPARE(bench.sentTo(7), QStringList());

    // The addresses of a line neither.
    PortSearch addresses;
    QTimer::singleShot(50, &addresses, [&] { addresses.cancel(); });
    const QSignalSpy addressed(&addresses, &PortSearch::LookingAt);
    addresses.searchAddressesOn(2);
    QCOMPARE(addressed.count(), 1);
}

void TestPortSearch::thePortIsFreeWhenAUnitIsTold()
{
    SearchBench bench;
    bench.unit(3);
    PortSearch search;
    bool wasFree = false;
    connect(&search, &PortSearch::UnitFound, this, [&](qint16 port, qint16) {
        CommControl other;
        other.setCommPort(port);
        other.setPortOpen(true);
        wasFree = other.portOpen();
    });
    search.probe(3, 0);
    QVERIFY(wasFree);
}

KELDOX_TEST(TestPortSearch)
#include "TestPortSearch.moc"
