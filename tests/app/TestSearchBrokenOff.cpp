// Searches that are broken off, that meet another search or its units, or a failing window.
#include "app/AppState.h"
#include "app/modSearchPorts.h"
#include "platform/EventQueue.h"
#include "platform/TestHooks.h"
#include "support/SearchBench.h"
#include "support/TestMain.h"

#include <QTimer>

#include <atomic>

class TestSearchBrokenOff : public QObject
{
    Q_OBJECT

private slots:
    void escapeEndsAWaitAtOnceAndTheSearchAfterThatPort();
    void escapeKeepsTheUnitsFoundSoFar();
    void escapeEndsTheWaitOfAUnitThatIsBeingConnected();
    void aNewSearchStartsAfterAnInterruptedOne();
    void theProgramsEndEndsTheSearchWithoutABox();
    void theProgramsEndDuringAConnectionEndsTheSearch();
    void aSearchDuringASearchDoesNothing();
    void aSearchDuringTheLastConnectionDoesNothing();
    void aNewSearchClosesAllPortsAndEmptiesTheTables();
    void aNewSearchMakesNewUnits();
    void aFailingWindowIsReportedAndTheSearchGoesOn();
};

void TestSearchBrokenOff::escapeEndsAWaitAtOnceAndTheSearchAfterThatPort()
{
    SearchBench bench;
    bench.silence(2);
    bench.unit(3);
    QTimer::singleShot(100, this, [] {
        QVERIFY(app().search);
        app().search->cancel();
    });
    QElapsedTimer clock;
    clock.start();
    SearchPorts(1);
    QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(TestHooks::virtualMs(), 0); // no time-out ran out
    QCOMPARE(bench.channels->progressValues, (QList<int>{3, 5, 515, 0}));
    QCOMPARE(bench.sentTo(3), QStringList());
    QVERIFY(app().searchFinished);
    QVERIFY(!app().search);
}

void TestSearchBrokenOff::escapeKeepsTheUnitsFoundSoFar()
{
    SearchBench bench;
    bench.unit(1);
    bench.silence(2);
    bench.unit(3);
    bench.channels->onProgress = [this](int value) {
        if (value == 5) // COM2
            QTimer::singleShot(50, this, [] { app().search->cancel(); });
    };
    SearchPorts(1);
    QCOMPARE(app().foundUnits, std::int16_t(1));
    QCOMPARE(bench.log->lines().last(), QStringLiteral("SearchPorts|Back to COM1..."));
    QCOMPARE(bench.calls->filter(QStringLiteral("optPortNumClick")),
             QStringList(2, QStringLiteral("row1.optPortNumClick")));
    QCOMPARE(bench.sentTo(3), QStringList());
}

void TestSearchBrokenOff::escapeEndsTheWaitOfAUnitThatIsBeingConnected()
{
    SearchBench bench;
    bench.unit(1);
    bench.rows[1]->onClick = [&](FakeChannelRow &row) {
        bench.line(1).setFault(sim::Fault::Silence);
        row.mDevice->Initialize(); // each of its replies is awaited for 10 s
    };
    // Neither when it is found nor when the search comes back to channel 1 does a box follow.
    std::atomic<int> asked = 0;
    bench.line(1).setListener([&](bool fromUnit, const std::string &) {
        if (!fromUnit && ++asked > 1) // the first time it is the probe
            QMetaObject::invokeMethod(
                this, [] { app().search->cancel(); }, Qt::QueuedConnection);
    });
    QElapsedTimer clock;
    clock.start();
    SearchPorts(3, QStringLiteral("1"));
    QVERIFY2(clock.elapsed() < 2000, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(TestHooks::virtualMs(), 0); // no time-out ran out
    QVERIFY(app().searchFinished);
    QVERIFY(!app().search);
}

void TestSearchBrokenOff::aNewSearchStartsAfterAnInterruptedOne()
{
    SearchBench bench;
    bench.silence(2);
    bench.unit(3);
    QTimer::singleShot(50, this, [] { app().search->cancel(); });
    SearchPorts(1);
    bench.waitOnly(250);
    SearchPorts(1);
    QCOMPARE(app().foundUnits, std::int16_t(1));
}

void TestSearchBrokenOff::theProgramsEndEndsTheSearchWithoutABox()
{
    SearchBench bench;
    bench.silence(2);
    bench.unit(3);
    QTimer::singleShot(100, this, [] { EventQueue::endProgram(); });
    QElapsedTimer clock;
    clock.start();
    SearchPorts(1);
    QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(TestHooks::virtualMs(), 0); // no time-out ran out
    TestHooks::takeBackEnding();
    QCOMPARE(bench.fixture.boxes.texts(), QStringList());
    QVERIFY(!bench.calls->contains(QStringLiteral("main.red")));
    QVERIFY(
        bench.logOf(QStringLiteral("SearchPorts")).filter(QStringLiteral("Could not")).isEmpty());
    QCOMPARE(bench.channels->progressValues.mid(0, 2), (QList<int>{3, 5}));
    QVERIFY(!bench.channels->progressValues.contains(7));
    QCOMPARE(bench.sentTo(3), QStringList());
}

void TestSearchBrokenOff::theProgramsEndDuringAConnectionEndsTheSearch()
{
    SearchBench bench;
    bench.unit(2);
    bench.rows[1]->onClick = [&](FakeChannelRow &row) {
        bench.line(2).setFault(sim::Fault::Silence);
        QTimer::singleShot(50, this, [] { EventQueue::endProgram(); });
        row.mDevice->Initialize();
    };
    QElapsedTimer clock;
    clock.start();
    SearchPorts(1);
    QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(TestHooks::virtualMs(), 0); // no time-out ran out
    QCOMPARE(bench.fixture.boxes.texts(), QStringList());
    QCOMPARE(bench.calls->filter(QStringLiteral("optPortNumClick")).size(), 1);
}

void TestSearchBrokenOff::aSearchDuringASearchDoesNothing()
{
    SearchBench bench;
    bench.silence(2);
    bench.unit(3);
    bench.waitOnly(200);
    int inner = 0;
    QTimer::singleShot(50, this, [&] {
        const QStringList before = *bench.calls;
        SearchPorts(1);
        QCOMPARE(*bench.calls, before);
        ++inner;
    });
    SearchPorts(1);
    QCOMPARE(inner, 1);
    QCOMPARE(app().foundUnits, std::int16_t(1));
    QCOMPARE(bench.sentTo(2), QStringList{QStringLiteral("*ID?")});
    QCOMPARE(bench.sentTo(3), QStringList{QStringLiteral("*ID?")});
    QCOMPARE(bench.calls->count(QStringLiteral("channels.show")), 1);
    QVERIFY(app().searchFinished);
}

void TestSearchBrokenOff::aSearchDuringTheLastConnectionDoesNothing()
{
    SearchBench bench;
    bench.unit(2);
    int clicks = 0;
    bench.rows[1]->onClick = [&](FakeChannelRow &) {
        const QStringList before = *bench.calls;
        if (++clicks == 2)
            SearchPorts(1);
        QCOMPARE(*bench.calls, before);
    };
    SearchPorts(3, QStringLiteral("2"));
    QCOMPARE(clicks, 2);
}

void TestSearchBrokenOff::aNewSearchClosesAllPortsAndEmptiesTheTables()
{
    SearchBench bench;
    bench.unit(1);
    bench.unit(2);
    const auto first = bench.bind(1, 1);
    const auto second = bench.bind(2, 2);
    QVERIFY(first->commPort()->InitializePort());
    QVERIFY(second->commPort()->InitializePort());
    bench.fixture.boxes.expect(checkConnections);
    SearchPorts(3, QStringLiteral("9"));
    QVERIFY(!first->PortIsOpen());
    QVERIFY(!second->PortIsOpen());
    for (int slot = 0; slot <= 8; ++slot)
        QVERIFY(!app().devices[slot]);
    for (int slot = 1; slot <= 8; ++slot) {
        QVERIFY(app().channels[slot]);
        QVERIFY(!bench.rows[slot]->exists);
    }
}

void TestSearchBrokenOff::aNewSearchMakesNewUnits()
{
    SearchBench bench;
    bench.unit(1);
    bench.unit(2);
    SearchPorts(1);
    const auto first = app().devices[1];
    QCOMPARE(app().foundUnits, std::int16_t(2));
    bench.calls->clear();
    SearchPorts(3, QStringLiteral("2"));
    QCOMPARE(app().foundUnits, std::int16_t(1));
    QVERIFY(app().devices[1].get() != first.get());
    QCOMPARE(app().devices[1]->commPort()->PortNumber(), std::int16_t(2));
    QVERIFY(!app().devices[2]);
    QVERIFY(!bench.rows[2]->exists);
}

void TestSearchBrokenOff::aFailingWindowIsReportedAndTheSearchGoesOn()
{
    SearchBench bench;
    bench.unit(2);
    bench.rows[1]->onClick = [](FakeChannelRow &) { throw RunTimeError(91); };
    bench.fixture.boxes.acceptAll();
    SearchPorts(3, QStringLiteral("2"));
    QStringList boxes = bench.fixture.boxes.texts();
    QCOMPARE(boxes.size(), 2);
    QVERIFY(boxes.at(0).endsWith(QLatin1String(" in SearchPorts.FoundAnKeldoX\r\n")));
    QVERIFY(boxes.at(1).endsWith(QLatin1String(" in SearchPorts\r\n")));
    QVERIFY(app().searchFinished);
    QCOMPARE(bench.calls->last(), QStringLiteral("main.bringUpToDate"));
    QVERIFY(!app().devices[1]->PortIsOpen());
}

KELDOX_TEST(TestSearchBrokenOff)
#include "TestSearchBrokenOff.moc"
