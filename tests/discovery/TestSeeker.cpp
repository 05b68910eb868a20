// The probe by itself: opening, closing, the exchange of one line, and the texts of its log.
#include "discovery/clsSeeker.h"
#include "platform/TestHooks.h"
#include "support/SearchBench.h"
#include "support/TestMain.h"

#include <QSerialPort>
#include <QTemporaryFile>
#include <QTimer>

class TestSeeker : public QObject
{
    Q_OBJECT

private slots:
    void aNewSeekerIsSetUpForProbing();
    void aReplyIsAwaitedFor1900Milliseconds();
    void openingAPortLogsItsStatus();
    void aPortWithoutADeviceIsFalseWithoutALogLineOrABox();
    void aDeviceThatIsNoSerialLineIsFalseWithoutALogLineOrABox();
    void aPortHeldByAnotherProgramIsTrueAndLoggedAsAlreadyOpen();
    void aHeldPortYieldsNoReplyAndWaitsForNone();
    void anExchangeSendsTheLineWithOneCarriageReturnAndLogsIt();
    void everyTrailingCrAndLfIsStripped_data();
    void everyTrailingCrAndLfIsStripped();
    void aTimeOutIsLoggedAndGivesWhatHadArrived();
    void theBufferIsEmptyAfterAnExchange();
    void theIdentityIsNotUpperCased();
    void aClosedPortIsAskedNothing();
    void closingMakesRoomForOthersAndIsHarmlessTwice();
    void aSeekerThatGoesClosesItsPort();
    void aSeekerThatGoesEndsItsOwnWait();
};

static bool canBeOpened(const std::string &device)
{
    QSerialPort port(QString::fromStdString(device));
    return port.open(QIODevice::ReadWrite);
}

void TestSeeker::aNewSeekerIsSetUpForProbing()
{
    SearchBench bench;
    clsSeeker seeker;
    seeker.Construct();
    QCOMPARE(seeker.ComPort().DebugInfo(), QStringLiteral("Seeker.ComPort"));
    QCOMPARE(seeker.ComPort().PortMode(), 0);
    QVERIFY(!seeker.ComPort().IsOpen());
    seeker.ComPort().SendString(QStringLiteral("x")); // with DisplayErrors a box would come
    QCOMPARE(bench.fixture.boxes.texts(), QStringList());
}

void TestSeeker::aReplyIsAwaitedFor1900Milliseconds()
{
    SearchBench bench;
    bench.silence(3);
    clsSeeker seeker;
    QVERIFY(seeker.Init(3));
    TestHooks::shortenTimers(50);
    QCOMPARE(seeker.GetID(), QString());
    QCOMPARE(TestHooks::virtualMs(), 1900);
}

void TestSeeker::openingAPortLogsItsStatus()
{
    SearchBench bench;
    bench.line(3);
    clsSeeker seeker;
    QVERIFY(seeker.Init(3));
    QVERIFY(seeker.ComPort().IsOpen());
    QCOMPARE(bench.log->lines(),
             QStringList{QStringLiteral("SearchPorts|COM3 status = port_open")});
}

void TestSeeker::aPortWithoutADeviceIsFalseWithoutALogLineOrABox()
{
    SearchBench bench;
    clsSeeker seeker;
    QVERIFY(!seeker.Init(3));
    QCOMPARE(bench.log->lines(), QStringList());
    QCOMPARE(bench.fixture.boxes.texts(), QStringList());
}

void TestSeeker::aDeviceThatIsNoSerialLineIsFalseWithoutALogLineOrABox()
{
    SearchBench bench;
    QTemporaryFile file;
    QVERIFY(file.open());
    bench.fixture.plug(3, file.fileName());
    clsSeeker seeker;
    QVERIFY(!seeker.Init(3));
    QCOMPARE(seeker.ComPort().ComPortStatusString(), QStringLiteral("port_error"));
    QCOMPARE(bench.log->lines(), QStringList());
    QCOMPARE(bench.fixture.boxes.texts(), QStringList());
}

void TestSeeker::aPortHeldByAnotherProgramIsTrueAndLoggedAsAlreadyOpen()
{
    SearchBench bench;
    QSerialPort other(QString::fromStdString(bench.line(12).device()));
    QVERIFY(other.open(QIODevice::ReadWrite));
    clsSeeker seeker;
    QVERIFY(seeker.Init(12));
    QCOMPARE(bench.log->lines(),
             QStringList{QStringLiteral("SearchPorts|COM12 status = is already open")});
    QCOMPARE(bench.fixture.boxes.texts(), QStringList());
}

void TestSeeker::aHeldPortYieldsNoReplyAndWaitsForNone()
{
    SearchBench bench;
    bench.unit(3);
    QSerialPort other(QString::fromStdString(bench.line(3).device()));
    QVERIFY(other.open(QIODevice::ReadWrite));
    clsSeeker seeker;
    seeker.Init(3);
    QElapsedTimer clock;
    clock.start();
    QCOMPARE(seeker.GetID(), QString());
    QVERIFY(!seeker.Listen(5));
    QVERIFY(seeker.Listen(0));
    QVERIFY(clock.elapsed() < 1500);
    QCOMPARE(bench.sentTo(3), QStringList());
}

void TestSeeker::anExchangeSendsTheLineWithOneCarriageReturnAndLogsIt()
{
    SearchBench bench;
    bench.answerAlways(3, "hello");
    clsSeeker seeker;
    seeker.Init(3);
    bench.log->events.clear();
    QCOMPARE(seeker.deviceWrite(QStringLiteral("any words")), QStringLiteral("hello"));
    QCOMPARE(bench.sentTo(3), QStringList{QStringLiteral("any words")});
    QCOMPARE(bench.line(3).bytesReceived(), std::size_t(10)); // nine letters and the CR
    QCOMPARE(bench.log->lines(),
             (QStringList{QStringLiteral("clsSeeker| sending any words"),
                          QStringLiteral("from serial device:| received hello")}));
}

void TestSeeker::everyTrailingCrAndLfIsStripped_data()
{
    QTest::addColumn<QString>("terminator");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("reply");
    QTest::newRow("CR") << "\r"
                        << "KELDO-X"
                        << "KELDO-X";
    QTest::newRow("CR LF") << "\r\n"
                           << "KELDO-X"
                           << "KELDO-X";
    QTest::newRow("LF CR") << "\n\r"
                           << "KELDO-X"
                           << "KELDO-X";
    QTest::newRow("LF LF CR") << "\n\n\r"
                              << "KELDO-X"
                              << "KELDO-X";
    QTest::newRow("nothing but CR LF") << "\r\n"
                                       << ""
                                       << "";
    QTest::newRow("blanks stay") << "\r"
                                 << " KELDO-X "
                                 << " KELDO-X ";
    QTest::newRow("an LF inside stays") << "\r"
                                        << "A\nB"
                                        << "A\nB";
}

void TestSeeker::everyTrailingCrAndLfIsStripped()
{
    QFETCH(QString, terminator);
    QFETCH(QString, text);
    QFETCH(QString, reply);
    SearchBench bench;
    bench.answerAlways(3, text.toStdString());
    bench.line(3).setTerminator(terminator.toStdString());
    clsSeeker seeker;
    seeker.Init(3);
    QCOMPARE(seeker.GetID(), reply);
    QCOMPARE(seeker.GetID(), reply); // nothing of the first reply stands before the second
    QCOMPARE(bench.log->lines().last(), QStringLiteral("from serial device:| received ") + reply);
}

void TestSeeker::aTimeOutIsLoggedAndGivesWhatHadArrived()
{
    SearchBench bench;
    bench.answerAlways(3, "KELDO");
    bench.line(3).setTerminator("\n");
    clsSeeker seeker;
    seeker.Init(3);
    seeker.ComPort().settimeOutMs(400);
    QCOMPARE(seeker.GetID(), QStringLiteral("KELDO"));
    QCOMPARE(bench.log->lines(), (QStringList{QStringLiteral("SearchPorts|COM3 status = port_open"),
                                              QStringLiteral("clsSeeker| sending *ID?"),
                                              QStringLiteral("serial device | timed out ")}));
}

void TestSeeker::theBufferIsEmptyAfterAnExchange()
{
    SearchBench bench;
    bench.answerAlways(3, "KELDO-X");
    clsSeeker seeker;
    seeker.Init(3);
    seeker.GetID();
    QCOMPARE(seeker.ComPort().Buffer(), QString());
}

void TestSeeker::theIdentityIsNotUpperCased()
{
    SearchBench bench;
    bench.answerAlways(3, "tovin-r");
    clsSeeker seeker;
    seeker.Init(3);
    QCOMPARE(seeker.GetID(), QStringLiteral("tovin-r"));
    QCOMPARE(bench.sentTo(3), QStringList{QStringLiteral("*ID?")});
}

void TestSeeker::aClosedPortIsAskedNothing()
{
    SearchBench bench;
    bench.unit(3);
    clsSeeker seeker;
    QVERIFY(seeker.Init(3));
    seeker.ClosePort();
    bench.log->events.clear();
    QCOMPARE(seeker.GetID(), QString());
    QVERIFY(!seeker.Listen(7));
    seeker.Unlisten();
    QCOMPARE(bench.log->lines(), QStringList());
    QCOMPARE(bench.line(3).bytesReceived(), std::size_t(0));
}

void TestSeeker::closingMakesRoomForOthersAndIsHarmlessTwice()
{
    SearchBench bench;
    clsSeeker seeker;
    QVERIFY(seeker.Init(3) == false);
    const std::string device = bench.line(3).device();
    QVERIFY(seeker.Init(3));
    QVERIFY(!canBeOpened(device));
    seeker.ClosePort();
    QVERIFY(canBeOpened(device));
    seeker.ClosePort();
    QCOMPARE(seeker.ComPort().ComPortStatusString(), QStringLiteral("port_closed"));
}

void TestSeeker::aSeekerThatGoesClosesItsPort()
{
    SearchBench bench;
    const std::string device = bench.line(3).device();
    {
        clsSeeker seeker;
        QVERIFY(seeker.Init(3));
        QVERIFY(!canBeOpened(device));
    }
    QVERIFY(canBeOpened(device));
}

void TestSeeker::aSeekerThatGoesEndsItsOwnWait()
{
    SearchBench bench;
    bench.silence(3);
    auto seeker = std::make_unique<clsSeeker>();
    QVERIFY(seeker->Init(3));
    QTimer::singleShot(50, this, [&] { seeker.reset(); });
    QElapsedTimer clock;
    clock.start();
    QCOMPARE(seeker->GetID(), QString());
    QVERIFY(!seeker);
    QVERIFY2(clock.elapsed() < 1500, qPrintable(QString::number(clock.elapsed())));
}

KELDOX_TEST(TestSeeker)
#include "TestSeeker.moc"
