// The probe by itself: addressing, the question for a receiver, and reported failures.
#include "discovery/clsSeeker.h"
#include "support/SearchBench.h"
#include "support/TestMain.h"

class TestSeekerAddressing : public QObject
{
    Q_OBJECT

private slots:
    void addressZeroSendsNothing();
    void addressingReleasesTheLineFirst();
    void addressingLogsEachStep();
    void addressesHaveAtLeastTwoDigits_data();
    void addressesHaveAtLeastTwoDigits();
    void theReplyToAnAddressIsNotExamined();
    void anAorReceiverIsNeverReported_data();
    void anAorReceiverIsNeverReported();
    void unitAndAddressAreKeptAsTheyAre();
    void aFailureIsReportedWithItsOwnSource_data();
    void aFailureIsReportedWithItsOwnSource();
    void aFailedAddressingIsFalse();
};

void TestSeekerAddressing::addressZeroSendsNothing()
{
    SearchBench bench;
    bench.unit(3);
    clsSeeker seeker;
    QVERIFY(seeker.Listen(0)); // on a closed port as well
    QVERIFY(seeker.Init(3));
    bench.log->events.clear();
    QVERIFY(seeker.Listen(0));
    QCOMPARE(bench.log->lines(), QStringList());
    QCOMPARE(bench.line(3).bytesReceived(), std::size_t(0));
}

void TestSeekerAddressing::addressingReleasesTheLineFirst()
{
    SearchBench bench;
    bench.answerAlways(3, "OK");
    clsSeeker seeker;
    QVERIFY(seeker.Init(3));
    QVERIFY(seeker.Listen(3));
    QCOMPARE(bench.sentTo(3),
             (QStringList{QStringLiteral(">UNLISTEN"), QStringLiteral(">LISTEN03")}));
    QCOMPARE(bench.line(3).bytesReceived(), std::size_t(10 + 10)); // each with one CR
}

void TestSeekerAddressing::addressingLogsEachStep()
{
    SearchBench bench;
    bench.answerAlways(3, "OK");
    clsSeeker seeker;
    seeker.Init(3);
    bench.log->events.clear();
    seeker.Listen(5);
    QCOMPARE(bench.log->lines(), (QStringList{QStringLiteral("clsSeeker | sending UNLISTEN "),
                                              QStringLiteral("clsSeeker| sending >UNLISTEN"),
                                              QStringLiteral("from serial device:| received OK"),
                                              QStringLiteral("clsSeeker | sending >LISTEN05"),
                                              QStringLiteral("clsSeeker| sending >LISTEN05"),
                                              QStringLiteral("from serial device:| received OK")}));
}

void TestSeekerAddressing::addressesHaveAtLeastTwoDigits_data()
{
    QTest::addColumn<int>("address");
    QTest::addColumn<QString>("command");
    QTest::newRow("one digit") << 5 << ">LISTEN05";
    QTest::newRow("nine") << 9 << ">LISTEN09";
    QTest::newRow("ten") << 10 << ">LISTEN10";
    QTest::newRow("two digits") << 12 << ">LISTEN12";
    QTest::newRow("three digits") << 123 << ">LISTEN123";
    QTest::newRow("negative") << -1 << ">LISTEN-1";
}

void TestSeekerAddressing::addressesHaveAtLeastTwoDigits()
{
    QFETCH(int, address);
    QFETCH(QString, command);
    SearchBench bench;
    bench.answerAlways(3, "OK");
    clsSeeker seeker;
    seeker.Init(3);
    QVERIFY(seeker.Listen(static_cast<std::int16_t>(address)));
    QCOMPARE(bench.sentTo(3).last(), command);
}

void TestSeekerAddressing::theReplyToAnAddressIsNotExamined()
{
    SearchBench bench;
    bench.answerAlways(3, "UNRECOGNIZED COMMAND");
    clsSeeker seeker;
    seeker.Init(3);
    QVERIFY(seeker.Listen(3));

    bench.silence(3); // no reply at all is no objection either
    seeker.ComPort().settimeOutMs(30);
    QVERIFY(seeker.Listen(3));
}

void TestSeekerAddressing::anAorReceiverIsNeverReported_data()
{
    QTest::addColumn<QString>("reply");
    QTest::newRow("the receiver's answer") << "ID 00";
    QTest::newRow("something else") << "?";
}

void TestSeekerAddressing::anAorReceiverIsNeverReported()
{
    QFETCH(QString, reply);
    SearchBench bench;
    bench.answerAlways(3, reply.toStdString());
    bench.line(3).setTerminator("\r\n");
    clsSeeker seeker;
    seeker.Init(3);
    QVERIFY(!seeker.ItsAnAORRadio());
    QCOMPARE(bench.sentTo(3), QStringList{QStringLiteral("ID")});
}

void TestSeekerAddressing::unitAndAddressAreKeptAsTheyAre()
{
    SearchBench bench;
    clsSeeker seeker;
    QVERIFY(!seeker.KX());
    QCOMPARE(seeker.address(), std::int16_t(0));
    const auto unit = std::make_shared<clsKeldoX>();
    seeker.setKX(unit);
    seeker.setAddress(-7);
    QCOMPARE(seeker.KX().get(), unit.get());
    QCOMPARE(seeker.address(), std::int16_t(-7));
}

void TestSeekerAddressing::aFailureIsReportedWithItsOwnSource_data()
{
    QTest::addColumn<QString>("failingText");
    QTest::addColumn<QString>("source");
    QTest::newRow("GetID") << " sending *ID?"
                           << "clsSeeker.GetID";
    QTest::newRow("ItsAnAORRadio") << " sending ID"
                                   << "clsSeeker.ItsAnAORRadio";
    QTest::newRow("Unlisten") << " sending UNLISTEN "
                              << "clsSeeker.UNLISTEN";
    QTest::newRow("Listen") << " sending >LISTEN03"
                            << "clsSeeker.LISTEN";
}

void TestSeekerAddressing::aFailureIsReportedWithItsOwnSource()
{
    QFETCH(QString, failingText);
    QFETCH(QString, source);
    SearchBench bench;
    bench.answerAlways(3, "OK");
    clsSeeker seeker;
    seeker.Init(3);
    bench.log->failsOn = {failingText};
    bench.fixture.boxes.acceptAll();
    if (source.endsWith(QLatin1String("GetID")))
        QCOMPARE(seeker.GetID(), QString());
    else if (source.endsWith(QLatin1String("Radio")))
        QVERIFY(!seeker.ItsAnAORRadio());
    else
        seeker.Listen(3);
    QVERIFY(!bench.fixture.boxes.texts().isEmpty());
    QCOMPARE(bench.fixture.boxes.texts().first(),
             QStringLiteral("Error 5 ('Invalid procedure call or argument')\r\n"
                            "Invalid procedure call or argument\r\n"
                            " from KELDO-X Control Program\r\n in ") +
                 source + QStringLiteral("\r\n"));
}

void TestSeekerAddressing::aFailedAddressingIsFalse()
{
    SearchBench bench;
    bench.answerAlways(3, "OK");
    clsSeeker seeker;
    seeker.Init(3);
    bench.log->failsOn = {QStringLiteral(" sending >LISTEN03")};
    bench.fixture.boxes.acceptAll();
    QVERIFY(!seeker.Listen(3));
}

KELDOX_TEST(TestSeekerAddressing)
#include "TestSeekerAddressing.moc"
