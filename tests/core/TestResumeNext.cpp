// Report and go on, report and end, and control handlers under the event guard.
#include "support/Fixture.h"
#include "support/TestMain.h"

#include "app/Handlers.h"
#include "app/SlotTable.h"
#include "core/ResumeNext.h"
#include "platform/RunTimeError.h"

#include <QSignalSpy>

class TestResumeNext : public QObject
{
    Q_OBJECT

private slots:
    void init() { fixture = std::make_unique<Fixture>(); }
    void cleanup() { fixture.reset(); }
    void everyStepRunsInOrder();
    void aFailingStepIsReportedAndTheNextOneFollows();
    void noExceptionLeavesEitherHelper();
    void reportAndEndTellsWhetherTheStepCameToItsEnd();
    void theExtraTextReachesTheReport();
    void aHandlerRunsOnlyWhileTheGuardIsUp();
    void theGuardIsDownForTheLengthOfTheBody();
    void theGuardIsUpAgainAfterAFailure();
    void theGuardTellsOnlyOfChanges();
    void aTableHasItsSlotsAndNoOthers();

private:
    std::unique_ptr<Fixture> fixture;
};

void TestResumeNext::everyStepRunsInOrder()
{
    QList<int> order;
    resumeNext(
        "x.y", [&] { order << 1; }, [&] { order << 2; }, [&] { order << 3; });
    QCOMPARE(order, (QList<int>{1, 2, 3}));
}

void TestResumeNext::aFailingStepIsReportedAndTheNextOneFollows()
{
    QList<int> order;
    fixture->boxes.expect(QStringLiteral("Error 9 ('Subscript out of range')\r\n"
                                         "Subscript out of range\r\n"
                                         " from KELDO-X Control Program\r\n"
                                         " in clsX.Y\r\n"),
                          48);
    resumeNext(
        "clsX.Y", [&] { order << 1; },
        [&] {
            order << 2;
            throw RunTimeError(9);
        },
        [&] { order << 3; });
    QCOMPARE(order, (QList<int>{1, 2, 3}));
}

void TestResumeNext::noExceptionLeavesEitherHelper()
{
    bool reached = false;
    fixture->boxes.expectStart(QStringLiteral("Error 51"));
    resumeNext(
        "x.y", [] { throw RunTimeError(100000); }, [] { throw std::runtime_error("odd"); },
        [&] { reached = true; });
    QVERIFY(reached);
}

void TestResumeNext::reportAndEndTellsWhetherTheStepCameToItsEnd()
{
    QVERIFY(reportAndEnd("x.y", [] {}));
    fixture->boxes.expectStart(QStringLiteral("Error 6"));
    QVERIFY(!reportAndEnd("x.y", [] { throw RunTimeError(6); }));
}

void TestResumeNext::theExtraTextReachesTheReport()
{
    fixture->boxes.expectStart(QStringLiteral("Error 6"));
    reportAndEnd(
        "x.y", [] { throw RunTimeError(6); }, "the extra text");
    QVERIFY(fixture->boxes.texts().at(0).endsWith(QStringLiteral(" in x.y\r\nthe extra text")));
}

void TestResumeNext::aHandlerRunsOnlyWhileTheGuardIsUp()
{
    bool ran = false;
    QVERIFY(!app().guard().isUp()); // as at start-up
    QVERIFY(!whileGuarded([&] { ran = true; }));
    QVERIFY(!ran);
    QVERIFY(!app().guard().isUp());
    app().guard().set(true);
    QVERIFY(whileGuarded([&] { ran = true; }));
    QVERIFY(ran);
}

void TestResumeNext::theGuardIsDownForTheLengthOfTheBody()
{
    app().guard().set(true);
    bool nestedRan = false;
    whileGuarded([&] {
        QVERIFY(!app().guard().isUp());
        whileGuarded([&] { nestedRan = true; });
        QVERIFY(!app().guard().isUp());
    });
    QVERIFY(!nestedRan);
    QVERIFY(app().guard().isUp());
}

void TestResumeNext::theGuardIsUpAgainAfterAFailure()
{
    app().guard().set(true);
    QVERIFY_THROWS_EXCEPTION(RunTimeError, whileGuarded([] { throw RunTimeError(6); }));
    QVERIFY(app().guard().isUp());
}

void TestResumeNext::theGuardTellsOnlyOfChanges()
{
    const QSignalSpy changes(&app().guard(), &EventGuard::changed);
    app().guard().set(false);
    QCOMPARE(changes.size(), 0);
    app().guard().set(true);
    app().guard().set(true);
    QCOMPARE(changes.size(), 1);
    QCOMPARE(changes.at(0).at(0).toBool(), true);
}

void TestResumeNext::aTableHasItsSlotsAndNoOthers()
{
    SlotTable<int, 8> slots8;
    QVERIFY(!slots8[0]);
    slots8[8] = std::make_shared<int>(5);
    QCOMPARE(*slots8[8], 5);
    for (const int outside : {-1, 9}) {
        int number = 0;
        try {
            slots8[outside] = nullptr;
        } catch (const RunTimeError &error) {
            number = error.number();
        }
        QCOMPARE(number, 9);
    }
}

KELDOX_TEST(TestResumeNext)
#include "TestResumeNext.moc"
